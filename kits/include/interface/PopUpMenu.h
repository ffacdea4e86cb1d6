#ifndef _POP_UP_MENU_H
#define _POP_UP_MENU_H

#include <Menu.h>
#include <OS.h>

#include <atomic>

/* A menu that opens anywhere on the screen, in a window of its own. */
class BPopUpMenu : public BMenu {
public:
    BPopUpMenu(const char* name, bool radioMode = true, bool labelFromMarked = true,
               menu_layout layout = B_ITEMS_IN_COLUMN);
    BPopUpMenu(BMessage* data);
    virtual ~BPopUpMenu();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    virtual void AttachedToWindow();

    /* Opens the menu with its left top at `where` on the screen and follows the pointer until an
       item is chosen, or none: a press elsewhere and Escape close it. Returns the item or null;
       with `autoInvoke` it has sent its message. With `async` returns null at once and goes on
       by itself. Its items want targets of their own. A press that ends where it began (or in
       `openRect`, on the screen) leaves the menu open, as does `keepOpen`. Null as well while it is
       open already. A menu that is deleted closes first. */
    BMenuItem* Go(BPoint where, bool autoInvoke = false, bool keepOpen = false, bool async = false);
    BMenuItem* Go(BPoint where, bool autoInvoke, bool keepOpen, BRect openRect, bool async = false);

    /* Deletes itself when an asynchronous Go() has ended. */
    void SetAsyncAutoDestruct(bool on);
    bool AsyncAutoDestruct() const;

protected:
    virtual BPoint ScreenLocation();

private:
    class Tracker;

    void _WaitForTracking();

    BPoint fWhere;
    bool fAutoDestruct = false;
    std::atomic<bool> fOpen{false};
    std::atomic<bool> fClosing{false};  // no choice is waited for any longer
    thread_id fTracking = -1;           // of the last asynchronous Go()
};

#endif  // _POP_UP_MENU_H
