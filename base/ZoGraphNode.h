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

    ZoGraphConnectionList& GetOutgoingConnections() { return m_outgoing; }
    const ZoGraphConnectionList& GetOutgoingConnections() const { return m_outgoing; }
    ZoGraphConnectionList& GetIncomingConnections() { return m_incoming; }
    const ZoGraphConnectionList& GetIncomingConnections() const { return m_incoming; }

    const CString& GetName() const { return m_name; }
    void SetName(const CString& name) { m_name = name; }
    uint32_t GetIndex() const { return m_index; }
    uint32_t GetAttributes() const { return m_attributes; }
    void SetAttributes(uint32_t attributes) { m_attributes = attributes; }
    void AddAttributes(uint32_t attributes) { m_attributes |= attributes; }
    void RemoveAttributes(uint32_t attributes) { m_attributes &= ~attributes; }
    int IsAttributeSet(uint32_t attributes) const { return (m_attributes & attributes) != 0; }

    float GetWeight() const { return m_weight; }
    void SetWeight(float weight) { m_weight = weight; }
    /// 3.4028235e38, the largest finite float: "not reached".
    static float GetInitialWeight();

    ZoGraphNode* GetNextNodeOnPath() { return m_next; }
    const ZoGraphNode* GetNextNodeOnPath() const { return m_next; }
    ZoGraphNode* GetPreviousNodeOnPath() { return m_previous; }
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
