// A looper with filters: one for all its messages, one for a handler, and one that sends a message
// elsewhere.

#include <Application.h>
#include <Handler.h>
#include <Looper.h>
#include <MessageFilter.h>
#include <String.h>

#include <assert.h>

static BString sHeard;

class Listener : public BHandler {
public:
    Listener(const char* name) : BHandler(name) {}
    virtual void MessageReceived(BMessage* message)
    {
        if (message->what == 'last')
            be_app->PostMessage(B_QUIT_REQUESTED);
        sHeard << Name() << ":" << (char)(message->what >> 24) << " ";
    }
};

static filter_result drop_secrets(BMessage* message, BHandler**, BMessageFilter*)
{
    return message->HasBool("secret") ? B_SKIP_MESSAGE : B_DISPATCH_MESSAGE;
}

class Redirect : public BMessageFilter {
public:
    Redirect(BHandler* to) : BMessageFilter(B_ANY_DELIVERY, B_ANY_SOURCE, 'turn'), fTo(to) {}
    virtual filter_result Filter(BMessage*, BHandler** target)
    {
        *target = fTo;
        return B_DISPATCH_MESSAGE;
    }

private:
    BHandler* fTo;
};

int main()
{
    BApplication app("application/x-vnd.looper-filters");
    BLooper* looper = new BLooper("filtered");
    Listener* first = new Listener("first");
    Listener* second = new Listener("second");
    looper->AddHandler(first);
    looper->AddHandler(second);
    looper->AddCommonFilter(new BMessageFilter(B_ANY_DELIVERY, B_ANY_SOURCE, drop_secrets));
    first->AddFilter(new Redirect(second));
    looper->Run();

    BMessage secret('open');
    secret.AddBool("secret", true);
    looper->PostMessage('open', first);
    looper->PostMessage(&secret, first);
    looper->PostMessage('turn', first);
    looper->PostMessage('turn', second);
    looper->PostMessage('last', first);
    app.Run();

    looper->Lock();
    looper->RemoveHandler(first);
    looper->RemoveHandler(second);
    looper->Quit();
    delete first;
    delete second;
    assert(sHeard == "first:o second:t second:t first:l ");
    return 0;
}
