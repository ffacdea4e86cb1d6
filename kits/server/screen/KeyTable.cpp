// One row a key. The bytes are what the key sends alone, with Shift and with Control; -1 is none.

#include "server/screen/KeyTable.h"

#include <InterfaceDefs.h>

#include <iterator>

namespace server {

namespace {

struct KeyRow {
    uint8 key;
    int16 normal, shift, control;
    uint16 hostCode;
};

const KeyRow kKeys[] = {
    {0x01, 27, 27, 27, 1},       // Escape
    {0x02, 16, 16, 16, 59},      // F1
    {0x03, 16, 16, 16, 60},      // F2
    {0x04, 16, 16, 16, 61},      // F3
    {0x05, 16, 16, 16, 62},      // F4
    {0x06, 16, 16, 16, 63},      // F5
    {0x07, 16, 16, 16, 64},      // F6
    {0x08, 16, 16, 16, 65},      // F7
    {0x09, 16, 16, 16, 66},      // F8
    {0x0a, 16, 16, 16, 67},      // F9
    {0x0b, 16, 16, 16, 68},      // F10
    {0x0c, 16, 16, 16, 87},      // F11
    {0x0d, 16, 16, 16, 88},      // F12
    {0x0e, 16, 16, 16, 99},      // Print Screen
    {0x0f, 16, 16, 16, 70},      // Scroll Lock
    {0x10, 16, 16, 16, 119},     // Pause
    {0x11, 96, 126, -1, 41},     // `
    {0x12, 49, 33, -1, 2},       // 1
    {0x13, 50, 64, 0, 3},        // 2
    {0x14, 51, 35, -1, 4},       // 3
    {0x15, 52, 36, -1, 5},       // 4
    {0x16, 53, 37, -1, 6},       // 5
    {0x17, 54, 94, 30, 7},       // 6
    {0x18, 55, 38, -1, 8},       // 7
    {0x19, 56, 42, -1, 9},       // 8
    {0x1a, 57, 40, -1, 10},      // 9
    {0x1b, 48, 41, -1, 11},      // 0
    {0x1c, 45, 95, 31, 12},      // -
    {0x1d, 61, 43, -1, 13},      // =
    {0x1e, 8, 8, 127, 14},       // Backspace
    {0x1f, 5, 5, 5, 110},        // Insert
    {0x20, 1, 1, 1, 102},        // Home
    {0x21, 11, 11, 11, 104},     // Page Up
    {0x22, -1, -1, -1, 69},      // Num Lock
    {0x23, 47, 47, 47, 98},      // keypad /
    {0x24, 42, 42, 42, 55},      // keypad *
    {0x25, 45, 45, 45, 74},      // keypad -
    {0x26, 9, 9, 9, 15},         // Tab
    {0x27, 113, 81, 17, 16},     // q
    {0x28, 119, 87, 23, 17},     // w
    {0x29, 101, 69, 5, 18},      // e
    {0x2a, 114, 82, 18, 19},     // r
    {0x2b, 116, 84, 20, 20},     // t
    {0x2c, 121, 89, 25, 21},     // y
    {0x2d, 117, 85, 21, 22},     // u
    {0x2e, 105, 73, 9, 23},      // i
    {0x2f, 111, 79, 15, 24},     // o
    {0x30, 112, 80, 16, 25},     // p
    {0x31, 91, 123, 27, 26},     // [
    {0x32, 93, 125, 29, 27},     // ]
    {0x33, 92, 124, 28, 43},     // backslash
    {0x34, 127, 127, 127, 111},  // Delete
    {0x35, 4, 4, 4, 107},        // End
    {0x36, 12, 12, 12, 109},     // Page Down
    {0x37, 1, 55, 1, 71},        // keypad 7 (Home)
    {0x38, 30, 56, 30, 72},      // keypad 8 (Up)
    {0x39, 11, 57, 11, 73},      // keypad 9 (Page Up)
    {0x3a, 43, 43, 43, 78},      // keypad +
    {0x3b, -1, -1, -1, 58},      // Caps Lock
    {0x3c, 97, 65, 1, 30},       // a
    {0x3d, 115, 83, 19, 31},     // s
    {0x3e, 100, 68, 4, 32},      // d
    {0x3f, 102, 70, 6, 33},      // f
    {0x40, 103, 71, 7, 34},      // g
    {0x41, 104, 72, 8, 35},      // h
    {0x42, 106, 74, 10, 36},     // j
    {0x43, 107, 75, 11, 37},     // k
    {0x44, 108, 76, 12, 38},     // l
    {0x45, 59, 58, -1, 39},      // ;
    {0x46, 39, 34, -1, 40},      // '
    {0x47, 10, 10, 10, 28},      // Enter (Return)
    {0x48, 28, 52, 28, 75},      // keypad 4 (Left)
    {0x49, -1, 53, -1, 76},      // keypad 5
    {0x4a, 29, 54, 29, 77},      // keypad 6 (Right)
    {0x4b, -1, -1, -1, 42},      // left Shift
    {0x4c, 122, 90, 26, 44},     // z
    {0x4d, 120, 88, 24, 45},     // x
    {0x4e, 99, 67, 3, 46},       // c
    {0x4f, 118, 86, 22, 47},     // v
    {0x50, 98, 66, 2, 48},       // b
    {0x51, 110, 78, 14, 49},     // n
    {0x52, 109, 77, 13, 50},     // m
    {0x53, 44, 60, -1, 51},      // ,
    {0x54, 46, 62, -1, 52},      // .
    {0x55, 47, 63, -1, 53},      // /
    {0x56, -1, -1, -1, 54},      // right Shift
    {0x57, 30, 30, 30, 103},     // Up Arrow
    {0x58, 4, 49, 4, 79},        // keypad 1 (End)
    {0x59, 31, 50, 31, 80},      // keypad 2 (Down)
    {0x5a, 12, 51, 12, 81},      // keypad 3 (Page Down)
    {0x5b, 10, 10, 10, 96},      // keypad Enter
    {0x5c, -1, -1, -1, 29},      // left Control
    {0x5d, -1, -1, -1, 56},      // left Alt
    {0x5e, 32, 32, 0, 57},       // Space
    {0x5f, -1, -1, -1, 100},     // right Alt
    {0x60, -1, -1, -1, 97},      // right Control
    {0x61, 28, 28, 28, 105},     // Left Arrow
    {0x62, 31, 31, 31, 108},     // Down Arrow
    {0x63, 29, 29, 29, 106},     // Right Arrow
    {0x64, 5, 48, 5, 82},        // keypad 0 (Insert)
    {0x65, 127, 46, 127, 83},    // keypad . (Delete)
    {0x66, -1, -1, -1, 125},     // left Win/GUI
    {0x67, -1, -1, -1, 126},     // right Win/GUI
    {0x68, -1, -1, -1, 127},     // Menu
    {0x69, 92, 124, 28, 86},     // 102nd key (left of Z)
    {0x6a, -1, -1, -1, 124},     // Yen (Japanese)
    {0x6b, -1, -1, -1, 89},      // Ro (Japanese)
    {0x6c, -1, -1, -1, 94},      // Muhenkan (Japanese)
    {0x6d, -1, -1, -1, 92},      // Henkan (Japanese)
    {0x6e, -1, -1, -1, 93},      // Katakana/Hiragana (Japanese)
    {0x70, -1, -1, -1, 121},     // keypad . second (ABNT2)
    {0x7e, -1, -1, -1, 0},       // SysReq
    {0x7f, -1, -1, -1, 0},       // Break
};

struct ModifierRow {
    uint8 key;
    uint32 bits;
};

const ModifierRow kModifiers[] = {
    {0x4b, B_LEFT_SHIFT_KEY | B_SHIFT_KEY},
    {0x56, B_RIGHT_SHIFT_KEY | B_SHIFT_KEY},
    {0x5c, B_LEFT_CONTROL_KEY | B_CONTROL_KEY},
    {0x60, B_RIGHT_CONTROL_KEY | B_CONTROL_KEY},
    {0x5d, B_LEFT_COMMAND_KEY | B_COMMAND_KEY},
    {0x67, B_RIGHT_COMMAND_KEY | B_COMMAND_KEY},
    {0x66, B_LEFT_OPTION_KEY | B_OPTION_KEY},
    {0x5f, B_RIGHT_OPTION_KEY | B_OPTION_KEY},
    {0x68, B_MENU_KEY},
    {0x3b, B_CAPS_LOCK},
    {0x22, B_NUM_LOCK},
    {0x0f, B_SCROLL_LOCK},
};

// Key code to row, and host code to key code; filled on first use.
struct Index {
    const KeyRow* byKey[kKeyCount] = {};
    uint8 byHostCode[256] = {};

