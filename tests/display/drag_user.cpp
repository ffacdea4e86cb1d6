// A program with a window at (100, 120), or at (600, 120) with the argument "right", 300 x 200
// pixels, in three stripes: a text, the file named
// by the argument and a picture can be dragged out of them. Prints what falls on it.

#include <Application.h>
#include <Bitmap.h>
#include <Entry.h>
#include <Message.h>
#include <Path.h>
#include <TypeConstants.h>
#include <View.h>
#include <Window.h>

#include <cstdio>
#include <cstring>
#include <string>

static const float kStripe = 100;

class Stripes : public BView {
public:
    Stripes(BRect frame, const char* path)
        : BView(frame, "stripes", B_FOLLOW_ALL, B_WILL_DRAW), fPath(path)
    {
        SetViewColor(32, 96, 192);
    }

    void MouseDown(BPoint where) override
    {
        BMessage message(B_SIMPLE_DATA);
        message.AddPointer("here", this);
        if (where.x < kStripe)
            message.AddData("text/plain", B_MIME_TYPE, "dragged \xc3\xa4", 10);
        else if (where.x < 2 * kStripe)
            _AddFile(&message);
        else
            _AddPicture(&message);
        auto* image = new BBitmap(BRect(0, 0, 31, 31), B_RGBA32);
        for (int i = 0; i < 32 * 32; i++)
            static_cast<uint32*>(image->Bits())[i] = 0x80ff0000;
        DragMessage(&message, image, B_OP_ALPHA, BPoint(16, 16));
        puts("drag");
    }
    void MessageReceived(BMessage* message) override
    {
        if (message->WasDropped())
            _Print(*message);
        BView::MessageReceived(message);
    }

private:
    void _AddFile(BMessage* message) const
    {
        entry_ref ref;
        if (get_ref_for_path(fPath.c_str(), &ref) == B_OK)
            message->AddRef("refs", &ref);
    }
    static void _AddPicture(BMessage* message)
    {
        BBitmap bitmap(BRect(0, 0, 3, 1), B_RGB32);
        memset(bitmap.Bits(), 0x40, static_cast<size_t>(bitmap.BitsLength()));
        BMessage archive;
        if (bitmap.Archive(&archive) == B_OK)
            message->AddMessage("picture", &archive);
    }
    static void _Print(const BMessage& message)
    {
        char* name;
        type_code type;
        for (int32 i = 0; message.GetInfo(B_ANY_TYPE, i, &name, &type) == B_OK; i++) {
            const void* data = nullptr;
            ssize_t size = 0;
            entry_ref ref;
            if (type == B_MIME_TYPE && message.FindData(name, type, &data, &size) == B_OK &&
                strcmp(name, "text/plain") == 0)
                printf("dropped text %.*s\n", int(size), static_cast<const char*>(data));
            else if (type == B_REF_TYPE && message.FindRef(name, &ref) == B_OK)
                printf("dropped file %s\n", ref.name);
            else
                printf("dropped %s\n", name);
        }
        const BPoint where = message.DropPoint();
        printf("dropped at %g %g\n", where.x, where.y);
    }

    const std::string fPath;
};

class DragUser : public BWindow {
public:
    DragUser(const char* path, BPoint place)
        : BWindow(BRect(0, 0, 299, 199).OffsetByCopy(place), "drag user", B_TITLED_WINDOW, 0)
    {
        AddChild(new Stripes(Bounds(), path));
    }
    bool QuitRequested() override
    {
        be_app->PostMessage(B_QUIT_REQUESTED);
        return true;
    }
};

int main(int argc, char** argv)
{
    setvbuf(stdout, nullptr, _IOLBF, 0);
    BApplication application("application/x-vnd.plinth-drag-user");
    const char* argument = argc > 1 ? argv[1] : "";
    const bool is_right = strcmp(argument, "right") == 0;
    auto* window = new DragUser(argument, BPoint(is_right ? 600 : 100, 120));
    window->Show();
    puts("ready");
    application.Run();
    return 0;
}
