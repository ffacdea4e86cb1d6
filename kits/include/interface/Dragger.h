#ifndef _DRAGGER_H
#define _DRAGGER_H

#include <View.h>

#include <memory>

class BBitmap;
class BPopUpMenu;
class BShelf;

/* A handle by which a copy of another view, its target, is dragged into a shelf: another window's,
   or another program's. The target is the view around it, the one inside it, or the one beside it,
   which has to be in the same view by the time that the handle is in a window. */
class BDragger : public BView {
public:
    BDragger(BRect frame, BView* target, uint32 resizingMode = B_FOLLOW_NONE,
             uint32 flags = B_WILL_DRAW);
    BDragger(BView* target, uint32 flags = B_WILL_DRAW);
    BDragger(BMessage* data);
    virtual ~BDragger();

    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;

    virtual void AttachedToWindow();
    virtual void DetachedFromWindow();
    virtual void Draw(BRect updateRect);
    virtual void MouseDown(BPoint where);
    virtual void MouseUp(BPoint where);
    virtual void MouseMoved(BPoint where, uint32 transit, const BMessage* dragMessage);
    virtual void MessageReceived(BMessage* message);
    virtual void FrameMoved(BPoint newPosition);
    virtual void FrameResized(float newWidth, float newHeight);

    /* Show and hide all handles of this program. */
    static status_t ShowAllDraggers();
    static status_t HideAllDraggers();
    static bool AreDraggersDrawn();

    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 form, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);
    virtual status_t Perform(perform_code code, void* data);
    virtual void ResizeToPreferred();
    virtual void GetPreferredSize(float* _width, float* _height);
    virtual void MakeFocus(bool focus = true);
    virtual void AllAttached();
    virtual void AllDetached();

    /* The menu of the secondary button, in place of the one of a shelf that offers to remove the
       replicant; it belongs to the handle. B_BAD_VALUE if the handle has it already. */
    status_t SetPopUp(BPopUpMenu* contextMenu);
    BPopUpMenu* PopUp() const;

    bool InShelf() const;
    BView* Target() const;
    /* What is dragged, with the pointer's place in it; null, an outline of the target. */
    virtual BBitmap* DragBitmap(BPoint* offset, drawing_mode* mode);

protected:
    /* True while Show...() or HideAllDraggers() is what calls a hook. */
    bool IsVisibilityChanging() const;

private:
    friend class BShelf;
    enum class Relation : int32 { Unknown, Parent, Child, Sibling };

    void _FindRelation();
    Relation _Relation() const;
    void _StartDrag(BPoint way);
    void _OpenMenu(BPoint where);
    static void _SetAllDrawn(bool drawn);

    BView* fTarget;
    Relation fRelation = Relation::Unknown;
    BShelf* fShelf = nullptr;
    std::unique_ptr<BPopUpMenu> fPopUp;
    BPoint fPressedAt;
    bool fIsPressed = false;
    bool fIsChanging = false;
};

#endif  // _DRAGGER_H
