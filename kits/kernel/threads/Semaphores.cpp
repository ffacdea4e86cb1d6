// Counting semaphores: units are handed to the waiting threads in the order of their coming.

#include <algorithm>

#include "kernel/threads/IdTable.h"
#include "kernel/threads/ObjectWatch.h"
#include "kernel/threads/WaitableObjects.h"
#include "kernel/threads/Threads.h"
#include "support/RecursiveLock.h"

#include <string.h>
#include <unistd.h>

using namespace BPrivate;

struct Semaphore {
    Mutex lock;
    int32 id = 0;
    char name[B_OS_NAME_LENGTH];
    int64 available;  // with threads waiting: less than the first of them wants
    int64 wanted;     // by all that wait
    thread_id latest_holder;
    WaitList waiting;
};

static IdTable<Semaphore>& semaphores()
{
    static auto* const table = new IdTable<Semaphore>;
    return *table;
}

static void grant(Semaphore* sem)
{
    while (WaitList::Waiter* first = sem->waiting.First()) {
        if (first->count > sem->available)
            break;
        sem->available -= first->count;
        sem->wanted -= first->count;
        sem->waiting.Wake(first, B_OK);
    }
}

static void fill_info(const Semaphore* sem, sem_info* info)
{
    info->sem = sem->id;
    info->team = getpid();
    memcpy(info->name, sem->name, sizeof(info->name));
    info->count = static_cast<int32>(std::max<int64>(sem->available - sem->wanted, INT32_MIN));
    info->latest_holder = sem->latest_holder;
}

bool BPrivate::semaphore_is_ready(sem_id id, bool* valid)
{
    std::unique_lock<Mutex> hold;
    Semaphore* sem = semaphores().Find(id, hold);
    *valid = sem != nullptr;
    return sem != nullptr && sem->available > 0 && sem->waiting.IsEmpty();
}

int32 BPrivate::count_semaphores() { return semaphores().Count(); }

sem_id create_sem(int32 count, const char* name)
{
    if (count < 0)
        return B_BAD_VALUE;
    std::unique_lock<Mutex> hold;
    Semaphore* sem = semaphores().Take(hold);
    if (sem == nullptr)
        return B_NO_MORE_SEMS;
    copy_name(sem->name, name, "unnamed semaphore");
    sem->available = count;
    sem->wanted = 0;
    sem->latest_holder = 0;
    return sem->id;
}

status_t delete_sem(sem_id id)
{
    std::unique_lock<Mutex> hold;
    Semaphore* sem = semaphores().Find(id, hold);
    if (sem == nullptr)
        return B_BAD_SEM_ID;
    sem->waiting.WakeAll(B_BAD_SEM_ID);
    semaphores().Release(sem);
    hold.unlock();
    objects_changed();
    return B_OK;
}

status_t acquire_sem(sem_id id) { return acquire_sem_etc(id, 1, 0, 0); }

static bool is_acquisition(int32 count, uint32 flags)
{
    const uint32 both = B_RELATIVE_TIMEOUT | B_ABSOLUTE_TIMEOUT;
    return count >= 1 && (flags & both) != both;
}

status_t acquire_sem_etc(sem_id id, int32 count, uint32 flags, bigtime_t timeout)
{
    if (!is_acquisition(count, flags))
        return B_BAD_VALUE;
    std::unique_lock<Mutex> hold;
    Semaphore* sem = semaphores().Find(id, hold);
    if (sem == nullptr)
        return B_BAD_SEM_ID;
    if (sem->waiting.IsEmpty() && sem->available >= count) {
        sem->available -= count;
        sem->latest_holder = current_thread();
        return B_OK;
    }
    if ((flags & B_RELATIVE_TIMEOUT) != 0 && timeout <= 0)
        return B_WOULD_BLOCK;
    bigtime_t deadline;
    deadline_from(flags, timeout, &deadline);

    // A waiter that leaves takes its wish along, also when its thread was killed.
    struct Wish {
        sem_id id;
        int32 count;
        bool open;
        ~Wish()
        {
            std::unique_lock<Mutex> relock;
            Semaphore* sem = open ? semaphores().Find(id, relock) : nullptr;
            if (sem == nullptr)
                return;
            sem->wanted -= count;
            grant(sem);  // those behind it may want less
        }
    } wish{id, count, true};
    sem->wanted += count;
    WaitList::Waiter waiter;
    waiter.count = count;
    const status_t status = sem->waiting.Wait(hold, waiter, deadline, flags, B_THREAD_WAITING, id);
    wish.open = status != B_OK && status != B_BAD_SEM_ID;
    if (status == B_OK) {
        if (Semaphore* held = semaphores().Find(id, hold))
            held->latest_holder = current_thread();
    }
    return status;
}

