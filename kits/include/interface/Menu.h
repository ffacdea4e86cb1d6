#ifndef _MENU_H
#define _MENU_H

#include <Messenger.h>
#include <Font.h>
#include <GraphicsDefs.h>
#include <Point.h>
#include <Rect.h>
#include <Size.h>
#include <View.h>
#include <SupportDefs.h>

class BArchivable;
class BHandler;
class BList;
class BMenuItem;
class BMessage;

enum menu_layout {
    B_ITEMS_IN_ROW = 0,
    B_ITEMS_IN_COLUMN = 1,
    B_ITEMS_IN_MATRIX = 2
};

struct menu_info {
    float font_size;
    font_family f_family;
    font_style f_style;
    rgb_color background_color;
    int32 separator;
    bool click_to_open;
    bool triggers_always_shown;
};

typedef bool (*menu_tracking_hook)(BMenu *, void *);

class BMenu : public BView {
public:
    BMenu(const char* name, menu_layout layout = B_ITEMS_IN_COLUMN);
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
    bool AddItem(BMenuItem* item);
    bool AddItem(BMenuItem* item, int32 index);
    bool AddItem(BMenuItem* item, BRect frame);
    bool AddItem(BMenu* menu);
    bool AddItem(BMenu* menu, int32 index);
    bool AddItem(BMenu* menu, BRect frame);
    bool AddList(BList* list, int32 index);
    bool AddSeparatorItem();
    bool RemoveItem(BMenuItem* item);
    BMenuItem* RemoveItem(int32 index);
    bool RemoveItems(int32 index, int32 count, bool deleteItems = false);
    bool RemoveItem(BMenu* menu);
    BMenuItem* ItemAt(int32 index) const;
    BMenu* SubmenuAt(int32 index) const;
    int32 CountItems() const;
    int32 IndexOf(BMenuItem* item) const;
    int32 IndexOf(BMenu* menu) const;
    BMenuItem* FindItem(uint32 command) const;
    BMenuItem* FindItem(const char* name) const;
    virtual status_t SetTargetForItems(BHandler* target);
    virtual status_t SetTargetForItems(BMessenger messenger);
    virtual void SetEnabled(bool enable);
    virtual void SetRadioMode(bool on);
    virtual void SetTriggersEnabled(bool enable);
    virtual void SetMaxContentWidth(float maxWidth);
    void SetLabelFromMarked(bool on);
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
    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier, int32 form, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);
    virtual status_t Perform(perform_code d, void* arg);
protected:
    BMenu(BRect frame, const char* name, uint32 resizeMask, uint32 flags, menu_layout layout, bool resizeToFit);
    virtual void LayoutInvalidated(bool descendants);
    virtual BPoint ScreenLocation();
    void SetItemMargins(float left, float top, float right, float bottom);
    void GetItemMargins(float* _left, float* _top, float* _right, float* _bottom) const;
    menu_layout Layout() const;
    virtual void Show();
    void Show(bool selectFirstItem);
    virtual void Hide();
    BMenuItem* Track(bool startOpened = false, BRect* specialRect = nullptr);
public:
    enum add_state { B_INITIAL_ADD = 0, B_PROCESSING = 1, B_ABORT = 2 };
    virtual bool AddDynamicItem(BMenu::add_state state);
    virtual void DrawBackground(BRect updateRect);
    void SetTrackingHook(menu_tracking_hook hook, void* state);
    void SortItems(int (*compare)(const BMenuItem *, const BMenuItem *));
    bool SwapItems(int32 indexA, int32 indexB);
    bool MoveItem(int32 indexFrom, int32 indexTo);
protected:
    void DrawItems(BRect updateRect);

private:
};

status_t get_menu_info(menu_info* info);
status_t set_menu_info(menu_info* info);

#endif  // _MENU_H
