#ifndef TESTS_SUPPORT_CLICK_INTERVAL_H
#define TESTS_SUPPORT_CLICK_INTERVAL_H

#include <InterfaceDefs.h>
#include <OS.h>

// How far apart in time two clicks are still one run of them, while the object lives: an hour, for
// tests whose machine may be slow between two clicks, or what a test says.
class ClickInterval {
public:
    explicit ClickInterval(bigtime_t speed = 3'600'000'000)
    {
        get_click_speed(&fFormer);
        set_click_speed(speed);
    }
    ~ClickInterval() { set_click_speed(fFormer); }
    ClickInterval(const ClickInterval&) = delete;

private:
    bigtime_t fFormer = 500'000;
};

#endif  // TESTS_SUPPORT_CLICK_INTERVAL_H
