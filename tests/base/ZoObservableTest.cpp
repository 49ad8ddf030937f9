#include "base/ZoObservable.h"
#include "base/ZoObservableMessage.h"
#include "base/ZoObserver.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

typedef ZoObservableMessage Message;

// Records every notification as "name:type:userdata" into a shared log and runs an optional action.
class RecordingObserver : public ZoObserver
{
public:
    RecordingObserver(const std::string& name, std::vector<std::string>& log) : m_name(name), m_log(log) {}
    std::function<void(ZoObservable&, const ZoObservableMessage&)> action;
    int notifications = 0;

protected:
    void onNotify(ZoObservable& sender, const ZoObservableMessage& message) override
    {
        ++notifications;
        const auto* data = static_cast<const char*>(message.GetUserData());
        m_log.push_back(m_name + ":" + std::to_string(message.GetType()) + ":" + (data != nullptr ? data : "-"));
        if (action)
            action(sender, message);
    }

private:
    std::string m_name;
    std::vector<std::string>& m_log;
};

TEST(ZoObservableTest, DeliversPerTypeInRegistrationOrderWithEachEntrysData)
{
    std::vector<std::string> log;
    ZoObservable subject;
    RecordingObserver first("a", log), second("b", log), everything("all", log);
    char dataA[] = "A", dataB[] = "B", dataC[] = "C", sent[] = "S";
    second.Observe(subject, Message::eMessageChanged, dataB);
    first.Observe(subject, Message::eMessageChanged, dataA);
    first.Observe(subject, Message::eMessageChanged, dataC, 1);
    everything.Observe(subject);
    EXPECT_EQ(subject.GetObserverCount(Message::eMessageChanged), 3u) << "a second registration keeps one entry";
    EXPECT_EQ(subject.GetObserverCount(Message::eMessageUser3), 1u);
    EXPECT_TRUE(subject.IsObserver(first) && subject.IsObserver(first, Message::eMessageChanged) && first.IsObserving(subject));
    EXPECT_FALSE(subject.IsObserver(first, Message::eMessageDeleted));
    subject.NotifyObservers(Message::eMessageChanged);
    subject.NotifyObservers(Message::eMessageUser3);
    subject.SendMessage(Message(Message::eMessageChanged, sent));
    subject.NotifyObservers(static_cast<Message::EMessageType>(21));
    subject.NotifyObservers(static_cast<Message::EMessageType>(-1));
    const std::vector<std::string> expected = {"b:0:B", "a:0:A", "all:0:-", "all:20:-", "b:0:S", "a:0:S", "all:0:S"};
    EXPECT_EQ(log, expected) << "the first registration's user data stays; SendMessage passes its own";
    EXPECT_GT(subject.GetMemoryUsage(), sizeof(ZoObservable));
}

TEST(ZoObservableTest, OnceRegistrationsObserversAddedWhileDeliveringAndThrowingObservers)
{
    std::vector<std::string> log;
    ZoObservable subject;
    RecordingObserver once("once", log);
    once.Observe(subject, Message::eMessageStarted, 1);
    subject.SendMessage(Message(Message::eMessageStarted, nullptr));
    subject.SendMessage(Message(Message::eMessageStarted, nullptr));
    EXPECT_EQ(once.notifications, 2) << "SendMessage ignores the once flag";
    subject.NotifyObservers(Message::eMessageStarted);
    subject.NotifyObservers(Message::eMessageStarted);
    EXPECT_EQ(once.notifications, 3) << "NotifyObservers delivers a once registration exactly once";
    EXPECT_FALSE(subject.IsObserver(once) || subject.GetObserverCount(Message::eMessageStarted) != 0);
    EXPECT_FALSE(once.IsObserving(subject)) << "the observer forgot the observable with its last type";
    // Unregistered before its notification: re-registering inside it is not reached by this delivery.
    once.Observe(subject, Message::eMessageStarted, 1);
    once.action = [&](ZoObservable& sender, const ZoObservableMessage&) {
        EXPECT_FALSE(sender.IsObserver(once));
        once.Observe(sender, Message::eMessageStarted, 1);
    };
    subject.NotifyObservers(Message::eMessageStarted);
    EXPECT_TRUE(once.notifications == 4 && subject.IsObserver(once, Message::eMessageStarted));
    EXPECT_EQ(subject.GetObserverCount(Message::eMessageStarted), 1u) << "the old entry was purged";
    // An observer added during a delivery waits for the next one.
    log.clear();
    RecordingObserver adder("adder", log), late("late", log);
    adder.Observe(subject, Message::eMessageAdded);
    adder.action = [&](ZoObservable& sender, const ZoObservableMessage&) { late.Observe(sender, Message::eMessageAdded); };
    subject.NotifyObservers(Message::eMessageAdded);
    EXPECT_EQ(log, (std::vector<std::string>{"adder:3:-"}));
    // From now on the first observer throws; the one after it is still reached.
    adder.action = [](ZoObservable&, const ZoObservableMessage&) { throw std::runtime_error("observer failed"); };
    EXPECT_NO_THROW(subject.NotifyObservers(Message::eMessageAdded); subject.SendMessage(Message(Message::eMessageAdded, nullptr)));
    EXPECT_EQ(log, (std::vector<std::string>{"adder:3:-", "adder:3:-", "late:3:-", "adder:3:-", "late:3:-"}));
}

