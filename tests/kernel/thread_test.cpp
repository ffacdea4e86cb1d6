// Threads of the kernel kit.

#include <OS.h>

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include <unistd.h>

static status_t return_value(void* value)
{
    return static_cast<status_t>(reinterpret_cast<intptr_t>(value));
}

static void* number(intptr_t value) { return reinterpret_cast<void*>(value); }

// Until `condition` holds; false after twenty seconds.
template <class Condition>
static bool wait_until(Condition condition)
{
    for (const bigtime_t end = system_time() + 20'000'000; system_time() < end; snooze(500)) {
        if (condition())
            return true;
    }
    return condition();
}

TEST(Threads, SpawnedThreadRunsOnlyWhenResumed)
{
    static std::atomic<bool> ran;
    ran = false;
    const thread_id thread = spawn_thread(
        [](void*) -> status_t {
            ran = true;
            return 7;
        },
        "waiting", B_LOW_PRIORITY, nullptr);
    ASSERT_GT(thread, 0);
    thread_info info;
    ASSERT_EQ(B_OK, get_thread_info(thread, &info));
    EXPECT_EQ(B_THREAD_SUSPENDED, info.state);
    EXPECT_STREQ("waiting", info.name);
    EXPECT_EQ(B_LOW_PRIORITY, info.priority);
    EXPECT_EQ(thread, find_thread("waiting"));
    EXPECT_FALSE(ran);
    EXPECT_EQ(B_OK, resume_thread(thread));
    status_t result = 0;
    EXPECT_EQ(B_OK, wait_for_thread(thread, &result));
    EXPECT_EQ(7, result);
    EXPECT_TRUE(ran);
    EXPECT_EQ(B_BAD_THREAD_ID, wait_for_thread(thread, &result));
    EXPECT_EQ(B_BAD_THREAD_ID, rename_thread(thread, "gone"));
}

TEST(Threads, WaitingResumesAndLateWaitersStillHearTheStatus)
{
    status_t result = 0;
    const thread_id waited = spawn_thread(return_value, "a", B_NORMAL_PRIORITY, number(3));
    EXPECT_EQ(B_OK, wait_for_thread(waited, &result));
    EXPECT_EQ(3, result);
    const thread_id late = spawn_thread(return_value, "b", B_NORMAL_PRIORITY, number(4));
    resume_thread(late);
    EXPECT_TRUE(wait_until([=] { return find_thread("b") == B_NAME_NOT_FOUND; }));
    EXPECT_EQ(B_OK, wait_for_thread(late, &result));
    EXPECT_EQ(4, result);
}

TEST(Threads, ExitUnwindsTheStackAndRunsCallbacksLastFirst)
{
    static std::string trace;
    trace.clear();
    struct Local {
        ~Local() { trace += 'd'; }
    };
    const thread_id thread = spawn_thread(
        [](void*) -> status_t {
            on_exit_thread([](void* data) { trace += static_cast<char*>(data); },
                           const_cast<char*>("1"));
            on_exit_thread([](void* data) { trace += static_cast<char*>(data); },
                           const_cast<char*>("2"));
            Local local;
            exit_thread(9);
            return 1;
        },
        "exiting", B_NORMAL_PRIORITY, nullptr);
    status_t result = 0;
    EXPECT_EQ(B_OK, wait_for_thread(thread, &result));
    EXPECT_EQ(9, result);
    EXPECT_EQ("d21", trace);
}

TEST(Threads, KillEndsAThreadInEveryWaitOfTheKit)
{
    static sem_id sem;
    static port_id port;
    sem = create_sem(0, "never");
    port = create_port(1, "empty");
    const thread_func waits[] = {
        [](void*) -> status_t { return acquire_sem(sem); },
        [](void*) -> status_t { return snooze(60000000); },
        [](void*) -> status_t { return receive_data(nullptr, nullptr, 0); },
        [](void*) -> status_t { return read_port(port, nullptr, nullptr, 0); },
    };
    for (thread_func wait : waits) {
        const thread_id thread = spawn_thread(wait, "victim", B_NORMAL_PRIORITY, nullptr);
        resume_thread(thread);
        thread_info info;
        EXPECT_TRUE(wait_until([&] {
            return get_thread_info(thread, &info) == B_OK && info.state != B_THREAD_RUNNING;
        }));
        EXPECT_EQ(B_OK, kill_thread(thread));
        EXPECT_EQ(B_INTERRUPTED, wait_for_thread(thread, nullptr));
    }
    int32 count = -1;
    EXPECT_EQ(B_OK, get_sem_count(sem, &count));
    EXPECT_EQ(0, count) << "a killed waiter takes its wish along";
    delete_sem(sem);
    delete_port(port);

    const thread_id never_ran = spawn_thread(return_value, "unborn", B_NORMAL_PRIORITY, nullptr);
    EXPECT_EQ(B_OK, kill_thread(never_ran));
    EXPECT_EQ(B_INTERRUPTED, wait_for_thread(never_ran, nullptr));
}

