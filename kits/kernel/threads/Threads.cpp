// Threads: the registry of this process's threads, their start, end, and what they are told.
// A spawned thread exists at once, and waits at its gate until it is resumed.

#include "kernel/threads/Threads.h"

#include <errno.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>
#include <deque>
#include <map>
#include <new>
#include <string>

#include "kernel/HostActions.h"
#include "kernel/programs/HostProcess.h"
#include "kernel/threads/ObjectWatch.h"
#include "kernel/threads/Priorities.h"
#include "kernel/threads/ProcessExit.h"
#include "kernel/programs/Programs.h"
#include "support/Mutex.h"
#include "support/RecursiveLock.h"

namespace BPrivate {

static const size_t kMaxEnded = 512;

struct Ended {
    status_t status;
    bool killed;
};

struct Registry {
    Mutex lock;
    std::map<thread_id, std::shared_ptr<Thread>> threads GUARDED_BY(lock);
    std::map<thread_id, Ended> ended GUARDED_BY(lock);  // that nobody has waited for yet
    std::deque<thread_id> ended_order GUARDED_BY(lock);
};

// Never destroyed: threads run on while the process exits.
static Registry& registry()
{
    static Registry* const the = new Registry;
    return *the;
}

static constinit thread_local Thread* tSelf __attribute__((tls_model("initial-exec"))) = nullptr;

// Registers the calling thread.
static void enter(const std::shared_ptr<Thread>& thread)
{
    thread->id = gettid();
    thread->handle = pthread_self();
    tSelf = thread.get();
    tThread = thread->id;
    watch_for_exit();
    Registry& all = registry();
    MutexLock hold(all.lock);
    all.ended.erase(thread->id);
    all.threads[thread->id] = thread;
}

// The last that a thread does here: hands its status to those who wait.
static void leave(Thread* self)
{
    stop_watching_for_exit();
    self->exiting = true;
    while (!self->exit_callbacks.empty()) {
        auto [callback, data] = self->exit_callbacks.back();
        self->exit_callbacks.pop_back();
        callback(data);
    }
    Registry& all = registry();
    std::shared_ptr<Thread> keep;
    bool waited_for;
    {
        MutexLock hold(all.lock);
        keep = std::move(all.threads[self->id]);
        all.threads.erase(self->id);
        MutexLock hold_self(self->lock);
        self->dead = true;
        waited_for = !self->waiting_for_end.IsEmpty();
        if (!waited_for && self->entry != nullptr) {
            all.ended[self->id] = {self->exit_status, self->killed};
            all.ended_order.push_back(self->id);
            if (all.ended_order.size() > kMaxEnded) {
                all.ended.erase(all.ended_order.front());
                all.ended_order.pop_front();
            }
        }
        self->waiting_for_end.WakeAll(B_OK);
        self->senders.WakeAll(B_BAD_THREAD_ID);
    }
    objects_changed();
    tSelf = nullptr;  // tThread stays: what ends after this may still use locks
}

// Takes a thread that the kit did not start out of the registry when it ends.
struct ForeignEnd {
    bool armed = false;
    ~ForeignEnd()
    {
        if (armed && tSelf != nullptr && tSelf->id != getpid())
            leave(tSelf);
    }
};

static thread_local ForeignEnd tForeignEnd;

static void arm_signal();

static void name_thread(Thread& thread, const char* name, const char* unnamed)
{
    MutexLock hold(thread.lock);
    copy_name(thread.name, name, unnamed);
}

Thread* current()
{
    if (tSelf != nullptr)
        return tSelf;
    auto thread = std::make_shared<Thread>();
    char name[B_OS_NAME_LENGTH] = {};
    pthread_getname_np(pthread_self(), name, sizeof(name));
    name_thread(*thread, name, "");
    thread->gate = 1;
    arm_signal();
    enter(thread);
    tForeignEnd.armed = true;
    return tSelf;
}

std::shared_ptr<Thread> find(thread_id id)
{
    if (id == gettid())
        current();
    Registry& all = registry();
    MutexLock hold(all.lock);
    const auto found = all.threads.find(id);
    return found != all.threads.end() ? found->second : nullptr;
}

std::vector<std::shared_ptr<Thread>> all_threads()
{
    current();
    Registry& all = registry();
    MutexLock hold(all.lock);
    std::vector<std::shared_ptr<Thread>> list;
    for (const auto& [id, thread] : all.threads)
        list.push_back(thread);
    return list;
}

[[noreturn]] static void end_thread(Thread* self, status_t status)
{
    self->exit_status = status;
    stop_watching_for_exit();
    pthread_exit(nullptr);
}

void end_if_killed()
{
    Thread* self = current();
    if (self->killed && !self->exiting)
        end_thread(self, B_INTERRUPTED);
}

static int suspend_signal() { return SIGRTMIN + 4; }

// Keeps a suspended thread. Every wait of the kit goes on by itself when the handler returns.
static void on_suspend_signal(int)
{
    Thread* self = tSelf;
    if (self == nullptr)
        return;
    const int saved = errno;
    while (self->suspended.load() != 0)
        syscall(SYS_futex, &self->suspended, FUTEX_WAIT_PRIVATE, 1, nullptr, nullptr, 0);
    errno = saved;
}

static void arm_signal()
{
    static const bool armed = [] {
        struct sigaction action = {};
        action.sa_handler = on_suspend_signal;
        action.sa_flags = SA_RESTART;
        sigfillset(&action.sa_mask);
        sigaction(suspend_signal(), &action, nullptr);
        return true;
    }();
    static_cast<void>(armed);
}

// The host keeps 15 bytes of a name.
static std::string host_name(const Thread& thread)
{
    return std::string(thread.name, strnlen(thread.name, 15));
}

// A thread's whole life. Where it ends by return or by unwinding, ~Life() is the last of it.
struct Life {
    std::shared_ptr<Thread> self;
    ~Life()
    {
        if (tSelf == self.get())
            leave(self.get());
    }
};

// Unwinding ends at a frame without tables for it: the host then ends the thread without going
// through what is below, and this is what still comes.
static pthread_key_t end_of_thread()
{
    static const pthread_key_t key = [] {
        pthread_key_t made;
        pthread_key_create(&made, [](void* self) {
            if (tSelf == self)
                leave(tSelf);
        });
        return made;
    }();
    return key;
}

static void* run_thread(void* argument)
{
    Life life{*static_cast<std::shared_ptr<Thread>*>(argument)};
    Thread* self = life.self.get();
    pthread_setspecific(end_of_thread(), self);
    pthread_setname_np(pthread_self(), host_name(*self).c_str());
    enter(life.self);
    apply_priority(self->id, self->priority);
    // The spawner owns the argument, and waits for this.
    self->wake.store(1);
    futex_wake(self->wake, 1);
    while (self->gate.load() == 0)
        futex_wait(self->gate, 0, B_INFINITE_TIMEOUT);
    if (self->killed)
        self->exit_status = B_INTERRUPTED;
    else
        self->exit_status = self->entry(self->data);
    return nullptr;
}

static status_t wait_ended(thread_id id, status_t* returnValue)
{
    Registry& all = registry();
    MutexLock hold(all.lock);
    const auto found = all.ended.find(id);
    if (found == all.ended.end())
        return B_BAD_THREAD_ID;
    const Ended ended = found->second;
    all.ended.erase(found);
    std::erase(all.ended_order, id);
    if (returnValue != nullptr)
        *returnValue = ended.status;
    return ended.killed ? B_INTERRUPTED : B_OK;
}

}  // namespace BPrivate

