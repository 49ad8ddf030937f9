#pragma once

#include "base/ZoGraphConnection.h"
#include "base/ZoListSorted.h"
#include "base/ZoSmartPointer.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoGraphConnectionList: a node's outgoing or incoming connections, kept in ascending order of
/// weight (a new connection goes after those of equal weight). Adding and removing always work on
/// both lists a connection belongs to, its source's outgoing and its target's incoming list, whatever
/// list the call is made on; removal uses the positions stored in the connection (no search).
/// @ingroup graphs
class ZO_API ZoGraphConnectionList
{
public:
    typedef ZoListSorted<ZoSmartPointer<ZoGraphConnection>, ZoSmartPointer<ZoGraphConnection>, 0x21> List;
    typedef List::Position Position;

    ZoGraphConnectionList();
    /// Holds the same connections (handles are shared, not copied); positions stored in the
    /// connections keep naming the source lists.
    ZoGraphConnectionList(const ZoGraphConnectionList& other);
    ZoGraphConnectionList& operator=(const ZoGraphConnectionList& other);
    virtual ~ZoGraphConnectionList();

    /// Inserts into the source's outgoing and the target's incoming list.
    void AddConnection(ZoSmartPointer<ZoGraphConnection> connection);
    /// Removes from the source's outgoing and the target's incoming list at the stored positions.
    /// Requires: the connection is in both lists (not checked).
    void RemoveConnection(ZoSmartPointer<ZoGraphConnection> connection);
    /// Removes every connection of this list from both of its lists.
    void RemoveAllConnections();
    /// Restores ascending weight order after weights were changed (stable).
    void Sort();

    uint32_t GetCount() const { return m_list.GetCount(); }
    int IsEmpty() const { return m_list.IsEmpty(); }
    Position GetHeadPosition() const { return m_list.GetHeadPosition(); }
    const ZoSmartPointer<ZoGraphConnection>& GetHead() const { return m_list.GetHead(); }
    const ZoSmartPointer<ZoGraphConnection>& GetNext(Position& position) const { return m_list.GetNext(position); }

    /// -1 when the second weighs more, +1 when the first does, else 0.
    static int CompareWeights(const ZoSmartPointer<ZoGraphConnection>& first, const ZoSmartPointer<ZoGraphConnection>& second);

private:
    List m_list;
};
