// Colour controls.

#include <ColorControl.h>

#include <Message.h>
#include <TypeConstants.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <interface/controls/ControlPrivate.h>

using BPrivate::ControlPrivate;
using BPrivate::Look;

static const float kBevel = 2;
static const float kLeastCell = 6;
static const float kNumberGap = 6;  // between ramps and numbers
static const int32 kCells = 256;
static const char* const kNames[] = {nullptr, "Red:", "Green:", "Blue:"};

static Look look_of(const BColorControl* control)
{
    return Look(const_cast<BColorControl*>(control));
}

BColorControl::BColorControl(BPoint start, color_control_layout layout, float cellSize,
                             const char* name, BMessage* message, bool)
    : BControl(BRect(start, start), name, nullptr, message, B_FOLLOW_LEFT_TOP,
               B_WILL_DRAW | B_NAVIGABLE),
      fLayout(layout),
      fCellSize(cellSize)
{
    ResizeToPreferred();
}

BColorControl::BColorControl(BMessage* data)
    : BControl(data), fLayout(B_CELLS_16x16), fCellSize(kLeastCell)
{
    int32 layout;
    if (data != nullptr && data->FindInt32("_layout", &layout) == B_OK)
        fLayout = static_cast<color_control_layout>(layout);
    if (data != nullptr)
        data->FindFloat("_csize", &fCellSize);
    ResizeToPreferred();
}

BColorControl::~BColorControl() = default;

BArchivable* BColorControl::Instantiate(BMessage* data)
{
    return validate_instantiation(data, "BColorControl") ? new (std::nothrow) BColorControl(data)
                                                         : nullptr;
}

status_t BColorControl::Archive(BMessage* data, bool deep) const
{
    status_t status = BControl::Archive(data, deep);
    if (status == B_OK)
        status = data->AddInt32("_layout", fLayout);
    return status == B_OK ? data->AddFloat("_csize", fCellSize) : status;
}

// --- value

void BColorControl::SetValue(int32 color_value) { BControl::SetValue(color_value); }

void BColorControl::SetValue(rgb_color color)
{
    SetValue(int32(uint32(color.red) << 24 | uint32(color.green) << 16 | uint32(color.blue) << 8));
}

rgb_color BColorControl::ValueAsColor()
{
    const auto value = static_cast<uint32>(Value());
    return make_color(uint8(value >> 24), uint8(value >> 16), uint8(value >> 8));
}

// Grey is the middle of the others.
uint8 BColorControl::_Part(int32 ramp) const
{
    const auto value = static_cast<uint32>(Value());
    if (ramp == kGrey)
        return uint8((_Part(kRed) + _Part(kGreen) + _Part(kBlue)) / 3);
    return uint8(value >> (32 - 8 * ramp));
}

void BColorControl::_SetPart(int32 ramp, int32 part)
{
    const auto bounded = uint8(std::clamp(part, int32(0), int32(255)));
    rgb_color color = ValueAsColor();
    if (ramp == kGrey || ramp == kRed)
        color.red = bounded;
    if (ramp == kGrey || ramp == kGreen)
        color.green = bounded;
    if (ramp == kGrey || ramp == kBlue)
        color.blue = bounded;
    const int32 before = Value();
    SetValue(color);
    if (Value() != before)
        Invoke();
}

// --- where things are

float BColorControl::CellSize() const { return fCellSize; }
color_control_layout BColorControl::Layout() const { return fLayout; }

void BColorControl::SetCellSize(float size)
{
    fCellSize = size;
    ResizeToPreferred();
    Invalidate();
}

void BColorControl::SetLayout(color_control_layout layout)
{
    fLayout = layout;
    ResizeToPreferred();
    Invalidate();
}

// The ramps, inside of the bevel.
BRect BColorControl::_Palette() const
{
    const Look look = look_of(this);
    const float wanted = std::ceil(fCellSize * look.Size() / 12);
    const float cell = std::clamp(std::isfinite(wanted) ? wanted : 0, kLeastCell, 1000.0f);
    const int32 columns = std::clamp(int32(fLayout), int32(1), kCells);
    const BPoint corner(kBevel, kBevel);
    return BRect(corner,
                 corner + BPoint(float(columns) * cell - 1, float(kCells / columns) * cell - 1));
}

BRect BColorControl::_RampFrame(int32 ramp) const
{
    BRect frame = _Palette();
    const float height = frame.Height() + 1;
    const float top = frame.top;
    frame.top = top + std::floor(height * float(ramp) / float(kRamps));
    frame.bottom = top + std::floor(height * float(ramp + 1) / float(kRamps)) - 1;
    return frame;
}

BRect BColorControl::_NumberFrame(int32 ramp) const
{
    const Look look = look_of(this);
    float names = 0;
    for (const char* name : kNames)
        names = std::max(names, look.TextWidth(name));
    const float height = look.LineHeight() + 4;
    const float left = _Palette().right + kBevel + kNumberGap + names + look.LabelSpacing();
    const float top = float(ramp - 1) * (height + 4);
    return BRect(left, top, left + look.TextWidth("0000") + 4, top + height);
}

void BColorControl::GetPreferredSize(float* _width, float* _height)
{
    const BRect last = _NumberFrame(kBlue);
    if (_width != nullptr)
        *_width = last.right;
    if (_height != nullptr)
        *_height = std::max(_Palette().bottom + kBevel, last.bottom);
}

float BColorControl::_Place(int32 ramp) const
{
    const BRect frame = _RampFrame(ramp);
    return std::floor(frame.left + frame.Width() * float(_Part(ramp)) / 255 + 0.5f);
}

