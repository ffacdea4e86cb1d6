// Windows of the in-memory display, driven by injected input.

#include <gtest/gtest.h>

#include <Injection.h>
#include <InterfaceDefs.h>
#include <OS.h>

#include <atomic>
#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <thread>
#include <vector>

#include "server/screen/ScreenWindow.h"
#include "server/screen/Stage.h"
#include "support/click_interval.h"

using namespace server;

namespace {

class Recorder : public EventSink {
public:
    void Deliver(const Event& event) override { events.push_back(event); }

    // The events of a kind since the last Clear().
    std::vector<Event> Of(EventKind kind) const
    {
        std::vector<Event> found;
        for (const Event& event : events) {
            if (event.kind == kind)
                found.push_back(event);
        }
        return found;
    }
    void Clear() { events.clear(); }

    std::vector<Event> events;
};

// A shown window that ends with the test.
struct TestWindow {
    Recorder sink;
    ScreenWindow* window;

    explicit TestWindow(BRect frame, uint32 flags = 0, window_feel feel = B_NORMAL_WINDOW_FEEL,
                        window_look look = B_TITLED_WINDOW_LOOK)
    {
        WindowSpec spec;
        spec.frame = frame;
        spec.flags = flags;
        spec.feel = feel;
        spec.look = look;
        window = ScreenWindow::Create(spec, &sink);
        window->Show();
    }
    ~TestWindow() { window->Destroy(); }

    bool IsActive() const
    {
        auto changes = sink.Of(EventKind::Activated);
        return !changes.empty() && changes.back().active;
    }
};

void click(float x, float y, int32 button = 1)
{
    inject_pointer(x, y);
    inject_button(button, true);
    inject_button(button, false);
}

uint32 pixel_at(float x, float y)
{
    std::vector<uint32> pixels;
    int32 width = 0, height = 0;
    if (ReadScreen(BRect(x, y, x, y), &pixels, &width, &height) != B_OK)
        return 0;
    EXPECT_EQ(width, 1);
    EXPECT_EQ(height, 1);
    return pixels[0];
}

void fill(ScreenWindow* window, int32 width, int32 height, uint32 color)
{
    std::vector<uint32> pixels(size_t(width) * height, color);
    Surface surface;
    surface.bits = reinterpret_cast<uint8*>(pixels.data());
    surface.bytesPerRow = width * 4;
    surface.width = width;
    surface.height = height;
    clipping_rect all = {0, 0, width - 1, height - 1};
    window->Present(surface, &all, 1);
}

}  // namespace

TEST(MemoryDisplay, PointerFindsTheTopmostContent)
{
    TestWindow below(BRect(100, 100, 299, 299));
    TestWindow above(BRect(200, 200, 399, 399));
    inject_pointer(250, 250);
    EXPECT_TRUE(below.sink.Of(EventKind::MouseMoved).empty());
    ASSERT_EQ(above.sink.Of(EventKind::MouseMoved).size(), 1u);
    EXPECT_EQ(above.sink.Of(EventKind::MouseMoved)[0].where, BPoint(50, 50));
    inject_pointer(110.5f, 299);
    EXPECT_EQ(above.sink.Of(EventKind::MouseExited).size(), 1u);
    ASSERT_EQ(below.sink.Of(EventKind::MouseMoved).size(), 1u);
    EXPECT_EQ(below.sink.Of(EventKind::MouseMoved)[0].where, BPoint(10.5f, 199));
    inject_pointer(110, 301);  // the border
    EXPECT_EQ(below.sink.Of(EventKind::MouseMoved).size(), 1u);
    EXPECT_EQ(below.sink.Of(EventKind::MouseExited).size(), 1u);
    inject_pointer(NAN, NAN);
    BPoint where;
    uint32 buttons;
    PointerState(&where, &buttons);
    EXPECT_EQ(where, BPoint(110, 301));
}

