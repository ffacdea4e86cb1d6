// Windows as a program and its user meet them: opening, finding, handlers, closing.

#include "support/click_interval.h"
#include "support/program.h"

#include "gadgets/gadget.h"

#include <gtest/gtest.h>

#include <Application.h>
#include <List.h>
#include <Message.h>
#include <Messenger.h>
#include <Screen.h>
#include <View.h>
#include <Window.h>

#include <climits>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace {

// Calls of handlers, as text, in order. Handlers are plain functions, so the log is global.
class CallLog {
public:
    void Add(const std::string& call)
    {
        std::lock_guard<std::mutex> lock(fMutex);
        fCalls.push_back(call);
    }
    bool Has(const std::string& call)
    {
        std::lock_guard<std::mutex> lock(fMutex);
        for (const std::string& seen : fCalls)
            if (seen == call)
                return true;
        return false;
    }
    std::string All()
    {
        std::lock_guard<std::mutex> lock(fMutex);
        std::string all;
        for (const std::string& call : fCalls)
            all += (all.empty() ? "" : ", ") + call;
        return all;
    }
    void Clear()
    {
        std::lock_guard<std::mutex> lock(fMutex);
        fCalls.clear();
    }

private:
    std::mutex fMutex;
    std::vector<std::string> fCalls;
};

CallLog sLog;

std::string words(std::initializer_list<int32_t> numbers)
{
    std::string text;
    for (int32_t number : numbers)
        text += std::string(" ") + std::to_string(number);
    return text;
}

template <int slot>
void log_none()
{
    sLog.Add(std::to_string(slot));
}
template <int slot>
void log_one(int32_t a)
{
    sLog.Add(std::to_string(slot) + words({a}));
}
template <int slot>
void log_two(int32_t a, int32_t b)
{
    sLog.Add(std::to_string(slot) + words({a, b}));
}
template <int slot>
void log_four(int32_t a, int32_t b, int32_t c, int32_t d)
{
    sLog.Add(std::to_string(slot) + words({a, b, c, d}));
}

BWindow* platform_window(int32_t index = 0) { return be_app->WindowAt(index); }

class Windows : public testing::Test {
protected:
    void SetUp() override { sLog.Clear(); }
};

std::atomic<int32_t> sCloseResult = 0;
int32_t on_close()
{
    sLog.Add("close");
    return sCloseResult;
}

}  // namespace

TEST_F(Windows, OpenOnesHaveRisingIdentsAndClosedOnesAreUnknown)
{
    const int32_t first = OpenWindow(10, 10, 100, 80);
    const int32_t second = OpenWindow(40, 40, 0, 0);
    EXPECT_GT(first, 0);
    EXPECT_GT(second, first);
    EXPECT_TRUE(is_window_ident(first) && is_window_ident(second));
    EXPECT_FALSE(is_window_ident(0) || is_window_ident(-first) || is_window_ident(second + 1));
    CloseWindow(first);
    EXPECT_TRUE(eventually([=] { return !is_window_ident(first); }));
    EXPECT_TRUE(is_window_ident(second));
    CloseWindow(first);
    CloseWindow(second);
    CloseWindow(0);
    CloseWindow(INT32_MIN);
    EXPECT_TRUE(eventually([=] { return !is_window_ident(second); }));
    FRectangle(second, 0, 0, 5, 5);
    EXPECT_EQ(GetTextWidth(second, "text"), 0);
}

TEST_F(Windows, ImpossibleSizesOpenNothing)
{
    const uint32_t before = GetUniqueID();
    EXPECT_EQ(OpenWindow(0, 0, -1, 10), 0);
    EXPECT_EQ(OpenWindow(0, 0, 10, INT32_MIN), 0);
    EXPECT_EQ(OpenWindow(INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX), 0);
    EXPECT_EQ(OpenWindow(INT32_MIN, INT32_MIN, INT32_MAX, 1), 0);
    EXPECT_GE(GetUniqueID(), before);
}

TEST_F(Windows, FrameIsWhatWasAskedAlsoLeftOfTheScreen)
{
    TestWindow window(-30, -20, 120, 90);
    BWindow* platform = platform_window();
    ASSERT_TRUE(platform->Lock());
    EXPECT_EQ(platform->Frame(), BRect(-30, -20, 90, 70));
    EXPECT_EQ(platform->Bounds(), BRect(0, 0, 120, 90));
    EXPECT_EQ(platform->Flags() & 0x81080u, 0x81080u);
    platform->Unlock();
}

