// Something is dragged from one window to another: the pointer is moved by the program itself.

#include <Application.h>
#include <Bitmap.h>
#include <Injection.h>
#include <View.h>
#include <Window.h>

#include <assert.h>

const uint32 MSG_COLOR = 'PSTE';
const uint32 MSG_PRESSED = 'down';

class Source : public BView {
public:
    Source(BRect frame) : BView(frame, "source", B_FOLLOW_ALL, B_WILL_DRAW) {}
    virtual void MouseDown(BPoint where)
    {
        BMessage message(MSG_COLOR);
        const rgb_color color = {12, 34, 56, 255};
        message.AddData("RGBColor", B_RGB_COLOR_TYPE, &color, sizeof(color));
        BBitmap* image = new BBitmap(BRect(0, 0, 15, 15), B_RGBA32, true);
        BView* pen = new BView(image->Bounds(), "pen", B_FOLLOW_NONE, B_WILL_DRAW);
        image->AddChild(pen);
        image->Lock();
        pen->SetHighColor(color);
        pen->FillRect(pen->Bounds());
        pen->Sync();
        image->Unlock();
        DragMessage(&message, image, BPoint(8, 8));
        be_app->PostMessage(MSG_PRESSED);
        assert(Bounds().Contains(where));
    }
};

class Target : public BView {
public:
    Target(BRect frame) : BView(frame, "target", B_FOLLOW_ALL, B_WILL_DRAW) {}
    virtual void MouseMoved(BPoint, uint32 transit, const BMessage* dragged)
    {
        if (transit == B_ENTERED_VIEW && dragged != NULL)
            fEntered = dragged->what == MSG_COLOR;
    }
    virtual void MessageReceived(BMessage* message)
    {
        if (message->what != MSG_COLOR || !message->WasDropped()) {
            BView::MessageReceived(message);
            return;
        }
        const rgb_color* color;
        ssize_t size;
        assert(message->FindData("RGBColor", B_RGB_COLOR_TYPE, (const void**)&color, &size) ==
               B_OK);
        assert(size == sizeof(rgb_color) && color->green == 34);
        assert(ConvertFromScreen(message->DropPoint()) == BPoint(30, 40));
        assert(fEntered);
        be_app->PostMessage(B_QUIT_REQUESTED);
    }

private:
    bool fEntered = false;
};

class Window : public BWindow {
public:
    Window(BRect frame, const char* title) : BWindow(frame, title, B_TITLED_WINDOW, 0) {}
    void Fill(BView* view)
    {
        AddChild(view);
        Show();
    }
};

class App : public BApplication {
public:
    App() : BApplication("application/x-vnd.drag-program"), fDragged(false) {}
    virtual void ReadyToRun()
    {
        const BRect frame(100, 100, 199, 199);
        Window* left = new Window(frame, "From");
        left->Fill(new Source(left->Bounds()));
        Window* right = new Window(frame.OffsetByCopy(200, 0), "To");
        right->Fill(new Target(right->Bounds()));
        inject_pointer(150, 150);
        inject_button(1, true);
    }
    virtual void MessageReceived(BMessage* message)
    {
        if (message->what == MSG_PRESSED) {
            fDragged = true;
            inject_pointer(250, 145);
            inject_pointer(320, 139);
            inject_pointer(330, 140);
            inject_button(1, false);
        } else
            BApplication::MessageReceived(message);
    }
    bool Dragged() const { return fDragged; }

private:
    bool fDragged;
};

int main()
{
    App app;
    app.Run();
    assert(app.Dragged());
    return 0;
}
