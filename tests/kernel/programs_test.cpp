// Programs that load_image() starts, and what threads and teams of others answer.

#include <OS.h>
#include <image.h>

#include <gtest/gtest.h>

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "support/probe.h"
#include "support/temp_folder.h"

using Texts = std::vector<std::string>;

static thread_id load(const Texts& words, const char** environment = nullptr)
{
    std::vector<const char*> argv;
    for (const std::string& word : words)
        argv.push_back(word.c_str());
    return load_image(static_cast<int32>(argv.size()), argv.data(), environment);
}

static bool exists(const std::string& path) { return std::filesystem::exists(path); }

TEST(Programs, LoadedProgramWaitsUntilResumedAndGetsItsArguments)
{
    TempFolder folder;
    const std::string report = folder.At("/report");
    const Texts words = {probe_path(), report, "two words", "", "ä\"'$x\\"};
    const thread_id program = load(words);
    ASSERT_GT(program, 0);
    thread_info thread;
    team_info team;
    ASSERT_EQ(B_OK, get_thread_info(program, &thread));
    EXPECT_EQ(B_THREAD_SUSPENDED, thread.state);
    EXPECT_EQ(program, thread.team);
    EXPECT_EQ(B_NORMAL_PRIORITY, thread.priority);
    EXPECT_STREQ("probe", thread.name) << "it is the program already";
    ASSERT_EQ(B_OK, get_team_info(program, &team));
    EXPECT_EQ(getpid(), team.parent);
    EXPECT_EQ(static_cast<int32>(words.size()), team.argc);
    EXPECT_EQ(1, team.thread_count);
    snooze(20000);
    EXPECT_FALSE(exists(report));

    EXPECT_EQ(B_OK, resume_thread(program));
    const Texts lines = probe_report(report);
    EXPECT_EQ(Texts(words.begin() + 1, words.end()), told(lines, "arg"));
    EXPECT_EQ(Texts{std::to_string(program)}, told(lines, "pid"));
    status_t status = -1;
    EXPECT_EQ(B_OK, wait_for_thread(program, &status));
    EXPECT_EQ(0, status);
}

TEST(Programs, InheritNoDescriptorAndNoBlockedSignal)
{
    TempFolder folder;
    const int file = open("/dev/null", O_RDONLY);  // not marked for closing
    sigset_t blocked, former;
    sigfillset(&blocked);
    pthread_sigmask(SIG_SETMASK, &blocked, &former);
    const thread_id program = load({probe_path(), folder.At("/report")});
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
    EXPECT_EQ(B_OK, wait_for_thread(program, nullptr)) << "waiting lets it run";
    const Texts lines = probe_report(folder.At("/report"));
    for (const std::string& descriptor : told(lines, "fd"))
        EXPECT_LE(std::stoi(descriptor), 2);
    EXPECT_EQ(Texts{"0000000000000000"}, told(lines, "blocked"));
    EXPECT_EQ(0, fcntl(file, F_GETFD)) << "here it stays as it was";
    close(file);
}

TEST(Programs, SetUserIdProgramIsStartedWithItsRightsAndStopped)
{
    TempFolder folder;
    const std::string program_path = folder.At("/probe");
    std::filesystem::copy_file(probe_path(), program_path);
    ASSERT_EQ(0, chmod(program_path.c_str(), 04755));
    const thread_id program = load({program_path, folder.At("/report")});
    ASSERT_GT(program, 0);
    thread_info info;
    ASSERT_EQ(B_OK, get_thread_info(program, &info));
    EXPECT_EQ(B_THREAD_SUSPENDED, info.state);
    status_t status = -1;
    EXPECT_EQ(B_OK, wait_for_thread(program, &status));
    EXPECT_EQ(0, status);
    EXPECT_FALSE(probe_report(folder.At("/report")).empty());
    EXPECT_EQ(B_NOT_AN_EXECUTABLE, [&] {
        const std::string text = folder.Put("/text", "text");
        chmod(text.c_str(), 04755);
        return load({text});
    }());
}

TEST(Programs, StatusIsToldOnceAndNoZombieStays)
{
    TempFolder folder;
    const std::string stays = "PROBE_STAYS=" + folder.At("/end");
    const char* environment[] = {"PROBE_STATUS=7", stays.c_str(), nullptr};
    const thread_id program = load({probe_path(), folder.At("/report")}, environment);
    ASSERT_GT(program, 0);
    EXPECT_EQ(B_WOULD_BLOCK, wait_for_thread_etc(program, B_RELATIVE_TIMEOUT, 0, nullptr));
    folder.Put("/end");
    // Nobody waits, and still the host's entry goes.
    thread_info info;
    const bigtime_t deadline = system_time() + 20'000'000;
    while (kill(program, 0) == 0 && system_time() < deadline)
        snooze(1000);
    EXPECT_EQ(ESRCH, errno);
    EXPECT_EQ(B_BAD_THREAD_ID, get_thread_info(program, &info));
    status_t status = 0;
    EXPECT_EQ(B_OK, wait_for_thread(program, &status));
    EXPECT_EQ(7, status);
    EXPECT_EQ(B_BAD_THREAD_ID, wait_for_thread(program, &status));
    EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG));
    EXPECT_EQ(ECHILD, errno);
}

