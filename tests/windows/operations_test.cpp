// What a program does to its open windows, by the exported calls, and what the platform's window
// then is.

#include "support/program.h"

#include <gtest/gtest.h>

#include <Application.h>
#include <Button.h>
#include <InterfaceDefs.h>
#include <Screen.h>
#include <Window.h>

#include <climits>
#include <string>
#include <vector>

namespace {

const int32_t kExtremes[] = {0, 1, -1, 32768, -32769, 1000000, INT32_MAX, INT32_MIN};

class WindowOperations : public testing::Test {
protected:
    // Any of its answers is the platform's.
    BWindow* Platform() const { return reinterpret_cast<BWindow*>(GetAdress(fWindow)); }

    TestWindow fWindow{100, 120, 199, 149};
};

std::vector<int32_t> place_of(int32_t window)
{
    std::vector<int32_t> place;
    for (int32_t selector = 0; selector < 4; selector++)
        place.push_back(GetWindowPosition(window, selector));
    return place;
}

using Place = std::vector<int32_t>;

std::atomic<int32_t> sMinimized, sShown, sHidden, sKeys, sPresses;

void count_minimized(int32_t) { sMinimized++; }
void count_shown() { sShown++; }
void count_hidden() { sHidden++; }
void count_key(int32_t, int32_t) { sKeys++; }
void count_press(int32_t, int32_t, int32_t, int32_t) { sPresses++; }

std::atomic<int32_t> sToClose;
void close_it() { CloseWindow(sToClose); }
void close_it_minimized(int32_t) { CloseWindow(sToClose); }

}  // namespace

TEST_F(WindowOperations, PlaceAndSizeReadBackAtOnce)
{
    EXPECT_EQ(place_of(fWindow), (Place{100, 120, 199, 149}));
    MoveWindow(fWindow, -20, 33);
    ChangeWindow(fWindow, 250, 99);
    EXPECT_EQ(place_of(fWindow), (Place{-20, 33, 250, 99}));
    ChangeWidthWindow(fWindow, 10);
    ChangeHeightWindow(fWindow, 20);
    EXPECT_EQ(place_of(fWindow), (Place{-20, 33, 10, 20}));
    for (int32_t none : {4, -1, INT32_MAX, INT32_MIN})
        EXPECT_EQ(GetWindowPosition(fWindow, none), 0);
}

TEST_F(WindowOperations, FractionsOfPixelsCount)
{
    ASSERT_TRUE(Platform()->Lock());
    Platform()->ResizeTo(199.5f, 100.4f);
    Platform()->Unlock();
    EXPECT_EQ(GetWindowPosition(fWindow, 2), 200);
    EXPECT_EQ(GetWindowPosition(fWindow, 3), 100);
}

TEST_F(WindowOperations, AnyNumberIsAPlaceAndASize)
{
    for (int32_t first : kExtremes) {
        for (int32_t second : kExtremes) {
            MoveWindow(fWindow, first, second);
            ChangeWindow(fWindow, first, second);
            ChangeWidthWindow(fWindow, second);
            ChangeHeightWindow(fWindow, first);
            SetMinSize(fWindow, first, second);
            SetMaxSize(fWindow, first, second);
            const Place place = place_of(fWindow);
            EXPECT_GE(place[2], 0);
            EXPECT_GE(place[3], 0);
        }
    }
    MoveWindow(fWindow, 7, 8);
    EXPECT_EQ(GetWindowPosition(fWindow, 0), 7);
    EXPECT_EQ(GetWindowPosition(fWindow, 1), 8);
}

TEST_F(WindowOperations, CentersWhatFitsTheScreen)
{
    ChangeWindow(fWindow, 199, 149);
    CenterWindow(fWindow);
    const BRect screen = BScreen().Frame();
    const auto left = static_cast<int32_t>(std::round((screen.Width() - 199) / 2));
    const auto top = static_cast<int32_t>(std::round((screen.Height() - 149) / 2));
    EXPECT_EQ(place_of(fWindow), (Place{left, top, 199, 149}));
    MoveWindow(fWindow, 3, 4);
    ChangeWindow(fWindow, static_cast<int32_t>(screen.Width()) + 10, 50);
    CenterWindow(fWindow);
    EXPECT_EQ(GetWindowPosition(fWindow, 0), 3) << "wider than the screen";
    EXPECT_EQ(GetWindowPosition(fWindow, 1), 4);
}

