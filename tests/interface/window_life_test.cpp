// Showing, hiding, activating, closing and ending; and what a window archives and answers.

#include <Application.h>
#include <MessageQueue.h>
#include <Messenger.h>

#include <atomic>
#include <thread>

#include "window_harness.h"

using namespace window_test;

namespace {

class WindowLife : public WindowTest {
protected:
    bool IsOnScreen()
    {
        // A press finds it, or what lies below.
        log.Clear();
        Click(105, 105);
        Settle();
        return log.Count("a down") == 1;
    }
    void OpenOne()
    {
        Make();
        Add(BRect(0, 0, 200, 150), "a");
        Start();
    }
};

}  // namespace

TEST_F(WindowLife, FirstShowStartsTheThread)
{
    Make();
    EXPECT_TRUE(window->IsLocked());  // by its maker
    EXPECT_TRUE(window->IsHidden());
    EXPECT_LE(window->Thread(), 0);
    window->Show();
    EXPECT_FALSE(window->IsLocked());
    EXPECT_GT(window->Thread(), 0);
    EXPECT_FALSE(window->IsHidden());
    Settle();
}

TEST_F(WindowLife, RunMayComeBeforeShow)
{
    Make();
    Add(BRect(0, 0, 200, 150), "a");
    window->Run();
    Settle();
    EXPECT_EQ(log.Count("a draw"), 0);  // nobody sees it
    window->Show();
    EXPECT_TRUE(log.Wait("a draw"));
}

TEST_F(WindowLife, HidingCounts)
{
    OpenOne();
    EXPECT_TRUE(IsOnScreen());
    window->Hide();
    window->Hide();
    EXPECT_TRUE(window->IsHidden());
    EXPECT_FALSE(IsOnScreen());
    window->Show();
    EXPECT_TRUE(window->IsHidden());
    window->Show();
    EXPECT_FALSE(window->IsHidden());
    EXPECT_TRUE(IsOnScreen());
    // Showing what is there asks for nothing more.
    window->Show();
    window->Hide();
    EXPECT_TRUE(window->IsHidden());
}

TEST_F(WindowLife, ActivationTellsWindowAndViews)
{
    OpenOne();
    Log other_log;
    auto* other = new TestWindow(other_log, BRect(400, 100, 499, 199));
    other->Show();
    Settle(other);
    Settle();
    EXPECT_TRUE(other->IsActive());
    EXPECT_FALSE(window->IsActive());
    EXPECT_EQ(log.Lines({"window active", "a active"}), "window active 0; a active 0");
    const BMessage message = log.Message("window active");
    EXPECT_EQ(message.what, uint32(B_WINDOW_ACTIVATED));
    EXPECT_FALSE(message.FindBool("active"));

    window->Activate();
    Settle();
    Settle(other);
    EXPECT_TRUE(window->IsActive());
    EXPECT_TRUE(window->IsFront());
    EXPECT_EQ(other_log.Lines({"window active"}), "window active 1; window active 0");

    // Back and forth before anybody looks: only the last word counts.
    log.Clear();
    WhileBusy([&] {
        other->Activate();
        window->Activate();
        other->Activate();
        window->Activate();
    });
    Settle();
    EXPECT_EQ(log.Lines({"window active"}), "");
    window->SendBehind(nullptr);
    Settle();
    Settle(other);
    EXPECT_TRUE(other->IsActive());
    EXPECT_NE(window->SendBehind(window), B_OK);
    Close(other);
    Settle();
    EXPECT_TRUE(window->IsActive());
}

TEST_F(WindowLife, ApplicationIsActiveWithItsWindows)
{
    BApplication application("application/x-vnd.test-window-life");
    // What the application was told last.
    const auto take = [&] {
        std::string text = "nothing";
        while (BMessage* message =
                   application.MessageQueue()->FindMessage(uint32(B_APP_ACTIVATED), 0)) {
            application.MessageQueue()->RemoveMessage(message);
            text = message->FindBool("active") ? "active" : "inactive";
            delete message;
        }
        return text;
    };
    OpenOne();
    EXPECT_EQ(take(), "active");
    auto* other = new TestWindow(log, BRect(400, 100, 499, 199));
    other->Show();
    Settle(other);
    Settle();
    Close(other);
    Settle();
    EXPECT_NE(take(), "inactive");
    Close(window);
    EXPECT_EQ(take(), "inactive");
}

