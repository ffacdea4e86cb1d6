#ifndef _PICTURE_BUTTON_H
#define _PICTURE_BUTTON_H

#include <Control.h>

#include <memory>

class BPicture;

enum { B_ONE_STATE_BUTTON = 0, B_TWO_STATE_BUTTON = 1 };

/* A button that a program draws: with the pictures of its states, which are copied. One of one
   state is on while it is held down, one of two is turned over by each press released inside. A
   state without picture shows nothing. */
class BPictureButton : public BControl {
public:
    BPictureButton(BRect frame, const char* name, BPicture* off, BPicture* on, BMessage* message,
                   uint32 behavior = B_ONE_STATE_BUTTON, uint32 resizingMode = B_FOLLOW_LEFT_TOP,
                   uint32 flgs = B_WILL_DRAW | B_NAVIGABLE);
    BPictureButton(BMessage* archive);
    virtual ~BPictureButton();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    virtual void Draw(BRect updateRect);
    virtual void KeyDown(const char* bytes, int32 numBytes);
    virtual void MouseDown(BPoint where);
    virtual void MouseUp(BPoint where);
    virtual void MouseMoved(BPoint where, uint32 code, const BMessage* dragMessage);

    virtual void SetEnabledOn(BPicture* picture);
    virtual void SetEnabledOff(BPicture* picture);
    virtual void SetDisabledOn(BPicture* picture);
    virtual void SetDisabledOff(BPicture* picture);
    BPicture* EnabledOn() const;
    BPicture* EnabledOff() const;
    BPicture* DisabledOn() const;
    BPicture* DisabledOff() const;
    virtual void SetBehavior(uint32 behavior);
    uint32 Behavior() const;

private:
    void _Set(int which, BPicture* picture);
    void _Toggle();

    std::unique_ptr<BPicture> fPictures[4];  // enabled off and on, disabled off and on
    uint32 fBehavior;
};

#endif  // _PICTURE_BUTTON_H
