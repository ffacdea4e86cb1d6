// The roster: who runs, which application is for what, and how it is started.

#include <gtest/gtest.h>

#include <AppDefs.h>
#include <AppFileInfo.h>
#include <Application.h>
#include <Entry.h>
#include <File.h>
#include <List.h>
#include <Message.h>
#include <MessageRunner.h>
#include <MimeType.h>
#include <Node.h>
#include <NodeInfo.h>
#include <Path.h>
#include <Roster.h>

#include <image.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <set>
#include <thread>

#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>

#include "app/Mailbox.h"
#include "support/desktop_folder.h"
#include "support/probe.h"

using Texts = std::vector<std::string>;

static const char* const kSignature = "application/x-vnd.plinth-roster-test";
static const char* const kOther = "application/x-vnd.plinth-probe";

static std::string app_probe_path()
{
    return probe_path().replace(probe_path().rfind('/'), std::string::npos, "/app_probe");
}

template <class Claim>
static bool eventually(Claim claim)
{
    const bigtime_t deadline = system_time() + 20'000'000;
    for (; system_time() < deadline; snooze(1000)) {
        if (claim())
            return true;
    }
    return claim();
}

static entry_ref ref_for(const std::string& path)
{
    entry_ref ref;
    get_ref_for_path(path.c_str(), &ref);
    return ref;
}

static std::string path_of(const entry_ref& ref)
{
    return BPath(&ref).Path() != nullptr ? BPath(&ref).Path() : "";
}

static std::vector<team_id> items(const BList& list)
{
    std::vector<team_id> teams;
    for (int32 i = 0; i < list.CountItems(); ++i)
        teams.push_back(static_cast<team_id>(reinterpret_cast<intptr_t>(list.ItemAt(i))));
    return teams;
}

// Another application, running; killed with the test.
class OtherApp {
public:
    explicit OtherApp(const TempFolder& folder, const char* signature = kOther)
        : fReport(folder.At("/other-report"))
    {
        setenv("PROBE_SIGNATURE", signature, 1);
        setenv("PROBE_REPORT", fReport.c_str(), 1);
        const std::string path = app_probe_path();
        const char* argv[] = {path.c_str(), nullptr};
        fTeam = load_image(1, argv, nullptr);
        resume_thread(fTeam);
        EXPECT_TRUE(eventually([&] { return std::filesystem::exists(fReport); }));
    }
    ~OtherApp() { End(); }
    void End()
    {
        if (fTeam > 0)
            kill_team(fTeam);
        wait_for_thread(std::exchange(fTeam, -1), nullptr);
    }
    team_id Team() const { return fTeam; }

private:
    std::string fReport;
    team_id fTeam;
};

TEST(Roster, KnowsWhoRunsAndForgetsWhoCrashed)
{
    TempFolder folder;
    EXPECT_EQ(-1, be_roster->TeamFor(kSignature));
    app_info info;
    {
        BApplication app(kSignature);
        OtherApp other(folder);
        const team_id team = other.Team();
        EXPECT_EQ(getpid(), be_roster->TeamFor(kSignature));
        EXPECT_EQ(team, be_roster->TeamFor("Application/X-vnd.PLINTH-probe"));
        entry_ref ref = ref_for(app_probe_path());
        EXPECT_TRUE(be_roster->IsRunning(&ref));
        ASSERT_EQ(B_OK, be_roster->GetRunningAppInfo(team, &info));
        EXPECT_EQ(team, info.team);
        EXPECT_EQ(team, info.thread);
        EXPECT_STREQ(kOther, info.signature);
        EXPECT_EQ(ref, info.ref);
        EXPECT_EQ(static_cast<uint32>(B_MULTIPLE_LAUNCH), info.flags);
        BList teams, others;
        be_roster->GetAppList(&teams);
        EXPECT_EQ((std::vector<team_id>{getpid(), team}), items(teams)) << "oldest first";
        be_roster->GetAppList(kOther, &others);
        EXPECT_EQ(std::vector<team_id>{team}, items(others));
        other.End();  // killed: it had no time to say so
        EXPECT_EQ(B_BAD_TEAM_ID, be_roster->GetRunningAppInfo(team, &info));
        EXPECT_FALSE(be_roster->IsRunning(kOther));
        const std::string entry = ".run/beos-roster/" + std::to_string(team);
        EXPECT_FALSE(std::filesystem::exists(folder.At(entry)));
    }
    EXPECT_EQ(B_ERROR, be_roster->GetAppInfo(kSignature, &info));
    EXPECT_FALSE(be_roster->IsRunning(static_cast<const char*>(nullptr)));
    EXPECT_FALSE(be_roster->IsRunning(static_cast<entry_ref*>(nullptr)));
    EXPECT_EQ(B_BAD_VALUE, be_roster->GetRunningAppInfo(getpid(), nullptr));
}

