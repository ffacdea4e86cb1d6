// Sliders with several thumbs.

#include <ChannelSlider.h>

#include <Message.h>
#include <Window.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <interface/controls/ControlPrivate.h>

using BPrivate::ControlPrivate;
using BPrivate::Look;

static const int32 kMostChannels = 32;
static const float kChannel = 11;  // pixels across, at 12 points
static const float kMargin = 6;
static const float kLeastLength = 64;

BChannelSlider::BChannelSlider(BRect area, const char* name, const char* label, BMessage* message,
                               int32 channels, uint32 resizeMode, uint32 flags)
    : BChannelSlider(area, name, label, message, B_VERTICAL, channels, resizeMode, flags)
{
}

BChannelSlider::BChannelSlider(BRect area, const char* name, const char* label, BMessage* message,
                               orientation orientation, int32 channels, uint32 resizeMode,
                               uint32 flags)
    : BChannelControl(area, name, label, message, std::clamp(channels, int32(0), kMostChannels),
                      resizeMode, flags | B_FULL_UPDATE_ON_RESIZE),
      fOrientation(orientation)
{
}

BChannelSlider::BChannelSlider(const char* name, const char* label, BMessage* message,
                               orientation orientation, int32 channels, uint32 flags)
    : BChannelSlider(BRect(), name, label, message, orientation, channels, B_FOLLOW_LEFT_TOP, flags)
{
    BChannelSlider::ResizeToPreferred();
}

BChannelSlider::BChannelSlider(BMessage* archive)
    : BChannelControl(archive), fOrientation(B_VERTICAL)
{
    int32 direction;
    if (archive != nullptr && archive->FindInt32("_orient", &direction) == B_OK)
        fOrientation = direction == B_HORIZONTAL ? B_HORIZONTAL : B_VERTICAL;
}

BChannelSlider::~BChannelSlider() = default;

BArchivable* BChannelSlider::Instantiate(BMessage* from)
{
    return validate_instantiation(from, "BChannelSlider") ? new (std::nothrow) BChannelSlider(from)
                                                          : nullptr;
}

status_t BChannelSlider::Archive(BMessage* into, bool deep) const
{
    const status_t status = BChannelControl::Archive(into, deep);
    return status == B_OK ? into->AddInt32("_orient", fOrientation) : status;
}

orientation BChannelSlider::Orientation() const { return fOrientation; }

void BChannelSlider::SetOrientation(orientation orientation)
{
    fOrientation = orientation;
    Invalidate();
}

int32 BChannelSlider::MaxChannelCount() const { return kMostChannels; }
bool BChannelSlider::SupportsIndividualLimits() const { return false; }

void BChannelSlider::GetPreferredSize(float* _width, float* _height)
{
    const Look look(this);
    const float label = look.TextWidth(Label());
    const float limits = look.TextWidth(MinLimitLabel()) + look.TextWidth(MaxLimitLabel()) + 10;
    const float channels = look.Scaled(kChannel) * float(CountChannels());
    const bool across = fOrientation == B_HORIZONTAL;
    if (_width != nullptr)
        *_width = (across ? std::max({kLeastLength, label, limits})
                          : std::max({channels, label, limits})) +
                  kMargin;
    if (_height != nullptr)
        *_height =
            across ? channels + 2 * look.LineHeight() + kMargin : 3 * look.LineHeight() + 153;
}

// --- where things are

BRect BChannelSlider::_ChannelFrame(int32 channel) const
{
    const Look look(const_cast<BChannelSlider*>(this));
    const float pitch = look.Scaled(kChannel);
    const float line = look.LineHeight();
    BRect frame = Bounds();
    if (fOrientation == B_HORIZONTAL) {
        frame.top += line + float(channel) * pitch;
        frame.bottom = frame.top + pitch - 1;
        frame.InsetBy(kMargin / 2, 0);
    } else {
        const float all = pitch * float(CountChannels());
        frame.left += std::floor((frame.Width() + 1 - all) / 2) + float(channel) * pitch;
        frame.right = frame.left + pitch - 1;
        frame.top += 2 * line;
        frame.bottom -= line;
    }
    return frame;
}

