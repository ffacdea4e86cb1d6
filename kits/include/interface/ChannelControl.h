#ifndef _CHANNEL_CONTROL_H
#define _CHANNEL_CONTROL_H

#include <Control.h>

#include <memory>
#include <string>
#include <vector>

/* Several values in one control, a channel each, with limits of their own or the same for all. The
   control's value is that of the current channel. */
class BChannelControl : public BControl {
public:
    BChannelControl(BRect frame, const char* name, const char* label, BMessage* model,
                    int32 channelCount = 1, uint32 resizingMode = B_FOLLOW_LEFT_TOP,
                    uint32 flags = B_WILL_DRAW);
    BChannelControl(const char* name, const char* label, BMessage* model, int32 channelCount = 1,
                    uint32 flags = B_WILL_DRAW);
    BChannelControl(BMessage* archive);
    virtual ~BChannelControl();

    virtual status_t Archive(BMessage* data, bool deep = true) const;

    // A class below draws it and has it worked; these do what BControl does.
    virtual void Draw(BRect updateRect) = 0;
    virtual void MouseDown(BPoint where) = 0;
    virtual void KeyDown(const char* bytes, int32 numBytes) = 0;
    virtual void GetPreferredSize(float* width, float* height) = 0;
    virtual int32 MaxChannelCount() const = 0;
    virtual bool SupportsIndividualLimits() const = 0;

    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 what, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);
    virtual void MessageReceived(BMessage* message);

    virtual void SetModificationMessage(BMessage* message);
    BMessage* ModificationMessage() const;
    virtual status_t Invoke(BMessage* message = nullptr);
    /* Sends the message with "be:channel_value" of each channel from `fromChannel` on (all, if the
       count is negative), "be:channel_changed" as the mask says, and "be:current_channel". */
    virtual status_t InvokeChannel(BMessage* message = nullptr, int32 fromChannel = 0,
                                   int32 channelCount = -1, const bool* _mask = nullptr);
    status_t InvokeNotifyChannel(BMessage* message = nullptr, uint32 kind = B_CONTROL_INVOKED,
                                 int32 fromChannel = 0, int32 channelCount = -1,
                                 const bool* _mask = nullptr);

    // Of the current channel.
    virtual void SetValue(int32 value);
    virtual status_t SetCurrentChannel(int32 index);
    int32 CurrentChannel() const;
    virtual int32 CountChannels() const;
    virtual status_t SetChannelCount(int32 count);
    // 0 for a channel that is none.
    int32 ValueFor(int32 channel) const;
    // Returns how many there were.
    virtual int32 GetValue(int32* _values, int32 fromChannel, int32 channelCount) const;
    status_t SetValueFor(int32 channel, int32 value);
    virtual status_t SetValue(int32 fromChannel, int32 channelCount, const int32* values);
    status_t SetAllValue(int32 values);

    // B_ERROR for one channel alone where they have the same; a minimum above the maximum is
    // B_BAD_VALUE.
    status_t SetLimitsFor(int32 channel, int32 minimum, int32 maximum);
    status_t GetLimitsFor(int32 channel, int32* _minimum, int32* _maximum) const;
    virtual status_t SetLimitsFor(int32 fromChannel, int32 channelCount, const int32* minima,
                                  const int32* maxima);
    virtual status_t GetLimitsFor(int32 fromChannel, int32 channelCount, int32* minima,
                                  int32* maxima) const;
    status_t SetLimits(int32 minimum, int32 maximum);
    status_t GetLimits(int32* _minimum, int32* _maximum) const;

    virtual status_t SetLimitLabels(const char* minLabel, const char* maxLabel);
    const char* MinLimitLabel() const;
    const char* MaxLimitLabel() const;
    // A channel without labels of its own has the common ones.
    virtual status_t SetLimitLabelsFor(int32 channel, const char* minLabel, const char* maxLabel);
    virtual status_t SetLimitLabelsFor(int32 fromChannel, int32 channelCount, const char* minLabel,
                                       const char* maxLabel);
    const char* MinLimitLabelFor(int32 channel) const;
    const char* MaxLimitLabelFor(int32 channel) const;

protected:
    int32* const& MinLimitList() const;
    int32* const& MaxLimitList() const;
    int32* const& ValueList() const;

private:
    struct LimitLabel {
        bool set = false;
        std::string text;
        const char* Text() const { return set ? text.c_str() : nullptr; }
        void Set(const char* label)
        {
            set = label != nullptr;
            text = set ? label : "";
        }
    };
    struct Labels {
        LimitLabel low, high;
    };

    void _Init(int32 channels);
    void _ListsChanged();
    bool _Has(int32 channel) const { return channel >= 0 && channel < CountChannels(); }
    status_t _Check(int32 fromChannel, int32* channelCount) const;

    std::vector<int32> fMinima, fMaxima, fValues;
    int32 *fMinList = nullptr, *fMaxList = nullptr, *fValueList = nullptr;  // into these
    int32 fCurrent = 0;
    Labels fLabels;
    std::vector<Labels> fChannelLabels;
    std::unique_ptr<BMessage> fModification;
};

#endif  // _CHANNEL_CONTROL_H
