/// @class ZoArrayOfLists
/// ZoArrayOfLists<E, listFlags, policy>: a ZoArrayManaged of ZoList<E, listFlags> whose lists all
/// draw their nodes from one pool, so that many small lists (an observer list per slot, say) share
/// blocks instead of each keeping a partly used block of its own, and splice among themselves without
/// copying.
///
/// Every list the array creates, whether default-constructed or copied in, is built on the array's
/// pool; a list copied in gets copies of the source's elements in pool nodes. A copy of the array
/// shares the source's pool (both then belong to one thread at a time); assignment keeps the pool the
/// array already has.
/// @ingroup containers
#pragma once

#include "base/ZoArrayManaged.h"
#include "base/ZoList.h"
#include "base/ZoSmartPointer.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <new>
#include <utility>

template <class E, int ListFlags, int Policy = 0>
class ZO_TEMPLATE_API ZoArrayOfLists : public ZoArrayManaged<ZoList<E, ListFlags>, Policy>
{
    typedef ZoArrayManaged<ZoList<E, ListFlags>, Policy> Base;

public:
    /// The element type: a list whose nodes come from the array's pool.
    typedef ZoList<E, ListFlags> List;
    /// The node pool the lists share; reference-counted, so lists and arrays may hold it together.
    typedef typename List::PlexManager PlexManager;

    /// An empty array with a pool of its own (10 nodes per block, as the library builds lists).
    ZoArrayOfLists() : m_plexManager(new PlexManager(10)) {}
    /// `count` empty lists on a new pool of `nodesPerBlock` nodes per block.
    explicit ZoArrayOfLists(uint32_t count, uint32_t nodesPerBlock = 10) : m_plexManager(new PlexManager(nodesPerBlock))
    {
        this->SetElementCount(count, 0);
    }
    /// `count` empty lists on the given pool.
    explicit ZoArrayOfLists(ZoSmartPointer<PlexManager> plexManager, uint32_t count = 0) : m_plexManager(std::move(plexManager))
    {
        this->SetElementCount(count, 0);
    }
    /// Shares the source's pool and copies its grow setting and lists (their elements into new nodes
    /// of that pool).
    ZoArrayOfLists(const ZoArrayOfLists& other) : Base(), m_plexManager(other.m_plexManager)
    {
        this->copyPolicy(other);
        this->Add(other, 0);
    }
    /// Copies the source's lists element by element; this array keeps its own pool, so lists made
    /// here are built on it.
    ZoArrayOfLists& operator=(const ZoArrayOfLists& other)
    {
        Base::operator=(other);
        return *this;
    }
    ~ZoArrayOfLists() override = default;

    /// The pool every list of this array draws from; pass it to lists that should splice with these.
    const ZoSmartPointer<PlexManager>& GetPlexManager() const { return m_plexManager; }

protected:
    /// Builds a list on the array's pool at `at` and copies `from`'s elements into it; on a throw
    /// the slot is left unconstructed.
    void constructElement(List* at, const List& from) override
    {
        new (at) List(m_plexManager);
        try {
            *at = from;
        } catch (...) {
            at->~List();
            throw;
        }
    }
    /// Builds an empty list on the array's pool at `at`.
    void constructElement(List* at) override { new (at) List(m_plexManager); }

private:
    ZoSmartPointer<PlexManager> m_plexManager;
};
