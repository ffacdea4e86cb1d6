#ifndef SERVER_ACCESSIBLE_H
#define SERVER_ACCESSIBLE_H

// What screen readers, magnifiers and programs that drive others are told of a window, and what
// they may ask it for. A window tells all that it shows as a tree that never changes, and another
// one when it does; so readers are answered on the server's thread alone, and no window waits.

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include <Rect.h>
#include <SupportDefs.h>

#include <server/screen/AccessibleContent.h>
#include <server/screen/StageLock.h>

namespace server {

enum class AccessibleRole : uint8 {
    Window,
    Dialog,
    Alert,
    MenuWindow,
    ToolTip,
    Group,
    Graphic,
    Label,
    Button,
    CheckBox,
    RadioButton,
    Slider,
    ScrollBar,
    ProgressBar,
    ColorChooser,
    Text,
    List,
    Row,
    Outline,
    OutlineRow,
    TabList,
    Tab,
    MenuBar,
    MenuItem,
    Separator,
    ChoiceField,
};

// Bits.
enum AccessibleState : uint32 {
    kIsDisabled = 1 << 0,
    kTakesFocus = 1 << 1,
    kIsCheckable = 1 << 2,
    kIsChecked = 1 << 3,
    kIsMixed = 1 << 4,
    kIsPressed = 1 << 5,
    kIsDefault = 1 << 6,
    kIsSelectable = 1 << 7,
    kIsSelected = 1 << 8,
    kSelectsMany = 1 << 9,
    kIsExpandable = 1 << 10,
    kIsExpanded = 1 << 11,
    kIsOutOfSight = 1 << 12,  // scrolled away, or in a closed menu
    kIsReadOnly = 1 << 13,
    kHasLines = 1 << 14,
    kHasMenu = 1 << 15,
    kIsModal = 1 << 16,
    kIsPassword = 1 << 17,  // its text is never told
    kIsHidden = 1 << 18,
    kCanBePressed = 1 << 19,
    kCanBeSet = 1 << 20,  // by its value, or its text
};

// A name that no other item of the window ever has: that of a view, and of a part of it, 0 for the
// view itself. View 0 is the window.
using AccessibleId = uint64;
constexpr AccessibleId accessible_id(uint32 view, uint32 part = 0)
{
    return uint64(view) << 32 | part;
}
constexpr uint32 view_of(AccessibleId id) { return uint32(id >> 32); }
constexpr uint32 part_of(AccessibleId id) { return uint32(id); }

// Places in a text are units of UTF-16.
struct AccessibleText {
    std::shared_ptr<const AccessibleContent> content;  // the same one as long as nothing changes
    int32 caret = 0;
    int32 selectionStart = 0, selectionEnd = 0;
    BRect caretFrame;  // in the window
};

struct AccessibleRange {
    double value = 0, least = 0, most = 0, step = 0;
    bool operator==(const AccessibleRange&) const = default;
};

struct AccessibleItem {
    AccessibleId id = 0;
    int32 parent = -1;  // index of the item that it is in
    AccessibleRole role = AccessibleRole::Group;
    uint32 states = 0;
    std::string name, description, value, shortcut;
    BRect frame;  // in the window
    std::shared_ptr<const AccessibleRange> range;
    std::shared_ptr<const AccessibleText> text;
    // Of a list: its rows are the items with parts from 1 on, of which those about what shows are
    // told. Other items have none: -1.
    int32 rows = -1;
};

struct AccessibleTree {
    std::vector<AccessibleItem> items;  // the window first, what holds others before these
    AccessibleId focus = 0;
};

struct AccessibleRequest {
    enum class What : uint8 {
        Press,
        TakeFocus,
        SetValue,  // value
        Select,    // from, to: of the text
        Replace,   // from, to by text
        Show,      // scrolls there
    };
    AccessibleId item = 0;
    What what = What::Press;
    double value = 0;
    int32 from = 0, to = 0;
    std::u16string text;
};

extern std::atomic<bool> gReaderListens;
// Any thread; windows ask at every change.
inline bool reader_listens() { return gReaderListens.load(std::memory_order_relaxed); }
// Tells the windows if one has come.
void set_reader_listens(bool listens) REQUIRES(gStageLock);

}  // namespace server

#endif  // SERVER_ACCESSIBLE_H
