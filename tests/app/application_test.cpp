// The application: start, end, and the windows and loopers that end with it.

#include <gtest/gtest.h>

#include <AppDefs.h>
#include <Application.h>
#include <Message.h>
#include <Roster.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/Mailbox.h"

namespace {

const char* const kSignature = "application/x-vnd.plinth-test";

// Notes which hooks ran, in order.
class NotingApp : public BApplication {
public:
    NotingApp() : BApplication(kSignature) {}
    void ArgvReceived(int32 argc, char** argv) override
    {
        fNotes += 'v';
        fArguments = argc;
        fEndsWithNull = argv[argc] == nullptr;
    }
    void RefsReceived(BMessage*) override { fNotes += 'f'; }
    void ReadyToRun() override
    {
        fNotes += 'r';
        fWasLaunching = IsLaunching();
        if (fReady)
            fReady();
    }
    void AppActivated(bool active) override { fNotes += active ? 'A' : 'a'; }
    void AboutRequested() override { fNotes += 'b'; }
    void Pulse() override
    {
        fNotes += 'p';
        if (fPulse)
            fPulse();
    }
    void MessageReceived(BMessage* message) override
    {
        if (message->what == 'note')
            fNotes += 'm';
        else
            BApplication::MessageReceived(message);
    }

    std::string fNotes;
    std::function<void()> fReady, fPulse;
    int32 fArguments = 0;
    bool fEndsWithNull = false;
    bool fWasLaunching = false;
};

// A looper of the program's that takes part in quitting.
class Client : public BLooper {
public:
    Client(std::atomic<int>& asked, std::atomic<int>& gone)
        : BLooper("client"), fAsked(asked), fGone(gone)
    {
    }
    ~Client() override { fGone++; }
    bool QuitRequested() override
    {
        fAsked++;
        EXPECT_TRUE(IsLocked());
        return fMayQuit;
    }
    std::atomic<bool> fMayQuit{true};

private:
    std::atomic<int>& fAsked;
    std::atomic<int>& fGone;
};

}  // namespace

TEST(Application, HooksRunInOrderFromArgumentsToQuit)
{
    NotingApp app;
    EXPECT_EQ(B_OK, app.InitCheck());
    EXPECT_EQ(&app, be_app);
    EXPECT_STREQ(kSignature, app.Signature());
    EXPECT_TRUE(app.IsLaunching());
    app.PostMessage(B_REFS_RECEIVED);
    app.fReady = [&] {
        app.PostMessage('note');
        BMessage activated(B_APP_ACTIVATED);
        activated.AddBool("active", true);
        app.PostMessage(&activated);
        app.PostMessage(B_ABOUT_REQUESTED);
        app.PostMessage(B_READY_TO_RUN);  // only the first one counts
        be_app_messenger.SendMessage(B_QUIT_REQUESTED);
    };
    EXPECT_EQ(find_thread(nullptr), app.Run());
    EXPECT_FALSE(app.IsLaunching());
    EXPECT_TRUE(app.fWasLaunching);
    if (app.fArguments > 0) {
        EXPECT_EQ("vrfmAb", app.fNotes);
        EXPECT_TRUE(app.fEndsWithNull);
    } else
        EXPECT_EQ("rfmAb", app.fNotes) << "no argument beyond the program's name";
    EXPECT_EQ(B_ALREADY_RUNNING, app.Run());
}

TEST(Application, OneAtATimeWithAGoodSignature)
{
    status_t status = B_OK;
    {
        BApplication bad("text/plain", &status);
        EXPECT_EQ(B_BAD_VALUE, status);
        EXPECT_EQ(nullptr, be_app);
        EXPECT_EQ(B_BAD_VALUE, bad.Run());
    }
    for (const char* signature : {"", "application/", static_cast<const char*>(nullptr)}) {
        BApplication bad(signature, &status);
        EXPECT_EQ(B_BAD_VALUE, status);
    }
    NotingApp app;
    {
        BApplication second(kSignature, &status);
        EXPECT_EQ(B_ALREADY_RUNNING, status);
        EXPECT_EQ(&app, be_app);
    }
    EXPECT_EQ(&app, be_app);
    EXPECT_TRUE(BMessenger(kSignature).IsValid());
    app_info info;
    ASSERT_EQ(B_OK, app.GetAppInfo(&info));
    EXPECT_STREQ(kSignature, info.signature);
    EXPECT_EQ(app.Team(), info.team);
    EXPECT_NE(nullptr, info.ref.name);
    EXPECT_EQ(B_BAD_VALUE, app.GetAppInfo(nullptr));
}

