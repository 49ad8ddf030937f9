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
    explicit ZoGraphConnectionIterator(const ZoGraphConnectionList& list) : ZoIterator(list.GetHeadPosition()), m_list(&list) {}

    /// Requires: HasMoreElements(). The current connection; moves on to the next.
    ZoSmartPointer<ZoGraphConnection> GetNext() { return m_list->GetNext(m_position); }
    int HasMoreElements() const { return m_position != nullptr; }
    void Restart() { m_position = m_list->GetHeadPosition(); }

private:
    const ZoGraphConnectionList* m_list;
};
