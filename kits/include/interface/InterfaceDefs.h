#ifndef _INTERFACEDEFS_H
#define _INTERFACEDEFS_H

#include <GraphicsDefs.h>
#include <OS.h>
#include <SupportDefs.h>

class BBitmap;
class BMessage;
class BPoint;
class BRect;

#define B_UTF8_BULLET "•"
#define B_UTF8_ELLIPSIS "…"
#define B_UTF8_OPEN_QUOTE "“"
#define B_UTF8_CLOSE_QUOTE "”"
#define B_UTF8_COPYRIGHT "©"
#define B_UTF8_REGISTERED "®"
#define B_UTF8_TRADEMARK "™"
#define B_UTF8_SMILING_FACE "☻"
#define B_UTF8_HIROSHI "弘"
#define B_MAX_MOUSE_BUTTONS 16

// Bytes that keys send.
enum {
    B_ASCII_NUL = 0,
    B_HOME = 1,
    B_ASCII_START_TEXT = 2,
    B_ASCII_END_TEXT = 3,
    B_END = 4,
    B_INSERT = 5,
    B_ASCII_ACKNOWLEDGE = 6,
    B_ASCII_BELL = 7,
    B_BACKSPACE = 8,
    B_TAB = 9,
    B_RETURN = 10,
    B_ENTER = 10,
    B_PAGE_UP = 11,
    B_PAGE_DOWN = 12,
    B_ASCII_CARRIAGE_RETURN = 13,
    B_ASCII_SHIFT_OUT = 14,
    B_ASCII_SHIFT_IN = 15,
    B_FUNCTION_KEY = 16,
    B_ASCII_XON = 17,
    B_DEVICE_CONTROL_2 = 18,
    B_ASCII_XOFF = 19,
    B_DEVICE_CONTROL_4 = 20,
    B_ASCII_NEGATIVE_ACK = 21,
    B_ASCII_SYNC_IDLE = 22,
    B_ASCII_END_TRANSMISSION_BLOCK = 23,
    B_ASCII_CANCEL = 24,
    B_ASCII_END_MEDIUM = 25,
    B_SUBSTITUTE = 26,
    B_ESCAPE = 27,
    B_LEFT_ARROW = 28,
    B_RIGHT_ARROW = 29,
    B_UP_ARROW = 30,
    B_DOWN_ARROW = 31,
    B_SPACE = 32,
    B_DELETE = 127,
    B_KATAKANA_HIRAGANA = 242,
    B_HANKAKU_ZENKAKU = 243
};

// Key codes of the keys that B_FUNCTION_KEY stands for, and of some others.
enum {
    B_F1_KEY = 2,
    B_F2_KEY = 3,
    B_F3_KEY = 4,
    B_F4_KEY = 5,
    B_F5_KEY = 6,
    B_F6_KEY = 7,
    B_F7_KEY = 8,
    B_F8_KEY = 9,
    B_F9_KEY = 10,
    B_F10_KEY = 11,
    B_F11_KEY = 12,
    B_F12_KEY = 13,
    B_PRINT_KEY = 14,
    B_SCROLL_KEY = 15,
    B_PAUSE_KEY = 16,
    B_NUM_LOCK_KEY = 34,
    B_CAPS_LOCK_KEY = 59,
    B_SPACE_BAR_KEY = 94,
    B_NUMPAD_EQUAL_KEY = 106,
    B_HANGUL_KEY = 240,
    B_HANGUL_HANJA_KEY = 241
};

// Tables of a key map.
enum {
    B_CONTROL_TABLE = 1,
    B_OPTION_CAPS_SHIFT_TABLE = 2,
    B_OPTION_CAPS_TABLE = 4,
    B_OPTION_SHIFT_TABLE = 8,
    B_OPTION_TABLE = 16,
    B_CAPS_SHIFT_TABLE = 32,
    B_CAPS_TABLE = 64,
    B_SHIFT_TABLE = 128,
    B_NORMAL_TABLE = 0x100
};