TEST(Programs, KillEndsTheTeamEvenBeforeItRan)
{
    TempFolder folder;
    setenv("PROBE_STAYS", "1", 1);
    const thread_id runs = load({probe_path(), folder.At("/report")});
    const thread_id waits = load({probe_path(), folder.At("/never")});
    resume_thread(runs);
    EXPECT_FALSE(probe_report(folder.At("/report")).empty());
    EXPECT_EQ(B_OK, suspend_thread(runs));
    EXPECT_EQ(B_OK, kill_team(runs));
    EXPECT_EQ(B_OK, kill_thread(waits)) << "the main thread takes the team along";
    status_t status = 0;
    EXPECT_EQ(B_INTERRUPTED, wait_for_thread(runs, &status));
    EXPECT_EQ(B_INTERRUPTED, status);
    EXPECT_EQ(B_INTERRUPTED, wait_for_thread(waits, nullptr));
    EXPECT_FALSE(exists(folder.At("/never")));
}

TEST(Programs, WhatCanNotBeExecutedIsToldAtOnce)
{
    TempFolder folder;
    const std::string data = folder.Put("/data", "no program");
    const std::string text = folder.Put("/text", "no program either");
    const std::string script = folder.Put("/script", "#!/no/such/interpreter\n");
    for (const std::string& path : {text, script})
        chmod(path.c_str(), 0755);
    symlink("nowhere", folder.At("/dangling").c_str());
    symlink("loop", folder.At("/loop").c_str());
    struct Row {
        std::string path;
        status_t status;
        int host;
    };
    const Row rows[] = {
        {"", B_ENTRY_NOT_FOUND, ENOENT},
        {folder.At("/missing"), B_ENTRY_NOT_FOUND, ENOENT},
        {folder.At("/dangling"), B_ENTRY_NOT_FOUND, ENOENT},
        {folder.At("/loop"), B_LINK_LIMIT, ELOOP},
        {folder.Path(), B_PERMISSION_DENIED, EACCES},
        {data, B_PERMISSION_DENIED, EACCES},
        {data + "/x", B_NOT_A_DIRECTORY, ENOTDIR},
        {text, B_NOT_AN_EXECUTABLE, ENOEXEC},
        {script, B_ENTRY_NOT_FOUND, ENOENT},
        {std::string(5000, 'x'), B_NAME_TOO_LONG, ENAMETOOLONG},
    };
    for (const Row& row : rows) {
        errno = 0;
        EXPECT_EQ(row.status, load({row.path, "argument"})) << row.path;
        EXPECT_EQ(row.host, errno) << row.path;
    }
    EXPECT_EQ(B_TOO_MANY_ARGS, load({probe_path(), std::string(10 << 20, 'x')}));
    const char* no_path[] = {nullptr, nullptr};
    EXPECT_EQ(B_BAD_VALUE, load_image(1, no_path, nullptr));
    EXPECT_EQ(B_BAD_VALUE, load_image(0, no_path, nullptr));
    EXPECT_EQ(B_BAD_VALUE, load_image(1, nullptr, nullptr));
    EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG)) << "no try leaves a process";
}

