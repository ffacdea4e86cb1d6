// Which view the pointer's messages reach, in which order, and what they hold.

#include <MessageFilter.h>
#include <MessageQueue.h>

#include "support/click_interval.h"
#include "window_harness.h"

using namespace window_test;

namespace {

class WindowPointer : public WindowTest {
protected:
    // Two views side by side, with room around: a at (10, 10), b at (60, 10), each 40 x 40.
    void OpenPair()
    {
        Make();
        a = Add(BRect(10, 10, 49, 49), "a");
        b = Add(BRect(60, 10, 99, 49), "b");
        Start();
    }
    std::string PointerLines()
    {
        Settle();
        return log.Lines({"a ", "b "});
    }

    TestView* a = nullptr;
    TestView* b = nullptr;
};

struct FieldRow {
    const char* name;
    type_code type;
};

void expect_fields(const BMessage& message, const std::vector<FieldRow>& rows)
{
    EXPECT_EQ(message.CountNames(B_ANY_TYPE), int32(rows.size()));
    for (const FieldRow& row : rows) {
        type_code type = 0;
        EXPECT_EQ(message.GetInfo(row.name, &type), B_OK) << row.name;
        EXPECT_EQ(type, row.type) << row.name;
    }
}

}  // namespace

TEST_F(WindowPointer, ButtonMessagesHoldPlaceAndButtons)
{
    OpenPair();
    inject_pointer(115, 117);
    inject_key(kKeyShift, true);
    const bigtime_t before = system_time();
    inject_button(2, true);
    inject_button(1, true);
    inject_button(2, false);
    inject_button(1, false);
    inject_key(kKeyShift, false);
    EXPECT_EQ(PointerLines(), "a entered 5,7; a down 5,7; a down 5,7; a up 5,7; a up 5,7");

    const BMessage down = log.Message("a down");
    EXPECT_EQ(down.what, uint32(B_MOUSE_DOWN));
    expect_fields(down, {{"when", B_INT64_TYPE},
                         {"where", B_POINT_TYPE},
                         {"screen_where", B_POINT_TYPE},
                         {"buttons", B_INT32_TYPE},
                         {"modifiers", B_INT32_TYPE},
                         {"clicks", B_INT32_TYPE},
                         {"be:view_where", B_POINT_TYPE}});
    EXPECT_EQ(down.FindInt32("buttons"), 3);  // all that are down after the press
    EXPECT_EQ(down.FindInt32("clicks"), 1);
    EXPECT_EQ(down.FindInt32("modifiers") & (B_SHIFT_KEY | B_CONTROL_KEY), B_SHIFT_KEY);
    EXPECT_EQ(down.FindPoint("where"), BPoint(5, 7));
    EXPECT_EQ(down.FindPoint("screen_where"), BPoint(115, 117));
    EXPECT_GE(down.FindInt64("when"), before);
    EXPECT_LE(down.FindInt64("when"), system_time());

    const BMessage up = log.Message("a up");
    EXPECT_EQ(up.what, uint32(B_MOUSE_UP));
    EXPECT_EQ(up.FindInt32("buttons"), 0);  // what is still held
    EXPECT_FALSE(up.HasInt32("clicks"));
}

TEST_F(WindowPointer, MovesKeepThePlaceInTheWindow)
{
    OpenPair();
    inject_pointer(175, 130);
    EXPECT_EQ(PointerLines(), "b entered 15,20");
    const BMessage move = log.Message("b entered");
    EXPECT_EQ(move.what, uint32(B_MOUSE_MOVED));
    EXPECT_EQ(move.FindPoint("where"), BPoint(75, 30));
    EXPECT_EQ(move.FindPoint("be:view_where"), BPoint(15, 20));
    EXPECT_EQ(move.FindInt32("be:transit"), B_ENTERED_VIEW);
    EXPECT_EQ(move.FindInt32("buttons"), 0);
    EXPECT_FALSE(move.HasMessage("be:drag_message"));
}

