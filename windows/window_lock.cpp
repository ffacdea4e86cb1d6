// Locks of windows. Any thread.

#include "windows/window_lock.h"

#include <View.h>
#include <Window.h>

#include <utility>

bool lock_window(BWindow* window) { return window != nullptr && window->Lock(); }

WindowLock::WindowLock(BWindow* window) : fWindow(lock_window(window) ? window : nullptr) {}

WindowLock::WindowLock(const BView* view) : WindowLock(view != nullptr ? view->Window() : nullptr)
{
}

WindowLock::~WindowLock()
{
    if (fWindow != nullptr)
        fWindow->Unlock();
}

WindowLock::WindowLock(WindowLock&& other) noexcept : fWindow(std::exchange(other.fWindow, nullptr))
{
}

WindowLock& WindowLock::operator=(WindowLock&& other) noexcept
{
    std::swap(fWindow, other.fWindow);
    return *this;
}
