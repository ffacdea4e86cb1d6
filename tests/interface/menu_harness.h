#ifndef TESTS_MENU_HARNESS_H
#define TESTS_MENU_HARNESS_H

// Menus on the screen: whether they are open, and how a hand gets to their items.

#include "window_harness.h"

#include <Bitmap.h>
#include <Menu.h>
#include <MenuItem.h>
#include <Screen.h>

#include <atomic>
#include <math.h>

namespace menu_test {

using namespace window_test;

const uint32 kOpen = 'open', kSave = 'save', kNew = 'newf', kText = 'text', kImage = 'imag';
const uint32 kUndo = 'undo', kCopy = 'copy', kHelp = 'help';
const int32_t kKeyF10 = 0x0b, kKeyUp = 0x57, kKeyLeft = 0x61, kKeyDown = 0x62, kKeyRight = 0x63;
const int32_t kKeyHome = 0x20, kKeyEnd = 0x35, kKeyPageUp = 0x21, kKeyPageDown = 0x36;
const int32_t kKeyO = 0x2f, kKeyS = 0x3d, kKeyZ = 0x4c, kKeyG = 0x40;

inline BMenuItem* item(const char* label, uint32 code, char shortcut = 0, uint32 modifiers = 0)
{
    return new BMenuItem(label, new BMessage(code), shortcut, modifiers);
}

class WindowLock {
public:
    explicit WindowLock(BWindow* window)
        : fWindow(window), fHeld(window != nullptr && window->Lock())
    {
    }
    ~WindowLock()
    {
        if (fHeld)
            fWindow->Unlock();
    }
    bool Held() const { return fHeld; }

private:
    BWindow* fWindow;
    bool fHeld;
};

// True as soon as the claim holds; only a fault reaches the deadline.
template <class Claim>
bool WaitUntil(Claim claim)
{
    const bigtime_t deadline = system_time() + 20'000'000;
    while (!claim()) {
        if (system_time() > deadline)
            return false;
        snooze(1000);
    }
    return true;
}

// The frame of an open menu on the screen; not valid if it is closed.
inline BRect OpenFrame(const BMenu* menu)
{
    BWindow* window = menu->Window();
    WindowLock lock(window);
    return lock.Held() && menu->Window() == window ? menu->ConvertToScreen(menu->Bounds())
                                                   : BRect();
}

inline bool IsOpen(const BMenu* menu) { return OpenFrame(menu).IsValid(); }
inline bool WaitOpen(const BMenu* menu)
{
    return WaitUntil([=] { return IsOpen(menu); });
}
inline bool WaitClosed(const BMenu* menu)
{
    return WaitUntil([=] { return menu->Window() == nullptr; });
}

inline BPoint MiddleOf(const BMenuItem* which)
{
    BMenu* menu = which->Menu();
    WindowLock lock(menu->Window());
    const BRect frame = menu->ConvertToScreen(which->Frame());
    return BPoint(floorf((frame.left + frame.right) / 2), floorf((frame.top + frame.bottom) / 2));
}

// What an item looks like, seen by its menu.
class SeenItem : public BMenuItem {
public:
    using BMenuItem::BMenuItem;
    using BMenuItem::IsSelected;
};

inline bool WaitSelected(const BMenuItem* which)
{
    // The accessor is protected, and the same in all items.
    return WaitUntil([=] {
        WindowLock lock(which->Menu()->Window());
        return (which->*(&SeenItem::IsSelected))();
    });
}

// The colour at a place of the screen.
inline uint32 PixelAt(BPoint place)
{
    BBitmap* picture = nullptr;
    BRect frame(place, place);
    if (BScreen().GetBitmap(&picture, false, &frame) != B_OK)
        return 0;
    const uint32 pixel = *static_cast<uint32*>(picture->Bits()) & 0xFFFFFF;
    delete picture;
    return pixel;
}
const uint32 kMenuGrey = 0xD8D8D8;

class MenuTest : public WindowTest {
protected:
    static void MoveTo(const BMenuItem* which)
    {
        const BPoint where = MiddleOf(which);
        inject_pointer(where.x, where.y);
    }
    static void ClickOn(const BMenuItem* which)
    {
        const BPoint where = MiddleOf(which);
        Click(where.x, where.y);
    }
    // A place at which nothing but the open menu is grey.
    static BPoint GroundOf(const BMenu* menu) { return OpenFrame(menu).LeftTop() + BPoint(2, 2); }
    static bool WaitGone(BPoint ground)
    {
        return WaitUntil([=] { return PixelAt(ground) != kMenuGrey; });
    }
    static bool WaitDrawn(BPoint ground)
    {
        return WaitUntil([=] { return PixelAt(ground) == kMenuGrey; });
    }
};

}  // namespace menu_test

#endif  // TESTS_MENU_HARNESS_H
