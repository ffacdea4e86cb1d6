// A window whose volume and list of names can be asked for and set by scripting messages.

#include <Application.h>
#include <Message.h>
#include <Messenger.h>
#include <PropertyInfo.h>
#include <Window.h>

#include <assert.h>
#include <string.h>

static property_info sProperties[] = {
    {
        "Volume",
        {B_GET_PROPERTY, B_SET_PROPERTY, 0},
        {B_DIRECT_SPECIFIER, 0},
        "from 0 to 10",
        0,
        {B_INT32_TYPE},
        {},
    },
    {"Name", {B_GET_PROPERTY, 0}, {B_INDEX_SPECIFIER, 0}, "by index", 0, {B_STRING_TYPE}, {}},
    {},
};

static const char* sNames[] = {"Ann", "Ben"};

class Player : public BWindow {
public:
    Player() : BWindow(BRect(50, 50, 150, 100), "Player", B_TITLED_WINDOW, 0), fVolume(5) {}
    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 form, const char* property)
    {
        BPropertyInfo info(sProperties);
        if (info.FindMatch(message, index, specifier, form, property) >= 0)
            return this;
        return BWindow::ResolveSpecifier(message, index, specifier, form, property);
    }
    virtual status_t GetSupportedSuites(BMessage* data)
    {
        data->AddString("suites", "suite/vnd.player");
        BPropertyInfo info(sProperties);
        data->AddFlat("messages", &info);
        return BWindow::GetSupportedSuites(data);
    }
    virtual void MessageReceived(BMessage* message)
    {
        int32 index, form;
        BMessage specifier;
        const char* property;
        BPropertyInfo info(sProperties);
        if (message->GetCurrentSpecifier(&index, &specifier, &form, &property) != B_OK ||
            info.FindMatch(message, index, &specifier, form, property) < 0) {
            BWindow::MessageReceived(message);
            return;
        }
        BMessage reply(B_REPLY);
        status_t status = B_OK;
        if (strcmp(property, "Name") == 0) {
            const int32 at = specifier.FindInt32("index");
            status = at >= 0 && at < 2 ? reply.AddString("result", sNames[at]) : B_BAD_INDEX;
        } else if (message->what == B_GET_PROPERTY)
            status = reply.AddInt32("result", fVolume);
        else
            status = message->FindInt32("data", &fVolume);
        reply.AddInt32("error", status);
        message->SendReply(&reply);
    }

private:
    int32 fVolume;
};

int main()
{
    BApplication app("application/x-vnd.scripting-program");
    Player* player = new Player;
    player->Show();
    BMessenger messenger(player);

    BMessage set(B_SET_PROPERTY), reply;
    set.AddSpecifier("Volume");
    set.AddInt32("data", 9);
    assert(messenger.SendMessage(&set, &reply) == B_OK);
    assert(reply.what == B_REPLY && reply.FindInt32("error") == B_OK);

    BMessage get(B_GET_PROPERTY);
    get.AddSpecifier("Volume");
    assert(messenger.SendMessage(&get, &reply) == B_OK);
    assert(reply.FindInt32("result") == 9);

    BMessage name(B_GET_PROPERTY);
    name.AddSpecifier("Name", (int32)1);
    assert(messenger.SendMessage(&name, &reply) == B_OK);
    assert(strcmp(reply.FindString("result"), "Ben") == 0);

    BMessage title(B_GET_PROPERTY);
    title.AddSpecifier("Title");
    assert(messenger.SendMessage(&title, &reply) == B_OK);
    assert(strcmp(reply.FindString("result"), "Player") == 0);

    BMessage unknown(B_GET_PROPERTY);
    unknown.AddSpecifier("Colour");
    assert(messenger.SendMessage(&unknown, &reply) == B_OK);
    assert(reply.what == B_MESSAGE_NOT_UNDERSTOOD);

    BMessage suites(B_GET_SUPPORTED_SUITES);
    assert(messenger.SendMessage(&suites, &reply) == B_OK);
    assert(strcmp(reply.FindString("suites"), "suite/vnd.player") == 0);

    player->Lock();
    player->Quit();
    return 0;
}
