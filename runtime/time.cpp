// The clock, the date and time as text, and pauses. Main thread, but for the pauses.

#include "plinth.h"
#include "runtime/trace.h"

#include <OS.h>

#include <stdio.h>
#include <time.h>

static const size_t kTextSize = 64;
static const uint8_t kDayFirst = 1;

static uint8_t fmt_date = kDayFirst;  // main thread

static bool local_time(struct tm* now)
{
    const time_t seconds = static_cast<time_t>(real_time_clock());
    return localtime_r(&seconds, now) != nullptr;
}

// Sets the clock to a local time whose fields may lie outside their ranges.
static bool set_clock(struct tm* wanted, const char* call)
{
    wanted->tm_isdst = -1;  // the season is that of the new date
    const time_t seconds = mktime(wanted);
    if (seconds == -1) {
        show_dbg(kBadArgument, 0, call);
        return false;
    }
    set_real_time_clock(static_cast<unsigned long>(seconds));
    return true;
}

extern "C" bool SetTime(int32_t hour, int32_t minute, int32_t second)
{
    struct tm wanted;
    if (!local_time(&wanted))
        return false;
    wanted.tm_hour = hour;
    wanted.tm_min = minute;
    wanted.tm_sec = second;
    return set_clock(&wanted, __func__);
}

extern "C" bool SetDate(int32_t year, int32_t month, int32_t day)
{
    struct tm wanted;
    if (!local_time(&wanted))
        return false;
    if (__builtin_sub_overflow(year, 1900, &wanted.tm_year) ||
        __builtin_sub_overflow(month, 1, &wanted.tm_mon)) {
        show_dbg(kBadArgument, 0, __func__);
        return false;
    }
    wanted.tm_mday = day;
    return set_clock(&wanted, __func__);
}

extern "C" int32_t GetInfoTime(int32_t selector)
{
    struct tm now;
    if (!local_time(&now))
        return 0;
    switch (selector) {
        case 0:
            return now.tm_mday;
        case 1:
            return now.tm_mon + 1;
        case 2:
            return now.tm_year;  // kept on purpose: counted from 1900
        case 3:
            return now.tm_hour;
        case 4:
            return now.tm_min;
        case 5:
            return now.tm_sec;
        case 6:
            return now.tm_wday;
        default:
            return 0;
    }
}

extern "C" char* GetDate(void)
{
    static char text[kTextSize];
    text[0] = '\0';
    struct tm now;
    if (!local_time(&now))
        return text;
    const bool day_first = fmt_date == kDayFirst;
    const int month = now.tm_mon + 1;
    snprintf(text, sizeof(text), "%02d/%02d/%04d", day_first ? now.tm_mday : month,
             day_first ? month : now.tm_mday, now.tm_year + 1900);
    return text;
}

extern "C" char* GetTime(void)
{
    static char text[kTextSize];
    text[0] = '\0';
    struct tm now;
    if (!local_time(&now))
        return text;
    strftime(text, sizeof(text), "%H:%M:%S", &now);
    return text;
}

extern "C" void SetFormatDate(uint8_t day_first) { fmt_date = day_first; }

extern "C" int64_t GetTicks(uint8_t since_boot)
{
    return since_boot != 0 ? system_time() : real_time_clock_usecs();
}

extern "C" void WaitTicks(int32_t duration_us)
{
    if (duration_us >= 1)
        snooze(duration_us);
}

extern "C" void WaitSecs(int32_t seconds)
{
    if (seconds < 1)
        return;
    // Kept on purpose: the product has 32 bits, so that 2148 seconds are negative and no pause.
    snooze(static_cast<int32_t>(static_cast<uint32_t>(seconds) * 1000000u));
}

extern "C" void ClearScreen(void)
{
    fputs("\033[H\033[J", stdout);
    fflush(stdout);  // a terminal shows a line only at its end
}