TEST_F(Windows, ClicksReachSlot14WithPlaceButtonAndRun)
{
    const ClickInterval slow;
    TestWindow window;
    window.Handle(PLINTH_MOUSE_DOWN, log_four<14>);
    window.Click(17, 23);
    window.Click(17, 23);
    window.Click(17, 23);
    window.Click(17, 23, 4);
    window.Click(90, 70, 2);
    EXPECT_TRUE(eventually([] { return sLog.Has("14 90 70 2 1"); }));
    EXPECT_EQ(sLog.All(), "14 17 23 1 1, 14 17 23 1 2, 14 17 23 1 3, 14 17 23 4 1, 14 90 70 2 1");
}

TEST_F(Windows, TwoButtonsTogetherCallNothing)
{
    TestWindow window;
    window.Handle(PLINTH_MOUSE_DOWN, log_four<14>);
    window.Point(30, 30);
    inject_button(1, true);
    inject_button(2, true);
    inject_button(2, false);
    inject_button(1, false);
    window.Click(50, 60, 4);
    EXPECT_TRUE(eventually([] { return sLog.Has("14 50 60 4 1"); }));
    EXPECT_EQ(sLog.All(), "14 30 30 1 1, 14 50 60 4 1");
}

TEST_F(Windows, MovesReachSlot15)
{
    TestWindow window;
    window.Handle(PLINTH_MOUSE_MOVED, log_two<15>);
    window.Point(5, 6);
    EXPECT_TRUE(eventually([] { return sLog.Has("15 5 6"); }));
    window.Point(99, 3);
    EXPECT_TRUE(eventually([] { return sLog.Has("15 99 3"); }));
}

TEST_F(Windows, KeysReachSlot13WithModifiers)
{
    const struct {
        int32_t held;  // a modifier's key, 0 for none
        int32_t key;
        int32_t code;
        int32_t modifiers;  // that must be set
    } keys[] = {
        {0, 0x3c, 'a', 0},
        {0x4b, 0x3c, 'A', B_SHIFT_KEY},
        {0x5c, 0x40, 7, B_CONTROL_KEY},  // no shortcut of the window
        {0, 0x02, 202, 0},
        {0, 0x0d, 213, 0},
        {0, 0x57, B_UP_ARROW, 0},
        {0, 0x61, B_LEFT_ARROW, 0},
        {0, 0x1e, B_BACKSPACE, 0},
        {0, 0x47, B_ENTER, 0},
        {0, 0x26, B_TAB, 0},
        {0, 0x01, B_ESCAPE, 0},
        {0, 0x34, B_DELETE, 0},
    };
    static std::atomic<int64_t> sKey;
    TestWindow window;
    window.Handle(
        PLINTH_KEY, +[](int32_t code, int32_t modifiers) {
            sKey = static_cast<int64_t>(modifiers) << 32 | static_cast<uint32_t>(code);
        });
    window.Click(10, 10);
    for (const auto& row : keys) {
        sKey = -1;
        if (row.held != 0)
            inject_key(row.held, true);
        inject_key(row.key, true);
        inject_key(row.key, false);
        EXPECT_TRUE(eventually([] { return sKey != -1; })) << "key " << row.key;
        if (row.held != 0)
            inject_key(row.held, false);
        EXPECT_EQ(static_cast<int32_t>(sKey), row.code) << "key " << row.key;
        EXPECT_EQ((sKey >> 32) & row.modifiers, row.modifiers) << "key " << row.key;
    }
}

TEST_F(Windows, MultiByteCharactersCallNothing)
{
    TestWindow window;
    window.Handle(
        PLINTH_KEY, +[](int32_t code, int32_t) { sLog.Add(std::to_string(code)); });
    window.Click(10, 10);
    inject_text("\xc3\xa9x");
    EXPECT_TRUE(eventually([] { return sLog.Has("120"); }));
    EXPECT_EQ(sLog.All(), "120");
}

