#ifndef _RADIO_BUTTON_H
#define _RADIO_BUTTON_H

#include <Control.h>

/* One of several buttons in the same view, of which one is on: the others go off as one is turned
   on. A radio button that is the label of a box belongs to the buttons beside the box. */
class BRadioButton : public BControl {
public:
    // Not lower than its knob needs.
    BRadioButton(BRect frame, const char* name, const char* label, BMessage* message,
                 uint32 resizingMode = B_FOLLOW_LEFT_TOP, uint32 flags = B_WILL_DRAW | B_NAVIGABLE);
    /* Without a frame: as large as it wants to be. */
    BRadioButton(const char* name, const char* label, BMessage* message,
                 uint32 flags = B_WILL_DRAW | B_NAVIGABLE);
    BRadioButton(const char* label, BMessage* message);
    BRadioButton(BMessage* data);
    virtual ~BRadioButton();

    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;

    virtual void Draw(BRect updateRect);
    virtual void KeyDown(const char* bytes, int32 numBytes);
    virtual void MouseDown(BPoint where);
    virtual void MouseUp(BPoint where);
    virtual void MouseMoved(BPoint where, uint32 code, const BMessage* dragMessage);
    virtual void SetValue(int32 value);
    virtual void GetPreferredSize(float* _width, float* _height);
};

#endif  // _RADIO_BUTTON_H
