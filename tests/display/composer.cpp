// A window at (100, 120) with a view that takes part in input methods, and prints what it hears of
// them: the opcode, and of a change its text, whether it is confirmed, its selection and clauses.
// The text is said to be at (40, 60) of the view, 14 pixels high.

#include <Application.h>
#include <Input.h>
#include <Message.h>
#include <Messenger.h>
#include <View.h>
#include <Window.h>

#include <cstdio>

class Composer : public BView {
public:
    explicit Composer(BRect frame)
        : BView(frame, "composer", B_FOLLOW_ALL, B_WILL_DRAW | B_INPUT_METHOD_AWARE)
    {
    }
    void AttachedToWindow() override { MakeFocus(); }
    void KeyDown(const char* bytes, int32 length) override { printf("key %.*s\n", length, bytes); }
    void MouseDown(BPoint) override
    {
        BMessage stop(B_INPUT_METHOD_EVENT);
        stop.AddInt32("be:opcode", B_INPUT_METHOD_STOPPED);
        fReplyTo.SendMessage(&stop);
        puts("stops it");
    }
    void MessageReceived(BMessage* message) override
    {
        if (message->what != B_INPUT_METHOD_EVENT)
            return BView::MessageReceived(message);
        const int32 opcode = message->GetInt32("be:opcode", -1);
        message->FindMessenger("be:reply_to", &fReplyTo);
        if (opcode == B_INPUT_METHOD_CHANGED)
            _Print(*message);
        else
            printf("opcode %d\n", opcode);
        if (opcode == B_INPUT_METHOD_LOCATION_REQUEST)
            _Reply();
    }

private:
    static void _Print(const BMessage& message)
    {
        printf("opcode %d \"%s\"%s selection %d-%d", B_INPUT_METHOD_CHANGED,
               message.GetString("be:string", "-"),
               message.GetBool("be:confirmed", false) ? " confirmed" : "",
               message.GetInt32("be:selection", 0, -1), message.GetInt32("be:selection", 1, -1));
        int32 start, end;
        for (int32 i = 0; message.FindInt32("be:clause_start", i, &start) == B_OK &&
                          message.FindInt32("be:clause_end", i, &end) == B_OK;
             i++)
            printf(" clause %d-%d", start, end);
        puts("");
    }
    void _Reply()
    {
        BMessage reply(B_INPUT_METHOD_EVENT);
        reply.AddInt32("be:opcode", B_INPUT_METHOD_LOCATION_REQUEST);
        reply.AddPoint("be:location_reply", ConvertToScreen(BPoint(40, 60)));
        reply.AddFloat("be:height_reply", 14);
        fReplyTo.SendMessage(&reply);
    }

    BMessenger fReplyTo;
};

int main()
{
    setvbuf(stdout, nullptr, _IOLBF, 0);
    BApplication application("application/x-vnd.plinth-composer");
    auto* window =
        new BWindow(BRect(100, 120, 399, 319), "composer", B_TITLED_WINDOW, B_QUIT_ON_WINDOW_CLOSE);
    window->AddChild(new Composer(window->Bounds()));
    window->Show();
    puts("ready");
    application.Run();
    return 0;
}
