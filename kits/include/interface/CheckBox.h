#ifndef _CHECK_BOX_H
#define _CHECK_BOX_H

#include <Control.h>

/* A box with a label that is on or off, or for a program to set neither (B_CONTROL_PARTIALLY_ON). A
   press released inside turns it over and sends its message. */
class BCheckBox : public BControl {
public:
    // Not lower than its box needs.
    BCheckBox(BRect frame, const char* name, const char* label, BMessage* message,
              uint32 resizingMode = B_FOLLOW_LEFT_TOP, uint32 flags = B_WILL_DRAW | B_NAVIGABLE);
    /* Without a frame: as large as it wants to be. */
    BCheckBox(const char* name, const char* label, BMessage* message,
              uint32 flags = B_WILL_DRAW | B_NAVIGABLE);
    BCheckBox(const char* label, BMessage* message = nullptr);
    BCheckBox(BMessage* data);
    virtual ~BCheckBox();

    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;

    virtual void Draw(BRect updateRect);
    virtual void KeyDown(const char* bytes, int32 numBytes);
    virtual void MouseDown(BPoint where);
    virtual void MouseUp(BPoint where);
    virtual void MouseMoved(BPoint where, uint32 code, const BMessage* dragMessage);
    virtual void GetPreferredSize(float* _width, float* _height);

    // What a press makes of a box that is neither on nor off; on at first.
    bool IsPartialStateToOff() const;
    void SetPartialStateToOff(bool partialToOff);

private:
    void _TurnOver();

    bool fPartialToOff = false;
};

#endif  // _CHECK_BOX_H
