#include "base/ZoEvent.h"

#include "base/ZoArray.h"
#include "platform/ZoOS.h"

ZoEvent::ZoEvent(bool manualReset) : m_handle(ZoOS::CreateEventObject(manualReset, false)) {}

ZoEvent::ZoEvent(const ZoEvent& other) : m_handle(ZoOS::DuplicateObjectHandle(other.m_handle, true)) {}

void ZoEvent::operator=(const ZoEvent& other)
{
    // Closing first would leave nothing to duplicate: an event assigned to itself keeps its handle.
    if (this == &other)
        return;
    if (m_handle != nullptr)
        ZoOS::CloseObjectHandle(m_handle);
    m_handle = ZoOS::DuplicateObjectHandle(other.m_handle, true);
}

ZoEvent::~ZoEvent()
{
    if (m_handle != nullptr)
        ZoOS::CloseObjectHandle(m_handle);
}

bool ZoEvent::Set()
{
    ZoOS::SetLastErrorCode(0);
    return ZoOS::SetEventObject(m_handle);
}

bool ZoEvent::Reset()
{
    ZoOS::SetLastErrorCode(0);
    return ZoOS::ResetEventObject(m_handle);
}

bool ZoEvent::Pulse()
{
    ZoOS::SetLastErrorCode(0);
    return ZoOS::PulseEventObject(m_handle);
}

bool ZoEvent::IsSet() const
{
    ZoOS::SetLastErrorCode(0);
    return ZoOS::WaitForObject(m_handle, 0) == ZoOS::sc_waitObject0;
}

ZoEvent::EWaitResult ZoEvent::Wait(unsigned int timeoutMs) const
{
    return WaitForSingleEvent(*this, timeoutMs);
}

ZoEvent::EWaitResult ZoEvent::WaitForSingleEvent(const ZoEvent& event, unsigned int timeoutMs)
{
    ZoOS::SetLastErrorCode(0);
    switch (ZoOS::WaitForObject(event.m_handle, timeoutMs)) {
    case ZoOS::sc_waitObject0:
        return eWaitSignaled;
    case ZoOS::sc_waitTimeout:
        return eWaitTimeout;
    default:
        return eWaitFailed;
    }
}

ZoEvent::EWaitResult ZoEvent::WaitForMultipleEvents(const ZoArray<ZoEvent, 0>& events, bool waitAll, unsigned int timeoutMs)
{
    ZoOS::SetLastErrorCode(0);
    // ZoEvent is one handle, so the element storage is the handle array the system wants.
    const HANDLE* handles = reinterpret_cast<const HANDLE*>(events.GetData());
    const uint32_t result = ZoOS::WaitForObjects(events.GetCount(), handles, waitAll, timeoutMs);
    return result == ZoOS::sc_waitTimeout ? eWaitTimeout : eWaitSignaled;
}
