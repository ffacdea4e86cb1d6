#ifndef _MENU_FIELD_H
#define _MENU_FIELD_H

#include <Menu.h>

#include <string>

class BMenuBar;
class BMenuItem;

/* A label and beside it a title that opens a menu; with a menu that names its title by what is
   marked, a choice. Owns the menu. */
class BMenuField : public BView {
public:
    BMenuField(BRect frame, const char* name, const char* label, BMenu* menu,
               uint32 resizingMode = B_FOLLOW_LEFT_TOP, uint32 flags = B_WILL_DRAW | B_NAVIGABLE);
    /* With `fixed_size` the title fills the field whatever it says. */
    BMenuField(BRect frame, const char* name, const char* label, BMenu* menu, bool fixed_size,
               uint32 resizingMode = B_FOLLOW_LEFT_TOP, uint32 flags = B_WILL_DRAW | B_NAVIGABLE);
    BMenuField(const char* name, const char* label, BMenu* menu,
               uint32 flags = B_WILL_DRAW | B_NAVIGABLE);
    BMenuField(const char* name, const char* label, BMenu* menu, bool fixed_size,
               uint32 flags = B_WILL_DRAW | B_NAVIGABLE);
    BMenuField(const char* label, BMenu* menu, uint32 flags = B_WILL_DRAW | B_NAVIGABLE);
    BMenuField(BMessage* data);
    virtual ~BMenuField();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    virtual void Draw(BRect updateRect);
    virtual void AttachedToWindow();
    virtual void AllAttached();
    virtual void MouseDown(BPoint where);
    virtual void KeyDown(const char* bytes, int32 numBytes);
    virtual void MakeFocus(bool focused);
    virtual void MessageReceived(BMessage* message);
    virtual void WindowActivated(bool active);
    virtual void MouseUp(BPoint where);
    virtual void MouseMoved(BPoint where, uint32 transit, const BMessage* dragMessage);
    virtual void DetachedFromWindow();
    virtual void AllDetached();
    virtual void FrameMoved(BPoint where);
    virtual void FrameResized(float width, float height);

    BMenu* Menu() const;
    BMenuBar* MenuBar() const;
    /* Null: views are placed by their frames alone. */
    BLayoutItem* CreateLabelLayoutItem();
    BLayoutItem* CreateMenuBarLayoutItem();
    BMenuItem* MenuItem() const;  // the title

    virtual void SetLabel(const char* label);
    const char* Label() const;
    virtual void SetEnabled(bool on);
    bool IsEnabled() const;
    virtual void SetAlignment(alignment label);
    alignment Alignment() const;
    /* Where the title begins. */
    virtual void SetDivider(float position);
    float Divider() const;

    void ShowPopUpMarker();
    void HidePopUpMarker();

    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 form, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);
    virtual void ResizeToPreferred();
    virtual void GetPreferredSize(float* width, float* height);
    virtual BSize MinSize();
    virtual BSize MaxSize();
    virtual BSize PreferredSize();
    virtual status_t Perform(perform_code d, void* arg);

protected:
    virtual status_t AllArchived(BMessage* into) const;
    virtual status_t AllUnarchived(const BMessage* from);
    virtual void LayoutInvalidated(bool descendants);
    virtual void DoLayout();

private:
    class Bar;

    void _Init(const char* label, BMenu* menu, bool fixedSize);
    void _PlaceBar();
    void _FitBar();
    void _Open(bool byKey);

    std::string fLabel;
    BMenu* fMenu = nullptr;
    Bar* fBar = nullptr;
    float fDivider = 0;
    alignment fAlignment = B_ALIGN_LEFT;
    bool fEnabled = true;
    bool fFixedSize = false;
};

#endif  // _MENU_FIELD_H
