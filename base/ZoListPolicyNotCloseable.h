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
    int IsClosed() const { return 0; }
    int IsOpen() const { return 1; }

protected:
    explicit ZoListPolicyNotCloseable(ZoSmartPointer<typename Base::PlexManager> plexManager)
        : Base(std::move(plexManager)), m_closed(0)
    {
    }
    ~ZoListPolicyNotCloseable() = default;

    void setClosedState(int) {}
    void linkRing() {}
    void unlinkRing() {}

    int32_t m_closed;
};
