// Messengers and replies: who gets an answer, when, and what happens when somebody is gone.

#include <gtest/gtest.h>

#include <AppDefs.h>
#include <Looper.h>
#include <Messenger.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <random>
#include <utility>
#include <vector>

#include "app/Mailbox.h"

namespace {

// Does what the test says with each message.
class Answerer : public BLooper {
public:
    using Deed = std::function<void(BMessage*)>;
    explicit Answerer(Deed deed) : BLooper("answerer"), fDeed(deed) {}
    void MessageReceived(BMessage* message) override { fDeed(message); }

private:
    Deed fDeed;
};

}  // namespace

TEST(Messenger, WaitsForTheReply)
{
    auto* looper = new Answerer([](BMessage* message) {
        EXPECT_TRUE(message->WasDelivered());
        EXPECT_TRUE(message->IsSourceWaiting());
        EXPECT_FALSE(message->IsSourceRemote());
        BMessage reply('answ');
        reply.AddInt32("doubled", message->FindInt32("number") * 2);
        EXPECT_EQ(B_OK, message->SendReply(&reply));
        EXPECT_FALSE(message->IsSourceWaiting());
        EXPECT_EQ(B_DUPLICATE_REPLY, message->SendReply('more'));
    });
    looper->Run();
    QuitAtEnd quit(looper);
    BMessage message('askk'), reply;
    message.AddInt32("number", 21);
    ASSERT_EQ(B_OK, BMessenger(looper).SendMessage(&message, &reply));
    EXPECT_EQ(uint32('answ'), reply.what);
    EXPECT_EQ(42, reply.FindInt32("doubled"));
    EXPECT_TRUE(reply.IsReply());
    ASSERT_NE(nullptr, reply.Previous());
    EXPECT_EQ(21, reply.Previous()->FindInt32("number"));
    EXPECT_FALSE(message.WasDelivered()) << "a copy went";
}

TEST(Messenger, UnansweredMessageGivesNoReply)
{
    auto* looper = new Answerer([](BMessage*) {});
    looper->Run();
    QuitAtEnd quit(looper);
    BMessage reply;
    ASSERT_EQ(B_OK, BMessenger(looper).SendMessage('askk', &reply));
    EXPECT_EQ(static_cast<uint32>(B_NO_REPLY), reply.what);
}

TEST(Messenger, ReplyTimeoutEndsTheWaitAndALateAnswerIsHarmless)
{
    Mailbox mail;
    BMessage* kept = nullptr;
    Answerer* looper = nullptr;
    looper = new Answerer([&](BMessage*) {
        kept = looper->DetachCurrentMessage();
        mail.Put(BMessage('kept'));
    });
    looper->Run();
    QuitAtEnd quit(looper);
    BMessage message('askk'), reply('same');
    EXPECT_EQ(B_TIMED_OUT,
              BMessenger(looper).SendMessage(&message, &reply, B_INFINITE_TIMEOUT, 1000));
    EXPECT_EQ(uint32('same'), reply.what);
    ASSERT_EQ(uint32('kept'), mail.TakeWhat());
    EXPECT_EQ(B_BAD_PORT_ID, kept->SendReply('late'));
    delete kept;
}

TEST(Messenger, PassedOnMessageIsAnsweredByTheLastOne)
{
    auto* second = new Answerer([](BMessage* message) { message->SendReply('from'); });
    second->Run();
    QuitAtEnd quit_second(second);
    BMessage* kept = nullptr;
    Answerer* first = nullptr;
    Mailbox mail;
    first = new Answerer([&](BMessage* message) {
        // The answer to the copy does not count as one to the original.
        kept = first->DetachCurrentMessage();
        BMessage reply;
        EXPECT_EQ(B_OK, BMessenger(second).SendMessage(message, &reply));
        kept->SendReply(&reply);
        delete kept;
    });
    first->Run();
    QuitAtEnd quit_first(first);
    BMessage reply;
    ASSERT_EQ(B_OK, BMessenger(first).SendMessage('askk', &reply));
    EXPECT_EQ(uint32('from'), reply.what);
}

TEST(Messenger, ReplyMayBeAnsweredInItsTurn)
{
    std::atomic<uint32> last{0};
    auto* looper = new Answerer([&](BMessage* message) {
        BMessage reply('seco'), third;
        EXPECT_EQ(B_OK, message->SendReply(&reply, &third));
        last = third.what;
    });
    looper->Run();
    {
        BMessage reply;
        ASSERT_EQ(B_OK, BMessenger(looper).SendMessage('firs', &reply));
        EXPECT_EQ(uint32('seco'), reply.what);
        EXPECT_TRUE(reply.IsSourceWaiting());
        EXPECT_EQ(B_OK, reply.SendReply('thir'));
    }
    looper->Lock();
    looper->Quit();
    EXPECT_EQ(uint32('thir'), last);
}