using namespace BPrivate;

thread_id spawn_thread(thread_func entry, const char* name, int32 priority, void* data)
{
    if (entry == nullptr)
        return B_BAD_VALUE;
    arm_signal();
    auto thread = std::make_shared<Thread>();
    name_thread(*thread, name, "no-name thread");
    thread->entry = entry;
    thread->data = data;
    thread->priority = clamp_priority(priority);

    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_t handle;
    const int failed = pthread_create(&handle, &attributes, run_thread, &thread);
    pthread_attr_destroy(&attributes);
    if (failed != 0)
        return B_NO_MORE_THREADS;
    while (thread->wake.load() == 0)
        futex_wait(thread->wake, 0, B_INFINITE_TIMEOUT);
    return thread->id;
}

// A thread of another team. Without its main thread a team is no more; its others belong to it.
static status_t kill_host_thread(thread_id id)
{
    HostProcess host;
    if (id <= 0 || !read_host_process(id, id, &host) || host.team != id)
        return B_BAD_THREAD_ID;
    return kill_team(id) == B_OK ? B_OK : B_BAD_THREAD_ID;
}

// Starts or stops another team. A thread of this one that the kit knows nothing of is left alone.
static status_t signal_host_thread(thread_id id, int signal)
{
    HostProcess host;
    if (read_host_process(id, id, &host) && host.team == getpid())
        return B_BAD_THREAD_ID;
    return host_actions().signal_team(id, signal) == 0 ? B_OK : B_BAD_THREAD_ID;
}