TEST_F(Windows, FrameChangesByTheUserReachTheirSlots)
{
    TestWindow window;
    window.Handle(PLINTH_MOVED, log_two<3>);
    window.Handle(PLINTH_RESIZED, log_two<8>);
    window.Handle(PLINTH_REDRAWN, log_one<7>);
    inject_window_move(window.X(20), window.Y(20), 140, 160);
    EXPECT_TRUE(eventually([] { return sLog.Has("3 140 160"); })) << sLog.All();
    inject_window_resize(170, 190, 260, 120);
    EXPECT_TRUE(eventually([] { return sLog.Has("8 260 120"); })) << sLog.All();
    EXPECT_TRUE(eventually([] { return sLog.Has("7 260"); })) << sLog.All();
}

TEST_F(Windows, MinimiseZoomHideAndShowReachTheirSlots)
{
    TestWindow window;
    window.Handle(PLINTH_MINIMIZED, log_one<2>);
    window.Handle(PLINTH_ZOOMED, log_none<4>);
    window.Handle(PLINTH_HIDDEN, log_none<5>);
    window.Handle(PLINTH_SHOWN, log_none<6>);
    inject_window_minimize(window.X(20), window.Y(20), true);
    EXPECT_TRUE(eventually([] { return sLog.Has("2 1"); }));
    inject_window_minimize(window.X(20), window.Y(20), false);
    EXPECT_TRUE(eventually([] { return sLog.Has("2 0"); }));
    inject_window_zoom(window.X(20), window.Y(20));
    EXPECT_TRUE(eventually([] { return sLog.Has("4"); }));
    BWindow* platform = platform_window();
    ASSERT_TRUE(platform->Lock());
    platform->Hide();
    EXPECT_TRUE(sLog.Has("5"));
    platform->Show();
    EXPECT_TRUE(sLog.Has("6"));
    platform->Unlock();
}

