// What the application does with windows: it counts, asks and closes them.

#include <gtest/gtest.h>

#include <Application.h>
#include <MenuItem.h>
#include <Message.h>
#include <PopUpMenu.h>
#include <Window.h>

#include <atomic>

#include "app/Mailbox.h"

namespace {

class TestWindow : public BWindow {
public:
    TestWindow(std::atomic<int>& gone, std::atomic<bool>& may_quit)
        : BWindow(BRect(50, 50, 149, 149), "test", B_TITLED_WINDOW, 0),
          fGone(gone),
          fMayQuit(may_quit)
    {
    }
    ~TestWindow() override { fGone++; }
    bool QuitRequested() override { return fMayQuit; }

private:
    std::atomic<int>& fGone;
    std::atomic<bool>& fMayQuit;
};

}  // namespace

TEST(Application, WindowsAreAskedAndClosed)
{
    BApplication app("application/x-vnd.plinth-test");
    std::atomic<int> gone{0};
    std::atomic<bool> may_quit{false}, never_shown_may{true};
    auto* first = new TestWindow(gone, may_quit);
    first->Show();
    auto* hidden = new TestWindow(gone, never_shown_may);
    EXPECT_EQ(2, app.CountWindows());
    EXPECT_EQ(first, app.WindowAt(0));
    EXPECT_EQ(hidden, app.WindowAt(1));
    EXPECT_EQ(nullptr, app.WindowAt(2));
    Task ask([&] {
        BMessage reply;
        EXPECT_EQ(B_OK, be_app_messenger.SendMessage(B_QUIT_REQUESTED, &reply));
        EXPECT_FALSE(reply.FindBool("result"));
        EXPECT_EQ(0, gone);
        may_quit = true;
        be_app_messenger.SendMessage(B_QUIT_REQUESTED);
    });
    app.Run();
    ask.Join();
    EXPECT_EQ(2, gone);
    EXPECT_EQ(0, app.CountWindows());
}

// Nobody is there to choose from a menu that is open.
TEST(Application, QuittingClosesPopUpMenus)
{
    class MenuOpener : public BWindow {
    public:
        explicit MenuOpener(BPopUpMenu* menu)
            : BWindow(BRect(50, 50, 149, 149), "opener", B_TITLED_WINDOW, 0), fMenu(menu)
        {
        }
        void MessageReceived(BMessage*) override { EXPECT_EQ(fMenu->Go(BPoint(60, 60)), nullptr); }

    private:
        BPopUpMenu* fMenu;
    };
    BApplication app("application/x-vnd.plinth-test");
    BPopUpMenu waited("waited"), by_itself("by itself");
    waited.AddItem(new BMenuItem("item", nullptr));
    by_itself.AddItem(new BMenuItem("item", nullptr));
    auto* opener = new MenuOpener(&waited);
    opener->Show();
    opener->PostMessage(1);
    by_itself.Go(BPoint(200, 60), false, true, true);
    Task ask([&] {
        while (app.CountWindows() < 3)
            snooze(100);
        be_app_messenger.SendMessage(B_QUIT_REQUESTED);
    });
    app.Run();
    EXPECT_EQ(waited.Window(), nullptr);
    EXPECT_EQ(waited.CountItems() + by_itself.CountItems(), 2);
}

// Windows open and close on two threads, and are closed by the application, all at once.
TEST(ApplicationWindowsStress, QuittingDoesNotHangWhileWindowsOpenAndClose)
{
    for (int round = 0; round < 10; round++) {
        BApplication app("application/x-vnd.plinth-test");
        std::atomic<int> gone{0}, made{0};
        std::atomic<bool> may_quit{true}, stop{false};
        auto churn = [&] {
            while (!stop) {
                auto* window = new TestWindow(gone, may_quit);
                made++;
                window->Show();
                if (window->Lock())
                    window->Quit();
            }
        };
        {
            Task one(churn), two(churn);
            Task ask([&] {
                while (gone < 10)
                    snooze(100);
                BMessage reply;
                be_app_messenger.SendMessage(B_QUIT_REQUESTED, &reply);
                stop = true;
            });
            app.Run();
        }
        EXPECT_EQ(made, gone);
    }
}
