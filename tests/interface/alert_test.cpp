// Alerts: what they show, and how they are answered.

#include <Alert.h>
#include <Button.h>
#include <Invoker.h>
#include <Screen.h>
#include <TextView.h>

#include <atomic>
#include <thread>

#include "window_harness.h"

using namespace window_test;

namespace {

// The middle of a button on the screen, once the alert is there.
BPoint middle_of(BAlert* alert, int32 button)
{
    alert->Lock();
    BRect frame = alert->ButtonAt(button)->Frame();
    alert->ConvertToScreen(&frame);
    alert->Unlock();
    return BPoint(frame.left + frame.Width() / 2, frame.top + frame.Height() / 2);
}

void wait_until_active(BWindow* window)
{
    while (!window->IsActive())
        snooze(1000);
}

class AlertTest : public testing::Test {
protected:
    // Makes an alert and asks on another thread, has the user act, and tells the answer.
    static int32 Ask(const std::function<BAlert*()>& make, const std::function<void(BAlert*)>& user)
    {
        int32 which = -2;
        std::atomic<BAlert*> alert{nullptr};
        std::thread program([&] {
            BAlert* made = make();
            alert = made;
            which = made->Go();
        });
        while (alert == nullptr)
            snooze(1000);
        wait_until_active(alert);
        user(alert);
        program.join();
        return which;
    }
    static BAlert* New(const char* one, const char* two = nullptr, const char* three = nullptr,
                       button_width width = B_WIDTH_AS_USUAL,
                       button_spacing spacing = B_EVEN_SPACING)
    {
        return new BAlert("title", "Do you want to?", one, two, three, width, spacing);
    }
    // Deletes one that was never shown.
    static void Drop(BAlert* alert)
    {
        alert->Lock();
        alert->Quit();
    }
};

float width_of(BAlert* alert, int32 button) { return alert->ButtonAt(button)->Bounds().Width(); }

float gap_before(BAlert* alert, int32 button)
{
    return alert->ButtonAt(button)->Frame().left - alert->ButtonAt(button - 1)->Frame().right;
}

}  // namespace

TEST_F(AlertTest, ClickAnswersWithTheButton)
{
    for (int32 button : {0, 1, 2}) {
        const auto click = [=](BAlert* alert) {
            const BPoint where = middle_of(alert, button);
            inject_pointer(where.x, where.y);
            inject_button(1, true);
            inject_button(1, false);
        };
        EXPECT_EQ(Ask([] { return New("one", "two", "three"); }, click), button);
    }
}

TEST_F(AlertTest, EnterPressesTheLastButton)
{
    EXPECT_EQ(Ask([] { return New("no", "perhaps", "yes"); },
                  [](BAlert*) {
                      inject_key(kKeyEnter, true);
                      inject_key(kKeyEnter, false);
                  }),
              2);
}

TEST_F(AlertTest, ShortcutPressesItsButton)
{
    const auto make = [] {
        BAlert* alert = New("cancel", "no", "yes");
        alert->SetShortcut(0, B_ESCAPE);
        alert->SetShortcut(1, 'N');
        EXPECT_EQ(alert->Shortcut(1), 'N');
        EXPECT_EQ(alert->Shortcut(2), 0);
        for (int32 none : {-1, 3, INT32_MAX}) {
            alert->SetShortcut(none, 'x');
            EXPECT_EQ(alert->Shortcut(none), 0);
        }
        return alert;
    };
    EXPECT_EQ(Ask(make, [](BAlert*) { inject_text("xn"); }), 1);
    EXPECT_EQ(Ask(make,
                  [](BAlert*) {
                      inject_key(kKeyEscape, true);
                      inject_key(kKeyEscape, false);
                  }),
              0);
}

TEST_F(AlertTest, ClosedOtherwiseItHasNoAnswer)
{
    EXPECT_EQ(
        Ask([] { return New("one"); }, [](BAlert* alert) { alert->PostMessage(B_QUIT_REQUESTED); }),
        -1);
}

TEST_F(AlertTest, WithoutAButtonItHasOne)
{
    const auto make = [] {
        auto* alert = new BAlert("title", nullptr, nullptr);
        EXPECT_EQ(alert->CountButtons(), 0);
        EXPECT_EQ(alert->ButtonAt(0), nullptr);
        return alert;
    };
    EXPECT_EQ(Ask(make, [](BAlert*) { inject_text("\n"); }), 0);
}

TEST_F(AlertTest, InvokerIsToldTheAnswer)
{
    Log log;
    auto* window = new TestWindow(log, BRect(10, 10, 50, 50));
    window->Show();
    BMessage model('answ');
    model.AddInt32("which", 77);
    BInvoker invoker(new BMessage(model), window);
    BAlert* alert = New("one", "two");
    EXPECT_EQ(alert->Go(&invoker), B_OK);
    wait_until_active(alert);
    inject_text("\n");
    ASSERT_TRUE(log.Wait("message answ"));
    const BMessage answer = log.Message("message answ");
    EXPECT_EQ(answer.FindInt32("which"), 1);
    int32 second;
    EXPECT_NE(answer.FindInt32("which", 1, &second), B_OK);
    window->Lock();
    window->Quit();
}