TEST(ZoObservableTest, RemovalDuringDeliveryIsPurgedByTheOutermostDeliveryAndLifetimesUnregister)
{
    std::vector<std::string> log;
    ZoObservable subject;
    RecordingObserver leaver("leaver", log), remover("remover", log), victim("victim", log), nester("nester", log);
    for (RecordingObserver* observer : {&leaver, &remover, &victim, &nester})
        observer->Observe(subject, Message::eMessageChanged);
    nester.Observe(subject, Message::eMessageProgress);
    uint32_t entriesDuringDelivery = 4;
    leaver.action = [&](ZoObservable& sender, const ZoObservableMessage&) { leaver.Unobserve(sender); };
    remover.action = [&](ZoObservable& sender, const ZoObservableMessage&) {
        victim.Unobserve(sender, Message::eMessageChanged);
        EXPECT_EQ(sender.GetObserverCount(Message::eMessageChanged), entriesDuringDelivery) << "only marked while delivering";
    };
    nester.action = [&](ZoObservable& sender, const ZoObservableMessage& message) {
        if (message.GetType() == Message::eMessageChanged) {
            sender.NotifyObservers(Message::eMessageProgress);
            EXPECT_EQ(sender.GetObserverCount(Message::eMessageChanged), entriesDuringDelivery)
                << "the nested delivery does not purge";
        }
    };
    subject.NotifyObservers(Message::eMessageChanged);
    const std::vector<std::string> expected = {"leaver:0:-", "remover:0:-", "nester:0:-", "nester:14:-"};
    EXPECT_EQ(log, expected);
    EXPECT_FALSE(subject.GetObserverCount(Message::eMessageChanged) != 2 || subject.IsObserver(leaver) || subject.IsObserver(victim));
    log.clear();
    entriesDuringDelivery = 2;
    subject.NotifyObservers(Message::eMessageChanged);
    EXPECT_EQ(log, (std::vector<std::string>{"remover:0:-", "nester:0:-", "nester:14:-"}));
    // Lifetimes unregister both ways.
    {
        RecordingObserver shortLived("short", log);
        shortLived.Observe(subject);
        EXPECT_EQ(subject.GetObserverCount(Message::eMessageHidden), 1u);
    }
    EXPECT_EQ(subject.GetObserverCount(Message::eMessageHidden), 0u) << "a dying observer unregisters";
    RecordingObserver survivor("survivor", log);
    {
        ZoObservable shortSubject;
        survivor.Observe(shortSubject, Message::eMessageShown);
        survivor.Observe(subject, Message::eMessageShown);
        EXPECT_TRUE(survivor.IsObserving(shortSubject));
    }
    // The dead observable told the observer; the survivor's destructor will not reach it.
    subject.NotifyObservers(Message::eMessageShown);
    EXPECT_EQ(survivor.notifications, 1);
    // An observer that deletes itself while notified.
    auto* selfDeleting = new RecordingObserver("self", log);
    selfDeleting->Observe(subject, Message::eMessageShown);
    selfDeleting->action = [selfDeleting](ZoObservable&, const ZoObservableMessage&) { delete selfDeleting; };
    subject.NotifyObservers(Message::eMessageShown);
    EXPECT_EQ(subject.GetObserverCount(Message::eMessageShown), 1u);
    subject.NotifyObservers(Message::eMessageShown);
    EXPECT_EQ(survivor.notifications, 3);
    ZoObservable copy(subject);
    EXPECT_EQ(copy.GetObserverCount(Message::eMessageShown), 0u) << "a copy starts without observers";
}

} // namespace