float BChannelSlider::ThumbRangeFor(int32 channel)
{
    const BRect frame = _ChannelFrame(channel);
    const float thumb = Look(this).Scaled(kChannel) + 4;
    return std::max(0.0f, (fOrientation == B_HORIZONTAL ? frame.Width() : frame.Height()) - thumb);
}

float BChannelSlider::ThumbDeltaFor(int32 channel)
{
    int32 low, high;
    if (GetLimitsFor(channel, &low, &high) != B_OK || high <= low)
        return 0;
    const double share = (double(ValueFor(channel)) - low) / (double(high) - low);
    return float(std::floor(share * ThumbRangeFor(channel) + 0.5));
}

BRect BChannelSlider::ThumbFrameFor(int32 channel)
{
    BRect frame = _ChannelFrame(channel);
    const float length = Look(this).Scaled(kChannel) + 4;
    const float delta = ThumbDeltaFor(channel);
    if (fOrientation == B_HORIZONTAL) {
        frame.left += delta;
        frame.right = frame.left + length;
    } else {
        frame.bottom -= delta;
        frame.top = frame.bottom - length;
    }
    return frame;
}

// --- drawing

void BChannelSlider::Draw(BRect)
{
    for (int32 channel = 0; channel < CountChannels(); channel++)
        DrawChannel(this, channel, _ChannelFrame(channel), channel == fDragged);
    const Look look(this);
    const uint32 state = ControlPrivate::State(this) & uint32(Look::kDisabled);
    BRect line = Bounds();
    line.bottom = line.top + look.LineHeight() - 1;
    look.DrawLabel(Label(), line, B_ALIGN_CENTER, state);
    if (fOrientation == B_VERTICAL) {
        line.OffsetBy(0, look.LineHeight());
        look.DrawLabel(MaxLimitLabel(), line, B_ALIGN_CENTER, state);
    }
    line.OffsetTo(line.left, Bounds().bottom - line.Height());
    if (fOrientation == B_HORIZONTAL)
        look.DrawLabel(MaxLimitLabel(), line, B_ALIGN_RIGHT, state);
    look.DrawLabel(MinLimitLabel(), line,
                   fOrientation == B_HORIZONTAL ? B_ALIGN_LEFT : B_ALIGN_CENTER, state);
}

void BChannelSlider::DrawChannel(BView* into, int32 channel, BRect area, bool pressed)
{
    DrawGroove(into, channel, area.LeftTop(), area.RightBottom());
    DrawThumb(into, channel, ThumbFrameFor(channel).LeftTop(), pressed);
}

void BChannelSlider::DrawGroove(BView* into, int32, BPoint leftTop, BPoint rightBottom)
{
    const Look look(into);
    BRect bar(leftTop, rightBottom);
    const float half = look.Scaled(2);
    if (fOrientation == B_HORIZONTAL) {
        bar.top = std::floor((bar.top + bar.bottom) / 2) - half;
        bar.bottom = bar.top + 2 * half;
    } else {
        bar.left = std::floor((bar.left + bar.right) / 2) - half;
        bar.right = bar.left + 2 * half;
    }
    const rgb_color color = tint_color(ui_color(B_PANEL_BACKGROUND_COLOR), B_DARKEN_1_TINT);
    look.DrawSliderBar(bar, BRect(), color, color,
                       ControlPrivate::State(this) & uint32(Look::kDisabled));
}

void BChannelSlider::DrawThumb(BView* into, int32 channel, BPoint where, bool pressed)
{
    uint32 state = ControlPrivate::State(this) & ~uint32(Look::kPressed);
    if (channel != CurrentChannel())
        state &= ~uint32(Look::kFocused);
    if (pressed)
        state |= Look::kPressed;
    Look(into).DrawSliderThumb(ThumbFrameFor(channel).OffsetToCopy(where), fOrientation,
                               Look::Thumb::Block, state);
}

const BBitmap* BChannelSlider::ThumbFor(int32, bool) { return nullptr; }

// --- pointer and keys

