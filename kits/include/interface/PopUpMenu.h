#ifndef _POP_UP_MENU_H
#define _POP_UP_MENU_H

#include <Menu.h>
#include <OS.h>

#include <memory>

/* A menu that opens anywhere on the screen, in a window of its own. */
class BPopUpMenu : public BMenu {
public:
    BPopUpMenu(const char* name, bool radioMode = true, bool labelFromMarked = true,
               menu_layout layout = B_ITEMS_IN_COLUMN);
    BPopUpMenu(BMessage* data);
    virtual ~BPopUpMenu();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    virtual void MessageReceived(BMessage* message);
    virtual void MouseDown(BPoint where);
    virtual void MouseUp(BPoint where);
    virtual void MouseMoved(BPoint where, uint32 transit, const BMessage* dragMessage);
    virtual void AttachedToWindow();
    virtual void DetachedFromWindow();
    virtual void AllAttached();
    virtual void AllDetached();
    virtual void FrameMoved(BPoint newPosition);
    virtual void FrameResized(float newWidth, float newHeight);
    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 form, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);
    virtual status_t Perform(perform_code code, void* data);
    virtual void ResizeToPreferred();
    virtual void GetPreferredSize(float* _width, float* _height);
    virtual void MakeFocus(bool state = true);

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
    BPopUpMenu& operator=(const BPopUpMenu& other);

private:
    class Opening;

    void _WaitForTracking();

    BPoint fWhere;
    bool fAutoDestruct = false;
    std::shared_ptr<Opening> fOpening;  // whether it is open; shared with who follows the user
    thread_id fTracking = -1;           // of the last asynchronous Go()
};

#endif  // _POP_UP_MENU_H