TEST(MemoryDisplay, PressedWindowKeepsThePointerUntilAllButtonsAreUp)
{
    TestWindow left(BRect(100, 100, 199, 199));
    TestWindow right(BRect(300, 100, 399, 199));
    inject_pointer(150, 150);
    inject_button(1, true);
    inject_button(2, true);
    inject_pointer(350, 150);
    inject_button(1, false);
    EXPECT_TRUE(right.sink.Of(EventKind::MouseMoved).empty());
    Event moved = left.sink.Of(EventKind::MouseMoved).back();
    EXPECT_EQ(moved.where, BPoint(250, 50));
    EXPECT_EQ(moved.buttons, 3);
    EXPECT_EQ(moved.under, &right.sink);
    EXPECT_EQ(moved.underWhere, BPoint(50, 50));
    EXPECT_EQ(left.sink.Of(EventKind::MouseUp).back().buttons, 2);
    inject_button(2, false);
    EXPECT_EQ(left.sink.Of(EventKind::MouseUp).back().buttons, 0);
    EXPECT_EQ(left.sink.Of(EventKind::MouseExited).size(), 1u);
    EXPECT_EQ(right.sink.Of(EventKind::MouseMoved).size(), 1u);
    inject_button(2, false);  // it is up already
    EXPECT_EQ(left.sink.Of(EventKind::MouseUp).size(), 2u);
}

TEST(MemoryDisplay, ClickActivatesAndRaises)
{
    TestWindow first(BRect(100, 100, 299, 299));
    TestWindow second(BRect(200, 200, 399, 399));
    EXPECT_TRUE(second.IsActive());
    EXPECT_FALSE(first.IsActive());
    click(150, 150);
    EXPECT_TRUE(first.IsActive());
    EXPECT_FALSE(second.IsActive());
    EXPECT_EQ(first.sink.Of(EventKind::MouseDown).size(), 1u);
    click(250, 250);  // where both are: the first is in front
    EXPECT_EQ(first.sink.Of(EventKind::MouseDown).size(), 2u);
    inject_text("x");
    EXPECT_EQ(first.sink.Of(EventKind::KeyDown).size(), 1u);
    EXPECT_TRUE(second.sink.Of(EventKind::KeyDown).empty());
    click(390, 190);  // the title of the second
    EXPECT_TRUE(second.IsActive());
    EXPECT_TRUE(second.sink.Of(EventKind::MouseDown).empty());
}

TEST(MemoryDisplay, FirstClickIsSwallowedWhenNotAccepted)
{
    TestWindow first(BRect(100, 100, 199, 199));
    TestWindow second(BRect(300, 100, 399, 199));
    SetAcceptsFirstClick(false);
    click(150, 150);
    EXPECT_TRUE(first.IsActive());
    EXPECT_TRUE(first.sink.Of(EventKind::MouseDown).empty());
    EXPECT_TRUE(first.sink.Of(EventKind::MouseUp).empty());
    click(150, 150);
    SetAcceptsFirstClick(true);
    EXPECT_EQ(first.sink.Of(EventKind::MouseDown).size(), 1u);
    EXPECT_EQ(first.sink.Of(EventKind::MouseUp).size(), 1u);
}

TEST(MemoryDisplay, AvoidFlagsKeepFocusAndPlace)
{
    TestWindow normal(BRect(100, 100, 299, 299));
    TestWindow shy(BRect(200, 200, 399, 399), B_AVOID_FOCUS | B_AVOID_FRONT);
    EXPECT_TRUE(normal.IsActive());
    click(390, 390);
    EXPECT_EQ(shy.sink.Of(EventKind::MouseDown).size(), 1u);
    EXPECT_TRUE(normal.IsActive());
    click(250, 250);
    EXPECT_EQ(normal.sink.Of(EventKind::MouseDown).size(), 1u);
}

TEST(MemoryDisplay, ModalWindowKeepsClicksFromTheOthers)
{
    TestWindow normal(BRect(100, 100, 199, 199));
    {
        TestWindow modal(BRect(300, 100, 399, 199), 0, B_MODAL_APP_WINDOW_FEEL,
                         B_MODAL_WINDOW_LOOK);
        click(150, 150);
        EXPECT_TRUE(normal.sink.Of(EventKind::MouseDown).empty());
        EXPECT_TRUE(modal.IsActive());
        inject_window_close(150, 150);
        EXPECT_TRUE(normal.sink.Of(EventKind::CloseRequested).empty());
        click(350, 150);
        EXPECT_EQ(modal.sink.Of(EventKind::MouseDown).size(), 1u);
        // A new normal window does not come before it.
        TestWindow late(BRect(300, 100, 399, 199));
        click(350, 150);
        EXPECT_EQ(modal.sink.Of(EventKind::MouseDown).size(), 2u);
    }
    EXPECT_TRUE(normal.IsActive());
    click(150, 150);
    EXPECT_EQ(normal.sink.Of(EventKind::MouseDown).size(), 1u);
}

