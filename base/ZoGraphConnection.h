#pragma once

#include "base/ZoReferenceCountedClass.h"
#include "base/ZoSmartPointer.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZoGraphNode;

/// ZoGraphConnection: one directed, weighted edge of a ZoGraph. A connection sits in its source
/// node's outgoing list and its target node's incoming list at once and remembers its position in
/// both, so that it is removed from both in constant time. It is reference counted: the two lists
/// own it jointly, and a caller's handle keeps it alive after removal.
///
/// The comparison operators compare weights only; they order the connection lists.
/// @ingroup graphs
class ZO_API ZoGraphConnection : public ZoReferenceCountedClass<ZoGraphConnection>
{
public:
    /// Selects an end of the connection in GetNode.
    enum ENodeType
    {
        eSource = 0,
        eTarget = 1,
    };

    /// No nodes, weight 0.
    ZoGraphConnection();
    /// A connection from `source` to `target` with weight 0. It is not yet in any list: add it with ZoGraphConnectionList::AddConnection.
    ZoGraphConnection(ZoGraphNode& source, ZoGraphNode& target);
    /// A connection from `source` to `target` with `weight`. It is not yet in any list: add it with ZoGraphConnectionList::AddConnection.
    ZoGraphConnection(ZoGraphNode& source, ZoGraphNode& target, float weight);
    ~ZoGraphConnection() override;

    /// Requires: the connection has that end (not checked for a default-made connection).
    ZoGraphNode& GetNode(ENodeType type) { return *(type == eSource ? m_source : m_target); }
    /// Const form of GetNode.
    const ZoGraphNode& GetNode(ENodeType type) const { return *(type == eSource ? m_source : m_target); }
    /// The weight (for the shortest path: the length of the edge).
    float GetWeight() const { return m_weight; }
    /// Does not reorder the lists that hold the connection (ZoGraphConnectionList::Sort does).
    void SetWeight(float weight) { m_weight = weight; }

    /// True when the weights are equal; the ends are not compared.
    bool operator==(ZoSmartPointer<ZoGraphConnection> other) const { return m_weight == other->m_weight; }
    /// True when this connection weighs less than `other`.
    bool operator<(ZoSmartPointer<ZoGraphConnection> other) const { return m_weight < other->m_weight; }
    /// True when this connection weighs more than `other`.
    bool operator>(ZoSmartPointer<ZoGraphConnection> other) const { return m_weight > other->m_weight; }

private:
    friend class ZoGraphConnectionList;
    friend class ZoMpGraphToShortestPath;

    void init(ZoGraphNode* source, ZoGraphNode* target, float weight);

    void* m_sourcePosition;
    void* m_targetPosition;
    ZoGraphNode* m_source;
    ZoGraphNode* m_target;
    float m_weight;
    /// Not used by the graph; kept for the layout the class has always had.
    uint64_t m_reserved;
};