TEST(Roster, WhatIsNoEntryOfARunningProgramDoesNotCount)
{
    TempFolder folder;
    BApplication app(kSignature);
    const std::string entries = folder.At(".run/beos-roster/");
    const std::string forged = std::string(kOther) + "\n0\n1\n1\n/bin/true";
    const char* const names[] = {"1", "999999999", "0", "-3", "12x", "name", ".hidden"};
    for (const char* name : names)
        folder.Put(".run/beos-roster/" + std::string(name), forged);
    symlink("/etc/passwd", (entries + "77").c_str());
    mkdir((entries + "78").c_str(), 0700);
    mkfifo((entries + "79").c_str(), 0600);
    EXPECT_FALSE(be_roster->IsRunning(kOther));
    BList teams;
    be_roster->GetAppList(&teams);
    EXPECT_EQ(1, teams.CountItems());
    app_info info;
    symlink("garbage", (entries + "active").c_str());
    EXPECT_EQ(B_ERROR, be_roster->GetActiveAppInfo(&info));
}

TEST(Roster, FolderThatOthersMayEnterIsNotUsed)
{
    TempFolder folder;
    mkdir(folder.At(".run/beos-roster").c_str(), 0777);
    chmod(folder.At(".run/beos-roster").c_str(), 0777);
    BApplication app(kSignature);
    EXPECT_TRUE(std::filesystem::is_empty(folder.At(".run/beos-roster")));
    EXPECT_EQ(getpid(), be_roster->TeamFor(kSignature)) << "this one knows of itself";
}

// The number of a team that has ended.
static team_id gone_team()
{
    const pid_t team = fork();
    if (team == 0)
        _exit(0);
    waitpid(team, nullptr, 0);
    return team;
}

TEST(Roster, WhatKilledProgramsLeftIsRemovedWithTheNextStart)
{
    TempFolder folder;
    const std::string entries = ".run/beos-roster/";
    std::filesystem::create_directory(folder.At(entries));
    chmod(folder.At(entries).c_str(), 0700);
    const std::string team = std::to_string(gone_team());
    for (const std::string& name :
         {team, team + ".port", team + ".messages", "." + team, ".active-" + team})
        folder.Put(entries + name, "x");
    const std::string second = std::to_string(gone_team());
    folder.Put(entries + second + ".port");
    symlink(team.c_str(), folder.At(entries + "active").c_str());
    folder.Put(entries + "." + std::to_string(getppid()), "lives");
    folder.Put(entries + "7 of another kind");
    BApplication app(kSignature);
    std::set<std::string> left;
    for (const auto& entry : std::filesystem::directory_iterator(folder.At(entries)))
        left.insert(entry.path().filename());
    const std::string own = std::to_string(getpid());
    EXPECT_EQ((std::set<std::string>{"." + std::to_string(getppid()), "7 of another kind", own,
                                     own + ".port"}),
              left);
}

TEST(Roster, FolderThatSomebodyElseHasTakenKeepsNoProgramFromAnother)
{
    TempFolder folder;
    unsetenv("XDG_RUNTIME_DIR");
    setenv("TMPDIR", folder.Path().c_str(), 1);
    const std::string taken = folder.At("/beos-roster-" + std::to_string(geteuid()));
    mkdir(taken.c_str(), 0777);
    chmod(taken.c_str(), 0777);
    {
        BApplication app(kSignature);
        OtherApp other(folder);
        EXPECT_EQ(other.Team(), be_roster->TeamFor(kOther));
        EXPECT_TRUE(BMessenger(kOther).IsValid());
        EXPECT_TRUE(std::filesystem::is_empty(taken));
    }
    std::filesystem::remove(taken);
    std::filesystem::remove(folder.At("/other-report"));
    BApplication app(kSignature);
    OtherApp other(folder);
    EXPECT_EQ(other.Team(), be_roster->TeamFor(kOther));
    EXPECT_FALSE(std::filesystem::is_empty(taken));
}

TEST(Roster, ActiveApplicationIsTheOneThatWasToldSo)
{
    TempFolder folder;
    struct App : BApplication {
        App() : BApplication(kSignature) {}
        void AppActivated(bool active) override
        {
            app_info info;
            fStatus = be_roster->GetActiveAppInfo(&info);
            fTeam = info.team;
            if (!active) {
                PostMessage(B_QUIT_REQUESTED);
                return;
            }
            EXPECT_EQ(getpid(), fTeam);
            BMessage next(B_APP_ACTIVATED);
            next.AddBool("active", false);
            PostMessage(&next);
        }
        status_t fStatus = B_OK;
        team_id fTeam = -1;
    } app;
    BMessage active(B_APP_ACTIVATED);
    active.AddBool("active", true);
    app.PostMessage(&active);
    app.Run();
    EXPECT_EQ(B_ERROR, app.fStatus);
}