status_t release_sem(sem_id id) { return release_sem_etc(id, 1, 0); }

status_t release_sem_etc(sem_id id, int32 count, uint32 flags)
{
    if (count < 1 && (flags & B_RELEASE_ALL) == 0)
        return B_BAD_VALUE;
    std::unique_lock<Mutex> hold;
    Semaphore* sem = semaphores().Find(id, hold);
    if (sem == nullptr)
        return B_BAD_SEM_ID;
    const int64 short_of = std::max<int64>(sem->wanted - sem->available, 0);
    int64 units = count;
    if ((flags & B_RELEASE_ALL) != 0)
        units = short_of;
    else if ((flags & B_RELEASE_IF_WAITING_ONLY) != 0)
        units = std::min<int64>(units, short_of);
    if (sem->available + units > INT32_MAX)
        return B_BAD_VALUE;
    sem->available += units;
    sem->latest_holder = 0;
    grant(sem);
    hold.unlock();
    objects_changed();
    return B_OK;
}

status_t switch_sem(sem_id semToBeReleased, sem_id id)
{
    return switch_sem_etc(semToBeReleased, id, 1, 0, 0);
}

status_t switch_sem_etc(sem_id semToBeReleased, sem_id id, int32 count, uint32 flags,
                        bigtime_t timeout)
{
    sem_info info;
    status_t status = is_acquisition(count, flags) ? get_sem_info(id, &info) : B_BAD_VALUE;
    if (status == B_OK)
        status = release_sem(semToBeReleased);
    return status == B_OK ? acquire_sem_etc(id, count, flags, timeout) : status;
}

status_t get_sem_count(sem_id id, int32* threadCount)
{
    if (threadCount == nullptr)
        return B_BAD_VALUE;
    sem_info info;
    const status_t status = _get_sem_info(id, &info, sizeof(info));
    if (status == B_OK)
        *threadCount = info.count;
    return status;
}

status_t set_sem_owner(sem_id id, team_id team)
{
    std::unique_lock<Mutex> hold;
    if (semaphores().Find(id, hold) == nullptr)
        return B_BAD_SEM_ID;
    return team == B_CURRENT_TEAM || team == getpid() ? B_OK : B_BAD_TEAM_ID;
}

status_t _get_sem_info(sem_id id, sem_info* info, size_t infoSize)
{
    if (info == nullptr || infoSize != sizeof(sem_info))
        return B_BAD_VALUE;
    std::unique_lock<Mutex> hold;
    Semaphore* sem = semaphores().Find(id, hold);
    if (sem == nullptr)
        return B_BAD_SEM_ID;
    fill_info(sem, info);
    return B_OK;
}

status_t _get_next_sem_info(team_id team, int32* cookie, sem_info* info, size_t infoSize)
{
    if (cookie == nullptr || info == nullptr || infoSize != sizeof(sem_info))
        return B_BAD_VALUE;
    if (team != B_CURRENT_TEAM && team != getpid())
        return B_BAD_TEAM_ID;
    std::unique_lock<Mutex> hold;
    Semaphore* sem = semaphores().Next(cookie, hold);
    if (sem == nullptr)
        return B_BAD_VALUE;
    fill_info(sem, info);
    return B_OK;
}
