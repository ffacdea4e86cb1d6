// A window that says hello, and closes once it was drawn.

#include <Application.h>
#include <View.h>
#include <Window.h>

#include <assert.h>

static bool sDrawn = false;

class HelloView : public BView {
public:
    HelloView(BRect frame) : BView(frame, "hello", B_FOLLOW_ALL_SIDES, B_WILL_DRAW)
    {
        SetViewColor(216, 216, 216);
    }
    virtual void Draw(BRect updateRect)
    {
        BFont font(be_bold_font);
        font.SetSize(24);
        SetFont(&font);
        SetLowColor(ViewColor());
        DrawString("Hello, world!", BPoint(20, 40));
        StrokeRect(BRect(10, 10, StringWidth("Hello, world!") + 30, 50));
        assert(updateRect.IsValid());
        if (!sDrawn)
            Window()->PostMessage(B_QUIT_REQUESTED);
        sDrawn = true;
    }
};

class HelloWindow : public BWindow {
public:
    HelloWindow(BRect frame)
        : BWindow(frame, "Hello", B_TITLED_WINDOW, B_NOT_RESIZABLE | B_NOT_ZOOMABLE)
    {
        AddChild(new HelloView(Bounds()));
    }
    virtual bool QuitRequested()
    {
        be_app->PostMessage(B_QUIT_REQUESTED);
        return true;
    }
};

class HelloApplication : public BApplication {
public:
    HelloApplication() : BApplication("application/x-vnd.hello-window") {}
    virtual void ReadyToRun()
    {
        BWindow* window = new HelloWindow(BRect(100, 80, 360, 140));
        window->Show();
    }
};

int main()
{
    HelloApplication app;
    app.Run();
    assert(sDrawn);
    return 0;
}
