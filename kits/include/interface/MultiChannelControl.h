#ifndef _MULTI_CHANNEL_CONTROL_H
#define _MULTI_CHANNEL_CONTROL_H

#include <ChannelControl.h>

/* The older form of BChannelControl, with other names for its calls: each channel has limits of its
   own. */
class BMultiChannelControl : public BChannelControl {
public:
    BMultiChannelControl(BRect frame, const char* name, const char* label, BMessage* message,
                         int32 channelCount = 1, uint32 resize = B_FOLLOW_LEFT | B_FOLLOW_TOP,
                         uint32 flags = B_WILL_DRAW);
    BMultiChannelControl(BMessage* archive);
    virtual ~BMultiChannelControl();

    virtual bool SupportsIndividualLimits() const;

    virtual int32 GetValues(int32* _values, int32 firstChannel, int32 channelCount) const;
    virtual status_t SetValues(int32 firstChannel, int32 channelCount, const int32* _values);
    status_t SetAllValues(int32 values);
    virtual status_t SetLimits(int32 firstChannel, int32 channelCount, const int32* minimum,
                               const int32* maximum);
    virtual status_t GetLimits(int32 firstChannel, int32 channelCount, int32* _minimum,
                               int32* _maximum) const;
    status_t SetAllLimits(int32 minimum, int32 maximum);
};

#endif  // _MULTI_CHANNEL_CONTROL_H