TEST(MemoryDisplay, SubsetWindowBlocksItsOwnWindowsAlone)
{
    TestWindow member(BRect(50, 50, 149, 149));
    TestWindow other(BRect(200, 50, 299, 149));
    TestWindow modal(BRect(400, 50, 499, 149), 0, B_MODAL_SUBSET_WINDOW_FEEL);
    const auto press_both = [&] {
        member.sink.Clear();
        other.sink.Clear();
        for (float x : {100.f, 250.f}) {
            inject_pointer(x, 100);
            inject_button(1, true);
            inject_button(1, false);
        }
    };
    press_both();
    EXPECT_EQ(member.sink.Of(EventKind::MouseDown).size(), 1u) << "it has no members yet";
    member.window->Activate(true);
    modal.window->AddToSubset(member.window);
    EXPECT_TRUE(modal.IsActive()) << "at once";
    press_both();
    EXPECT_TRUE(member.sink.Of(EventKind::MouseDown).empty());
    EXPECT_EQ(other.sink.Of(EventKind::MouseDown).size(), 1u);
    inject_window_close(100, 100);
    EXPECT_TRUE(member.sink.Of(EventKind::CloseRequested).empty());
    modal.window->RemoveFromSubset(member.window);
    press_both();
    EXPECT_EQ(member.sink.Of(EventKind::MouseDown).size(), 1u);
}

TEST(MemoryDisplay, SubsetForgetsWindowsThatGo)
{
    TestWindow modal(BRect(400, 50, 499, 149), 0, B_MODAL_SUBSET_WINDOW_FEEL);
    auto member = std::make_unique<TestWindow>(BRect(50, 50, 149, 149));
    ScreenWindow* const gone = member->window;
    modal.window->AddToSubset(gone);
    member.reset();
    modal.window->RemoveFromSubset(gone);
    TestWindow later(BRect(50, 50, 149, 149));
    EXPECT_TRUE(later.IsActive());
}

TEST(MemoryDisplay, WindowThatBecomesModalTakesTheKeyboard)
{
    TestWindow other(BRect(200, 50, 299, 149));
    TestWindow first(BRect(50, 50, 149, 149));
    ASSERT_TRUE(first.IsActive());
    other.window->SetFeel(B_MODAL_APP_WINDOW_FEEL);
    EXPECT_TRUE(other.IsActive());
    inject_text("x");
    EXPECT_TRUE(first.sink.Of(EventKind::KeyDown).empty());
    EXPECT_EQ(other.sink.Of(EventKind::KeyDown).size(), 1u);
}

TEST(MemoryDisplay, FloatingWindowStaysAbove)
{
    TestWindow floating(BRect(100, 100, 299, 299), 0, B_FLOATING_APP_WINDOW_FEEL,
                        B_FLOATING_WINDOW_LOOK);
    TestWindow normal(BRect(100, 100, 299, 299));
    normal.window->Activate(true);
    click(150, 150);
    EXPECT_EQ(floating.sink.Of(EventKind::MouseDown).size(), 1u);
    EXPECT_TRUE(normal.sink.Of(EventKind::MouseDown).empty());
}

TEST(MemoryDisplay, HidingAndMinimizingHandTheFocusOn)
{
    TestWindow first(BRect(100, 100, 199, 199));
    TestWindow second(BRect(300, 100, 399, 199));
    second.window->Hide();
    EXPECT_TRUE(first.IsActive());
    second.window->Show();
    EXPECT_TRUE(second.IsActive());
    inject_window_minimize(350, 150, true);
    ASSERT_EQ(second.sink.Of(EventKind::Minimized).size(), 1u);
    EXPECT_TRUE(second.sink.Of(EventKind::Minimized)[0].active);
    EXPECT_TRUE(first.IsActive());
    EXPECT_EQ(SinkAt(BPoint(350, 150), nullptr), nullptr);
    inject_window_minimize(350, 150, false);
    EXPECT_FALSE(second.sink.Of(EventKind::Minimized).back().active);
    EXPECT_TRUE(second.IsActive());
}