TEST_F(WindowOperations, SizeLimitsHoldForTheProgramToo)
{
    SetMinSize(fWindow, 120, 80);
    ChangeWindow(fWindow, 10, 10);
    EXPECT_EQ(place_of(fWindow), (Place{100, 120, 120, 80}));
    SetMaxSize(fWindow, 300, 200);
    ChangeWindow(fWindow, 1000, 1000);
    EXPECT_EQ(place_of(fWindow), (Place{100, 120, 300, 200}));
    SetMaxSize(fWindow, 150, 90);
    EXPECT_EQ(place_of(fWindow), (Place{100, 120, 150, 90})) << "within at once";
    SetMinSize(fWindow, 151, 80);  // above the largest
    SetMaxSize(fWindow, 150, 79);  // below the smallest
    float limits[4];
    Platform()->GetSizeLimits(&limits[0], &limits[1], &limits[2], &limits[3]);
    EXPECT_EQ(limits[0], 120);
    EXPECT_EQ(limits[1], 150);
    EXPECT_EQ(limits[2], 80);
    EXPECT_EQ(limits[3], 90);
}

TEST_F(WindowOperations, TitlesAreTakenAsTheyAre)
{
    EXPECT_STREQ(GetWindowTitle(fWindow), "");
    SetWindowTitle(fWindow,
                   "Gr\xc3\xbc\xc3\x9f"
                   "e");
    const char* title = GetWindowTitle(fWindow);
    EXPECT_STREQ(title, Platform()->Title());
    SetWindowTitle(fWindow, "\xff\x01 no text");
    EXPECT_STREQ(GetWindowTitle(fWindow), "\xff\x01 no text");
    const std::string longest(100000, 'x');
    SetWindowTitle(fWindow, longest.c_str());
    EXPECT_EQ(GetWindowTitle(fWindow), longest);
    SetWindowTitle(fWindow, nullptr);
    EXPECT_STREQ(GetWindowTitle(fWindow), "");
}

TEST_F(WindowOperations, KeptVisibleMeansHidden)
{
    sShown = sHidden = 0;
    fWindow.Handle(PLINTH_SHOWN, count_shown);
    fWindow.Handle(PLINTH_HIDDEN, count_hidden);
    EXPECT_FALSE(IsVisibleWindow(fWindow));
    HideWindow(fWindow);
    EXPECT_TRUE(IsVisibleWindow(fWindow));
    HideWindow(fWindow);
    ShowWindow(fWindow);
    EXPECT_TRUE(IsVisibleWindow(fWindow)) << "hidden twice, shown once";
    ShowWindow(fWindow);
    EXPECT_FALSE(IsVisibleWindow(fWindow));
    EXPECT_EQ(sShown, 2);
    EXPECT_EQ(sHidden, 2);
}

TEST_F(WindowOperations, ShowingActivates)
{
    TestWindow other(400, 120);
    ActivateWindow(other);
    EXPECT_TRUE(eventually([&] { return !Platform()->IsActive(); }));
    ActivateWindow(fWindow);
    EXPECT_TRUE(eventually([&] { return Platform()->IsActive(); }));
    HideWindow(fWindow);
    EXPECT_TRUE(eventually([&] { return !Platform()->IsActive(); }));
    ActivateWindow(fWindow);
    ShowWindow(fWindow);
    EXPECT_TRUE(eventually([&] { return Platform()->IsActive(); }));
}

TEST_F(WindowOperations, IconsAreMadeAndOpenedOnce)
{
    sMinimized = 0;
    fWindow.Handle(PLINTH_MINIMIZED, count_minimized);
    Iconifie(fWindow, 1);
    EXPECT_TRUE(eventually([&] { return Platform()->IsMinimized(); }));
    Iconifie(fWindow, 0);
    EXPECT_TRUE(eventually([&] { return !Platform()->IsMinimized(); }));
    fWindow.Click(10, 10);
    SetWindowTitle(fWindow, "after");  // waits for what is being handled
    EXPECT_EQ(sMinimized, 2) << "the screen's answer is no change of its own";
}

