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
    explicit ZoGraphIterator(const ZoGraph& graph) : ZoIterator(graph.GetNodes().GetHeadPosition()), m_graph(&graph) {}

    /// Requires: HasMoreElements(). The current node; moves on to the next.
    ZoGraphNode& GetNext() { return *m_graph->GetNodes().GetNext(m_position); }
    int HasMoreElements() const { return m_position != nullptr; }
    void Restart() { m_position = m_graph->GetNodes().GetHeadPosition(); }

private:
    const ZoGraph* m_graph;
};