TEST_F(WindowPointer, LeavingComesBeforeEntering)
{
    OpenPair();
    const BPoint places[] = {{115, 115}, {120, 115}, {165, 115}, {155, 190}};
    for (BPoint place : places) {
        inject_pointer(place.x, place.y);
        Settle();
    }
    inject_pointer(165, 120);
    Settle();
    inject_pointer(600, 600);  // out of the window
    EXPECT_EQ(PointerLines(),
              "a entered 5,5; a inside 10,5; a exited 55,5; b entered 5,5; b exited -5,80; "
              "b entered 5,10; b exited 440,490");
}

TEST_F(WindowPointer, ClicksStartAnewAtAnotherView)
{
    const ClickInterval slow;
    OpenPair();
    Click(148, 115);
    Click(148, 115);
    Settle();
    EXPECT_EQ(log.Message("a down").FindInt32("clicks"), 2);
    // Near enough for the screen, but another view.
    window->Lock();
    b->MoveTo(50, 10);
    window->Unlock();
    Click(150, 115);
    Settle();
    EXPECT_EQ(log.Message("b down").FindInt32("clicks"), 1);
    Click(150, 115);
    Settle();
    EXPECT_EQ(log.Message("b down").FindInt32("clicks"), 2);
    Click(150, 115, 2);
    Settle();
    EXPECT_EQ(log.Message("b down").FindInt32("clicks"), 1);
}

TEST_F(WindowPointer, MouseMaskHoldsThePointerUntilTheLastButtonIsUp)
{
    OpenPair();
    a->onDown = [&] { EXPECT_EQ(a->SetMouseEventMask(B_POINTER_EVENTS), B_OK); };
    inject_pointer(115, 115);
    inject_button(1, true);
    Settle();
    inject_pointer(165, 115);
    Settle();
    inject_pointer(170, 115);
    Settle();
    inject_button(2, true);
    inject_button(1, false);
    Settle();
    inject_pointer(116, 115);
    Settle();
    inject_pointer(500, 115);
    Settle();
    inject_button(2, false);
    Settle();
    inject_pointer(165, 115);
    EXPECT_EQ(PointerLines(),
              "a entered 5,5; a down 5,5; a exited 55,5; a outside 60,5; a down 60,5; a up 60,5; "
              "a entered 6,5; a exited 390,5; a up 390,5; b entered 5,5");
}

TEST_F(WindowPointer, ReleaseWithoutMaskGoesToTheViewBelow)
{
    OpenPair();
    inject_pointer(115, 115);
    inject_button(1, true);
    Settle();
    inject_pointer(165, 115);
    inject_button(1, false);
    EXPECT_EQ(PointerLines(), "a entered 5,5; a down 5,5; a exited 55,5; b entered 5,5; b up 5,5");
}

TEST_F(WindowPointer, ReleaseOverAnotherWindowGoesThere)
{
    OpenPair();
    Log other_log;
    auto* other = new TestWindow(other_log, BRect(400, 100, 499, 199));
    other->AddChild(new TestView(other_log, BRect(0, 0, 99, 99), "other"));
    other->Show();
    inject_pointer(115, 115);
    inject_button(1, true);
    Settle();
    inject_pointer(420, 130);
    inject_button(1, false);
    Settle();
    Settle(other);
    EXPECT_EQ(log.Count("a up"), 0);
    EXPECT_EQ(other_log.Count("other up 20,30"), 1) << other_log.Lines();
    Close(other);
}

TEST_F(WindowPointer, MouseMaskIsRefusedOutsideOfAPress)
{
    OpenPair();
    status_t status = B_OK;
    a->onMoved = [&] { status = a->SetMouseEventMask(B_POINTER_EVENTS); };
    inject_pointer(115, 115);
    Settle();
    EXPECT_NE(status, B_OK);
    a->onMoved = nullptr;
    inject_pointer(165, 115);
    EXPECT_EQ(PointerLines(), "a entered 5,5; a exited 55,5; b entered 5,5");
}

