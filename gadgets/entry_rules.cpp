// The rules of entry fields: one row for each filter behind a head that they share. Any thread.

#include "gadgets/entry_rules.h"

#include <InterfaceDefs.h>

#include <algorithm>
#include <iterator>

// --- which characters a filter takes

using Accepts = bool (*)(char key, const EntryState& state);

static bool is_digit(char key) { return key >= '0' && key <= '9'; }

static bool holds(const EntryState& state, char key)
{
    return state.text.find(key) != std::string_view::npos;
}

static bool any_character(char, const EntryState&) { return true; }

// A sign stands first, and alone.
static bool is_sign(char key, const EntryState& state)
{
    return key == '-' && state.allow_negative && state.selection == 0 && !holds(state, '-');
}

static bool in_integer(char key, const EntryState& state)
{
    return is_digit(key) || is_sign(key, state);
}

static bool in_decimal(char key, const EntryState& state)
{
    if (key == '.' || (key == ',' && state.allow_comma))
        return !holds(state, '.') && !holds(state, ',');
    return in_integer(key, state);
}

static bool in_text(char key, const EntryState& state)
{
    return state.character_check == nullptr || state.character_check(key) != 0;
}

// Up to two separators, each behind a digit. Nobody counts the digits, nor what they mean.
template <char separator>
static bool in_parts(char key, const EntryState& state)
{
    if (key != separator)
        return is_digit(key);
    const auto before = static_cast<size_t>(state.selection) - 1;
    if (state.selection < 1 || (before < state.text.size() && state.text[before] == separator))
        return false;
    return std::count(state.text.begin(), state.text.end(), separator) < 2;
}

// --- the table

namespace {

struct FilterRow {
    int32_t filter;
    Accepts accepts;  // null: there is no filter
    EntryAction accepted;
    EntryAction backspace;
    EntryAction enter;
};

}  // namespace

static constexpr FilterRow kFilters[] = {
    {kIntegerFilter, in_integer, EntryAction::Push, EntryAction::Pop, EntryAction::EnterShown},
    {kPasswordFilter, any_character, EntryAction::PushMasked, EntryAction::Pop,
     EntryAction::EnterHidden},
    {kDecimalFilter, in_decimal, EntryAction::Push, EntryAction::Pop, EntryAction::EnterShown},
    {kTextFilter, in_text, EntryAction::Push, EntryAction::Pop, EntryAction::EnterShown},
    {kDateFilter, in_parts<'/'>, EntryAction::Tell, EntryAction::Tell, EntryAction::FocusNext},
    {kNoFilter, nullptr, EntryAction::Pass, EntryAction::Pass, EntryAction::Pass},
    {kSecondNoFilter, nullptr, EntryAction::Pass, EntryAction::Pass, EntryAction::Pass},
    {kTimeFilter, in_parts<':'>, EntryAction::Tell, EntryAction::Tell, EntryAction::DropFocus},
};

static constexpr bool rows_are_in_order()
{
    for (int32_t i = 0; i < kEntryFilters; i++) {
        if (kFilters[i].filter != i)
            return false;
    }
    return std::size(kFilters) == kEntryFilters;
}
static_assert(rows_are_in_order(), "one row per filter, by its number");

EntryAction entry_action(int32_t filter, uint8_t key, uint32_t held, const EntryState& state)
{
    if (filter < 0 || filter >= kEntryFilters || kFilters[filter].accepts == nullptr)
        return EntryAction::Pass;
    const FilterRow& row = kFilters[filter];
    // The window's key to close. A password takes it for a letter: kept on purpose.
    if (key == 'w' && (held & B_COMMAND_KEY) != 0 && filter != kPasswordFilter)
        return EntryAction::Pass;
    switch (key) {
        case B_BACKSPACE:
            return row.backspace;
        case B_TAB:
            return (held & B_SHIFT_KEY) != 0 ? EntryAction::LeaveBackwards
                                             : EntryAction::LeaveForwards;
        case B_ENTER:
            return row.enter;
        case B_FUNCTION_KEY:
        case B_ESCAPE:
            return EntryAction::Skip;
        default:
            break;
    }
    if (key > 127)
        return EntryAction::Skip;
    if (key < ' ' || key == B_DELETE)
        return EntryAction::Tell;
    return row.accepts(static_cast<char>(key), state) ? row.accepted : EntryAction::Skip;
}