TEST(Roster, FindsApplicationsBySignatureTypeAndFile)
{
    DesktopFolder folder;
    const std::string program = folder.PutEntry(folder.UserEntry("editor.desktop"), "editor",
                                                "X-BeOS-Signature=application/x-vnd.Test-Editor\n"
                                                "MimeType=text/plain;\n");
    folder.Put("/home/config/mimeapps.list", "[Default Applications]\ntext/plain=editor.desktop\n");
    entry_ref app;
    EXPECT_EQ(B_OK, be_roster->FindApp("application/x-vnd.test-editor", &app));
    EXPECT_EQ(program, path_of(app));
    EXPECT_EQ(B_OK, be_roster->FindApp("text/plain", &app));
    EXPECT_EQ(program, path_of(app));

    entry_ref text = ref_for(folder.Put("/letter.txt", "Dear"));
    EXPECT_EQ(B_OK, be_roster->FindApp(&text, &app));
    EXPECT_EQ(program, path_of(app));
    const std::string own = folder.PutEntry(folder.UserEntry("own.desktop"), "own",
                                            "X-BeOS-Signature=application/x-vnd.Test-Own\n");
    BNode node(folder.At("/letter.txt").c_str());
    if (BNodeInfo(&node).SetPreferredApp("application/x-vnd.Test-Own") == B_OK) {
        EXPECT_EQ(B_OK, be_roster->FindApp(&text, &app));
        EXPECT_EQ(own, path_of(app)) << "the file's own choice";
    }
    entry_ref hint = ref_for(app_probe_path());
    BMimeType hinted("application/x-vnd.Test-Hinted");
    hinted.Install();
    EXPECT_EQ(B_OK, hinted.SetAppHint(&hint));
    EXPECT_EQ(B_OK, be_roster->FindApp("application/x-vnd.Test-Hinted", &app));
    EXPECT_EQ(hint, app);
    entry_ref itself = ref_for(app_probe_path());
    EXPECT_EQ(B_OK, be_roster->FindApp(&itself, &app));
    EXPECT_EQ(itself, app);

    entry_ref picture = ref_for(folder.Put("/picture.png", "\x89PNG\r\n\x1A\n"));
    EXPECT_EQ(B_LAUNCH_FAILED_NO_PREFERRED_APP, be_roster->FindApp(&picture, &app));
    EXPECT_EQ(B_LAUNCH_FAILED_NO_PREFERRED_APP, be_roster->FindApp("image/png", &app));
    EXPECT_EQ(B_LAUNCH_FAILED_APP_NOT_FOUND, be_roster->FindApp("application/x-vnd.None", &app));
    symlink("nowhere", folder.At("/dangling").c_str());
    entry_ref dangling = ref_for(folder.At("/dangling"));
    EXPECT_EQ(B_LAUNCH_FAILED_NO_RESOLVE_LINK, be_roster->FindApp(&dangling, &app));
    entry_ref missing = ref_for(folder.At("/missing"));
    EXPECT_EQ(B_ENTRY_NOT_FOUND, be_roster->FindApp(&missing, &app));
    entry_ref none;
    EXPECT_EQ(B_BAD_VALUE, be_roster->FindApp(&none, &app));
    EXPECT_EQ(B_BAD_VALUE, be_roster->FindApp(static_cast<entry_ref*>(nullptr), &app));
    for (const char* bad : {"", "text", "no type", "a/b/c", static_cast<const char*>(nullptr)})
        EXPECT_EQ(B_BAD_VALUE, be_roster->FindApp(bad, &app));
    EXPECT_EQ(B_BAD_VALUE, be_roster->FindApp("text/plain", nullptr));
}

TEST(Roster, LinksToDocumentsAreFollowed)
{
    DesktopFolder folder;
    setenv("PROBE_SIGNATURE", kOther, 1);
    setenv("PROBE_REPORT", folder.At("/heard").c_str(), 1);
    folder.PutEntry(folder.UserEntry("probe.desktop"), "probe",
                    std::string("X-BeOS-Signature=") + kOther + "\n", app_probe_path() + " %F");
    folder.PutEntry(folder.UserEntry("editor.desktop"), "editor",
                    "X-BeOS-Signature=application/x-vnd.Test-Editor\nMimeType=text/plain;\n");
    folder.Put("/home/config/mimeapps.list", "[Default Applications]\ntext/plain=editor.desktop\n");
    const std::string letter = folder.Put("/letter.txt", "Dear");
    BNode node(letter.c_str());
    if (BNodeInfo(&node).SetPreferredApp(kOther) != B_OK)
        GTEST_SKIP() << "no attributes here";
    symlink("letter.txt", folder.At("/link").c_str());
    entry_ref link = ref_for(folder.At("/link")), app;
    EXPECT_EQ(B_OK, be_roster->FindApp(&link, &app));
    EXPECT_EQ(app_probe_path(), path_of(app));
    team_id team = -1;
    ASSERT_EQ(B_OK, be_roster->Launch(&link, 0, nullptr, &team));
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(folder.At("/heard")); }));
    EXPECT_EQ((Texts{"ref letter.txt"}), probe_report(folder.At("/heard")));
    kill_team(team);
    wait_for_thread(team, nullptr);
}