status_t kill_thread(thread_id id)
{
    std::shared_ptr<Thread> thread = find(id);
    if (thread == nullptr)
        return kill_host_thread(id);
    if (id == getpid())
        return kill_team(id);
    thread->killed.store(true);
    std::atomic_thread_fence(std::memory_order_seq_cst);
    objects_changed();  // it may be watching some
    thread->wake.store(1);
    futex_wake(thread->wake, 1);
    thread->gate.store(1);
    futex_wake(thread->gate, 1);
    thread->suspended.store(0);
    futex_wake(thread->suspended, 1);
    if (thread.get() == tSelf) {
        thread.reset();
        end_if_killed();
    }
    return B_OK;
}

status_t resume_thread(thread_id id)
{
    std::shared_ptr<Thread> thread = find(id);
    if (thread == nullptr) {
        program_resumed(id);
        return signal_host_thread(id, SIGCONT);
    }
    if (thread->gate.exchange(1) == 0) {
        futex_wake(thread->gate, 1);
        return B_OK;
    }
    if (thread->suspended.exchange(0) == 0)
        return B_BAD_THREAD_STATE;
    futex_wake(thread->suspended, 1);
    return B_OK;
}

status_t suspend_thread(thread_id id)
{
    std::shared_ptr<Thread> thread = find(id);
    if (thread == nullptr)
        return signal_host_thread(id, SIGSTOP);
    if (thread->gate.load() == 0)
        return B_OK;
    thread->suspended.store(1);
    if (thread.get() == tSelf) {
        thread.reset();
        raise(suspend_signal());
        end_if_killed();
        return B_OK;
    }
    // Holding its lock keeps the thread from ending under the signal.
    MutexLock hold(thread->lock);
    if (thread->dead || pthread_kill(thread->handle, suspend_signal()) != 0)
        return B_BAD_THREAD_ID;
    return B_OK;
}

status_t rename_thread(thread_id id, const char* newName)
{
    std::shared_ptr<Thread> thread = find(id);
    if (thread == nullptr)
        return B_BAD_THREAD_ID;
    if (newName == nullptr)
        return B_BAD_VALUE;
    MutexLock hold(thread->lock);
    copy_name(thread->name, newName, "");
    if (!thread->dead)
        pthread_setname_np(thread->handle, host_name(*thread).c_str());
    return B_OK;
}

status_t set_thread_priority(thread_id id, int32 newPriority)
{
    std::shared_ptr<Thread> thread = find(id);
    if (thread == nullptr)
        return set_host_priority(id, newPriority);
    newPriority = clamp_priority(newPriority);
    const int32 former = thread->priority.exchange(newPriority);
    if (former != newPriority)
        apply_priority(id, newPriority);
    return former;
}

void exit_thread(status_t status)
{
    Thread* self = current();
    if (self->exiting)
        return;
    if (self->id == getpid())
        exit(status);
    end_thread(self, status);
}

status_t wait_for_thread(thread_id id, status_t* returnValue)
{
    return wait_for_thread_etc(id, 0, 0, returnValue);
}

