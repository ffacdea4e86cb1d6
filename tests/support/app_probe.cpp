// An application for the tests to launch. Its signature is in PROBE_SIGNATURE; what it hears goes
// to the file that PROBE_REPORT names, a line each, complete once the file is there. It runs until
// it is told 'quit', or for some minutes.

#include <AppDefs.h>
#include <Application.h>
#include <Entry.h>
#include <Message.h>

#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <string>

class Probe : public BApplication {
public:
    Probe() : BApplication(getenv("PROBE_SIGNATURE")) {}

    void ReadyToRun() override
    {
        fReady = true;
        Write();
    }
    void ArgvReceived(int32 argc, char** argv) override
    {
        for (int32 i = 1; i < argc; ++i)
            fText += std::string("arg ") + argv[i] + "\n";
        Write();
    }
    void RefsReceived(BMessage* message) override
    {
        entry_ref ref;
        for (int32 i = 0; message->FindRef("refs", i, &ref) == B_OK; ++i)
            fText += (BEntry(&ref).InitCheck() == B_OK ? "ref " : "unknown ") +
                     std::string(ref.name) + "\n";
        Write();
    }
    void MessageReceived(BMessage* message) override
    {
        if (message->what == 'quit')
            PostMessage(B_QUIT_REQUESTED);
        else if (message->what == 'echo') {
            message->what = 'echd';
            message->SendReply(message);
        } else {
            fText += "what " + std::to_string(message->what) + "\n";
            Write();
        }
    }

private:
    void Write() const
    {
        const char* report = getenv("PROBE_REPORT");
        if (report == nullptr || !fReady)
            return;
        const std::string unfinished = std::string(report) + ".part";
        FILE* file = fopen(unfinished.c_str(), "w");
        fputs(fText.c_str(), file);
        fclose(file);
        rename(unfinished.c_str(), report);
    }
    std::string fText;
    bool fReady = false;
};

int main()
{
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    alarm(250);
    Probe probe;
    if (probe.InitCheck() != B_OK)
        return 1;
    probe.Run();
    return 0;
}
