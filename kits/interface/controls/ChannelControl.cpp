// Controls with several values.

#include <ChannelControl.h>

#include <Message.h>

#include <algorithm>

#include <interface/controls/ControlPrivate.h>

static const int32 kFirstMaximum = 100;

BChannelControl::BChannelControl(BRect frame, const char* name, const char* label, BMessage* model,
                                 int32 channelCount, uint32 resizingMode, uint32 flags)
    : BControl(frame, name, label, model, resizingMode, flags)
{
    _Init(channelCount);
}

BChannelControl::BChannelControl(const char* name, const char* label, BMessage* model,
                                 int32 channelCount, uint32 flags)
    : BChannelControl(BRect(), name, label, model, channelCount, B_FOLLOW_LEFT_TOP, flags)
{
}

void BChannelControl::_Init(int32 channels)
{
    const size_t count = size_t(std::clamp(channels, int32(0), int32(4096)));
    fMinima.assign(count, 0);
    fMaxima.assign(count, kFirstMaximum);
    fValues.assign(count, 0);
    fChannelLabels.resize(count);
    _ListsChanged();
}

void BChannelControl::_ListsChanged()
{
    fMinList = fMinima.data();
    fMaxList = fMaxima.data();
    fValueList = fValues.data();
}

BChannelControl::BChannelControl(BMessage* archive) : BControl(archive)
{
    int32 count = 0;
    if (archive != nullptr)
        archive->FindInt32("be:_m_channel_count", &count);
    _Init(count);
    if (archive == nullptr)
        return;
    for (int32 i = 0; i < CountChannels(); i++) {
        archive->FindInt32("be:_m_channel_min", i, &fMinima[i]);
        archive->FindInt32("be:_m_channel_max", i, &fMaxima[i]);
        archive->FindInt32("be:_m_channel_val", i, &fValues[i]);
        fMaxima[i] = std::max(fMinima[i], fMaxima[i]);
        fValues[i] = std::clamp(fValues[i], fMinima[i], fMaxima[i]);
    }
    const char* label;
    if (archive->FindString("be:_m_min_label", &label) == B_OK)
        fLabels.low.Set(label);
    if (archive->FindString("be:_m_max_label", &label) == B_OK)
        fLabels.high.Set(label);
    BMessage modification;
    if (archive->FindMessage("_mod_msg", &modification) == B_OK)
        SetModificationMessage(new BMessage(modification));
}

BChannelControl::~BChannelControl() = default;

status_t BChannelControl::Archive(BMessage* data, bool deep) const
{
    status_t status = BControl::Archive(data, deep);
    if (status == B_OK)
        status = data->AddInt32("be:_m_channel_count", CountChannels());
    for (int32 i = 0; status == B_OK && i < CountChannels(); i++) {
        data->AddInt32("be:_m_channel_min", fMinima[i]);
        data->AddInt32("be:_m_channel_max", fMaxima[i]);
        status = data->AddInt32("be:_m_channel_val", fValues[i]);
    }
    if (status == B_OK && fLabels.low.set)
        status = data->AddString("be:_m_min_label", fLabels.low.Text());
    if (status == B_OK && fLabels.high.set)
        status = data->AddString("be:_m_max_label", fLabels.high.Text());
    if (status == B_OK && fModification != nullptr)
        status = data->AddMessage("_mod_msg", fModification.get());
    return status;
}

// For classes that pass these on.

void BChannelControl::Draw(BRect) {}
void BChannelControl::MouseDown(BPoint where) { BControl::MouseDown(where); }
void BChannelControl::KeyDown(const char* bytes, int32 numBytes)
{
    BControl::KeyDown(bytes, numBytes);
}
int32 BChannelControl::MaxChannelCount() const { return 32; }
bool BChannelControl::SupportsIndividualLimits() const { return false; }

void BChannelControl::GetPreferredSize(float* width, float* height)
{
    BControl::GetPreferredSize(width, height);
}

BHandler* BChannelControl::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                            int32 what, const char* property)
{
    return BControl::ResolveSpecifier(message, index, specifier, what, property);
}

status_t BChannelControl::GetSupportedSuites(BMessage* data)
{
    return BControl::GetSupportedSuites(data);
}

void BChannelControl::MessageReceived(BMessage* message) { BControl::MessageReceived(message); }

// --- messages

void BChannelControl::SetModificationMessage(BMessage* message)
{
    if (message != fModification.get())
        fModification.reset(message);
}

