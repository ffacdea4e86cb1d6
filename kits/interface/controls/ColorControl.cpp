// Colour controls.

#include <ColorControl.h>

#include <Message.h>
#include <MessageFilter.h>
#include <TextControl.h>
#include <TextView.h>
#include <TypeConstants.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <interface/controls/ControlPrivate.h>
#include <interface/view/ViewPrivate.h>
#include <support/EnumNumbers.h>

using BPrivate::ControlPrivate;
using BPrivate::Look;

static const uint32 kNumberMessage = 'ccol';
static const float kBevel = 2;
static const float kLeastCell = 6;
static const float kNumberGap = 6;  // between ramps and numbers
static const int32 kCells = 256;

static Look look_of(const BColorControl* control)
{
    return Look(const_cast<BColorControl*>(control));
}

// --- fields

// Of the keys that type something, digits alone come through.
static filter_result only_digits(BMessage* message, BHandler**, BMessageFilter*)
{
    int8 key;
    if (message->FindInt8("byte", &key) != B_OK)
        return B_DISPATCH_MESSAGE;
    const bool types = key < 0 || (key >= ' ' && key != B_DELETE);
    return !types || (key >= '0' && key <= '9') ? B_DISPATCH_MESSAGE : B_SKIP_MESSAGE;
}

class BColorControl::Number : public BTextControl {
public:
    Number(const char* name, const char* label)
        : BTextControl(BRect(), name, label, "0", new BMessage(kNumberMessage), B_FOLLOW_NONE)
    {
        TextView()->SetMaxBytes(3);
        TextView()->AddFilter(
            new BMessageFilter(B_ANY_DELIVERY, B_ANY_SOURCE, B_KEY_DOWN, only_digits));
    }
    void AllAttached() override
    {
        BTextControl::AllAttached();
        SetTarget(Parent());
    }
    // What is no number leaves things as they are.
    int32 Value(int32 otherwise) const
    {
        char* end;
        const long number = strtol(Text(), &end, 10);
        return end == Text() || *end != '\0' ? otherwise : int32(std::clamp(number, 0L, 255L));
    }
    void Show(int32 number)
    {
        const std::string text = std::to_string(number);
        if (text != Text())
            SetText(text.c_str());
    }
    float LabelWidth() const { return Look(const_cast<Number*>(this)).TextWidth(Label()); }
};

BColorControl::BColorControl(BPoint start, color_control_layout layout, float cellSize,
                             const char* name, BMessage* message, bool)
    : BControl(BRect(start, start), name, nullptr, message, B_FOLLOW_LEFT_TOP,
               B_WILL_DRAW | B_NAVIGABLE),
      fLayout(layout),
      fCellSize(cellSize)
{
    _Init();
}

BColorControl::BColorControl(BMessage* data)
    : BControl(data), fLayout(B_CELLS_16x16), fCellSize(kLeastCell)
{
    static const color_control_layout kLayouts[] = {B_CELLS_4x64, B_CELLS_8x32, B_CELLS_16x16,
                                                    B_CELLS_32x8, B_CELLS_64x4};
    if (data != nullptr) {
        fLayout = BPrivate::enum_among(data->GetInt32("_layout", fLayout), kLayouts, fLayout);
        data->FindFloat("_csize", &fCellSize);
    }
    _Init();
}

void BColorControl::_Init()
{
    static const char* const kNames[] = {nullptr, "_red", "_green", "_blue"};
    static const char* const kLabels[] = {nullptr, "Red:", "Green:", "Blue:"};
    while (BView* child = ChildAt(0)) {  // of an archive
        child->RemoveSelf();
        delete child;
    }
    for (int32 ramp = kRed; ramp < kRamps; ramp++)
        AddChild(fNumbers[ramp] = new Number(kNames[ramp], kLabels[ramp]));
    for (int32 ramp = kRed; ramp < kRamps; ramp++)
        fNumbers[ramp]->SetEnabled(IsEnabled());
    _ShowNumbers();
    _PlaceNumbers();
}

BColorControl::~BColorControl() = default;

BArchivable* BColorControl::Instantiate(BMessage* data)
{
    return validate_instantiation(data, "BColorControl") ? new (std::nothrow) BColorControl(data)
                                                         : nullptr;
}

status_t BColorControl::Archive(BMessage* data, bool) const
{
    // The fields are made anew.
    status_t status = BControl::Archive(data, false);
    if (status == B_OK)
        status = data->AddInt32("_layout", fLayout);
    return status == B_OK ? data->AddFloat("_csize", fCellSize) : status;
}

// --- value

