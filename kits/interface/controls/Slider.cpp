// Sliders.

#include <Slider.h>

#include <Message.h>
#include <Window.h>

#include <algorithm>
#include <cmath>

#include <interface/controls/ControlPrivate.h>
#include <support/EnumNumbers.h>

using BPrivate::ControlPrivate;
using BPrivate::enum_up_to;
using BPrivate::Look;

static const float kLeastSliderLength = 100;
static const float kTextGap = 4;  // between a line of text and the bar

static Look look_of(const BSlider* slider) { return Look(const_cast<BSlider*>(slider)); }

static Look::Thumb thumb_of(thumb_style style)
{
    return style == B_TRIANGLE_THUMB ? Look::Thumb::Triangle : Look::Thumb::Block;
}

static float text_line(const Look& look) { return look.Ascent() + look.Descent() + kTextGap; }

BSlider::BSlider(BRect frame, const char* name, const char* label, BMessage* message,
                 int32 minValue, int32 maxValue, thumb_style thumbType, uint32 resizingMode,
                 uint32 flags)
    : BSlider(frame, name, label, message, minValue, maxValue, B_HORIZONTAL, thumbType,
              resizingMode, flags)
{
}

BSlider::BSlider(BRect frame, const char* name, const char* label, BMessage* message,
                 int32 minValue, int32 maxValue, orientation posture, thumb_style thumbType,
                 uint32 resizingMode, uint32 flags)
    : BControl(frame, name, label, message, resizingMode, flags | B_FULL_UPDATE_ON_RESIZE),
      fMin(minValue),
      fMax(std::max(minValue, maxValue)),
      fStyle(thumbType),
      fOrientation(posture),
      fBarColor(tint_color(ui_color(B_PANEL_BACKGROUND_COLOR), B_DARKEN_1_TINT)),
      fFillColor(ui_color(B_CONTROL_HIGHLIGHT_COLOR))
{
    SetValueNoUpdate(fMin);
}

BSlider::BSlider(const char* name, const char* label, BMessage* message, int32 minValue,
                 int32 maxValue, orientation posture, thumb_style thumbType, uint32 flags)
    : BSlider(BRect(), name, label, message, minValue, maxValue, posture, thumbType,
              B_FOLLOW_LEFT_TOP, flags)
{
    BSlider::ResizeToPreferred();
}

BSlider::BSlider(BMessage* archive)
    : BControl(archive),
      fStyle(B_BLOCK_THUMB),
      fOrientation(B_HORIZONTAL),
      fBarColor(tint_color(ui_color(B_PANEL_BACKGROUND_COLOR), B_DARKEN_1_TINT)),
      fFillColor(ui_color(B_CONTROL_HIGHLIGHT_COLOR))
{
    if (archive == nullptr)
        return;
    BMessage modification;
    if (archive->FindMessage("_mod_msg", &modification) == B_OK)
        SetModificationMessage(new BMessage(modification));
    const char *low = nullptr, *high = nullptr;
    archive->FindString("_minlbl", &low);
    archive->FindString("_maxlbl", &high);
    SetLimitLabels(low, high);
    archive->FindInt32("_min", &fMin);
    archive->FindInt32("_max", &fMax);
    fMax = std::max(fMin, fMax);
    SetValueNoUpdate(std::clamp(Value(), fMin, fMax));
    archive->FindInt32("_incrementvalue", &fIncrement);
    archive->FindInt32("_sdelay", &fSnooze_us);
    archive->FindInt32("_hashcount", &fHashCount);
    archive->FindFloat("_bthickness", &fThickness);
    fHashes = enum_up_to(archive->GetInt32("_hashloc", fHashes), B_HASH_MARKS_BOTH, fHashes);
    fStyle = enum_up_to(archive->GetInt32("_sstyle", fStyle), B_TRIANGLE_THUMB, fStyle);
    fOrientation = enum_up_to(archive->GetInt32("_orient", fOrientation), B_VERTICAL, fOrientation);
    archive->FindColor("_bcolor", &fBarColor);
    fUseFill = archive->FindColor("_fcolor", &fFillColor) == B_OK;
}

BSlider::~BSlider() = default;

BArchivable* BSlider::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BSlider") ? new (std::nothrow) BSlider(archive)
                                                      : nullptr;
}

