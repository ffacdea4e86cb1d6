// The clock as a program reads and sets it. The kit's clock is replaced: nothing here sets the
// machine's.

#include <plinth.h>

#include <OS.h>

#include "kernel/HostActions.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <ctime>
#include <string>

namespace {

const int64_t kNotSet = INT64_MIN;
int64_t sNow;  // seconds since 1970
int64_t sSet;  // what the clock was set to

// A clock that stands still, in a time zone of the test's choice.
class Clock : public testing::Test {
protected:
    Clock() : fSaved(BPrivate::host_actions())
    {
        BPrivate::HostActions& actions = BPrivate::host_actions();
        actions.read_clock = [] { return static_cast<bigtime_t>(sNow) * 1000000 + 250; };
        actions.set_clock = [](unsigned long seconds) {
            sSet = static_cast<int64_t>(seconds);
            return -1;  // the system refuses, and nobody shall notice
        };
        sSet = kNotSet;
        Zone("UTC");
    }
    ~Clock() override
    {
        BPrivate::host_actions() = fSaved;
        SetFormatDate(1);
    }
    static void Zone(const char* name)
    {
        setenv("TZ", name, 1);
        tzset();
    }
    static int64_t At(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
    {
        struct tm time = {};
        time.tm_year = year - 1900;
        time.tm_mon = month - 1;
        time.tm_mday = day;
        time.tm_hour = hour;
        time.tm_min = minute;
        time.tm_sec = second;
        time.tm_isdst = -1;
        return mktime(&time);
    }

private:
    BPrivate::HostActions fSaved;
};

}  // namespace

TEST_F(Clock, TellsDateAndTimeAsText)
{
    sNow = At(2001, 3, 5, 7, 8, 9);
    EXPECT_STREQ("05/03/2001", GetDate());
    EXPECT_STREQ("07:08:09", GetTime());
    SetFormatDate(0);
    EXPECT_STREQ("03/05/2001", GetDate());
    SetFormatDate(2);
    EXPECT_STREQ("03/05/2001", GetDate());
    SetFormatDate(1);
    EXPECT_STREQ("05/03/2001", GetDate());
    sNow = At(12345, 12, 31);  // a fifth digit is not cut off
    EXPECT_STREQ("31/12/12345", GetDate());
}

TEST_F(Clock, TellsPartsOfLocalTime)
{
    sNow = At(2001, 3, 4, 23, 30, 59);  // a Sunday
    const int32_t parts[] = {4, 3, 101, 23, 30, 59, 0};
    for (int32_t i = 0; i < 7; i++)
        EXPECT_EQ(parts[i], GetInfoTime(i)) << i;
    for (int32_t selector : {7, -1, INT_MAX, INT_MIN})
        EXPECT_EQ(0, GetInfoTime(selector));
    Zone("XYZ-2");  // two hours east: Monday already
    const int32_t local[] = {5, 3, 101, 1, 30, 59, 1};
    for (int32_t i = 0; i < 7; i++)
        EXPECT_EQ(local[i], GetInfoTime(i)) << i;
}

TEST_F(Clock, KeptYearsCountFrom1900)
{
    sNow = At(2005, 6, 1);
    EXPECT_EQ(105, GetInfoTime(2));
    sNow = At(1999, 6, 1);
    EXPECT_EQ(99, GetInfoTime(2));
}

TEST_F(Clock, SetsTimeAndDateKeepingTheOther)
{
    sNow = At(1999, 12, 31, 10, 20, 30);
    EXPECT_TRUE(SetTime(23, 59, 58));
    EXPECT_EQ(At(1999, 12, 31, 23, 59, 58), sSet);
    EXPECT_TRUE(SetDate(2004, 2, 29));
    EXPECT_EQ(At(2004, 2, 29, 10, 20, 30), sSet);
    EXPECT_TRUE(SetDate(2000, 2, 30));
    EXPECT_EQ(At(2000, 3, 1, 10, 20, 30), sSet);
    EXPECT_TRUE(SetTime(-1, 0, 60));
    EXPECT_EQ(At(1999, 12, 30, 23, 1, 0), sSet);
}

TEST_F(Clock, DateOfTheOtherSeasonKeepsTheHour)
{
    Zone("STD-1DST,M3.5.0,M10.5.0");
    sNow = At(2020, 1, 15, 12, 0, 0);
    EXPECT_TRUE(SetDate(2020, 7, 15));
    EXPECT_EQ(At(2020, 7, 15, 12, 0, 0), sSet);
    EXPECT_EQ(sNow + (182 * 24 - 1) * 3600, sSet);
}

TEST_F(Clock, RefusesTimesThatDoNotExist)
{
    sNow = At(2001, 1, 1);
    EXPECT_FALSE(SetDate(INT_MIN, 1, 1));
    EXPECT_FALSE(SetDate(2001, INT_MIN, 1));
    EXPECT_FALSE(SetDate(INT_MAX, INT_MAX, INT_MAX));
    sNow = -100;  // the last second before 1970 is mktime's sign of failure
    EXPECT_FALSE(SetTime(23, 59, 59));
    EXPECT_EQ(kNotSet, sSet);
}

TEST_F(Clock, TicksComeFromTheClockAndFromTheStart)
{
    sNow = At(2001, 3, 5);
    EXPECT_EQ(sNow * 1000000 + 250, GetTicks(0));
    const int64_t before = system_time();
    const int64_t ticks = GetTicks(1);
    EXPECT_GE(ticks, before);
    EXPECT_LE(ticks, system_time());
    EXPECT_GE(GetTicks(255), ticks);
}

TEST(Waiting, TakesAtLeastTheTimeAskedAndNoneForLessThanOne)
{
    int64_t start = GetTicks(1);
    WaitTicks(20000);
    EXPECT_GE(GetTicks(1) - start, 20000);
    start = GetTicks(1);
    for (int32_t none : {0, -1, INT_MIN}) {
        WaitTicks(none);
        WaitSecs(none);
    }
    EXPECT_LT(GetTicks(1) - start, 20000000);
}

TEST(Waiting, KeptSecondsOverflowTo32Bits)
{
    const int64_t start = GetTicks(1);
    WaitSecs(2148);  // negative: no pause
    WaitSecs(4294);
    WaitSecs(INT_MAX);  // the product's low half is negative too
    EXPECT_LT(GetTicks(1) - start, 20000000);
    WaitSecs(4295);  // 4295000000 less 2 to the 32nd
    EXPECT_GE(GetTicks(1) - start, 32704);
    EXPECT_LT(GetTicks(1) - start, 20000000);
}

TEST(ClearScreen, WritesItsSequencesAtOnce)
{
    testing::internal::CaptureStdout();
    ClearScreen();
    EXPECT_EQ("\033[H\033[J", testing::internal::GetCapturedStdout());
}
