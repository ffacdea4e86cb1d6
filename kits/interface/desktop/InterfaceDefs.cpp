// Input devices, workspaces and settings of the user interface. Any thread.

#include <InterfaceDefs.h>

#include <Bitmap.h>
#include <Deskbar.h>
#include <Point.h>
#include <Rect.h>

#include <cstdlib>
#include <cstring>
#include <iterator>
#include <mutex>

#include "server/screen/Screen.h"
#include "server/screen/KeyTable.h"
#include "server/painter/Painter.h"

static const int32 kMouseType = 3;  // buttons
static const int32 kMouseSpeed = 65536;
static const int32 kKeyRepeatRate = 250;  // tenths of a repeat a second
static const bigtime_t kKeyRepeatDelay = 500000;
static const uint16 kKeyboardId = 0x83ab;  // a 101-key keyboard

static std::mutex sScrollBarLock;
static scroll_bar_info sScrollBar = {true, false, 0, 15};  // sScrollBarLock

// Writes through a pointer that must not be null.
template <class Value>
static status_t give(Value* place, Value value)
{
    if (place == nullptr)
        return B_BAD_VALUE;
    *place = value;
    return B_OK;
}

// Desktop.

status_t get_deskbar_frame(BRect* frame) { return give(frame, BDeskbar().Frame()); }

const color_map* system_colors() { return server::SystemColorMap(); }

status_t set_screen_space(int32, uint32, bool) { return B_UNSUPPORTED; }

status_t get_scroll_bar_info(scroll_bar_info* info)
{
    std::lock_guard guard(sScrollBarLock);
    return give(info, sScrollBar);
}

status_t set_scroll_bar_info(scroll_bar_info* info)
{
    if (info == nullptr)
        return B_BAD_VALUE;
    std::lock_guard guard(sScrollBarLock);
    sScrollBar = *info;
    return B_OK;
}

// Mouse.

status_t get_mouse_type(int32* type) { return give(type, kMouseType); }

status_t get_mouse_type(const char*, int32* type) { return get_mouse_type(type); }

status_t set_mouse_type(int32) { return B_UNSUPPORTED; }

status_t set_mouse_type(const char*, int32) { return B_UNSUPPORTED; }

status_t get_mouse_map(mouse_map* map)
{
    if (map == nullptr)
        return B_BAD_VALUE;
    for (uint32 i = 0; i < std::size(map->button); i++)
        map->button[i] = 1u << i;
    return B_OK;
}

status_t get_mouse_map(const char*, mouse_map* map) { return get_mouse_map(map); }

status_t set_mouse_map(mouse_map*) { return B_UNSUPPORTED; }

status_t set_mouse_map(const char*, mouse_map*) { return B_UNSUPPORTED; }

status_t get_click_speed(bigtime_t* speed) { return give(speed, server::ClickSpeed()); }

status_t get_click_speed(const char*, bigtime_t* speed) { return get_click_speed(speed); }

status_t set_click_speed(bigtime_t speed)
{
    if (speed < 0)
        return B_BAD_VALUE;
    server::SetClickSpeed(speed);
    return B_OK;
}

status_t set_click_speed(const char*, bigtime_t speed) { return set_click_speed(speed); }

status_t get_mouse_speed(int32* speed) { return give(speed, kMouseSpeed); }

status_t get_mouse_speed(const char*, int32* speed) { return get_mouse_speed(speed); }

status_t set_mouse_speed(int32) { return B_UNSUPPORTED; }

status_t set_mouse_speed(const char*, int32) { return B_UNSUPPORTED; }

status_t get_mouse_acceleration(int32* speed) { return give(speed, kMouseSpeed); }

status_t get_mouse_acceleration(const char*, int32* speed) { return give(speed, kMouseSpeed); }

status_t set_mouse_acceleration(int32) { return B_UNSUPPORTED; }

status_t set_mouse_acceleration(const char*, int32) { return B_UNSUPPORTED; }

status_t get_mouse(BPoint* screenWhere, uint32* buttons)
{
    if (screenWhere == nullptr && buttons == nullptr)
        return B_BAD_VALUE;
    BPoint where;
    uint32 down;
    server::PointerState(&where, &down);
    if (screenWhere != nullptr)
        *screenWhere = where;
    if (buttons != nullptr)
        *buttons = down;
    return B_OK;
}

status_t get_mouse_bitmap(BBitmap**, BPoint*) { return B_UNSUPPORTED; }

void set_accept_first_click(bool acceptFirstClick)
{
    server::SetAcceptsFirstClick(acceptFirstClick);
}

bool accept_first_click() { return server::AcceptsFirstClick(); }

// Keyboard.

status_t get_key_repeat_rate(int32* rate) { return give(rate, kKeyRepeatRate); }

status_t set_key_repeat_rate(int32) { return B_UNSUPPORTED; }

status_t get_key_repeat_delay(bigtime_t* delay) { return give(delay, kKeyRepeatDelay); }

status_t set_key_repeat_delay(bigtime_t) { return B_UNSUPPORTED; }

uint32 modifiers() { return static_cast<uint32>(server::Modifiers()); }

