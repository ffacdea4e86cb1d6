// A window's font and the fonts kept by ident, as a program sets and asks them.

#include "support/program.h"

#include <gtest/gtest.h>

#include <Font.h>
#include <Rect.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <climits>
#include <string>
#include <thread>
#include <vector>

#include "runtime/registry.h"

namespace {

const uint32_t kInk = 0x000000FF;
const uint32_t kPaper = 0xFFFFFFFF;

class Fonts : public testing::Test {
protected:
    TestWindow fWindow{100, 100, 299, 299};
};

struct Setting {
    const char* name;
    void (*set)(int32_t, int32_t);
    int32_t (*get)(int32_t);
    int32_t start;
};

const Setting kSettings[] = {
    {"size", SetFontSize, GetFontSize, 12},
    {"shear", SetShear, GetShear, 90},
    {"rotation", SetRotation, GetRotation, 0},
};

std::string family_of_plain()
{
    font_family family;
    be_plain_font->GetFamilyAndStyle(&family, nullptr);
    return family;
}

std::string other_case(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(islower(c) ? toupper(c) : tolower(c));
    return text;
}

// The font of an ident, null if there is none.
const BFont* font_of(int32_t ident)
{
    struct Record {
        intptr_t ident;
        const BFont* font;
    };
    const BList* fonts = reinterpret_cast<BList**>(gRegistry)[kFonts];
    for (int32 i = 0; i < fonts->CountItems(); i++) {
        const auto* record = static_cast<const Record*>(fonts->ItemAt(i));
        if (record->ident == ident)
            return record->font;
    }
    return nullptr;
}

// The box of what a text marks, drawn from the middle of an empty window.
BRect mark_of(int32_t window, const char* text)
{
    SetBackColor(window, kPaper);
    SetForeColor(window, kPaper, kPaper);
    Clear(window);
    const int32_t paper = GetPixel(window, 0, 0);
    SetForeColor(window, kInk, kPaper);
    MoveTo(window, 150, 150);
    Text(window, text);
    BRect box;
    for (int32_t y = 0; y < 300; y++) {
        for (int32_t x = 0; x < 300; x++) {
            const BRect pixel(x, y, x, y);
            if (GetPixel(window, x, y) != paper)
                box = box.IsValid() ? box | pixel : pixel;
        }
    }
    return box;
}

}  // namespace

TEST_F(Fonts, SettingsReadBackAsTheyWereSet)
{
    for (const Setting& setting : kSettings) {
        EXPECT_EQ(setting.get(fWindow), setting.start) << setting.name;
        for (int32_t value : {12, 45, 1, 0, -1, 135, 100000, -100000}) {
            setting.set(fWindow, value);
            EXPECT_EQ(setting.get(fWindow), value) << setting.name;
        }
        for (int32_t extreme : {INT32_MAX, INT32_MIN}) {
            setting.set(fWindow, extreme);
            EXPECT_NEAR(setting.get(fWindow), extreme, 1) << setting.name;
        }
    }
}

TEST_F(Fonts, SpacingIsTheLowByte)
{
    EXPECT_EQ(GetSpacing(fWindow), B_BITMAP_SPACING);
    SetSpacing(fWindow, B_FIXED_SPACING);
    EXPECT_EQ(GetSpacing(fWindow), B_FIXED_SPACING);
    EXPECT_EQ(GetTextWidth(fWindow, "iiii"), GetTextWidth(fWindow, "MMMM"));
    SetSpacing(fWindow, 0x101);
    EXPECT_EQ(GetSpacing(fWindow), 1);
    SetSpacing(fWindow, -1);
    EXPECT_EQ(GetSpacing(fWindow), 255);
    EXPECT_GT(GetTextWidth(fWindow, "MMMM"), 0);
}