// Modifiers. The word has the common bit and that of the side.
enum {
    B_SHIFT_KEY = 1,
    B_COMMAND_KEY = 2,
    B_CONTROL_KEY = 4,
    B_CAPS_LOCK = 8,
    B_SCROLL_LOCK = 16,
    B_NUM_LOCK = 32,
    B_OPTION_KEY = 64,
    B_MENU_KEY = 128,
    B_LEFT_SHIFT_KEY = 0x100,
    B_RIGHT_SHIFT_KEY = 0x200,
    B_LEFT_COMMAND_KEY = 0x400,
    B_RIGHT_COMMAND_KEY = 0x800,
    B_LEFT_CONTROL_KEY = 0x1000,
    B_RIGHT_CONTROL_KEY = 0x2000,
    B_LEFT_OPTION_KEY = 0x4000,
    B_RIGHT_OPTION_KEY = 0x8000
};

// Flag of shortcuts: the Command key is not added.
enum { B_NO_COMMAND_KEY = 0x00010000 };

// Rules for the inside of a shape.
enum { B_EVEN_ODD = 0, B_NONZERO = 1 };

// Bitmaps of an icon.
enum {
    B_INACTIVE_ICON_BITMAP = 0,
    B_ACTIVE_ICON_BITMAP = 1,
    B_PARTIALLY_ACTIVATE_ICON_BITMAP = 2,
    B_DISABLED_ICON_BITMAP = 128
};

// Flags of icons.
enum {
    B_KEEP_ICON_BITMAP = 1,
    B_TRIM_ICON_BITMAP = 0x100,
    B_TRIM_ICON_BITMAP_KEEP_ASPECT = 0x200,
    B_CREATE_ACTIVE_ICON_BITMAP = 0x400,
    B_CREATE_PARTIALLY_ACTIVE_ICON_BITMAP = 0x800,
    B_CREATE_DISABLED_ICON_BITMAPS = 0x1000
};

enum mode_mouse {
    B_NORMAL_MOUSE = 0,
    B_CLICK_TO_FOCUS_MOUSE = 0xFFFFFFFF,
    B_FOCUS_FOLLOWS_MOUSE = 1
};

enum mode_focus_follows_mouse {
    B_NORMAL_FOCUS_FOLLOWS_MOUSE = 0,
    B_WARP_FOCUS_FOLLOWS_MOUSE = 1,
    B_INSTANT_WARP_FOCUS_FOLLOWS_MOUSE = 2
};

enum border_style { B_PLAIN_BORDER = 0, B_FANCY_BORDER = 1, B_NO_BORDER = 2 };

enum orientation { B_HORIZONTAL = 0, B_VERTICAL = 1 };

enum button_width { B_WIDTH_AS_USUAL = 0, B_WIDTH_FROM_WIDEST = 1, B_WIDTH_FROM_LABEL = 2 };

enum alignment {
    B_ALIGN_LEFT = 0,
    B_ALIGN_RIGHT = 1,
    B_ALIGN_CENTER = 2,
    B_ALIGN_HORIZONTAL_CENTER = 2,
    B_ALIGN_HORIZONTAL_UNSET = 0xFFFFFFFF,
    B_ALIGN_USE_FULL_WIDTH = 0xFFFFFFFE
};

enum vertical_alignment {
    B_ALIGN_TOP = 16,
    B_ALIGN_MIDDLE = 32,
    B_ALIGN_BOTTOM = 48,
    B_ALIGN_VERTICAL_CENTER = 32,
    B_ALIGN_VERTICAL_UNSET = 0xFFFFFFFF,
    B_ALIGN_NO_VERTICAL = 0xFFFFFFFF,
    B_ALIGN_USE_FULL_HEIGHT = 0xFFFFFFFE
};