TEST(Messenger, AsynchronousReplyComesToTheNamedHandler)
{
    Mailbox own, named;
    auto* home = new ListeningLooper(own);
    ListeningHandler handler(named);
    home->AddHandler(&handler);
    home->Run();
    QuitAtEnd quit_home(home);
    auto* looper = new Answerer([](BMessage* message) {
        EXPECT_FALSE(message->IsSourceWaiting());
        EXPECT_EQ(B_OK, message->SendReply('one1'));
        EXPECT_EQ(B_OK, message->SendReply('two2')) << "nobody waits, so there may be many";
    });
    looper->Run();
    QuitAtEnd quit(looper);
    BMessage message('askk');
    EXPECT_EQ(B_OK, BMessenger(looper).SendMessage(&message, &handler));
    EXPECT_EQ(uint32('one1'), named.TakeWhat());
    EXPECT_EQ(uint32('two2'), named.TakeWhat());
    EXPECT_EQ(B_OK, looper->PostMessage('post', looper, home));
    EXPECT_EQ(uint32('one1'), own.TakeWhat());
    EXPECT_EQ(B_BAD_REPLY, message.SendReply('none')) << "never delivered itself";
    home->Lock();
    home->RemoveHandler(&handler);
    home->Unlock();
}

TEST(Messenger, LooperThatWouldWaitForItselfIsTold)
{
    std::atomic<status_t> status{B_OK}, timed{B_OK};
    Answerer* looper = nullptr;
    looper = new Answerer([&](BMessage* message) {
        if (message->what == 'inne')  // the one that timed out
            return;
        BMessage inner('inne'), reply;
        status = BMessenger(looper).SendMessage(&inner, &reply);
        timed = BMessenger(looper).SendMessage(&inner, &reply, 0, 1000);
        message->SendReply('done');
    });
    looper->Run();
    QuitAtEnd quit(looper);
    BMessage reply;
    ASSERT_EQ(B_OK, BMessenger(looper).SendMessage('askk', &reply));
    EXPECT_EQ(uint32('done'), reply.what);
    EXPECT_EQ(B_MESSAGE_TO_SELF, status);
    EXPECT_EQ(B_TIMED_OUT, timed);
}

TEST(Messenger, SenderIsWokenWhenTheTargetQuits)
{
    Answerer* looper = nullptr;
    looper = new Answerer([&](BMessage*) { looper->Quit(); });
    looper->Run();
    BMessage reply;
    const BMessenger messenger(looper);
    ASSERT_EQ(B_OK, messenger.SendMessage('askk', &reply));
    EXPECT_EQ(static_cast<uint32>(B_NO_REPLY), reply.what);
    EXPECT_EQ(B_BAD_PORT_ID, messenger.SendMessage('askk', &reply));
    EXPECT_EQ(B_BAD_PORT_ID, messenger.SendMessage('askk'));
    EXPECT_FALSE(messenger.LockTarget());
    EXPECT_EQ(B_BAD_VALUE, messenger.LockTargetWithTimeout(0));
    BLooper* target = looper;
    EXPECT_EQ(nullptr, messenger.Target(&target));
    EXPECT_EQ(nullptr, target);
}