TEST_F(Fonts, KindsAreTheThreeStandardFonts)
{
    SetFontSize(fWindow, 40);
    SetRotation(fWindow, 30);
    SetFontType(fWindow, 2);
    EXPECT_EQ(IsFontFixed(fWindow), 1);
    EXPECT_EQ(GetFontSize(fWindow), 12) << "the kind comes with all it is";
    EXPECT_EQ(GetRotation(fWindow), 0);
    EXPECT_EQ(GetFontAttribut(fWindow), B_REGULAR_FACE);
    SetFontType(fWindow, 1);
    EXPECT_EQ(IsFontFixed(fWindow), 0);
    EXPECT_EQ(GetFontAttribut(fWindow), B_BOLD_FACE);
    for (int32_t none : {3, -1, INT32_MAX, INT32_MIN})
        SetFontType(fWindow, none);
    EXPECT_EQ(GetFontAttribut(fWindow), B_BOLD_FACE);
    SetFontType(fWindow, 0);
    EXPECT_EQ(GetFontAttribut(fWindow), B_REGULAR_FACE);
    EXPECT_EQ(GetFontType(fWindow), B_TRUETYPE_WINDOWS);
}

TEST_F(Fonts, EachFlagOfTheFaceIsABitOfAnotherOrder)
{
    const struct {
        int32_t flags, face;
    } table[] = {
        {0x01, 0x40}, {0x02, 0x60},        {0x04, 0x41}, {0x08, 0x50}, {0x10, 0x42}, {0x20, 0x44},
        {0x40, 0x48}, {0x02 + 0x04, 0x61}, {0x7F, 0x7F}, {0x80, 0x40}, {-1, 0x7F},
    };
    for (const auto& row : table) {
        SetFontAttribut(fWindow, row.flags);
        EXPECT_EQ(GetFontAttribut(fWindow), row.face) << row.flags;
        SetFontAttribut(fWindow, 0);
        EXPECT_EQ(GetFontAttribut(fWindow), row.face) << "0 changes nothing";
    }
}

TEST_F(Fonts, FacesAreSeen)
{
    const BRect plain = mark_of(fWindow, "mmmm");
    SetFontAttribut(fWindow, 0x02);
    EXPECT_GT(mark_of(fWindow, "mmmm").Width(), plain.Width());
    SetFontAttribut(fWindow, 0x10);
    EXPECT_GT(mark_of(fWindow, "mmmm").bottom, plain.bottom) << "a line below";
    SetFontAttribut(fWindow, 0x20);
    EXPECT_GT(mark_of(fWindow, "mmmm").Height(), plain.Height()) << "the ground is filled";
    SetFontAttribut(fWindow, 0x01);
    EXPECT_EQ(mark_of(fWindow, "mmmm"), plain);
}

TEST_F(Fonts, TextTurnsAndLeans)
{
    SetFontSize(fWindow, 24);
    const BRect plain = mark_of(fWindow, "llllllll");
    SetRotation(fWindow, 90);
    const BRect turned = mark_of(fWindow, "llllllll");
    EXPECT_GT(turned.Height(), turned.Width() * 2);
    EXPECT_NEAR(turned.Height(), plain.Width(), 4);
    SetRotation(fWindow, 0);
    SetShear(fWindow, 45);
    EXPECT_GT(mark_of(fWindow, "llllllll").Width(), plain.Width() + 8);
}

TEST_F(Fonts, WithoutSmoothEdgesThereAreTwoColours)
{
    const auto colors = [this] {
        mark_of(fWindow, "SOS");
        std::vector<int32_t> seen;
        for (int32_t i = 0; i < 300 * 300; i++)
            seen.push_back(GetPixel(fWindow, i % 300, i / 300));
        std::sort(seen.begin(), seen.end());
        return std::unique(seen.begin(), seen.end()) - seen.begin();
    };
    SetFontSize(fWindow, 40);
    EXPECT_GT(colors(), 2);
    FontLeasing(fWindow, 0);
    EXPECT_EQ(colors(), 2);
    FontLeasing(fWindow, -5);
    EXPECT_GT(colors(), 2);
}