void BColorControl::SetValue(int32 color_value)
{
    BControl::SetValue(color_value);
    _ShowNumbers();
}

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
    _Choose(color);
}

// By the user.
void BColorControl::_Choose(rgb_color color)
{
    const BPrivate::ViewRef self(this);
    const int32 before = Value();
    SetValue(color);
    if (self.View() != nullptr && Value() != before)
        Invoke();
}

void BColorControl::_ShowNumbers()
{
    for (int32 ramp = kRed; ramp < kRamps; ramp++) {
        if (fNumbers[ramp] != nullptr)
            fNumbers[ramp]->Show(_Part(ramp));
    }
}

void BColorControl::_TakeNumbers()
{
    const auto part = [this](int32 ramp) { return uint8(fNumbers[ramp]->Value(_Part(ramp))); };
    const BPrivate::ViewRef self(this);
    _Choose(make_color(part(kRed), part(kGreen), part(kBlue)));
    if (self.View() != nullptr)
        _ShowNumbers();
}

void BColorControl::SetEnabled(bool state)
{
    BControl::SetEnabled(state);
    for (int32 ramp = kRed; ramp < kRamps; ramp++)
        fNumbers[ramp]->SetEnabled(state);
}

// --- where things are

float BColorControl::CellSize() const { return fCellSize; }
color_control_layout BColorControl::Layout() const { return fLayout; }

void BColorControl::SetCellSize(float size)
{
    fCellSize = size;
    _PlaceNumbers();
}

void BColorControl::SetLayout(color_control_layout layout)
{
    fLayout = layout;
    _PlaceNumbers();
}

static int32 columns_of(color_control_layout layout)
{
    return std::clamp(int32(layout), int32(1), kCells);
}

