#pragma once

#include "base/ZoArrayOfLists.h"
#include "base/ZoObservableMessage.h"
#include "platform/ZoExport.h"
// On Windows the system headers turn SendMessage into SendMessageW; the declaration and every
// caller must see the same spelling.
#include "platform/ZoWindowsTypes.h"

#include <cstdint>

class ZoObserver;

/// One entry of an observer list. `observer` is null once the entry was removed during a delivery;
/// a `once` entry is removed just before its first notification by NotifyObservers.
/// @ingroup concurrency
struct ZoObserverInfo
{
    /// The observer; null once the entry was removed during a delivery.
    ZoObserver* observer;
    /// Handed back in every message of NotifyObservers to this entry.
    void* userData;
    /// Non-zero: the entry is removed just before its first NotifyObservers message.
    int once;

    /// True when all three fields are equal.
    bool operator==(const ZoObserverInfo& other) const
    {
        return observer == other.observer && userData == other.userData && once == other.once;
    }
};

/// ZoObservable: the subject of the library's observer mechanism. It keeps one observer list per
/// message type (21 types) in registration order and delivers messages to them. Observers register
/// through ZoObserver::Observe and leave through Unobserve or their destruction.
///
/// Delivery is safe against the observers' own changes: an observer removed during a delivery (by
/// itself, by another observer, by its destruction) is only marked, never notified again, and the
/// marked entries are purged when the outermost delivery on this object ends; observers added during
/// a delivery are not reached by it. Deliveries may nest. An exception thrown by an observer is
/// swallowed and the delivery goes on with the next observer.
///
/// Not synchronised: an observable is used from one thread, or guarded by its owner. It must not be
/// destroyed from inside one of its own deliveries.
/// @ingroup concurrency
class ZO_API ZoObservable
{
public:
    /// Message type: an index 0..20 of the observer lists.
    typedef ZoObservableMessage::EMessageType EMessageType;

    ZoObservable();
    /// A copy starts without observers: observers register with the objects they know of.
    ZoObservable(const ZoObservable& other);
    /// Keeps this object's own observers.
    ZoObservable& operator=(const ZoObservable& other);
    /// Tells the remaining observers to forget this object.
    virtual ~ZoObservable();

    /// Delivers to each entry of the type's list a message of `type` and the entry's own user data.
    /// A once entry is unregistered just before it is notified. A type outside 0..20 reaches nobody.
    void NotifyObservers(EMessageType type);
    /// Delivers the message as it is to each entry of its type's list; once entries stay registered.
    void SendMessage(const ZoObservableMessage& message);

    /// Registered for any type (for the given type), not counting entries removed during a delivery.
    bool IsObserver(const ZoObserver& observer) const;
    /// Registered for `type`; false for a type outside 0..20.
    bool IsObserver(const ZoObserver& observer, EMessageType type) const;
    /// The entries of the type's list, including those removed during a delivery that is still
    /// going on (they are purged when it ends).
    uint32_t GetObserverCount(EMessageType type) const;
    /// This object, its array of lists and the lists' node pool, in bytes.
    uint32_t GetMemoryUsage() const;

private:
    friend class ZoObserver;
    typedef ZoArrayOfLists<ZoObserverInfo, 0x21> ObserverLists;
    typedef ObserverLists::List ObserverList;

    /// Appends (observer, user data, once) to the type's list, or to every list, unless the observer
    /// stands in that list already (the first registration's user data and once flag then stay).
    void addObserver(ZoObserver& observer, EMessageType type, void* userData, int once);
    void addObserver(ZoObserver& observer, EMessageType type, int once);
    void addObserver(ZoObserver& observer, void* userData, int once);
    void addObserver(ZoObserver& observer, int once);
    /// Unlinks the observer's entries, or only marks them while a delivery is going on.
    void removeObserver(const ZoObserver& observer);
    void removeObserver(const ZoObserver& observer, EMessageType type);
    /// Forgets every observer (telling each to forget this object).
    void removeObservers();

    /// `message` null: NotifyObservers (a message per entry, once entries honoured).
    void deliver(EMessageType type, const ZoObservableMessage* message);
    void purge();
    static bool isValidType(EMessageType type) { return type >= 0 && type < ZoObservableMessage::eMessageTypeCount; }

    ObserverLists m_lists;
    uint32_t m_dispatchDepth;
};