TEST_F(AlertTest, WindowThatWaitsGoesOnDrawing)
{
    Log log;
    auto* window = new TestWindow(log, BRect(10, 10, 109, 109));
    auto* view = new TestView(log, BRect(0, 0, 99, 99), "view");
    window->AddChild(view);
    std::atomic<BAlert*> alert{nullptr};
    int32 which = -2;
    window->onMessage = [&](BMessage* message) {
        if (message->what == 'ask ') {
            view->Invalidate();
            alert = New("one");
            which = alert.load()->Go();
        }
    };
    window->Show();
    ASSERT_TRUE(log.Wait("view draw"));
    log.Clear();
    window->PostMessage('ask ');
    ASSERT_TRUE(log.Wait("view draw"));
    wait_until_active(alert);
    inject_text("\n");
    window->Lock();  // once it was answered
    window->Quit();
    EXPECT_EQ(which, 0);
}

TEST_F(AlertTest, WidthsOfButtons)
{
    const char* const kLong = "a label that is far longer than others";
    BAlert* alert = New("a", kLong, "b");
    EXPECT_EQ(width_of(alert, 0), width_of(alert, 2));
    EXPECT_GT(width_of(alert, 1), width_of(alert, 0));
    const float usual = width_of(alert, 0);
    alert->SetButtonWidth(B_WIDTH_FROM_LABEL);
    EXPECT_LT(width_of(alert, 0), usual);
    alert->SetButtonWidth(B_WIDTH_FROM_WIDEST);
    EXPECT_EQ(width_of(alert, 0), width_of(alert, 1));
    EXPECT_EQ(width_of(alert, 2), width_of(alert, 1));
    Drop(alert);
}

TEST_F(AlertTest, FirstOfThreeStandsApart)
{
    BAlert* alert = New("a", "b", "c", B_WIDTH_AS_USUAL, B_OFFSET_SPACING);
    EXPECT_GT(gap_before(alert, 1), 2 * gap_before(alert, 2));
    alert->SetButtonSpacing(B_EVEN_SPACING);
    EXPECT_EQ(gap_before(alert, 1), gap_before(alert, 2));
    Drop(alert);
    alert = New("a", "b", nullptr, B_WIDTH_AS_USUAL, B_OFFSET_SPACING);
    EXPECT_LT(gap_before(alert, 1), 20);
    Drop(alert);
}

TEST_F(AlertTest, EverythingHasRoom)
{
    const std::string words(20000, 'w');
    const std::string lines(200, '\n');
    const char* const kTexts[] = {"", "short", words.c_str(), lines.c_str(), nullptr};
    for (const char* text : kTexts) {
        auto* alert = new BAlert("title", text, "one", "two", "three");
        alert->AddButton("four", '4');
        EXPECT_EQ(alert->Shortcut(3), '4');
        const BRect bounds = alert->Bounds();
        BTextView* view = alert->TextView();
        EXPECT_STREQ(view->Text(), text != nullptr ? text : "");
        EXPECT_TRUE(bounds.Contains(view->Frame()));
        for (int32 i = 0; i < 4; i++) {
            EXPECT_TRUE(bounds.Contains(alert->ButtonAt(i)->Frame())) << i;
            EXPECT_GT(alert->ButtonAt(i)->Frame().top, view->Frame().bottom);
        }
        const BRect screen = BScreen().Frame();
        EXPECT_GE(alert->Frame().left, screen.left);
        EXPECT_GE(alert->Frame().top, screen.top);
        Drop(alert);
    }
}

TEST_F(AlertTest, TypeMakesRoomForItsSign)
{
    auto* alert = new BAlert("", "text", "one", nullptr, nullptr, B_WIDTH_AS_USUAL, B_EMPTY_ALERT);
    const float left = alert->TextView()->Frame().left;
    for (alert_type type : {B_INFO_ALERT, B_IDEA_ALERT, B_WARNING_ALERT, B_STOP_ALERT}) {
        alert->SetType(type);
        EXPECT_EQ(alert->Type(), type);
        EXPECT_GT(alert->TextView()->Frame().left, left + 32);
    }
    alert->SetType(static_cast<alert_type>(99));
    EXPECT_EQ(alert->TextView()->Frame().left, left);
    Drop(alert);
}

TEST_F(AlertTest, ArchiveKeepsAllOfIt)
{
    auto* alert = new BAlert("title", "text", "one", "two", nullptr, B_WIDTH_FROM_LABEL,
                             B_OFFSET_SPACING, B_STOP_ALERT);
    alert->SetShortcut(1, 'x');
    BMessage archive;
    ASSERT_EQ(alert->Archive(&archive), B_OK);
    Drop(alert);
    auto* copy = dynamic_cast<BAlert*>(BAlert::Instantiate(&archive));
    ASSERT_NE(copy, nullptr);
    EXPECT_STREQ(copy->Title(), "title");
    EXPECT_STREQ(copy->TextView()->Text(), "text");
    EXPECT_EQ(copy->Type(), B_STOP_ALERT);
    ASSERT_EQ(copy->CountButtons(), 2);
    EXPECT_STREQ(copy->ButtonAt(1)->Label(), "two");
    EXPECT_EQ(copy->Shortcut(1), 'x');
    Drop(copy);
    BMessage other('none');
    EXPECT_EQ(BAlert::Instantiate(&other), nullptr);
}
