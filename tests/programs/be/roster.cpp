// What the roster knows of this program and of others.

#include <Application.h>
#include <Entry.h>
#include <List.h>
#include <Path.h>
#include <Roster.h>

#include <assert.h>
#include <string.h>
#include <unistd.h>

static const char* kSignature = "application/x-vnd.roster-program";

class App : public BApplication {
public:
    App() : BApplication(kSignature), fHeard(false) {}
    virtual void ReadyToRun()
    {
        app_info info;
        assert(GetAppInfo(&info) == B_OK);
        assert(info.team == getpid() && strcmp(info.signature, kSignature) == 0);
        BPath path(&info.ref);
        assert(path.InitCheck() == B_OK && strcmp(path.Leaf(), info.ref.name) == 0);

        assert(be_roster->IsRunning(kSignature));
        assert(!be_roster->IsRunning("application/x-vnd.nobody-has-this"));
        BList teams;
        be_roster->GetAppList(kSignature, &teams);
        bool found = false;
        for (int32 i = 0; i < teams.CountItems(); i++)
            found = found || (team_id)(addr_t)teams.ItemAt(i) == info.team;
        assert(found);

        app_info running;
        assert(be_roster->GetRunningAppInfo(info.team, &running) == B_OK);
        assert(running.ref == info.ref && running.thread == Thread());
        entry_ref ref;
        assert(be_roster->FindApp(&info.ref, &ref) == B_OK && ref == info.ref);

        status_t error;
        BMessenger self(NULL, info.team, &error);
        assert(error == B_OK && self.IsValid());
        assert(self.SendMessage('self') == B_OK);
    }
    virtual void MessageReceived(BMessage* message)
    {
        if (message->what == 'self') {
            fHeard = true;
            PostMessage(B_QUIT_REQUESTED);
        } else
            BApplication::MessageReceived(message);
    }
    bool Heard() const { return fHeard; }

private:
    bool fHeard;
};

int main()
{
    App app;
    app.Run();
    assert(app.Heard());
    return 0;
}
