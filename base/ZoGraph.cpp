#include "base/ZoGraph.h"

#include <unordered_map>

ZoGraph::ZoGraph() : m_nodes(10), m_indicesValid(1)
{
}

ZoGraph::ZoGraph(const ZoGraph& other) : m_nodes(10), m_indicesValid(1)
{
    copyFrom(other);
}

ZoGraph& ZoGraph::operator=(const ZoGraph& other)
{
    if (this != &other) {
        RemoveAllNodes();
        copyFrom(other);
    }
    return *this;
}

ZoGraph::~ZoGraph()
{
    RemoveAllNodes();
}

void ZoGraph::copyFrom(const ZoGraph& other)
{
    std::unordered_map<const ZoGraphNode*, ZoGraphNode*> copies;
    for (NodeList::Position position = other.m_nodes.GetHeadPosition(); position != nullptr;) {
        const ZoGraphNode* source = other.m_nodes.GetNext(position);
        auto* copy = new ZoGraphNode(source->GetName());
        copy->m_attributes = source->m_attributes;
        copy->m_weight = source->m_weight;
        InsertNode(copy);
        copy->m_index = source->m_index;
        copies[source] = copy;
    }
    for (NodeList::Position position = other.m_nodes.GetHeadPosition(); position != nullptr;) {
        const ZoGraphNode* source = other.m_nodes.GetNext(position);
        ZoGraphNode* copy = copies[source];
        for (ZoGraphConnectionList::Position connection = source->GetOutgoingConnections().GetHeadPosition(); connection != nullptr;) {
            const ZoGraphConnection& edge = *source->GetOutgoingConnections().GetNext(connection);
            copy->AddConnection(*copies[&edge.GetNode(ZoGraphConnection::eTarget)], edge.GetWeight());
        }
        const auto next = copies.find(source->m_next);
        if (source->m_next != nullptr && next != copies.end())
            copy->SetNextNodeOnPath(next->second);
    }
    m_indicesValid = other.m_indicesValid;
}

void ZoGraph::InsertNode(ZoGraphNode* node)
{
    m_nodes.AddTail(node);
    node->m_listPosition = m_nodes.GetTailPosition();
    node->m_index = m_nodes.GetCount() - 1;
}

void ZoGraph::RemoveNode(ZoGraphNode& node)
{
    if (!(m_indicesValid && node.m_listPosition == m_nodes.GetTailPosition()))
        m_indicesValid = 0;
    m_nodes.RemoveAt(node.m_listPosition);
    delete &node;
}

void ZoGraph::RemoveAllNodes()
{
    // Connections between nodes go with the first of their ends to be deleted.
    while (!m_nodes.IsEmpty()) {
        ZoGraphNode* node = m_nodes.GetHead();
        m_nodes.RemoveHead();
        delete node;
    }
    m_indicesValid = 1;
}

uint32_t ZoGraph::CreateIndices()
{
    if (m_indicesValid)
        return m_nodes.GetCount();
    uint32_t index = 0;
    for (NodeList::Position position = m_nodes.GetHeadPosition(); position != nullptr;)
        m_nodes.GetNext(position)->m_index = index++;
    m_indicesValid = 1;
    return m_nodes.GetCount();
}

ZoGraphNode* ZoGraph::FindNode(uint32_t index) const
{
    for (NodeList::Position position = m_nodes.GetHeadPosition(); position != nullptr;) {
        ZoGraphNode* node = m_nodes.GetNext(position);
        if (node->m_index == index)
            return node;
    }
    return nullptr;
}

void ZoGraph::ResetWeights()
{
    for (NodeList::Position position = m_nodes.GetHeadPosition(); position != nullptr;)
        m_nodes.GetNext(position)->m_weight = ZoGraphNode::GetInitialWeight();
}

void ZoGraph::RemoveAttributes(uint32_t mask)
{
    for (NodeList::Position position = m_nodes.GetHeadPosition(); position != nullptr;)
        m_nodes.GetNext(position)->m_attributes &= ~mask;
}

void ZoGraph::Dump(ZoStreamWriteASCII& stream)
{
    const uint32_t count = CreateIndices();
    stream << CString(u"\nDer Graph enth\u00e4lt ") << count << CString(u" Knoten\n\n");
    for (NodeList::Position position = m_nodes.GetHeadPosition(); position != nullptr;) {
        const ZoGraphNode& node = *m_nodes.GetNext(position);
        stream << CString(u"Knoten ") << node.m_index << CString(u":\n");
        for (ZoGraphConnectionList::Position connection = node.m_outgoing.GetHeadPosition(); connection != nullptr;) {
            const ZoGraphConnection& edge = *node.m_outgoing.GetNext(connection);
            stream << CString(u"\tVerbindung zu Knoten ") << edge.GetNode(ZoGraphConnection::eTarget).m_index
                   << CString(u" mit Gewicht ") << edge.GetWeight() << CString(u"\n");
        }
    }
    stream << CString(u"\n");
}

void ZoGraph::DumpDot(ZoStreamWriteASCII& stream, int directed) const
{
    stream << CString(directed ? u"digraph G {\r\n" : u"graph G {\r\n");
    const CString link(directed ? u" -> " : u" -- ");
    for (NodeList::Position position = m_nodes.GetHeadPosition(); position != nullptr;) {
        const ZoGraphNode& node = *m_nodes.GetNext(position);
        for (ZoGraphConnectionList::Position connection = node.m_outgoing.GetHeadPosition(); connection != nullptr;) {
            const ZoGraphConnection& edge = *node.m_outgoing.GetNext(connection);
            const ZoGraphNode& target = edge.GetNode(ZoGraphConnection::eTarget);
            if (!directed && target.m_index < node.m_index)
                continue;
            stream << node.m_name << link << target.m_name << CString(u" [label = \"") << edge.GetWeight() << CString(u"\"];\r\n");
        }
    }
    stream << CString(u"}\r\n");
}

template class ZoList<ZoGraphNode*, 0x22>;