status_t get_key_info(key_info* info)
{
    if (info == nullptr)
        return B_BAD_VALUE;
    info->modifiers = modifiers();
    server::KeyStates(info->key_states);
    return B_OK;
}

static const struct {
    uint32 modifier;
    uint32 key_map::*key;
} kModifierKeys[] = {
    {B_CAPS_LOCK, &key_map::caps_key},
    {B_SCROLL_LOCK, &key_map::scroll_key},
    {B_NUM_LOCK, &key_map::num_key},
    {B_LEFT_SHIFT_KEY, &key_map::left_shift_key},
    {B_RIGHT_SHIFT_KEY, &key_map::right_shift_key},
    {B_LEFT_COMMAND_KEY, &key_map::left_command_key},
    {B_RIGHT_COMMAND_KEY, &key_map::right_command_key},
    {B_LEFT_CONTROL_KEY, &key_map::left_control_key},
    {B_RIGHT_CONTROL_KEY, &key_map::right_control_key},
    {B_LEFT_OPTION_KEY, &key_map::left_option_key},
    {B_RIGHT_OPTION_KEY, &key_map::right_option_key},
    {B_MENU_KEY, &key_map::menu_key},
};

static const struct {
    int32 (key_map::*table)[128];
    uint32 modifiers;
} kKeyTables[] = {
    {&key_map::control_map, B_CONTROL_KEY},
    {&key_map::option_caps_shift_map, B_OPTION_KEY | B_CAPS_LOCK | B_SHIFT_KEY},
    {&key_map::option_caps_map, B_OPTION_KEY | B_CAPS_LOCK},
    {&key_map::option_shift_map, B_OPTION_KEY | B_SHIFT_KEY},
    {&key_map::option_map, B_OPTION_KEY},
    {&key_map::caps_shift_map, B_CAPS_LOCK | B_SHIFT_KEY},
    {&key_map::caps_map, B_CAPS_LOCK},
    {&key_map::shift_map, B_SHIFT_KEY},
    {&key_map::normal_map, 0},
};

// The key that has a modifier's bit, 0 for none.
static uint32 key_of_modifier(uint32 modifier)
{
    for (int32 key = 0; key < server::kKeyCount; key++) {
        if ((server::KeyModifiers(key) & modifier) != 0)
            return static_cast<uint32>(key);
    }
    return 0;
}

void get_key_map(key_map** _map, char** _keyBuffer)
{
    if (_map == nullptr || _keyBuffer == nullptr)
        return;
    // The first entry has no bytes: keys without a character point to it. One entry for each
    // ASCII byte follows, so that all tables share them.
    const int32 kBytes = 128;
    auto* map = static_cast<key_map*>(calloc(1, sizeof(key_map)));
    auto* buffer = static_cast<char*>(calloc(1, 1 + 2 * kBytes));
    *_map = map;
    *_keyBuffer = buffer;
    if (map == nullptr || buffer == nullptr) {
        free(map);
        free(buffer);
        *_map = nullptr;
        *_keyBuffer = nullptr;
        return;
    }
    for (int32 byte = 0; byte < kBytes; byte++) {
        buffer[1 + 2 * byte] = 1;
        buffer[2 + 2 * byte] = static_cast<char>(byte);
    }
    map->version = 3;
    for (const auto& row : kModifierKeys)
        map->*row.key = key_of_modifier(row.modifier);
    for (const auto& row : kKeyTables) {
        for (int32 key = 0; key < server::kKeyCount; key++) {
            int byte = server::KeyByte(key, row.modifiers);
            (map->*row.table)[key] = byte >= 0 ? 1 + 2 * byte : 0;
        }
    }
}

status_t get_keyboard_id(uint16* _id) { return give(_id, kKeyboardId); }

status_t get_modifier_key(uint32 modifier, uint32* key)
{
    for (const auto& row : kModifierKeys) {
        if (row.modifier == modifier)
            return give(key, key_of_modifier(modifier));
    }
    return B_BAD_VALUE;
}

void set_modifier_key(uint32, uint32) {}

void set_keyboard_locks(uint32 modifiers) { server::SetLocks(modifiers); }

// Workspaces and focus.

int32 count_workspaces() { return server::CountWorkspaces(); }

void set_workspace_count(int32 count) { server::SetWorkspaceCount(count); }

int32 current_workspace() { return server::CurrentWorkspace(); }

void activate_workspace(int32 workspace) { server::ActivateWorkspace(workspace); }

bigtime_t idle_time() { return server::IdleTime(); }

void run_select_printer_panel() {}

void run_add_printer_panel() {}

void run_be_about() {}

void set_focus_follows_mouse(bool) {}

bool focus_follows_mouse() { return false; }

void set_mouse_mode(mode_mouse) {}

mode_mouse mouse_mode() { return B_NORMAL_MOUSE; }

void set_focus_follows_mouse_mode(mode_focus_follows_mouse) {}

mode_focus_follows_mouse focus_follows_mouse_mode() { return B_NORMAL_FOCUS_FOLLOWS_MOUSE; }
