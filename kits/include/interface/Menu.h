#ifndef _MENU_H
#define _MENU_H

#include <Font.h>
#include <List.h>
#include <Messenger.h>
#include <View.h>

class BMenu;
class BMenuItem;

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

status_t get_menu_info(menu_info* info);
status_t set_menu_info(menu_info* info);

typedef bool (*menu_tracking_hook)(BMenu* menu, void* state);

/* A view of items, in a column or a row. Owns its items, and their submenus through them. All
   calls want the lock of the window it is in, if it is in one. */
class BMenu : public BView {
public:
    BMenu(const char* name, menu_layout layout = B_ITEMS_IN_COLUMN);
    /* Items of a matrix are added with frames of their own. */
    BMenu(const char* name, float width, float height);
    BMenu(BMessage* archive);
    virtual ~BMenu();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    virtual void AttachedToWindow();
    virtual void Draw(BRect updateRect);
    virtual void GetPreferredSize(float* _width, float* _height);
    virtual void ResizeToPreferred();

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

    virtual void DrawBackground(BRect updateRect);
    void SetTrackingHook(menu_tracking_hook hook, void* state);
    void SortItems(int (*compare)(const BMenuItem*, const BMenuItem*));
    bool SwapItems(int32 indexA, int32 indexB);
    bool MoveItem(int32 indexFrom, int32 indexTo);

protected:
    BMenu(BRect frame, const char* name, uint32 resizeMask, uint32 flags, menu_layout layout,
          bool resizeToFit);

    virtual BPoint ScreenLocation();
    void SetItemMargins(float left, float top, float right, float bottom);
    void GetItemMargins(float* _left, float* _top, float* _right, float* _bottom) const;
    menu_layout Layout() const;
    void DrawItems(BRect updateRect);

private:
    friend class BMenuItem;
    friend class BPopUpMenu;
    friend class BSeparatorItem;

    void _InitMenu();
    bool _IsBelow(const BMenu* menu) const;
    void _SetDefaultTargets(BWindow* window);
    void _LayoutItems(float* _width, float* _height);
    void _ItemsChanged();
    void _ItemMarked(BMenuItem* item);
    BMenuItem* _HitTest(BPoint where) const;
    void _Select(BMenuItem* item);

    BList fItems;
    BMenuItem* fSuperitem = nullptr;
    BMenuItem* fSelected = nullptr;
    menu_layout fLayout = B_ITEMS_IN_COLUMN;
    BRect fMargins;  // not a rectangle: left, top, right and bottom of each item
    float fMaxContentWidth = 0;
    menu_tracking_hook fTrackingHook = nullptr;
    void* fTrackingState = nullptr;
    bool fEnabled = true;
    bool fRadioMode = false;
    bool fLabelFromMarked = false;
    bool fTriggersEnabled = true;
    bool fResizeToFit = true;
};

#endif  // _MENU_H