TEST_F(WindowLife, MinimizeByProgramCallsItsHookOnce)
{
    OpenOne();
    window->Minimize(true);
    Settle();
    EXPECT_TRUE(window->IsMinimized());
    EXPECT_EQ(log.Lines({"minimize"}), "minimize 1");
    inject_window_minimize(150, 150, false);
    Settle();
    EXPECT_FALSE(window->IsMinimized());
    EXPECT_EQ(log.Lines({"minimize"}), "minimize 1; minimize 0");
    const BMessage message = log.Message("minimize 0");
    EXPECT_EQ(message.what, uint32(B_MINIMIZE));
    EXPECT_FALSE(message.FindBool("minimize"));
    EXPECT_TRUE(message.HasInt64("when"));
}

TEST_F(WindowLife, RefusedMinimizeComesBack)
{
    OpenOne();
    window->acceptsMinimize = false;
    inject_window_minimize(150, 150, true);
    Settle();
    EXPECT_EQ(log.Lines({"minimize"}), "minimize 1");
    EXPECT_FALSE(window->IsMinimized());
    EXPECT_TRUE(IsOnScreen());
}

TEST_F(WindowLife, ModalFloatingAndHiddenWindowsDoNotMinimize)
{
    OpenOne();
    for (window_type type : {B_MODAL_WINDOW, B_FLOATING_WINDOW}) {
        window->SetType(type);
        window->Minimize(true);
        EXPECT_FALSE(window->IsMinimized());
    }
    window->SetType(B_TITLED_WINDOW);
    window->Hide();
    window->Minimize(true);
    EXPECT_FALSE(window->IsMinimized());
}

TEST_F(WindowLife, TypeIsLookAndFeel)
{
    OpenOne();
    const struct {
        window_type type;
        window_look look;
        window_feel feel;
        bool modal, floating;
    } kRows[] = {
        {B_TITLED_WINDOW, B_TITLED_WINDOW_LOOK, B_NORMAL_WINDOW_FEEL, false, false},
        {B_DOCUMENT_WINDOW, B_DOCUMENT_WINDOW_LOOK, B_NORMAL_WINDOW_FEEL, false, false},
        {B_MODAL_WINDOW, B_MODAL_WINDOW_LOOK, B_MODAL_APP_WINDOW_FEEL, true, false},
        {B_FLOATING_WINDOW, B_FLOATING_WINDOW_LOOK, B_FLOATING_APP_WINDOW_FEEL, false, true},
        {B_BORDERED_WINDOW, B_BORDERED_WINDOW_LOOK, B_NORMAL_WINDOW_FEEL, false, false},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(window->SetType(row.type), B_OK);
        EXPECT_EQ(window->Look(), row.look);
        EXPECT_EQ(window->Feel(), row.feel);
        EXPECT_EQ(window->Type(), row.type);
        EXPECT_EQ(window->IsModal(), row.modal);
        EXPECT_EQ(window->IsFloating(), row.floating);
    }
    EXPECT_EQ(window->SetType(window_type(4711)), B_OK);
    EXPECT_EQ(window->Type(), B_TITLED_WINDOW);
    EXPECT_EQ(window->SetFeel(B_MODAL_ALL_WINDOW_FEEL), B_OK);
    EXPECT_EQ(window->Type(), B_UNTYPED_WINDOW);
    EXPECT_NE(window->SetLook(window_look(4711)), B_OK);
    EXPECT_NE(window->SetFeel(window_feel(-1)), B_OK);
    EXPECT_EQ(window->Look(), B_TITLED_WINDOW_LOOK);
    window->SetFeel(B_NORMAL_WINDOW_FEEL);
}

