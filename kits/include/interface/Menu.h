#ifndef _MENU_H
#define _MENU_H

#include <Font.h>
#include <List.h>
#include <Messenger.h>
#include <View.h>

#include <atomic>

class BMenu;
class BMenuItem;

namespace BPrivate {
struct MenuPrivate;
}

enum menu_layout { B_ITEMS_IN_ROW = 0, B_ITEMS_IN_COLUMN, B_ITEMS_IN_MATRIX };

struct menu_info {
    float font_size;
    font_family f_family;
    font_style f_style;
    rgb_color background_color;
    int32 separator;
    bool click_to_open;
    bool triggers_always_shown;
};

/* How menus look and behave that are made from here on. Any thread. */
status_t get_menu_info(menu_info* info);
status_t set_menu_info(menu_info* info);

/* Called while a menu is open, each time the user does something and several times a second; true
   closes all menus. On the thread that follows the user. */
typedef bool (*menu_tracking_hook)(BMenu* menu, void* state);

/* A view of items, in a column, a row or places of their own. Owns its items, and their submenus
   through them. All calls want the lock of the window it is in, if it is in one; a submenu of a
   bar belongs to the lock of the bar's window, also while it is open in a window of its own. */
class BMenu : public BView {
public:
    /* What a menu that makes its items as it opens is asked for. */
    enum add_state { B_INITIAL_ADD, B_PROCESSING, B_ABORT };

    BMenu(const char* name, menu_layout layout = B_ITEMS_IN_COLUMN);
    /* Items of a matrix are added with frames of their own. */
    BMenu(const char* name, float width, float height);
    BMenu(BMessage* archive);
    virtual ~BMenu();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    virtual void AttachedToWindow();
    virtual void DetachedFromWindow();
    virtual void AllAttached();
    virtual void AllDetached();
    virtual void Draw(BRect updateRect);
    virtual void MessageReceived(BMessage* message);
    virtual void KeyDown(const char* bytes, int32 numBytes);
    virtual BSize MinSize();
    virtual BSize MaxSize();
    virtual BSize PreferredSize();
    virtual void GetPreferredSize(float* _width, float* _height);
    virtual void ResizeToPreferred();
    virtual void DoLayout();
    virtual void FrameMoved(BPoint where);
    virtual void FrameResized(float width, float height);
    void InvalidateLayout();
    virtual void MakeFocus(bool focus = true);

    /* Adopt the item or submenu. False when it belongs to a menu already or the index is off. */
    bool AddItem(BMenuItem* item);
    bool AddItem(BMenuItem* item, int32 index);
    bool AddItem(BMenuItem* item, BRect frame);
    bool AddItem(BMenu* menu);
    bool AddItem(BMenu* menu, int32 index);
    bool AddItem(BMenu* menu, BRect frame);
    bool AddList(BList* list, int32 index);
    bool AddSeparatorItem();

    /* Give the item back to the caller. */
    bool RemoveItem(BMenuItem* item);
    BMenuItem* RemoveItem(int32 index);
    bool RemoveItems(int32 index, int32 count, bool deleteItems = false);
    bool RemoveItem(BMenu* menu);

    BMenuItem* ItemAt(int32 index) const;
    BMenu* SubmenuAt(int32 index) const;
    int32 CountItems() const;
    int32 IndexOf(BMenuItem* item) const;
    int32 IndexOf(BMenu* menu) const;
    BMenuItem* FindItem(uint32 command) const;    // submenus too
    BMenuItem* FindItem(const char* name) const;  // submenus too

    virtual status_t SetTargetForItems(BHandler* target);
    virtual status_t SetTargetForItems(BMessenger messenger);

    virtual void SetEnabled(bool enable);
    virtual void SetRadioMode(bool on);  // one item at most is marked
    virtual void SetTriggersEnabled(bool enable);
    virtual void SetMaxContentWidth(float maxWidth);
    void SetLabelFromMarked(bool on);  // the superitem shows the marked item's label
    bool IsLabelFromMarked();
    bool IsEnabled() const;
    bool IsRadioMode() const;
    bool AreTriggersEnabled() const;
    bool IsRedrawAfterSticky() const;
    float MaxContentWidth() const;

    BMenuItem* FindMarked();
    int32 FindMarkedIndex();
    BMenu* Supermenu() const;
    BMenuItem* Superitem() const;

    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 form, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);
    virtual status_t Perform(perform_code d, void* arg);

    /* Hook of a menu that makes its items as it opens: called with B_INITIAL_ADD, then with
       B_PROCESSING for as long as it answers true; B_ABORT says that the user has gone elsewhere,
       and the menu does not open. On the thread that follows the user, window locked. */
    virtual bool AddDynamicItem(BMenu::add_state state);

    virtual void DrawBackground(BRect updateRect);
    void SetTrackingHook(menu_tracking_hook hook, void* state);
    void SortItems(int (*compare)(const BMenuItem*, const BMenuItem*));
    bool SwapItems(int32 indexA, int32 indexB);
    bool MoveItem(int32 indexFrom, int32 indexTo);

protected:
    BMenu(BRect frame, const char* name, uint32 resizeMask, uint32 flags, menu_layout layout,
          bool resizeToFit);

    virtual void LayoutInvalidated(bool descendants);
    /* Where the menu opens on the screen. */
    virtual BPoint ScreenLocation();
    void SetItemMargins(float left, float top, float right, float bottom);
    void GetItemMargins(float* _left, float* _top, float* _right, float* _bottom) const;
    menu_layout Layout() const;

    /* Opens the menu in a window of its own, and closes it, together with the user's tracking. */
    virtual void Show();
    void Show(bool selectFirstItem);
    virtual void Hide();
    /* Follows the user through the menu and its submenus until an item is chosen, or none, and
       returns it; nothing is sent. `startOpened`: it stays open without a button held. A release
       in `specialRect` (on the screen) leaves it open. */
    BMenuItem* Track(bool startOpened = false, BRect* specialRect = nullptr);
    void DrawItems(BRect updateRect);

private:
    friend class BMenuBar;
    friend class BMenuField;
    friend class BMenuItem;
    friend class BPopUpMenu;
    friend class BSeparatorItem;
    friend struct BPrivate::MenuPrivate;

    void _InitMenu();
    bool _IsBelow(const BMenu* menu) const;
    BWindow* _RootWindow() const;
    void _SetDefaultTargets(BWindow* before, BWindow* after);
    void _LayoutItems();
    virtual void _SizeItems();
    void _ItemsChanged();
    void _ItemMarked(BMenuItem* item);
    BMenuItem* _HitTest(BPoint where) const;
    void _Select(BMenuItem* item);

    BList fItems;
    BMenuItem* fSuperitem = nullptr;
    BMenuItem* fSelected = nullptr;
    menu_layout fLayout = B_ITEMS_IN_COLUMN;
    BRect fMargins;  // not a rectangle: left, top, right and bottom of each item
    BSize fContent;  // all items; as laid out last
    float fMaxContentWidth = 0;
    menu_tracking_hook fTrackingHook = nullptr;
    void* fTrackingState = nullptr;
    std::atomic<bool> fEnabled{true};  // read while an open menu draws
    bool fRadioMode = false;
    bool fLabelFromMarked = false;
    bool fTriggersEnabled = true;
    bool fResizeToFit = true;
    bool fShowsTriggers = false;
    bool fLaidOut = false;
};

#endif  // _MENU_H
