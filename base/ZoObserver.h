#pragma once

#include "base/ZoList.h"
#include "base/ZoObservable.h"
#include "base/ZoObservableMessage.h"
#include "platform/ZoExport.h"

/// ZoObserver: the base of objects that observe ZoObservable objects. A derived class implements
/// onNotify, which the observable calls with itself and the message. The observer keeps the set of
/// observables it is registered with, so that its destructor unregisters from all of them; an
/// observable that dies first tells its observers to forget it.
///
/// Registration forms: for one message type or for all 21, with or without user data (handed back in
/// each message of NotifyObservers), and `once` (the registration ends just before its first
/// notification by NotifyObservers). Registering again for a type already observed changes nothing.
///
/// Like the observable, an observer belongs to one thread.
/// @ingroup concurrency
class ZO_API ZoObserver
{
public:
    /// Message type: an index 0..20 of the observer lists.
    typedef ZoObservableMessage::EMessageType EMessageType;

    ZoObserver();
    /// A copy observes nothing: registrations belong to the object that made them.
    ZoObserver(const ZoObserver& other);
    /// Keeps this object's own registrations.
    ZoObserver& operator=(const ZoObserver& other);
    /// Unregisters from every observable it observes.
    virtual ~ZoObserver();

    /// Registers for messages of `type`, which carry `userData`; `once` non-zero unregisters before the first notification. A repeated registration keeps the first's user data and once flag.
    void Observe(ZoObservable& observable, EMessageType type, void* userData, int once = 0);
    /// Registers for messages of `type` with null user data; `once` as above.
    void Observe(ZoObservable& observable, EMessageType type, int once = 0);
    /// For every message type.
    void Observe(ZoObservable& observable, void* userData, int once = 0);
    /// Registers for every message type with null user data; `once` as above.
    void Observe(ZoObservable& observable, int once = 0);
    /// Ends the registration for one type; the observable is forgotten once no type is left.
    void Unobserve(ZoObservable& observable, EMessageType type);
    /// Ends every registration with the observable.
    void Unobserve(ZoObservable& observable);
    /// True while any registration with `observable` stands.
    bool IsObserving(const ZoObservable& observable) const;

protected:
    friend class ZoObservable;
    /// Called by `sender` for each message delivered to this observer. An exception is swallowed by
    /// the sender.
    virtual void onNotify(ZoObservable& sender, const ZoObservableMessage& message) = 0;

private:
    void rememberObservable(ZoObservable& observable);
    /// Forgets the observable without unregistering (it is going away or has dropped this observer).
    void RemoveObservable(const ZoObservable& observable);

    ZoList<ZoObservable*, 0x21> m_observables;
};
