#ifndef _SCROLL_VIEW_H
#define _SCROLL_VIEW_H

#include <ScrollBar.h>
#include <View.h>

/* A frame around a view, with scroll bars for it. The view is the first child, the bars "_HSB_" and
   "_VSB_" come after it. */
class BScrollView : public BView {
public:
    // As large as the target and the bars want, in the target's place.
    BScrollView(const char* name, BView* target, uint32 resizingMode = B_FOLLOW_LEFT_TOP,
                uint32 flags = 0, bool horizontal = false, bool vertical = false,
                border_style border = B_FANCY_BORDER);
    BScrollView(const char* name, BView* target, uint32 flags, bool horizontal, bool vertical,
                border_style border = B_FANCY_BORDER);
    BScrollView(BMessage* archive);
    virtual ~BScrollView();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;
    virtual status_t AllUnarchived(const BMessage* archive);

    virtual void AllAttached();
    virtual void AllDetached();
    virtual void AttachedToWindow();
    virtual void DetachedFromWindow();
    virtual void Draw(BRect updateRect);
    virtual void FrameMoved(BPoint newPosition);
    virtual void FrameResized(float newWidth, float newHeight);
    virtual void MessageReceived(BMessage* message);
    virtual void MouseDown(BPoint where);
    virtual void MouseMoved(BPoint where, uint32 code, const BMessage* dragMessage);
    virtual void MouseUp(BPoint where);
    virtual void WindowActivated(bool active);
    virtual void GetPreferredSize(float* _width, float* _height);
    virtual void ResizeToPreferred();
    virtual void MakeFocus(bool focus = true);
    virtual BSize MinSize();
    virtual BSize MaxSize();
    virtual BSize PreferredSize();

    // Null without a bar of that direction.
    BScrollBar* ScrollBar(orientation direction) const;
    // The frame grows or shrinks around the target.
    virtual void SetBorder(border_style border);
    border_style Border() const;
    /* The sides that the border is at: bits for left 1, right 2, top 4 and bottom 8; all of them at
       first. The target goes as far as the edge where there is none. */
    void SetBorders(uint32 borders);
    uint32 Borders() const;
    /* Draws the border as around what has the keyboard. B_ERROR for one that is not
       B_FANCY_BORDER. */
    virtual status_t SetBorderHighlighted(bool highlight);
    bool IsBorderHighlighted() const;

    // The view before it is taken out, and is the program's again.
    void SetTarget(BView* target);
    BView* Target() const;

    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 what, const char* property);
    virtual status_t GetSupportedSuites(BMessage* message);
    virtual status_t Perform(perform_code d, void* arg);

protected:
    virtual void LayoutInvalidated(bool descendants = false);
    virtual void DoLayout();

private:
    void _Init(BView* target, bool horizontal, bool vertical);
    void _Change(border_style border, uint32 borders);
    BRect _Inside(BRect frame) const;
    BRect _FrameAround(BRect target) const;
    void _PlaceBars(BRect target);

    BView* fTarget;
    BScrollBar* fHorizontal = nullptr;
    BScrollBar* fVertical = nullptr;
    border_style fBorder;
    uint32 fBorders;
    bool fHighlighted = false;
};

#endif  // _SCROLL_VIEW_H
