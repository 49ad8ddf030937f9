#pragma once

#include "base/ZoListBase.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoListPolicyNotCloseable<T, flags>: the ring layer of lists that are never closed (flags 0x01).
/// The list is always open: IsClosed() is 0, and the ring position setters of the layers above
/// always throw. The flag field is kept, always 0, so both ring layers have the same fields.
/// @ingroup containers
template <class T, int Flags>
class ZO_TEMPLATE_API ZoListPolicyNotCloseable : public ZoListBase<T, Flags>
{
    typedef ZoListBase<T, Flags> Base;

public:
    /// Always 0: these lists cannot close.
    int IsClosed() const { return 0; }
    /// Always 1: these lists cannot close.
    int IsOpen() const { return 1; }

protected:
    /// An empty list drawing its nodes from `plexManager`.
    explicit ZoListPolicyNotCloseable(ZoSmartPointer<typename Base::PlexManager> plexManager)
        : Base(std::move(plexManager)), m_closed(0)
    {
    }
    ~ZoListPolicyNotCloseable() = default;

    /// Ignored: these lists stay open.
    void setClosedState(int) {}
    /// Nothing to tie: the list is never a ring.
    void linkRing() {}
    /// Nothing to cut: the list is never a ring.
    void unlinkRing() {}

    /// Always 0; kept so that both ring policies have the same layout.
    int32_t m_closed;
};
