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
    BScrollView(BMessage* archive);
    virtual ~BScrollView();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    virtual void AttachedToWindow();
    virtual void Draw(BRect updateRect);
    virtual void WindowActivated(bool active);
    virtual void GetPreferredSize(float* _width, float* _height);

    // Null without a bar of that direction.
    BScrollBar* ScrollBar(orientation direction) const;
    // The frame grows or shrinks around the target.
    virtual void SetBorder(border_style border);
    border_style Border() const;
    /* Draws the border as around what has the keyboard. B_ERROR for one that is not
       B_FANCY_BORDER. */
    virtual status_t SetBorderHighlighted(bool highlight);
    bool IsBorderHighlighted() const;

    // The view before it is taken out, and is the program's again.
    void SetTarget(BView* target);
    BView* Target() const;

private:
    BRect _FrameAround(BRect target) const;
    void _PlaceBars(BRect target);

    BView* fTarget;
    BScrollBar* fHorizontal = nullptr;
    BScrollBar* fVertical = nullptr;
    border_style fBorder;
    bool fHighlighted = false;
};

#endif  // _SCROLL_VIEW_H
