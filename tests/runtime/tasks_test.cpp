// Programs that are run and killed, priorities, arrays of strings.

#include <gtest/gtest.h>

#include <List.h>
#include <OS.h>
#include <plinth.h>

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

#include "kernel/HostActions.h"
#include "support/desktop_folder.h"
#include "support/probe.h"

using Texts = std::vector<std::string>;

static int32_t run(const std::string& path, const Texts& words)
{
    std::vector<const char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(word.c_str());
    arguments.push_back(nullptr);
    return RunProg(path.c_str(), arguments.data());
}

TEST(Tasks, RunProgPassesUpToThirtyThreeArgumentsAsTheyAre)
{
    TempFolder folder;
    Texts words = {folder.At("/report"), "two words", "\"quoted\"", "$HOME", "*", "\xE9\x01\n"};
    words[5] = "\xE9";
    while (words.size() < 40)
        words.push_back(std::to_string(words.size()));
    const int32_t program = run(probe_path(), words);
    ASSERT_GE(program, 1);
    EXPECT_EQ(Texts(words.begin(), words.begin() + 33), told(probe_report(words[0]), "arg"));
    EXPECT_EQ(B_OK, wait_for_thread(program, nullptr));
}

TEST(Tasks, EmptyStringEndsTheArgumentsAndNullMeansNone)
{
    TempFolder folder;
    const Texts words = {folder.At("/report"), "x", "", "y"};
    EXPECT_GE(run(probe_path(), words), 1);
    EXPECT_EQ((Texts{words[0], "x"}), told(probe_report(words[0]), "arg"));
    const int32_t program = RunProg(probe_path().c_str(), nullptr);
    ASSERT_GE(program, 1);
    status_t status = -1;
    EXPECT_EQ(B_OK, wait_for_thread(program, &status));
    EXPECT_EQ(0, status);
}

TEST(Tasks, RunProgTakesASignatureWhereNoProgramIs)
{
    DesktopFolder folder;
    folder.PutEntry(folder.UserEntry("probe.desktop"), "probe",
                    "X-BeOS-Signature=application/x-vnd.Test-Probe\n", probe_path());
    const int32_t team = run("application/x-vnd.Test-Probe", {folder.At("/report"), "a b", ""});
    ASSERT_GE(team, 1);
    const Texts report = probe_report(folder.At("/report"));
    EXPECT_EQ((Texts{folder.At("/report"), "a b"}), told(report, "arg"));
    EXPECT_EQ(Texts{std::to_string(team)}, told(report, "pid"));
}

TEST(Tasks, WhatIsNoProgramIsNotRun)
{
    DesktopFolder folder;
    const std::string text = folder.Put("/text", "no program");
    const std::string script = folder.Put("/script", "not one line of a script");
    chmod(script.c_str(), 0755);
    symlink("nowhere", folder.At("/dangling").c_str());
    EXPECT_EQ(0, RunProg(nullptr, nullptr));
    for (const std::string& path :
         {std::string(), folder.Path(), text, script, folder.At("/missing"), folder.At("/dangling"),
          std::string("application/x-vnd.None"), std::string(100000, 'x')})
        EXPECT_EQ(0, run(path, {"argument"})) << path.substr(0, 80);
}

TEST(Tasks, KillTaskEndsARunningProgramAndAnswersZero)
{
    TempFolder folder;
    setenv("PROBE_STAYS", "1", 1);
    const int32_t program = run(probe_path(), {folder.At("/report")});
    ASSERT_GE(program, 1);
    EXPECT_FALSE(probe_report(folder.At("/report")).empty());
    EXPECT_EQ(0, KillTask(program));
    status_t status = 0;
    EXPECT_EQ(B_INTERRUPTED, wait_for_thread(program, &status));
    EXPECT_EQ(B_BAD_THREAD_ID, KillTask(program));
    for (const int32_t none : {0, -1, INT32_MIN, INT32_MAX})
        EXPECT_EQ(B_BAD_THREAD_ID, KillTask(none));
}

TEST(Tasks, KillTaskSuspendsTheThreadAndKillsItsTeam)
{
    static std::vector<std::pair<pid_t, int>> signals;
    static thread_id own = 0;
    BPrivate::HostActions& actions = BPrivate::host_actions();
    const BPrivate::HostActions saved = actions;
    actions.signal_team = [](pid_t team, int signal) {
        signals.emplace_back(team, signal);
        thread_info info;
        EXPECT_EQ(B_OK, get_thread_info(own, &info));
        EXPECT_EQ(B_THREAD_SUSPENDED, info.state);
        return 0;
    };
    own = spawn_thread([](void*) -> status_t { return snooze(60'000'000); }, "victim", 10, nullptr);
    resume_thread(own);
    EXPECT_EQ(0, KillTask(own));
    EXPECT_EQ((std::vector<std::pair<pid_t, int>>{{getpid(), SIGKILL}}), signals);
    actions = saved;
    kill_thread(own);
    wait_for_thread(own, nullptr);
}

TEST(Tasks, PriorityIsTheCallingThreads)
{
    EXPECT_EQ(10, GetPriTask());
    std::thread other([] {
        SetPriTask(5);
        EXPECT_EQ(5, GetPriTask());
        SetPriTask(-7);
        EXPECT_EQ(0, GetPriTask());
        SetPriTask(1000);
        EXPECT_EQ(120, GetPriTask()) << "whatever the host grants, the number stays";
    });
    other.join();
    EXPECT_EQ(10, GetPriTask());
}

TEST(Tasks, ListsBecomeArraysThatFreeDataTakesBack)
{
    BList list;
    EXPECT_EQ(nullptr, GetListe_List(&list));
    EXPECT_EQ(nullptr, GetListe_List(nullptr));
    for (const char* word : {"a", "bc"}) {
        char* text = static_cast<char*>(MyAlloc(8));
        strcpy(text, word);
        list.AddItem(text);
    }
    char** table = GetListe_List(&list);
    ASSERT_NE(nullptr, table);
    EXPECT_STREQ("a", table[0]);
    EXPECT_EQ(list.ItemAt(1), table[1]);
    EXPECT_EQ(nullptr, table[2]);
    FreeData(table);
    FreeData(nullptr);
}