enum BSpacing {
    B_USE_DEFAULT_SPACING = 0xFFFFFC16,
    B_USE_ITEM_SPACING = 0xFFFFFC15,
    B_USE_ITEM_INSETS = 0xFFFFFC15,
    B_USE_HALF_ITEM_SPACING = 0xFFFFFC14,
    B_USE_HALF_ITEM_INSETS = 0xFFFFFC14,
    B_USE_WINDOW_SPACING = 0xFFFFFC13,
    B_USE_WINDOW_INSETS = 0xFFFFFC13,
    B_USE_SMALL_SPACING = 0xFFFFFC12,
    B_USE_SMALL_INSETS = 0xFFFFFC12,
    B_USE_CORNER_SPACING = 0xFFFFFC11,
    B_USE_CORNER_INSETS = 0xFFFFFC11,
    B_USE_BIG_SPACING = 0xFFFFFC10,
    B_USE_BIG_INSETS = 0xFFFFFC10,
    B_USE_BORDER_SPACING = 0xFFFFFC0F,
    B_USE_BORDER_INSETS = 0xFFFFFC0F
};

enum join_mode {
    B_ROUND_JOIN = 0,
    B_MITER_JOIN = 1,
    B_BEVEL_JOIN = 2,
    B_BUTT_JOIN = 3,
    B_SQUARE_JOIN = 4
};

enum cap_mode { B_ROUND_CAP = 0, B_BUTT_CAP = 3, B_SQUARE_CAP = 4 };

enum bitmap_tiling { B_TILE_BITMAP_X = 1, B_TILE_BITMAP_Y = 2, B_TILE_BITMAP = 3 };

enum overlay_options {
    B_OVERLAY_FILTER_HORIZONTAL = 0x00010000,
    B_OVERLAY_FILTER_VERTICAL = 0x00020000,
    B_OVERLAY_MIRROR = 0x00040000,
    B_OVERLAY_TRANSFER_CHANNEL = 0x00080000
};

enum bitmap_drawing_options { B_FILTER_BITMAP_BILINEAR = 0x100, B_WAIT_FOR_RETRACE = 0x800 };

enum color_which {
    B_NO_COLOR = 0,
    B_PANEL_BACKGROUND_COLOR = 1,
    B_PANEL_TEXT_COLOR = 10,
    B_DOCUMENT_BACKGROUND_COLOR = 11,
    B_DOCUMENT_TEXT_COLOR = 12,
    B_CONTROL_BACKGROUND_COLOR = 13,
    B_CONTROL_TEXT_COLOR = 14,
    B_CONTROL_BORDER_COLOR = 15,
    B_CONTROL_HIGHLIGHT_COLOR = 16,
    B_CONTROL_MARK_COLOR = 27,
    B_NAVIGATION_BASE_COLOR = 4,
    B_NAVIGATION_PULSE_COLOR = 17,
    B_SHINE_COLOR = 18,
    B_SHADOW_COLOR = 19,
    B_LINK_TEXT_COLOR = 33,
    B_LINK_HOVER_COLOR = 34,
    B_LINK_VISITED_COLOR = 35,
    B_LINK_ACTIVE_COLOR = 36,
    B_MENU_BACKGROUND_COLOR = 2,
    B_MENU_SELECTED_BACKGROUND_COLOR = 6,
    B_MENU_ITEM_TEXT_COLOR = 7,
    B_MENU_SELECTED_ITEM_TEXT_COLOR = 8,
    B_MENU_SELECTED_BORDER_COLOR = 9,
    B_LIST_BACKGROUND_COLOR = 28,
    B_LIST_SELECTED_BACKGROUND_COLOR = 29,
    B_LIST_ITEM_TEXT_COLOR = 30,
    B_LIST_SELECTED_ITEM_TEXT_COLOR = 31,
    B_SCROLL_BAR_THUMB_COLOR = 32,
    B_TOOL_TIP_BACKGROUND_COLOR = 20,
    B_TOOL_TIP_TEXT_COLOR = 21,
    B_STATUS_BAR_COLOR = 37,
    B_SUCCESS_COLOR = 100,
    B_FAILURE_COLOR = 101,
    B_WINDOW_TAB_COLOR = 3,
    B_WINDOW_TEXT_COLOR = 22,
    B_WINDOW_INACTIVE_TAB_COLOR = 23,
    B_WINDOW_INACTIVE_TEXT_COLOR = 24,
    B_WINDOW_BORDER_COLOR = 25,
    B_WINDOW_INACTIVE_BORDER_COLOR = 26,
    B_KEYBOARD_NAVIGATION_COLOR = 4,
    B_MENU_SELECTION_BACKGROUND_COLOR = 6,
    B_DESKTOP_COLOR = 5
};

