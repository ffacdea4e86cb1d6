// What every key does in every entry field, cell by cell, and which texts the fields take.

#include "gadgets/entry_rules.h"
#include "gadgets/hidden_text.h"

#include <InterfaceDefs.h>

#include <string>

#include <gtest/gtest.h>

namespace {

using enum EntryAction;

const int32_t kAll[] = {kIntegerFilter, kPasswordFilter, kDecimalFilter,
                        kTextFilter,    kDateFilter,     kTimeFilter};

EntryAction act(int32_t filter, int key, const std::string& text = "", int32_t selection = 0,
                uint32_t held = 0)
{
    EntryState state;
    state.text = text;
    state.selection = selection;
    return entry_action(filter, static_cast<uint8_t>(key), held, state);
}

// Types a text, of which each accepted key is shown at its end; what the field shows then.
std::string typed(int32_t filter, const std::string& keys, std::string shown = "")
{
    for (char key : keys) {
        const EntryAction action = act(filter, key, shown, static_cast<int32_t>(shown.size()));
        if (action == Push || action == PushMasked || action == Tell)
            shown += key;
    }
    return shown;
}

}  // namespace

TEST(EntryRules, KeysThatAreNoCharactersByFilter)
{
    const struct {
        int key;
        uint32_t held;
        EntryAction by_filter[kEntryFilters];  // integer, password, decimal, text, date, -, -, time
    } rows[] = {
        {8, 0, {Pop, Pop, Pop, Pop, Tell, Pass, Pass, Tell}},
        {9,
         B_SHIFT_KEY,
         {LeaveBackwards, LeaveBackwards, LeaveBackwards, LeaveBackwards, LeaveBackwards, Pass,
          Pass, LeaveBackwards}},
        {9,
         0,
         {LeaveForwards, LeaveForwards, LeaveForwards, LeaveForwards, LeaveForwards, Pass, Pass,
          LeaveForwards}},
        {9,
         B_CONTROL_KEY | B_CAPS_LOCK,
         {LeaveForwards, LeaveForwards, LeaveForwards, LeaveForwards, LeaveForwards, Pass, Pass,
          LeaveForwards}},
        {10,
         0,
         {EnterShown, EnterHidden, EnterShown, EnterShown, FocusNext, Pass, Pass, DropFocus}},
        {16, 0, {Skip, Skip, Skip, Skip, Skip, Pass, Pass, Skip}},
        {27, 0, {Skip, Skip, Skip, Skip, Skip, Pass, Pass, Skip}},
    };
    for (const auto& row : rows) {
        for (int32_t filter = 0; filter < kEntryFilters; filter++)
            EXPECT_EQ(act(filter, row.key, "", 0, row.held), row.by_filter[filter])
                << "key " << row.key << ", filter " << filter;
    }
}

TEST(EntryRules, OtherControlKeysGoOnAndAreTold)
{
    for (int32_t filter : kAll) {
        for (int key = 0; key < 32; key++) {
            if (key == 8 || key == 9 || key == 10 || key == 16 || key == 27)
                continue;
            EXPECT_EQ(act(filter, key), Tell) << "key " << key << ", filter " << filter;
            EXPECT_EQ(act(filter, key, "", 0, B_SHIFT_KEY | B_COMMAND_KEY), Tell) << key;
        }
        EXPECT_EQ(act(filter, 127), Tell);
    }
}

TEST(EntryRules, BytesAboveAsciiAreSwallowed)
{
    for (int32_t filter : kAll) {
        for (int key = 128; key < 256; key++)
            EXPECT_EQ(act(filter, key), Skip) << "key " << key << ", filter " << filter;
    }
}

TEST(EntryRules, PrintableKeysInAnEmptyField)
{
    const struct {
        int32_t filter;
        const char* taken;  // null: all
        EntryAction action;
    } rows[] = {
        {kIntegerFilter, "-0123456789", Push},  {kPasswordFilter, nullptr, PushMasked},
        {kDecimalFilter, "-.0123456789", Push}, {kTextFilter, nullptr, Push},
        {kDateFilter, "0123456789", Tell},      {kTimeFilter, "0123456789", Tell},
    };
    for (const auto& row : rows) {
        for (int key = 32; key < 127; key++) {
            const bool taken = row.taken == nullptr || strchr(row.taken, key) != nullptr;
            EXPECT_EQ(act(row.filter, key), taken ? row.action : Skip)
                << static_cast<char>(key) << ", filter " << row.filter;
        }
    }
}

TEST(EntryRules, FieldsWithoutAFilterPassEveryKey)
{
    for (int32_t filter : {int32_t{kNoFilter}, int32_t{kSecondNoFilter}, 8, -1, INT32_MIN}) {
        for (int key = 0; key < 256; key++)
            EXPECT_EQ(act(filter, key), Pass) << key;
    }
}

