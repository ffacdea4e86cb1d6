// Alerts: what they show, and how they are answered.

#include <Alert.h>
#include <Button.h>
#include <Invoker.h>
#include <Screen.h>
#include <ScrollBar.h>
#include <TextView.h>

#include <atomic>
#include <initializer_list>
#include <string>
#include <thread>
#include <vector>

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

// Of one made with a plain font of a size.
static void check_it_fits(float points, const char* text, std::initializer_list<const char*> labels,
                          button_width width)
{
    const BRect screen = BScreen().Frame();
    const BFont* const usual = be_plain_font;
    BFont font(usual);
    font.SetSize(points);
    be_plain_font = &font;
    auto* alert =
        new BAlert("title", text, nullptr, nullptr, nullptr, width, B_OFFSET_SPACING, B_STOP_ALERT);
    for (const char* label : labels)
        alert->AddButton(label);
    EXPECT_TRUE(screen.Contains(alert->Frame())) << points << " " << labels.size();
    std::vector<BRect> places = {alert->TextView()->Frame()};
    for (int32 i = 0; i < alert->CountButtons(); i++)
        places.push_back(alert->ButtonAt(i)->Frame());
    if (BView* bar = alert->FindView("_bar_"))
        places.push_back(bar->Frame());
    for (size_t i = 0; i < places.size(); i++) {
        EXPECT_TRUE(alert->Bounds().Contains(places[i])) << points << " " << i;
        for (size_t k = 0; k < i; k++)
            EXPECT_FALSE(places[i].Intersects(places[k])) << points << " " << i << " " << k;
    }
    alert->Lock();
    alert->Quit();
    be_plain_font = usual;
}

TEST_F(AlertTest, FitsTheScreenWhateverItSays)
{
    std::string many;
    for (int i = 0; i < 200; i++)
        many += "This is a sentence of a text that goes on and on. ";
    const std::string wide(400, 'w');
    for (const float points : {8.0f, 12.0f, 18.0f, 24.0f, 36.0f}) {
        for (const char* text : {"", "Short.", many.c_str(), wide.c_str()}) {
            for (const button_width width :
                 {B_WIDTH_AS_USUAL, B_WIDTH_FROM_WIDEST, B_WIDTH_FROM_LABEL}) {
                check_it_fits(points, text, {"OK"}, width);
                check_it_fits(points, text, {"Cancel", "Don't save", "Save"}, width);
                check_it_fits(points, text,
                              {"A label that needs very much room, more than the others",
                               "And yet another one of that kind, which is as long", "OK"},
                              width);
            }
        }
    }
}

TEST_F(AlertTest, TextThatIsHigherThanTheScreenScrolls)
{
    std::string lines = "first";
    for (int i = 0; i < 300; i++)
        lines += "\nline";
    auto* alert = new BAlert("title", lines.c_str(), "OK");
    BTextView* text = alert->TextView();
    auto* bar = dynamic_cast<BScrollBar*>(alert->FindView("_bar_"));
    ASSERT_NE(bar, nullptr);
    float low, high;
    bar->GetRange(&low, &high);
    EXPECT_EQ(low, 0);
    EXPECT_NEAR(high, text->TextHeight(0, 300) - text->Bounds().Height(), text->LineHeight(0));
    bar->SetValue(high);
    EXPECT_EQ(text->Bounds().top, high);
    alert->SetText("short");
    EXPECT_EQ(alert->FindView("_bar_"), nullptr);
    EXPECT_EQ(text->Bounds().top, 0);
    Drop(alert);
}

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
