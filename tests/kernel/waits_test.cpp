// Waits of the kernel kit at their edges: who is woken, by what, and who never is.

#include <OS.h>

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

#include <signal.h>
#include <string.h>
#include <unistd.h>

#include "threads.h"

// Until the thread sleeps in the host; false after twenty seconds.
static bool sleeps(thread_id thread)
{
    const std::string path = "/proc/self/task/" + std::to_string(thread) + "/stat";
    for (const bigtime_t end = system_time() + 20'000'000; system_time() < end; snooze(500)) {
        char state = '?';
        if (FILE* file = fopen(path.c_str(), "re")) {
            if (fscanf(file, "%*d (%*[^)]) %c", &state) != 1)
                state = '?';
            fclose(file);
        }
        if (state == 'S')
            return true;
    }
    return false;
}

// What the waits below wait for, for ever.
static sem_id sSem;
static port_id sEmpty;
static port_id sFull;
static thread_id sSleeper;

static status_t wait_for_sem_and_port(void*)
{
    object_wait_info infos[] = {{sSem, B_OBJECT_TYPE_SEMAPHORE, B_EVENT_ACQUIRE_SEMAPHORE},
                                {sEmpty, B_OBJECT_TYPE_PORT, B_EVENT_READ}};
    return wait_for_objects(infos, 2);
}

TEST(Waits, KillEndsAThreadWhateverItWaitsFor)
{
    sSem = create_sem(0, "never");
    sEmpty = create_port(1, "empty");
    sFull = create_port(1, "full");
    write_port(sFull, 0, nullptr, 0);
    sSleeper = spawn_thread([](void*) -> status_t { return snooze(600'000'000); }, "sleeper",
                            B_NORMAL_PRIORITY, nullptr);
    resume_thread(sSleeper);
    ASSERT_EQ(send_data(sSleeper, 1, nullptr, 0), B_OK);
    const thread_func waits[] = {
        wait_for_sem_and_port,
        [](void*) -> status_t { return write_port(sFull, 1, nullptr, 0); },
        [](void*) -> status_t { return port_buffer_size(sEmpty); },
        [](void*) -> status_t { return wait_for_thread(sSleeper, nullptr); },
        [](void*) -> status_t { return send_data(sSleeper, 2, nullptr, 0); },
        [](void*) -> status_t { return switch_sem(create_sem(0, "other"), sSem); },
        [](void*) -> status_t {
            return acquire_sem_etc(sSem, 1, B_RELATIVE_TIMEOUT, B_INFINITE_TIMEOUT);
        },
    };
    for (const thread_func wait : waits) {
        const thread_id thread = run(wait);
        ASSERT_TRUE(sleeps(thread));
        EXPECT_EQ(kill_thread(thread), B_OK);
        status_t result = B_OK;
        EXPECT_EQ(wait_for_thread_etc(thread, B_RELATIVE_TIMEOUT, 20'000'000, &result),
                  B_INTERRUPTED);
    }
    EXPECT_EQ(kill_thread(sSleeper), B_OK);
    EXPECT_EQ(wait_for_thread(sSleeper, nullptr), B_INTERRUPTED);
    EXPECT_EQ(port_count(sFull), 1) << "nothing of the killed ones came through";
    int32 count = 1;
    EXPECT_EQ(get_sem_count(sSem, &count), B_OK);
    EXPECT_EQ(count, 0);
    delete_sem(sSem);
    delete_port(sEmpty);
    delete_port(sFull);
}

TEST(Waits, AThreadKilledBeforeItWaitsEndsToo)
{
    sSem = create_sem(0, "never");
    sEmpty = create_port(1, "empty");
    for (int round = 0; round < 200; round++) {
        const thread_id thread = run(wait_for_sem_and_port);
        if (round % 2 == 0)
            sched_yield();
        EXPECT_EQ(kill_thread(thread), B_OK);
        ASSERT_EQ(wait_for_thread_etc(thread, B_RELATIVE_TIMEOUT, 20'000'000, nullptr),
                  B_INTERRUPTED);
    }
    delete_sem(sSem);
    delete_port(sEmpty);
}