TEST(Roster, LaunchGivesArgumentsAndFilesToADesktopProgram)
{
    DesktopFolder folder;
    folder.PutEntry(folder.UserEntry("probe.desktop"), "probe",
                    "X-BeOS-Signature=application/x-vnd.Test-Probe\nMimeType=text/plain;\n"
                    "Path=" +
                        folder.Path() + "\n",
                    probe_path() + " " + folder.At("/report") + " %F");
    folder.Put("/home/config/mimeapps.list", "[Default Applications]\ntext/plain=probe.desktop\n");
    const char* arguments[] = {"one", "two words", "%f"};
    team_id team = -1;
    ASSERT_EQ(B_OK, be_roster->Launch("application/x-vnd.Test-Probe", 3, arguments, &team));
    Texts report = probe_report(folder.At("/report"));
    EXPECT_EQ((Texts{folder.At("/report"), "one", "two words", "%f"}), told(report, "arg"));
    EXPECT_EQ(Texts{std::to_string(team)}, told(report, "pid"));
    EXPECT_EQ(B_OK, wait_for_thread(team, nullptr));

    std::filesystem::remove(folder.At("/report"));
    const std::string letter = folder.Put("/a letter.txt", "Dear");
    BMessage more(B_REFS_RECEIVED);
    const entry_ref second = ref_for(folder.Put("/b.txt", "Sir"));
    const entry_ref first = ref_for(letter);
    more.AddRef("refs", &second);
    ASSERT_EQ(B_OK, be_roster->Launch(&first, &more, &team));
    report = probe_report(folder.At("/report"));
    EXPECT_EQ((Texts{folder.At("/report"), letter, folder.At("/b.txt")}), told(report, "arg"));
    wait_for_thread(team, nullptr);
}

TEST(Roster, NoProgramIsLeftWithoutTheTerminalItNeeds)
{
    DesktopFolder folder;
    folder.PutEntry(folder.UserEntry("probe.desktop"), "probe",
                    "X-BeOS-Signature=application/x-vnd.Test-Probe\nTerminal=true\n",
                    probe_path() + " " + folder.At("/report"));
    std::filesystem::create_directory(folder.At("/bin"));
    setenv("PATH", folder.At("/bin").c_str(), 1);
    const int nowhere = open("/dev/null", O_RDONLY | O_CLOEXEC);
    dup2(nowhere, STDIN_FILENO);
    close(nowhere);
    EXPECT_EQ(B_LAUNCH_FAILED_EXECUTABLE, be_roster->Launch("application/x-vnd.Test-Probe"));
    // One that runs what stands behind its own name.
    std::ofstream(folder.At("/bin/xdg-terminal-exec")) << "#!/bin/sh\nexec \"$@\"\n";
    chmod(folder.At("/bin/xdg-terminal-exec").c_str(), 0755);
    team_id team = -1;
    EXPECT_EQ(B_OK, be_roster->Launch("application/x-vnd.Test-Probe", 0, nullptr, &team));
    EXPECT_EQ(Texts{folder.At("/report")}, told(probe_report(folder.At("/report")), "arg"));
    wait_for_thread(team, nullptr);
}

TEST(Roster, LaunchOfAProgramByItsRef)
{
    DesktopFolder folder;
    const entry_ref program = ref_for(probe_path());
    const std::string report = folder.At("/report");
    const char* arguments[] = {report.c_str(), "x", nullptr, "behind the null"};
    team_id team = -1;
    ASSERT_EQ(B_OK, be_roster->Launch(&program, 4, arguments, &team));
    EXPECT_EQ((Texts{report, "x"}), told(probe_report(report), "arg"));
    wait_for_thread(team, nullptr);

    const std::string trash = folder.At("/home/data/Trash/files");
    std::filesystem::create_directories(trash);
    std::filesystem::copy_file(probe_path(), trash + "/probe");
    const entry_ref thrown_away = ref_for(trash + "/probe");
    EXPECT_EQ(B_LAUNCH_FAILED_APP_IN_TRASH, be_roster->Launch(&thrown_away));
    const std::string script = folder.Put("/script", "#!/no/such/interpreter\n");
    chmod(script.c_str(), 0755);
    const entry_ref broken = ref_for(script);
    team = 77;
    EXPECT_EQ(B_ENTRY_NOT_FOUND, be_roster->Launch(&broken, 0, nullptr, &team));
    EXPECT_EQ(77, team);
    EXPECT_EQ(B_BAD_VALUE, be_roster->Launch(static_cast<const entry_ref*>(nullptr)));
    EXPECT_EQ(B_BAD_VALUE, be_roster->Launch(static_cast<const char*>(nullptr)));
    EXPECT_EQ(B_LAUNCH_FAILED_APP_NOT_FOUND, be_roster->Launch("application/x-vnd.None"));
}