// The ramps, inside of the bevel.
BRect BColorControl::_Palette() const
{
    const Look look = look_of(this);
    const float wanted = std::ceil(fCellSize * look.Size() / 12);
    const float cell = std::clamp(std::isfinite(wanted) ? wanted : 0, kLeastCell, 1000.0f);
    const int32 columns = columns_of(fLayout);
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

// The fields stand below each other, right of the ramps, and their own frames below one another.
void BColorControl::_PlaceNumbers()
{
    const Look look = look_of(this);
    float divider = 0;
    for (int32 ramp = kRed; ramp < kRamps; ramp++)
        divider = std::max(divider, fNumbers[ramp]->LabelWidth() + look.LabelSpacing());
    const float left = _Palette().right + kBevel + kNumberGap;
    float top = 0;
    for (int32 ramp = kRed; ramp < kRamps; ramp++) {
        Number* number = fNumbers[ramp];
        float height;
        number->GetPreferredSize(nullptr, &height);
        number->MoveTo(left, top);
        number->ResizeTo(divider + look.TextWidth("0000") + 8, height);
        number->SetDivider(divider);
        top += height + look.Scaled(4);
    }
    ResizeToPreferred();
    Invalidate();
}

void BColorControl::SetFont(const BFont* font, uint32 mask)
{
    BControl::SetFont(font, mask);
    for (int32 ramp = kRed; ramp < kRamps && fNumbers[ramp] != nullptr; ramp++) {
        fNumbers[ramp]->SetFont(font, mask);
        fNumbers[ramp]->TextView()->SetFontAndColor(font, mask);
    }
    if (fNumbers[kBlue] != nullptr)
        _PlaceNumbers();
}

// The fields' labels are on the same ground.
void BColorControl::SetViewColor(rgb_color color)
{
    BControl::SetViewColor(color);
    for (int32 ramp = kRed; ramp < kRamps && fNumbers[ramp] != nullptr; ramp++) {
        fNumbers[ramp]->SetViewColor(color);
        fNumbers[ramp]->SetLowColor(color);
        fNumbers[ramp]->Invalidate();
    }
}

void BColorControl::AttachedToWindow()
{
    BControl::AttachedToWindow();
    _PlaceNumbers();
}

void BColorControl::GetPreferredSize(float* _width, float* _height)
{
    const BRect last = fNumbers[kBlue]->Frame();
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

// --- the palette of pixels that are one byte

bool BColorControl::_ShowsPalette() const
{
    BPrivate::Canvas* canvas = BPrivate::ViewPrivate::Data(this).canvas;
    return canvas != nullptr && canvas->Pixels().space == B_CMAP8;
}

BRect BColorControl::_CellFrame(int32 cell) const
{
    const BRect palette = _Palette();
    const int32 columns = columns_of(fLayout);
    const float side = (palette.Width() + 1) / float(columns);
    const BPoint corner(palette.left + float(cell % columns) * side,
                        palette.top + float(cell / columns) * side);
    return BRect(corner, corner + BPoint(side - 1, side - 1));
}

int32 BColorControl::_CellAt(BPoint where) const
{
    for (int32 cell = 0; cell < kCells; cell++) {
        if (_CellFrame(cell).Contains(where))
            return cell;
    }
    return -1;
}

// The one that is nearest to the value.
int32 BColorControl::_Cell() const
{
    const rgb_color color = make_color(_Part(kRed), _Part(kGreen), _Part(kBlue));
    return system_colors()
        ->index_map[(color.red & 0xF8) << 7 | (color.green & 0xF8) << 2 | color.blue >> 3];
}

// --- drawing

void BColorControl::_DrawRamps() const
{
    const Look look = look_of(this);
    const uint32 state = ControlPrivate::State(this);
    const uint32 disabled = state & Look::kDisabled;
    for (int32 ramp = 0; ramp < kRamps; ramp++) {
        const rgb_color full = make_color(ramp == kGrey || ramp == kRed ? 255 : 0,
                                          ramp == kGrey || ramp == kGreen ? 255 : 0,
                                          ramp == kGrey || ramp == kBlue ? 255 : 0);
        look.DrawRamp(_RampFrame(ramp), make_color(0, 0, 0), full, disabled);
        if (ramp != kGrey || (_Part(kRed) == _Part(kGreen) && _Part(kRed) == _Part(kBlue)))
            look.DrawRampMark(_RampFrame(ramp), _Place(ramp));
    }
    if ((state & Look::kFocused) != 0)
        look.DrawFocusRing(_RampFrame(fRamp));
}

void BColorControl::_DrawCells() const
{
    const Look look = look_of(this);
    const rgb_color* colors = system_colors()->color_list;
    const bool disabled = !IsEnabled();
    for (int32 cell = 0; cell < kCells; cell++)
        look.Fill(_CellFrame(cell),
                  disabled ? Look::Mix(colors[cell], look.Base(), 0.6f) : colors[cell]);
    const BRect chosen = _CellFrame(_Cell());
    look.DrawFocusRing(chosen.InsetByCopy(-1, -1) & _Palette());
    look.DrawEdges(chosen, make_color(255, 255, 255));
}

void BColorControl::Draw(BRect)
{
    look_of(this).DrawBorder(_Palette().InsetByCopy(-kBevel, -kBevel), B_FANCY_BORDER,
                             ControlPrivate::State(this));
    if (_ShowsPalette())
        _DrawCells();
    else
        _DrawRamps();
}

void BColorControl::MakeFocus(bool focused) { BControl::MakeFocus(focused); }

// --- pointer and keys

void BColorControl::MouseDown(BPoint where)
{
    const bool palette = _ShowsPalette();
    const int32 part = palette ? _CellAt(where) : _RampAt(where);
    if (part < 0 || !ControlPrivate::Press(this))
        return;
    fDragged = palette ? kGrey : part;
    MouseMoved(where, B_INSIDE_VIEW, nullptr);
    ControlPrivate::Follow(this);
}

void BColorControl::MouseMoved(BPoint point, uint32, const BMessage*)
{
    if (!IsTracking() || fDragged < 0)
        return;
    if (_ShowsPalette()) {
        const int32 cell = _CellAt(point);
        if (cell >= 0)
            _Choose(system_colors()->color_list[cell]);
        return;
    }
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
    const bool across = key == B_LEFT_ARROW || key == B_RIGHT_ARROW;
    const bool along = key == B_UP_ARROW || key == B_DOWN_ARROW;
    const int32 way = key == B_LEFT_ARROW || key == B_UP_ARROW ? -1 : 1;
    if (!IsEnabled() || (!across && !along && key != B_HOME && key != B_END)) {
        BView::KeyDown(bytes, numBytes);
        return;
    }
    if (_ShowsPalette()) {
        const int32 to = key == B_HOME  ? 0
                         : key == B_END ? kCells - 1
                                        : _Cell() + way * (across ? 1 : columns_of(fLayout));
        if (to >= 0 && to < kCells)
            _Choose(system_colors()->color_list[to]);
    } else if (along) {
        fRamp = std::clamp(fRamp + way, int32(kRed), int32(kBlue));
    } else if (across) {
        _SetPart(fRamp, _Part(fRamp) + way);
    } else {
        _SetPart(fRamp, key == B_HOME ? 0 : 255);
    }
    Invalidate();
}

void BColorControl::MessageReceived(BMessage* message)
{
    if (message->what == kNumberMessage && !message->WasDropped()) {
        _TakeNumbers();
        return;
    }
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