int32 BColorControl::_RampAt(BPoint where) const
{
    for (int32 ramp = 0; ramp < kRamps; ramp++) {
        if (_RampFrame(ramp).Contains(where))
            return ramp;
    }
    return -1;
}

// --- drawing

void BColorControl::Draw(BRect)
{
    const Look look(this);
    const uint32 state = ControlPrivate::State(this);
    const uint32 disabled = state & Look::kDisabled;
    look.DrawBorder(_Palette().InsetByCopy(-kBevel, -kBevel), B_FANCY_BORDER, disabled);
    for (int32 ramp = 0; ramp < kRamps; ramp++) {
        const rgb_color full = make_color(ramp == kGrey || ramp == kRed ? 255 : 0,
                                          ramp == kGrey || ramp == kGreen ? 255 : 0,
                                          ramp == kGrey || ramp == kBlue ? 255 : 0);
        look.DrawRamp(_RampFrame(ramp), make_color(0, 0, 0), full, disabled);
        if (ramp != kGrey || (_Part(kRed) == _Part(kGreen) && _Part(kRed) == _Part(kBlue)))
            look.DrawRampMark(_RampFrame(ramp), _Place(ramp));
    }
    for (int32 ramp = kRed; ramp < kRamps; ramp++) {
        const BRect frame = _NumberFrame(ramp);
        const bool focused = (state & Look::kFocused) != 0 && ramp == fRamp;
        const uint32 own = disabled | (focused ? uint32(Look::kFocused) : 0);
        const BRect name(_Palette().right + kBevel + kNumberGap, frame.top, frame.left,
                         frame.bottom);
        look.DrawLabel(kNames[ramp], name, B_ALIGN_LEFT, disabled);
        look.DrawBorder(frame, B_FANCY_BORDER, own);
        look.Fill(frame.InsetByCopy(2, 2), look.Well(disabled));
        char number[8];
        snprintf(number, sizeof(number), "%d", int(_Part(ramp)));
        look.DrawLabel(number, frame.InsetByCopy(4, 2), B_ALIGN_RIGHT, disabled);
    }
}

void BColorControl::MakeFocus(bool focused)
{
    fTyped = -1;
    BControl::MakeFocus(focused);
}

// --- pointer and keys

void BColorControl::MouseDown(BPoint where)
{
    const int32 ramp = _RampAt(where);
    for (int32 i = kRed; IsEnabled() && i < kRamps; i++) {
        if (_NumberFrame(i).Contains(where)) {
            fRamp = i;
            fTyped = -1;
            MakeFocus(true);
            Invalidate();
        }
    }
    if (ramp < 0 || !ControlPrivate::Press(this))
        return;
    fDragged = ramp;
    MouseMoved(where, B_INSIDE_VIEW, nullptr);
    ControlPrivate::Follow(this);
}

void BColorControl::MouseMoved(BPoint point, uint32, const BMessage*)
{
    if (!IsTracking() || fDragged < 0)
        return;
    const BRect frame = _RampFrame(fDragged);
    const float share = std::clamp((point.x - frame.left) / frame.Width(), 0.0f, 1.0f);
    _SetPart(fDragged, int32(std::floor(share * 255 + 0.5f)));
}

void BColorControl::MouseUp(BPoint point)
{
    MouseMoved(point, B_INSIDE_VIEW, nullptr);
    ControlPrivate::Release(this, point);
    fDragged = -1;
}

void BColorControl::KeyDown(const char* bytes, int32 numBytes)
{
    const char key = ControlPrivate::Key(bytes, numBytes);
    const bool digit = key >= '0' && key <= '9';
    if (!IsEnabled() || key == B_TAB || key == '\0') {
        BView::KeyDown(bytes, numBytes);
        return;
    }
    if (!digit && key != B_BACKSPACE)
        fTyped = -1;
    switch (key) {
        case B_UP_ARROW:
            fRamp = std::max(fRamp - 1, int32(kRed));
            break;
        case B_DOWN_ARROW:
            fRamp = std::min(fRamp + 1, int32(kBlue));
            break;
        case B_LEFT_ARROW:
            _SetPart(fRamp, _Part(fRamp) - 1);
            break;
        case B_RIGHT_ARROW:
            _SetPart(fRamp, _Part(fRamp) + 1);
            break;
        case B_HOME:
            _SetPart(fRamp, 0);
            break;
        case B_END:
            _SetPart(fRamp, 255);
            break;
        case B_BACKSPACE:
            fTyped = _Part(fRamp) / 10;
            _SetPart(fRamp, fTyped);
            break;
        default:
            if (!digit) {
                BView::KeyDown(bytes, numBytes);
                return;
            }
            fTyped = fTyped > 0 && fTyped < 100 ? 10 * fTyped + (key - '0') : key - '0';
            _SetPart(fRamp, fTyped);
    }
    Invalidate();
}

void BColorControl::MessageReceived(BMessage* message)
{
    const void* data = nullptr;
    ssize_t size = 0;
    char* name = nullptr;
    type_code type;
    if (message->WasDropped() && IsEnabled() &&
        message->GetInfo(B_RGB_COLOR_TYPE, 0, &name, &type) == B_OK &&
        message->FindData(name, B_RGB_COLOR_TYPE, &data, &size) == B_OK &&
        size == ssize_t(sizeof(rgb_color))) {
        SetValue(*static_cast<const rgb_color*>(data));
        Invoke();
        return;
    }
    BControl::MessageReceived(message);
}