TEST_F(WindowLife, WorkspacesAreTold)
{
    OpenOne();
    EXPECT_EQ(window->Workspaces(), 1u);
    window->SetWorkspaces(3);
    Settle();
    EXPECT_EQ(log.Lines({"workspaces"}), "workspaces 1 3");
    activate_workspace(1);
    Settle();
    EXPECT_EQ(log.Lines({"workspace "}), "workspace 0 0; workspace 1 1");
    activate_workspace(0);
    Settle();
}

TEST_F(WindowLife, CloseButtonAsksAndEnds)
{
    OpenOne();
    int asked = 0;
    window->onQuitRequested = [&] { return ++asked == 2; };
    BMessenger messenger(window);
    inject_window_close(150, 150);
    Settle();
    EXPECT_TRUE(messenger.IsValid());
    inject_window_close(150, 150);
    ASSERT_TRUE(log.Wait("a detached"));
    EXPECT_EQ(log.Lines({"quit requested", "hide", "a detached", "deleted"}),
              "quit requested; quit requested; hide; deleted; a detached");
    // The looper goes a moment after the subclass.
    while (window->Lock())
        window->Unlock();
    EXPECT_FALSE(messenger.IsValid());
    EXPECT_NE(window->PostMessage('test'), B_OK);
    window = nullptr;
}

TEST_F(WindowLife, QuitFromAnotherThreadWaitsForTheEnd)
{
    OpenOne();
    ASSERT_TRUE(window->Lock());
    window->PostMessage('last');
    window->Quit();
    EXPECT_EQ(log.Lines({"hide", "message last", "deleted"}), "hide; message last; deleted");
    EXPECT_FALSE(window->Lock());
    window = nullptr;
}

TEST_F(WindowLife, QuitInAHookDoesNotComeBack)
{
    const auto quit_in = [&](const char* hook, const std::function<void()>& act) {
        OpenOne();
        auto* view = static_cast<TestView*>(window->FindView("a"));
        bool came_back = false;
        const auto quit = [&] {
            window->Quit();
            came_back = true;
        };
        view->onDown = view->onMoved = quit;
        window->onMessage = [&](BMessage*) { quit(); };
        act();
        EXPECT_TRUE(log.Wait("deleted")) << hook;
        while (window->Lock())
            window->Unlock();
        EXPECT_FALSE(came_back) << hook;
        window = nullptr;
    };
    quit_in("MouseMoved", [] { inject_pointer(110, 110); });
    quit_in("MouseDown", [&] {
        auto* view = static_cast<TestView*>(window->FindView("a"));
        view->onMoved = nullptr;
        inject_pointer(110, 110);
        inject_button(1, true);
    });
    inject_button(1, false);
    quit_in("MessageReceived", [&] { window->PostMessage('quit'); });
}

TEST_F(WindowLife, QuitRequestWithReplyIsAnswered)
{
    OpenOne();
    window->onQuitRequested = [] { return false; };
    BMessage reply;
    ASSERT_EQ(BMessenger(window).SendMessage(B_QUIT_REQUESTED, &reply), B_OK);
    EXPECT_EQ(reply.what, uint32(B_REPLY));
    EXPECT_FALSE(reply.FindBool("result"));
}

TEST_F(WindowLife, NeverShownWindowsGoWithoutAThread)
{
    Make();
    Add(BRect(0, 0, 10, 10), "a");
    window->Quit();
    EXPECT_EQ(log.Lines({"hide", "deleted"}), "deleted");
    window = nullptr;
    Make();
    delete window;
    EXPECT_FALSE(window->Lock());
    window = nullptr;
}

TEST_F(WindowLife, LastWindowMayEndTheApplication)
{
    BApplication application("application/x-vnd.test-window-life");
    Make(100, 100, B_QUIT_ON_WINDOW_CLOSE);
    Start();
    Close(window);
    EXPECT_NE(application.MessageQueue()->FindMessage(uint32(B_QUIT_REQUESTED), 0), nullptr);
}

