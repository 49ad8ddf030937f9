#pragma once

#include "base/ZoListBase.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoListPolicyCloseable<T, flags>: the ring layer of lists that may be closed (flags 0x02). A closed
/// list links its tail to its head and its head back to its tail; while the flag is set every
/// operation of the layers above keeps the ring linked, and walks that follow `next` wrap around.
/// Closing or opening an empty list only sets the flag: the first node added then forms the ring.
/// @ingroup containers
template <class T, int Flags>
class ZO_TEMPLATE_API ZoListPolicyCloseable : public ZoListBase<T, Flags>
{
    typedef ZoListBase<T, Flags> Base;

public:
    /// Ties the tail to the head; Find then stops before comparing anything (see ZoList).
    void SetClosed()
    {
        m_closed = 1;
        linkRing();
    }
    /// Cuts the ring; the head's `prev` and the tail's `next` become null.
    void SetOpen()
    {
        unlinkRing();
        m_closed = 0;
    }
    /// Non-zero while the list is a ring.
    int IsClosed() const { return m_closed == 1; }
    /// Non-zero while the list has null ends.
    int IsOpen() const { return m_closed == 0; }

protected:
    /// An open, empty list drawing its nodes from `plexManager`.
    explicit ZoListPolicyCloseable(ZoSmartPointer<typename Base::PlexManager> plexManager)
        : Base(std::move(plexManager)), m_closed(0)
    {
    }
    ~ZoListPolicyCloseable() = default;

    /// Closes (non-zero) or opens (0) the list, as a copy takes its source's state.
    void setClosedState(int closed)
    {
        if (closed)
            SetClosed();
        else
            SetOpen();
    }
    /// Ties the ends together when the list is closed.
    void linkRing()
    {
        if (m_closed && this->m_head != nullptr) {
            this->m_tail->next = this->m_head;
            this->m_head->prev = this->m_tail;
        }
    }
    /// Cuts the ends apart, so that the list can be rearranged as an open one.
    void unlinkRing()
    {
        if (this->m_head != nullptr) {
            this->m_tail->next = nullptr;
            this->m_head->prev = nullptr;
        }
    }

    /// 1 while the list is a ring, 0 while it is open.
    int32_t m_closed;
};
