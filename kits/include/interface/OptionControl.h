#ifndef _OPTION_CONTROL_H
#define _OPTION_CONTROL_H

#include <Control.h>

enum { B_OPTION_CONTROL_VALUE = 0x5f424d56 };  // _BMV

/* A choice among named numbers; a class below shows it. Its value is the number of the option
   chosen. A message with "be:value" chooses, and is sent on as the control's own. */
class BOptionControl : public BControl {
public:
    BOptionControl(BRect frame, const char* name, const char* label, BMessage* message,
                   uint32 resizeMask = B_FOLLOW_LEFT_TOP, uint32 flags = B_WILL_DRAW);
    BOptionControl(const char* name, const char* label, BMessage* message,
                   uint32 flags = B_WILL_DRAW);
    virtual ~BOptionControl();

    virtual void MessageReceived(BMessage* message);

    // Behind the others.
    status_t AddOption(const char* name, int32 value);
    virtual bool GetOptionAt(int32 index, const char** _name, int32* _value) = 0;
    virtual void RemoveOptionAt(int32 index) = 0;
    virtual int32 CountOptions() const = 0;
    virtual status_t AddOptionAt(const char* name, int32 value, int32 index) = 0;
    // Returns the index, -1 if none is chosen.
    virtual int32 SelectedOption(const char** name = nullptr, int32* outValue = nullptr) const = 0;
    // B_ERROR if there is no such option.
    virtual status_t SelectOptionFor(int32 value);
    virtual status_t SelectOptionFor(const char* name);

protected:
    // For whoever shows an option: sent to this control, it chooses. The caller's.
    BMessage* MakeValueMessage(int32 value);
};

#endif  // _OPTION_CONTROL_H