struct key_info {
    uint32 modifiers;
    uint8 key_states[16];
};

struct key_map {
    uint32 version;
    uint32 caps_key;
    uint32 scroll_key;
    uint32 num_key;
    uint32 left_shift_key;
    uint32 right_shift_key;
    uint32 left_command_key;
    uint32 right_command_key;
    uint32 left_control_key;
    uint32 right_control_key;
    uint32 left_option_key;
    uint32 right_option_key;
    uint32 menu_key;
    uint32 lock_settings;
    int32 control_map[128];
    int32 option_caps_shift_map[128];
    int32 option_caps_map[128];
    int32 option_shift_map[128];
    int32 option_map[128];
    int32 caps_shift_map[128];
    int32 caps_map[128];
    int32 shift_map[128];
    int32 normal_map[128];
    int32 acute_dead_key[32];
    int32 grave_dead_key[32];
    int32 circumflex_dead_key[32];
    int32 dieresis_dead_key[32];
    int32 tilde_dead_key[32];
    uint32 acute_tables;
    uint32 grave_tables;
    uint32 circumflex_tables;
    uint32 dieresis_tables;
    uint32 tilde_tables;
};

struct mouse_map {
    uint32 button[16];
};

struct scroll_bar_info {
    bool proportional;
    bool double_arrows;
    int32 knob;
    int32 min_knob_size;
};

const float B_DEFAULT_MITER_LIMIT = 10;
const float B_LIGHTEN_MAX_TINT = 0;
const float B_LIGHTEN_2_TINT = 0.385;
const float B_LIGHTEN_1_TINT = 0.59;
const float B_NO_TINT = 1;
const float B_DARKEN_1_TINT = 1.147;
const float B_DARKEN_2_TINT = 1.295;
const float B_DARKEN_3_TINT = 1.407;
const float B_DARKEN_4_TINT = 1.555;
const float B_DARKEN_MAX_TINT = 2;
const float B_DISABLED_LABEL_TINT = 1.407;
const float B_HIGHLIGHT_BACKGROUND_TINT = 1.295;
const float B_DISABLED_MARK_TINT = 0.385;

/* Where the Deskbar is, see BDeskbar. */
status_t get_deskbar_frame(BRect* frame);
/* B_UNSUPPORTED: programs do not set the host's screen modes. */
status_t set_screen_space(int32 index, uint32 resolution, bool save = true);
/* The palette of B_CMAP8. Never freed. */
const color_map* system_colors();

/* How scroll bars look in this program. */
status_t get_scroll_bar_info(scroll_bar_info* info);
status_t set_scroll_bar_info(scroll_bar_info* info);

/* The mouse. Types, maps, speeds and accelerations are the host's: reading gives the defaults of
   BeOS, setting B_UNSUPPORTED. The click speed (microseconds between two presses of a double
   click) holds for this program. There is one mouse, whatever its name. */