TEST(Messenger, NamesAHandlerAndItsLooper)
{
    Mailbox mail;
    auto* looper = new ListeningLooper(mail);
    auto* other = new ListeningLooper(mail);
    other->Run();
    auto* handler = new ListeningHandler(mail);
    status_t status;
    BMessenger(handler, nullptr, &status);
    EXPECT_EQ(B_BAD_HANDLER, status);
    BMessenger(static_cast<BHandler*>(nullptr), nullptr, &status);
    EXPECT_EQ(B_BAD_VALUE, status);
    looper->AddHandler(handler);
    BMessenger(handler, other, &status);
    EXPECT_EQ(B_MISMATCHED_VALUES, status);
    looper->Run();

    BMessenger to_handler(handler), to_looper(looper), preferred(nullptr, looper), none;
    EXPECT_TRUE(to_handler.IsValid() && to_looper.IsValid() && preferred.IsValid());
    EXPECT_FALSE(none.IsValid() || none.IsTargetLocal());
    BLooper* found = nullptr;
    EXPECT_EQ(handler, to_handler.Target(&found));
    EXPECT_EQ(looper, found);
    EXPECT_EQ(looper, to_looper.Target(nullptr));
    EXPECT_EQ(nullptr, preferred.Target(&found)) << "decided when a message is dispatched";
    EXPECT_EQ(looper, found);
    EXPECT_EQ(to_handler, BMessenger(handler, looper));
    EXPECT_NE(to_handler, to_looper);
    EXPECT_NE(to_looper < to_handler, to_handler < to_looper);
    EXPECT_EQ(to_handler.HashValue(), BMessenger(handler).HashValue());

    ASSERT_TRUE(to_handler.LockTarget());
    EXPECT_TRUE(looper->IsLocked());
    BMessage message;
    message.AddMessenger("mgr", to_handler);
    delete handler;
    looper->Unlock();
    EXPECT_FALSE(to_handler.IsValid());
    EXPECT_FALSE(to_handler.LockTarget());
    EXPECT_FALSE(looper->IsLocked());
    BMessenger read;
    EXPECT_EQ(B_OK, message.FindMessenger("mgr", &read));
    EXPECT_EQ(to_handler, read);
    to_handler.SendMessage('lost');
    to_looper.SendMessage('here');
    EXPECT_EQ(uint32('here'), mail.TakeWhat());
    EXPECT_EQ(B_BAD_VALUE, to_looper.SendMessage(static_cast<BMessage*>(nullptr)));
    for (BLooper* each : {looper, other}) {
        each->Lock();
        each->Quit();
    }
}

// Thousands come and go in no order: those that stay are found, and nobody takes their place.
TEST(Messenger, FindsItsHandlerAmongManyThatComeAndGo)
{
    std::minstd_rand random(3);
    auto* looper = new Answerer([](BMessage*) {});
    looper->Lock();
    std::vector<std::pair<std::unique_ptr<BHandler>, BMessenger>> all;
    for (int round = 0; round < 4; round++) {
        for (int i = 0; i < 1500; i++) {
            auto handler = std::make_unique<BHandler>();
            looper->AddHandler(handler.get());
            const BMessenger messenger(handler.get());
            all.emplace_back(std::move(handler), messenger);
        }
        std::shuffle(all.begin(), all.end(), random);
        for (size_t i = 0; i < all.size(); i++) {
            if (i % 3 != 0)
                all[i].first.reset();
        }
        for (const auto& [handler, messenger] : all) {
            BLooper* found = nullptr;
            EXPECT_EQ(messenger.Target(&found), handler.get());
            EXPECT_EQ(messenger.IsValid(), handler != nullptr);
        }
    }
    looper->Quit();
}

TEST(Messenger, OtherProgramsAreOutOfReach)
{
    status_t status = B_OK;
    BMessenger("application/x-vnd.nobody", -1, &status);
    EXPECT_EQ(B_BAD_VALUE, status);
    BMessenger(nullptr, 1, &status);
    EXPECT_EQ(B_BAD_TEAM_ID, status);
    EXPECT_EQ(B_BAD_VALUE, BMessenger().SetTo(static_cast<const char*>(nullptr)));
    EXPECT_EQ(B_BAD_PORT_ID, BMessenger().SendMessage('none'));
}

// Many senders wait at once for a looper that answers from two threads.
TEST(MessengerStress, EverySenderGetsItsOwnAnswer)
{
    auto* helper = new Answerer([](BMessage* message) {
        BMessage reply('answ');
        reply.AddInt32("number", message->FindInt32("number"));
        message->SendReply(&reply);
    });
    Answerer* looper = nullptr;
    looper = new Answerer([&](BMessage* message) {
        if (message->FindInt32("number") % 2 == 0)
            helper->PostMessage(message, helper);  // and another thread may answer first
        BMessage reply('answ');
        reply.AddInt32("number", message->FindInt32("number"));
        message->SendReply(&reply);
    });
    helper->Run();
    looper->Run();
    auto ask = [&](int32 from) {
        for (int32 i = from; i < from + 300; i++) {
            BMessage message('askk'), reply;
            message.AddInt32("number", i);
            ASSERT_EQ(B_OK, BMessenger(looper).SendMessage(&message, &reply));
            ASSERT_EQ(i, reply.FindInt32("number"));
        }
    };
    {
        Task one([&] { ask(0); });
        Task two([&] { ask(1000); });
        Task three([&] { ask(2000); });
    }
    for (BLooper* each : {looper, helper}) {
        each->Lock();
        each->Quit();
    }
}
