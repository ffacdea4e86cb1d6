// Settings of the interface kit: colours, mouse, keyboard, scroll bars, workspaces.

#include <GraphicsDefs.h>
#include <InterfaceDefs.h>
#include <Message.h>
#include <OS.h>

#include <Injection.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <thread>

TEST(UiColors, NamesAndCodesBelongTogether)
{
    std::set<std::string> names;
    for (int code = 0; code < 128; code++) {
        const color_which which = static_cast<color_which>(code);
        const char* name = ui_color_name(which);
        if (name == nullptr) {
            EXPECT_EQ(ui_color(which), make_color(0, 0, 0)) << code;
            set_ui_color(which, make_color(1, 2, 3));  // of nothing
            EXPECT_EQ(ui_color(which), make_color(0, 0, 0)) << code;
            continue;
        }
        EXPECT_EQ(which_ui_color(name), which);
        EXPECT_TRUE(names.insert(name).second) << name;
    }
    EXPECT_EQ(names.size(), 39u);
    EXPECT_EQ(which_ui_color("B_NO_SUCH_COLOR"), B_NO_COLOR);
    EXPECT_EQ(which_ui_color(""), B_NO_COLOR);
    EXPECT_EQ(which_ui_color(nullptr), B_NO_COLOR);
}

TEST(UiColors, EveryColourCanBeSet)
{
    const rgb_color other = ui_color(B_MENU_BACKGROUND_COLOR);
    for (const rgb_color& color : {make_color(1, 2, 3, 4), make_color(255, 255, 255, 255),
                                   make_color(0, 0, 0, 255), make_color(0, 0, 0, 0)}) {
        set_ui_color(B_PANEL_BACKGROUND_COLOR, color);
        EXPECT_EQ(ui_color(B_PANEL_BACKGROUND_COLOR), color);
    }
    EXPECT_EQ(ui_color(B_MENU_BACKGROUND_COLOR), other);
    set_ui_color(B_KEYBOARD_NAVIGATION_COLOR, make_color(9, 8, 7));
    EXPECT_EQ(keyboard_navigation_color(), make_color(9, 8, 7));
}

TEST(UiColors, AMessageSetsThoseItNames)
{
    const rgb_color before = ui_color(B_SHINE_COLOR);
    BMessage colors;
    colors.AddColor("B_SHADOW_COLOR", make_color(10, 20, 30, 40));
    colors.AddColor("B_NO_SUCH_COLOR", make_color(1, 1, 1));
    colors.AddInt32("B_SHINE_COLOR", 7);  // no colour
    set_ui_colors(&colors);
    set_ui_colors(nullptr);
    EXPECT_EQ(ui_color(B_SHADOW_COLOR), make_color(10, 20, 30, 40));
    EXPECT_EQ(ui_color(B_SHINE_COLOR), before);
}

TEST(UiColors, TintsAreThoseOfThePlatform)
{
    struct Row {
        float tint;
        int grey;
    };
    for (const Row& row :
         {Row{0, 255}, Row{0.385f, 239}, Row{0.59f, 231}, Row{1, 216}, Row{1.147f, 184},
          Row{1.295f, 152}, Row{1.407f, 128}, Row{1.555f, 96}, Row{2, 0}, Row{2.5f, 0},
          Row{1e30f, 0}, Row{-1, 255}, Row{-1e30f, 255}, Row{INFINITY, 0}, Row{-INFINITY, 255}}) {
        const uint8 grey = uint8(row.grey);
        EXPECT_EQ(tint_color(make_color(216, 216, 216, 77), row.tint),
                  make_color(grey, grey, grey, 77))
            << row.tint;
    }
    const rgb_color yellow = make_color(255, 203, 0);
    EXPECT_EQ(tint_color(yellow, 1.555f), make_color(113, 90, 0));
    EXPECT_EQ(tint_color(yellow, 0.385f), make_color(255, 234, 156));
    EXPECT_EQ(tint_color(yellow, 1.147f), make_color(217, 173, 0));
    EXPECT_EQ(tint_color(yellow, NAN).alpha, 255);
}