TEST(Programs, ManyThreadsLoadAndWaitAtTheSameTime)
{
    TempFolder folder;
    std::atomic<int> right = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] {
            for (int turn = 0; turn < 10; ++turn) {
                const std::string setting = "PROBE_STATUS=" + std::to_string(10 * i + turn);
                const char* environment[] = {setting.c_str(), nullptr};
                status_t status = -1;
                const thread_id program = load({probe_path()}, environment);
                if (program > 0 && wait_for_thread(program, &status) == B_OK &&
                    status == 10 * i + turn)
                    ++right;
                load({folder.At("/missing")});
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(40, right);
}

TEST(Programs, PriorityOfAnotherTeamIsRememberedAndGivenToTheHost)
{
    thread_id program = -1;
    std::thread low([&] {
        setpriority(PRIO_PROCESS, 0, 5);  // of this thread, and of what it starts
        program = load({probe_path()});
    });
    low.join();
    ASSERT_GT(program, 0);
    thread_info info;
    EXPECT_EQ(B_NORMAL_PRIORITY, set_thread_priority(program, 7));
    ASSERT_EQ(B_OK, get_thread_info(program, &info));
    EXPECT_EQ(7, info.priority);
    EXPECT_GT(getpriority(PRIO_PROCESS, program), 0);
    EXPECT_EQ(7, set_thread_priority(program, INT32_MIN));
    EXPECT_EQ(B_IDLE_PRIORITY, set_thread_priority(program, B_NORMAL_PRIORITY));
    EXPECT_EQ(B_OK, kill_team(program));
    wait_for_thread(program, nullptr);
    EXPECT_EQ(B_BAD_THREAD_ID, set_thread_priority(program, 10));
}

TEST(Programs, TeamsAndTheirThreadsAreListed)
{
    const thread_id program = load({probe_path()});
    ASSERT_GT(program, 0);
    bool found = false;
    team_info team;
    for (int32 cookie = 0; get_next_team_info(&cookie, &team) == B_OK;)
        found |= team.team == program;
    EXPECT_TRUE(found);
    thread_info thread;
    int32 cookie = 0;
    EXPECT_EQ(B_OK, get_next_thread_info(program, &cookie, &thread));
    EXPECT_EQ(program, thread.thread);
    EXPECT_EQ(B_BAD_VALUE, get_next_thread_info(program, &cookie, &thread));
    kill_team(program);
    wait_for_thread(program, nullptr);
    cookie = 0;
    EXPECT_EQ(B_BAD_TEAM_ID, get_next_thread_info(program, &cookie, &thread));
    EXPECT_EQ(B_BAD_TEAM_ID, get_team_info(program, &team));
}

TEST(Images, TellWhatIsLoadedAndWhatItExports)
{
    image_info info, app;
    int32 cookie = 0;
    ASSERT_EQ(B_OK, get_next_image_info(B_CURRENT_TEAM, &cookie, &app));
    EXPECT_EQ(B_APP_IMAGE, app.type);
    EXPECT_EQ(std::filesystem::read_symlink("/proc/self/exe"), std::string(app.name));
    EXPECT_GT(app.text_size, 0);
    bool found = false;
    void* address = nullptr;
    while (get_next_image_info(getpid(), &cookie, &info) == B_OK) {
        if (std::string(info.name).find("libbe.so") == std::string::npos)
            continue;
        found = true;
        EXPECT_EQ(B_LIBRARY_IMAGE, info.type);
        EXPECT_EQ(B_OK, get_image_symbol(info.id, "load_image", B_SYMBOL_TYPE_TEXT, &address));
        EXPECT_EQ(reinterpret_cast<void*>(load_image), address);
        EXPECT_EQ(B_ENTRY_NOT_FOUND,
                  get_image_symbol(info.id, "load_image", B_SYMBOL_TYPE_DATA, &address));
        EXPECT_EQ(B_ENTRY_NOT_FOUND,
                  get_image_symbol(info.id, "printf", B_SYMBOL_TYPE_ANY, &address))
            << "another library's";
        char name[8];
        int32 length = sizeof(name), type = 0;
        EXPECT_EQ(B_OK, get_nth_image_symbol(info.id, 0, name, &length, &type, &address));
        EXPECT_GT(length, 0);
        EXPECT_LT(strlen(name), sizeof(name));
        EXPECT_EQ(B_BAD_INDEX,
                  get_nth_image_symbol(info.id, INT32_MAX, nullptr, nullptr, nullptr, nullptr));
    }
    EXPECT_TRUE(found);
    EXPECT_EQ(B_BAD_IMAGE_ID, get_image_info(INT32_MAX, &info));
    EXPECT_EQ(B_BAD_IMAGE_ID, get_image_symbol(-1, "x", B_SYMBOL_TYPE_ANY, &address));
    EXPECT_EQ(B_BAD_TEAM_ID, get_next_image_info(getppid(), &cookie, &info));
}

TEST(Images, WhatIsNoAddOnIsRefused)
{
    TempFolder folder;
    EXPECT_EQ(B_BAD_VALUE, load_add_on(nullptr));
    EXPECT_EQ(B_ENTRY_NOT_FOUND, load_add_on(folder.At("/missing").c_str()));
    EXPECT_EQ(B_NOT_AN_EXECUTABLE, load_add_on(folder.Put("/text", "text").c_str()));
    EXPECT_EQ(B_MISSING_LIBRARY, load_add_on(folder
                                                 .Put("/elf",
                                                      "\x7F"
                                                      "ELF...")
                                                 .c_str()));
    EXPECT_EQ(B_BAD_IMAGE_ID, unload_add_on(1));

    image_info info;
    std::string library;
    for (int32 cookie = 0; get_next_image_info(0, &cookie, &info) == B_OK;) {
        if (std::string(info.name).find("libbe.so") != std::string::npos)
            library = info.name;
    }
    const image_id first = load_add_on(library.c_str());
    ASSERT_GT(first, 0);
    EXPECT_EQ(first, load_add_on(library.c_str()));
    EXPECT_EQ(B_OK, unload_add_on(first));
    EXPECT_EQ(B_OK, unload_add_on(first));
    EXPECT_EQ(B_BAD_IMAGE_ID, unload_add_on(first)) << "taken back as often as given";
}
