// The colours that gadgets take: defaults, and what the program has set. Any thread.

#include <InterfaceDefs.h>

#include <Message.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>
#include <iterator>

namespace {

struct ColorRow {
    color_which which;
    const char* name;
    rgb_color color;
};

const ColorRow kColors[] = {
    {B_PANEL_BACKGROUND_COLOR, "B_PANEL_BACKGROUND_COLOR", {216, 216, 216, 255}},
    {B_MENU_BACKGROUND_COLOR, "B_MENU_BACKGROUND_COLOR", {216, 216, 216, 255}},
    {B_WINDOW_TAB_COLOR, "B_WINDOW_TAB_COLOR", {255, 203, 0, 255}},
    {B_KEYBOARD_NAVIGATION_COLOR, "B_KEYBOARD_NAVIGATION_COLOR", {0, 0, 229, 255}},
    {B_DESKTOP_COLOR, "B_DESKTOP_COLOR", {51, 102, 152, 255}},
    {B_MENU_SELECTED_BACKGROUND_COLOR, "B_MENU_SELECTED_BACKGROUND_COLOR", {153, 153, 153, 255}},
    {B_MENU_ITEM_TEXT_COLOR, "B_MENU_ITEM_TEXT_COLOR", {0, 0, 0, 255}},
    {B_MENU_SELECTED_ITEM_TEXT_COLOR, "B_MENU_SELECTED_ITEM_TEXT_COLOR", {0, 0, 0, 255}},
    {B_MENU_SELECTED_BORDER_COLOR, "B_MENU_SELECTED_BORDER_COLOR", {0, 0, 0, 255}},
    {B_PANEL_TEXT_COLOR, "B_PANEL_TEXT_COLOR", {0, 0, 0, 255}},
    {B_DOCUMENT_BACKGROUND_COLOR, "B_DOCUMENT_BACKGROUND_COLOR", {255, 255, 255, 255}},
    {B_DOCUMENT_TEXT_COLOR, "B_DOCUMENT_TEXT_COLOR", {0, 0, 0, 255}},
    {B_CONTROL_BACKGROUND_COLOR, "B_CONTROL_BACKGROUND_COLOR", {222, 222, 222, 255}},
    {B_CONTROL_TEXT_COLOR, "B_CONTROL_TEXT_COLOR", {0, 0, 0, 255}},
    {B_CONTROL_BORDER_COLOR, "B_CONTROL_BORDER_COLOR", {172, 172, 172, 255}},
    {B_CONTROL_HIGHLIGHT_COLOR, "B_CONTROL_HIGHLIGHT_COLOR", {102, 152, 203, 255}},
    {B_NAVIGATION_PULSE_COLOR, "B_NAVIGATION_PULSE_COLOR", {0, 0, 0, 255}},
    {B_SHINE_COLOR, "B_SHINE_COLOR", {255, 255, 255, 255}},
    {B_SHADOW_COLOR, "B_SHADOW_COLOR", {0, 0, 0, 255}},
    {B_TOOL_TIP_BACKGROUND_COLOR, "B_TOOL_TIP_BACKGROUND_COLOR", {255, 255, 216, 255}},
    {B_TOOL_TIP_TEXT_COLOR, "B_TOOL_TIP_TEXT_COLOR", {0, 0, 0, 255}},
    {B_WINDOW_TEXT_COLOR, "B_WINDOW_TEXT_COLOR", {0, 0, 0, 255}},
    {B_WINDOW_INACTIVE_TAB_COLOR, "B_WINDOW_INACTIVE_TAB_COLOR", {232, 232, 232, 255}},
    {B_WINDOW_INACTIVE_TEXT_COLOR, "B_WINDOW_INACTIVE_TEXT_COLOR", {80, 80, 80, 255}},
    {B_WINDOW_BORDER_COLOR, "B_WINDOW_BORDER_COLOR", {224, 224, 224, 255}},
    {B_WINDOW_INACTIVE_BORDER_COLOR, "B_WINDOW_INACTIVE_BORDER_COLOR", {232, 232, 232, 255}},
    {B_CONTROL_MARK_COLOR, "B_CONTROL_MARK_COLOR", {27, 82, 140, 255}},
    {B_LIST_BACKGROUND_COLOR, "B_LIST_BACKGROUND_COLOR", {255, 255, 255, 255}},
    {B_LIST_SELECTED_BACKGROUND_COLOR, "B_LIST_SELECTED_BACKGROUND_COLOR", {190, 190, 190, 255}},
    {B_LIST_ITEM_TEXT_COLOR, "B_LIST_ITEM_TEXT_COLOR", {0, 0, 0, 255}},
    {B_LIST_SELECTED_ITEM_TEXT_COLOR, "B_LIST_SELECTED_ITEM_TEXT_COLOR", {0, 0, 0, 255}},
    {B_SCROLL_BAR_THUMB_COLOR, "B_SCROLL_BAR_THUMB_COLOR", {216, 216, 216, 255}},
    {B_LINK_TEXT_COLOR, "B_LINK_TEXT_COLOR", {51, 102, 187, 255}},
    {B_LINK_HOVER_COLOR, "B_LINK_HOVER_COLOR", {102, 152, 203, 255}},
    {B_LINK_VISITED_COLOR, "B_LINK_VISITED_COLOR", {145, 112, 155, 255}},
    {B_LINK_ACTIVE_COLOR, "B_LINK_ACTIVE_COLOR", {121, 142, 203, 255}},
    {B_STATUS_BAR_COLOR, "B_STATUS_BAR_COLOR", {50, 150, 255, 255}},
    {B_SUCCESS_COLOR, "B_SUCCESS_COLOR", {46, 204, 64, 255}},
    {B_FAILURE_COLOR, "B_FAILURE_COLOR", {255, 65, 54, 255}},
};

const size_t kColorCount = std::size(kColors);

// 0 where the default holds, else the colour with its alpha and kIsSet.
std::atomic<uint64> sSet[kColorCount];

const uint64 kIsSet = uint64(1) << 32;

const ColorRow* row_of(color_which which)
{
    for (const ColorRow& row : kColors) {
        if (row.which == which)
            return &row;
    }
    return nullptr;
}

uint8 tint_part(uint8 value, float tint)
{
    float result = tint < 1.0f ? 255.0f - (255.0f - value) * tint : value * (2.0f - tint);
    if (!(result > 0.0f))
        return 0;
    return static_cast<uint8>(std::min(result, 255.0f));
}

}  // namespace

