// Loopers: queue, lock, filters, and all the ways in which one ends.

#include <gtest/gtest.h>

#include <AppDefs.h>
#include <List.h>
#include <Looper.h>
#include <MessageFilter.h>
#include <MessageQueue.h>
#include <Messenger.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "app/Mailbox.h"

namespace {

// Runs what it is sent as a pointer to a function, on its own thread.
class Worker : public BLooper {
public:
    using Job = std::function<void(Worker&, BMessage*)>;
    explicit Worker(std::atomic<int>* deleted = nullptr) : BLooper("worker"), fDeleted(deleted) {}
    ~Worker() override
    {
        if (fDeleted != nullptr)
            ++*fDeleted;
    }
    void MessageReceived(BMessage* message) override
    {
        void* job;
        if (message->FindPointer("job", &job) == B_OK)
            (*static_cast<Job*>(job))(*this, message);
    }
    bool QuitRequested() override { return fMayQuit; }
    std::atomic<bool> fMayQuit{true};

private:
    std::atomic<int>* fDeleted;
};

BMessage job_message(Worker::Job& job)
{
    BMessage message('jobb');
    message.AddPointer("job", &job);
    return message;
}

// Whether somebody else could lock the looper now.
bool is_free(BLooper* looper)
{
    bool free = false;
    Task([&] {
        free = looper->LockWithTimeout(0) == B_OK;
        if (free)
            looper->Unlock();
    }).Join();
    return free;
}

}  // namespace

TEST(Looper, MessagesArriveInTheOrderOfPosting)
{
    Mailbox mail;
    auto* looper = new ListeningLooper(mail);
    for (uint32 i = 1; i <= 50; i++)
        looper->PostMessage(i);
    looper->Run();
    QuitAtEnd quit(looper);
    for (uint32 i = 51; i <= 100; i++)
        looper->PostMessage(i);
    for (uint32 i = 1; i <= 100; i++)
        ASSERT_EQ(i, mail.TakeWhat());
}

TEST(Looper, CreatorHoldsTheLockUntilItRuns)
{
    Mailbox mail;
    auto* looper = new ListeningLooper(mail);
    EXPECT_TRUE(looper->IsLocked());
    EXPECT_EQ(0, looper->Thread());
    EXPECT_FALSE(is_free(looper));
    const thread_id thread = looper->Run();
    EXPECT_GT(thread, 0);
    EXPECT_EQ(thread, looper->Thread());
    EXPECT_EQ(thread, looper->Run()) << "a second Run() starts no second thread";
    EXPECT_FALSE(looper->IsLocked());
    EXPECT_EQ(looper, BLooper::LooperForThread(thread));
    looper->Lock();
    looper->Quit();
    EXPECT_EQ(nullptr, BLooper::LooperForThread(thread));
}

TEST(Looper, LockIsRecursiveAndExclusive)
{
    Mailbox mail;
    auto* looper = new ListeningLooper(mail);
    looper->Run();
    QuitAtEnd quit(looper);
    ASSERT_TRUE(looper->Lock());
    ASSERT_EQ(B_OK, looper->LockWithTimeout(0));
    EXPECT_EQ(2, looper->CountLocks());
    EXPECT_EQ(find_thread(nullptr), looper->LockingThread());
    Task([&] {
        EXPECT_EQ(B_TIMED_OUT, looper->LockWithTimeout(1000));
        EXPECT_FALSE(looper->IsLocked());
        looper->Unlock();  // of somebody else: does nothing
    }).Join();
    looper->Unlock();
    EXPECT_FALSE(is_free(looper));
    looper->Unlock();
    EXPECT_TRUE(is_free(looper));
}

TEST(Looper, ThreadThatNeverAskedForItsIdLocksAndTries)
{
    Mailbox mail;
    auto* looper = new ListeningLooper(mail);
    looper->Run();
    QuitAtEnd quit(looper);
    std::thread([&] {
        looper->Unlock();  // of nobody: does nothing
        EXPECT_EQ(B_OK, looper->LockWithTimeout(0));
        EXPECT_EQ(1, looper->CountLocks());
        looper->Unlock();
    }).join();
    EXPECT_TRUE(is_free(looper));
}

