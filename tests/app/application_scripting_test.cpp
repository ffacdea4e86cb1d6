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
        // The title of that window, asked by way of the application.
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
