// The parts that controls and menus are put together from: faces, boxes, knobs, arrows, ticks.

#include <interface/controls/Look.h>

#include <View.h>

#include <algorithm>
#include <cmath>

namespace BPrivate {

static rgb_color face_color(uint32 state)
{
    const rgb_color face = ui_color(B_CONTROL_BACKGROUND_COLOR);
    if ((state & Look::kPressed) != 0)
        return tint_color(face, B_DARKEN_1_TINT);
    return (state & Look::kOn) != 0 ? tint_color(face, 1.07f) : tint_color(face, B_LIGHTEN_1_TINT);
}

// --- push buttons

void Look::DrawButton(BRect rect, uint32 state) const
{
    if ((state & kDefault) != 0) {
        const uint32 ring = state & kDisabled;
        rect = DrawRoundEdges(rect, Outline(ring));
        const float band = WholePixels(Scaled(3)) - fEdge;
        Fill(rect, Shade(ring != 0 ? B_LIGHTEN_1_TINT : B_DARKEN_1_TINT));
        rect.InsetBy(band, band);
    }
    if ((state & kFlat) != 0 && (state & (kPressed | kOn | kFocused)) == 0)
        return;
    rgb_color face = face_color(state);
    if ((state & kDisabled) != 0)
        face = Mix(fBase, face, 0.5f);
    const bool sunken = (state & (kPressed | kOn)) != 0;
    rect = DrawRoundEdges(rect, Outline(state));
    Fill(rect, face);
    const rgb_color light = tint_color(face, B_LIGHTEN_MAX_TINT);
    const rgb_color dark = tint_color(face, B_DARKEN_1_TINT);
    if ((state & kFocused) != 0)
        DrawEdges(rect, Mix(face, keyboard_navigation_color(), 0.35f));
    else if (sunken)
        DrawEdges(rect, dark, tint_color(face, B_LIGHTEN_1_TINT));
    else
        DrawEdges(rect, light, dark);
}

BRect Look::DrawRaised(BRect rect, rgb_color face, uint32 state) const
{
    const bool disabled = (state & kDisabled) != 0;
    if ((state & kPressed) != 0)
        face = tint_color(face, 1.1f);
    rect = DrawEdges(rect, Outline(state));
    Fill(rect, face);
    if ((state & kPressed) != 0)
        return DrawEdges(rect, tint_color(face, B_DARKEN_1_TINT),
                         tint_color(face, B_LIGHTEN_1_TINT));
    return DrawEdges(rect, tint_color(face, disabled ? B_LIGHTEN_1_TINT : B_LIGHTEN_MAX_TINT),
                     tint_color(face, disabled ? 1.07f : B_DARKEN_1_TINT));
}

// --- check boxes

void Look::DrawCheckBox(BRect box, uint32 state) const
{
    const BRect well = DrawSunken(box, state);
    Fill(well, Well(state));
    const float inset = std::max(1.0f, std::round((well.Width() + 1) / 6));
    const BRect mark = well.InsetByCopy(inset, inset);
    fView->SetHighColor(Mark(state));
    if ((state & kMixed) != 0) {
        const float half = std::max(1.0f, std::floor(mark.Height() / 8));
        const float middle = std::floor((mark.top + mark.bottom) / 2);
        fView->FillRect(BRect(mark.left, middle - half + 1, mark.right, middle + half));
    } else if ((state & kOn) != 0) {
        // A cross, whose strokes are as thick as those of a bold font.
        const float side = std::min(mark.Width(), mark.Height());
        const float thick = std::max(1.0f, std::round((side + 1) * 2 / 9)) - 1;
        for (float step = 0; step <= side; step++) {
            const float from = std::max(0.0f, step - thick);
            fView->StrokeLine(BPoint(mark.left + from, mark.top + step),
                              BPoint(mark.left + std::min(side, step + thick), mark.top + step));
            fView->StrokeLine(
                BPoint(mark.left + side - from, mark.top + step),
                BPoint(mark.left + side - std::min(side, step + thick), mark.top + step));
        }
    }
}

// --- radio buttons

void Look::DrawRadio(BRect knob, uint32 state) const
{
    const bool disabled = (state & kDisabled) != 0;
    fView->SetHighColor(Shade(disabled ? B_LIGHTEN_1_TINT : B_LIGHTEN_2_TINT));
    fView->FillEllipse(knob);
    fView->SetHighColor(Shade(disabled ? B_NO_TINT : B_DARKEN_1_TINT));
    fView->FillArc(knob, 45, 180);
    knob.InsetBy(fLine, fLine);
    fView->SetHighColor(Outline(state));
    fView->FillEllipse(knob);
    knob.InsetBy(fLine, fLine);
    fView->SetHighColor(Well(state));
    fView->FillEllipse(knob);
    if ((state & kOn) == 0)
        return;
    const float inset = std::round((knob.Width() + 1) / 4);
    fView->SetHighColor(Mark(state));
    fView->FillEllipse(knob.InsetByCopy(inset, inset));
}

// --- arrows and ticks

void Look::DrawArrow(BRect rect, Way way, uint32 state) const
{
    const bool upright = way == Way::Up || way == Way::Down;
    const float room = std::min(rect.Width(), rect.Height()) + 1;
    const float rows = std::clamp(std::floor(room / 3), 2.0f, Scaled(5));
    const float middle =
        std::floor(upright ? (rect.left + rect.right) / 2 : (rect.top + rect.bottom) / 2);
    const float start =
        std::floor(((upright ? rect.top + rect.bottom : rect.left + rect.right) - rows + 1) / 2);
    fView->SetHighColor(Text(state));
    for (float row = 0; row < rows; row++) {
        const float half = way == Way::Up || way == Way::Left ? row : rows - 1 - row;
        const float at = start + row;
        if (upright)
            fView->StrokeLine(BPoint(middle - half, at), BPoint(middle + half, at));
        else
            fView->StrokeLine(BPoint(at, middle - half), BPoint(at, middle + half));
    }
}

void Look::DrawTick(BRect rect, uint32 state) const
{
    const float step = Scaled(2);
    const float thick = Scaled(2) - 1;
    const float left = std::floor((rect.left + rect.right - 3 * step) / 2);
    const float low = std::floor((rect.top + rect.bottom + step - thick) / 2);
    fView->SetHighColor(Text(state));
    for (float x = 0; x <= 3 * step; x++) {
        const float y = x < step ? low - (step - x) : low - (x - step);
        fView->StrokeLine(BPoint(left + x, y), BPoint(left + x, y + thick));
    }
}

}  // namespace BPrivate