    Index()
    {
        for (const KeyRow& row : kKeys) {
            byKey[row.key] = &row;
            if (row.hostCode != 0)
                byHostCode[row.hostCode] = row.key;
        }
    }
};

const Index& index()
{
    static const Index index;
    return index;
}

const KeyRow* row_of(int32 key)
{
    return key >= 0 && key < kKeyCount ? index().byKey[key] : nullptr;
}

bool is_keypad_digit(int32 key)
{
    return (key >= 0x37 && key <= 0x39) || (key >= 0x48 && key <= 0x4a) ||
           (key >= 0x58 && key <= 0x5a) || key == 0x64 || key == 0x65;
}

}  // namespace

int32 KeyForHostCode(uint32 code)
{
    return code < std::size(index().byHostCode) ? index().byHostCode[code] : 0;
}

int32 KeyByte(int32 key, uint32 modifiers)
{
    const KeyRow* row = row_of(key);
    if (row == nullptr)
        return -1;
    if ((modifiers & B_CONTROL_KEY) != 0)
        return row->control;
    bool shift = (modifiers & B_SHIFT_KEY) != 0;
    if (KeyIsLetter(key) && (modifiers & B_CAPS_LOCK) != 0)
        shift = !shift;
    if (is_keypad_digit(key) && (modifiers & B_NUM_LOCK) != 0)
        shift = !shift;
    return shift ? row->shift : row->normal;
}

bool KeyIsFixed(int32 key)
{
    const KeyRow* row = row_of(key);
    return row != nullptr && !is_keypad_digit(key) &&
           ((row->normal >= 0 && row->normal < ' ') || row->normal == B_DELETE);
}

bool KeyIsLetter(int32 key)
{
    const KeyRow* row = row_of(key);
    return row != nullptr && row->normal >= 'a' && row->normal <= 'z';
}

int32 KeyRawChar(int32 key)
{
    const KeyRow* row = row_of(key);
    return row != nullptr && row->normal >= 0 ? row->normal & 0x7f : 0;
}

uint32 KeyModifiers(int32 key)
{
    for (const ModifierRow& row : kModifiers) {
        if (row.key == key)
            return row.bits;
    }
    return 0;
}

bool KeyIsLock(int32 key)
{
    return (KeyModifiers(key) & (B_CAPS_LOCK | B_NUM_LOCK | B_SCROLL_LOCK)) != 0;
}

bool KeyForCharacter(char character, int32* key, bool* shift)
{
    // The main block comes first: "1" is typed there, not on the keypad.
    static const int32 kSpecial[][2] = {{'\n', 0x47}, {'\r', 0x47}, {'\t', 0x26}, {8, 0x1e},
                                        {27, 0x01},   {127, 0x34},  {' ', 0x5e}};
    *shift = false;
    for (const auto& special : kSpecial) {
        if (special[0] == character) {
            *key = special[1];
            return true;
        }
    }
    if (character <= ' ')
        return false;
    for (const KeyRow& row : kKeys) {
        if (row.normal < ' ' || (row.key >= 0x23 && row.key <= 0x25) || row.key == 0x3a)
            continue;
        if (row.normal == character || row.shift == character) {
            *key = row.key;
            *shift = row.normal != character;
            return true;
        }
    }
    return false;
}

}  // namespace server