TEST(MemoryDisplay, PersonMovesAndResizesWithinFlagsAndLimits)
{
    TestWindow free(BRect(100, 100, 199, 199));
    free.window->SetSizeLimits(50, 120, 60, 32768);
    inject_window_move(150, 80, 120, 130);  // by its title
    ASSERT_EQ(free.sink.Of(EventKind::Moved).size(), 1u);
    EXPECT_EQ(free.sink.Of(EventKind::Moved)[0].frame, BRect(120, 130, 219, 229));
    EXPECT_TRUE(free.sink.Of(EventKind::Resized).empty());
    inject_window_resize(150, 150, 500, 10);
    ASSERT_EQ(free.sink.Of(EventKind::Resized).size(), 1u);
    EXPECT_EQ(free.sink.Of(EventKind::Resized)[0].frame, BRect(120, 130, 240, 190));

    TestWindow fixed(BRect(400, 100, 499, 199), B_NOT_MOVABLE | B_NOT_V_RESIZABLE | B_NOT_CLOSABLE |
                                                    B_NOT_ZOOMABLE | B_NOT_MINIMIZABLE);
    fixed.sink.Clear();
    inject_window_move(450, 150, 0, 0);
    inject_window_close(450, 150);
    inject_window_zoom(450, 150);
    inject_window_minimize(450, 150, true);
    EXPECT_TRUE(fixed.sink.events.empty());
    inject_window_resize(450, 150, 150, 150);
    EXPECT_EQ(fixed.sink.Of(EventKind::Resized).back().frame, BRect(400, 100, 550, 199));
}

TEST(MemoryDisplay, ProgramsChangesComeBackAsEvents)
{
    TestWindow window(BRect(100, 100, 199, 199));
    window.sink.Clear();
    window.window->MoveTo(BPoint(10.4f, 20.6f));
    window.window->ResizeTo(79, 59);
    window.window->ResizeTo(79, 59);
    ASSERT_EQ(window.sink.events.size(), 2u);
    EXPECT_EQ(window.sink.events[0].frame, BRect(10, 21, 109, 120));
    EXPECT_EQ(window.sink.events[1].frame, BRect(10, 21, 89, 80));
    window.window->MoveTo(BPoint(NAN, -std::numeric_limits<float>::infinity()));
    window.window->ResizeTo(NAN, -1e30f);
    EXPECT_EQ(window.sink.Of(EventKind::Resized).back().frame.Width(), 0);
    EXPECT_EQ(window.sink.Of(EventKind::Resized).back().frame.Height(), 0);
}

TEST(MemoryDisplay, WindowsTooLargeToHoldAreRefused)
{
    Recorder sink;
    WindowSpec spec;
    spec.maxWidth = spec.maxHeight = 1e9f;
    const BRect frames[] = {BRect(0, 0, 1e9f, 1e9f), BRect(0, 0, 40000, 10),
                            BRect(0, 0, 32000, 32000)};
    for (BRect frame : frames) {
        spec.frame = frame;
        EXPECT_EQ(ScreenWindow::Create(spec, &sink), nullptr);
    }
    TestWindow window(BRect(0, 0, 99, 99));
    window.window->SetSizeLimits(0, 1e9f, 0, 1e9f);
    window.sink.Clear();
    window.window->ResizeTo(1e9f, 1e9f);
    EXPECT_TRUE(window.sink.Of(EventKind::Resized).empty());
}

