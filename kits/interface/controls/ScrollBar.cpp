// Scroll bars.

#include <ScrollBar.h>

#include <Message.h>
#include <MessageRunner.h>
#include <Messenger.h>
#include <Window.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include <interface/controls/ControlPrivate.h>
#include <interface/controls/ScrollBarPrivate.h>
#include <interface/view/ViewPrivate.h>

using BPrivate::Look;
using BPrivate::ViewPrivate;

static const uint32 kRepeat = '_SBR';
static const bigtime_t kFirstRepeat_us = 300000;
static const bigtime_t kRepeat_us = 40000;
static const float kWheelSteps = 3;

namespace BPrivate {

// Where the parts of a bar are, along its length from 0.
struct [[gnu::visibility("hidden")]] ScrollBarParts
{
    explicit ScrollBarParts(const BScrollBar* bar);
    BRect Frame(float from, float to) const;
    float Along(BPoint where) const
    {
        return vertical ? where.y - bounds.top : where.x - bounds.left;
    }

    BRect bounds;
    bool vertical;
    bool doubled;       // both arrows at each end
    float length;       // pixels
    float button;       // pixels of one arrow
    float start, room;  // of the trough
    float thumbStart = 0, thumb = 0;
};

ScrollBarParts::ScrollBarParts(const BScrollBar* bar) : bounds(bar->Bounds())
{
    scroll_bar_info info;
    get_scroll_bar_info(&info);
    vertical = bar->fOrientation == B_VERTICAL;
    length = (vertical ? bounds.Height() : bounds.Width()) + 1;
    const float thickness = (vertical ? bounds.Width() : bounds.Height()) + 1;
    doubled = info.double_arrows && length >= 5 * thickness;
    const float buttons = doubled ? 2 : 1;
    button = std::max(0.0f, std::min(thickness, std::floor(length / 2)));
    start = buttons * button;
    room = std::max(0.0f, length - 2 * start);
    if (!bar->_HasRange() || room < 1)
        return;
    const double range = double(bar->fMax) - bar->fMin;  // may be more than a float tells
    float share = bar->fProportion;
    if (share == 0)
        share = float(bar->fLargeStep / (2 * range));
    const float least = std::min(room, std::max(1.0f, float(info.min_knob_size)));
    thumb = info.proportional ? std::round(share * room) : thickness;
    thumb = std::clamp(std::isfinite(thumb) ? thumb : room, least, room);
    const double passed = (double(bar->fValue) - bar->fMin) / range;
    thumbStart = start + float(std::round(passed * (room - thumb)));
}

BRect ScrollBarParts::Frame(float from, float to) const
{
    BRect frame = bounds;
    if (vertical) {
        frame.top = bounds.top + from;
        frame.bottom = bounds.top + to;
    } else {
        frame.left = bounds.left + from;
        frame.right = bounds.left + to;
    }
    return frame;
}

}  // namespace BPrivate

using BPrivate::ScrollBarParts;

static float whole(float value) { return std::isfinite(value) ? std::round(value) : 0; }

// Between none and all; not a number is none.
static float share(float proportion) { return proportion > 0 ? std::min(proportion, 1.0f) : 0; }

static uint32 mode_of(orientation direction)
{
    return direction == B_VERTICAL ? B_FOLLOW_TOP_BOTTOM | B_FOLLOW_RIGHT
                                   : B_FOLLOW_LEFT_RIGHT | B_FOLLOW_BOTTOM;
}

BScrollBar::BScrollBar(BRect frame, const char* name, BView* target, float min, float max,
                       orientation direction)
    : BView(frame, name, mode_of(direction),
            B_WILL_DRAW | B_FULL_UPDATE_ON_RESIZE | B_FRAME_EVENTS),
      fMin(0),
      fMax(0),
      fOrientation(direction)
{
    SetViewColor(B_TRANSPARENT_COLOR);
    SetRange(min, max);
    SetTarget(target);
}

BScrollBar::BScrollBar(const char* name, BView* target, float min, float max, orientation direction)
    : BScrollBar(BRect(), name, target, min, max, direction)
{
    BScrollBar::ResizeToPreferred();
}