TEST(Waits, EveryTimeoutHasItsStatus)
{
    const sem_id sem = create_sem(0, "none");
    const port_id port = create_port(1, "empty");
    const auto real = [] { return real_time_clock_usecs(); };
    struct Row {
        uint32 flags;
        bigtime_t timeout;
        status_t status;
    };
    for (const Row& row : {
             Row{B_RELATIVE_TIMEOUT, 0, B_WOULD_BLOCK},
             Row{B_RELATIVE_TIMEOUT, -1, B_WOULD_BLOCK},
             Row{B_RELATIVE_TIMEOUT, INT64_MIN, B_WOULD_BLOCK},
             Row{B_RELATIVE_TIMEOUT, 1, B_TIMED_OUT},
             Row{B_ABSOLUTE_TIMEOUT, 0, B_TIMED_OUT},
             Row{B_ABSOLUTE_TIMEOUT, INT64_MIN, B_TIMED_OUT},
             Row{B_ABSOLUTE_TIMEOUT, system_time() + 2000, B_TIMED_OUT},
             Row{B_ABSOLUTE_REAL_TIME_TIMEOUT, real() + 2000, B_TIMED_OUT},
             Row{B_ABSOLUTE_REAL_TIME_TIMEOUT, real() - 2000, B_TIMED_OUT},
             Row{B_ABSOLUTE_REAL_TIME_TIMEOUT, INT64_MIN, B_TIMED_OUT},
             Row{B_RELATIVE_TIMEOUT | B_ABSOLUTE_TIMEOUT, 1, B_BAD_VALUE},
         }) {
        SCOPED_TRACE(std::to_string(row.flags) + " " + std::to_string(row.timeout));
        object_wait_info info = {sem, B_OBJECT_TYPE_SEMAPHORE, B_EVENT_ACQUIRE_SEMAPHORE};
        EXPECT_EQ(acquire_sem_etc(sem, 1, row.flags, row.timeout), row.status);
        EXPECT_EQ(read_port_etc(port, nullptr, nullptr, 0, row.flags, row.timeout), row.status);
        EXPECT_EQ(port_buffer_size_etc(port, row.flags, row.timeout), row.status);
        EXPECT_EQ(wait_for_objects_etc(&info, 1, row.flags, row.timeout), row.status);
    }
    release_sem(sem);
    EXPECT_EQ(acquire_sem_etc(sem, 1, B_ABSOLUTE_TIMEOUT, 0), B_OK) << "what is there is taken";
    delete_sem(sem);
    delete_port(port);
}

TEST(Waits, AnEndlessRelativeTimeoutDoesNotRunOver)
{
    sSem = create_sem(0, "later");
    const thread_id thread = run([](void*) -> status_t {
        status_t status = acquire_sem_etc(sSem, 1, B_RELATIVE_TIMEOUT, B_INFINITE_TIMEOUT);
        if (status == B_OK)
            status = acquire_sem_etc(sSem, 1, B_RELATIVE_TIMEOUT, B_INFINITE_TIMEOUT - 1);
        if (status == B_OK)
            status = acquire_sem_etc(sSem, 1, B_ABSOLUTE_TIMEOUT, B_INFINITE_TIMEOUT);
        return status;
    });
    for (int i = 0; i < 3; i++) {
        EXPECT_TRUE(sleeps(thread));
        release_sem(sSem);
    }
    EXPECT_EQ(result_of(thread), B_OK);
    delete_sem(sSem);
}