TEST(Application, QuitBeforeRunDeletesIt)
{
    struct App : BApplication {
        explicit App(bool& gone) : BApplication(kSignature), fGone(gone) {}
        ~App() override { fGone = true; }
        bool& fGone;
    };
    bool gone = false;
    auto* app = new App(gone);
    app->PostMessage('note');
    app->Quit();
    EXPECT_TRUE(gone);
    EXPECT_EQ(nullptr, be_app);
    BApplication next(kSignature);
    EXPECT_EQ(B_OK, next.InitCheck());
}

TEST(Application, IsReadyBeforeItQuitsAsItWasAskedToBeforeRun)
{
    NotingApp app;
    app.PostMessage('note');
    app.PostMessage(B_QUIT_REQUESTED);
    app.Run();
    EXPECT_EQ(app.fArguments > 0 ? "vrm" : "rm", app.fNotes);
}

TEST(Application, PulseComesAtItsRate)
{
    NotingApp app;
    int pulses = 0;
    app.fReady = [&] { app.SetPulseRate(2000); };
    app.fPulse = [&] {
        if (++pulses == 3) {
            app.SetPulseRate(0);
            app.Quit();
        }
    };
    app.Run();
    EXPECT_EQ(3, pulses);
}

TEST(Application, APulseInCenturiesNeverComes)
{
    NotingApp app;
    int pulses = 0;
    app.fPulse = [&] { pulses++; };
    app.fReady = [&] { app.SetPulseRate(INT64_MAX); };
    Task ask([&] {
        snooze(20'000);  // time enough for one
        be_app_messenger.SendMessage(B_QUIT_REQUESTED);
    });
    app.Run();
    EXPECT_EQ(0, pulses);
}

TEST(Application, OneRefusalKeepsAllLoopers)
{
    NotingApp app;
    std::atomic<int> asked{0}, gone{0};
    Client* clients[3];
    for (Client*& client : clients) {
        client = new Client(asked, gone);
        EXPECT_EQ(B_OK, app.RegisterLooper(client));
        EXPECT_EQ(B_BAD_VALUE, app.RegisterLooper(client));
        client->Run();
    }
    EXPECT_EQ(B_BAD_VALUE, app.RegisterLooper(nullptr));
    EXPECT_EQ(B_BAD_VALUE, app.UnregisterLooper(&app));
    auto* free = new Client(asked, gone);
    app.RegisterLooper(free);
    EXPECT_EQ(B_OK, app.UnregisterLooper(free));
    free->Run();
    EXPECT_EQ(5, app.CountLoopers());
    EXPECT_EQ(&app, app.LooperAt(0));
    EXPECT_EQ(clients[0], app.LooperAt(1));
    EXPECT_EQ(nullptr, app.LooperAt(5));
    EXPECT_EQ(nullptr, app.LooperAt(-1));

    clients[1]->fMayQuit = false;
    Task ask([&] {
        BMessage reply;
        EXPECT_EQ(B_OK, be_app_messenger.SendMessage(B_QUIT_REQUESTED, &reply));
        EXPECT_FALSE(reply.FindBool("result"));
        EXPECT_EQ(2, asked) << "the third was not asked any more";
        EXPECT_EQ(0, gone);
        clients[1]->fMayQuit = true;
        EXPECT_EQ(B_OK, be_app_messenger.SendMessage(B_QUIT_REQUESTED, &reply));
        EXPECT_TRUE(reply.FindBool("result"));
    });
    app.Run();
    ask.Join();
    EXPECT_EQ(3, gone) << "all that are registered, before Run() returned";
    EXPECT_TRUE(free->Lock());
    free->Quit();
}

// Loopers come and go on other threads, some of them through the application, while it
// is asked to quit.
TEST(ApplicationStress, QuittingDoesNotHangWhileLoopersComeAndGo)
{
    for (int round = 0; round < 20; round++) {
        NotingApp app;
        std::atomic<int> asked{0}, gone{0}, made{0};
        std::atomic<bool> stop{false};
        auto churn = [&] {
            while (!stop) {
                auto* client = new Client(asked, gone);
                made++;
                app.RegisterLooper(client);
                client->Run();
                be_app->CountLoopers();
                be_app_messenger.SendMessage('note');
                if (be_app->Lock())
                    be_app->Unlock();
                if (client->Lock())
                    client->Quit();
            }
        };
        {
            Task one(churn), two(churn);
            Task ask([&] {
                while (asked + gone < 10)
                    snooze(100);
                BMessage reply;
                be_app_messenger.SendMessage(B_QUIT_REQUESTED, &reply);
                stop = true;
            });
            app.Run();
        }
        EXPECT_EQ(made, gone);
    }
}
