#ifndef _BOX_H
#define _BOX_H

#include <String.h>
#include <View.h>

/* A frame around other views, with a label in its upper edge: a text, or a view. It takes the
   colour of its parent as its own. */
class BBox : public BView {
public:
    BBox(BRect frame, const char* name = nullptr, uint32 resizingMode = B_FOLLOW_LEFT_TOP,
         uint32 flags = B_WILL_DRAW | B_FRAME_EVENTS | B_NAVIGABLE_JUMP,
         border_style border = B_FANCY_BORDER);
    /* Without a frame, around a child if one is given. */
    BBox(const char* name, uint32 flags = B_WILL_DRAW | B_FRAME_EVENTS | B_NAVIGABLE_JUMP,
         border_style border = B_FANCY_BORDER, BView* child = nullptr);
    BBox(border_style border, BView* child);
    BBox(BMessage* archive);
    virtual ~BBox();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    virtual void SetBorder(border_style border);
    border_style Border() const;
    // How far below the top the frame starts, because of the label.
    float TopBorderOffset();
    // What the frame leaves.
    BRect InnerFrame();

    /* The view becomes the first child and belongs to the box; the one before it is deleted, unless
       it is null that is set: then the program has it back. B_BAD_VALUE if it is in another view.
     */
    void SetLabel(const char* string);
    status_t SetLabel(BView* viewLabel);
    // Null without a text as label.
    const char* Label() const;
    // Null without a view as label.
    BView* LabelView() const;

    virtual void Draw(BRect updateRect);
    virtual void AttachedToWindow();
    virtual void GetPreferredSize(float* _width, float* _height);

private:
    BView* _TakeLabelView();
    float _LabelHeight() const;
    BRect _LabelFrame() const;

    BString fLabel;
    bool fHasLabel = false;
    BView* fLabelView = nullptr;  // a child while it is the label
    border_style fStyle;
};

#endif  // _BOX_H
