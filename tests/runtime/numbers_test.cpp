// Numbers to text and back, the numeric functions, console output and sorting.

#include <plinth.h>

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

static const double kInfinity = std::numeric_limits<double>::infinity();
static const double kNaN = std::numeric_limits<double>::quiet_NaN();

static std::string printed(double x)
{
    fflush(stdout);
    testing::internal::CaptureStdout();
    Print(x);
    fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

TEST(Print, KeptCutAtTheFirstZeroBehindThePoint)
{
    struct {
        double x;
        const char* text;
    } cases[] = {
        {0, "0"},
        {-0.0, "-0"},
        {3.5, "3.5"},
        {1.05, "1"},
        {-2, "-2"},
        {100, "100"},
        {3.14, "3.14"},
        {3.105, "3.1"},
        {2.5, "2.5"},
        {0.123456, "0.123456"},
        {1e-9, "0"},
        {kInfinity, "inf"},
        {-kInfinity, "-inf"},
        {kNaN, "nan"},
    };
    for (auto& c : cases)
        EXPECT_EQ(printed(c.x), c.text);
    char whole[400];
    snprintf(whole, sizeof(whole), "%.0f", 1e308);
    EXPECT_EQ(printed(1e308), whole);
}

TEST(Print, WritesALineEnd)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(Print(12.5), 4);
    WriteCR();
    fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "12.5\n");
}

TEST(Numbers, FloorsAreKeptInSinglePrecision)
{
    EXPECT_EQ(Frac(2.75), 0.75);
    EXPECT_EQ(Frac(-1.25), 0.75);
    EXPECT_EQ(Frac(-0.25), 0.75);
    EXPECT_EQ(Frac(16777217.0), 1.0);
    EXPECT_EQ(Frac(16777219.0), -1.0);
    EXPECT_TRUE(std::isnan(Frac(kInfinity)));
    EXPECT_EQ(Round(2.5), 3);
    EXPECT_EQ(Round(2.49), 2);
    EXPECT_EQ(Round(-2.5), -2);
    EXPECT_EQ(Round(-2.51), -3);
    EXPECT_EQ(Round(16777217.0), 16777217.0);
    EXPECT_TRUE(std::isnan(Round(kNaN)));
    EXPECT_EQ(Sgn(-0.0), 0);
    EXPECT_EQ(Sgn(kNaN), 1);
    EXPECT_EQ(Sgn(-kInfinity), -1);
    EXPECT_EQ(Sgn(1e-300), 1);
}

TEST(Numbers, RandomNumbersStayInTheirRange)
{
    for (int i = 0; i < 200; i++) {
        for (int32_t n : {6, -6, 1, -1, INT32_MAX, INT32_MIN}) {
            double x = Rnd(n);
            EXPECT_EQ(x, std::floor(x));
            EXPECT_GE(x, 0);
            EXPECT_LT(x, std::abs(static_cast<double>(n)));
        }
        EXPECT_GE(Rnd(0), 0);
        EXPECT_LT(Rnd(0), 1);
    }
}

TEST(Sort, KeptWithoutEffect)
{
    const double array[] = {3, 1, 2, -5};
    for (uint32_t type : {0u, 1u, 2u, 3u, 4u, 5u, UINT32_MAX}) {
        double copy[4];
        memcpy(copy, array, sizeof(array));
        Sort(copy, type);
        EXPECT_EQ(memcmp(copy, array, sizeof(array)), 0) << type;
        Sort(nullptr, type);
    }
}