TEST(Waits, ASignalEndsOnlyWaitsThatAllowIt)
{
    struct sigaction action = {}, former;
    action.sa_handler = [](int) {};
    sigaction(SIGUSR1, &action, &former);
    sSem = create_sem(0, "never");
    const thread_id patient = run([](void*) -> status_t { return acquire_sem(sSem); });
    const thread_id nervous =
        run([](void*) -> status_t { return acquire_sem_etc(sSem, 1, B_CAN_INTERRUPT, 0); });
    const thread_id watcher = run([](void*) -> status_t {
        object_wait_info info = {sSem, B_OBJECT_TYPE_SEMAPHORE, B_EVENT_ACQUIRE_SEMAPHORE};
        return wait_for_objects_etc(&info, 1, B_CAN_INTERRUPT, 0);
    });
    // One signal may come before the wait.
    for (const thread_id thread : {nervous, watcher}) {
        status_t result = B_OK, status = B_TIMED_OUT;
        for (int i = 0; i < 1000 && status == B_TIMED_OUT; i++) {
            send_signal(thread, SIGUSR1);
            send_signal(patient, SIGUSR1);
            status = wait_for_thread_etc(thread, B_RELATIVE_TIMEOUT, 5'000, &result);
        }
        EXPECT_EQ(status, B_OK);
        EXPECT_EQ(result, B_INTERRUPTED);
    }
    release_sem(sSem);
    EXPECT_EQ(result_of(patient), B_OK);
    delete_sem(sSem);
    sigaction(SIGUSR1, &former, nullptr);
}

TEST(WaitForObjects, IdsAndFilesOfNothingAreToldAtOnce)
{
    for (const object_wait_info& nothing : {
             object_wait_info{-1, B_OBJECT_TYPE_FD, B_EVENT_READ},
             object_wait_info{1'000'000, B_OBJECT_TYPE_FD, B_EVENT_READ},
             object_wait_info{-1, B_OBJECT_TYPE_SEMAPHORE, B_EVENT_ACQUIRE_SEMAPHORE},
             object_wait_info{0, B_OBJECT_TYPE_PORT, B_EVENT_READ},
             object_wait_info{INT32_MAX, B_OBJECT_TYPE_THREAD, B_EVENT_INVALID},
             object_wait_info{1, 77, B_EVENT_READ},
             object_wait_info{-1, B_OBJECT_TYPE_SEMAPHORE, 0},
         }) {
        object_wait_info info = nothing;
        EXPECT_EQ(wait_for_objects_etc(&info, 1, B_RELATIVE_TIMEOUT, 20'000'000), 1)
            << info.type << " " << info.object;
        EXPECT_EQ(info.events, B_EVENT_INVALID) << info.type << " " << info.object;
    }
    EXPECT_EQ(wait_for_objects_etc(nullptr, 0, B_RELATIVE_TIMEOUT, 0), B_WOULD_BLOCK);
    EXPECT_EQ(wait_for_objects_etc(nullptr, 1, B_RELATIVE_TIMEOUT, 0), B_BAD_VALUE);
    object_wait_info info = {};
    EXPECT_EQ(wait_for_objects_etc(&info, -1, B_RELATIVE_TIMEOUT, 0), B_BAD_VALUE);
}

TEST(WaitForObjects, EndsOfObjectsAreToldUnasked)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    static port_id port;
    static sem_id sem;
    static int file;
    port = create_port(1, "closes");
    sem = create_sem(0, "goes");
    file = ends[1];
    struct Row {
        object_wait_info info;
        thread_func end;
        uint16 event;
    };
    const thread_id lives = run([](void*) -> status_t { return snooze(30'000); });
    for (const Row& row : {
             Row{{port, B_OBJECT_TYPE_PORT, B_EVENT_READ},
                 [](void*) -> status_t { return close_port(port); },
                 B_EVENT_DISCONNECTED},
             Row{{sem, B_OBJECT_TYPE_SEMAPHORE, B_EVENT_ACQUIRE_SEMAPHORE},
                 [](void*) -> status_t { return delete_sem(sem); },
                 B_EVENT_INVALID},
             Row{{ends[0], B_OBJECT_TYPE_FD, B_EVENT_READ},
                 [](void*) -> status_t { return close(file); },
                 B_EVENT_DISCONNECTED},
             Row{{lives, B_OBJECT_TYPE_THREAD, B_EVENT_INVALID},
                 [](void*) -> status_t { return B_OK; },
                 B_EVENT_INVALID},
         }) {
        const thread_id helper = spawn_thread(
            [](void* end) -> status_t {
                snooze(3'000);
                return (*static_cast<const thread_func*>(end))(nullptr);
            },
            "ends it", B_NORMAL_PRIORITY, const_cast<thread_func*>(&row.end));
        resume_thread(helper);
        object_wait_info info = row.info;
        EXPECT_EQ(wait_for_objects_etc(&info, 1, B_RELATIVE_TIMEOUT, 60'000'000), 1);
        EXPECT_EQ(info.events & row.event, row.event) << info.type;
        EXPECT_EQ(result_of(helper), B_OK);
    }
    delete_port(port);
    close(ends[0]);
}

TEST(WaitForObjects, ManyWatchersAllHearOfOneChange)
{
    static sem_id gate;
    gate = create_sem(0, "gate");
    std::vector<thread_id> watchers;
    for (int i = 0; i < 20; i++) {
        watchers.push_back(run([](void*) -> status_t {
            object_wait_info info = {gate, B_OBJECT_TYPE_SEMAPHORE, B_EVENT_ACQUIRE_SEMAPHORE};
            return wait_for_objects(&info, 1) == 1 ? int(info.events) : -1;
        }));
    }
    for (const thread_id watcher : watchers)
        EXPECT_TRUE(sleeps(watcher));
    release_sem(gate);  // looking does not take
    for (const thread_id watcher : watchers)
        EXPECT_EQ(result_of(watcher), B_EVENT_ACQUIRE_SEMAPHORE);
    EXPECT_EQ(acquire_sem_etc(gate, 1, B_RELATIVE_TIMEOUT, 0), B_OK);
    delete_sem(gate);
}

TEST(Semaphores, NumbersOutOfRangeAreRefused)
{
    EXPECT_EQ(create_sem(-1, "x"), B_BAD_VALUE);
    const sem_id sem = create_sem(INT32_MAX - 1, nullptr);
    ASSERT_GT(sem, 0);
    EXPECT_EQ(release_sem(sem), B_OK);
    EXPECT_EQ(release_sem(sem), B_BAD_VALUE) << "a count holds no more";
    EXPECT_EQ(release_sem_etc(sem, 0, 0), B_BAD_VALUE);
    EXPECT_EQ(release_sem_etc(sem, INT32_MIN, 0), B_BAD_VALUE);
    EXPECT_EQ(acquire_sem_etc(sem, 0, 0, 0), B_BAD_VALUE);
    EXPECT_EQ(acquire_sem_etc(sem, -5, B_RELATIVE_TIMEOUT, 0), B_BAD_VALUE);
    EXPECT_EQ(acquire_sem_etc(sem, INT32_MAX, B_RELATIVE_TIMEOUT, 0), B_OK);
    int32 count = 1;
    EXPECT_EQ(get_sem_count(sem, &count), B_OK);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(get_sem_count(sem, nullptr), B_BAD_VALUE);
    EXPECT_EQ(release_sem_etc(sem, 1, B_RELEASE_ALL), B_OK) << "nobody waits";
    EXPECT_EQ(get_sem_count(sem, &count), B_OK);
    EXPECT_EQ(count, 0);
    sem_info info;
    EXPECT_EQ(_get_sem_info(sem, &info, sizeof(info) - 1), B_BAD_VALUE);
    EXPECT_EQ(get_sem_info(sem, &info), B_OK);
    EXPECT_EQ(info.latest_holder, 0);
    EXPECT_EQ(set_sem_owner(sem, B_CURRENT_TEAM), B_OK);
    EXPECT_EQ(set_sem_owner(sem, B_SYSTEM_TEAM), B_BAD_TEAM_ID);
    EXPECT_EQ(delete_sem(sem), B_OK);
    for (const sem_id none : {sem, 0, -1, INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(delete_sem(none), B_BAD_SEM_ID);
        EXPECT_EQ(acquire_sem(none), B_BAD_SEM_ID);
        EXPECT_EQ(release_sem(none), B_BAD_SEM_ID);
        EXPECT_EQ(switch_sem(none, none), B_BAD_SEM_ID);
    }
}

TEST(Semaphores, NamesAreCutAndListsAreComplete)
{
    const std::string name(100, 'n');
    const sem_id first = create_sem(3, name.c_str());
    const sem_id second = create_sem(4, "second");
    sem_info info;
    ASSERT_EQ(get_sem_info(first, &info), B_OK);
    EXPECT_EQ(info.name, name.substr(0, B_OS_NAME_LENGTH - 1));
    int32 cookie = 0, found = 0;
    while (get_next_sem_info(B_CURRENT_TEAM, &cookie, &info) == B_OK)
        found += info.sem == first ? info.count : info.sem == second ? info.count * 10 : 0;
    EXPECT_EQ(found, 43);
    EXPECT_EQ(get_next_sem_info(B_CURRENT_TEAM, &cookie, &info), B_BAD_VALUE);
    cookie = -7;
    EXPECT_EQ(get_next_sem_info(B_CURRENT_TEAM, &cookie, &info), B_BAD_VALUE);
    EXPECT_EQ(get_next_sem_info(B_SYSTEM_TEAM, &cookie, &info), B_BAD_TEAM_ID);
    delete_sem(first);
    delete_sem(second);
}

TEST(Semaphores, AllThatThereAreCanBeUsedAndUsedAgain)
{
    std::vector<sem_id> all;
    sem_id sem;
    while ((sem = create_sem(1, "one of many")) > 0)
        all.push_back(sem);
    EXPECT_EQ(sem, B_NO_MORE_SEMS);
    EXPECT_GT(all.size(), 60'000u);
    const sem_id stale = all.back();
    for (const sem_id each : all)
        ASSERT_EQ(delete_sem(each), B_OK);
    for (int round = 0; round < 100'000; round++) {
        sem = create_sem(1, "again");
        ASSERT_GT(sem, 0);
        ASSERT_NE(sem, stale) << "a late caller would meet another's";
        ASSERT_EQ(delete_sem(sem), B_OK);
    }
}

TEST(Ports, ClosedPortsAreReadToTheirEnd)
{
    const port_id port = create_port(2, "closing");
    EXPECT_EQ(write_port(port, 5, "five", 4), B_OK);
    EXPECT_EQ(close_port(port), B_OK);
    EXPECT_EQ(write_port_etc(port, 6, nullptr, 0, B_RELATIVE_TIMEOUT, 0), B_BAD_PORT_ID);
    EXPECT_EQ(port_count(port), 1);
    EXPECT_EQ(port_buffer_size(port), 4);
    int32 code = 0;
    char buffer[2];
    EXPECT_EQ(read_port(port, &code, buffer, 2), 2);
    EXPECT_EQ(code, 5);
    EXPECT_EQ(read_port(port, &code, buffer, 2), B_BAD_PORT_ID);
    EXPECT_EQ(port_buffer_size(port), B_BAD_PORT_ID);
    EXPECT_EQ(close_port(port), B_OK);
    EXPECT_EQ(delete_port(port), B_OK);
    EXPECT_EQ(close_port(port), B_BAD_PORT_ID);
}

TEST(Ports, ClosingWakesReadersAndWriters)
{
    static port_id empty, full;
    empty = create_port(1, "empty");
    full = create_port(1, "full");
    write_port(full, 0, nullptr, 0);
    const thread_id reader =
        run([](void*) -> status_t { return read_port(empty, nullptr, nullptr, 0); });
    const thread_id looker = run([](void*) -> status_t { return port_buffer_size(empty); });
    const thread_id writer = run([](void*) -> status_t { return write_port(full, 0, nullptr, 0); });
    for (const thread_id thread : {reader, looker, writer})
        EXPECT_TRUE(sleeps(thread));
    close_port(empty);
    close_port(full);
    for (const thread_id thread : {reader, looker, writer})
        EXPECT_EQ(result_of(thread), B_BAD_PORT_ID);
    delete_port(empty);
    delete_port(full);
}

TEST(Ports, SizesAndCapacitiesEndWhereTheyShould)
{
    EXPECT_EQ(create_port(0, "x"), B_BAD_VALUE);
    EXPECT_EQ(create_port(-1, "x"), B_BAD_VALUE);
    EXPECT_EQ(create_port(4097, "x"), B_BAD_VALUE);
    const port_id port = create_port(4096, nullptr);
    ASSERT_GT(port, 0);
    const std::string most(256 * 1024, 'm');
    EXPECT_EQ(write_port(port, 1, most.data(), most.size()), B_OK);
    EXPECT_EQ(write_port(port, 1, most.data(), most.size() + 1), B_BAD_VALUE);
    EXPECT_EQ(write_port(port, 1, nullptr, 1), B_BAD_VALUE);
    std::string got(most.size() + 10, '?');
    EXPECT_EQ(read_port(port, nullptr, nullptr, 5), B_BAD_VALUE);
    EXPECT_EQ(read_port(port, nullptr, got.data(), got.size()), ssize_t(most.size()));
    EXPECT_EQ(got, most + std::string(10, '?'));
    for (int32 i = 0; i < 4096; i++)
        ASSERT_EQ(write_port_etc(port, i, nullptr, 0, B_RELATIVE_TIMEOUT, 0), B_OK);
    EXPECT_EQ(write_port_etc(port, 0, nullptr, 0, B_RELATIVE_TIMEOUT, 0), B_WOULD_BLOCK);
    port_info info;
    EXPECT_EQ(get_port_info(port, &info), B_OK);
    EXPECT_EQ(info.queue_count, 4096);
    EXPECT_EQ(info.total_count, 1);
    for (int32 i = 0, code; i < 4096; i++) {
        ASSERT_EQ(read_port(port, &code, nullptr, 0), 0);
        ASSERT_EQ(code, i);
    }
    EXPECT_EQ(find_port(info.name), port);
    EXPECT_EQ(find_port("no such port"), B_NAME_NOT_FOUND);
    EXPECT_EQ(find_port(nullptr), B_BAD_VALUE);
    delete_port(port);
}

TEST(Ports, ManyReadersAndWritersLoseNothing)
{
    static port_id port;
    static std::atomic<int64_t> sum;
    static const int kEach = 2'000;
    port = create_port(3, "busy");
    sum = 0;
    std::vector<thread_id> writers, readers;
    for (int i = 0; i < 4; i++) {
        readers.push_back(run([](void*) -> status_t {
            int32 code;
            while (read_port(port, &code, nullptr, 0) >= 0)
                sum += code;
            return B_OK;
        }));
        writers.push_back(run([](void*) -> status_t {
            for (int32 i = 1; i <= kEach; i++) {
                if (write_port(port, i, nullptr, 0) != B_OK)
                    return B_ERROR;
            }
            return B_OK;
        }));
    }
    for (const thread_id writer : writers)
        EXPECT_EQ(result_of(writer), B_OK);
    close_port(port);
    for (const thread_id reader : readers)
        EXPECT_EQ(result_of(reader), B_OK);
    EXPECT_EQ(sum, int64_t(4) * kEach * (kEach + 1) / 2);
    delete_port(port);
}
