#pragma once

#include "base/ZoGraphConnectionList.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoGraphNode: a node of a ZoGraph: a name (the label of the Graphviz dump), an index (its place in
/// the graph when the graph's indices are valid), a 32-bit attribute word for algorithms' marks, a
/// weight, the next and previous links of a found path, and its outgoing and incoming connections.
///
/// The weight starts at GetInitialWeight(), the largest finite float, which path algorithms read as
/// "not reached". The two path links always form a consistent doubly linked chain: setting one end
/// detaches whatever the other node was linked to before. Destroying a node removes every connection
/// that touches it, incoming ones included. Nodes are owned by their graph and not copyable.
/// @ingroup graphs
class ZO_API ZoGraphNode
{
public:
    ZoGraphNode();
    /// A node labelled `name`, with no connections and the initial weight.
    explicit ZoGraphNode(const CString& name);
    ZoGraphNode(const ZoGraphNode&) = delete;
    ZoGraphNode& operator=(const ZoGraphNode&) = delete;
    ~ZoGraphNode();

    /// Connects this node to `target` with a new connection of that weight (several connections to
    /// the same target are allowed).
    void AddConnection(ZoGraphNode& target, float weight);
    /// Removes the first outgoing connection to `target`; nothing when there is none.
    void RemoveConnection(ZoGraphNode& target);
    /// Removes every outgoing connection; incoming ones stay.
    void RemoveAllConnections();

    /// The connections that leave this node, lightest first.
    ZoGraphConnectionList& GetOutgoingConnections() { return m_outgoing; }
    /// Const form of GetOutgoingConnections.
    const ZoGraphConnectionList& GetOutgoingConnections() const { return m_outgoing; }
    /// The connections that arrive at this node, lightest first.
    ZoGraphConnectionList& GetIncomingConnections() { return m_incoming; }
    /// Const form of GetIncomingConnections.
    const ZoGraphConnectionList& GetIncomingConnections() const { return m_incoming; }

    /// The label; empty for a default-made node.
    const CString& GetName() const { return m_name; }
    /// Sets the label the Graphviz dump writes.
    void SetName(const CString& name) { m_name = name; }
    /// The index the graph gave the node; stale after removals until ZoGraph::CreateIndices.
    uint32_t GetIndex() const { return m_index; }
    /// The whole 32-bit attribute word (0 for a new node).
    uint32_t GetAttributes() const { return m_attributes; }
    /// Replaces the whole attribute word.
    void SetAttributes(uint32_t attributes) { m_attributes = attributes; }
    /// Sets the bits of `attributes`; the others stay.
    void AddAttributes(uint32_t attributes) { m_attributes |= attributes; }
    /// Clears the bits of `attributes`; the others stay.
    void RemoveAttributes(uint32_t attributes) { m_attributes &= ~attributes; }
    /// Non-zero when any bit of `attributes` is set.
    int IsAttributeSet(uint32_t attributes) const { return (m_attributes & attributes) != 0; }

    /// The weight; after a shortest-path run, the distance from the start (GetInitialWeight() when not reached).
    float GetWeight() const { return m_weight; }
    /// Sets the weight; path algorithms overwrite it.
    void SetWeight(float weight) { m_weight = weight; }
    /// 3.4028235e38, the largest finite float: "not reached".
    static float GetInitialWeight();

    /// The node after this one on the found path; null at the path's end or when there is none.
    ZoGraphNode* GetNextNodeOnPath() { return m_next; }
    /// Const form of GetNextNodeOnPath.
    const ZoGraphNode* GetNextNodeOnPath() const { return m_next; }
    /// The node before this one on the found path; null at the path's start or when there is none.
    ZoGraphNode* GetPreviousNodeOnPath() { return m_previous; }
    /// Const form of GetPreviousNodeOnPath.
    const ZoGraphNode* GetPreviousNodeOnPath() const { return m_previous; }
    /// Links this node to `next` (null unlinks), detaching the old next node and `next`'s old
    /// previous node first.
    void SetNextNodeOnPath(ZoGraphNode* next);
    /// The mirror image of SetNextNodeOnPath.
    void SetPreviousNodeOnPath(ZoGraphNode* previous);

    /// Identity: the same object.
    bool operator==(const ZoGraphNode& other) const { return this == &other; }

private:
    friend class ZoGraph;
    friend class ZoMpGraphToShortestPath;

    uint32_t m_attributes;
    CString m_name;
    uint32_t m_index;
    void* m_listPosition;
    ZoGraphNode* m_next;
    ZoGraphNode* m_previous;
    ZoGraphConnectionList m_outgoing;
    ZoGraphConnectionList m_incoming;
    float m_weight;
};