TEST(MemoryDisplay, ScreenShowsPresentedPixelsOverTheDesktop)
{
    TestWindow below(BRect(100, 100, 199, 199));
    TestWindow above(BRect(150, 150, 249, 249), 0, B_NORMAL_WINDOW_FEEL, B_NO_BORDER_WINDOW_LOOK);
    EXPECT_EQ(pixel_at(110, 110), 0xffd8d8d8);  // not painted yet: the panel's grey
    fill(below.window, 100, 100, 0x00123456);
    fill(above.window, 100, 100, 0xffabcdef);
    EXPECT_EQ(pixel_at(100, 100), 0xff123456);
    EXPECT_EQ(pixel_at(149, 149), 0xff123456);
    EXPECT_EQ(pixel_at(150, 150), 0xffabcdef);
    EXPECT_EQ(pixel_at(249, 249), 0xffabcdef);
    rgb_color desktop = DesktopColor();
    EXPECT_EQ(pixel_at(250, 250),
              0xff000000u | desktop.red << 16 | desktop.green << 8 | desktop.blue);
    above.window->SendBehind(below.window);
    EXPECT_EQ(pixel_at(160, 160), 0xff123456);
    above.window->ResizeTo(149, 149);
    EXPECT_EQ(pixel_at(249, 249), 0xffabcdef);
    EXPECT_EQ(pixel_at(299, 299), 0xffd8d8d8);
    std::vector<uint32> pixels;
    int32 width, height;
    EXPECT_NE(ReadScreen(BRect(5000, 5000, 6000, 6000), &pixels, &width, &height), B_OK);
    ASSERT_EQ(ReadScreen(BRect(-10, -10, 3, 4), &pixels, &width, &height), B_OK);
    EXPECT_EQ(width, 4);
    EXPECT_EQ(height, 5);
}

TEST(MemoryDisplay, PresentTakesOnlyWhatWindowAndSurfaceShare)
{
    TestWindow window(BRect(100, 100, 199, 199));
    std::vector<uint32> pixels(50 * 50, 0xff00ff00);
    Surface surface;
    surface.bits = reinterpret_cast<uint8*>(pixels.data());
    surface.bytesPerRow = 50 * 4;
    surface.width = surface.height = 50;
    const clipping_rect rects[] = {
        {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}, {10, 10, 5, 5}, {60, 60, 70, 70}};
    window.window->Present(surface, rects, 3);
    window.window->Present(surface, nullptr, 3);
    window.window->Present(surface, rects, -1);
    window.window->Present(Surface(), rects, 1);
    EXPECT_EQ(pixel_at(149, 149), 0xff00ff00);
    EXPECT_EQ(pixel_at(150, 150), 0xffd8d8d8);
}

TEST(MemoryDisplay, WorkspacesShowTheirOwnWindows)
{
    TestWindow here(BRect(100, 100, 199, 199));
    TestWindow everywhere(BRect(300, 100, 399, 199));
    everywhere.window->SetWorkspaces(B_ALL_WORKSPACES);
    ASSERT_EQ(CountWorkspaces(), 4);
    here.window->Activate(true);
    here.sink.Clear();
    everywhere.sink.Clear();
    ActivateWorkspace(2);
    EXPECT_EQ(CurrentWorkspace(), 2);
    EXPECT_EQ(SinkAt(BPoint(150, 150), nullptr), nullptr);
    EXPECT_EQ(SinkAt(BPoint(350, 150), nullptr), &everywhere.sink);
    EXPECT_TRUE(everywhere.IsActive());
    ASSERT_EQ(here.sink.Of(EventKind::WorkspaceActivated).size(), 1u);
    EXPECT_FALSE(here.sink.Of(EventKind::WorkspaceActivated)[0].active);
    auto both = everywhere.sink.Of(EventKind::WorkspaceActivated);
    ASSERT_EQ(both.size(), 2u);
    EXPECT_EQ(both[0].workspace, 0);
    EXPECT_FALSE(both[0].active);
    EXPECT_EQ(both[1].workspace, 2);
    EXPECT_TRUE(both[1].active);
    ActivateWorkspace(-1);
    ActivateWorkspace(99);
    EXPECT_EQ(CurrentWorkspace(), 2);
    here.window->SetWorkspaces(B_CURRENT_WORKSPACE);
    EXPECT_EQ(here.sink.Of(EventKind::WorkspacesChanged).back().oldWorkspaces, 1u);
    EXPECT_EQ(here.sink.Of(EventKind::WorkspacesChanged).back().workspaces, 4u);
    EXPECT_EQ(SinkAt(BPoint(150, 150), nullptr), &here.sink);
    ActivateWorkspace(0);
}

