// Text and other data on a clipboard, and the news of a change.

#include <Application.h>
#include <Clipboard.h>

#include <assert.h>
#include <string.h>

static const char kText[] = "cut, copied and pasted";

class App : public BApplication {
public:
    App() : BApplication("application/x-vnd.clipboard-program"), fTold(false) {}
    virtual void ReadyToRun()
    {
        assert(be_clipboard->StartWatching(be_app_messenger) == B_OK);
        assert(be_clipboard->Lock());
        be_clipboard->Clear();
        BMessage* clip = be_clipboard->Data();
        assert(clip != NULL);
        clip->AddData("text/plain", B_MIME_TYPE, kText, strlen(kText));
        clip->AddRect("frame", BRect(1, 2, 3, 4));
        assert(be_clipboard->Commit() == B_OK);
        be_clipboard->Unlock();
    }
    virtual void MessageReceived(BMessage* message)
    {
        if (message->what != B_CLIPBOARD_CHANGED) {
            BApplication::MessageReceived(message);
            return;
        }
        assert(be_clipboard->Lock());
        const char* text;
        ssize_t length;
        BMessage* clip = be_clipboard->Data();
        assert(clip->FindData("text/plain", B_MIME_TYPE, (const void**)&text, &length) == B_OK);
        assert(length == (ssize_t)strlen(kText) && strncmp(text, kText, length) == 0);
        BRect frame;
        assert(clip->FindRect("frame", &frame) == B_OK && frame == BRect(1, 2, 3, 4));
        be_clipboard->Unlock();
        fTold = true;
        PostMessage(B_QUIT_REQUESTED);
    }
    bool Told() const { return fTold; }

private:
    bool fTold;
};

int main()
{
    App app;
    app.Run();
    assert(app.Told());
    return 0;
}
