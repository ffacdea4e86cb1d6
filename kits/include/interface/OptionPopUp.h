#ifndef _OPTION_POP_UP_H
#define _OPTION_POP_UP_H

#include <OptionControl.h>

class BMenuField;

/* A choice among named numbers in a menu, whose title is the one chosen; the label beside it is the
   control's. The first option is chosen until another one is. */
class BOptionPopUp : public BOptionControl {
public:
    BOptionPopUp(BRect frame, const char* name, const char* label, BMessage* message,
                 uint32 resizeMask = B_FOLLOW_LEFT_TOP, uint32 flags = B_WILL_DRAW);
    /* With `fixed` the title fills the control whatever it says. */
    BOptionPopUp(BRect frame, const char* name, const char* label, BMessage* message, bool fixed,
                 uint32 resizeMask = B_FOLLOW_LEFT_TOP, uint32 flags = B_WILL_DRAW);
    BOptionPopUp(const char* name, const char* label, BMessage* message,
                 uint32 flags = B_WILL_DRAW);
    virtual ~BOptionPopUp();

    // The view inside, which shows all of it.
    BMenuField* MenuField();

    virtual bool GetOptionAt(int32 index, const char** _name, int32* _value);
    virtual void RemoveOptionAt(int32 index);
    virtual int32 CountOptions() const;
    // B_BAD_VALUE for no name, and for an index beyond the end.
    virtual status_t AddOptionAt(const char* name, int32 value, int32 index);

    virtual void AllAttached();
    virtual void AttachedToWindow();
    virtual void MessageReceived(BMessage* message);
    virtual void SetLabel(const char* text);
    virtual void SetValue(int32 value);
    virtual void SetEnabled(bool enabled);
    virtual void GetPreferredSize(float* _width, float* _height);
    virtual void ResizeToPreferred();
    virtual int32 SelectedOption(const char** _name = nullptr, int32* _value = nullptr) const;

private:
    void _Init(bool fixed);
    void _PlaceLabel();

    BMenuField* fField;
};

#endif  // _OPTION_POP_UP_H