TEST_F(Windows, ActivationReachesSlots0And1)
{
    TestWindow left(20, 100, 150, 100);
    left.Handle(PLINTH_ACTIVATED, log_none<0>);
    left.Handle(PLINTH_DEACTIVATED, log_none<1>);
    TestWindow right(300, 100, 150, 100);
    // Changes that overtake each other in the queue are told as one or none, so the hand is slow.
    EXPECT_TRUE(eventually([&] {
        right.Click(5, 5);
        snooze(20'000);
        left.Click(5, 5);
        snooze(20'000);
        return sLog.Has("0") && sLog.Has("1");
    })) << sLog.All();
}

TEST_F(Windows, PlatformHooksPassTheirNumbers)
{
    TestWindow window;
    window.Handle(PLINTH_SCREEN_CHANGED, log_one<9>);
    window.Handle(PLINTH_WORKSPACE_ACTIVATED, log_two<10>);
    window.Handle(PLINTH_WORKSPACES_CHANGED, log_two<11>);
    BWindow* platform = platform_window();
    ASSERT_TRUE(platform->Lock());
    platform->ScreenChanged(BRect(0, 0, 799, 599), B_RGB16);
    platform->WorkspaceActivated(2, true);
    platform->WorkspacesChanged(1, 6);
    platform->Unlock();
    EXPECT_EQ(sLog.All(), "9 " + std::to_string(B_RGB16) + ", 10 2 1, 11 1 6");
}

TEST_F(Windows, OnlyTheLowByteOfACloseHandlerCounts)
{
    TestWindow window;
    window.Handle(PLINTH_CLOSE_REQUESTED, on_close);
    for (int32_t refusal : {0, 256, INT32_MIN}) {
        sLog.Clear();
        sCloseResult = refusal;
        inject_window_close(window.X(5), window.Y(5));
        EXPECT_TRUE(eventually([] { return sLog.Has("close"); }));
        EXPECT_TRUE(is_window_ident(window));
    }
    sCloseResult = 1;
    inject_window_close(window.X(5), window.Y(5));
    EXPECT_TRUE(eventually([&] { return !is_window_ident(window); }));
}

TEST_F(Windows, ClosingByIdentAsksNobody)
{
    TestWindow window;
    window.Handle(PLINTH_CLOSE_REQUESTED, on_close);
    sCloseResult = 0;
    CloseWindow(window);
    EXPECT_TRUE(eventually([&] { return !is_window_ident(window); }));
    EXPECT_EQ(sLog.All(), "");
}

TEST_F(Windows, AHandlerThatClosesItsOwnWindowEndsThere)
{
    static int32_t sWindow;
    TestWindow window;
    sWindow = window;
    window.Handle(
        PLINTH_MOUSE_DOWN, +[](int32_t, int32_t, int32_t, int32_t) {
            sLog.Add("before");
            CloseWindow(sWindow);
            sLog.Add("after");
        });
    window.Click(10, 10);
    EXPECT_TRUE(eventually([&] { return !is_window_ident(window); }));
    EXPECT_EQ(sLog.All(), "before");
}

TEST_F(Windows, AHandlerOfHidingMayCloseItsOwnWindow)
{
    static int32_t sWindow;
    TestWindow window;
    sWindow = window;
    window.Handle(
        PLINTH_HIDDEN, +[] {
            sLog.Add("hidden");
            CloseWindow(sWindow);
        });
    window.Handle(
        PLINTH_KEY, +[](int32_t, int32_t) { CloseWindow(sWindow); });
    window.Click(10, 10);
    inject_text("q");
    EXPECT_TRUE(eventually([&] { return !is_window_ident(window); }));
    TestWindow other;
    sWindow = other;
    other.Handle(
        PLINTH_HIDDEN, +[] { CloseWindow(sWindow); });
    CloseWindow(other);
    EXPECT_FALSE(is_window_ident(other));
    EXPECT_EQ(sLog.All(), "hidden");
}

TEST_F(Windows, AViewThatIsGoneGetsNoFocusAgain)
{
    static BView* sField;
    TestWindow window;
    BWindow* platform = platform_window();
    ASSERT_TRUE(platform->Lock());
    BView* top = platform->ChildAt(0);
    sField = new BView(BRect(0, 0, 9, 9), "field", B_FOLLOW_NONE, B_WILL_DRAW);
    top->AddChild(sField);
    sField->MakeFocus(true);
    platform->WindowActivated(false);
    platform->WindowActivated(true);
    EXPECT_EQ(platform->CurrentFocus(), sField);
    platform->WindowActivated(false);
    top->RemoveChild(sField);
    platform->WindowActivated(true);
    EXPECT_EQ(platform->CurrentFocus(), top);

    top->AddChild(sField);
    sField->MakeFocus(true);
    window.Handle(
        PLINTH_RESIZED, +[](int32_t, int32_t) {
            sField->RemoveSelf();
            delete sField;
        });
    platform->FrameResized(150, 100);
    EXPECT_EQ(platform->CurrentFocus(), nullptr);
    platform->Unlock();
}

// Windows in a ring, each of whose handlers draws into the next one's.
class DrawingRing {
public:
    static const int kMost = 3;

    explicit DrawingRing(int count)
    {
        sCount = count;
        sInside = 0;
        sDone = 0;
        for (int i = 0; i < count; i++) {
            fWindows.push_back(std::make_unique<TestWindow>(100 + 250 * i, 100, 199, 149));
            sIdents[i] = fWindows[i]->Ident();
        }
        fWindows[0]->Handle(PLINTH_MOUSE_DOWN, draw_into_next<0>);
        fWindows[1]->Handle(PLINTH_MOUSE_DOWN, draw_into_next<1>);
        if (count > 2)
            fWindows[2]->Handle(PLINTH_MOUSE_DOWN, draw_into_next<2>);
        for (const auto& window : fWindows)
            window->Click(5, 5);
    }

    static bool IsDone() { return sDone == sCount; }
    // What the handlers drew is there.
    static bool IsDrawn(int index)
    {
        return GetPixel(sIdents[index], 20, 20) != GetPixel(sIdents[index], 60, 60);
    }

private:
    template <int index>
    static void draw_into_next(int32_t, int32_t, int32_t, int32_t)
    {
        sInside++;
        while (sInside < sCount)
            snooze(100);
        const int32_t next = sIdents[(index + 1) % sCount];
        for (int i = 0; i < 200; i++) {
            FRectangle(next, 0, 0, 20, 20);
            FRectangle(sIdents[index], 30, 30, 10, 10);
        }
        sDone++;
    }

    static inline std::atomic<int> sCount, sInside, sDone;
    static inline int32_t sIdents[kMost];
    std::vector<std::unique_ptr<TestWindow>> fWindows;
};

TEST_F(Windows, HandlersThatDrawIntoOneAnothersWindowsAllGoOn)
{
    for (int count : {2, 3}) {
        const DrawingRing ring(count);
        ASSERT_TRUE(eventually(DrawingRing::IsDone)) << count;
        for (int i = 0; i < count; i++)
            EXPECT_TRUE(DrawingRing::IsDrawn(i)) << i << " of " << count;
    }
}

// Handlers that run with a window locked which is not their thread's: that of a call.
static int32_t sFacing[2];
static std::atomic<int> sShowing, sBothShown;

template <int index>
static void draw_into_the_other()
{
    sShowing++;
    while (sShowing < 2)
        snooze(100);
    for (int i = 0; i < 200; i++)
        FRectangle(sFacing[1 - index], 0, 0, 20, 20);
    sBothShown++;
}

static status_t hide_and_show(void* index)
{
    const int32_t window = sFacing[reinterpret_cast<intptr_t>(index)];
    HideWindow(window);
    ShowWindow(window);
    return B_OK;
}

template <int index>
static void hide_and_show_in_handler(int32_t, int32_t, int32_t, int32_t)
{
    hide_and_show(reinterpret_cast<void*>(index));
}

class ShownWindows : public Windows {
protected:
    void SetUp() override
    {
        sShowing = sBothShown = 0;
        sFacing[0] = fFirst;
        sFacing[1] = fSecond;
        fFirst.Handle(PLINTH_SHOWN, draw_into_the_other<0>);
        fSecond.Handle(PLINTH_SHOWN, draw_into_the_other<1>);
    }

    TestWindow fFirst{100, 100}, fSecond{400, 100};
};

TEST_F(ShownWindows, DrawIntoOneAnotherOnThreadsWithoutAWindow)
{
    for (intptr_t i = 0; i < 2; i++) {
        resume_thread(
            spawn_thread(hide_and_show, "shows", B_NORMAL_PRIORITY, reinterpret_cast<void*>(i)));
    }
    EXPECT_TRUE(eventually([] { return sBothShown == 2; }));
}

TEST_F(ShownWindows, DrawIntoOneAnotherOnThreadsOfOtherWindows)
{
    TestWindow third(100, 400), fourth(400, 400);
    third.Handle(PLINTH_MOUSE_DOWN, hide_and_show_in_handler<0>);
    fourth.Handle(PLINTH_MOUSE_DOWN, hide_and_show_in_handler<1>);
    third.Click(5, 5);
    fourth.Click(5, 5);
    EXPECT_TRUE(eventually([] { return sBothShown == 2; }));
}

TEST_F(Windows, HandlersThatCloseOneAnothersWindowsBothGoOn)
{
    static std::atomic<int> inside, done;
    static int32_t idents[2];
    inside = done = 0;
    const auto close_other = [](int index) {
        inside++;
        while (inside < 2)
            snooze(100);
        CloseWindow(idents[1 - index]);
        EXPECT_FALSE(is_window_ident(idents[1 - index]));
        done++;
    };
    static const auto close = close_other;
    TestWindow first(100, 100), second(400, 100);
    idents[0] = first;
    idents[1] = second;
    first.Handle(
        PLINTH_MOUSE_DOWN, +[](int32_t, int32_t, int32_t, int32_t) { close(0); });
    second.Handle(
        PLINTH_MOUSE_DOWN, +[](int32_t, int32_t, int32_t, int32_t) { close(1); });
    first.Handle(
        PLINTH_CLOSE_REQUESTED, +[] { return 0; });
    first.Click(5, 5);
    second.Click(5, 5);
    EXPECT_TRUE(eventually([] { return done == 2 && be_app->CountWindows() == 0; }));
}

TEST_F(Windows, SlotsOutOfRangeStoreNothing)
{
    TestWindow window;
    for (int32_t slot : {22, -1, INT32_MIN, INT32_MAX})
        SetHandlerForWindow(window, slot, reinterpret_cast<void*>(log_none<99>));
    SetHandlerForWindow(window.Ident() + 100000, 14, reinterpret_cast<void*>(log_none<99>));
    window.Handle(PLINTH_MOUSE_DOWN, log_four<14>);
    window.Click(3, 4);
    EXPECT_TRUE(eventually([] { return sLog.Has("14 3 4 1 1"); }));
    window.Handle<void()>(PLINTH_MOUSE_DOWN, nullptr);
    window.Click(8, 9);
    window.Handle(PLINTH_KEY, log_two<13>);
    inject_text("q");
    EXPECT_TRUE(eventually([] { return sLog.Has("13 113 0"); })) << sLog.All();
    EXPECT_FALSE(sLog.Has("14 8 9 1 1"));
}

TEST_F(Windows, DroppedFilesReachSlot21AsPaths)
{
    TestWindow window;
    window.Handle(
        PLINTH_FILES_DROPPED, +[](int32_t count, char** paths) {
            std::string call = std::to_string(count);
            for (int32_t i = 0; i < count; i++)
                call += std::string(" ") + paths[i];
            sLog.Add(call);
        });
    const char* const dropped[] = {"/etc/passwd", "/usr"};
    inject_file_drop(window.X(30), window.Y(30), dropped, 2);
    EXPECT_TRUE(eventually([] { return sLog.Has("2 /etc/passwd /usr"); })) << sLog.All();
}

TEST_F(Windows, HandlerOfADropMayCloseItsOwnWindow)
{
    static int32_t closing;
    TestWindow window;
    closing = window;
    window.Handle(
        PLINTH_FILES_DROPPED, +[](int32_t, char** paths) {
            sLog.Add(paths[0]);
            CloseWindow(closing);
        });
    const char* const dropped[] = {"/usr"};
    inject_file_drop(window.X(30), window.Y(30), dropped, 1);
    EXPECT_TRUE(eventually([] { return be_app->CountWindows() == 0; }));
    EXPECT_EQ(sLog.All(), "/usr");
}

TEST_F(Windows, FieldCountBoundsTheRefsOfADropKeptOnPurpose)
{
    TestWindow window;
    window.Handle(
        PLINTH_FILES_DROPPED, +[](int32_t count, char**) { sLog.Add(std::to_string(count)); });
    std::vector<const char*> many(40, "/usr");
    inject_file_drop(window.X(30), window.Y(30), many.data(), static_cast<int32_t>(many.size()));
    EXPECT_TRUE(eventually([] { return !sLog.All().empty(); }));
    EXPECT_LT(std::stoi(sLog.All()), 40);
}

TEST_F(Windows, PointersOfMessagesThatLeadNowhereAreNotFollowed)
{
    TestWindow window;
    window.Handle(PLINTH_MENU_ITEM, log_one<17>);
    window.Handle(PLINTH_KEY, log_two<13>);
    window.Click(3, 4);
    BMessenger messenger(platform_window());
    std::vector<char> gone(4096, 0x55);
    for (const char* field : {"fi", "it", "gd"}) {
        for (void* pointer : {reinterpret_cast<void*>(8), static_cast<void*>(gone.data())}) {
            for (uint32 what : {753u, 75001u}) {
                BMessage message(what);
                message.AddPointer(field, pointer);
                messenger.SendMessage(&message);
            }
        }
    }
    inject_text("q");
    EXPECT_TRUE(eventually([] { return sLog.Has("13 113 0"); }));
    EXPECT_EQ(sLog.All(), "13 113 0");
}

TEST_F(Windows, GadgetMessagesCallClickAndChoiceHandlers)
{
    MyGadget gadget = {};
    gadget.action_handler = reinterpret_cast<void*>(log_none<1>);
    gadget.value_handler = reinterpret_cast<void*>(log_one<3>);
    auto* gadgets = static_cast<BList*>(gRegistry[4]);
    gadgets->AddItem(&gadget);
    auto window = std::make_unique<TestWindow>();
    BMessenger messenger(platform_window());
    for (uint32 what : {753u, 75005u, 75000u}) {
        BMessage message(what);
        message.AddPointer("gd", &gadget);
        messenger.SendMessage(&message);
    }
    BMessage stale(753);
    stale.AddPointer("gd", window.get());
    messenger.SendMessage(&stale);
    EXPECT_TRUE(eventually([] { return sLog.Has("3 0"); }));
    EXPECT_EQ(sLog.All(), "1, 3 5, 3 0");
    window.reset();
    EXPECT_TRUE(eventually([] { return be_app->CountWindows() == 0; }));
    gadgets->RemoveItem(&gadget);
}