TEST(Looper, GoneLooperRefusesAllWithoutBeingTouched)
{
    std::atomic<int> deleted{0};
    auto* looper = new Worker(&deleted);
    looper->Run();
    looper->Lock();
    looper->Lock();
    looper->Quit();
    EXPECT_EQ(1, deleted);
    EXPECT_FALSE(looper->Lock());
    EXPECT_FALSE(looper->IsLocked());
    EXPECT_EQ(B_BAD_VALUE, looper->LockWithTimeout(B_INFINITE_TIMEOUT));
    looper->Unlock();
    EXPECT_EQ(-1, looper->LockingThread());
    EXPECT_EQ(0, looper->CountLocks());
    EXPECT_EQ(0, looper->CountLockRequests());
    EXPECT_EQ(B_BAD_PORT_ID, looper->PostMessage('what'));
    BMessage message('what');
    EXPECT_EQ(B_BAD_PORT_ID, looper->PostMessage(&message, nullptr));
    EXPECT_EQ(B_BAD_VALUE, looper->PostMessage(static_cast<BMessage*>(nullptr)));
}

TEST(Looper, WaitingThreadIsRefusedWhenTheLooperGoes)
{
    std::atomic<int> refused{0};
    auto* looper = new Worker;
    looper->Run();
    looper->Lock();
    Task first([&] { refused += !looper->Lock(); });
    Task second([&] { refused += looper->LockWithTimeout(kDeadline) == B_BAD_VALUE; });
    while (looper->CountLockRequests() < 3)
        snooze(100);
    delete looper;
    first.Join();
    second.Join();
    EXPECT_EQ(2, refused);
}

TEST(Looper, QuitFromItsOwnThreadDoesNotReturn)
{
    std::atomic<int> deleted{0};
    std::atomic<bool> returned{false};
    auto* looper = new Worker(&deleted);
    const thread_id thread = looper->Run();
    Worker::Job job = [&](Worker& self, BMessage*) {
        self.Quit();
        returned = true;
    };
    BMessage message = job_message(job);
    looper->PostMessage(&message);
    status_t result;
    wait_for_thread(thread, &result);
    EXPECT_EQ(1, deleted);
    EXPECT_FALSE(returned);
    EXPECT_FALSE(looper->Lock());
}

TEST(Looper, QuitFromAnotherThreadWorksTheQueueOffFirst)
{
    std::atomic<int> deleted{0}, handled{0};
    auto* looper = new Worker(&deleted);
    Worker::Job job = [&](Worker&, BMessage*) { handled++; };
    BMessage message = job_message(job);
    for (int i = 0; i < 200; i++)
        looper->PostMessage(&message);
    looper->Run();
    looper->Lock();
    looper->Quit();
    EXPECT_EQ(200, handled);
    EXPECT_EQ(1, deleted);
}

TEST(Looper, QuitWithoutTheLockWorksToo)
{
    std::atomic<int> deleted{0};
    auto* looper = new Worker(&deleted);
    looper->Run();
    looper->Quit();
    EXPECT_EQ(1, deleted);
    auto* never_run = new Worker(&deleted);
    never_run->Quit();
    EXPECT_EQ(2, deleted);
}

TEST(Looper, QuitRequestIsAnsweredAndMayBeRefused)
{
    auto* looper = new Worker;
    looper->Run();
    const BMessenger messenger(looper);
    looper->fMayQuit = false;
    BMessage reply;
    ASSERT_EQ(B_OK, messenger.SendMessage(B_QUIT_REQUESTED, &reply));
    EXPECT_EQ(static_cast<uint32>(B_REPLY), reply.what);
    EXPECT_FALSE(reply.FindBool("result"));
    const thread_id thread = looper->Thread();
    EXPECT_EQ(thread, reply.FindInt32("thread"));
    looper->fMayQuit = true;
    ASSERT_EQ(B_OK, messenger.SendMessage(B_QUIT_REQUESTED, &reply));
    EXPECT_TRUE(reply.FindBool("result"));
    status_t result;
    wait_for_thread(thread, &result);
    EXPECT_FALSE(messenger.IsValid());
}

TEST(Looper, LoopOnTheCallersThreadReturnsAfterQuit)
{
    Mailbox mail;
    std::atomic<BLooper*> looper{nullptr};
    std::atomic<bool> returned{false};
    Task task([&] {
        auto* made = new ListeningLooper(mail);
        made->PostMessage('here');
        looper = made;
        made->Loop();
        returned = true;
    });
    EXPECT_EQ(uint32('here'), mail.TakeWhat());
    EXPECT_EQ(task.Thread(), looper.load()->Thread());
    looper.load()->Lock();
    looper.load()->Quit();
    EXPECT_FALSE(looper.load()->Lock());
    task.Join();
    EXPECT_TRUE(returned);
}

