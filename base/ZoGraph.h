#pragma once

#include "base/ZoGraphNode.h"
#include "base/ZoList.h"
#include "base/ZoStreamWriteASCII.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoGraph: a small weighted directed graph. It owns its nodes (kept in insertion order) and deletes
/// them; connections belong jointly to the two lists that hold them. Path algorithms leave their
/// results in the graph itself: node weights (distances) and the nodes' path links.
///
/// Node indices are valid after construction, CreateIndices, RemoveAllNodes and removal of the tail
/// node; removing any other node leaves them stale (FindNode then still finds the old numbers) until
/// CreateIndices renumbers. Dump writes a plain report, DumpDot a Graphviz description with CR LF
/// line ends. Not synchronised.
/// @ingroup graphs
class ZO_API ZoGraph
{
public:
    /// The node list: pointers owned by the graph, in insertion order.
    typedef ZoList<ZoGraphNode*, 0x22> NodeList;

    ZoGraph();
    /// A deep copy: nodes (name, index, attributes, weight, path links) and connections.
    ZoGraph(const ZoGraph& other);
    /// Deletes this graph's nodes, then makes a deep copy of `other` as the copy constructor does.
    ZoGraph& operator=(const ZoGraph& other);
    ~ZoGraph();

    /// Takes ownership of `node` and appends it; its index becomes the new node count - 1.
    void InsertNode(ZoGraphNode* node);
    /// Removes, disconnects and deletes the node. Requires: the node belongs to this graph.
    void RemoveNode(ZoGraphNode& node);
    /// Deletes every node and every connection; the (empty) indices are valid afterwards.
    void RemoveAllNodes();
    /// Numbers the nodes 0, 1, ... in list order unless the indices are valid; returns the count.
    uint32_t CreateIndices();
    /// Non-zero when every node's index is its place in the list; FindNode relies on it.
    int AreIndicesValid() const { return m_indicesValid; }
    /// The first node whose index is `index` (as the indices stand), or null.
    ZoGraphNode* FindNode(uint32_t index) const;
    /// Number of nodes; 0 for an empty graph.
    uint32_t GetNodeCount() const { return m_nodes.GetCount(); }
    /// The nodes in insertion order. The graph owns them: do not delete them yourself.
    const NodeList& GetNodes() const { return m_nodes; }

    /// Every node's weight back to ZoGraphNode::GetInitialWeight().
    void ResetWeights();
    /// Clears the bits of `mask` in every node's attribute word.
    void RemoveAttributes(uint32_t mask);

    /// `"\nDer Graph enthält <n> Knoten\n\n"`, then per node `"Knoten <i>:\n"` and per outgoing
    /// connection `"\tVerbindung zu Knoten <j> mit Gewicht <w>\n"`, then `"\n"`. Renumbers first.
    void Dump(ZoStreamWriteASCII& stream);
    /// "graph G {" or "digraph G {", one line per connection, "}"; CR LF line ends. Undirected dumps
    /// write a connection only from the node whose index is not above its target's, so a pair of
    /// opposite connections appears once; the indices are used as they stand.
    void DumpDot(ZoStreamWriteASCII& stream, int directed) const;

private:
    void copyFrom(const ZoGraph& other);

    NodeList m_nodes;
    int m_indicesValid;
};