TEST(Threads, SuspendedThreadStandsStillUntilResumed)
{
    static std::atomic<uint64_t> turns;
    static std::atomic<bool> stop;
    turns = 0;
    stop = false;
    const thread_id thread = spawn_thread(
        [](void*) -> status_t {
            while (!stop)
                ++turns;
            return B_OK;
        },
        "counting", B_NORMAL_PRIORITY, nullptr);
    resume_thread(thread);
    EXPECT_TRUE(wait_until([] { return turns > 0; }));
    EXPECT_EQ(B_OK, suspend_thread(thread));
    uint64_t seen = 0;
    EXPECT_TRUE(wait_until([&] {
        const uint64_t before = std::exchange(seen, turns.load());
        snooze(5000);
        return before == seen && seen == turns;
    }));
    thread_info info;
    EXPECT_EQ(B_OK, get_thread_info(thread, &info));
    EXPECT_EQ(B_THREAD_SUSPENDED, info.state);
    EXPECT_EQ(B_OK, resume_thread(thread));
    EXPECT_EQ(B_BAD_THREAD_STATE, resume_thread(thread));
    EXPECT_TRUE(wait_until([&] { return turns > seen; }));
    stop = true;
    EXPECT_EQ(B_OK, wait_for_thread(thread, nullptr));
}

TEST(Threads, DataIsHandedOverOneLetterAtATime)
{
    const thread_id reader = spawn_thread(
        [](void* main) -> status_t {
            char text[4] = {};
            thread_id sender = 0;
            const int32 code = receive_data(&sender, text, 3);
            const bool right = sender == static_cast<thread_id>(reinterpret_cast<intptr_t>(main)) &&
                               code == 'CODE' && std::string(text) == "abc";
            return right ? receive_data(&sender, nullptr, 0) : B_ERROR;
        },
        "reader", B_NORMAL_PRIORITY, number(find_thread(nullptr)));
    EXPECT_FALSE(has_data(reader));
    EXPECT_EQ(B_OK, send_data(reader, 'CODE', "abcdef", 6));
    EXPECT_TRUE(has_data(reader));
    EXPECT_EQ(B_OK, resume_thread(reader));
    EXPECT_EQ(B_OK, send_data(reader, 42, nullptr, 0));
    status_t result = 0;
    EXPECT_EQ(B_OK, wait_for_thread(reader, &result));
    EXPECT_EQ(42, result);
    EXPECT_EQ(B_BAD_THREAD_ID, send_data(reader, 0, nullptr, 0));
}

TEST(Threads, ThreadsOfOthersGetAnIdOnFirstUse)
{
    EXPECT_EQ(getpid(), find_thread(nullptr));
    thread_id id = 0;
    std::thread other([&] { id = find_thread(nullptr); });
    other.join();
    EXPECT_NE(id, find_thread(nullptr));
    EXPECT_EQ(B_BAD_THREAD_ID, rename_thread(id, "x")) << "it is gone";
}

TEST(Threads, BadArgumentsAreRefused)
{
    EXPECT_EQ(B_BAD_VALUE, spawn_thread(nullptr, "x", 10, nullptr));
    for (thread_id id : {0, -1, INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(B_BAD_THREAD_ID, resume_thread(id));
        EXPECT_EQ(B_BAD_THREAD_ID, suspend_thread(id));
        EXPECT_EQ(B_BAD_THREAD_ID, kill_thread(id));
        EXPECT_EQ(B_BAD_THREAD_ID, wait_for_thread(id, nullptr));
        EXPECT_EQ(B_BAD_THREAD_ID, send_data(id, 0, nullptr, 0));
        EXPECT_NE(B_OK, id == 0 ? B_ERROR : kill_team(id));
    }
    EXPECT_EQ(B_NOT_ALLOWED, kill_team(B_SYSTEM_TEAM));
    thread_info info;
    EXPECT_EQ(B_BAD_VALUE, _get_thread_info(find_thread(nullptr), &info, sizeof(info) - 1));
}

TEST(Threads, PrioritiesAreRememberedWithinTheirLimits)
{
    const thread_id me = find_thread(nullptr);
    EXPECT_EQ(B_NORMAL_PRIORITY, set_thread_priority(me, B_NORMAL_PRIORITY));
    const thread_id thread = spawn_thread(return_value, "p", INT32_MAX, nullptr);
    EXPECT_EQ(B_REAL_TIME_PRIORITY, set_thread_priority(thread, 42));
    EXPECT_EQ(42, set_thread_priority(thread, INT32_MIN));
    wait_for_thread(thread, nullptr);
}
