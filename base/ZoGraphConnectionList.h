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
    /// The underlying list, sorted by weight.
    typedef ZoListSorted<ZoSmartPointer<ZoGraphConnection>, ZoSmartPointer<ZoGraphConnection>, 0x21> List;
    /// Opaque position in the list; null past the tail.
    typedef List::Position Position;

    ZoGraphConnectionList();
    /// Holds the same connections (handles are shared, not copied); positions stored in the
    /// connections keep naming the source lists.
    ZoGraphConnectionList(const ZoGraphConnectionList& other);
    /// Shares `other`'s connection handles, as the copy constructor does.
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

    /// Number of connections; 0 for an empty list.
    uint32_t GetCount() const { return m_list.GetCount(); }
    /// Non-zero when the list holds no connection.
    int IsEmpty() const { return m_list.IsEmpty(); }
    /// Position of the lightest connection; null for an empty list.
    Position GetHeadPosition() const { return m_list.GetHeadPosition(); }
    /// The lightest connection. Requires: the list is not empty (not checked).
    const ZoSmartPointer<ZoGraphConnection>& GetHead() const { return m_list.GetHead(); }
    /// The connection at `position`, moving `position` to the next one (null after the last).
    const ZoSmartPointer<ZoGraphConnection>& GetNext(Position& position) const { return m_list.GetNext(position); }

    /// -1 when the second weighs more, +1 when the first does, else 0.
    static int CompareWeights(const ZoSmartPointer<ZoGraphConnection>& first, const ZoSmartPointer<ZoGraphConnection>& second);

private:
    List m_list;
};