TEST_F(WindowLife, ViewsComeAndGoAnywhere)
{
    OpenOne();
    window->Lock();
    auto* a = static_cast<TestView*>(window->FindView("a"));
    auto* inner = new TestView(log, BRect(10, 10, 50, 50), "inner");
    a->AddChild(inner);
    EXPECT_EQ(window->FindView("inner"), inner);
    EXPECT_EQ(window->FindView(BPoint(20, 20)), inner);
    EXPECT_EQ(window->FindView(BPoint(100, 100)), a);
    EXPECT_EQ(window->FindView(BPoint(-1, 0)), nullptr);
    EXPECT_EQ(window->FindView("nobody"), nullptr);
    EXPECT_EQ(window->FindView(static_cast<const char*>(nullptr)), nullptr);
    EXPECT_TRUE(window->RemoveChild(inner));  // not a direct child
    EXPECT_FALSE(window->RemoveChild(inner));
    EXPECT_EQ(inner->Window(), nullptr);
    window->AddChild(inner, a);
    EXPECT_EQ(window->ChildAt(0), inner);
    EXPECT_EQ(window->ChildAt(1), a);
    EXPECT_EQ(window->ChildAt(2), nullptr);
    EXPECT_EQ(window->CountChildren(), 2);
    EXPECT_EQ(inner->Parent(), nullptr);
    EXPECT_FALSE(window->RemoveChild(nullptr));
    window->Unlock();
}

TEST_F(WindowLife, ArchiveMakesTheSameWindow)
{
    Make(120, 90, B_NOT_CLOSABLE);
    window->SetTitle("archived");
    window->SetSizeLimits(10, 500, 20, 600);
    window->AddChild(new BView(BRect(1, 2, 30, 40), "kept", B_FOLLOW_NONE, 0));
    BMessage archive;
    ASSERT_EQ(window->Archive(&archive), B_OK);
    archive.ReplaceString("class", "BWindow");
    auto* copy = dynamic_cast<BWindow*>(BWindow::Instantiate(&archive));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->Frame(), BRect(100, 100, 220, 190));
    EXPECT_STREQ(copy->Title(), "archived");
    EXPECT_EQ(copy->Flags(), uint32(B_NOT_CLOSABLE));
    float low, high, low_height, high_height;
    copy->GetSizeLimits(&low, &high, &low_height, &high_height);
    EXPECT_EQ(high, 500);
    EXPECT_EQ(low_height, 20);
    ASSERT_NE(copy->FindView("kept"), nullptr);
    EXPECT_EQ(copy->FindView("kept")->Frame(), BRect(1, 2, 30, 40));
    copy->Quit();
    EXPECT_EQ(BWindow::Instantiate(nullptr), nullptr);
}

TEST_F(WindowLife, ScriptsReadAndSetProperties)
{
    OpenOne();
    BMessage set(B_SET_PROPERTY), reply;
    set.AddSpecifier("Title");
    set.AddString("data", "by script");
    BMessenger(window).SendMessage(&set, &reply);
    EXPECT_STREQ(window->Title(), "by script");
    BMessage get(B_GET_PROPERTY);
    get.AddSpecifier("Frame");
    BMessenger(window).SendMessage(&get, &reply);
    EXPECT_EQ(reply.FindRect("result"), window->Frame());
    BMessage wrong(B_SET_PROPERTY);
    wrong.AddSpecifier("Frame");
    wrong.AddString("data", "no frame");
    BMessenger(window).SendMessage(&wrong, &reply);
    EXPECT_NE(reply.FindInt32("error"), B_OK);
}

TEST_F(WindowLife, SubsetsAreForSubsetFeels)
{
    OpenOne();
    auto* other = new TestWindow(log, BRect(0, 0, 10, 10));
    EXPECT_NE(window->AddToSubset(other), B_OK);
    window->SetFeel(B_FLOATING_SUBSET_WINDOW_FEEL);
    EXPECT_EQ(window->AddToSubset(other), B_OK);
    EXPECT_EQ(window->RemoveFromSubset(other), B_OK);
    EXPECT_NE(window->RemoveFromSubset(other), B_OK);
    EXPECT_NE(window->AddToSubset(nullptr), B_OK);
    Close(other);
}