TEST(Looper, DeletedUnderItsLoopTheLoopEnds)
{
    auto* looper = new Worker;
    const thread_id thread = looper->Run();
    ASSERT_TRUE(looper->Lock());
    delete looper;
    status_t result;
    EXPECT_EQ(B_OK, wait_for_thread(thread, &result));
}

TEST(Looper, TargetIsTheLooperThePreferredHandlerOrTheNamedOne)
{
    Mailbox own, preferred, named;
    auto* looper = new ListeningLooper(own);
    ListeningHandler first(preferred), second(named), stranger(named);
    looper->AddHandler(&first);
    looper->AddHandler(&second);
    looper->Run();
    QuitAtEnd quit(looper);

    looper->PostMessage('own1');
    EXPECT_EQ(uint32('own1'), own.TakeWhat());
    looper->PostMessage('own2', nullptr);
    EXPECT_EQ(uint32('own2'), own.TakeWhat()) << "no preferred handler";
    looper->Lock();
    looper->SetPreferredHandler(&stranger);
    EXPECT_EQ(nullptr, looper->PreferredHandler());
    looper->SetPreferredHandler(&first);
    looper->Unlock();
    looper->PostMessage('pref', nullptr);
    EXPECT_EQ(uint32('pref'), preferred.TakeWhat());
    looper->PostMessage('own3', looper);
    EXPECT_EQ(uint32('own3'), own.TakeWhat());
    looper->PostMessage('name', &second);
    EXPECT_EQ(uint32('name'), named.TakeWhat());
    EXPECT_EQ(B_MISMATCHED_VALUES, looper->PostMessage('none', &stranger));

    // What is under way to a handler that left is dropped.
    looper->Lock();
    looper->PostMessage('lost', &second);
    EXPECT_TRUE(looper->RemoveHandler(&second));
    EXPECT_FALSE(looper->RemoveHandler(&second));
    EXPECT_FALSE(looper->RemoveHandler(looper));
    looper->RemoveHandler(&first);
    EXPECT_EQ(nullptr, looper->PreferredHandler());
    looper->Unlock();
    looper->PostMessage('last', nullptr);
    EXPECT_EQ(uint32('last'), own.TakeWhat());
    EXPECT_TRUE(named.IsEmpty());
}

TEST(Looper, DetachedMessageOutlivesItsDispatch)
{
    auto* looper = new Worker;
    looper->Run();
    QuitAtEnd quit(looper);
    Mailbox mail;
    BMessage* kept = nullptr;
    Worker::Job job = [&](Worker& self, BMessage* message) {
        EXPECT_EQ(message, self.CurrentMessage());
        kept = self.DetachCurrentMessage();
        EXPECT_EQ(message, kept);
        EXPECT_EQ(nullptr, self.CurrentMessage());
        mail.Put(BMessage('done'));
    };
    BMessage message = job_message(job);
    looper->PostMessage(&message);
    ASSERT_EQ(uint32('done'), mail.TakeWhat());
    looper->Lock();  // the loop is past the message
    EXPECT_EQ(uint32('jobb'), kept->what);
    EXPECT_TRUE(kept->WasDelivered());
    delete kept;

    BMessage external('exte');
    bool detached = true;
    looper->DispatchExternalMessage(&external, looper, detached);
    EXPECT_FALSE(detached);
    looper->Unlock();
}

namespace {

// Notes its name for each message, and does what the test says.
class NotingFilter : public BMessageFilter {
public:
    using Deed = std::function<filter_result(BMessage*, BHandler**)>;
    NotingFilter(std::string& notes, char name, Deed deed = nullptr, uint32 what = 'filt')
        : BMessageFilter(what), fNotes(notes), fName(name), fDeed(deed)
    {
    }
    filter_result Filter(BMessage* message, BHandler** target) override
    {
        fNotes += fName;
        return fDeed != nullptr ? fDeed(message, target) : B_DISPATCH_MESSAGE;
    }

private:
    std::string& fNotes;
    char fName;
    Deed fDeed;
};

class FilteredLooper : public testing::Test {
protected:
    FilteredLooper() : fLooper(new ListeningLooper(fMail)), fFirst(fFirstMail), fSecond(fSecondMail)
    {
        fLooper->AddHandler(&fFirst);
        fLooper->AddHandler(&fSecond);
    }
    // Deletes the looper before the handlers, as a program would.
    void TearDown() override
    {
        if (fLooper->Lock())
            fLooper->Quit();
    }

