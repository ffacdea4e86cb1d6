// Window operations and menus whose memory fails.

#include "memory/support/failing_memory.h"

#include <functional>
#include <string>
#include <vector>

namespace {

const char* const kMenus[] = {
    "t*00000000File",
    "i*00000101Open",
    "x*00000000More",
    "e*0000104xxxOne",
    "s*0000105xxxTwo",
    "i*00010106Mark",
    "-",
    "q",
    nullptr,
};

const char* const kPopUp[] = {"i*00000301Cut", "i*00000302Paste", "q", nullptr};

TEST_F(FailingMemory, WindowOperationsGoOn)
{
    TestWindow window;
    TestWindow other(300, 300);
    const std::vector<std::function<void()>> calls = {
        [&] { MoveWindow(window, 50, 60); },
        [&] { ChangeWindow(window, 150, 120); },
        [&] { ChangeWidthWindow(window, 140); },
        [&] { ChangeHeightWindow(window, 130); },
        [&] { CenterWindow(window); },
        [&] { GetWindowPosition(window, 2); },
        [&] { SetMinSize(window, 20, 20); },
        [&] { SetMaxSize(window, 500, 500); },
        [&] { SetWindowTitle(window, "A title that is too long to be kept in any small buffer"); },
        [&] { GetWindowTitle(window); },
        [&] { HideWindow(window); },
        [&] { ShowWindow(window); },
        [&] { ActivateWindow(window); },
        [&] { Iconifie(window, 1); },
        [&] { Iconifie(window, 0); },
        [&] { IsOpenedWindow(window); },
        [&] { IsVisibleWindow(window); },
        [&] { BlockWindow(window, 1); },
        [&] { BlockWindow(window, 0); },
        [&] { SetWindowLook(window, 3); },
        [&] { WindowResizable(window, 0); },
        [&] { WindowMovable(window, 0); },
        [&] { WindowClosable(window, 0); },
        [&] { WindowZoomable(window, 0); },
        [&] { WindowMinimizable(window, 0); },
        [&] { WindowResizeMode(window, 0); },
        [&] { GetWorkspaceWin(window); },
        [&] { SetWorkspaceWin(window, 1); },
        [&] { SetMaxWorkspace(4); },
        [&] { SetCurrentWorkspace(0); },
        [&] { GetCurrentWorkspace(); },
        [&] { CountWorkspace(); },
        [&] { SetWindowDefault(window); },
        [&] { GetWindowDefault(); },
        [&] { SetCursor(1); },
        [&] { SetCursor(0); },
        [&] { SetTimerStart(window, 1); },
        [&] { SetTimerCount(window, 5); },
        [&] { SetTimerStart(window, 0); },
        [&] { SetHandlerForWindow(window, PLINTH_KEY, nullptr); },
    };
    for (const auto& call : calls)
        with_each_failing(call);
    SetWindowTitle(window, "at last");
    EXPECT_STREQ(GetWindowTitle(window), "at last");
    MoveWindow(window, 70, 80);
    EXPECT_EQ(GetWindowPosition(window, 0), 70);
    EXPECT_TRUE(is_window_ident(other));
}

TEST_F(FailingMemory, WindowsCloseAllTheSame)
{
    for (int before = 0; before < 60; before++) {
        const int32_t window = OpenWindow(100, 100, 50, 50);
        fail_after(before);
        CloseWindow(window);
        stop_failing();
        CloseWindow(window);  // if it could not
        EXPECT_FALSE(is_window_ident(window)) << before;
    }
}

TEST_F(FailingMemory, MenusAreWholeOrNone)
{
    TestWindow window;
    with_each_failing([&] {
        const int32_t menu = CreateMenu(kMenus);
        EXPECT_TRUE(menu != 0 || has_failed());
        const int32_t pop_up = CreatePopUpMenu(kPopUp);
        EXPECT_TRUE(pop_up != 0 || has_failed());
        stop_failing();
        KillMenu(menu);
        KillMenu(pop_up);
    });
    const int32_t menu = CreateMenu(kMenus);
    const int32_t pop_up = CreatePopUpMenu(kPopUp);
    with_each_failing([&] {
        const int32_t attached = AttachMenuToWin(window, menu);
        EXPECT_TRUE(attached != 0 || has_failed());
        RemoveMenu(window);
        stop_failing();
        RemoveMenu(window);
    });
    ASSERT_EQ(AttachMenuToWin(window, menu), 1);
    const std::vector<std::function<void()>> calls = {
        [&] { SetCheckedLabel(window, 106, 1); },
        [&] { SetEnableLabel(window, 101, 1); },
        [&] { SetNameLabel(window, 101, "A label that is too long to be kept in a small buffer"); },
        [&] { AttachMenuToWin(window, menu); },
        [&] { AttachPopUpToWindow(window, pop_up); },
        [&] { AttachPopUpToWindow(window, 0); },
        [&] { RemoveMenu(window); },
    };
    for (const auto& call : calls)
        with_each_failing(call);
    RemoveMenu(window);
    EXPECT_EQ(AttachMenuToWin(window, menu), 1);
    RemoveMenu(window);
    with_each_failing([&] { KillMenu(menu); });
    KillMenu(pop_up);
    EXPECT_EQ(AttachMenuToWin(window, menu), 0);
}

}  // namespace