BMessage* BChannelControl::ModificationMessage() const { return fModification.get(); }

status_t BChannelControl::Invoke(BMessage* message) { return InvokeChannel(message); }

status_t BChannelControl::InvokeChannel(BMessage* message, int32 fromChannel, int32 channelCount,
                                        const bool* _mask)
{
    bool is_notice = false;
    InvokeKind(&is_notice);
    if (message == nullptr && !is_notice)
        message = Message();
    if (message == nullptr)
        return BControl::Invoke(nullptr);
    if (channelCount < 0)
        channelCount = CountChannels() - std::max(fromChannel, int32(0));
    const status_t status = _Check(fromChannel, &channelCount);
    if (status != B_OK)
        return status;
    BMessage event(*message);
    event.AddInt32("be:current_channel", fCurrent);
    for (int32 i = 0; i < channelCount; i++) {
        event.AddInt32("be:channel_value", fValues[fromChannel + i]);
        event.AddBool("be:channel_changed", _mask == nullptr || _mask[i]);
    }
    return BControl::Invoke(&event);
}

status_t BChannelControl::InvokeNotifyChannel(BMessage* message, uint32 kind, int32 fromChannel,
                                              int32 channelCount, const bool* _mask)
{
    BeginInvokeNotify(kind);
    const status_t status = InvokeChannel(message, fromChannel, channelCount, _mask);
    EndInvokeNotify();
    return status;
}

// --- channels

int32 BChannelControl::CountChannels() const { return int32(fValues.size()); }
int32 BChannelControl::CurrentChannel() const { return fCurrent; }

status_t BChannelControl::SetCurrentChannel(int32 index)
{
    if (!_Has(index))
        return B_BAD_INDEX;
    fCurrent = index;
    SetValueNoUpdate(fValues[index]);
    Invalidate();
    return B_OK;
}

status_t BChannelControl::SetChannelCount(int32 count)
{
    if (count < 0 || count > MaxChannelCount())
        return B_BAD_VALUE;
    const bool had_some = !fMaxima.empty();
    const int32 low = had_some ? fMinima.back() : 0;
    const int32 high = had_some ? fMaxima.back() : kFirstMaximum;
    fMinima.resize(size_t(count), low);
    fMaxima.resize(size_t(count), high);
    fValues.resize(size_t(count), low);
    fChannelLabels.resize(size_t(count));
    _ListsChanged();
    fCurrent = std::clamp(fCurrent, int32(0), std::max(int32(0), count - 1));
    Invalidate();
    return B_OK;
}

// B_OK for channels that are there; cuts the count to those.
status_t BChannelControl::_Check(int32 fromChannel, int32* channelCount) const
{
    if (fromChannel < 0 || fromChannel > CountChannels() || *channelCount < 0)
        return B_BAD_VALUE;
    *channelCount = std::min(*channelCount, CountChannels() - fromChannel);
    return B_OK;
}

// --- values

void BChannelControl::SetValue(int32 value) { SetValueFor(fCurrent, value); }

int32 BChannelControl::ValueFor(int32 channel) const
{
    return _Has(channel) ? fValues[channel] : 0;
}

int32 BChannelControl::GetValue(int32* _values, int32 fromChannel, int32 channelCount) const
{
    if (_values == nullptr || _Check(fromChannel, &channelCount) != B_OK)
        return 0;
    std::copy_n(fValues.begin() + fromChannel, channelCount, _values);
    return channelCount;
}

status_t BChannelControl::SetValueFor(int32 channel, int32 value)
{
    return _Has(channel) ? SetValue(channel, 1, &value) : B_BAD_INDEX;
}

status_t BChannelControl::SetValue(int32 fromChannel, int32 channelCount, const int32* values)
{
    if (values == nullptr)
        return B_BAD_VALUE;
    const status_t status = _Check(fromChannel, &channelCount);
    for (int32 i = 0; status == B_OK && i < channelCount; i++) {
        const int32 channel = fromChannel + i;
        const int32 value = std::clamp(values[i], fMinima[channel], fMaxima[channel]);
        if (value == fValues[channel])
            continue;
        fValues[channel] = value;
        if (channel == fCurrent)
            SetValueNoUpdate(value);
        Invalidate();
    }
    return status;
}

status_t BChannelControl::SetAllValue(int32 values)
{
    const std::vector<int32> all(fValues.size(), values);
    return SetValue(0, CountChannels(), all.data());
}