TEST(EntryRules, TheKeyToCloseIsALetterOfPasswordsKept)
{
    for (int32_t filter : kAll) {
        const EntryAction expected = filter == kPasswordFilter ? PushMasked : Pass;
        EXPECT_EQ(act(filter, 'w', "", 0, B_COMMAND_KEY), expected) << filter;
        EXPECT_EQ(act(filter, 'w', "", 0, B_COMMAND_KEY | B_SHIFT_KEY), expected) << filter;
    }
    EXPECT_EQ(act(kIntegerFilter, 'w'), Skip);
    EXPECT_EQ(act(kIntegerFilter, 'W', "", 0, B_COMMAND_KEY), Skip);
    EXPECT_EQ(act(kIntegerFilter, 'c', "", 0, B_COMMAND_KEY), Skip);
    EXPECT_EQ(act(kTextFilter, 'c', "", 0, B_COMMAND_KEY), Push);
}

TEST(EntryRules, ASignStandsFirstAndAlone)
{
    for (int32_t filter : {kIntegerFilter, kDecimalFilter}) {
        EXPECT_EQ(act(filter, '-', "12", 0), Push);
        EXPECT_EQ(act(filter, '-', "12", 1), Skip);
        EXPECT_EQ(act(filter, '-', "12", 2), Skip);
        EXPECT_EQ(act(filter, '-', "-12", 0), Skip);
        EXPECT_EQ(act(filter, '1', "-12", 0), Push) << "before the sign: kept on purpose";
        EntryState state;
        state.allow_negative = false;
        EXPECT_EQ(entry_action(filter, '-', 0, state), Skip);
        EXPECT_EQ(entry_action(filter, '1', 0, state), Push);
    }
}

TEST(EntryRules, ADecimalNumberHasOneSeparator)
{
    EXPECT_EQ(typed(kDecimalFilter, "-1,2.5.7-"), "-12.57");
    EXPECT_EQ(typed(kDecimalFilter, "."), ".");
    EXPECT_EQ(act(kDecimalFilter, '.', "1,5", 0), Skip);
    EntryState state;
    state.allow_comma = true;
    state.text = "12";
    EXPECT_EQ(entry_action(kDecimalFilter, ',', 0, state), Push);
    EXPECT_EQ(entry_action(kDecimalFilter, '.', 0, state), Push);
    for (const char* text : {"1.2", "1,2"}) {
        state.text = text;
        EXPECT_EQ(entry_action(kDecimalFilter, ',', 0, state), Skip) << text;
        EXPECT_EQ(entry_action(kDecimalFilter, '.', 0, state), Skip) << text;
    }
    EXPECT_EQ(entry_action(kIntegerFilter, ',', 0, state), Skip);
}

TEST(EntryRules, FreeTextAsksItsCheck)
{
    EntryState state;
    state.character_check = [](int32_t key) { return static_cast<int8_t>(key == 'x' ? 0 : 2); };
    EXPECT_EQ(entry_action(kTextFilter, 'x', 0, state), Skip);
    EXPECT_EQ(entry_action(kTextFilter, 'y', 0, state), Push);
    EXPECT_EQ(entry_action(kTextFilter, 8, 0, state), Pop);
    EXPECT_EQ(entry_action(kPasswordFilter, 'x', 0, state), PushMasked);
}

TEST(EntryRules, DatesAndTimesHaveTwoSeparatorsBetweenDigits)
{
    const struct {
        int32_t filter;
        const char *keys, *shown;
    } rows[] = {
        {kDateFilter, "/12//3/4/5", "12/3/45"},
        {kDateFilter, "99999999/99/1-:. x", "99999999/99/1"},
        {kDateFilter, "1:2", "12"},
        {kTimeFilter, ":12::3:4:5", "12:3:45"},
        {kTimeFilter, "9/9", "99"},
        {kTimeFilter, "77:88:99", "77:88:99"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(typed(row.filter, row.keys), row.shown) << row.keys;
    EXPECT_EQ(act(kDateFilter, '/', "12/3", 0), Skip) << "in front of all";
    EXPECT_EQ(act(kDateFilter, '/', "12/3", 1), Tell);
    EXPECT_EQ(act(kDateFilter, '/', "12/3", 2), Tell) << "only the byte before counts";
    EXPECT_EQ(act(kDateFilter, '/', "12/3", 3), Skip);
    EXPECT_EQ(act(kDateFilter, '/', "12", INT32_MAX), Tell);
    EXPECT_EQ(act(kDateFilter, '/', "12", INT32_MIN), Skip);
}

TEST(EntryRules, TheHiddenTextEndsAtTheLimit)
{
    HiddenText hidden;
    for (int i = 0; i < 2000; i++)
        hidden.PushChar('a', INT32_MAX);
    EXPECT_EQ(hidden.Length(), 1023);
    EXPECT_EQ(std::string(hidden.Text()), std::string(1023, 'a'));
    hidden.Set("secret");
    hidden.PushChar('x', 6);
    hidden.PushChar('x', 0);
    hidden.PushChar('x', -1);
    EXPECT_STREQ(hidden.Text(), "secret");
    hidden.PushChar('s', 7);
    EXPECT_STREQ(hidden.Text(), "secrets");
    for (int i = 0; i < 10; i++)
        hidden.PopChar();
    EXPECT_EQ(hidden.Length(), 0);
    EXPECT_STREQ(hidden.Text(), "");
    hidden.Set(std::string(5000, 'b'));
    EXPECT_EQ(hidden.Length(), 1023);
    hidden.Cut(2);
    EXPECT_STREQ(hidden.Text(), "bb");
}
