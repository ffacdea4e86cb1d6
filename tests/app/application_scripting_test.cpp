// What others may ask the application, its windows and its loopers by message; its cursor, archive.

#include <gtest/gtest.h>

#include <Application.h>
#include <Cursor.h>
#include <Message.h>
#include <Window.h>

#include <functional>
#include <memory>

#include "app/Mailbox.h"

namespace {

const char* const kSignature = "application/x-vnd.plinth-test";

// Runs the application beside a thread that asks it questions, then quits it.
void ask_running(BApplication& app, const std::function<void()>& ask)
{
    Task asking([&] {
        ask();
        be_app_messenger.SendMessage(B_QUIT_REQUESTED);
    });
    app.Run();
    asking.Join();
}

BMessage answer(BMessage& question, const BMessenger& to = be_app_messenger)
{
    BMessage reply;
    EXPECT_EQ(B_OK, to.SendMessage(&question, &reply, kDeadline, kDeadline));
    return reply;
}

}  // namespace

TEST(ApplicationScripting, CountsAndHandsOutItsWindowsAndLoopers)
{
    BApplication app(kSignature);
    auto* window = new BWindow(BRect(0, 0, 9, 9), "asked", B_TITLED_WINDOW, 0);
    window->Show();  // its loop runs from now on
    auto* looper = new BLooper("helper");
    looper->Run();
    ask_running(app, [&] {
        BMessage name(B_GET_PROPERTY);
        name.AddSpecifier("Name");
        EXPECT_STREQ(app.Name(), answer(name).GetString("result", "?"));

        BMessage windows(B_COUNT_PROPERTIES), loopers(B_COUNT_PROPERTIES);
        windows.AddSpecifier("Window");
        loopers.AddSpecifier("Looper");
        EXPECT_EQ(1, answer(windows).GetInt32("result", -1));
        EXPECT_EQ(app.CountLoopers(), answer(loopers).GetInt32("result", -1));

        BMessage first(B_GET_PROPERTY);
        first.AddSpecifier("Window", static_cast<int32>(0));
        BMessenger found;
        EXPECT_EQ(B_OK, answer(first).FindMessenger("result", &found));
        EXPECT_TRUE(found == BMessenger(nullptr, window));
        BMessage named(B_GET_PROPERTY);
        named.AddSpecifier("Window", "asked");
        EXPECT_EQ(B_OK, answer(named).FindMessenger("result", &found));
        EXPECT_TRUE(found == BMessenger(nullptr, window));
        BMessage title(B_GET_PROPERTY);
        title.AddSpecifier("Title");
        EXPECT_STREQ("asked", answer(title, found).GetString("result", "?"));

        for (int32 outside : {1, -1, INT32_MAX}) {
            BMessage none(B_GET_PROPERTY);
            none.AddSpecifier("Window", outside);
            const BMessage reply = answer(none);
            EXPECT_EQ(B_BAD_INDEX, reply.GetInt32("error", B_OK)) << outside;
            EXPECT_FALSE(reply.HasMessenger("result"));
        }
        BMessage unknown(B_GET_PROPERTY);
        unknown.AddSpecifier("Weather");
        EXPECT_EQ(uint32(B_MESSAGE_NOT_UNDERSTOOD), answer(unknown).what);
        BMessage suites(B_GET_SUPPORTED_SUITES);
        EXPECT_TRUE(answer(suites).HasString("suites"));
        looper->PostMessage(B_QUIT_REQUESTED);
    });
}

TEST(ApplicationScripting, AWindowAnswersWhatIsAskedOfItThroughTheApplication)
{
    BApplication app(kSignature);
    auto* window = new BWindow(BRect(10, 20, 109, 119), "asked", B_TITLED_WINDOW, 0);
    window->AddChild(new BView(BRect(1, 2, 3, 4), "inner", B_FOLLOW_NONE, 0));
    window->Show();
    auto* looper = new BLooper("helper");
    looper->Run();
    Mailbox mail;
    auto* listener = new ListeningLooper(mail);
    listener->Run();
    ask_running(app, [&] {
        BMessage frame(B_GET_PROPERTY), title(B_GET_PROPERTY), inner(B_GET_PROPERTY);
        frame.AddSpecifier("Frame");
        frame.AddSpecifier("Window", static_cast<int32>(0));
        EXPECT_EQ(BRect(10, 20, 109, 119), answer(frame).GetRect("result", BRect()));
        title.AddSpecifier("Title");
        title.AddSpecifier("Window", "asked");
        EXPECT_STREQ("asked", answer(title).GetString("result", "?"));
        inner.AddSpecifier("Frame");
        inner.AddSpecifier("View", "inner");
        inner.AddSpecifier("Window", static_cast<int32>(0));
        EXPECT_EQ(BRect(1, 2, 3, 4), answer(inner).GetRect("result", BRect()));

        BMessage count(B_COUNT_PROPERTIES);
        count.AddSpecifier("Handler");
        count.AddSpecifier("Looper", "helper");
        EXPECT_EQ(looper->CountHandlers(), answer(count).GetInt32("result", -1));

        BMessage change(B_SET_PROPERTY);
        change.AddSpecifier("Title");
        change.AddSpecifier("Window", static_cast<int32>(0));
        change.AddString("data", "changed");
        EXPECT_EQ(B_OK, answer(change).GetInt32("error", -1));
        // An answer that nobody waits for goes where the sender wants it.
        BMessage again(B_GET_PROPERTY);
        again.AddSpecifier("Title");
        again.AddSpecifier("Window", "changed");
        EXPECT_EQ(B_OK, be_app_messenger.SendMessage(&again, BMessenger(nullptr, listener)));
        EXPECT_STREQ("changed", mail.Take().GetString("result", "?"));

        for (const char* gone : {"asked", ""}) {
            BMessage none(B_GET_PROPERTY);
            none.AddSpecifier("Title");
            none.AddSpecifier("Window", gone);
            const BMessage reply = answer(none);
            EXPECT_EQ(uint32(B_MESSAGE_NOT_UNDERSTOOD), reply.what);
            EXPECT_EQ(B_NAME_NOT_FOUND, reply.GetInt32("error", B_OK));
        }
        BMessage outside(B_GET_PROPERTY);
        outside.AddSpecifier("Title");
        outside.AddSpecifier("Window", static_cast<int32>(7));
        EXPECT_EQ(B_BAD_INDEX, answer(outside).GetInt32("error", B_OK));
        listener->PostMessage(B_QUIT_REQUESTED);
        looper->PostMessage(B_QUIT_REQUESTED);
    });
}

