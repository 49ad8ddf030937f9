#pragma once

#include "base/ZoGraphNode.h"
#include "base/ZoIterator.h"
#include "platform/ZoExport.h"

/// ZoGraphPathIterator: walks a path that an algorithm left in the nodes' path links, forward from
/// the start node along the next links or backward from the end node along the previous links. The
/// walk ends where the links end; the node at the other end is not a stop mark.
/// @ingroup graphs
class ZO_API ZoGraphPathIterator : public ZoIterator<ZoGraphNode&, ZoGraphPathIterator>
{
public:
    /// Which way the walk follows the path links.
    enum EDirection
    {
        eForward = 0,
        eBackward = 1,
    };

    /// A walk from `start` along the next links, or from `end` along the previous links when `direction` is eBackward. The nodes must outlive the iterator.
    ZoGraphPathIterator(ZoGraphNode& start, ZoGraphNode& end, EDirection direction = eForward)
        : ZoIterator(direction == eBackward ? &end : &start), m_direction(direction), m_start(&start), m_end(&end)
    {
    }

    /// Requires: HasMoreElements(). The current node; moves along the links of the direction.
    ZoGraphNode& GetNext()
    {
        ZoGraphNode* current = static_cast<ZoGraphNode*>(m_position);
        m_position = m_direction == eBackward ? current->GetPreviousNodeOnPath() : current->GetNextNodeOnPath();
        return *current;
    }
    /// Non-zero while GetNext has a node to return.
    int HasMoreElements() const { return m_position != nullptr; }
    /// Goes back to the first node of the walk in the current direction.
    void Restart() { m_position = m_direction == eBackward ? m_end : m_start; }
    /// Only stores the direction; Restart applies it.
    void SetDirection(EDirection direction) { m_direction = direction; }
    /// The direction Restart applies.
    EDirection GetDirection() const { return m_direction; }

private:
    EDirection m_direction;
    ZoGraphNode* m_start;
    ZoGraphNode* m_end;
};