TEST(Injection, TypesTextWithShiftAndForeignCharacters)
{
    TestWindow window(BRect(100, 100, 199, 199));
    inject_text("aB!\n\xc3\xa4");
    std::string typed;
    for (const Event& event : window.sink.Of(EventKind::KeyDown))
        typed += event.bytes;
    EXPECT_EQ(typed, "aB!\n\xc3\xa4");
    EXPECT_EQ(window.sink.Of(EventKind::KeyDown).size(), window.sink.Of(EventKind::KeyUp).size());
    EXPECT_EQ(Modifiers(), 0);
    inject_key(0x3b, true);
    inject_key(0x3b, false);
    window.sink.Clear();
    inject_text("aB");
    typed.clear();
    for (const Event& event : window.sink.Of(EventKind::KeyDown))
        typed += event.bytes;
    EXPECT_EQ(typed, "aB");
    inject_key(0x3b, true);
    inject_key(0x3b, false);
    inject_text(nullptr);
    inject_text("\xff\xfe\x80");
    inject_key(INT32_MIN, true);
    inject_key(INT32_MAX, true);
}

TEST(Injection, DropsFilesAndTurnsTheWheel)
{
    TestWindow window(BRect(100, 100, 199, 199));
    const char* paths[] = {"/tmp/one", nullptr, "/tmp/two"};
    inject_file_drop(120, 130, paths, 3);
    auto drops = window.sink.Of(EventKind::FilesDropped);
    ASSERT_EQ(drops.size(), 1u);
    EXPECT_EQ(drops[0].paths, (std::vector<std::string>{"/tmp/one", "/tmp/two"}));
    EXPECT_EQ(drops[0].where, BPoint(20, 30));
    EXPECT_EQ(drops[0].screenWhere, BPoint(120, 130));
    inject_file_drop(120, 130, nullptr, 5);
    inject_file_drop(120, 130, paths, INT32_MIN);
    inject_file_drop(900, 700, paths, 3);
    EXPECT_EQ(window.sink.Of(EventKind::FilesDropped).size(), 1u);
    inject_pointer(110, 110);
    inject_wheel(0, 2);
    ASSERT_EQ(window.sink.Of(EventKind::MouseWheel).size(), 1u);
    EXPECT_EQ(window.sink.Of(EventKind::MouseWheel)[0].wheelY, 2);
}

TEST(Injection, ClickCountsReachTheWindow)
{
    const ClickInterval slow;
    TestWindow window(BRect(100, 100, 199, 199));
    for (int i = 0; i < 3; i++)
        click(150, 150);
    click(150, 150, 2);
    std::vector<int32> clicks;
    for (const Event& event : window.sink.Of(EventKind::MouseDown))
        clicks.push_back(event.clicks);
    EXPECT_EQ(clicks, (std::vector<int32>{1, 2, 3, 1}));
    inject_button(0, true);
    inject_button(-1, true);
    EXPECT_EQ(window.sink.Of(EventKind::MouseDown).size(), 4u);
}

TEST(Injection, TurningTheWheelEndsARunOfClicks)
{
    const ClickInterval slow;
    TestWindow window(BRect(100, 100, 199, 199));
    click(150, 150);
    click(150, 150);
    inject_wheel(0, 1);
    click(150, 150);
    click(150, 150);
    std::vector<int32> clicks;
    for (const Event& event : window.sink.Of(EventKind::MouseDown))
        clicks.push_back(event.clicks);
    EXPECT_EQ(clicks, (std::vector<int32>{1, 2, 1, 2}));
}

TEST(MemoryDisplay, NoEventAfterDestroy)
{
    // Input from one thread, windows that come and go on another: the recorder of a destroyed
    // window is freed at once, so a late event would be a write into freed memory.
    std::atomic<bool> done = false;
    std::thread hand([&] {
        while (!done) {
            click(150, 150);
            inject_text("q");
            inject_window_move(150, 150, 100, 100);
        }
    });
    for (int i = 0; i < 2000; i++) {
        auto window = std::make_unique<TestWindow>(BRect(100, 100, 199, 199));
        fill(window->window, 100, 100, 0xff000000u + i);
        window->window->ResizeTo(float(50 + i % 100), 80);
    }
    done = true;
    hand.join();
}

