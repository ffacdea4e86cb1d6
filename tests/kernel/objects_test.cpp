// Semaphores, ports, areas, clocks, and waits for several objects.

#include <OS.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <vector>

#include <errno.h>
#include <signal.h>
#include <string.h>
#include <unistd.h>

#include "kernel/HostActions.h"
#include "threads.h"

static bool wait_for_count(sem_id sem, int32 wanted)
{
    int32 count = wanted + 1;
    for (const bigtime_t end = system_time() + 20'000'000; system_time() < end; snooze(500)) {
        if (get_sem_count(sem, &count) == B_OK && count == wanted)
            return true;
    }
    return false;
}

TEST(Semaphores, TimeoutsAndFlags)
{
    const sem_id sem = create_sem(2, "two");
    EXPECT_EQ(B_OK, acquire_sem_etc(sem, 2, B_RELATIVE_TIMEOUT, 0));
    EXPECT_EQ(B_WOULD_BLOCK, acquire_sem_etc(sem, 1, B_RELATIVE_TIMEOUT, 0));
    EXPECT_EQ(B_WOULD_BLOCK, acquire_sem_etc(sem, 1, B_RELATIVE_TIMEOUT, INT64_MIN));
    EXPECT_EQ(B_TIMED_OUT, acquire_sem_etc(sem, 1, B_RELATIVE_TIMEOUT, 2000));
    EXPECT_EQ(B_TIMED_OUT, acquire_sem_etc(sem, 1, B_ABSOLUTE_TIMEOUT, system_time() + 2000));
    EXPECT_EQ(B_TIMED_OUT, acquire_sem_etc(sem, 1, B_ABSOLUTE_REAL_TIME_TIMEOUT,
                                           real_time_clock_usecs() + 2000));
    EXPECT_EQ(B_BAD_VALUE, acquire_sem_etc(sem, 1, B_RELATIVE_TIMEOUT | B_ABSOLUTE_TIMEOUT, 1));
    EXPECT_EQ(B_BAD_VALUE, acquire_sem_etc(sem, 0, 0, 0));
    EXPECT_EQ(B_BAD_VALUE, release_sem_etc(sem, -1, 0));
    EXPECT_EQ(B_OK, release_sem_etc(sem, 5, B_RELEASE_IF_WAITING_ONLY));
    sem_info info;
    ASSERT_EQ(B_OK, get_sem_info(sem, &info));
    EXPECT_EQ(0, info.count) << "nobody waited";
    EXPECT_EQ(B_OK, release_sem_etc(sem, INT32_MAX, 0));
    EXPECT_EQ(B_BAD_VALUE, release_sem(sem)) << "the count would overflow";
    EXPECT_EQ(B_OK, delete_sem(sem));
    EXPECT_EQ(B_BAD_SEM_ID, delete_sem(sem));
    EXPECT_EQ(B_BAD_SEM_ID, acquire_sem(sem));
    EXPECT_EQ(B_BAD_VALUE, create_sem(-1, "x"));
}

TEST(Semaphores, WaitersComeInTurnAndALargeWishIsNotPassedOver)
{
    struct Wish {
        sem_id sem;
        int32 count;
        std::atomic<int>* order;
    };
    std::atomic<int> order{0};
    const sem_id sem = create_sem(0, "turns");
    Wish large{sem, 3, &order}, small{sem, 1, &order};
    const thread_func take = [](void* data) -> status_t {
        Wish* wish = static_cast<Wish*>(data);
        const status_t status = acquire_sem_etc(wish->sem, wish->count, 0, 0);
        return status == B_OK ? ++*wish->order : status;
    };
    const thread_id first = run(take, &large);
    ASSERT_TRUE(wait_for_count(sem, -3));
    const thread_id second = run(take, &small);
    ASSERT_TRUE(wait_for_count(sem, -4));
    EXPECT_EQ(B_WOULD_BLOCK, acquire_sem_etc(sem, 1, B_RELATIVE_TIMEOUT, 0));
    release_sem_etc(sem, 2, 0);
    snooze(2000);
    EXPECT_EQ(0, order);
    release_sem(sem);
    EXPECT_EQ(1, result_of(first));
    release_sem(sem);
    EXPECT_EQ(2, result_of(second));
    delete_sem(sem);
}

