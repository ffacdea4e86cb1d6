// The press of a control with the pointer, and what else all controls share.

#include <Bitmap.h>
#include <Window.h>

#include <algorithm>
#include <cmath>

#include <interface/controls/ControlIcon.h>
#include <interface/controls/ControlPrivate.h>

namespace BPrivate {

bool ControlPrivate::Press(BControl* control)
{
    if (!control->fEnabled)
        return false;
    control->fTracking = control->fPressed = true;
    if (control->SetMouseEventMask(B_POINTER_EVENTS, B_LOCK_WINDOW_FOCUS) != B_OK)
        control->fTracking = control->fPressed = false;  // there is no press under way
    control->Invalidate();
    return control->fTracking;
}

void ControlPrivate::Follow(BControl* control, bigtime_t interval_us)
{
    BWindow* window = control->Window();
    if (window == nullptr || (window->Flags() & B_ASYNCHRONOUS_CONTROLS) != 0)
        return;
    BPoint where;
    uint32 buttons = 1;
    while (control->fTracking && buttons != 0) {
        window->UpdateIfNeeded();
        snooze(interval_us);
        control->GetMouse(&where, &buttons);
        const bool inside = control->Bounds().Contains(where);
        if (buttons != 0)
            control->MouseMoved(where, inside ? B_INSIDE_VIEW : B_OUTSIDE_VIEW, nullptr);
        else
            control->MouseUp(where);
    }
}

bool ControlPrivate::Drag(BControl* control, BPoint where)
{
    if (!control->fTracking)
        return false;
    const bool inside = control->Bounds().Contains(where);
    if (inside == control->fPressed)
        return false;
    control->fPressed = inside;
    control->Invalidate();
    return true;
}

bool ControlPrivate::Release(BControl* control, BPoint where)
{
    if (!control->fTracking)
        return false;
    control->fTracking = control->fPressed = false;
    control->Invalidate();
    return control->fEnabled && control->Bounds().Contains(where);
}

uint32 ControlPrivate::State(const BControl* control)
{
    uint32 state = 0;
    if (!control->fEnabled)
        state |= Look::kDisabled;
    if (control->fPressed)
        state |= Look::kPressed;
    if (control->fValue == B_CONTROL_PARTIALLY_ON)
        state |= Look::kMixed;
    else if (control->fValue != B_CONTROL_OFF)
        state |= Look::kOn;
    if (control->fEnabled && shows_focus(control))
        state |= Look::kFocused;
    return state;
}

const BBitmap* ControlPrivate::Icon(const BControl* control, uint32 which)
{
    if (control->fIcon == nullptr)
        return nullptr;
    return control->fIcon->BitmapFor(control->fEnabled ? which : which | B_DISABLED_ICON_BITMAP);
}

static const BBitmap* mark_icon(const BControl* control)
{
    return ControlPrivate::Icon(
        control, control->Value() != B_CONTROL_OFF ? B_ACTIVE_ICON_BITMAP : B_INACTIVE_ICON_BITMAP);
}

void ControlPrivate::DrawMarked(BControl* control, void (Look::*mark)(BRect, uint32) const)
{
    const Look look(control);
    const uint32 state = State(control);
    const BRect box = look.MarkFrame();
    (look.*mark)(box, state);
    const BBitmap* icon = mark_icon(control);
    const float height = look.LabelHeight(icon);
    const float top = std::floor((box.top + box.bottom + 1 - height) / 2);
    look.DrawLabel(
        control->Label(), icon,
        BRect(box.right + look.LabelSpacing(), top, control->Bounds().right, top + height - 1),
        B_ALIGN_LEFT, state);
}

void ControlPrivate::MarkedSize(const BControl* control, float* _width, float* _height)
{
    const Look look(const_cast<BControl*>(control));
    const BRect box = look.MarkFrame();
    const float label = look.LabelWidth(control->Label(), mark_icon(control));
    if (_width != nullptr)
        *_width = box.right + (label > 0 ? look.LabelSpacing() + label : 0);
    if (_height != nullptr)
        *_height = std::max(box.bottom + 2, look.MarkHeight());
}

bool shows_focus(const BView* view)
{
    return view->IsFocus() && view->Window() != nullptr && view->Window()->IsActive();
}

void adopt_ground(BView* view)
{
    rgb_color ground = ui_color(B_PANEL_BACKGROUND_COLOR);
    for (BView* parent = view->Parent(); parent != nullptr; parent = parent->Parent()) {
        ground = parent->ViewColor();
        if (ground != B_TRANSPARENT_COLOR)
            break;
    }
    if (ground == B_TRANSPARENT_COLOR)
        ground = ui_color(B_PANEL_BACKGROUND_COLOR);
    view->SetViewColor(ground);
    view->SetLowColor(ground);
}

void grow_to_height(BView* view, float height)
{
    if (view->Bounds().Height() < height)
        view->ResizeTo(view->Bounds().Width(), height);
}

}  // namespace BPrivate
