#pragma once

#include "base/ZoGraph.h"
#include "base/ZoGraphPathIterator.h"
#include "base/ZoMpAlgorithm.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <vector>

/// ZoMpGraphToShortestPath: the shortest path from one node of a ZoGraph to another, by Dijkstra's
/// method over a binary min-heap. The result stays in the graph: every reached node's weight is its
/// distance from the start (unreached ones keep ZoGraphNode::GetInitialWeight()), and the path is
/// linked through the nodes' next/previous links from start to end. GetOutput() walks it.
///
/// The search stops as soon as the end node leaves the heap. A connection improves a node only when
/// it makes it strictly shorter, so of two equally short ways the first found keeps the
/// predecessor. Node attribute bit 1 marks a node while it is in the heap; the search clears it in
/// every node first. Weights are meant to be non-negative (a negative one can put a node back into
/// the heap; a negative cycle makes the search run for ever).
///
/// Compute() runs the search once per SetInput: a repeated Compute() reuses the result.
/// @ingroup graphs
class ZO_API ZoMpGraphToShortestPath : public ZoMpAlgorithm
{
    ZO_DECLARE_RTTI()

    ZoMpGraphToShortestPath();
    ZoMpGraphToShortestPath(const ZoMpGraphToShortestPath&) = delete;
    ZoMpGraphToShortestPath& operator=(const ZoMpGraphToShortestPath&) = delete;
    ~ZoMpGraphToShortestPath() override;

    /// The nodes must belong to the graph. Forgets an earlier result.
    void SetInput(ZoGraph& graph, ZoGraphNode& start, ZoGraphNode& end);
    /// The path from start to end, forward. Throws ZoExceptionNoOutputData (line 203) unless the
    /// last Compute() succeeded.
    ZoGraphPathIterator GetOutput() const;

protected:
    /// Non-zero once SetInput has given a graph, a start and an end.
    int checkInputData() const override;
    /// Runs the search; non-zero when the end was reached (the path is then linked through the nodes), 0 when it cannot be.
    int compute() override;

    /// The recording: the graph (names, connections by node index and weight), start and end; the
    /// output is the success flag and the path's node indices.
    void serializeUnitTestInput(ZoStreamWriteBinary& stream) const override;
    /// Reads a recorded graph, start and end, and makes them the input; the graph is owned until releaseUnitTestInput.
    void serializeUnitTestInput(ZoStreamReadBinary& stream) override;
    /// Writes the success flag and the path's node indices.
    void serializeUnitTestOutput(ZoStreamWriteBinary& stream) const override;
    /// Reads a recorded success flag and path for compareResult.
    void serializeUnitTestOutput(ZoStreamReadBinary& stream) override;
    /// Deletes a graph read from a recording, and forgets the input when it was that graph.
    void releaseUnitTestInput() override;
    /// Forgets the recorded output.
    void releaseUnitTestOutput() override;
    /// Non-zero when this run's success flag and path equal the recorded ones.
    int compareResult() const override;

private:
    std::vector<uint32_t> pathIndices() const;

    ZoGraph* m_graph;
    ZoGraphNode* m_start;
    ZoGraphNode* m_end;
    /// A graph read from a recording, owned until releaseUnitTestInput().
    ZoGraph* m_recordedGraph;
    int m_recordedCalculated;
    std::vector<uint32_t> m_recordedPath;
};
