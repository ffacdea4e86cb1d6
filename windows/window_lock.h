#ifndef WINDOWS_WINDOW_LOCK_H
#define WINDOWS_WINDOW_LOCK_H

// Locking a window for one call.

#include <Window.h>

// Locks a window that may be gone; false, and nothing locked, if it is, and where memory fails. Any
// thread.
bool lock_window(BWindow* window);

// Holds a window, or that of a view; gives back only a lock that it got.
class [[nodiscard]] WindowLock {
public:
    WindowLock() = default;
    explicit WindowLock(BWindow* window);
    explicit WindowLock(const BView* view);
    ~WindowLock()
    {
        if (fWindow != nullptr)
            fWindow->Unlock();
    }
    WindowLock(WindowLock&& other) noexcept;
    WindowLock& operator=(WindowLock&& other) noexcept;

    // Takes a window only if that is free; for one that holds nothing.
    bool Try(BWindow* window)
    {
        fWindow = window->LockWithTimeout(0) == B_OK ? window : nullptr;
        return fWindow != nullptr;
    }
    bool Held() const { return fWindow != nullptr; }

private:
    BWindow* fWindow = nullptr;  // null: not held
};

#endif  // WINDOWS_WINDOW_LOCK_H
