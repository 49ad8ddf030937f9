#pragma once

#include "base/ZoGraphConnectionList.h"
#include "base/ZoIterator.h"
#include "base/ZoSmartPointer.h"
#include "platform/ZoExport.h"

/// ZoGraphConnectionIterator: walks one connection list (lightest connection first).
/// @ingroup graphs
class ZO_API ZoGraphConnectionIterator : public ZoIterator<ZoSmartPointer<ZoGraphConnection>, ZoGraphConnectionIterator>
{
public:
    /// Starts at the head of `list`, which must outlive the iterator.
    explicit ZoGraphConnectionIterator(const ZoGraphConnectionList& list) : ZoIterator(list.GetHeadPosition()), m_list(&list) {}

    /// Requires: HasMoreElements(). The current connection; moves on to the next.
    ZoSmartPointer<ZoGraphConnection> GetNext() { return m_list->GetNext(m_position); }
    /// Non-zero while GetNext has a connection to return.
    int HasMoreElements() const { return m_position != nullptr; }
    /// Goes back to the head of the list.
    void Restart() { m_position = m_list->GetHeadPosition(); }

private:
    const ZoGraphConnectionList* m_list;
};