TEST(MemoryDisplay, WindowsOutliveTheirDisplay)
{
    auto window = std::make_unique<TestWindow>(BRect(100, 100, 199, 199));
    Shutdown();
    Shutdown();
    window->window->MoveTo(BPoint(5, 5));
    window.reset();
    TestWindow next(BRect(100, 100, 199, 199));  // of the next application
    EXPECT_TRUE(next.IsActive());
}

// Whoever still reads its frame or holds its clipboard as it ends goes on with the same one.
TEST(MemoryDisplay, StaysTheSameBehindItsEnd)
{
    const std::shared_ptr<Clipboard> before = SystemClipboard();
    std::atomic<bool> ended{false};
    std::thread reader([&] {
        do {
            EXPECT_EQ(ScreenFrame(), BRect(0, 0, 1023, 767));
        } while (!ended);
        EXPECT_EQ(ScreenFrame(), BRect(0, 0, 1023, 767));
    });
    Shutdown();
    ended = true;
    reader.join();
    EXPECT_EQ(SystemClipboard(), before);
}

// A host goes on speaking of a window until it has heard that it is gone.
TEST(Stage, InputForAWindowThatIsGoneReachesNobody)
{
    TestWindow other(BRect(300, 100, 399, 199));
    auto window = std::make_unique<TestWindow>(BRect(100, 100, 199, 199));
    ScreenWindow* const gone = window->window;
    window.reset();
    const size_t before = other.sink.events.size();
    StageLock lock;
    stage().SetActive(gone);
    EXPECT_EQ(stage().Active(), nullptr);
    EXPECT_FALSE(other.sink.events.back().active);
    stage().MovePointer(BPoint(350, 150), gone);
    stage().ChangeButton(1, true, gone);
    stage().TurnWheel(0, 1, gone);
    stage().ChangeButton(1, false, gone);
    Event drop;
    drop.kind = EventKind::DataDropped;
    stage().Drop(BPoint(350, 150), drop, gone);
    stage().LeavePointer(gone);
    EXPECT_EQ(other.sink.events.size(), before + 1);
}

TEST(Stage, DragEndsOnceHoweverItEnds)
{
    TestWindow window(BRect(100, 100, 199, 199));
    const int32_t kEscape = 0x01;
    std::string ends;
    const auto begin = [&](const char* name) {
        StageLock lock;
        stage().BeginDrag(std::make_shared<DragPicture>(), [&ends, name](bool dropped) {
            ends += std::string(name) + (dropped ? " dropped; " : " cancelled; ");
        });
    };
    inject_pointer(150, 150);
    inject_button(1, true);
    begin("a");
    begin("b");
    inject_button(2, true);
    inject_button(1, false);
    EXPECT_EQ(ends, "a cancelled; ");
    inject_button(2, false);
    EXPECT_EQ(ends, "a cancelled; b dropped; ");
    inject_button(1, true);
    begin("c");
    inject_key(kEscape, true);
    inject_key(kEscape, false);
    inject_button(1, false);
    EXPECT_EQ(ends, "a cancelled; b dropped; c cancelled; ");
    EXPECT_EQ(window.sink.Of(EventKind::DragCancelled).size(), 1u);
    EXPECT_EQ(window.sink.Of(EventKind::KeyDown).size(), 0u);
    EXPECT_EQ(window.sink.Of(EventKind::KeyUp).size(), 0u);
    inject_key(kEscape, true);
    inject_key(kEscape, false);
    EXPECT_EQ(window.sink.Of(EventKind::KeyDown).size(), 1u);
}

TEST(Stage, WindowUnderAnotherProgramsIsNotUnderTheDrag)
{
    TestWindow window(BRect(100, 100, 199, 199));
    inject_pointer(150, 150);
    inject_button(1, true);
    {
        StageLock lock;
        stage().SetCovered(true);  // nothing is dragged
    }
    inject_pointer(151, 150);
    EXPECT_EQ(window.sink.events.back().under, &window.sink);
    {
        StageLock lock;
        stage().BeginDrag(std::make_shared<DragPicture>(), [](bool) {});
        stage().SetCovered(true);
    }
    inject_pointer(152, 150);
    EXPECT_EQ(window.sink.events.back().under, nullptr);
    inject_button(1, false);
    EXPECT_EQ(window.sink.events.back().under, nullptr);
    inject_pointer(153, 150);
    EXPECT_EQ(window.sink.events.back().under, &window.sink);
}