BScrollBar::BScrollBar(BMessage* archive)
    : BView(archive), fMin(0), fMax(0), fOrientation(B_HORIZONTAL)
{
    SetViewColor(B_TRANSPARENT_COLOR);
    if (archive == nullptr)
        return;
    float first, second;
    if (archive->FindFloat("_range", 0, &first) == B_OK &&
        archive->FindFloat("_range", 1, &second) == B_OK)
        SetRange(first, second);
    if (archive->FindFloat("_steps", 0, &first) == B_OK &&
        archive->FindFloat("_steps", 1, &second) == B_OK)
        SetSteps(first, second);
    if (archive->FindFloat("_val", &first) == B_OK)
        fValue = std::clamp(whole(first), fMin, fMax);
    if (archive->FindFloat("_prop", &first) == B_OK)
        fProportion = share(first);
    int32 direction;
    if (archive->FindInt32("_orient", &direction) == B_OK)
        fOrientation = direction == B_VERTICAL ? B_VERTICAL : B_HORIZONTAL;
}

BScrollBar::~BScrollBar()
{
    _Link(false);
    free(fTargetName);
}

BArchivable* BScrollBar::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BScrollBar") ? new (std::nothrow) BScrollBar(archive)
                                                         : nullptr;
}

status_t BScrollBar::Archive(BMessage* archive, bool deep) const
{
    _Settle();
    const status_t status = BView::Archive(archive, deep);
    if (status != B_OK)
        return status;
    archive->AddFloat("_range", fMin);
    archive->AddFloat("_range", fMax);
    archive->AddFloat("_steps", fSmallStep);
    archive->AddFloat("_steps", fLargeStep);
    archive->AddFloat("_val", fValue);
    archive->AddFloat("_prop", fProportion);
    return archive->AddInt32("_orient", fOrientation);
}

// --- the target

// Enters this bar with its target, so that each knows how far the other is, or takes it out.
void BScrollBar::_Link(bool link)
{
    if (fTarget == nullptr)
        return;
    BPrivate::ScrollBarLink entry;
    if (link) {
        entry.bar = this;
        entry.scrolled = [](BScrollBar* bar, float value) { bar->SetValue(value); };
        entry.wheel = [](BScrollBar* bar, float delta) {
            bar->_Settle();
            const bool pages = (modifiers() & B_SHIFT_KEY) != 0;
            return bar->_ScrollBy(delta * (pages ? bar->fLargeStep : kWheelSteps * bar->fSmallStep))
                       ? B_OK
                       : B_ERROR;
        };
        entry.target_gone = [](BScrollBar* bar) { bar->fTarget = nullptr; };
    } else if (fTarget->ScrollBar(fOrientation) != this) {
        return;
    }
    ViewPrivate::SetScrollBar(fTarget, fOrientation, entry);
}

void BScrollBar::SetTarget(BView* target)
{
    _Settle();
    _Link(false);
    fTarget = target;
    if (target != nullptr && target->ScrollBar(fOrientation) != nullptr &&
        target->ScrollBar(fOrientation) != this)
        target->ScrollBar(fOrientation)->fTarget = nullptr;
    _Link(true);
    free(fTargetName);
    fTargetName = nullptr;
}

void BScrollBar::SetTarget(const char* targetName)
{
    if (targetName == nullptr) {
        SetTarget(static_cast<BView*>(nullptr));
        return;
    }
    BView* view = Window() != nullptr ? Window()->FindView(targetName) : nullptr;
    SetTarget(view);
    if (view == nullptr)
        fTargetName = strdup(targetName);
}

BView* BScrollBar::Target() const { return fTarget; }

void BScrollBar::AttachedToWindow()
{
    BPrivate::adopt_ground(this);
    SetViewColor(B_TRANSPARENT_COLOR);
    if (fTargetName != nullptr) {
        if (BView* view = Window()->FindView(fTargetName))
            SetTarget(view);
    }
}

void BScrollBar::DetachedFromWindow() { _EndPress(); }

void BScrollBar::SetOrientation(orientation direction)
{
    if (direction == fOrientation)
        return;
    _Settle();
    _Link(false);
    fOrientation = direction;
    _Link(true);
    Invalidate();
}

orientation BScrollBar::Orientation() const { return fOrientation; }

// --- value and range

namespace BPrivate {

void ScrollBarPrivate::AskLater(BScrollBar* bar, void (*ask)(BView*))
{
    if (bar->fAsk == nullptr)
        bar->Invalidate();
    bar->fAsk = ask;
}

}  // namespace BPrivate

