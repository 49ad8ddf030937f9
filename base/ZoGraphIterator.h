#pragma once

#include "base/ZoGraph.h"
#include "base/ZoIterator.h"
#include "platform/ZoExport.h"

/// ZoGraphIterator: walks a graph's nodes in list order, from the head.
///
///     for (ZoGraphIterator it(graph); it.HasMoreElements();) use(it.GetNext());
/// @ingroup graphs
class ZO_API ZoGraphIterator : public ZoIterator<ZoGraphNode&, ZoGraphIterator>
{
public:
    /// Starts at the first node of `graph`, which must outlive the iterator and keep its nodes while it runs.
    explicit ZoGraphIterator(const ZoGraph& graph) : ZoIterator(graph.GetNodes().GetHeadPosition()), m_graph(&graph) {}

    /// Requires: HasMoreElements(). The current node; moves on to the next.
    ZoGraphNode& GetNext() { return *m_graph->GetNodes().GetNext(m_position); }
    /// Non-zero while GetNext has a node to return.
    int HasMoreElements() const { return m_position != nullptr; }
    /// Goes back to the first node.
    void Restart() { m_position = m_graph->GetNodes().GetHeadPosition(); }

private:
    const ZoGraph* m_graph;
};
