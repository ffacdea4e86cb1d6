#ifndef _TEXT_CONTROL_H
#define _TEXT_CONTROL_H

#include <Control.h>
#include <TextView.h>

#include <memory>

/* A label and beside it a field for one line of text. Enter, or the focus going elsewhere, sends
   the control's message if the text was changed; every change sends the modification message.
   Line breaks in the text become blanks. The text view is the control's only child, and carries
   B_NAVIGABLE in its place. */
class BTextControl : public BControl {
public:
    /* The control takes the height that its font wants. The divider is in the middle, at the left
       edge if the label is null. Adopts the message. */
    BTextControl(BRect frame, const char* name, const char* label, const char* initialText,
                 BMessage* message, uint32 resizeMask = B_FOLLOW_LEFT_TOP,
                 uint32 flags = B_WILL_DRAW | B_NAVIGABLE);
    BTextControl(const char* name, const char* label, const char* initialText, BMessage* message,
                 uint32 flags = B_WILL_DRAW | B_NAVIGABLE);
    BTextControl(const char* label, const char* initialText, BMessage* message);
    virtual ~BTextControl();

    BTextControl(BMessage* archive);
    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    // Null is an empty text. Does nothing while a modification is told.
    virtual void SetText(const char* text);
    const char* Text() const;
    int32 TextLength() const;
    // The frame of a field whose text is of no use, until it is marked otherwise.
    void MarkAsInvalid(bool invalid);
    virtual void SetValue(int32 value);
    virtual status_t Invoke(BMessage* message = nullptr);
    BTextView* TextView() const;

    // Sent to the target at every change of the text. Adopts the message; null for none.
    virtual void SetModificationMessage(BMessage* message);
    BMessage* ModificationMessage() const;

    virtual void SetAlignment(alignment label, alignment text);
    void GetAlignment(alignment* _label, alignment* _text) const;
    // Where the field begins, pixels.
    virtual void SetDivider(float position);
    float Divider() const;

    virtual void Draw(BRect updateRect);
    virtual void MouseDown(BPoint where);
    virtual void AttachedToWindow();
    // Selects all of the text.
    virtual void MakeFocus(bool focus = true);
    virtual void SetEnabled(bool enable);
    virtual void FrameMoved(BPoint newPosition);
    virtual void FrameResized(float newWidth, float newHeight);
    virtual void WindowActivated(bool active);
    virtual void GetPreferredSize(float* _width, float* _height);
    virtual void ResizeToPreferred();
    virtual void MessageReceived(BMessage* message);
    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 what, const char* property);
    virtual void MouseUp(BPoint where);
    virtual void MouseMoved(BPoint where, uint32 transit, const BMessage* dragMessage);
    virtual void DetachedFromWindow();
    virtual void AllAttached();
    virtual void AllDetached();
    virtual status_t GetSupportedSuites(BMessage* data);
    virtual void SetFlags(uint32 flags);
    virtual BSize MinSize();
    virtual BSize MaxSize();
    virtual BSize PreferredSize();
    virtual BAlignment LayoutAlignment();
    // Null: views are laid out by their frames alone.
    BLayoutItem* CreateLabelLayoutItem();
    BLayoutItem* CreateTextViewLayoutItem();
    virtual status_t Perform(perform_code d, void* arg);
    virtual status_t SetIcon(const BBitmap* icon, uint32 flags = 0);

protected:
    virtual status_t AllArchived(BMessage* into) const;
    virtual status_t AllUnarchived(const BMessage* from);
    virtual void LayoutInvalidated(bool descendants = false);
    virtual void DoLayout();

private:
    class Input;

    void _Init(const char* initialText, uint32 flags);
    void _PlaceInput();
    void _ShowEnabled();
    uint32 _State() const;

    Input* fInput = nullptr;  // a child
    std::unique_ptr<BMessage> fModificationMessage;
    float fDivider = 0;
    alignment fLabelAlign = B_ALIGN_LEFT;
    bool fInvalid = false;
    bool fNavigable = false;  // was so when it was disabled
};

#endif  // _TEXT_CONTROL_H