TEST(ViewScripting, TellsAndSetsItsFrameHidesAndHasViewsInIt)
{
    BApplication app(kSignature);
    auto* window = new BWindow(BRect(0, 0, 99, 99), "asked", B_TITLED_WINDOW, 0);
    auto* outer = new BView(BRect(5, 5, 50, 50), "outer", B_FOLLOW_NONE, 0);
    for (const char* name : {"first", "last"})
        outer->AddChild(new BView(BRect(1, 2, 3, 4), name, B_FOLLOW_NONE, 0));
    window->AddChild(outer);
    window->Show();
    const BMessenger view(outer);
    ask_running(app, [&] {
        BMessage frame(B_SET_PROPERTY), hide(B_SET_PROPERTY), hidden(B_GET_PROPERTY);
        frame.AddSpecifier("Frame");
        frame.AddRect("data", BRect(7, 8, 30, 40));
        EXPECT_EQ(B_OK, answer(frame, view).GetInt32("error", -1));
        frame.what = B_GET_PROPERTY;
        EXPECT_EQ(BRect(7, 8, 30, 40), answer(frame, view).GetRect("result", BRect()));
        hide.AddSpecifier("Hidden");
        hide.AddBool("data", true);
        hidden.AddSpecifier("Hidden");
        for (int twice = 0; twice < 2; ++twice)
            EXPECT_EQ(B_OK, answer(hide, view).GetInt32("error", -1));
        EXPECT_TRUE(answer(hidden, view).GetBool("result", false));
        hide.ReplaceBool("data", false);
        EXPECT_EQ(B_OK, answer(hide, view).GetInt32("error", -1));
        EXPECT_FALSE(answer(hidden, view).GetBool("result", true)) << "hidden once, shown once";
        hide.RemoveName("data");
        EXPECT_EQ(B_BAD_VALUE, answer(hide, view).GetInt32("error", B_OK));

        BMessage count(B_COUNT_PROPERTIES);
        count.AddSpecifier("View");
        EXPECT_EQ(2, answer(count, view).GetInt32("result", -1));
        BMessage first(B_SET_PROPERTY), last(B_GET_PROPERTY), none(B_GET_PROPERTY);
        first.AddSpecifier("Frame");
        first.AddSpecifier("View", static_cast<int32>(0));
        first.AddRect("data", BRect(9, 9, 10, 10));
        EXPECT_EQ(B_OK, answer(first, view).GetInt32("error", -1));
        last.AddSpecifier("Frame");
        last.AddSpecifier("View", "last");
        EXPECT_EQ(BRect(1, 2, 3, 4), answer(last, view).GetRect("result", BRect()));
        none.AddSpecifier("Frame");
        none.AddSpecifier("View", static_cast<int32>(2));
        EXPECT_EQ(B_BAD_INDEX, answer(none, view).GetInt32("error", B_OK));
        BMessage suites(B_GET_SUPPORTED_SUITES);
        EXPECT_TRUE(answer(suites, view).HasData("messages", B_PROPERTY_INFO_TYPE));
    });
}

TEST(ApplicationCursor, HidesAndTakesEveryKindOfCursor)
{
    BApplication app(kSignature);
    EXPECT_FALSE(app.IsCursorHidden());
    app.HideCursor();
    app.HideCursor();
    EXPECT_TRUE(app.IsCursorHidden());
    app.ShowCursor();
    EXPECT_FALSE(app.IsCursorHidden()) << "hiding does not count";
    app.ObscureCursor();
    EXPECT_FALSE(app.IsCursorHidden());
    app.SetCursor(B_HAND_CURSOR);
    app.SetCursor(B_CURSOR_I_BEAM);
    const BCursor own(B_CURSOR_ID_GRAB);
    app.SetCursor(&own);
    const uint8 nonsense[68] = {1, 2, 3};
    app.SetCursor(nonsense);
    app.SetCursor(static_cast<const void*>(nullptr));
}

TEST(ApplicationArchive, BringsItsSignatureBack)
{
    BMessage archive;
    {
        BApplication app(kSignature);
        ASSERT_EQ(B_OK, app.Archive(&archive));
        EXPECT_STREQ(kSignature, archive.GetString("mime_sig", "?"));
    }
    {
        std::unique_ptr<BArchivable> made(BApplication::Instantiate(&archive));
        auto* app = dynamic_cast<BApplication*>(made.get());
        ASSERT_NE(nullptr, app);
        EXPECT_EQ(B_OK, app->InitCheck());
        EXPECT_STREQ(kSignature, app->Signature());
    }
    BMessage other;
    other.AddString("class", "BView");
    EXPECT_EQ(nullptr, BApplication::Instantiate(&other));
}