TEST(Roster, LaunchHandsMessagesToAnApplicationOfOurs)
{
    DesktopFolder folder;
    setenv("PROBE_SIGNATURE", kOther, 1);
    setenv("PROBE_REPORT", folder.At("/heard").c_str(), 1);
    const entry_ref program = ref_for(app_probe_path());
    const entry_ref letter = ref_for(folder.Put("/letter.txt", "Dear"));
    BMessage refs(B_REFS_RECEIVED), other('othr'), arguments(B_ARGV_RECEIVED);
    refs.AddRef("refs", &letter);
    arguments.AddString("argv", "the program");
    arguments.AddString("argv", "x y");
    BList messages;
    for (BMessage* message : {&refs, &other, &arguments})
        messages.AddItem(message);
    team_id team = -1;
    ASSERT_EQ(B_OK, be_roster->Launch(&program, &messages, &team));
    app_info info;
    EXPECT_EQ(B_OK, be_roster->GetRunningAppInfo(team, &info)) << "it is known on return";
    EXPECT_TRUE(BMessenger(nullptr, team).IsValid());
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(folder.At("/heard")); }));
    const Texts lines = probe_report(folder.At("/heard"));
    EXPECT_EQ((Texts{"arg x y", "ref letter.txt", "what " + std::to_string('othr')}), lines);
    kill_team(team);
    wait_for_thread(team, nullptr);
    for (const auto& entry : std::filesystem::directory_iterator(folder.At(".run/beos-roster")))
        EXPECT_FALSE(entry.path().string().ends_with(".messages"));
}

TEST(Roster, MessagesReachAnotherApplicationAndAnswersComeBack)
{
    TempFolder folder;
    BApplication app(kSignature);
    OtherApp other(folder);
    status_t status = B_ERROR;
    const BMessenger messenger(kOther, -1, &status);
    ASSERT_EQ(B_OK, status);
    EXPECT_TRUE(messenger.IsValid());
    EXPECT_FALSE(messenger.IsTargetLocal());
    EXPECT_EQ(nullptr, messenger.Target(nullptr));
    EXPECT_FALSE(messenger.LockTarget());
    EXPECT_EQ(other.Team(), messenger.Team());
    EXPECT_EQ(messenger, BMessenger(nullptr, other.Team()));

    BMessage question('echo'), answer;
    question.AddString("text", std::string(100000, 'x').c_str());
    EXPECT_EQ(B_OK, messenger.SendMessage(&question, &answer));
    EXPECT_EQ(static_cast<uint32>('echd'), answer.what);
    EXPECT_STREQ(question.FindString("text"), answer.FindString("text"));
    EXPECT_TRUE(answer.IsReply());
    EXPECT_EQ(B_OK, messenger.SendMessage('none', &answer));
    EXPECT_EQ(static_cast<uint32>(B_NO_REPLY), answer.what) << "deleted unanswered";

    Mailbox mail;
    BLooper* looper = new BLooper;
    ListeningHandler* handler = new ListeningHandler(mail);
    looper->AddHandler(handler);
    looper->Run();
    for (int i = 0; i < 200; ++i)
        EXPECT_EQ(B_OK, messenger.SendMessage('echo', handler)) << "more than a queue holds";
    for (int i = 0; i < 200; ++i)
        EXPECT_EQ(static_cast<uint32>('echd'), mail.TakeWhat());
    looper->Lock();
    looper->Quit();
    delete handler;

    question.AddString("text", std::string(200000, 'x').c_str());
    EXPECT_EQ(B_BUFFER_OVERFLOW, messenger.SendMessage(&question));
    EXPECT_EQ(B_MISMATCHED_VALUES, BMessenger().SetTo(kSignature, other.Team()));
    EXPECT_EQ(B_BAD_TEAM_ID, BMessenger().SetTo(nullptr, INT32_MAX));
    EXPECT_EQ(B_BAD_VALUE, BMessenger().SetTo("application/x-vnd.None"));
}