TEST_F(WindowPointer, ListenerGetsWhatIsMeantForOthers)
{
    OpenPair();
    window->Lock();
    a->SetEventMask(B_POINTER_EVENTS | B_KEYBOARD_EVENTS);
    b->MakeFocus();
    window->Unlock();
    Click(165, 120);
    Press(kKeyA);
    EXPECT_EQ(PointerLines(),
              "b entered 5,10; a outside 55,10; b down 5,10; a down 55,10; b up 5,10; a up 55,10; "
              "b key a 1; a key a 1; b keyup a 1; a keyup a 1");
    log.Clear();
    window->Lock();
    a->SetEventMask(0);
    window->Unlock();
    Click(166, 120);
    EXPECT_EQ(PointerLines(), "b inside 6,10; b down 6,10; b up 6,10");
}

TEST_F(WindowPointer, WaitingMovesBecomeTheNewest)
{
    OpenPair();
    WhileBusy([] {
        for (int i = 0; i < 1000; i++)
            inject_pointer(float(110 + i % 30), 115);
        inject_pointer(117, 118);
    });
    EXPECT_EQ(PointerLines(), "a entered 7,8");
    EXPECT_EQ(log.Message("a entered").FindPoint("screen_where"), BPoint(117, 118));
}

TEST_F(WindowPointer, MovesStayBetweenTheirPresses)
{
    OpenPair();
    WhileBusy([] {
        inject_pointer(111, 111);
        inject_pointer(112, 112);
        inject_button(1, true);
        inject_pointer(113, 113);
        inject_pointer(114, 114);
        inject_button(1, false);
        inject_pointer(115, 115);
    });
    EXPECT_EQ(PointerLines(), "a entered 2,2; a down 2,2; a inside 4,4; a up 4,4; a inside 5,5");
}

TEST_F(WindowPointer, FullHistoryGetsEveryMove)
{
    OpenPair();
    window->Lock();
    a->SetEventMask(B_POINTER_EVENTS, B_FULL_POINTER_HISTORY);
    window->Unlock();
    WhileBusy([] {
        for (int i = 0; i < 50; i++)
            inject_pointer(float(111 + i % 2), 115);
    });
    Settle();
    EXPECT_EQ(log.Count("a entered") + log.Count("a inside"), 50);
    // Others do not have to work them off.
    log.Clear();
    WhileBusy([] {
        for (int i = 0; i < 50; i++)
            inject_pointer(float(165 + i % 2), 115);
    });
    Settle();
    EXPECT_EQ(log.Count("b entered") + log.Count("b inside"), 1);
}

TEST_F(WindowPointer, HookHasTheMessageThatWaited)
{
    OpenPair();
    const BMessage* waiting = nullptr;
    const BMessage* arrived = nullptr;
    a->onDown = [&] { arrived = window->CurrentMessage(); };
    WhileBusy([&] {
        inject_pointer(115, 115);
        inject_button(1, true);
        waiting = window->MessageQueue()->FindMessage(uint32(B_MOUSE_DOWN), 0);
    });
    Settle();
    EXPECT_NE(waiting, nullptr);
    EXPECT_EQ(arrived, waiting);
    inject_button(1, false);
}

TEST_F(WindowPointer, EachHookMayKeepItsMessage)
{
    OpenPair();
    window->Lock();
    b->SetEventMask(B_POINTER_EVENTS);
    window->Unlock();
    std::unique_ptr<BMessage> own, listened;
    a->onDown = [&] { own.reset(window->DetachCurrentMessage()); };
    b->onDown = [&] { listened.reset(window->DetachCurrentMessage()); };
    Click(115, 115);
    EXPECT_EQ(PointerLines(),
              "a entered 5,5; b outside -45,5; a down 5,5; b down -45,5; a up 5,5; b up -45,5");
    ASSERT_NE(own, nullptr);
    ASSERT_NE(listened, nullptr);
    EXPECT_EQ(own->FindPoint("where"), BPoint(5, 5));
    EXPECT_EQ(listened->FindPoint("where"), BPoint(-45, 5));
    EXPECT_EQ(listened->FindInt32("clicks"), 1);
}