TEST(Conversions, NumbersToText)
{
    EXPECT_STREQ(Str(0.5), "0.5");
    EXPECT_STREQ(Str(1e6), "1e+06");
    EXPECT_STREQ(Str(123456.5), "123456");
    EXPECT_STREQ(Str(-0.0), "-0");
    EXPECT_STREQ(Str(kInfinity), "inf");
    EXPECT_STREQ(Cstr(0.5), "0,5");
    EXPECT_STREQ(Cstr(1.5e100), "1,5e+100");
    EXPECT_STREQ(Cstr(7), "7");
    EXPECT_STREQ(Oct(8), "10");
    EXPECT_STREQ(Oct(UINT32_MAX), "37777777777");
    EXPECT_STREQ(Hex(255), "FF");
    EXPECT_STREQ(Hex(0), "0");
    EXPECT_STREQ(Hex(0xDEADBEEF), "DEADBEEF");
    EXPECT_STREQ(Bin(5), "101");
    EXPECT_STREQ(Bin(0), "0");
    EXPECT_STREQ(Bin(-1), std::string(32, '1').c_str());
    EXPECT_STREQ(Bin(INT32_MAX), std::string(31, '1').c_str());
}

TEST(Conversions, FormatHonoursOneFloatingConversion)
{
    struct {
        const char* format;
        double x;
        const char* text;
    } cases[] = {
        {"%.2f", 2.345, "2.35"},
        {"%.2f", 2.125, "2.12"},
        {"%f", 1, "1.000000"},
        {"<%8.3e>", 12345, "<1.234e+04>"},
        {"%-8g|", 2.5, "2.5     |"},
        {"%+08.1f", 3.14, "+00003.1"},
        {"%.0f%%", 50, "50%"},
        {"%lf", 1, "1.000000"},
        {"%a", 1, "0x1p+0"},
        {"%G", 1e-10, "1E-10"},
        {"%#.0f", 3, "3."},
        {"%s", 1, "%s"},
        {"%n", 1, "%n"},
        {"%d", 1, "%d"},
        {"%f %f", 1, "%f %f"},
        {"%*f", 1, "%*f"},
        {"%1$f", 1, "%1$f"},
        {"%Lf", 1, "%Lf"},
        {"abc", 1, "abc"},
        {"100%", 1, "100%"},
        {"%.2f %", 1, "%.2f %"},
        {"%.2f %s", 1, "%.2f %s"},
        {"%%", 1, "%%"},
        {"", 1, ""},
        {nullptr, 1, ""},
        {"%.2f", kNaN, "nan"},
        {"%F", -kInfinity, "-INF"},
        {"%hf", 1, "%hf"},
        {"%   f", 1, " 1.000000"},
        {"%-----5.1f|", 1, "1.0  |"},
    };
    for (auto& c : cases)
        EXPECT_STREQ(Format(c.x, c.format), c.text) << c.format;
}

// What a huge width or precision leaves of a result is its first 256 characters.
TEST(Conversions, FormatCutsAt256Characters)
{
    const char* const numbers[] = {"%300.2f",      "%-300.2f",     "%0300.2f",    "%.300f",
                                   "%.3000f",      "%5000.4000f",  "%4100.4000f", "%-4100.4000e",
                                   "%#3000.2500g", "%3000.2500g",  "%3000.2500a", "%99999.1f",
                                   "%.2200g|",     "%2300.2200f|", "%260.5e",     "%20.3000e|"};
    std::vector<char> whole(200000);
    for (const char* format : numbers) {
        for (double x : {1.5, -2e300, 1e-300, 0.1, -kInfinity, kNaN}) {
            snprintf(whole.data(), whole.size(), format, x);
            EXPECT_EQ(Format(x, format), std::string(whole.data()).substr(0, 256)) << format;
        }
    }
    EXPECT_EQ(Format(1, "%2147483647f"), std::string(256, ' '));
    EXPECT_EQ(Format(1, "%99999999999999999999f"), std::string(256, ' '));
    EXPECT_EQ(Format(1, "%.99999999999f"), "1." + std::string(254, '0'));
    EXPECT_EQ(Format(1, ("%f" + std::string(1000, 'x')).c_str()),
              "1.000000" + std::string(248, 'x'));
    EXPECT_EQ(Format(1, (std::string(1000, 'x') + "%f").c_str()), std::string(256, 'x'));
}