TEST_F(WindowOperations, LooksAreSixAndOthersDoNothing)
{
    const window_look looks[] = {B_TITLED_WINDOW_LOOK,    B_BORDERED_WINDOW_LOOK,
                                 B_MODAL_WINDOW_LOOK,     B_FLOATING_WINDOW_LOOK,
                                 B_NO_BORDER_WINDOW_LOOK, B_DOCUMENT_WINDOW_LOOK};
    for (int32_t look = 5; look >= 0; look--) {
        SetWindowLook(fWindow, look);
        EXPECT_EQ(Platform()->Look(), looks[look]);
        for (int32_t none : {6, -1, INT32_MAX, INT32_MIN})
            SetWindowLook(fWindow, none);
        EXPECT_EQ(Platform()->Look(), looks[look]);
        EXPECT_EQ(place_of(fWindow), (Place{100, 120, 199, 149}));
    }
}

TEST_F(WindowOperations, EachFeatureIsAFlagOfItsOwn)
{
    const struct {
        void (*allow)(int32_t, int32_t);
        uint32 flag;
    } table[] = {
        {WindowResizable, 0x2}, {WindowMovable, 0x1},        {WindowClosable, 0x20},
        {WindowZoomable, 0x40}, {WindowMinimizable, 0x4000}, {WindowResizeMode, 0x1000},
    };
    EXPECT_EQ(Platform()->Flags(), 0x81080u);
    for (const auto& row : table) {
        const uint32 before = Platform()->Flags();
        row.allow(fWindow, 0);
        EXPECT_EQ(Platform()->Flags(), before | row.flag);
        row.allow(fWindow, 0);
        EXPECT_EQ(Platform()->Flags(), before | row.flag);
        row.allow(fWindow, -256);
        EXPECT_EQ(Platform()->Flags(), before & ~row.flag);
    }
    EXPECT_EQ(Platform()->Flags(), 0x80080u);
}

TEST_F(WindowOperations, WhatIsForbiddenTheUserCanNotDo)
{
    WindowMovable(fWindow, 0);
    WindowResizable(fWindow, 0);
    WindowClosable(fWindow, 0);
    WindowMinimizable(fWindow, 0);
    inject_window_move(fWindow.X(5), fWindow.Y(5), 10, 10);
    inject_window_resize(fWindow.X(5), fWindow.Y(5), 50, 50);
    inject_window_minimize(fWindow.X(5), fWindow.Y(5), true);
    inject_window_close(fWindow.X(5), fWindow.Y(5));
    fWindow.Click(5, 5);
    SetWindowTitle(fWindow, "after");
    EXPECT_EQ(place_of(fWindow), (Place{100, 120, 199, 149}));
    EXPECT_FALSE(Platform()->IsMinimized());
    EXPECT_TRUE(IsOpenedWindow(fWindow));
}

TEST_F(WindowOperations, KeptModeChangesNoWindow)
{
    SetWindowMode(0);
    TestWindow other(400, 120);
    EXPECT_EQ(reinterpret_cast<BWindow*>(GetAdress(other))->Flags(), 0x81080u);
    SetWindowMode(0xFFFFFFFF);
}

TEST_F(WindowOperations, AModalWindowBlocksTheOthers)
{
    TestWindow other(400, 120);
    sPresses = sKeys = 0;
    fWindow.Handle(PLINTH_MOUSE_DOWN, count_press);
    fWindow.Handle(PLINTH_KEY, count_key);
    ActivateWindow(fWindow);
    BlockWindow(other, 1);
    EXPECT_EQ(reinterpret_cast<BWindow*>(GetAdress(other))->Type(), B_MODAL_WINDOW);
    fWindow.Click(20, 20);
    inject_text("x");
    inject_window_close(fWindow.X(5), fWindow.Y(5));
    auto* modal = reinterpret_cast<BWindow*>(GetAdress(other));
    EXPECT_TRUE(eventually([&] { return modal->IsActive() && !Platform()->IsActive(); }));
    ActivateWindow(fWindow);
    BlockWindow(other, 0);
    EXPECT_EQ(modal->Type(), B_TITLED_WINDOW);
    EXPECT_EQ(sPresses + sKeys, 0);
    fWindow.Click(20, 20);
    inject_text("x");
    EXPECT_TRUE(eventually([] { return sPresses == 1 && sKeys == 1; }));
    EXPECT_TRUE(IsOpenedWindow(fWindow));
}

TEST_F(WindowOperations, AHiddenModalWindowBlocksNothing)
{
    TestWindow other(400, 120);
    sPresses = 0;
    fWindow.Handle(PLINTH_MOUSE_DOWN, count_press);
    BlockWindow(other, 1);
    HideWindow(other);
    fWindow.Click(20, 20);
    EXPECT_TRUE(eventually([] { return sPresses == 1; }));
}

