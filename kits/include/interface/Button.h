#ifndef _BUTTON_H
#define _BUTTON_H

#include <Control.h>

#include <memory>

/* A push button: on while it is held down, and sends its message when it is released inside. The
   window's default button is also pressed by Enter in other views. */
class BButton : public BControl {
public:
    enum BBehavior { B_BUTTON_BEHAVIOR = 0, B_TOGGLE_BEHAVIOR = 1, B_POP_UP_BEHAVIOR = 2 };

    // Not lower than its label needs.
    BButton(BRect frame, const char* name, const char* label, BMessage* message,
            uint32 resizingMode = B_FOLLOW_LEFT_TOP,
            uint32 flags = B_WILL_DRAW | B_NAVIGABLE | B_FULL_UPDATE_ON_RESIZE);
    /* Without a frame: as large as it wants to be. */
    BButton(const char* name, const char* label, BMessage* message,
            uint32 flags = B_WILL_DRAW | B_NAVIGABLE | B_FULL_UPDATE_ON_RESIZE);
    BButton(const char* label, BMessage* message = nullptr);
    BButton(BMessage* data);
    virtual ~BButton();

    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;

    virtual void Draw(BRect updateRect);
    virtual void MouseDown(BPoint where);
    virtual void MouseMoved(BPoint where, uint32 code, const BMessage* dragMessage);
    virtual void MouseUp(BPoint where);
    virtual void AttachedToWindow();
    virtual void DetachedFromWindow();
    virtual void KeyDown(const char* bytes, int32 numBytes);
    virtual void SetEnabled(bool enabled);
    virtual void GetPreferredSize(float* _width, float* _height);
    virtual status_t Invoke(BMessage* message = nullptr);

    // Makes it the default button of its window, in place of the one before, and larger by its
    // ring.
    virtual void MakeDefault(bool flag);
    bool IsDefault() const;

    // Without a frame while the pointer is elsewhere.
    bool IsFlat() const;
    void SetFlat(bool flat);
    BBehavior Behavior() const;
    void SetBehavior(BBehavior behavior);
    // Sent by the arrow of a pop-up button; adopted.
    BMessage* PopUpMessage() const;
    void SetPopUpMessage(BMessage* message);

private:
    uint32 _State() const;
    BRect _PopUpFrame() const;

    std::unique_ptr<BMessage> fPopUpMessage;
    BBehavior fBehavior = B_BUTTON_BEHAVIOR;
    bool fDefault = false;
    bool fFlat = false;
    bool fPointerInside = false;
    bool fPopUpPressed = false;
    bigtime_t fShownUntil = 0;  // a key pressed it: it looks so for a moment
};

#endif  // _BUTTON_H
