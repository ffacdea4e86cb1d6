#ifndef TESTS_SUPPORT_PROGRAM_H
#define TESTS_SUPPORT_PROGRAM_H

// What tests of the library do as a program and as its user: windows, input, and waiting.

#include <Injection.h>
#include <OS.h>
#include <plinth.h>

#include <atomic>
#include <functional>

// The table of the registry that all tests share.
extern void** gRegistry;

// True as soon as `claim` holds, false if it does not within `timeout_us`: only a fault reaches it.
inline bool eventually(const std::function<bool()>& claim, bigtime_t timeout_us = 20'000'000)
{
    const bigtime_t deadline = system_time() + timeout_us;
    while (!claim()) {
        if (system_time() > deadline)
            return false;
        snooze(500);
    }
    return true;
}

// A window of the program, closed with the test. Its content begins at (left, top).
class TestWindow {
public:
    explicit TestWindow(int32_t left = 100, int32_t top = 100, int32_t width = 199,
                        int32_t height = 149)
        : fLeft(left), fTop(top), fIdent(OpenWindow(left, top, width, height))
    {
    }
    ~TestWindow() { CloseWindow(fIdent); }

    int32_t Ident() const { return fIdent; }
    operator int32_t() const { return fIdent; }

    template <class Handler>
    void Handle(int32_t slot, Handler* handler)
    {
        SetHandlerForWindow(fIdent, slot, reinterpret_cast<void*>(handler));
    }

    void Point(int32_t x, int32_t y) { inject_pointer(X(x), Y(y)); }
    void Click(int32_t x, int32_t y, int32_t button = 1)
    {
        Point(x, y);
        inject_button(button, true);
        inject_button(button, false);
    }
    float X(int32_t x) const { return static_cast<float>(fLeft + x); }
    float Y(int32_t y) const { return static_cast<float>(fTop + y); }

private:
    int32_t fLeft, fTop, fIdent;
};

#endif  // TESTS_SUPPORT_PROGRAM_H