status_t BSlider::Archive(BMessage* archive, bool deep) const
{
    const status_t status = BControl::Archive(archive, deep);
    if (status != B_OK)
        return status;
    if (fModification != nullptr)
        archive->AddMessage("_mod_msg", fModification.get());
    if (fHasMinLabel)
        archive->AddString("_minlbl", fMinLabel);
    if (fHasMaxLabel)
        archive->AddString("_maxlbl", fMaxLabel);
    archive->AddInt32("_min", fMin);
    archive->AddInt32("_max", fMax);
    archive->AddInt32("_incrementvalue", fIncrement);
    archive->AddInt32("_sdelay", fSnooze_us);
    archive->AddInt32("_hashcount", fHashCount);
    archive->AddInt32("_hashloc", fHashes);
    archive->AddInt32("_sstyle", fStyle);
    archive->AddInt32("_orient", fOrientation);
    if (fThickness >= 0)
        archive->AddFloat("_bthickness", fThickness);
    if (fUseFill)
        archive->AddColor("_fcolor", fFillColor);
    return archive->AddColor("_bcolor", fBarColor);
}

// --- size

void BSlider::AttachedToWindow()
{
    BControl::AttachedToWindow();
    ResizeToPreferred();
}

// What is written has another size: the view follows where it is shown.
void BSlider::_Refit()
{
    if (Window() != nullptr)
        ResizeToPreferred();
    Invalidate();
}

void BSlider::GetPreferredSize(float* _width, float* _height)
{
    const Look look(this);
    const float line = text_line(look);
    const float label = look.TextWidth(Label());
    const float low = look.TextWidth(MinLimitLabel());
    const float high = look.TextWidth(MaxLimitLabel());
    const bool has_label = Label() != nullptr || UpdateText() != nullptr;
    const bool has_limits = fHasMinLabel || fHasMaxLabel;
    const BRect bounds = Bounds();
    const float across = 2 * look.SliderMargin() + BarThickness();
    float width, height;
    if (fOrientation == B_HORIZONTAL) {
        const float limits = has_limits ? low + high + 2 * look.TextWidth("M") : 0;
        width = std::max({bounds.Width(), kLeastSliderLength, label, limits});
        height = across + (has_label ? line : 0) + (has_limits ? line : 0);
    } else {
        const float lines = float(Label() != nullptr) + float(UpdateText() != nullptr) +
                            float(fHasMinLabel) + float(fHasMaxLabel);
        width = std::max({across, label, low, high});
        height = std::max({bounds.Height(), kLeastSliderLength, 32 + lines * line});
    }
    if (_width != nullptr)
        *_width = width;
    if (_height != nullptr)
        *_height = height;
}

float BSlider::BarThickness() const
{
    return fThickness >= 0 ? fThickness : look_of(this).Scaled(6);
}

BRect BSlider::BarFrame() const
{
    const Look look = look_of(this);
    const float inset = look.SliderInset(thumb_of(fStyle));
    const float line = text_line(look);
    const float thickness = BarThickness();
    BRect frame = Bounds();
    if (fOrientation == B_HORIZONTAL) {
        frame.left += inset;
        frame.right -= inset;
        frame.top += look.SliderMargin();
        if (Label() != nullptr || UpdateText() != nullptr)
            frame.top += line;
        frame.bottom = frame.top + thickness;
    } else {
        frame.left += std::floor((frame.Width() - thickness) / 2);
        frame.right = frame.left + thickness;
        frame.top += inset + line * (float(Label() != nullptr) + float(UpdateText() != nullptr) +
                                     float(fHasMaxLabel));
        frame.bottom -= inset + line * float(fHasMinLabel);
    }
    return frame;
}

BRect BSlider::HashMarksFrame() const
{
    const float reach = look_of(this).SliderMargin();
    return fOrientation == B_HORIZONTAL ? BarFrame().InsetByCopy(0, -reach)
                                        : BarFrame().InsetByCopy(-reach, 0);
}

// Of the thumb, along the bar.
float BSlider::_Center() const
{
    const BRect bar = BarFrame();
    if (fOrientation == B_HORIZONTAL)
        return std::floor(bar.left + Position() * bar.Width());
    return std::floor(bar.bottom - Position() * bar.Height());
}

BRect BSlider::ThumbFrame() const
{
    return look_of(this).SliderThumb(BarFrame(), _Center(), fOrientation, thumb_of(fStyle));
}

// --- value

void BSlider::SetValue(int32 value)
{
    value = std::clamp(value, fMin, fMax);
    if (value == Value())
        return;
    SetValueNoUpdate(value);
    Invalidate();
}

float BSlider::Position() const
{
    const double range = double(fMax) - fMin;
    return range > 0 ? float((double(Value()) - fMin) / range) : 0;
}

void BSlider::SetPosition(float position)
{
    if (!(position > 0))
        SetValue(fMin);
    else if (position >= 1)
        SetValue(fMax);
    else
        SetValue(int32(double(position) * (double(fMax) - fMin) + fMin));
}