TEST_F(Fonts, AnySizeDrawsAndMeasures)
{
    for (int32_t size : {0, -1, INT32_MIN}) {
        SetFontSize(fWindow, size);
        EXPECT_FALSE(mark_of(fWindow, "nothing").IsValid()) << size;
        EXPECT_EQ(GetTextWidth(fWindow, "nothing"), 0) << size;
    }
    for (int32_t size : {100000, INT32_MAX}) {
        SetFontSize(fWindow, size);
        MoveTo(fWindow, 0, 0);
        Text(fWindow, "far too large");
        EXPECT_GT(GetTextWidth(fWindow, "W"), 1000) << size;
    }
    SetFontSize(fWindow, 12);
    EXPECT_TRUE(mark_of(fWindow, "again").IsValid());
}

TEST_F(Fonts, NamesKeepTheStyle)
{
    EXPECT_EQ(GetFontName(fWindow), family_of_plain());
    font_family mono;
    be_fixed_font->GetFamilyAndStyle(&mono, nullptr);
    SetFontType(fWindow, 1);
    SetFontName(fWindow, other_case(mono).c_str());
    EXPECT_STREQ(GetFontName(fWindow), mono);
    EXPECT_EQ(GetFontAttribut(fWindow) & B_BOLD_FACE, B_BOLD_FACE);
    SetFontSize(fWindow, 33);
    for (const char* none : {"No such family", "", static_cast<const char*>(nullptr)})
        SetFontName(fWindow, none);
    EXPECT_STREQ(GetFontName(fWindow), mono);
    SetFontName(fWindow, family_of_plain().c_str());
    EXPECT_EQ(GetFontSize(fWindow), 33) << "a name brings no size";
}

TEST_F(Fonts, AFontOfTheListTakesFamilyStyleAndSize)
{
    const std::string family = family_of_plain();
    SetRotation(fWindow, 10);
    OpenFontInListe(fWindow, other_case(family).c_str(), "Bold", 20);
    EXPECT_EQ(GetFontSize(fWindow), 20);
    EXPECT_EQ(GetFontAttribut(fWindow), B_BOLD_FACE);
    EXPECT_EQ(GetRotation(fWindow), 10);
    for (int32_t size : {0, -1, INT32_MIN})
        OpenFontInListe(fWindow, family.c_str(), "Regular", size);
    OpenFontInListe(fWindow, "No such family", "Regular", 9);
    OpenFontInListe(fWindow, "", "Regular", 9);
    OpenFontInListe(fWindow, nullptr, "Regular", 9);
    EXPECT_EQ(GetFontSize(fWindow), 20);
    OpenFontInListe(fWindow, family.c_str(), nullptr, 9);
    EXPECT_EQ(GetFontSize(fWindow), 9);
    EXPECT_EQ(GetFontAttribut(fWindow), B_REGULAR_FACE);
}

TEST_F(Fonts, UnknownWindowsHaveNone)
{
    const int32_t font = OpenFont(nullptr, nullptr, 12);
    for (int32_t none : {0, -1, INT32_MIN, INT32_MAX, font}) {
        for (const Setting& setting : kSettings) {
            setting.set(none, 20);
            EXPECT_EQ(setting.get(none), 0) << setting.name;
        }
        SetSpacing(none, 1);
        FontLeasing(none, 0);
        SetFontType(none, 1);
        SetFontAttribut(none, 2);
        SetFontName(none, family_of_plain().c_str());
        OpenFontInListe(none, family_of_plain().c_str(), "Bold", 20);
        EXPECT_EQ(GetSpacing(none), 0);
        EXPECT_EQ(IsFontFixed(none), 0);
        EXPECT_EQ(GetFontType(none), 0);
        EXPECT_EQ(GetFontAttribut(none), 1);
        EXPECT_STREQ(GetFontName(none), "");
    }
    CloseFont(font);
    EXPECT_EQ(GetFontSize(fWindow), 12);
}

