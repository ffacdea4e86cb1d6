#ifndef INTERFACE_MENU_WINDOW_H
#define INTERFACE_MENU_WINDOW_H

// The window of an open menu: as large as the menu, on the screen, and with a strip at each end to
// scroll by where the menu is taller than the screen. The menu belongs to whoever opened it.

#include <Window.h>

class BMenu;
class BMenuItem;

namespace [[gnu::visibility("hidden")]] BPrivate {

class MenuWindow final : public BWindow {
public:
    // Opens the menu with its left top near `where` on the screen: on the other side of what it
    // belongs to where there is no room. Adopts no lock; the menu is in no window before.
    static MenuWindow* Open(BMenu* menu, BPoint where);
    // Takes the menu out of its window, if it is in one of these, which ends by itself.
    static void Close(BMenu* menu);
    // Before a menu is deleted or leaves its item: takes it, and all that are open below it, out of
    // their windows, also while another thread closes these. Does nothing if it is not open.
    static void TakeDown(BMenu* menu);
    // Items came, went or changed.
    static void Refit(BMenu* menu);

    ~MenuWindow() override;

    // All below with the window locked.

    BMenu* Menu() const;  // null once it was taken out
    // Takes out what is in the window, hides the window and lets it end.
    void End();
    // -1 over the strip at the top, 1 over that at the bottom, else 0. Place on the screen.
    int32 StripAt(BPoint where) const;
    // Scrolls by so many pixels; false if it is at the end.
    bool Scroll(float distance);
    void ScrollTo(const BMenuItem* item);
    float PageHeight() const;

private:
    class Strip;

    MenuWindow(BRect frame, BMenu* menu);
    void _Arrange();

    BView* fPort;  // shows what there is room for
    Strip* fUp;
    Strip* fDown;
    bool fScrolls = false;
    float fOffset = 0;
};

// Keeps the window that a menu is open in, if it is open, from drawing it and from giving it back,
// as long as this lives.
class OpenMenuLock {
public:
    explicit OpenMenuLock(const BMenu* menu);  // may be null
    ~OpenMenuLock();
    OpenMenuLock(const OpenMenuLock&) = delete;

    // The window, locked; null if the menu is in none of these.
    BWindow* Window() const { return fWindow; }

private:
    BWindow* fWindow;
};

}  // namespace BPrivate

#endif  // INTERFACE_MENU_WINDOW_H