TEST(Stage, ReleaseThatWentElsewhereIsMadeUpFor)
{
    TestWindow left(BRect(100, 100, 199, 199));
    TestWindow right(BRect(300, 100, 399, 199));
    inject_pointer(150, 150);
    inject_button(1, true);
    inject_button(2, true);
    {
        StageLock lock;
        stage().SyncButtons(2);
    }
    ASSERT_EQ(left.sink.Of(EventKind::MouseUp).size(), 1u);
    EXPECT_EQ(left.sink.Of(EventKind::MouseUp)[0].button, 1);
    EXPECT_EQ(left.sink.Of(EventKind::MouseUp)[0].buttons, 2);
    {
        StageLock lock;
        stage().SyncButtons(0);
    }
    click(350, 150);
    EXPECT_EQ(right.sink.Of(EventKind::MouseDown).size(), 1u);
}

TEST(Stage, NobodyHearsOfTheReleaseOfAPressWhoseWindowIsGone)
{
    TestWindow right(BRect(300, 100, 399, 199));
    {
        TestWindow left(BRect(100, 100, 199, 199));
        inject_pointer(150, 150);
        inject_button(1, true);
    }
    inject_pointer(350, 150);
    {
        StageLock lock;
        stage().SyncButtons(0);
    }
    EXPECT_TRUE(right.sink.Of(EventKind::MouseUp).empty());
    inject_button(1, true);
    ASSERT_EQ(right.sink.Of(EventKind::MouseDown).size(), 1u);
    EXPECT_EQ(right.sink.Of(EventKind::MouseDown)[0].buttons, 1);
    inject_button(1, false);
}

TEST(MemoryDisplay, SavesThePictureOrSaysWhyNot)
{
    std::string path = testing::TempDir() + "display_test.png";
    EXPECT_EQ(SaveScreen(path.c_str()), B_OK);
    EXPECT_EQ(remove(path.c_str()), 0);
    EXPECT_NE(SaveScreen("/nowhere/at/all.png"), B_OK);
    EXPECT_NE(SaveScreen(nullptr), B_OK);
}

TEST(MemoryDisplay, SavesThePixelsThatItHas)
{
    TestWindow window(BRect(100, 100, 199, 199));
    fill(window.window, 100, 100, 0xff204060);
    const std::string path = testing::TempDir() + "scaled_test.png";
    for (int scale : {1, 3}) {
        inject_display_scale(float(scale));
        EXPECT_EQ(window.window->Scale(), float(scale));
        EXPECT_EQ(SaveScreen(path.c_str()), B_OK);
        FILE* file = fopen(path.c_str(), "rb");
        uint8 header[24] = {};
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(fread(header, 1, sizeof(header), file), sizeof(header));
        fclose(file);
        EXPECT_EQ(header[18] << 8 | header[19], 1024 * scale);
        EXPECT_EQ(header[22] << 8 | header[23], 768 * scale);
        EXPECT_EQ(ScreenFrame(), BRect(0, 0, 1023, 767));
        // Pixels of another scale than the screen's are shown all the same.
        EXPECT_EQ(pixel_at(100, 100), 0xff204060u);
        EXPECT_EQ(pixel_at(199, 199), 0xff204060u);
    }
    inject_display_scale(1);
    EXPECT_EQ(window.sink.Of(EventKind::ScaleChanged).size(), 2u);
    remove(path.c_str());
}

TEST(MemoryDisplay, TakesTheNearestScaleThatTheEnvironmentNames)
{
    const struct {
        const char* text;
        float scale;
    } kCases[] = {{"2", 2},   {"1.5", 1.5f}, {"0", 1},   {"-2", 1}, {"100", 4},
                  {"two", 1}, {"", 1},       {"nan", 1}, {"inf", 4}};
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const auto& each : kCases) {
        const auto open = [&] {
            setenv("PLINTH_DISPLAY_SCALE", each.text, 1);
            Recorder sink;
            exit(ScreenWindow::Create(WindowSpec(), &sink)->Scale() == each.scale ? 0 : 1);
        };
        EXPECT_EXIT(open(), testing::ExitedWithCode(0), "") << each.text;
    }
}
