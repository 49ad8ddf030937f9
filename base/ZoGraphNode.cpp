#include "base/ZoGraphNode.h"

#include <limits>

ZoGraphNode::ZoGraphNode()
    : m_attributes(0), m_index(0), m_listPosition(nullptr), m_next(nullptr), m_previous(nullptr), m_weight(GetInitialWeight())
{
}

ZoGraphNode::ZoGraphNode(const CString& name) : ZoGraphNode()
{
    m_name = name;
}

ZoGraphNode::~ZoGraphNode()
{
    RemoveAllConnections();
    while (!m_incoming.IsEmpty()) {
        const ZoSmartPointer<ZoGraphConnection> head = m_incoming.GetHead();
        head->GetNode(ZoGraphConnection::eSource).RemoveConnection(*this);
    }
}

float ZoGraphNode::GetInitialWeight()
{
    return std::numeric_limits<float>::max();
}

void ZoGraphNode::AddConnection(ZoGraphNode& target, float weight)
{
    m_outgoing.AddConnection(ZoSmartPointer<ZoGraphConnection>(new ZoGraphConnection(*this, target, weight)));
}

void ZoGraphNode::RemoveConnection(ZoGraphNode& target)
{
    for (ZoGraphConnectionList::Position position = m_outgoing.GetHeadPosition(); position != nullptr;) {
        const ZoSmartPointer<ZoGraphConnection>& connection = m_outgoing.GetNext(position);
        if (&connection->GetNode(ZoGraphConnection::eTarget) == &target) {
            m_outgoing.RemoveConnection(connection);
            return;
        }
    }
}

void ZoGraphNode::RemoveAllConnections()
{
    while (!m_outgoing.IsEmpty())
        RemoveConnection(m_outgoing.GetHead()->GetNode(ZoGraphConnection::eTarget));
}

void ZoGraphNode::SetNextNodeOnPath(ZoGraphNode* next)
{
    if (m_next != nullptr)
        m_next->m_previous = nullptr;
    m_next = next;
    if (next != nullptr) {
        if (next->m_previous != nullptr)
            next->SetPreviousNodeOnPath(nullptr);
        next->m_previous = this;
    }
}

void ZoGraphNode::SetPreviousNodeOnPath(ZoGraphNode* previous)
{
    if (m_previous != nullptr)
        m_previous->m_next = nullptr;
    m_previous = previous;
    if (previous != nullptr) {
        if (previous->m_next != nullptr)
            previous->SetNextNodeOnPath(nullptr);
        previous->m_next = this;
    }
}
