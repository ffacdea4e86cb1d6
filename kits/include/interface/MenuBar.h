#ifndef _MENU_BAR_H
#define _MENU_BAR_H

#include <InterfaceDefs.h>
#include <Menu.h>

#include <memory>

enum menu_bar_border { B_BORDER_FRAME, B_BORDER_CONTENTS, B_BORDER_EACH_ITEM };

/* A menu that stands in a window, most often as a row of titles along its top. The bar that came
   to a window last is the one that its keys reach. */
class BMenuBar : public BMenu {
public:
    /* With `resizeToFit` the bar takes the size of its items when it comes to a window, and the
       width of what it hangs in if it follows both sides. */
    BMenuBar(BRect frame, const char* name,
             uint32 resizingMode = B_FOLLOW_LEFT_RIGHT | B_FOLLOW_TOP,
             menu_layout layout = B_ITEMS_IN_ROW, bool resizeToFit = true);
    BMenuBar(const char* name, menu_layout layout = B_ITEMS_IN_ROW,
             uint32 flags = B_WILL_DRAW | B_FRAME_EVENTS);
    BMenuBar(BMessage* archive);
    virtual ~BMenuBar();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    virtual void AttachedToWindow();
    virtual void DetachedFromWindow();
    virtual void AllAttached();
    virtual void AllDetached();
    virtual void WindowActivated(bool state);
    virtual void MakeFocus(bool state = true);
    virtual void ResizeToPreferred();
    virtual void GetPreferredSize(float* _width, float* _height);
    virtual BSize MinSize();
    virtual BSize MaxSize();
    virtual BSize PreferredSize();
    virtual void FrameMoved(BPoint newPosition);
    virtual void FrameResized(float newWidth, float newHeight);
    virtual void Show();
    virtual void Hide();
    virtual void Draw(BRect updateRect);
    virtual void MessageReceived(BMessage* message);
    virtual void MouseDown(BPoint where);
    virtual void MouseUp(BPoint where);

    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 form, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);

    virtual void SetBorder(menu_bar_border border);
    menu_bar_border Border() const;
    void SetBorders(uint32 borders);
    uint32 Borders() const;

    virtual status_t Perform(perform_code code, void* data);

protected:
    /* Lets the user walk through the menus, from the title with that index (-1: the one under the
       pointer), and returns at once. `sticky`: they stay open without a button held; `showMenu`:
       the title's menu opens. A release in `special_rect` (on the screen) leaves them open. */
    void StartMenuBar(int32 menuIndex, bool sticky = true, bool showMenu = false,
                      BRect* special_rect = nullptr);

private:
    friend class BMenuField;
    friend struct BPrivate::MenuPrivate;

    void _InitMenuBar();
    void _SizeItems() override;

    menu_bar_border fBorder = B_BORDER_FRAME;
    uint32 fBorders = 0xF;
    std::weak_ptr<void> fTracker;  // while the user walks through the menus
};

#endif  // _MENU_BAR_H
