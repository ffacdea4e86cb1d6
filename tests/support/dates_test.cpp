// Dates in words and numbers, and the bell.

#include <Beep.h>
#include <parsedate.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

namespace {

// Friday, 10 March 2000, 15:30:45, in a zone without summer time.
class Dates : public testing::Test {
protected:
    void SetUp() override
    {
        setenv("TZ", "XST-1", 1);
        tzset();
        struct tm date = {};
        date.tm_year = 100;
        date.tm_mon = 2;
        date.tm_mday = 10;
        date.tm_hour = 15;
        date.tm_min = 30;
        date.tm_sec = 45;
        fNow = mktime(&date);
    }
    void TearDown() override
    {
        unsetenv("TZ");
        tzset();
    }
    // Local time, "-" for what is no date.
    std::string Read(const char* text) const
    {
        const time_t time = parsedate(text, fNow);
        if (time == -1)
            return "-";
        struct tm date;
        localtime_r(&time, &date);
        char line[40];
        strftime(line, sizeof(line), "%Y-%m-%d %H:%M:%S", &date);
        return line;
    }

    time_t fNow = 0;
};

struct Row {
    const char* text;
    const char* date;
};

}  // namespace

TEST_F(Dates, FormsOfAllKinds)
{
    for (const Row& row : {
             Row{"25 Dec 1999 17:30", "1999-12-25 17:30:00"},
             {"Sat, 25 Dec 1999 17:30:05 +0100", "1999-12-25 17:30:05"},
             {"Sat, 25 Dec 1999 17:30:05 GMT", "1999-12-25 18:30:05"},
             {"25-Dec-99", "1999-12-25 00:00:00"},
             {"December 25th, 2001", "2001-12-25 00:00:00"},
             {"Dec 25", "2000-12-25 00:00:00"},
             {"Sat Dec 25 17:30:05 1999", "1999-12-25 17:30:05"},
             {"1999-12-25T17:30:00Z", "1999-12-25 18:30:00"},
             {"1999-12-25 17:30", "1999-12-25 17:30:00"},
             {"12/25/99", "1999-12-25 00:00:00"},
             {"12/25/04 5:07 pm", "2004-12-25 17:07:00"},
             {"25.12.1999 07:08:09", "1999-12-25 07:08:09"},
             {"12 am", "2000-03-10 00:00:00"},
             {"12pm", "2000-03-10 12:00:00"},
             {"17:30", "2000-03-10 17:30:00"},
             {"sunday", "2000-03-12 00:00:00"},
             {"fri 8:00", "2000-03-10 08:00:00"},
             {"May 2003", "2003-05-01 00:00:00"},
         })
        EXPECT_EQ(row.date, Read(row.text)) << row.text;
}

TEST_F(Dates, CountFromNow)
{
    for (const Row& row : {
             Row{"now", "2000-03-10 15:30:45"},
             {"today", "2000-03-10 00:00:00"},
             {"Yesterday", "2000-03-09 00:00:00"},
             {"tomorrow 10:15", "2000-03-11 10:15:00"},
             {"next monday", "2000-03-13 00:00:00"},
             {"next friday", "2000-03-17 00:00:00"},
             {"last friday", "2000-03-03 00:00:00"},
             {"last monday 7 am", "2000-03-06 07:00:00"},
             {"next week", "2000-03-17 15:30:45"},
             {"last year", "1999-03-10 15:30:45"},
             {"5 minutes ago", "2000-03-10 15:25:45"},
             {"in 2 days", "2000-03-12 15:30:45"},
             {"-1 month", "2000-02-10 15:30:45"},
             {"3 hours", "2000-03-10 18:30:45"},
         })
        EXPECT_EQ(row.date, Read(row.text)) << row.text;
}

TEST_F(Dates, OthersAreNone)
{
    for (const char* text :
         {"", " ", "soon", "32 Jan 2000", "30 Feb 2000", "25:00", "13/13/2000", "1 2 3", "next",
          "5 apples ago", "12/25/99 x", "99999999999999999999", "0 am", "13 pm"})
        EXPECT_EQ("-", Read(text)) << text;
    EXPECT_EQ(-1, parsedate(nullptr, fNow));
    EXPECT_EQ(-1, parsedate(std::string(100000, '1').c_str(), fNow));
}

TEST_F(Dates, FlagsTellWhatCounts)
{
    int flags = 0;
    parsedate_etc("25 Dec 1999", fNow, &flags);
    EXPECT_EQ(0, flags);
    parsedate_etc("tomorrow", fNow, &flags);
    EXPECT_EQ(PARSEDATE_DAY_RELATIVE_TIME, flags);
    parsedate_etc("5 minutes ago", fNow, &flags);
    EXPECT_EQ(PARSEDATE_MINUTE_RELATIVE_TIME, flags);
    EXPECT_EQ(-1, parsedate_etc("no date", fNow, &flags));
    EXPECT_EQ(PARSEDATE_INVALID_DATE, flags);
}

TEST_F(Dates, FormsCanBeReplaced)
{
    const char* forms[] = {"d/m/Y [T]", nullptr};
    set_dateformats(forms);
    EXPECT_EQ(forms, get_dateformats());
    EXPECT_EQ("1999-12-25 00:00:00", Read("25/12/1999"));
    EXPECT_EQ("-", Read("12/25/1999"));
    set_dateformats(nullptr);
    EXPECT_EQ("1999-12-25 00:00:00", Read("12/25/1999"));
}

TEST(Beep, OnlyKnownEventsHaveASound)
{
    unsetenv("DISPLAY");
    EXPECT_EQ(B_ERROR, beep()) << "there is no desktop";
    EXPECT_EQ(B_BAD_VALUE, system_beep(nullptr));
    EXPECT_EQ(B_BAD_VALUE, add_system_beep_event(""));
    EXPECT_EQ(B_NAME_NOT_FOUND, system_beep("Test event"));
    EXPECT_EQ(B_OK, add_system_beep_event("Test event"));
    EXPECT_EQ(B_ERROR, system_beep("Test event"));
    EXPECT_EQ(B_ERROR, system_beep("Startup"));
}
