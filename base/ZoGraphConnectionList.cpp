#include "base/ZoGraphConnectionList.h"

#include "base/ZoGraphNode.h"

ZoGraphConnectionList::ZoGraphConnectionList() : m_list(10)
{
}

ZoGraphConnectionList::ZoGraphConnectionList(const ZoGraphConnectionList& other) : m_list(other.m_list, 0)
{
}

ZoGraphConnectionList& ZoGraphConnectionList::operator=(const ZoGraphConnectionList& other)
{
    m_list = other.m_list;
    return *this;
}

ZoGraphConnectionList::~ZoGraphConnectionList() = default;

int ZoGraphConnectionList::CompareWeights(const ZoSmartPointer<ZoGraphConnection>& first, const ZoSmartPointer<ZoGraphConnection>& second)
{
    if (second->GetWeight() > first->GetWeight())
        return -1;
    return first->GetWeight() > second->GetWeight() ? 1 : 0;
}

void ZoGraphConnectionList::AddConnection(ZoSmartPointer<ZoGraphConnection> connection)
{
    ZoGraphConnection& added = *connection;
    added.m_sourcePosition = added.m_source->GetOutgoingConnections().m_list.InsertSorted(&CompareWeights, connection);
    added.m_targetPosition = added.m_target->GetIncomingConnections().m_list.InsertSorted(&CompareWeights, connection);
}

void ZoGraphConnectionList::RemoveConnection(ZoSmartPointer<ZoGraphConnection> connection)
{
    // `connection` holds a reference of its own, so the object outlives both removals.
    ZoGraphConnection& removed = *connection;
    removed.m_source->GetOutgoingConnections().m_list.RemoveAt(removed.m_sourcePosition);
    removed.m_target->GetIncomingConnections().m_list.RemoveAt(removed.m_targetPosition);
    removed.m_sourcePosition = nullptr;
    removed.m_targetPosition = nullptr;
}

void ZoGraphConnectionList::RemoveAllConnections()
{
    while (!m_list.IsEmpty()) {
        const ZoSmartPointer<ZoGraphConnection> head = m_list.GetHead();
        RemoveConnection(head);
        // A copied list is neither of the connection's own lists: drop the handle here as well.
        if (!m_list.IsEmpty() && m_list.GetHead() == head)
            m_list.RemoveHead();
    }
}

void ZoGraphConnectionList::Sort()
{
    m_list.BubbleSort(&CompareWeights);
}

template class ZoListSorted<ZoSmartPointer<ZoGraphConnection>, ZoSmartPointer<ZoGraphConnection>, 0x21>;