void BChannelSlider::MouseDown(BPoint where)
{
    for (int32 channel = 0; channel < CountChannels(); channel++) {
        if (!_ChannelFrame(channel).Contains(where))
            continue;
        if (!ControlPrivate::Press(this))
            return;
        const BRect thumb = ThumbFrameFor(channel);
        const bool across = fOrientation == B_HORIZONTAL;
        const float length = across ? thumb.Width() : thumb.Height();
        fGrip = !thumb.Contains(where) ? std::floor(length / 2)
                : across               ? where.x - thumb.left
                                       : thumb.bottom - where.y;
        fDragged = channel;
        SetCurrentChannel(channel);
        _Drag(where);
        ControlPrivate::Follow(this);
        return;
    }
}

void BChannelSlider::_Drag(BPoint where)
{
    const BRect frame = _ChannelFrame(fDragged);
    const float range = ThumbRangeFor(fDragged);
    int32 low = 0, high = 0;
    GetLimitsFor(fDragged, &low, &high);
    const double way =
        (fOrientation == B_HORIZONTAL ? where.x - frame.left : frame.bottom - where.y) - fGrip;
    const double share = range > 0 ? std::clamp(way / range, 0.0, 1.0) : 0;
    const auto value = int32(std::floor(share * (double(high) - low) + low + 0.5));
    const int64 step = int64(value) - ValueFor(fDragged);
    if (step == 0)
        return;
    const BMessage* message = Window() != nullptr ? Window()->CurrentMessage() : nullptr;
    int32 modifiers = 0;
    if (message != nullptr)
        message->FindInt32("modifiers", &modifiers);
    std::vector<int32> values(static_cast<size_t>(CountChannels()));
    GetValue(values.data(), 0, CountChannels());
    for (int32 channel = 0; channel < CountChannels(); channel++) {
        if (channel == fDragged || (modifiers & B_SHIFT_KEY) == 0)
            values[channel] = int32(std::clamp(values[channel] + step, int64(low), int64(high)));
    }
    BChannelControl::SetValue(0, CountChannels(), values.data());
    UpdateToolTip(ValueFor(fDragged));
    InvokeNotifyChannel(ModificationMessage(), B_CONTROL_MODIFIED);
}

void BChannelSlider::UpdateToolTip(int32 currentValue)
{
    SetToolTip(std::to_string(currentValue).c_str());
}

void BChannelSlider::MouseMoved(BPoint where, uint32, const BMessage*)
{
    if (IsTracking() && fDragged >= 0)
        _Drag(where);
}

void BChannelSlider::MouseUp(BPoint where)
{
    const bool held = IsTracking() && fDragged >= 0;
    MouseMoved(where, B_INSIDE_VIEW, nullptr);
    ControlPrivate::Release(this, where);
    fDragged = -1;
    Invalidate();
    if (held && IsEnabled())
        InvokeChannel();
}

void BChannelSlider::KeyDown(const char* bytes, int32 numBytes)
{
    const char key = ControlPrivate::Key(bytes, numBytes);
    const bool across = fOrientation == B_HORIZONTAL;
    int32 step = 0, channel = 0;
    switch (key) {
        case B_LEFT_ARROW:
            (across ? step : channel) = -1;
            break;
        case B_RIGHT_ARROW:
            (across ? step : channel) = 1;
            break;
        case B_UP_ARROW:
            (across ? channel : step) = across ? -1 : 1;
            break;
        case B_DOWN_ARROW:
            (across ? channel : step) = across ? 1 : -1;
            break;
        default:
            BView::KeyDown(bytes, numBytes);
            return;
    }
    if (!IsEnabled())
        return;
    if (channel != 0) {
        SetCurrentChannel(CurrentChannel() + channel);
        return;
    }
    const int32 before = ValueFor(CurrentChannel());
    const int64 value = int64(before) + step;
    SetValueFor(CurrentChannel(), int32(std::clamp(value, int64(INT32_MIN), int64(INT32_MAX))));
    if (ValueFor(CurrentChannel()) == before)
        return;
    fKeyMoved = true;
    InvokeNotifyChannel(ModificationMessage(), B_CONTROL_MODIFIED);
}

void BChannelSlider::KeyUp(const char*, int32)
{
    if (fKeyMoved)
        InvokeChannel();
    fKeyMoved = false;
}