int32 BSlider::ValueForPoint(BPoint point) const
{
    const BRect bar = BarFrame();
    const bool across = fOrientation == B_HORIZONTAL;
    const double length = across ? bar.Width() : bar.Height();
    const double way = across ? point.x - bar.left : bar.bottom - point.y;
    if (!(length > 0) || !(way > 0))
        return fMin;
    return way >= length ? fMax
                         : int32(std::floor(way / length * (double(fMax) - fMin) + fMin + 0.5));
}

void BSlider::GetLimits(int32* minimum, int32* maximum) const
{
    if (minimum != nullptr)
        *minimum = fMin;
    if (maximum != nullptr)
        *maximum = fMax;
}

void BSlider::SetLimits(int32 minimum, int32 maximum)
{
    if (minimum > maximum)
        return;
    fMin = minimum;
    fMax = maximum;
    SetValue(Value());
    Invalidate();
}

// --- pointer and keys

void BSlider::_Modified(int32 before)
{
    if (Value() != before)
        InvokeNotify(ModificationMessage(), B_CONTROL_MODIFIED);
}

void BSlider::MouseDown(BPoint point)
{
    if (!ControlPrivate::Press(this))
        return;
    const bool across = fOrientation == B_HORIZONTAL;
    fGrip = ThumbFrame().Contains(point) ? (across ? point.x : point.y) - _Center() : 0;
    MouseMoved(point, B_INSIDE_VIEW, nullptr);
    ControlPrivate::Follow(this, fSnooze_us);
}

void BSlider::MouseMoved(BPoint point, uint32, const BMessage*)
{
    if (!IsTracking())
        return;
    (fOrientation == B_HORIZONTAL ? point.x : point.y) -= fGrip;
    const int32 before = Value();
    SetValue(ValueForPoint(point));
    _Modified(before);
}

void BSlider::MouseUp(BPoint point)
{
    if (!IsTracking())
        return;
    MouseMoved(point, B_INSIDE_VIEW, nullptr);
    ControlPrivate::Release(this, point);
    if (IsEnabled())
        Invoke();
}

void BSlider::KeyDown(const char* bytes, int32 numBytes)
{
    const int32 before = Value();
    int64 value = before;
    switch (ControlPrivate::Key(bytes, numBytes)) {
        case B_LEFT_ARROW:
        case B_DOWN_ARROW:
            value -= fIncrement;
            break;
        case B_RIGHT_ARROW:
        case B_UP_ARROW:
            value += fIncrement;
            break;
        case B_HOME:
            value = fMin;
            break;
        case B_END:
            value = fMax;
            break;
        default:
            BView::KeyDown(bytes, numBytes);
            return;
    }
    if (!IsEnabled())
        return;
    SetValue(int32(std::clamp(value, int64(fMin), int64(fMax))));
    fKeyMoved = fKeyMoved || Value() != before;
    _Modified(before);
}

void BSlider::KeyUp(const char*, int32)
{
    if (fKeyMoved)
        Invoke();
    fKeyMoved = false;
}

// --- drawing

void BSlider::Draw(BRect) { DrawSlider(); }

void BSlider::DrawSlider()
{
    DrawBar();
    DrawHashMarks();
    DrawThumb();
    DrawFocusMark();
    DrawText();
}

void BSlider::DrawBar()
{
    const Look look(this);
    const BRect bar = BarFrame();
    BRect filled = bar;
    (fOrientation == B_HORIZONTAL ? filled.right : filled.top) = _Center();
    look.DrawSliderBar(bar, fUseFill ? filled : BRect(), fBarColor, fFillColor,
                       ControlPrivate::State(this));
}

void BSlider::DrawHashMarks()
{
    if (fHashes == B_HASH_MARKS_NONE || fHashCount < 1)
        return;
    const Look look(this);
    const bool first = (fHashes & B_HASH_MARKS_TOP) != 0;
    const bool second = (fHashes & B_HASH_MARKS_BOTTOM) != 0;
    const BRect all = HashMarksFrame();
    const BRect bar = BarFrame();
    const float gap = look.Line();
    if (fOrientation == B_HORIZONTAL) {
        if (first)
            look.DrawHashMarks(BRect(bar.left, all.top, bar.right, bar.top - 1 - gap), B_HORIZONTAL,
                               fHashCount);
        if (second)
            look.DrawHashMarks(BRect(bar.left, bar.bottom + 1 + gap, bar.right, all.bottom),
                               B_HORIZONTAL, fHashCount);
    } else {
        if (first)
            look.DrawHashMarks(BRect(all.left, bar.top, bar.left - 1 - gap, bar.bottom), B_VERTICAL,
                               fHashCount);
        if (second)
            look.DrawHashMarks(BRect(bar.right + 1 + gap, bar.top, all.right, bar.bottom),
                               B_VERTICAL, fHashCount);
    }
}