TEST(Roster, MessagesOfOtherApplicationsHoldNoPointers)
{
    TempFolder folder;
    BApplication app(kSignature);
    OtherApp other(folder);
    const BMessenger messenger(kOther);
    BMessage question('echo'), inner('in'), answer, kept;
    for (BMessage* message : {&inner, &question}) {
        message->AddPointer("gd", &app);
        message->AddPointer("it", nullptr);
        message->AddPointer("gd", nullptr);
        message->AddInt32("number", 7);
    }
    question.AddMessage("empty", &kept);
    question.AddMessage("inner", &kept);
    question.AddMessage("inner", &inner);
    ASSERT_EQ(B_OK, messenger.SendMessage(&question, &answer));
    ASSERT_EQ(B_OK, answer.FindMessage("inner", 1, &kept));
    for (const BMessage* message : {&answer, &kept}) {
        EXPECT_EQ(7, message->FindInt32("number"));
        EXPECT_EQ(0, message->CountNames(B_POINTER_TYPE));
    }
}

TEST(Roster, RunnersDoNotWaitForAnApplicationThatStandsStill)
{
    TempFolder folder;
    BApplication app(kSignature);
    OtherApp other(folder);
    const BMessenger messenger(kOther);
    suspend_thread(other.Team());
    status_t status;
    do
        status = messenger.SendMessage('fill');
    while (status == B_OK);
    ASSERT_EQ(B_TIMED_OUT, status);
    BMessage one_more('more');
    EXPECT_EQ(B_WOULD_BLOCK, messenger.SendMessage(&one_more, BMessenger(), 0));
    Mailbox mail;
    BLooper* looper = new ListeningLooper(mail);
    looper->Run();
    const QuitAtEnd quit(looper);
    const BMessage tick('tick');
    BMessageRunner far(messenger, &tick, 1000);
    BMessageRunner near(BMessenger(looper), &tick, 2000, 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(static_cast<uint32>('tick'), mail.TakeWhat());
    bigtime_t interval;
    int32 count;
    EXPECT_EQ(B_OK, far.GetInfo(&interval, &count)) << "it goes on when the other does";
    other.End();
    EXPECT_TRUE(eventually([&] { return far.GetInfo(&interval, &count) == B_BAD_VALUE; }));
}

TEST(Roster, WhoWaitsForAnApplicationThatDiesIsToldSo)
{
    TempFolder folder;
    BApplication app(kSignature);
    OtherApp other(folder);
    const BMessenger messenger(kOther);
    suspend_thread(other.Team());
    BMessage question('echo'), answer;
    EXPECT_EQ(B_TIMED_OUT, messenger.SendMessage(&question, &answer, B_INFINITE_TIMEOUT, 20000));
    std::thread killer([&] {
        snooze(50000);
        other.End();
    });
    EXPECT_EQ(B_BAD_PORT_ID, messenger.SendMessage(&question, &answer));
    killer.join();
    EXPECT_EQ(B_BAD_PORT_ID, messenger.SendMessage('note'));
    EXPECT_FALSE(messenger.IsValid());
}

// What anybody of the same user may send to the application's socket.
TEST(Roster, MalformedPacketsAreDropped)
{
    TempFolder folder;
    BApplication app(kSignature);
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    folder.At(".run/beos-roster/" + std::to_string(getpid()) + ".port")
        .copy(address.sun_path, sizeof(address.sun_path) - 1);
    ASSERT_EQ(0, connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof(address)));
    BMessage message('note');
    message.AddString("text", "x");
    std::string valid("BMS1", 4);
    const int32 numbers[] = {999999, -1, getpid(), 999999, -1, 4 | 2};
    valid.append(reinterpret_cast<const char*>(numbers), sizeof(numbers));
    const size_t head = valid.size();
    valid.resize(head + message.FlattenedSize());
    message.Flatten(valid.data() + head, message.FlattenedSize());
    unsigned seed = 12345;
    for (int i = 0; i < 3000; ++i) {
        std::string packet = valid;
        for (int change = 0; change < 1 + i % 4; ++change) {
            seed = seed * 1664525 + 1013904223;
            packet[(seed >> 8) % packet.size()] = static_cast<char>(seed >> 24);
        }
        packet.resize(packet.size() - (i % 5 == 0 ? (seed >> 4) % packet.size() : 0));
        send(fd, packet.data(), packet.size(), 0);
    }
    send(fd, "", 0, 0);
    send(fd, valid.data(), valid.size(), 0);  // well-formed, for a looper that is not there
    close(fd);
    // The channel still works.
    OtherApp other(folder);
    BMessage answer;
    EXPECT_EQ(B_OK, BMessenger(kOther).SendMessage('echo', &answer));
    EXPECT_EQ(static_cast<uint32>('echd'), answer.what);
}