// What changes is drawn anyway.
void BScrollBar::_Ask() const
{
    auto* const ask = std::exchange(fAsk, nullptr);
    if (fTarget == nullptr)
        return;
    fAsking = true;
    ask(fTarget);
    fAsking = false;
}

void BScrollBar::_Redraw()
{
    if (!fAsking)
        Invalidate();
}

void BScrollBar::SetValue(float value)
{
    _Settle();
    value = std::clamp(whole(value), fMin, fMax);
    if (value == fValue)
        return;
    fValue = value;
    Invalidate();
    ValueChanged(value);
}

float BScrollBar::Value() const { return fValue; }

void BScrollBar::ValueChanged(float newValue)
{
    if (fTarget == nullptr)
        return;
    const BPoint place = fTarget->LeftTop();
    if (fOrientation == B_VERTICAL)
        fTarget->ScrollBy(0, newValue - place.y);
    else
        fTarget->ScrollBy(newValue - place.x, 0);
}

bool BScrollBar::_ScrollBy(float delta)
{
    const float before = fValue;
    SetValue(fValue + delta);
    return fValue != before;
}

void BScrollBar::SetProportion(float proportion)
{
    proportion = share(proportion);
    _Settle();
    if (proportion == fProportion)
        return;
    fProportion = proportion;
    _Redraw();
}

float BScrollBar::Proportion() const
{
    _Settle();
    return fProportion;
}

void BScrollBar::SetRange(float min, float max)
{
    min = whole(min);
    max = whole(max);
    if (min > max)
        min = max = 0;
    _Settle();
    if (min == fMin && max == fMax)
        return;
    fMin = min;
    fMax = max;
    _Redraw();
    SetValue(fValue);
}

void BScrollBar::GetRange(float* _min, float* _max) const
{
    _Settle();
    if (_min != nullptr)
        *_min = fMin;
    if (_max != nullptr)
        *_max = fMax;
}

void BScrollBar::SetSteps(float smallStep, float largeStep)
{
    _Settle();
    fSmallStep = whole(smallStep);
    fLargeStep = whole(largeStep);
    if (fProportion == 0)
        _Redraw();
}

void BScrollBar::GetSteps(float* _smallStep, float* _largeStep) const
{
    _Settle();
    if (_smallStep != nullptr)
        *_smallStep = fSmallStep;
    if (_largeStep != nullptr)
        *_largeStep = fLargeStep;
}

// --- drawing

void BScrollBar::Draw(BRect)
{
    _Settle();
    Look look(this);
    look.FitScrollBar(fOrientation == B_VERTICAL ? Bounds().Width() : Bounds().Height());
    const ScrollBarParts parts(this);
    const uint32 state = _HasRange() ? 0 : uint32(Look::kDisabled);
    const auto held = [&](Part part) {
        return state | (fPressed == part && fPressShown ? uint32(Look::kPressed) : 0);
    };
    const auto less = parts.vertical ? Look::Way::Up : Look::Way::Left;
    const auto more = parts.vertical ? Look::Way::Down : Look::Way::Right;
    const float end = parts.length - 1;
    look.DrawTrough(parts.Frame(parts.start - 1, end - parts.start + 1), fOrientation, state);
    look.DrawArrowButton(parts.Frame(0, parts.button - 1), less, held(kLess));
    look.DrawArrowButton(parts.Frame(end - parts.button + 1, end), more, held(kMore));
    if (parts.doubled) {
        look.DrawArrowButton(parts.Frame(parts.button - 1, 2 * parts.button - 1), more,
                             held(kMore));
        look.DrawArrowButton(parts.Frame(end - 2 * parts.button + 1, end - parts.button + 1), less,
                             held(kLess));
    }
    if (parts.thumb > 0)
        look.DrawScrollThumb(parts.Frame(parts.thumbStart - 1, parts.thumbStart + parts.thumb),
                             fOrientation, held(kThumb));
    if (fHighlighted)
        look.DrawFocusRing(Bounds());
}

status_t BScrollBar::SetBorderHighlighted(bool highlight)
{
    if (highlight != fHighlighted)
        Invalidate();
    fHighlighted = highlight;
    return B_OK;
}

void BScrollBar::GetPreferredSize(float* _width, float* _height)
{
    const float thickness = Look(this).ScrollBarThickness();
    if (_width != nullptr)
        *_width = fOrientation == B_VERTICAL ? thickness : Bounds().Width();
    if (_height != nullptr)
        *_height = fOrientation == B_HORIZONTAL ? thickness : Bounds().Height();
}