status_t wait_for_thread_etc(thread_id id, uint32 flags, bigtime_t timeout, status_t* _returnCode)
{
    bigtime_t deadline;
    if (status_t status = deadline_from(flags, timeout, &deadline); status != B_OK)
        return status;
    std::shared_ptr<Thread> thread = find(id);
    if (thread == nullptr && is_loaded_program(id)) {
        const status_t status = wait_for_program(id, deadline, flags, _returnCode);
        return status == B_TIMED_OUT && timeout <= 0 ? B_WOULD_BLOCK : status;
    }
    if (thread == nullptr)
        return wait_ended(id, _returnCode);
    // Enters the caller while no thread's lock is held: the registry's comes first.
    if (thread.get() == current())
        return B_BAD_THREAD_ID;
    if (thread->gate.exchange(1) == 0)
        futex_wake(thread->gate, 1);
    MutexLock hold(thread->lock);
    if (thread->dead) {
        hold.Unlock();
        return wait_ended(id, _returnCode);
    }
    WaitList::Waiter waiter;
    const status_t status =
        thread->waiting_for_end.Wait(hold, waiter, deadline, flags, B_THREAD_WAITING);
    if (status != B_OK)
        return status == B_TIMED_OUT && timeout <= 0 ? B_WOULD_BLOCK : status;
    if (_returnCode != nullptr)
        *_returnCode = thread->exit_status;
    return thread->killed && thread->exit_status == B_INTERRUPTED ? B_INTERRUPTED : B_OK;
}

status_t on_exit_thread(void (*callback)(void*), void* data)
{
    if (callback == nullptr)
        return B_BAD_VALUE;
    try {
        current()->exit_callbacks.emplace_back(callback, data);
    } catch (const std::bad_alloc&) {
        return B_NO_MEMORY;
    }
    return B_OK;
}

thread_id find_thread(const char* name)
{
    if (name == nullptr)
        return current()->id;
    for (const auto& thread : all_threads()) {
        MutexLock hold(thread->lock);
        if (strcmp(thread->name, name) == 0)
            return thread->id;
    }
    return B_NAME_NOT_FOUND;
}

status_t send_data(thread_id id, int32 code, const void* buffer, size_t bufferSize)
{
    std::shared_ptr<Thread> thread = find(id);
    if (thread == nullptr)
        return B_BAD_THREAD_ID;
    if (buffer == nullptr && bufferSize > 0)
        return B_BAD_VALUE;
    current();  // enters the caller while no thread's lock is held
    MutexLock hold(thread->lock);
    while (thread->has_mail && !thread->dead) {
        WaitList::Waiter waiter;
        const status_t status = thread->senders.Wait(hold, waiter, B_INFINITE_TIMEOUT,
                                                     B_CAN_INTERRUPT, B_THREAD_WAITING);
        if (status != B_OK)
            return status;
    }
    if (thread->dead)
        return B_BAD_THREAD_ID;
    const char* bytes = static_cast<const char*>(buffer);
    try {
        thread->mail.assign(bytes, bytes + bufferSize);
    } catch (const std::exception&) {
        return B_NO_MEMORY;
    }
    thread->mail_code = code;
    thread->mail_sender = find_thread(nullptr);
    thread->has_mail = true;
    thread->readers.WakeFirst(B_OK);
    return B_OK;
}

int32 receive_data(thread_id* sender, void* buffer, size_t bufferSize)
{
    Thread* self = current();
    MutexLock hold(self->lock);
    while (!self->has_mail) {
        WaitList::Waiter waiter;
        const status_t status =
            self->readers.Wait(hold, waiter, B_INFINITE_TIMEOUT, 0, B_THREAD_RECEIVING);
        if (status != B_OK)
            return status;
    }
    if (sender != nullptr)
        *sender = self->mail_sender;
    const size_t size = std::min(bufferSize, self->mail.size());
    if (buffer != nullptr && size > 0)
        memcpy(buffer, self->mail.data(), size);
    self->has_mail = false;
    self->mail = {};
    self->senders.WakeFirst(B_OK);
    return self->mail_code;
}

bool has_data(thread_id id)
{
    std::shared_ptr<Thread> thread = find(id);
    if (thread == nullptr)
        return false;
    MutexLock hold(thread->lock);
    return thread->has_mail;
}

thread_id get_pthread_thread_id(pthread_t handle)
{
    for (const auto& thread : all_threads()) {
        if (pthread_equal(thread->handle, handle))
            return thread->id;
    }
    return B_BAD_THREAD_ID;
}
