#ifndef WINDOWS_WINDOW_ACCESS_H
#define WINDOWS_WINDOW_ACCESS_H

// A program's window for one exported call: found by its ident, locked with its bitmap as long as
// this lives, refreshed at its end.
//
//     extern "C" void SetWindowTitle(int32_t ident, const char* title)
//     {
//         on_window(ident, __func__, [=](WindowAccess& window) { window->SetTitle(title); });
//     }

#include "runtime/guarded.h"
#include "windows/window.h"

#include <Rect.h>

class [[nodiscard]] WindowAccess {
public:
    WindowAccess() = default;
    // `call` names the exported function for the trace of an ident that is no window's; null: no
    // trace.
    WindowAccess(int32_t ident, const char* call);
    // The window that a target of -1 draws into; none before SetDefaultGfx.
    static WindowAccess ToDefaultOutput() { return WindowAccess(lock_default_output()); }
    ~WindowAccess()
    {
        if (fWindow != nullptr)
            fWindow->MyUpdate(fTouched, fRefresh);
    }
    WindowAccess(const WindowAccess&) = delete;
    WindowAccess& operator=(const WindowAccess&) = delete;

    // False if there is no such window, or it went before it could be locked.
    explicit operator bool() const { return fWindow != nullptr; }
    MyWinClass* operator->() const { return fWindow; }
    MyWinClass* Window() const { return fWindow; }
    WindowRecord& Record() const { return *fWindow->fRecord; }

    // Has the rectangle (of the bitmap, and of the top view) drawn to the screen soon, while the
    // window's refresh mode is on.
    void Refresh(BRect touched)
    {
        fTouched = fRefresh ? fTouched | touched : touched;
        fRefresh = true;
    }

private:
    explicit WindowAccess(MyWinClass* locked) : fWindow(locked) {}

    MyWinClass* fWindow = nullptr;
    BRect fTouched;
    bool fRefresh = false;
};

// The frame of the calls on windows: finds the window, acts, gives it back. Does nothing if there
// is no such window, and stops where memory fails.
template <class Act>
void on_window(int32_t ident, const char* call, Act act)
{
    guarded([&] {
        if (WindowAccess window(ident, call); window)
            act(window);
    });
}

// The same for calls with a result, which is `failed` then.
template <class Result, class Ask>
Result ask_window(int32_t ident, const char* call, Result failed, Ask ask)
{
    return guarded(failed, [&]() -> Result {
        WindowAccess window(ident, call);
        return window ? ask(window) : failed;
    });
}

#endif  // WINDOWS_WINDOW_ACCESS_H