// --- the pointer

BScrollBar::Part BScrollBar::_PartAt(BPoint where) const
{
    const ScrollBarParts parts(this);
    if (!parts.bounds.Contains(where) || !_HasRange())
        return kNone;
    const float at = parts.Along(where);
    const float end = parts.length - parts.button;
    if (at < parts.button)
        return kLess;
    if (at >= end)
        return kMore;
    if (at < parts.start)
        return kMore;
    if (at >= parts.length - parts.start)
        return kLess;
    if (at < parts.thumbStart)
        return kPageLess;
    return at < parts.thumbStart + parts.thumb ? kThumb : kPageMore;
}

void BScrollBar::_Press(Part part, BPoint where)
{
    fPressed = part;
    fPressShown = true;
    fPointer = where;
    fGrip = ScrollBarParts(this).Along(where) - ScrollBarParts(this).thumbStart;
    Invalidate();
    SetMouseEventMask(B_POINTER_EVENTS, B_LOCK_WINDOW_FOCUS);
    if (part == kThumb)
        return;
    BMessage repeat(kRepeat);
    fRepeater = std::make_unique<BMessageRunner>(BMessenger(this), repeat, kFirstRepeat_us, 1);
    _Repeat();
}

// One step; goes on while the pointer stays where it was pressed.
void BScrollBar::_Repeat()
{
    _Settle();
    switch (fPressShown && fPressed == _PartAt(fPointer) ? fPressed : kNone) {
        case kLess:
            _ScrollBy(-fSmallStep);
            break;
        case kMore:
            _ScrollBy(fSmallStep);
            break;
        case kPageLess:
            _ScrollBy(-fLargeStep);
            break;
        case kPageMore:
            _ScrollBy(fLargeStep);
            break;
        default:
            break;
    }
}

void BScrollBar::MouseDown(BPoint where)
{
    _Settle();
    int32 buttons = 0;
    if (BMessage* message = Window() != nullptr ? Window()->CurrentMessage() : nullptr)
        message->FindInt32("buttons", &buttons);
    Part part = _PartAt(where);
    if (part == kNone)
        return;
    if (buttons == B_TERTIARY_MOUSE_BUTTON && part >= kPageLess) {
        _Press(kThumb, where);
        fGrip = std::floor(ScrollBarParts(this).thumb / 2);
        MouseMoved(where, B_INSIDE_VIEW, nullptr);
        return;
    }
    _Press(part, where);
}

void BScrollBar::MouseMoved(BPoint where, uint32, const BMessage*)
{
    if (fPressed == kNone)
        return;
    _Settle();
    fPointer = where;
    if (fPressed != kThumb) {
        const bool shown = _PartAt(where) == fPressed;
        if (shown != fPressShown)
            Invalidate();
        fPressShown = shown;
        return;
    }
    const ScrollBarParts parts(this);
    const float way = parts.room - parts.thumb;
    if (way <= 0)
        return;
    const double passed = double(parts.Along(where) - fGrip - parts.start) / way;
    SetValue(float(fMin + std::clamp(passed, 0.0, 1.0) * (double(fMax) - fMin)));
}

void BScrollBar::_EndPress()
{
    if (fPressed == kNone)
        return;
    fPressed = kNone;
    fRepeater.reset();
    Invalidate();
}

void BScrollBar::MouseUp(BPoint) { _EndPress(); }

void BScrollBar::MessageReceived(BMessage* message)
{
    float delta = 0;
    int32 value;
    switch (message->what) {
        case kRepeat:
            if (fPressed != kNone && fPressed != kThumb) {
                fRepeater = std::make_unique<BMessageRunner>(BMessenger(this), BMessage(kRepeat),
                                                             kRepeat_us, 1);
                _Repeat();
            }
            break;
        case B_VALUE_CHANGED:
            if (message->FindInt32("value", &value) == B_OK)
                SetValue(static_cast<float>(value));
            break;
        case B_MOUSE_WHEEL_CHANGED:
            if (message->FindFloat("be:wheel_delta_y", &delta) != B_OK || delta == 0)
                message->FindFloat("be:wheel_delta_x", &delta);
            _ScrollBy(delta * kWheelSteps * fSmallStep);
            break;
        default:
            BView::MessageReceived(message);
    }
}