TEST(Conversions, TextToNumbers)
{
    struct {
        const char* s;
        double x;
    } cases[] = {
        {"1.25", 1.25},
        {"1,25", 1},
        {"  \t\n-3", -3},
        {"+4", 4},
        {"+-4", 0},
        {"", 0},
        {"abc", 0},
        {nullptr, 0},
        {"1e3xyz", 1000},
        {"1e", 1},
        {"1e+", 1},
        {".5", 0.5},
        {"5.", 5},
        {".", 0},
        {"0x10", 16},
        {"-0x1p4", -16},
        {"inf", kInfinity},
        {"-infinity", -kInfinity},
        {"1e400", kInfinity},
        {"-1e400", -kInfinity},
        {"1e-400", 0},
        {"4.9e-324", 4.9e-324},
        {"1..2", 1},
        {"1-2", 1},
        {"0x", 0},
        {"1e5e5", 1e5},
        {"1.5d3", 1.5},
        {"\v\f\r7", 7},
        {"\xa0"
         "7",
         0},
        {"123456789012345678901234567890", 123456789012345678901234567890.},
    };
    for (auto& c : cases)
        EXPECT_EQ(Val(c.s), c.x) << (c.s ? c.s : "null");
    EXPECT_TRUE(std::isnan(Val("nan(12)")));
    EXPECT_TRUE(std::signbit(Val("-0")));
    EXPECT_EQ(Val((std::string(1000000, '0') + "12").c_str()), 12);
    EXPECT_EQ(Cdbl("1,25"), 1.25);
    EXPECT_EQ(Cdbl("1.25"), 1.25);
    EXPECT_EQ(Cdbl("1,2,3"), 1.2);
    EXPECT_EQ(Cdbl("  -,5 and more, it seems"), -0.5);
    EXPECT_EQ(Cdbl("0x1,8p1"), 3);
    EXPECT_EQ(Cdbl("1 e5"), 1);
    EXPECT_EQ(Cdbl("1x,"), 1);
    EXPECT_EQ(Cdbl("-inf,"), -kInfinity);
    EXPECT_EQ(Cdbl((std::string(60, '0') + "1,5").c_str()), 1.5);
    EXPECT_EQ(Cdbl((std::string(1020, ' ') + "1234").c_str()), 123);
    EXPECT_EQ(Cdbl(nullptr), 0);
    EXPECT_EQ(Cdbl((std::string(1022, '0') + "12").c_str()), 1);
}

// Sets a locale with a decimal comma, if need be one compiled for the occasion.
static bool set_comma_locale(const std::filesystem::path& folder)
{
    for (const char* name : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8"}) {
        if (setlocale(LC_ALL, name) != nullptr)
            return true;
    }
    const std::string command =
        "localedef -i de_DE -f UTF-8 '" + (folder / "de_DE.UTF-8").string() + "' >&2";
    if (system(command.c_str()) != 0)
        return false;
    setenv("LOCPATH", folder.c_str(), 1);
    const bool is_set = setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
    unsetenv("LOCPATH");
    return is_set;
}

// A toolkit underneath, or the program, may set a locale with another decimal point.
TEST(Conversions, NoLocaleReachesThem)
{
    std::string folder = (std::filesystem::temp_directory_path() / "plinth-XXXXXX").string();
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    const bool is_set = set_comma_locale(folder);
    if (is_set) {
        char comma[16];
        snprintf(comma, sizeof(comma), "%.1f", 1.5);
        EXPECT_STREQ(comma, "1,5");
    }
    EXPECT_STREQ(Str(1234.5), "1234.5");
    EXPECT_STREQ(Cstr(1234.5), "1234,5");
    EXPECT_STREQ(Format(1234.5, "%.2f"), "1234.50");
    EXPECT_STREQ(Format(1234567.5, "%10.2e"), "  1.23e+06");
    EXPECT_STREQ(Format(1234567.5, "%'.1f"), "1234567.5");
    EXPECT_EQ(Val("1.5"), 1.5);
    EXPECT_EQ(Val("0x1.8p0"), 1.5);
    EXPECT_EQ(Cdbl("1,5"), 1.5);
    EXPECT_EQ(printed(1.5), "1.5");
    setlocale(LC_ALL, "C");
    std::filesystem::remove_all(folder);
    if (!is_set)
        GTEST_SKIP() << "no locale with a decimal comma";
}
