#include "base/ZoObservable.h"

#include "base/ZoObserver.h"
#include "platform/ZoOS.h"

ZoObservable::ZoObservable() : m_lists(ZoObservableMessage::eMessageTypeCount, 10), m_dispatchDepth(0) {}

ZoObservable::ZoObservable(const ZoObservable&) : ZoObservable() {}

ZoObservable& ZoObservable::operator=(const ZoObservable&)
{
    return *this;
}

ZoObservable::~ZoObservable()
{
    removeObservers();
}

void ZoObservable::NotifyObservers(EMessageType type)
{
    deliver(type, nullptr);
}

void ZoObservable::SendMessage(const ZoObservableMessage& message)
{
    deliver(message.GetType(), &message);
}

bool ZoObservable::IsObserver(const ZoObserver& observer) const
{
    for (uint32_t type = 0; type < m_lists.GetCount(); ++type)
        if (IsObserver(observer, static_cast<EMessageType>(type)))
            return true;
    return false;
}

bool ZoObservable::IsObserver(const ZoObserver& observer, EMessageType type) const
{
    if (!isValidType(type))
        return false;
    const ObserverList& list = m_lists[type];
    for (ObserverList::Position position = list.GetHeadPosition(); position != nullptr;)
        if (list.GetNext(position).observer == &observer)
            return true;
    return false;
}

uint32_t ZoObservable::GetObserverCount(EMessageType type) const
{
    return isValidType(type) ? m_lists[type].GetCount() : 0;
}

uint32_t ZoObservable::GetMemoryUsage() const
{
    return static_cast<uint32_t>(sizeof(*this) + m_lists.GetMemoryElementCount() * sizeof(ObserverList)) +
           m_lists.GetPlexManager()->GetMemoryUsage();
}

void ZoObservable::addObserver(ZoObserver& observer, EMessageType type, void* userData, int once)
{
    if (!isValidType(type) || IsObserver(observer, type))
        return;
    m_lists[type].AddTail(ZoObserverInfo{&observer, userData, once});
}

void ZoObservable::addObserver(ZoObserver& observer, EMessageType type, int once)
{
    addObserver(observer, type, nullptr, once);
}

void ZoObservable::addObserver(ZoObserver& observer, void* userData, int once)
{
    for (int32_t type = 0; type < ZoObservableMessage::eMessageTypeCount; ++type)
        addObserver(observer, static_cast<EMessageType>(type), userData, once);
}

void ZoObservable::addObserver(ZoObserver& observer, int once)
{
    addObserver(observer, static_cast<void*>(nullptr), once);
}

void ZoObservable::removeObserver(const ZoObserver& observer)
{
    for (int32_t type = 0; type < ZoObservableMessage::eMessageTypeCount; ++type)
        removeObserver(observer, static_cast<EMessageType>(type));
}

void ZoObservable::removeObserver(const ZoObserver& observer, EMessageType type)
{
    if (!isValidType(type))
        return;
    ObserverList& list = m_lists[type];
    for (ObserverList::Position position = list.GetHeadPosition(); position != nullptr;) {
        const ObserverList::Position current = position;
        ZoObserverInfo& info = list.GetNext(position);
        if (info.observer != &observer)
            continue;
        // A delivery in progress holds positions into the list: mark now, unlink when it ends.
        if (m_dispatchDepth > 0)
            info.observer = nullptr;
        else
            list.RemoveAt(current);
    }
}

void ZoObservable::removeObservers()
{
    for (uint32_t type = 0; type < m_lists.GetCount(); ++type) {
        ObserverList& list = m_lists[type];
        for (ObserverList::Position position = list.GetHeadPosition(); position != nullptr;) {
            ZoObserverInfo& info = list.GetNext(position);
            if (info.observer != nullptr) {
                info.observer->RemoveObservable(*this);
                info.observer = nullptr;
            }
        }
    }
    if (m_dispatchDepth == 0)
        purge();
}

void ZoObservable::deliver(EMessageType type, const ZoObservableMessage* message)
{
    if (!isValidType(type))
        return;
    ++m_dispatchDepth;
    ObserverList& list = m_lists[type];
    // The walk ends with the entry that is the tail now: entries added meanwhile wait for the next
    // delivery. No entry is unlinked while the depth is above 0, so the positions stay valid.
    const ObserverList::Position last = list.GetTailPosition();
    for (ObserverList::Position position = list.GetHeadPosition(); position != nullptr;) {
        const ObserverList::Position current = position;
        position = current == last ? nullptr : list.GetNextPosition(current);
        const ZoObserverInfo& info = list.GetAt(current);
        ZoObserver* const observer = info.observer;
        if (observer == nullptr)
            continue;
        try {
            if (message != nullptr) {
                observer->onNotify(*this, *message);
            } else {
                const ZoObservableMessage own(type, info.userData);
                if (info.once)
                    observer->Unobserve(*this, type);
                observer->onNotify(*this, own);
            }
        } catch (...) {
            ZoOS::RethrowThreadCancellation();
        }
    }
    if (--m_dispatchDepth == 0)
        purge();
}

void ZoObservable::purge()
{
    for (uint32_t type = 0; type < m_lists.GetCount(); ++type) {
        ObserverList& list = m_lists[type];
        for (ObserverList::Position position = list.GetHeadPosition(); position != nullptr;) {
            const ObserverList::Position current = position;
            if (list.GetNext(position).observer == nullptr)
                list.RemoveAt(current);
        }
    }
}