rgb_color ui_color(color_which which)
{
    const ColorRow* row = row_of(which);
    if (row == nullptr)
        return make_color(0, 0, 0);
    const uint64 set = sSet[row - kColors].load(std::memory_order_relaxed);
    if (set == 0)
        return row->color;
    return make_color(uint8(set >> 16), uint8(set >> 8), uint8(set), uint8(set >> 24));
}

const char* ui_color_name(color_which which)
{
    const ColorRow* row = row_of(which);
    return row != nullptr ? row->name : nullptr;
}

color_which which_ui_color(const char* name)
{
    for (const ColorRow& row : kColors) {
        if (name != nullptr && strcmp(row.name, name) == 0)
            return row.which;
    }
    return B_NO_COLOR;
}

void set_ui_color(const color_which& which, const rgb_color& color)
{
    const ColorRow* row = row_of(which);
    if (row == nullptr)
        return;
    sSet[row - kColors] = kIsSet | uint32(color.alpha) << 24 | uint32(color.red) << 16 |
                          uint32(color.green) << 8 | color.blue;
}

void set_ui_colors(const BMessage* colors)
{
    rgb_color color;
    for (const ColorRow& row : kColors) {
        if (colors != nullptr && colors->FindColor(row.name, &color) == B_OK)
            set_ui_color(row.which, color);
    }
}

rgb_color keyboard_navigation_color() { return ui_color(B_KEYBOARD_NAVIGATION_COLOR); }

rgb_color tint_color(rgb_color color, float tint)
{
    return make_color(tint_part(color.red, tint), tint_part(color.green, tint),
                      tint_part(color.blue, tint), color.alpha);
}
