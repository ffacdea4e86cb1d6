// Controls with several values, by their older names.

#include <MultiChannelControl.h>

BMultiChannelControl::BMultiChannelControl(BRect frame, const char* name, const char* label,
                                           BMessage* message, int32 channelCount, uint32 resize,
                                           uint32 flags)
    : BChannelControl(frame, name, label, message, channelCount, resize, flags)
{
}

BMultiChannelControl::BMultiChannelControl(BMessage* archive) : BChannelControl(archive) {}

BMultiChannelControl::~BMultiChannelControl() = default;

bool BMultiChannelControl::SupportsIndividualLimits() const { return true; }

int32 BMultiChannelControl::GetValues(int32* _values, int32 firstChannel, int32 channelCount) const
{
    return GetValue(_values, firstChannel, channelCount);
}

status_t BMultiChannelControl::SetValues(int32 firstChannel, int32 channelCount,
                                         const int32* _values)
{
    return SetValue(firstChannel, channelCount, _values);
}

status_t BMultiChannelControl::SetAllValues(int32 values) { return SetAllValue(values); }

status_t BMultiChannelControl::SetLimits(int32 firstChannel, int32 channelCount,
                                         const int32* minimum, const int32* maximum)
{
    return SetLimitsFor(firstChannel, channelCount, minimum, maximum);
}

status_t BMultiChannelControl::GetLimits(int32 firstChannel, int32 channelCount, int32* _minimum,
                                         int32* _maximum) const
{
    return GetLimitsFor(firstChannel, channelCount, _minimum, _maximum);
}

status_t BMultiChannelControl::SetAllLimits(int32 minimum, int32 maximum)
{
    return BChannelControl::SetLimits(minimum, maximum);
}