TEST_F(WindowOperations, WorkspacesAreASetOfBits)
{
    EXPECT_EQ(GetWorkspaceWin(fWindow), 0xFFFFFFFFu);
    SetWorkspaceWin(fWindow, 6);
    EXPECT_EQ(GetWorkspaceWin(fWindow), 6u);
    SetWorkspaceWin(fWindow, 0);
    EXPECT_EQ(GetWorkspaceWin(fWindow), 1u << GetCurrentWorkspace()) << "the current one";
    SetWorkspaceWin(fWindow, 0xFFFFFFFF);
    EXPECT_EQ(GetWorkspaceWin(fWindow), 0xFFFFFFFFu);
}

TEST_F(WindowOperations, WorkspacesAreCountedFromOneAndNumberedFromZero)
{
    ASSERT_EQ(CountWorkspace(), 4);
    SetMaxWorkspace(7);
    EXPECT_EQ(CountWorkspace(), 7);
    for (int32_t none : {0, 33, -1, INT32_MAX, INT32_MIN})
        SetMaxWorkspace(none);
    EXPECT_EQ(CountWorkspace(), 7);
    SetCurrentWorkspace(6);
    EXPECT_EQ(GetCurrentWorkspace(), 6);
    for (int32_t none : {7, 33, -1, INT32_MAX, INT32_MIN})
        SetCurrentWorkspace(none);
    EXPECT_EQ(GetCurrentWorkspace(), 6);
    SetCurrentWorkspace(0);
    SetMaxWorkspace(4);
    EXPECT_EQ(CountWorkspace(), 4);
}

TEST_F(WindowOperations, TheDefaultWindowIsHandedOn)
{
    int32_t other = OpenWindow(400, 120, 50, 50);
    SetWindowDefault(other);
    EXPECT_EQ(GetWindowDefault(), other);
    SetWindowDefault(0);
    SetWindowDefault(-1);
    EXPECT_EQ(GetWindowDefault(), other);
    CloseWindow(other);
    EXPECT_NE(GetWindowDefault(), other);
    EXPECT_TRUE(IsOpenedWindow(GetWindowDefault())) << "the oldest one";
}

TEST_F(WindowOperations, HandlersOfAnotherThreadMayCloseTheWindow)
{
    const struct {
        int32_t slot;
        void* handler;
        void (*call)(int32_t);
    } table[] = {
        {PLINTH_SHOWN, reinterpret_cast<void*>(close_it), ShowWindow},
        {PLINTH_HIDDEN, reinterpret_cast<void*>(close_it), HideWindow},
        {PLINTH_MINIMIZED, reinterpret_cast<void*>(close_it_minimized),
         [](int32_t window) { Iconifie(window, 1); }},
    };
    for (const auto& row : table) {
        sToClose = OpenWindow(400, 120, 50, 50);
        SetHandlerForWindow(sToClose, row.slot, row.handler);
        row.call(sToClose);
        EXPECT_FALSE(IsOpenedWindow(sToClose)) << row.slot;
    }
}

TEST_F(WindowOperations, UnknownWindowsHaveNothing)
{
    const int32_t font = OpenFont(nullptr, nullptr, 12);
    for (int32_t none : {0, -1, INT32_MIN, INT32_MAX, font}) {
        MoveWindow(none, 1, 1);
        ChangeWindow(none, 1, 1);
        ChangeWidthWindow(none, 1);
        ChangeHeightWindow(none, 1);
        CenterWindow(none);
        SetMinSize(none, 1, 1);
        SetMaxSize(none, 1, 1);
        SetWindowTitle(none, "none");
        ShowWindow(none);
        HideWindow(none);
        ActivateWindow(none);
        Iconifie(none, 1);
        BlockWindow(none, 1);
        SetWindowLook(none, 1);
        SetWorkspaceWin(none, 1);
        SetWindowDefault(none);
        for (auto* allow : {WindowResizable, WindowMovable, WindowClosable, WindowZoomable,
                            WindowMinimizable, WindowResizeMode})
            allow(none, 0);
        EXPECT_EQ(place_of(none), (Place{0, 0, 0, 0}));
        EXPECT_STREQ(GetWindowTitle(none), "");
        EXPECT_FALSE(IsOpenedWindow(none) || IsVisibleWindow(none));
        EXPECT_EQ(GetWorkspaceWin(none), 0u);
        EXPECT_EQ(GetAdress(none), 0);
    }
    CloseFont(font);
    EXPECT_EQ(place_of(fWindow), (Place{100, 120, 199, 149}));
}