TEST_F(Fonts, OpenOnesHaveIdentsOfTheirOwn)
{
    const int32_t plain = OpenFont(family_of_plain().c_str(), "Regular", 12);
    const int32_t same = OpenFont(family_of_plain().c_str(), "Regular", 12);
    const int32_t unknown = OpenFont("No such family", "No such style", -7);
    EXPECT_GT(plain, static_cast<int32_t>(fWindow));
    EXPECT_EQ(same, plain + 1);
    EXPECT_EQ(unknown, same + 1);
    for (int32_t ident : {same, same, plain, unknown, unknown, 0, -1, INT32_MIN})
        CloseFont(ident);
    const int32_t window = fWindow;
    CloseFont(window);
    EXPECT_TRUE(is_window_ident(window));
}

TEST_F(Fonts, OpenOnesAreWhatWasAskedUntilTheyAreClosed)
{
    const int32_t bold = OpenFont(family_of_plain().c_str(), "Bold", 17);
    const int32_t unknown = OpenFont("No such family", "No such style", 100000);
    ASSERT_NE(font_of(bold), nullptr);
    font_family family;
    font_style style;
    font_of(bold)->GetFamilyAndStyle(&family, &style);
    EXPECT_EQ(family, family_of_plain());
    EXPECT_STREQ(style, "Bold");
    EXPECT_EQ(font_of(bold)->Size(), 17);
    ASSERT_NE(font_of(unknown), nullptr);
    font_of(unknown)->GetFamilyAndStyle(&family, nullptr);
    EXPECT_EQ(family, family_of_plain());
    EXPECT_EQ(font_of(unknown)->Size(), 100000);
    CloseFont(bold);
    EXPECT_EQ(font_of(bold), nullptr);
    EXPECT_NE(font_of(unknown), nullptr);
    CloseFont(unknown);
    EXPECT_EQ(font_of(unknown), nullptr);
}

// Another thread may guess an ident, and close it before the one that opens it is told.
TEST_F(Fonts, OpenOnesMayBeClosedBeforeTheirIdentIsTold)
{
    std::atomic<int32_t> last = OpenFont("", "", 12);
    std::thread closer([&last] {
        for (int32_t ident; (ident = last) >= 0;)
            CloseFont(ident + 1);
    });
    bool told = true;
    for (int i = 0; told && i < 5000; i++) {
        const int32_t ident = OpenFont("", "", 12);
        told = ident > last;
        CloseFont(last.exchange(ident));
    }
    CloseFont(last.exchange(-1));
    closer.join();
    EXPECT_TRUE(told);
}

TEST(FontFamilies, ExistInAnyCaseAsTheyAreListed)
{
    const int32_t count = CountFontList();
    ASSERT_GT(count, 0);
    for (int32_t i = 0; i < count; i++) {
        const std::string name = GetFontNameList(i);
        EXPECT_TRUE(FontExists(name.c_str())) << name;
        EXPECT_TRUE(FontExists(other_case(name).c_str())) << name;
        EXPECT_FALSE(FontExists((name + " none").c_str()));
    }
    for (int32_t none : {count, count + 1, -1, INT32_MAX, INT32_MIN})
        EXPECT_STREQ(GetFontNameList(none), "") << none;
    EXPECT_FALSE(FontExists(""));
    EXPECT_FALSE(FontExists(nullptr));
    EXPECT_EQ(FontExists("swiss 911"), FontExists("SWISS 911"));
    EXPECT_FALSE(FontExists(std::string(100000, 'x').c_str()));
}

TEST(FontFamilies, BeOSNamesStandForTheStandardFonts)
{
    TestWindow window;
    EXPECT_FALSE(FontExists("Swiss 721"));
    ASSERT_TRUE(FontExists("Swis721 BT"));
    ASSERT_TRUE(FontExists("courier10 bt"));
    OpenFontInListe(window, "Courier10 BT", "Roman", 12);
    EXPECT_EQ(IsFontFixed(window), 1);
    EXPECT_EQ(GetFontAttribut(window), B_REGULAR_FACE);
    OpenFontInListe(window, "Swis721 BT", "Bold", 12);
    EXPECT_EQ(IsFontFixed(window), 0);
    EXPECT_EQ(GetFontAttribut(window), B_BOLD_FACE);
    EXPECT_EQ(GetFontName(window), family_of_plain());
}
