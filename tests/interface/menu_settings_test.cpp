// The settings of menus: one set of them for all threads, and always a whole one.

#include <Menu.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <thread>

namespace {

// Settings whose every part says the same letter.
menu_info all_of(char letter)
{
    menu_info info = {};
    info.font_size = letter;
    std::fill(info.f_family, info.f_family + B_FONT_FAMILY_LENGTH, letter);
    std::fill(info.f_style, info.f_style + B_FONT_STYLE_LENGTH, letter);
    const auto part = static_cast<uint8>(letter);
    info.background_color = {part, part, part, part};
    info.separator = letter;
    info.click_to_open = info.triggers_always_shown = letter == 'a';
    return info;
}

bool same(const menu_info& one, const menu_info& other)
{
    return one.font_size == other.font_size && strcmp(one.f_family, other.f_family) == 0 &&
           strcmp(one.f_style, other.f_style) == 0 &&
           one.background_color == other.background_color && one.separator == other.separator &&
           one.click_to_open == other.click_to_open &&
           one.triggers_always_shown == other.triggers_always_shown;
}

class MenuSettings : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(get_menu_info(&fBefore), B_OK); }
    void TearDown() override { set_menu_info(&fBefore); }

private:
    menu_info fBefore;
};

TEST_F(MenuSettings, ReaderNeverSeesAMixtureOfWhatTwoThreadsSet)
{
    // The writers run beside the reader for long enough where they take turns this often.
    constexpr int kTurns = 20'000;
    constexpr int kMostReads = 4'000'000;
    const std::array<menu_info, 2> sets = {all_of('a'), all_of('b')};
    menu_info first = sets[0];
    set_menu_info(&first);
    std::atomic<bool> done{false};
    std::array<std::thread, 2> writers;
    for (size_t i = 0; i < sets.size(); i++) {
        writers[i] = std::thread([&done, info = sets[i]]() mutable {
            while (!done)
                set_menu_info(&info);
        });
    }
    int mixtures = 0;
    menu_info last = first;
    for (int i = 0, turns = 0; i < kMostReads && turns < kTurns; i++) {
        menu_info seen;
        get_menu_info(&seen);
        if (same(seen, last))
            continue;
        turns++;
        last = seen;
        if (!same(seen, sets[0]) && !same(seen, sets[1]))
            mixtures++;
    }
    done = true;
    for (std::thread& writer : writers)
        writer.join();
    EXPECT_EQ(mixtures, 0);
}

TEST_F(MenuSettings, NullIsRefused)
{
    EXPECT_EQ(get_menu_info(nullptr), B_BAD_VALUE);
    EXPECT_EQ(set_menu_info(nullptr), B_BAD_VALUE);
}

}  // namespace