namespace {

std::atomic<int32_t> sActions;
int32_t count_action()
{
    sActions++;
    return 0;
}

int32_t gadget_in(int32_t window, int32_t kind, int32_t top)
{
    const int32_t ident = CreateGadget(kind, window, 10, top, 80, 30, "text", 0);
    SetHandlerForGadget(ident, PLINTH_GADGET_ACTION, reinterpret_cast<void*>(count_action));
    return ident;
}

void press_enter()
{
    inject_key(0x47, true);
    inject_key(0x47, false);
}

}  // namespace

TEST_F(WindowOperations, EnterGoesToTheDefaultGadgetOfAnyKind)
{
    sActions = sKeys = 0;
    fWindow.Handle(PLINTH_KEY, count_key);
    const int32_t button = gadget_in(fWindow, PLINTH_BUTTON, 10);
    const int32_t box = gadget_in(fWindow, PLINTH_CHECK_BOX, 50);
    const int32_t text = gadget_in(fWindow, PLINTH_TEXT_LABEL, 90);
    ActivateWindow(fWindow);
    EXPECT_TRUE(eventually([&] { return Platform()->IsActive(); }));
    SetDefaultButton(fWindow, button);
    EXPECT_TRUE(Platform()->DefaultButton()->IsDefault());
    press_enter();
    EXPECT_TRUE(eventually([] { return sActions == 1; }));
    SetDefaultButton(fWindow, box);
    EXPECT_FALSE(GetChecked(box));
    press_enter();
    EXPECT_TRUE(eventually([&] { return GetChecked(box); }));
    SetDefaultButton(fWindow, text);  // has no use for it
    press_enter();
    inject_text("x");
    EXPECT_TRUE(eventually([] { return sKeys == 1; }));
    SetDefaultButton(fWindow, button);
    press_enter();
    EXPECT_TRUE(eventually([] { return sActions == 2; }));
    KillGadget(fWindow, button);
    EXPECT_TRUE(eventually([&] { return Platform()->DefaultButton() == nullptr; }));
    press_enter();
    inject_text("x");
    EXPECT_TRUE(eventually([] { return sKeys == 3; })) << "Enter is a key like others";
    EXPECT_EQ(sActions, 2);
}

TEST_F(WindowOperations, AGadgetOfEachKindCanBeTheDefault)
{
    int32_t made = 0;
    for (int32_t kind = 1; kind <= 46; kind++) {
        SCOPED_TRACE(kind);
        TestWindow window(400, 120, 200, 150);
        const int32_t gadget = CreateGadget(kind, window, 10, 10, 80, 30, nullptr, 0);
        auto* platform = reinterpret_cast<BWindow*>(GetAdress(window));
        ActivateWindow(window);
        SetDefaultButton(window, gadget);
        const bool has_view = gadget != 0 && platform->DefaultButton() != nullptr;
        EXPECT_EQ(has_view, gadget != 0);
        made += has_view;
        press_enter();
        SetDefaultButton(window, gadget);
        KillGadget(window, gadget);
        press_enter();
        EXPECT_TRUE(eventually([&] { return platform->DefaultButton() == nullptr; }));
    }
    EXPECT_GT(made, 30);
}

TEST_F(WindowOperations, DefaultGadgetsAreThoseOfTheWindow)
{
    TestWindow other(400, 120);
    const int32_t button = gadget_in(fWindow, PLINTH_BUTTON, 10);
    const int32_t stranger = gadget_in(other, PLINTH_BUTTON, 10);
    const int32_t loose = gadget_in(-1, PLINTH_BUTTON, 10);
    for (int32_t none : {stranger, loose, 0, -1, INT32_MIN, static_cast<int32_t>(fWindow)})
        SetDefaultButton(fWindow, none);
    SetDefaultButton(0, button);
    SetDefaultButton(button, button);
    EXPECT_EQ(Platform()->DefaultButton(), nullptr);
    SetDefaultButton(fWindow, button);
    EXPECT_NE(Platform()->DefaultButton(), nullptr);
    KillGadget(-1, loose);
}

TEST(Cursor, TakesBothShapes)
{
    SetCursor(1);
    SetCursor(0);
    SetCursor(INT32_MIN);
}