TEST(Colors, MixingMeetsBothEndsAndStaysBetween)
{
    const rgb_color a = {0, 200, 255, 10}, b = {255, 100, 255, 250};
    EXPECT_EQ(mix_color(a, b, 0), a);
    EXPECT_EQ(mix_color(a, b, 255), b);
    for (int amount = 1; amount < 255; amount++) {
        const rgb_color mixed = mix_color(a, b, uint8(amount));
        const rgb_color next = mix_color(a, b, uint8(amount + 1));
        EXPECT_LE(mixed.red, next.red);
        EXPECT_GE(mixed.green, next.green);
        EXPECT_EQ(mixed.blue, 255);
    }
    const rgb_color invisible = {1, 2, 3, 0}, solid = {40, 50, 60, 255};
    EXPECT_EQ(blend_color(solid, invisible, 128).red, 40) << "what can not be seen does not count";
    EXPECT_EQ(blend_color(invisible, invisible, 128), make_color(0, 0, 0, 0));
    EXPECT_EQ(blend_color(a, b, 255), b);
    EXPECT_EQ(blend_color(a, b, 0), a);
    const rgb_color white = make_color(255, 255, 255), black = make_color(0, 0, 0);
    EXPECT_EQ(white.Brightness(), 255);
    EXPECT_EQ(black.Brightness(), 0);
    EXPECT_TRUE(white.IsLight() && black.IsDark());
    EXPECT_EQ(rgb_color::Contrast(black, white), 255);
    EXPECT_EQ(rgb_color::Contrast(white, black), 255);
    EXPECT_GT(make_color(0, 255, 0).Brightness(), make_color(255, 0, 0).Brightness());
}

TEST(ColorSpaces, SizesHoldForEachSpaceThatBitmapsHave)
{
    size_t bytes, alignment, pixels;
    uint32 flags = 77;
    for (int code = 0; code < 65536; code++) {
        const color_space space = static_cast<color_space>(code);
        const bool supported = bitmaps_support_space(space, &flags);
        EXPECT_EQ(supported, flags != 0) << code;
        const status_t status = get_pixel_size_for(space, &bytes, &alignment, &pixels);
        EXPECT_TRUE(status == B_OK || status == B_BAD_VALUE);
        ASSERT_TRUE(status == B_OK || !supported) << code;
        EXPECT_TRUE(status != B_OK || (bytes > 0 && alignment > 0 && pixels > 0 && pixels <= 8))
            << code;
        EXPECT_EQ(get_pixel_size_for(space, nullptr, nullptr, nullptr), status);
        EXPECT_EQ(bitmaps_support_space(space, nullptr), supported);
    }
    EXPECT_FALSE(bitmaps_support_space(B_NO_COLOR_SPACE, nullptr));
}

TEST(ScrollBarSettings, AreThoseLastSet)
{
    scroll_bar_info info;
    ASSERT_EQ(get_scroll_bar_info(&info), B_OK);
    EXPECT_TRUE(info.proportional);
    EXPECT_EQ(info.min_knob_size, 15);
    info.double_arrows = true;
    info.min_knob_size = 31;
    EXPECT_EQ(set_scroll_bar_info(&info), B_OK);
    scroll_bar_info read = {};
    EXPECT_EQ(get_scroll_bar_info(&read), B_OK);
    EXPECT_TRUE(read.double_arrows);
    EXPECT_EQ(read.min_knob_size, 31);
    EXPECT_EQ(get_scroll_bar_info(nullptr), B_BAD_VALUE);
    EXPECT_EQ(set_scroll_bar_info(nullptr), B_BAD_VALUE);
}

TEST(MouseSettings, PointerAndButtonsAreThoseOfTheHardware)
{
    BPoint where;
    uint32 buttons = 0;
    inject_pointer(33, 44);
    inject_button(1, true);
    inject_button(4, true);
    ASSERT_EQ(get_mouse(&where, &buttons), B_OK);
    EXPECT_EQ(where, BPoint(33, 44));
    EXPECT_EQ(buttons, 5u);
    inject_button(1, false);
    EXPECT_EQ(get_mouse(nullptr, &buttons), B_OK);
    EXPECT_EQ(buttons, 4u);
    inject_button(4, false);
    inject_pointer(55, 66);
    EXPECT_EQ(get_mouse(&where, nullptr), B_OK);
    EXPECT_EQ(where, BPoint(55, 66));
    EXPECT_EQ(get_mouse(nullptr, nullptr), B_BAD_VALUE);
}

