// Messages to a looper and back: waiting for the answer, and having it sent to a handler.

#include <Application.h>
#include <Looper.h>
#include <Message.h>
#include <Messenger.h>

#include <assert.h>
#include <string.h>

const uint32 MSG_ADD = 'add ';
const uint32 MSG_SUM = 'sum ';
const uint32 MSG_SILENT = 'shhh';

class Adder : public BLooper {
public:
    Adder() : BLooper("adder") {}
    virtual void MessageReceived(BMessage* message)
    {
        switch (message->what) {
            case MSG_ADD: {
                int32 sum = 0, number;
                for (int32 i = 0; message->FindInt32("number", i, &number) == B_OK; i++)
                    sum += number;
                BMessage reply(MSG_SUM);
                reply.AddInt32("sum", sum);
                message->SendReply(&reply);
                break;
            }
            case MSG_SILENT:
                break;
            default:
                BLooper::MessageReceived(message);
        }
    }
};

class App : public BApplication {
public:
    App() : BApplication("application/x-vnd.round-trip"), fAdder(new Adder), fAnswers(0)
    {
        fAdder->Run();
    }
    virtual void ReadyToRun()
    {
        BMessenger adder(fAdder);
        BMessage question(MSG_ADD), answer;
        question.AddInt32("number", 17);
        question.AddInt32("number", 25);
        assert(adder.SendMessage(&question, &answer) == B_OK);
        assert(answer.what == MSG_SUM && answer.FindInt32("sum") == 42);
        assert(answer.IsReply());

        assert(adder.SendMessage(MSG_SILENT, &answer) == B_OK);
        assert(answer.what == B_NO_REPLY);

        for (int32 i = 0; i < 3; i++)
            assert(adder.SendMessage(&question, this) == B_OK);
    }
    virtual void MessageReceived(BMessage* message)
    {
        if (message->what != MSG_SUM) {
            BApplication::MessageReceived(message);
            return;
        }
        assert(message->FindInt32("sum") == 42);
        if (++fAnswers == 3)
            PostMessage(B_QUIT_REQUESTED);
    }
    virtual bool QuitRequested()
    {
        fAdder->Lock();
        BMessenger gone(fAdder);
        fAdder->Quit();
        assert(!gone.IsValid());
        assert(gone.SendMessage(MSG_ADD) == B_BAD_PORT_ID);
        return true;
    }
    int32 Answers() const { return fAnswers; }

private:
    Adder* fAdder;
    int32 fAnswers;
};

int main()
{
    App app;
    app.Run();
    assert(app.Answers() == 3);
    return 0;
}
