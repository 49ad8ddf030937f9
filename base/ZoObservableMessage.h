#pragma once

#include "platform/ZoExport.h"

#include <cstdint>

/// ZoObservableMessage: what a ZoObservable delivers to its observers: the message type and a user
/// data pointer (the one the observer registered with, for NotifyObservers; the sender's, for
/// SendMessage). A small value; the observable builds one per delivery.
/// @ingroup concurrency
class ZO_API ZoObservableMessage
{
public:
    /// One observer list per type; eMessageTypeCount is the number of types, not a type.
    enum EMessageType : int32_t
    {
        eMessageChanged = 0,
        eMessageCreated = 1,
        eMessageDeleted = 2,
        eMessageAdded = 3,
        eMessageRemoved = 4,
        eMessageMoved = 5,
        eMessageResized = 6,
        eMessageSelected = 7,
        eMessageDeselected = 8,
        eMessageActivated = 9,
        eMessageDeactivated = 10,
        eMessageShown = 11,
        eMessageHidden = 12,
        eMessageStarted = 13,
        eMessageProgress = 14,
        eMessageFinished = 15,
        eMessageCancelled = 16,
        eMessageError = 17,
        eMessageUser1 = 18,
        eMessageUser2 = 19,
        eMessageUser3 = 20,
        eMessageTypeCount = 21,
    };

    /// A message of `type` carrying `userData`, which the message does not own.
    ZoObservableMessage(EMessageType type, void* userData);

    /// The type the message was sent or notified as.
    EMessageType GetType() const { return m_type; }
    /// The registration's (or the sender's) user data; may be null.
    void* GetUserData() const { return m_userData; }

private:
    EMessageType m_type;
    void* m_userData;
};
