// Message runners. One thread sends for all of them: it sleeps until the earliest is due, holds
// the list's lock while it sends (sending never waits), and ends when there is no runner left.

#include <MessageRunner.h>

#include <Application.h>
#include <Message.h>
#include <OS.h>

#include <atomic>
#include <map>
#include <memory>

#include "app/looper/MessengerAccess.h"
#include "support/Futex.h"
#include "support/Mutex.h"

using BPrivate::MessengerAccess;

static const bigtime_t kMinInterval = 1000;  // microseconds

namespace {

struct Runner {
    BMessenger target;
    std::unique_ptr<BMessage> message;
    bigtime_t interval;
    int32 count;  // -1: for ever
    BMessenger replyTo;
    bigtime_t due;
};

struct Runners {
    BPrivate::Mutex lock;
    std::map<int32, Runner> entries GUARDED_BY(lock);
    int32 last GUARDED_BY(lock) = 0;
    bool running GUARDED_BY(lock) = false;  // the thread lives
    std::atomic<uint32> changed{0};         // futex: counts what the thread must look at
};

// Never destroyed: the thread may outlast the program's statics.
Runners& runners()
{
    static Runners* sRunners = new Runners;
    return *sRunners;
}

// Sends what is due; returns when the next one is.
bigtime_t send_due(Runners& list) REQUIRES(list.lock)
{
    bigtime_t next = B_INFINITE_TIMEOUT;
    const bigtime_t now = system_time();
    for (auto entry = list.entries.begin(); entry != list.entries.end();) {
        Runner& runner = entry->second;
        bool ended = false;
        if (runner.due <= now) {
            ended = !MessengerAccess::Notify(runner.target, *runner.message, runner.replyTo) ||
                    (runner.count > 0 && --runner.count == 0);
            // What was missed is left out: a thread that was held up sends no burst.
            runner.due = max_c(runner.due + runner.interval, now);
        }
        if (ended) {
            entry = list.entries.erase(entry);
            continue;
        }
        next = min_c(next, runner.due);
        ++entry;
    }
    return next;
}

status_t run_timer(void*)
{
    Runners& list = runners();
    for (;;) {
        uint32 seen;
        bigtime_t next;
        {
            BPrivate::MutexLock guard(list.lock);
            seen = list.changed.load();
            next = send_due(list);
            if (list.entries.empty()) {
                list.running = false;
                return B_OK;
            }
        }
        BPrivate::futex_wait(list.changed, seen, next);
    }
}

bool start_timer(Runners& list) REQUIRES(list.lock)
{
    list.changed.fetch_add(1);
    BPrivate::futex_wake(list.changed, 1);
    if (list.running)
        return true;
    const thread_id thread =
        spawn_thread(&run_timer, "message runners", B_NORMAL_PRIORITY, nullptr);
    list.running = thread >= B_OK && resume_thread(thread) == B_OK;
    return list.running;
}

// Returns the new runner's number, or a status.
int32 add_runner(const BMessenger& target, const BMessage* message, bigtime_t interval, int32 count,
                 const BMessenger& replyTo)
{
    if (message == nullptr || interval <= 0 || count == 0)
        return B_BAD_VALUE;
    Runner runner{target,
                  std::make_unique<BMessage>(*message),
                  max_c(interval, kMinInterval),
                  max_c(count, -1),
                  replyTo,
                  0};
    runner.due = BPrivate::deadline_after(runner.interval);
    Runners& list = runners();
    BPrivate::MutexLock guard(list.lock);
    do {
        list.last = list.last == INT32_MAX ? 1 : list.last + 1;
    } while (list.entries.count(list.last) != 0);
    const int32 token = list.last;
    list.entries.emplace(token, std::move(runner));
    if (start_timer(list))
        return token;
    list.entries.erase(token);
    return B_NO_MORE_THREADS;
}

template <class Change>
status_t change_runner(int32 token, Change change)
{
    Runners& list = runners();
    BPrivate::MutexLock guard(list.lock);
    auto found = list.entries.find(token);
    if (found == list.entries.end())
        return B_BAD_VALUE;
    change(found->second);
    start_timer(list);
    return B_OK;
}

}  // namespace

BMessageRunner::BMessageRunner(BMessenger target, const BMessage* message, bigtime_t interval,
                               int32 count)
    : fToken(add_runner(target, message, interval, count, be_app_messenger))
{
}

BMessageRunner::BMessageRunner(BMessenger target, const BMessage& message, bigtime_t interval,
                               int32 count)
    : fToken(add_runner(target, &message, interval, count, be_app_messenger))
{
}

BMessageRunner::BMessageRunner(BMessenger target, const BMessage* message, bigtime_t interval,
                               int32 count, BMessenger replyTo)
    : fToken(add_runner(target, message, interval, count, replyTo))
{
}

BMessageRunner::BMessageRunner(BMessenger target, const BMessage& message, bigtime_t interval,
                               int32 count, BMessenger replyTo)
    : fToken(add_runner(target, &message, interval, count, replyTo))
{
}

BMessageRunner::~BMessageRunner()
{
    Runners& list = runners();
    BPrivate::MutexLock guard(list.lock);
    list.entries.erase(fToken);
}

status_t BMessageRunner::InitCheck() const { return fToken > 0 ? B_OK : fToken; }

status_t BMessageRunner::SetInterval(bigtime_t interval)
{
    if (interval <= 0)
        return B_BAD_VALUE;
    return change_runner(fToken, [=](Runner& runner) {
        runner.interval = max_c(interval, kMinInterval);
        runner.due = BPrivate::deadline_after(runner.interval);
    });
}

status_t BMessageRunner::SetCount(int32 count)
{
    if (count == 0) {
        Runners& list = runners();
        BPrivate::MutexLock guard(list.lock);
        return list.entries.erase(fToken) > 0 ? B_OK : B_BAD_VALUE;
    }
    return change_runner(fToken, [=](Runner& runner) { runner.count = max_c(count, -1); });
}

status_t BMessageRunner::GetInfo(bigtime_t* interval, int32* count) const
{
    return change_runner(fToken, [=](const Runner& runner) {
        if (interval != nullptr)
            *interval = runner.interval;
        if (count != nullptr)
            *count = runner.count;
    });
}

status_t BMessageRunner::StartSending(BMessenger target, const BMessage* message,
                                      bigtime_t interval, int32 count)
{
    return StartSending(target, message, interval, count, be_app_messenger);
}

status_t BMessageRunner::StartSending(BMessenger target, const BMessage* message,
                                      bigtime_t interval, int32 count, BMessenger replyTo)
{
    const int32 token = add_runner(target, message, interval, count, replyTo);
    return token > 0 ? B_OK : token;
}