    Mailbox fMail, fFirstMail, fSecondMail;
    std::string fNotes;
    ListeningLooper* fLooper;
    ListeningHandler fFirst, fSecond;
};

}  // namespace

TEST_F(FilteredLooper, CommonFiltersRunFirstThenTheTargets)
{
    fFirst.AddFilter(new NotingFilter(fNotes, 'c'));
    fLooper->AddCommonFilter(new NotingFilter(fNotes, 'a'));
    fLooper->AddCommonFilter(new NotingFilter(fNotes, 'b'));
    fLooper->AddFilter(new NotingFilter(fNotes, 'x'));  // of the looper as a handler
    fLooper->AddCommonFilter(new NotingFilter(fNotes, 'y', nullptr, 'else'));
    fLooper->Run();
    fLooper->PostMessage('filt', &fFirst);
    EXPECT_EQ(uint32('filt'), fFirstMail.TakeWhat());
    EXPECT_EQ("abc", fNotes);
}

TEST_F(FilteredLooper, SkippedMessageGoesNowhere)
{
    fLooper->AddCommonFilter(
        new NotingFilter(fNotes, 'a', [](BMessage*, BHandler**) { return B_SKIP_MESSAGE; }));
    fFirst.AddFilter(new NotingFilter(fNotes, 'b'));
    fLooper->Run();
    fLooper->PostMessage('filt', &fFirst);
    fLooper->PostMessage('last', &fFirst);
    EXPECT_EQ(uint32('last'), fFirstMail.TakeWhat());
    EXPECT_EQ("a", fNotes);
}

TEST_F(FilteredLooper, ChangedTargetRunsItsOwnFilters)
{
    fFirst.AddFilter(new NotingFilter(fNotes, '1', [&](BMessage*, BHandler** target) {
        *target = &fSecond;
        return B_DISPATCH_MESSAGE;
    }));
    fSecond.AddFilter(new NotingFilter(fNotes, '2'));
    fLooper->Run();
    fLooper->PostMessage('filt', &fFirst);
    EXPECT_EQ(uint32('filt'), fSecondMail.TakeWhat());
    EXPECT_EQ("12", fNotes);
}

TEST_F(FilteredLooper, FiltersThatSendAMessageInCirclesLoseIt)
{
    auto to = [](BHandler* handler) {
        return [=](BMessage*, BHandler** target) {
            *target = handler;
            return B_DISPATCH_MESSAGE;
        };
    };
    fFirst.AddFilter(new NotingFilter(fNotes, '1', to(&fSecond)));
    fSecond.AddFilter(new NotingFilter(fNotes, '2', to(&fFirst)));
    fLooper->Run();
    fLooper->PostMessage('filt', &fFirst);
    fLooper->PostMessage('last', &fFirst);
    EXPECT_EQ(uint32('last'), fFirstMail.TakeWhat());
}

TEST_F(FilteredLooper, FilterMayTakeItselfOut)
{
    NotingFilter* once = nullptr;
    once = new NotingFilter(fNotes, 'o', [&](BMessage*, BHandler**) {
        EXPECT_EQ(fLooper, once->Looper());
        EXPECT_TRUE(fLooper->RemoveCommonFilter(once));
        return B_DISPATCH_MESSAGE;
    });
    fLooper->AddCommonFilter(once);
    fLooper->AddCommonFilter(new NotingFilter(fNotes, 's'));
    fLooper->Run();
    fLooper->PostMessage('filt');
    fLooper->PostMessage('filt');
    fMail.TakeWhat();
    fMail.TakeWhat();
    EXPECT_EQ("oss", fNotes);
    EXPECT_EQ(nullptr, once->Looper());
    delete once;
}

static filter_result count_in_name(BMessage* message, BHandler**, BMessageFilter*)
{
    message->AddBool("seen", true);
    return B_DISPATCH_MESSAGE;
}