// --- limits

status_t BChannelControl::SetLimitsFor(int32 channel, int32 minimum, int32 maximum)
{
    return _Has(channel) ? SetLimitsFor(channel, 1, &minimum, &maximum) : B_BAD_INDEX;
}

status_t BChannelControl::GetLimitsFor(int32 channel, int32* _minimum, int32* _maximum) const
{
    return _Has(channel) ? GetLimitsFor(channel, 1, _minimum, _maximum) : B_BAD_INDEX;
}

status_t BChannelControl::SetLimitsFor(int32 fromChannel, int32 channelCount, const int32* minima,
                                       const int32* maxima)
{
    if (minima == nullptr || maxima == nullptr)
        return B_BAD_VALUE;
    const status_t status = _Check(fromChannel, &channelCount);
    if (status != B_OK)
        return status;
    if (!SupportsIndividualLimits() && channelCount < CountChannels())
        return B_ERROR;
    for (int32 i = 0; i < channelCount; i++) {
        if (minima[i] > maxima[i])
            return B_BAD_VALUE;
    }
    for (int32 i = 0; i < channelCount; i++) {
        const int32 channel = fromChannel + i;
        fMinima[channel] = minima[i];
        fMaxima[channel] = maxima[i];
        fValues[channel] = std::clamp(fValues[channel], minima[i], maxima[i]);
    }
    SetValueNoUpdate(ValueFor(fCurrent));
    Invalidate();
    return B_OK;
}

status_t BChannelControl::GetLimitsFor(int32 fromChannel, int32 channelCount, int32* minima,
                                       int32* maxima) const
{
    const status_t status = _Check(fromChannel, &channelCount);
    for (int32 i = 0; status == B_OK && i < channelCount; i++) {
        if (minima != nullptr)
            minima[i] = fMinima[fromChannel + i];
        if (maxima != nullptr)
            maxima[i] = fMaxima[fromChannel + i];
    }
    return status;
}

status_t BChannelControl::SetLimits(int32 minimum, int32 maximum)
{
    if (fValues.empty())
        return minimum <= maximum ? B_OK : B_BAD_VALUE;
    const std::vector<int32> minima(fValues.size(), minimum), maxima(fValues.size(), maximum);
    return SetLimitsFor(0, CountChannels(), minima.data(), maxima.data());
}

status_t BChannelControl::GetLimits(int32* _minimum, int32* _maximum) const
{
    return GetLimitsFor(0, _minimum, _maximum);
}

// --- labels

status_t BChannelControl::SetLimitLabels(const char* minLabel, const char* maxLabel)
{
    fLabels.low.Set(minLabel);
    fLabels.high.Set(maxLabel);
    Invalidate();
    return B_OK;
}

const char* BChannelControl::MinLimitLabel() const { return fLabels.low.Text(); }
const char* BChannelControl::MaxLimitLabel() const { return fLabels.high.Text(); }

status_t BChannelControl::SetLimitLabelsFor(int32 channel, const char* minLabel,
                                            const char* maxLabel)
{
    return _Has(channel) ? SetLimitLabelsFor(channel, 1, minLabel, maxLabel) : B_BAD_INDEX;
}

status_t BChannelControl::SetLimitLabelsFor(int32 fromChannel, int32 channelCount,
                                            const char* minLabel, const char* maxLabel)
{
    const status_t status = _Check(fromChannel, &channelCount);
    for (int32 i = 0; status == B_OK && i < channelCount; i++) {
        fChannelLabels[fromChannel + i].low.Set(minLabel);
        fChannelLabels[fromChannel + i].high.Set(maxLabel);
    }
    Invalidate();
    return status;
}

const char* BChannelControl::MinLimitLabelFor(int32 channel) const
{
    return _Has(channel) && fChannelLabels[channel].low.set ? fChannelLabels[channel].low.Text()
                                                            : MinLimitLabel();
}

const char* BChannelControl::MaxLimitLabelFor(int32 channel) const
{
    return _Has(channel) && fChannelLabels[channel].high.set ? fChannelLabels[channel].high.Text()
                                                             : MaxLimitLabel();
}

int32* const& BChannelControl::MinLimitList() const { return fMinList; }
int32* const& BChannelControl::MaxLimitList() const { return fMaxList; }
int32* const& BChannelControl::ValueList() const { return fValueList; }