TEST(MouseSettings, WhatIsTheHostsIsReadOnly)
{
    int32 number = 0;
    mouse_map map = {};
    EXPECT_EQ(get_mouse_type(&number), B_OK);
    EXPECT_EQ(number, 3);
    EXPECT_EQ(get_mouse_map(&map), B_OK);
    EXPECT_EQ(map.button[2], 4u);
    EXPECT_EQ(set_mouse_map(&map), B_UNSUPPORTED);
    EXPECT_EQ(set_mouse_type("mouse", 2), B_UNSUPPORTED);
    for (auto getter : {static_cast<status_t (*)(int32*)>(get_mouse_speed),
                        static_cast<status_t (*)(int32*)>(get_mouse_acceleration)}) {
        EXPECT_EQ(getter(&number), B_OK);
        EXPECT_EQ(number, 65536);
        EXPECT_EQ(getter(nullptr), B_BAD_VALUE);
    }
    EXPECT_EQ(get_mouse_map(nullptr), B_BAD_VALUE);
}

TEST(MouseSettings, ClickSpeedHolds)
{
    bigtime_t speed = 0;
    EXPECT_EQ(get_click_speed(&speed), B_OK);
    EXPECT_EQ(speed, 500'000);
    EXPECT_EQ(set_click_speed(123'456), B_OK);
    EXPECT_EQ(set_click_speed(-1), B_BAD_VALUE);
    EXPECT_EQ(get_click_speed("any", &speed), B_OK);
    EXPECT_EQ(speed, 123'456);
    EXPECT_EQ(get_click_speed(nullptr), B_BAD_VALUE);
    set_accept_first_click(false);
    EXPECT_FALSE(accept_first_click());
    set_accept_first_click(true);
    EXPECT_TRUE(accept_first_click());
}

TEST(KeyboardSettings, KeysAndModifiersAreThoseOfTheHardware)
{
    key_info info;
    EXPECT_EQ(get_key_info(nullptr), B_BAD_VALUE);
    inject_key(0x4b, true);  // left Shift
    inject_key(0x3c, true);  // A
    ASSERT_EQ(get_key_info(&info), B_OK);
    EXPECT_EQ(info.modifiers & (B_SHIFT_KEY | B_LEFT_SHIFT_KEY | B_RIGHT_SHIFT_KEY),
              uint32(B_SHIFT_KEY | B_LEFT_SHIFT_KEY));
    EXPECT_EQ(modifiers(), info.modifiers);
    EXPECT_TRUE(info.key_states[0x3c >> 3] & (1 << (7 - (0x3c & 7))));
    EXPECT_TRUE(info.key_states[0x4b >> 3] & (1 << (7 - (0x4b & 7))));
    inject_key(0x4b, false);
    inject_key(0x3c, false);
    ASSERT_EQ(get_key_info(&info), B_OK);
    for (uint8 byte : info.key_states)
        EXPECT_EQ(byte, 0);
    EXPECT_EQ(modifiers() & B_SHIFT_KEY, 0u);
}

TEST(KeyboardSettings, LocksAreSetAndNothingElse)
{
    set_keyboard_locks(B_CAPS_LOCK | B_SHIFT_KEY | B_COMMAND_KEY);
    EXPECT_EQ(modifiers(), uint32(B_CAPS_LOCK));
    set_keyboard_locks(B_NUM_LOCK | B_SCROLL_LOCK);
    EXPECT_EQ(modifiers(), uint32(B_NUM_LOCK | B_SCROLL_LOCK));
    set_keyboard_locks(0);
    EXPECT_EQ(modifiers(), 0u);
}

TEST(KeyboardSettings, TheKeyMapHasEachKeyInEachTable)
{
    key_map* map = nullptr;
    char* bytes = nullptr;
    get_key_map(&map, &bytes);
    ASSERT_NE(map, nullptr);
    const auto text = [&](int32 at) { return std::string(bytes + at + 1, size_t(bytes[at])); };
    EXPECT_EQ(text(map->normal_map[0x3c]), "a");
    EXPECT_EQ(text(map->shift_map[0x3c]), "A");
    EXPECT_EQ(text(map->caps_map[0x3c]), "A");
    EXPECT_EQ(text(map->caps_shift_map[0x3c]), "a");
    EXPECT_EQ(text(map->control_map[0x3c]), "\x01");
    EXPECT_EQ(text(map->normal_map[0x12]), "1");
    EXPECT_EQ(text(map->shift_map[0x12]), "!");
    EXPECT_EQ(text(map->caps_map[0x12]), "1") << "Caps Lock is for letters";
    EXPECT_EQ(text(map->normal_map[0x47]), "\n");
    EXPECT_EQ(text(map->normal_map[0]), "") << "no such key";
    EXPECT_EQ(map->left_shift_key, 0x4bu);
    for (const auto* table :
         {&map->control_map, &map->option_map, &map->normal_map, &map->shift_map, &map->caps_map,
          &map->caps_shift_map, &map->option_caps_map, &map->option_caps_shift_map}) {
        for (const int32 at : *table)
            EXPECT_TRUE(at >= 0 && at <= 256 && bytes[at] <= 1);
    }
    free(map);
    free(bytes);
    get_key_map(nullptr, &bytes);
    get_key_map(&map, nullptr);
    uint32 key = 0;
    EXPECT_EQ(get_modifier_key(B_LEFT_SHIFT_KEY, &key), B_OK);
    EXPECT_EQ(key, 0x4bu);
    EXPECT_EQ(get_modifier_key(0x40000000, &key), B_BAD_VALUE);
    EXPECT_EQ(get_modifier_key(B_LEFT_SHIFT_KEY, nullptr), B_BAD_VALUE);
}

TEST(Workspaces, NumbersStayInTheirRange)
{
    EXPECT_EQ(count_workspaces(), 4);
    activate_workspace(3);
    EXPECT_EQ(current_workspace(), 3);
    for (const int32 none : {4, -1, INT32_MAX, INT32_MIN})
        activate_workspace(none);
    EXPECT_EQ(current_workspace(), 3);
    set_workspace_count(2);
    EXPECT_EQ(count_workspaces(), 2);
    EXPECT_EQ(current_workspace(), 1) << "the last that is left";
    for (const int32 less : {0, -5, INT32_MIN}) {
        set_workspace_count(less);
        EXPECT_EQ(count_workspaces(), 1);
        EXPECT_EQ(current_workspace(), 0);
    }
    set_workspace_count(INT32_MAX);
    EXPECT_EQ(count_workspaces(), 32);
}

TEST(IdleTime, BeginsAnewWithEachInput)
{
    inject_key(0x3c, true);
    inject_key(0x3c, false);
    snooze(20'000);
    EXPECT_GE(idle_time(), 20'000);
    const bigtime_t before = system_time();
    inject_pointer(5, 5);
    const bigtime_t idle = idle_time();  // read before the clock goes on
    EXPECT_LE(idle, system_time() - before);
}

TEST(UiColors, ReadersOnOtherThreadsSeeWholeColours)
{
    const rgb_color colors[] = {make_color(1, 1, 1, 1), make_color(200, 200, 200, 200)};
    set_ui_color(B_LIST_BACKGROUND_COLOR, colors[0]);
    std::thread writer([&] {
        for (int i = 0; i < 100'000; i++)
            set_ui_color(B_LIST_BACKGROUND_COLOR, colors[i % 2]);
    });
    for (int i = 0; i < 100'000; i++) {
        const rgb_color color = ui_color(B_LIST_BACKGROUND_COLOR);
        ASSERT_TRUE(color == colors[0] || color == colors[1]);
    }
    writer.join();
}
