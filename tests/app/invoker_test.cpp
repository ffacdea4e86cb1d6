// Invokers send copies of their message to a target that may go away.

#include <gtest/gtest.h>

#include <Invoker.h>
#include <Looper.h>
#include <Message.h>

#include "app/Mailbox.h"

namespace {

// Shows what subclasses see.
class OpenInvoker : public BInvoker {
public:
    using BInvoker::BInvoker;
    status_t Invoke(BMessage* message = nullptr) override
    {
        fKind = InvokeKind(&fNotify);
        return BInvoker::Invoke(message);
    }
    uint32 fKind = 0;
    bool fNotify = false;
};

}  // namespace

TEST(Invoker, SendsItsMessageOrAnother)
{
    Mailbox mail;
    auto* looper = new ListeningLooper(mail);
    looper->Run();
    auto* message = new BMessage('own1');
    message->AddInt32("number", 3);
    BInvoker invoker(message, looper);
    EXPECT_EQ(uint32('own1'), invoker.Command());
    EXPECT_EQ(looper, invoker.Target());
    EXPECT_TRUE(invoker.IsTargetLocal());
    EXPECT_EQ(B_OK, invoker.Invoke());
    BMessage got = mail.Take();
    EXPECT_EQ(uint32('own1'), got.what);
    EXPECT_EQ(3, got.FindInt32("number"));
    BMessage other('else');
    EXPECT_EQ(B_OK, invoker.Invoke(&other));
    EXPECT_EQ(uint32('else'), mail.TakeWhat());

    invoker.SetMessage(invoker.Message());
    EXPECT_EQ(uint32('own1'), invoker.Command()) << "set again, it is still there";
    invoker.SetMessage(nullptr);
    EXPECT_EQ(0u, invoker.Command());
    EXPECT_EQ(B_BAD_VALUE, invoker.Invoke());

    looper->Lock();
    looper->Quit();
    EXPECT_EQ(B_BAD_PORT_ID, invoker.Invoke(&other));
    EXPECT_EQ(nullptr, invoker.Target());
}

TEST(Invoker, ReplyGoesToTheNamedHandler)
{
    class Answerer : public BLooper {
    public:
        void MessageReceived(BMessage* message) override { message->SendReply('answ'); }
    };
    Mailbox mail;
    auto* looper = new Answerer;
    auto* home = new ListeningLooper(mail);
    looper->Run();
    home->Run();
    BInvoker invoker(new BMessage('askk'), BMessenger(looper));
    invoker.SetHandlerForReply(home);
    EXPECT_EQ(B_OK, invoker.Invoke());
    EXPECT_EQ(uint32('answ'), mail.TakeWhat());
    for (BLooper* each : {static_cast<BLooper*>(looper), static_cast<BLooper*>(home)}) {
        each->Lock();
        each->Quit();
    }
}

TEST(Invoker, KindIsKnownDuringANotification)
{
    Mailbox mail;
    auto* looper = new ListeningLooper(mail);
    looper->Run();
    OpenInvoker invoker(new BMessage('note'), looper);
    invoker.Invoke();
    EXPECT_EQ(static_cast<uint32>(B_CONTROL_INVOKED), invoker.fKind);
    EXPECT_FALSE(invoker.fNotify);
    invoker.InvokeNotify(nullptr, B_CONTROL_MODIFIED);
    EXPECT_EQ(static_cast<uint32>(B_CONTROL_MODIFIED), invoker.fKind);
    EXPECT_TRUE(invoker.fNotify);
    invoker.Invoke();
    EXPECT_FALSE(invoker.fNotify);
    looper->Lock();
    looper->Quit();
}

TEST(Invoker, TargetIsCheckedWhenSet)
{
    Mailbox mail;
    auto* looper = new ListeningLooper(mail);
    BHandler handler;
    BInvoker invoker;
    EXPECT_EQ(B_BAD_VALUE, invoker.SetTarget(nullptr, nullptr));
    EXPECT_EQ(B_BAD_HANDLER, invoker.SetTarget(&handler));
    looper->AddHandler(&handler);
    EXPECT_EQ(B_OK, invoker.SetTarget(&handler));
    BLooper* found = nullptr;
    EXPECT_EQ(&handler, invoker.Target(&found));
    EXPECT_EQ(looper, found);
    EXPECT_EQ(BMessenger(&handler), invoker.Messenger());
    looper->Quit();
}