TEST_F(WindowPointer, ReleaseTakenByGetMouseNeverArrives)
{
    OpenPair();
    a->onDown = [&] {
        BPoint where;
        uint32 buttons = 1;
        a->SetMouseEventMask(B_POINTER_EVENTS);
        while (buttons != 0)
            a->GetMouse(&where, &buttons, true);
        EXPECT_EQ(where, BPoint(9, 9));
    };
    WhileBusy([] {
        inject_pointer(115, 115);
        inject_button(1, true);
        inject_pointer(119, 119);
        inject_button(1, false);
    });
    Settle();
    inject_pointer(165, 115);  // and its mask ended with it
    EXPECT_EQ(PointerLines(), "a entered 5,5; a down 5,5; a exited 55,5; b entered 5,5");
}

TEST_F(WindowPointer, WheelGoesToTheViewBelowThePointer)
{
    OpenPair();
    inject_pointer(165, 115);
    inject_wheel(0, 1);
    Settle();
    const BMessage wheel = log.Message("b message");
    EXPECT_EQ(wheel.what, uint32(B_MOUSE_WHEEL_CHANGED));
    float dx = -1, dy = -1;
    EXPECT_EQ(wheel.FindFloat("be:wheel_delta_x", &dx), B_OK);
    EXPECT_EQ(wheel.FindFloat("be:wheel_delta_y", &dy), B_OK);
    EXPECT_EQ(dx, 0);
    EXPECT_EQ(dy, 1);
}

TEST_F(WindowPointer, ViewRemovedByItsHookGetsNothingMore)
{
    OpenPair();
    a->onMoved = [&] {
        window->RemoveChild(b);
        window->RemoveChild(a);
    };
    inject_pointer(115, 115);
    Settle();
    inject_pointer(165, 115);
    inject_button(1, true);
    inject_button(1, false);
    EXPECT_EQ(PointerLines(), "a entered 5,5; b detached; a detached");
    EXPECT_EQ(window->LastMouseMovedView(), nullptr);
    delete a;
    delete b;
}

namespace {

// Writes down what it sees; may skip or send elsewhere.
class LogFilter : public BMessageFilter {
public:
    LogFilter(Log& log, const char* name, uint32 what)
        : BMessageFilter(B_ANY_DELIVERY, B_ANY_SOURCE, what), fLog(log), fName(name)
    {
    }
    filter_result Filter(BMessage* message, BHandler** target) override
    {
        fLog.Add(message, "%s sees %s", fName.c_str(), (*target)->Name());
        if (sendTo != nullptr)
            *target = sendTo;
        return skips ? B_SKIP_MESSAGE : B_DISPATCH_MESSAGE;
    }
    BHandler* sendTo = nullptr;
    bool skips = false;

private:
    Log& fLog;
    std::string fName;
};

}  // namespace

TEST_F(WindowPointer, CommonFiltersRunFirstAndThenTheTargets)
{
    OpenPair();
    auto* common = new LogFilter(log, "common", B_MOUSE_DOWN);
    auto* of_a = new LogFilter(log, "filter a", B_MOUSE_DOWN);
    auto* of_b = new LogFilter(log, "filter b", B_MOUSE_DOWN);
    auto* of_window = new LogFilter(log, "filter window", B_MOUSE_DOWN);
    window->Lock();
    window->AddCommonFilter(common);
    window->AddFilter(of_window);
    a->AddFilter(of_a);
    b->AddFilter(of_b);
    window->Unlock();
    const std::vector<std::string> seen = {"common", "filter", "a down", "b down"};

    Click(115, 116);
    Settle();
    EXPECT_EQ(log.Lines(seen), "common sees a; filter a sees a; a down 5,6");
    EXPECT_EQ(log.Message("common").FindPoint("be:view_where"), BPoint(5, 6));
    EXPECT_FALSE(log.Message("common").IsSourceRemote());

    log.Clear();
    of_a->sendTo = b;
    Click(115, 116);
    Settle();
    EXPECT_EQ(log.Lines(seen), "common sees a; filter a sees a; filter b sees b; b down 5,6");

    log.Clear();
    common->skips = true;
    Click(115, 116);
    Settle();
    EXPECT_EQ(log.Lines(seen), "common sees a");
}