TEST_F(FilteredLooper, DeliveryAndSourceDecideWhatAFilterSees)
{
    const struct {
        message_delivery delivery;
        message_source source;
        bool seen;
    } cases[] = {
        {B_ANY_DELIVERY, B_ANY_SOURCE, true},      {B_ANY_DELIVERY, B_LOCAL_SOURCE, true},
        {B_ANY_DELIVERY, B_REMOTE_SOURCE, false},  {B_PROGRAMMED_DELIVERY, B_LOCAL_SOURCE, true},
        {B_DROPPED_DELIVERY, B_ANY_SOURCE, false},
    };
    fLooper->Run();
    for (const auto& row : cases) {
        auto* filter = new BMessageFilter(row.delivery, row.source, 'filt', &count_in_name);
        fLooper->Lock();
        fLooper->AddCommonFilter(filter);
        fLooper->Unlock();
        fLooper->PostMessage('filt');
        EXPECT_EQ(row.seen, fMail.Take().HasBool("seen")) << row.delivery << ' ' << row.source;
        fLooper->Lock();
        fLooper->RemoveCommonFilter(filter);
        fLooper->Unlock();
        delete filter;
    }
}

TEST(Looper, BusyLoopLetsOthersLock)
{
    auto* looper = new Worker;
    std::atomic<bool> stop{false};
    Worker::Job job;
    job = [&](Worker& self, BMessage* message) {
        if (!stop)
            self.PostMessage(message);
    };
    BMessage message = job_message(job);
    looper->PostMessage(&message);
    looper->Run();
    for (int i = 0; i < 20; i++) {
        ASSERT_EQ(B_OK, looper->LockWithTimeout(kDeadline));
        looper->Unlock();
    }
    stop = true;
    looper->Lock();
    looper->Quit();
}

TEST(Looper, QueuedSenderIsToldThatNobodyAnswers)
{
    auto* looper = new Worker;
    Worker::Job quit = [](Worker& self, BMessage*) { self.Quit(); };
    BMessage message = job_message(quit);
    looper->PostMessage(&message);
    const BMessenger messenger(looper);
    BMessage reply;
    Task sender([&] { EXPECT_EQ(B_OK, messenger.SendMessage('hear', &reply)); });
    while (looper->MessageQueue()->CountMessages() < 2)
        snooze(100);
    looper->Run();
    sender.Join();
    EXPECT_EQ(static_cast<uint32>(B_NO_REPLY), reply.what);
}

// Loopers come and go while others lock them and post to them by pointers that may be stale.
TEST(LooperStress, StalePointersAreHarmless)
{
    const int kLoopers = 4;
    const int kRounds = 150;
    std::atomic<Worker*> loopers[kLoopers] = {};
    std::atomic<bool> stop{false};
    std::atomic<int> made{0}, deleted{0};

    auto visit = [&] {
        uint32 seed = find_thread(nullptr);
        while (!stop) {
            seed = seed * 1664525 + 1013904223;
            BLooper* looper = loopers[(seed >> 24) % kLoopers].load();
            if (looper == nullptr)
                continue;
            switch ((seed >> 16) % 4) {
                case 0:
                    if (looper->Lock())
                        looper->Unlock();
                    break;
                case 1:
                    looper->PostMessage('nope');
                    break;
                case 2:
                    if (looper->LockWithTimeout(50) == B_OK)
                        looper->Unlock();
                    break;
                default:
                    looper->PostMessage('nope', nullptr);
                    BMessenger(nullptr, looper).IsValid();
            }
        }
    };
    Worker::Job leave = [](Worker& self, BMessage*) { self.Quit(); };
    auto renew = [&](int from, int to) {
        for (int round = 0; round < kRounds; round++) {
            for (int i = from; i < to; i++) {
                auto* looper = new Worker(&deleted);
                made++;
                looper->Run();
                loopers[i] = looper;
                const thread_id thread = looper->Thread();
                if (round % 3 == 0) {
                    BMessage message = job_message(leave);
                    looper->PostMessage(&message);
                    status_t result;
                    wait_for_thread(thread, &result);
                } else if (looper->Lock())
                    looper->Quit();
            }
        }
    };
    {
        Task visitor(visit), other(visit);
        Task maker([&] { renew(0, kLoopers / 2); });
        renew(kLoopers / 2, kLoopers);
        maker.Join();
        stop = true;
    }
    EXPECT_EQ(made, deleted);
}