TEST(Roster, WatchersHearOfStartEndAndCrash)
{
    TempFolder folder;
    BApplication app(kSignature);
    Mailbox mail;
    BLooper* looper = new BLooper;
    ListeningHandler* handler = new ListeningHandler(mail);
    looper->AddHandler(handler);
    looper->Run();
    const BMessenger target(handler);
    ASSERT_EQ(B_OK, be_roster->StartWatching(target));
    for (const bool crashes : {true, false}) {
        OtherApp other(folder);
        BMessage news = mail.Take();
        EXPECT_EQ(static_cast<uint32>(B_SOME_APP_LAUNCHED), news.what);
        EXPECT_STREQ(kOther, news.FindString("be:signature"));
        EXPECT_EQ(other.Team(), news.FindInt32("be:team"));
        if (crashes)
            other.End();
        else
            BMessenger(kOther).SendMessage('quit');
        news = mail.Take();
        EXPECT_EQ(static_cast<uint32>(B_SOME_APP_QUIT), news.what);
        EXPECT_STREQ(kOther, news.FindString("be:signature"));
    }
    EXPECT_EQ(B_OK, be_roster->StopWatching(target));
    EXPECT_EQ(B_BAD_VALUE, be_roster->StopWatching(target));
    EXPECT_EQ(B_BAD_VALUE, be_roster->StartWatching(BMessenger()));
    looper->Lock();
    looper->Quit();
    delete handler;
}

// Copies the probe to `path`, to be launched as `flags` say. False where there are no attributes.
static bool copy_app_probe(const std::string& path, uint32 flags)
{
    std::filesystem::copy_file(app_probe_path(), path);
    const std::filesystem::path programs = std::filesystem::path(app_probe_path()).parent_path();
    setenv("LD_LIBRARY_PATH", (programs / "../lib").c_str(), 1);
    BFile file(path.c_str(), B_READ_WRITE);
    return BAppFileInfo(&file).SetAppFlags(flags) == B_OK;
}

TEST(Roster, ExclusiveCopyPassesOnTheMessagesItWasLaunchedWith)
{
    DesktopFolder folder;
    BApplication app(kSignature);
    setenv("PROBE_SIGNATURE", kOther, 1);
    setenv("PROBE_REPORT", folder.At("/heard").c_str(), 1);
    if (!copy_app_probe(folder.At("/one"), B_EXCLUSIVE_LAUNCH) ||
        !copy_app_probe(folder.At("/other"), B_EXCLUSIVE_LAUNCH))
        GTEST_SKIP() << "no attributes here";
    const entry_ref one = ref_for(folder.At("/one")), other = ref_for(folder.At("/other"));
    team_id first = -1, second = -1;
    ASSERT_EQ(B_OK, be_roster->Launch(&one, 0, nullptr, &first));
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(folder.At("/heard")); }));
    BMessage refs(B_REFS_RECEIVED);
    const entry_ref letter = ref_for(folder.Put("/letter.txt", "Dear"));
    refs.AddRef("refs", &letter);
    ASSERT_EQ(B_OK, be_roster->Launch(&other, &refs, &second));
    wait_for_thread(second, nullptr);
    EXPECT_TRUE(
        eventually([&] { return probe_report(folder.At("/heard")) == Texts{"ref letter.txt"}; }));
    kill_team(first);
    wait_for_thread(first, nullptr);
}

TEST(Roster, SingleLaunchPassesMessagesToTheOneThatRuns)
{
    DesktopFolder folder;
    BApplication app(kSignature);
    const std::string program = folder.At("/single");
    setenv("PROBE_SIGNATURE", kOther, 1);
    setenv("PROBE_REPORT", folder.At("/heard").c_str(), 1);
    const uint32 flags = B_SINGLE_LAUNCH;
    if (!copy_app_probe(program, flags))
        GTEST_SKIP() << "no attributes here";
    const entry_ref ref = ref_for(program);
    team_id first = -1, second = -1;
    ASSERT_EQ(B_OK, be_roster->Launch(&ref, 0, nullptr, &first));
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(folder.At("/heard")); }));
    app_info info;
    ASSERT_EQ(B_OK, be_roster->GetRunningAppInfo(first, &info));
    EXPECT_EQ(flags, info.flags);
    BMessage refs(B_REFS_RECEIVED);
    const entry_ref letter = ref_for(folder.Put("/letter.txt", "Dear"));
    refs.AddRef("refs", &letter);
    EXPECT_EQ(B_ALREADY_RUNNING, be_roster->Launch(&ref, &refs, &second));
    EXPECT_EQ(first, second);
    const char* arguments[] = {"again"};
    EXPECT_EQ(B_ALREADY_RUNNING, be_roster->Launch(&ref, 1, arguments, &second));
    EXPECT_TRUE(eventually([&] {
        return probe_report(folder.At("/heard")) == Texts{"ref letter.txt", "arg again"};
    }));
    // Started by its path, it passes on what it was started with, and ends.
    const char* direct[] = {program.c_str(), "by hand", nullptr};
    const thread_id another = load_image(2, direct, nullptr);
    status_t status = B_OK;
    EXPECT_EQ(B_OK, wait_for_thread(another, &status));
    EXPECT_EQ(1, status) << "as its main() says without an application";
    EXPECT_TRUE(
        eventually([&] { return probe_report(folder.At("/heard")).back() == "arg by hand"; }));
    BMessage news('news');
    EXPECT_EQ(B_OK, be_roster->Broadcast(&news));
    EXPECT_TRUE(eventually([&] { return probe_report(folder.At("/heard")).size() == 4; }));
    EXPECT_EQ(B_OK, be_roster->ActivateApp(first));
    EXPECT_EQ(B_BAD_TEAM_ID, be_roster->ActivateApp(INT32_MAX));
    kill_team(first);
    wait_for_thread(first, nullptr);
}