TEST(Semaphores, AWaiterThatGivesUpLetsTheOthersThrough)
{
    struct sigaction action = {}, former;
    action.sa_handler = [](int) {};
    sigaction(SIGUSR1, &action, &former);
    const sem_id sem = create_sem(1, "one");
    const thread_id impatient = run(
        [](void* data) -> status_t {
            return acquire_sem_etc(*static_cast<sem_id*>(data), 2, B_CAN_INTERRUPT, 0);
        },
        const_cast<sem_id*>(&sem));
    ASSERT_TRUE(wait_for_count(sem, -1));
    const thread_id patient =
        run([](void* data) -> status_t { return acquire_sem(*static_cast<sem_id*>(data)); },
            const_cast<sem_id*>(&sem));
    ASSERT_TRUE(wait_for_count(sem, -2));
    status_t status, result = B_OK;
    do {
        send_signal(impatient, SIGUSR1);
        status = wait_for_thread_etc(impatient, B_RELATIVE_TIMEOUT, 10'000, &result);
    } while (status == B_TIMED_OUT);
    EXPECT_EQ(B_INTERRUPTED, result);
    EXPECT_EQ(B_OK, result_of(patient));
    delete_sem(sem);
    sigaction(SIGUSR1, &former, nullptr);
}

TEST(Semaphores, SwitchingToNoneReleasesNothing)
{
    const sem_id sem = create_sem(0, "held");
    int32 count = -1;
    EXPECT_EQ(B_BAD_SEM_ID, switch_sem(sem, INT32_MAX));
    EXPECT_EQ(B_BAD_VALUE, switch_sem_etc(sem, sem, 0, 0, 0));
    EXPECT_EQ(B_BAD_VALUE, switch_sem_etc(sem, sem, 1, B_RELATIVE_TIMEOUT | B_ABSOLUTE_TIMEOUT, 0));
    EXPECT_EQ(B_OK, get_sem_count(sem, &count));
    EXPECT_EQ(0, count);
    EXPECT_EQ(B_OK, switch_sem(sem, sem)) << "what it gives back it takes";
    delete_sem(sem);
}

TEST(Semaphores, DeletionWakesEveryWaiter)
{
    static sem_id sem;
    sem = create_sem(0, "doomed");
    std::vector<thread_id> waiters;
    for (int i = 0; i < 4; ++i)
        waiters.push_back(run([](void*) -> status_t { return acquire_sem(sem); }, nullptr));
    ASSERT_TRUE(wait_for_count(sem, -4));
    delete_sem(sem);
    for (thread_id waiter : waiters)
        EXPECT_EQ(B_BAD_SEM_ID, result_of(waiter));
}

TEST(Semaphores, ManyThreadsNeverHoldMoreThanThereIs)
{
    struct Shared {
        sem_id sem;
        std::atomic<int> inside{0};
        std::atomic<bool> crowded{false};
    } shared{create_sem(2, "two")};
    std::vector<thread_id> threads;
    for (int i = 0; i < 4; ++i) {
        threads.push_back(run(
            [](void* data) -> status_t {
                Shared* shared = static_cast<Shared*>(data);
                for (int turn = 0; turn < 2000; ++turn) {
                    acquire_sem(shared->sem);
                    if (++shared->inside > 2)
                        shared->crowded = true;
                    --shared->inside;
                    release_sem(shared->sem);
                }
                return B_OK;
            },
            &shared));
    }
    for (thread_id thread : threads)
        EXPECT_EQ(B_OK, result_of(thread));
    EXPECT_FALSE(shared.crowded);
    int32 count;
    EXPECT_EQ(B_OK, get_sem_count(shared.sem, &count));
    EXPECT_EQ(2, count);
    delete_sem(shared.sem);
}

TEST(Ports, MessagesComeInOrderAndCutToTheBuffer)
{
    const port_id port = create_port(2, "a port");
    EXPECT_EQ(port, find_port("a port"));
    EXPECT_EQ(B_OK, write_port(port, 1, "first", 5));
    EXPECT_EQ(B_OK, write_port(port, 2, nullptr, 0));
    EXPECT_EQ(B_WOULD_BLOCK, write_port_etc(port, 3, "x", 1, B_RELATIVE_TIMEOUT, 0));
    EXPECT_EQ(2, port_count(port));
    EXPECT_EQ(5, port_buffer_size(port));
    char text[4] = {};
    int32 code;
    EXPECT_EQ(3, read_port(port, &code, text, 3));
    EXPECT_STREQ("fir", text);
    EXPECT_EQ(1, code);
    EXPECT_EQ(0, read_port(port, &code, text, 3));
    EXPECT_EQ(2, code);
    EXPECT_EQ(B_TIMED_OUT, read_port_etc(port, &code, text, 3, B_RELATIVE_TIMEOUT, 1000));
    EXPECT_EQ(B_BAD_VALUE, write_port(port, 1, text, 1 << 20));
    EXPECT_EQ(B_OK, write_port(port, 4, "left", 4));
    EXPECT_EQ(B_OK, close_port(port));
    EXPECT_EQ(B_BAD_PORT_ID, write_port(port, 5, "x", 1));
    EXPECT_EQ(4, read_port(port, &code, nullptr, 0) + 4) << "what was written can be read";
    EXPECT_EQ(B_BAD_PORT_ID, read_port(port, &code, text, 3));
    EXPECT_EQ(B_OK, delete_port(port));
    EXPECT_EQ(B_BAD_PORT_ID, port_count(port));
    EXPECT_EQ(B_BAD_VALUE, create_port(0, "x"));
}

TEST(Ports, AFullPortHoldsItsWriterAndDeletionFreesIt)
{
    static port_id port;
    port = create_port(1, "narrow");
    const thread_id writer = run(
        [](void*) -> status_t {
            for (int32 i = 0; i < 1000; ++i) {
                if (write_port(port, i, &i, sizeof(i)) != B_OK)
                    return i;
            }
            return B_OK;
        },
        nullptr);
    for (int32 i = 0; i < 500; ++i) {
        int32 code, value;
        ASSERT_EQ(ssize_t(sizeof(value)), read_port(port, &code, &value, sizeof(value)));
        ASSERT_EQ(i, value);
    }
    delete_port(port);
    EXPECT_GE(result_of(writer), 500);
}

TEST(WaitForObjects, TellsWhichIsReady)
{
    const sem_id sem = create_sem(0, "s");
    const port_id port = create_port(1, "p");
    int pipe_ends[2];
    ASSERT_EQ(0, pipe(pipe_ends));
    object_wait_info infos[] = {
        {sem, B_OBJECT_TYPE_SEMAPHORE, B_EVENT_ACQUIRE_SEMAPHORE},
        {port, B_OBJECT_TYPE_PORT, B_EVENT_READ},
        {pipe_ends[0], B_OBJECT_TYPE_FD, B_EVENT_READ},
    };
    const auto again = [&] {
        infos[0].events = B_EVENT_ACQUIRE_SEMAPHORE;
        infos[1].events = B_EVENT_READ;
        infos[2].events = B_EVENT_READ;
    };
    EXPECT_EQ(B_WOULD_BLOCK, wait_for_objects_etc(infos, 3, B_RELATIVE_TIMEOUT, 0));
    again();
    EXPECT_EQ(B_TIMED_OUT, wait_for_objects_etc(infos, 3, B_RELATIVE_TIMEOUT, 2000));
    again();
    static port_id target;
    target = port;
    const thread_id writer = run(
        [](void*) -> status_t {
            snooze(10000);
            return write_port(target, 1, nullptr, 0);
        },
        nullptr);
    EXPECT_EQ(1, wait_for_objects(infos, 3));
    EXPECT_EQ(B_EVENT_READ, infos[1].events);
    EXPECT_EQ(0, infos[0].events);
    EXPECT_EQ(B_OK, result_of(writer));
    release_sem(sem);
    ASSERT_EQ(1, write(pipe_ends[1], "x", 1));
    again();
    EXPECT_EQ(3, wait_for_objects(infos, 3));
    delete_sem(sem);
    again();
    EXPECT_EQ(3, wait_for_objects(infos, 3));
    EXPECT_EQ(B_EVENT_INVALID, infos[0].events);
    delete_port(port);
    close(pipe_ends[0]);
    close(pipe_ends[1]);
}

TEST(Areas, ClonesSeeTheSamePages)
{
    char* address = nullptr;
    const area_id area = create_area("memory", reinterpret_cast<void**>(&address), B_ANY_ADDRESS,
                                     2 * B_PAGE_SIZE, B_NO_LOCK, B_READ_AREA | B_WRITE_AREA);
    ASSERT_GT(area, 0);
    char* other = nullptr;
    const area_id clone =
        clone_area("clone", reinterpret_cast<void**>(&other), B_ANY_ADDRESS, B_READ_AREA, area);
    ASSERT_GT(clone, 0);
    strcpy(address, "shared");
    EXPECT_STREQ("shared", other);
    EXPECT_EQ(area, area_for(address + B_PAGE_SIZE));
    EXPECT_EQ(clone, find_area("clone"));
    EXPECT_EQ(B_OK, resize_area(area, B_PAGE_SIZE));
    EXPECT_EQ('\0', other[B_PAGE_SIZE + 1]) << "the clone keeps its pages";
    EXPECT_EQ(B_OK, delete_area(area));
    EXPECT_STREQ("shared", other);
    EXPECT_EQ(B_OK, delete_area(clone));
    EXPECT_EQ(B_BAD_VALUE, delete_area(clone));
    EXPECT_EQ(B_BAD_VALUE, create_area("x", reinterpret_cast<void**>(&address), B_ANY_ADDRESS, 100,
                                       B_NO_LOCK, B_READ_AREA));
}

TEST(Time, ClocksAgreeAndSleepsLastLongEnough)
{
    const bigtime_t before = system_time();
    EXPECT_EQ(B_OK, snooze(3000));
    EXPECT_GE(system_time() - before, 3000);
    EXPECT_EQ(B_OK, snooze(INT64_MIN));
    EXPECT_EQ(B_OK, snooze_until(system_time() - 5, B_SYSTEM_TIMEBASE));
    EXPECT_EQ(B_BAD_VALUE, snooze_until(0, 77));
    const bigtime_t first = real_time_clock_usecs() / 1'000'000;
    const auto seconds = static_cast<bigtime_t>(real_time_clock());
    EXPECT_GE(seconds, first);
    EXPECT_LE(seconds, real_time_clock_usecs() / 1'000'000);
}

TEST(Time, SettingTheClockGoesThroughTheReplaceableAction)
{
    static unsigned long asked;
    BPrivate::HostActions& actions = BPrivate::host_actions();
    const BPrivate::HostActions saved = actions;
    actions.set_clock = [](unsigned long seconds) {
        asked = seconds;
        return 0;
    };
    set_real_time_clock(123456789);
    actions = saved;
    EXPECT_EQ(123456789ul, asked);
}

static std::atomic<int> sAlarms;

TEST(Time, AlarmRingsInTheCallingThread)
{
    struct sigaction action = {}, former;
    action.sa_handler = [](int) { ++sAlarms; };
    sigaction(SIGALRM, &action, &former);
    sAlarms = 0;
    EXPECT_GE(set_alarm(5000, B_ONE_SHOT_RELATIVE_ALARM), 0);
    for (const bigtime_t end = system_time() + 20'000'000; sAlarms == 0 && system_time() < end;)
        snooze(1000);
    EXPECT_EQ(1, sAlarms);
    EXPECT_GE(set_alarm(60000000, B_ONE_SHOT_RELATIVE_ALARM), 0);
    EXPECT_GT(set_alarm(B_INFINITE_TIMEOUT, B_ONE_SHOT_RELATIVE_ALARM), 50000000);
    EXPECT_EQ(B_BAD_VALUE, set_alarm(1, 77));
    sigaction(SIGALRM, &former, nullptr);
}

TEST(Teams, InfoAndKillGoByTheHostsProcesses)
{
    team_info info;
    ASSERT_EQ(B_OK, get_team_info(B_CURRENT_TEAM, &info));
    EXPECT_EQ(getpid(), info.team);
    EXPECT_EQ(getppid(), info.parent);
    const std::string program(program_invocation_name);
    const size_t told = std::min(program.size(), sizeof(info.args) - 1);
    EXPECT_EQ(program.substr(0, told), std::string(info.args, told));
    EXPECT_EQ(B_BAD_TEAM_ID, get_team_info(-5, &info));

    static std::vector<std::pair<pid_t, int>> signals;
    signals.clear();
    BPrivate::HostActions& actions = BPrivate::host_actions();
    const BPrivate::HostActions saved = actions;
    actions.signal_team = [](pid_t team, int signal) {
        signals.emplace_back(team, signal);
        return 0;
    };
    EXPECT_EQ(B_OK, kill_team(INT32_MAX));
    EXPECT_EQ(B_OK, suspend_thread(INT32_MAX)) << "another team's main thread";
    const thread_id killer = run([](void*) -> status_t { return kill_thread(getpid()); });
    EXPECT_EQ(B_OK, result_of(killer)) << "it is not the one that ends";
    actions = saved;
    const std::vector<std::pair<pid_t, int>> expected = {
        {INT32_MAX, SIGKILL}, {INT32_MAX, SIGSTOP}, {getpid(), SIGKILL}};
    EXPECT_EQ(expected, signals);
}

TEST(SystemInfo, TellsOfAMachineThatRuns)
{
    system_info info;
    ASSERT_EQ(B_OK, get_system_info(&info));
    EXPECT_GT(info.cpu_count, 0u);
    EXPECT_GT(info.max_pages, info.used_pages);
    EXPECT_LT(info.boot_time, real_time_clock_usecs());
    std::vector<cpu_info> cpus(info.cpu_count);
    EXPECT_EQ(B_OK, get_cpu_info(0, info.cpu_count, cpus.data()));
    EXPECT_EQ(B_BAD_VALUE, get_cpu_info(info.cpu_count, 1, cpus.data()));
    EXPECT_EQ(B_BAD_VALUE, get_system_info(nullptr));
}
