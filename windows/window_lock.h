#ifndef WINDOWS_WINDOW_LOCK_H
#define WINDOWS_WINDOW_LOCK_H

// Locking a window for one call.

class BView;
class BWindow;

// Locks a window that may be gone; false, and nothing locked, if it is, and where memory fails. Any
// thread.
bool lock_window(BWindow* window);

// Holds a window, or that of a view; gives back only a lock that it got.
class [[nodiscard]] WindowLock {
public:
    WindowLock() = default;
    explicit WindowLock(BWindow* window);
    explicit WindowLock(const BView* view);
    ~WindowLock();
    WindowLock(WindowLock&& other) noexcept;
    WindowLock& operator=(WindowLock&& other) noexcept;

    bool Held() const { return fWindow != nullptr; }

private:
    BWindow* fWindow = nullptr;  // null: not held
};

#endif  // WINDOWS_WINDOW_LOCK_H