TEST(Roster, WhatWantsArgumentsOnlyGetsNoMessages)
{
    DesktopFolder folder;
    BApplication app(kSignature);
    setenv("PROBE_SIGNATURE", kOther, 1);
    setenv("PROBE_REPORT", folder.At("/heard").c_str(), 1);
    if (!copy_app_probe(folder.At("/one"), B_SINGLE_LAUNCH | B_ARGV_ONLY))
        GTEST_SKIP() << "no attributes here";
    const entry_ref program = ref_for(folder.At("/one"));
    BMessage refs(B_REFS_RECEIVED), other('othr');
    const entry_ref letter = ref_for(folder.Put("/letter.txt", "Dear"));
    refs.AddRef("refs", &letter);
    BList messages;
    messages.AddItem(&refs);
    messages.AddItem(&other);
    team_id team = -1, again = -1;
    ASSERT_EQ(B_OK, be_roster->Launch(&program, &messages, &team));
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(folder.At("/heard")); }));
    EXPECT_EQ(Texts{"arg " + folder.At("/letter.txt")}, probe_report(folder.At("/heard")));
    EXPECT_EQ(B_ALREADY_RUNNING, be_roster->Launch(&program, &messages, &again));
    EXPECT_EQ(team, again);
    BMessage question('echo'), answer;
    EXPECT_EQ(B_OK, BMessenger(nullptr, team).SendMessage(&question, &answer));
    EXPECT_EQ(1u, probe_report(folder.At("/heard")).size()) << "what came before the question";
    kill_team(team);
    wait_for_thread(team, nullptr);
}

TEST(Roster, BackgroundApplicationsAreNoRecentOnes)
{
    DesktopFolder folder;
    setenv("PROBE_SIGNATURE", kOther, 1);
    setenv("PROBE_REPORT", folder.At("/heard").c_str(), 1);
    if (!copy_app_probe(folder.At("/seen"), B_MULTIPLE_LAUNCH) ||
        !copy_app_probe(folder.At("/unseen"), B_MULTIPLE_LAUNCH | B_BACKGROUND_APP))
        GTEST_SKIP() << "no attributes here";
    for (const char* name : {"/seen", "/unseen"}) {
        const entry_ref program = ref_for(folder.At(name));
        team_id team = -1;
        ASSERT_EQ(B_OK, be_roster->Launch(&program, 0, nullptr, &team)) << name;
        kill_team(team);
        wait_for_thread(team, nullptr);
    }
    BMessage recent;
    be_roster->GetRecentApps(&recent, 64);
    entry_ref ref;
    ASSERT_EQ(B_OK, recent.FindRef("refs", &ref));
    EXPECT_EQ(folder.At("/seen"), path_of(ref));
    EXPECT_EQ(B_BAD_INDEX, recent.FindRef("refs", 1, &ref));
}

TEST(Roster, NullNamesNoApplication)
{
    const char* const no_name = nullptr;
    entry_ref* const no_ref = nullptr;
    app_info info;
    EXPECT_EQ(B_BAD_VALUE, be_roster->TeamFor(no_name));
    EXPECT_EQ(B_BAD_VALUE, be_roster->TeamFor(no_ref));
    EXPECT_EQ(B_BAD_VALUE, be_roster->GetAppInfo(no_name, &info));
    EXPECT_EQ(B_BAD_VALUE, be_roster->GetAppInfo(no_ref, &info));
    EXPECT_EQ(B_BAD_VALUE, be_roster->GetRunningAppInfo(getpid(), nullptr));
    EXPECT_FALSE(be_roster->IsRunning(no_name));
    EXPECT_FALSE(be_roster->IsRunning(no_ref));
}