status_t get_mouse_type(int32* type);
status_t get_mouse_type(const char* mouse_name, int32* type);
status_t set_mouse_type(const char* mouse_name, int32 type);
status_t get_mouse_map(mouse_map* map);
status_t get_mouse_map(const char* mouse_name, mouse_map* map);
status_t set_mouse_map(mouse_map* map);
status_t set_mouse_map(const char* mouse_name, mouse_map* map);
status_t get_click_speed(bigtime_t* speed);
status_t get_click_speed(const char* mouse_name, bigtime_t* speed);
status_t set_click_speed(bigtime_t speed);
status_t set_click_speed(const char* mouse_name, bigtime_t speed);
status_t get_mouse_speed(int32* speed);
status_t get_mouse_speed(const char* mouse_name, int32* speed);
status_t set_mouse_speed(const char* mouse_name, int32 speed);
status_t get_mouse_acceleration(int32* speed);
status_t get_mouse_acceleration(const char* mouse_name, int32* speed);
status_t set_mouse_acceleration(const char* mouse_name, int32 speed);

/* The keyboard. Repeating is the host's: B_UNSUPPORTED as above. */
status_t get_key_repeat_rate(int32* rate);
status_t set_key_repeat_rate(int32 rate);
status_t get_key_repeat_delay(bigtime_t* delay);
status_t set_key_repeat_delay(bigtime_t delay);
/* The modifiers and keys that are down. */
uint32 modifiers();
status_t get_key_info(key_info* info);
/* The US key map and the characters its entries point to (a count, then that many bytes). Both are
   the caller's to free(). Null if memory runs out. */
void get_key_map(key_map** _map, char** _keyBuffer);
status_t get_keyboard_id(uint16* _id);
status_t get_modifier_key(uint32 modifier, uint32* key);
/* Does nothing: the host's keyboard map says which key is what. */
void set_modifier_key(uint32 modifier, uint32 key);
/* Caps, Num and Scroll Lock, until the keyboard itself says otherwise. */
void set_keyboard_locks(uint32 modifiers);
rgb_color keyboard_navigation_color();

/* The host's workspaces, where it has some; in memory they are 4 at first. A window manager changes
   their number, 1 to 32, in its own time, and may refuse to. */
int32 count_workspaces();
void set_workspace_count(int32 count);
int32 current_workspace();
void activate_workspace(int32 workspace);

/* Microseconds since this program last saw input. */
bigtime_t idle_time();
/* Do nothing: there are no such panels on other hosts. */
void run_select_printer_panel();
void run_add_printer_panel();
void run_be_about();

/* The window manager's: reading gives click to focus, setting does nothing. */
void set_focus_follows_mouse(bool follow);
bool focus_follows_mouse();
void set_mouse_mode(mode_mouse mode);
mode_mouse mouse_mode();
void set_focus_follows_mouse_mode(mode_focus_follows_mouse mode);
mode_focus_follows_mouse focus_follows_mouse_mode();

/* Where the pointer is on the screen, and which buttons are down. */
status_t get_mouse(BPoint* screenWhere, uint32* buttons);
/* B_UNSUPPORTED: the pointer's picture is the host's. */
status_t get_mouse_bitmap(BBitmap** bitmap, BPoint* hotspot);
/* Whether the press that activates a window is also a press in it. */
void set_accept_first_click(bool acceptFirstClick);
bool accept_first_click();

/* Colours of the user interface, for this program. Black for a code that is none. */
rgb_color ui_color(color_which which);
/* The name of the constant, null for a code that is none; and back, B_NO_COLOR for no such name. */
const char* ui_color_name(color_which which);
color_which which_ui_color(const char* name);
void set_ui_color(const color_which& which, const rgb_color& color);
/* Fields of the colours' names. */
void set_ui_colors(const BMessage* colors);
/* Below 1 nearer to white, above nearer to black; 0 and 2 are white and black. Alpha stays. */
rgb_color tint_color(rgb_color color, float tint);
status_t set_mouse_type(int32 type);
status_t set_mouse_speed(int32 speed);
status_t set_mouse_acceleration(int32 speed);

#endif  // _INTERFACEDEFS_H