void BSlider::DrawThumb()
{
    Look(this).DrawSliderThumb(ThumbFrame(), fOrientation, thumb_of(fStyle),
                               ControlPrivate::State(this));
}

// The thumb has it.
void BSlider::DrawFocusMark() {}

void BSlider::DrawText()
{
    const Look look(this);
    const uint32 state = ControlPrivate::State(this);
    const float height = look.Ascent() + look.Descent() - 1;
    const BRect bounds = Bounds();
    BRect line(bounds.left, bounds.top, bounds.right, bounds.top + height);
    if (fOrientation == B_HORIZONTAL) {
        look.DrawLabel(Label(), line, B_ALIGN_LEFT, state);
        look.DrawLabel(UpdateText(), line, B_ALIGN_RIGHT, state);
        line.OffsetTo(line.left, bounds.bottom - height);
        look.DrawLabel(MinLimitLabel(), line, B_ALIGN_LEFT, state);
        look.DrawLabel(MaxLimitLabel(), line, B_ALIGN_RIGHT, state);
        return;
    }
    for (const char* text : {Label(), UpdateText(), MaxLimitLabel()}) {
        look.DrawLabel(text, line, B_ALIGN_CENTER, state);
        if (text != nullptr)
            line.OffsetBy(0, text_line(look));
    }
    line.OffsetTo(line.left, bounds.bottom - height);
    look.DrawLabel(MinLimitLabel(), line, B_ALIGN_CENTER, state);
}

const char* BSlider::UpdateText() const { return nullptr; }

void BSlider::UpdateTextChanged() { Invalidate(); }

float BSlider::MaxUpdateTextWidth() { return -1; }

BView* BSlider::OffscreenView() const { return const_cast<BSlider*>(this); }

// --- how it looks

void BSlider::SetLabel(const char* label)
{
    BControl::SetLabel(label);
    _Refit();
}

void BSlider::SetLimitLabels(const char* minLabel, const char* maxLabel)
{
    fMinLabel = minLabel;
    fMaxLabel = maxLabel;
    fHasMinLabel = minLabel != nullptr;
    fHasMaxLabel = maxLabel != nullptr;
    _Refit();
}

const char* BSlider::MinLimitLabel() const { return fHasMinLabel ? fMinLabel.String() : nullptr; }
const char* BSlider::MaxLimitLabel() const { return fHasMaxLabel ? fMaxLabel.String() : nullptr; }

void BSlider::SetModificationMessage(BMessage* message)
{
    if (message != fModification.get())
        fModification.reset(message);
}

BMessage* BSlider::ModificationMessage() const { return fModification.get(); }

void BSlider::SetSnoozeAmount(int32 microSeconds)
{
    fSnooze_us = std::clamp(microSeconds, int32(10000), int32(1000000));
}

int32 BSlider::SnoozeAmount() const { return fSnooze_us; }
void BSlider::SetKeyIncrementValue(int32 value) { fIncrement = value; }
int32 BSlider::KeyIncrementValue() const { return fIncrement; }

void BSlider::SetHashMarkCount(int32 count)
{
    fHashCount = count;
    Invalidate();
}

int32 BSlider::HashMarkCount() const { return fHashCount; }

void BSlider::SetHashMarks(hash_mark_location where)
{
    fHashes = where;
    Invalidate();
}

hash_mark_location BSlider::HashMarks() const { return fHashes; }

void BSlider::SetStyle(thumb_style style)
{
    fStyle = style;
    Invalidate();
}

thumb_style BSlider::Style() const { return fStyle; }

void BSlider::SetBarColor(rgb_color color)
{
    fBarColor = color;
    Invalidate();
}

rgb_color BSlider::BarColor() const { return fBarColor; }

void BSlider::UseFillColor(bool useFill, const rgb_color* color)
{
    fUseFill = useFill;
    if (useFill && color != nullptr)
        fFillColor = *color;
    Invalidate();
}

bool BSlider::FillColor(rgb_color* color) const
{
    if (fUseFill && color != nullptr)
        *color = fFillColor;
    return fUseFill;
}

orientation BSlider::Orientation() const { return fOrientation; }

void BSlider::SetOrientation(orientation posture)
{
    if (posture == fOrientation)
        return;
    fOrientation = posture;
    _Refit();
}

void BSlider::SetBarThickness(float thickness)
{
    fThickness = std::isfinite(thickness) ? std::max(std::round(thickness), 1.0f) : 1;
    _Refit();
}

void BSlider::SetFont(const BFont* font, uint32 properties)
{
    BControl::SetFont(font, properties);
    _Refit();
}
