// The parts of scroll bars, sliders and status bars.

#include <interface/controls/Look.h>

#include <View.h>

#include <algorithm>
#include <cmath>

namespace BPrivate {

// --- scroll bars

void Look::DrawTrough(BRect rect, orientation direction, uint32 state) const
{
    const bool disabled = (state & kDisabled) != 0;
    BRect inner = DrawEdges(rect, Outline(state));
    const rgb_color ground = Shade(disabled ? B_LIGHTEN_1_TINT : B_DARKEN_1_TINT);
    Fill(inner, ground);
    if (disabled)
        return;
    const rgb_color shadow = tint_color(ground, B_DARKEN_1_TINT);
    const float t = fLine - 1;
    if (direction == B_VERTICAL)
        Fill(BRect(inner.left, inner.top, inner.left + t, inner.bottom), shadow);
    else
        Fill(BRect(inner.left, inner.top, inner.right, inner.top + t), shadow);
}

void Look::DrawArrowButton(BRect rect, Way way, uint32 state) const
{
    if (!rect.IsValid())
        return;
    const rgb_color face = tint_color(ui_color(B_SCROLL_BAR_THUMB_COLOR), B_LIGHTEN_1_TINT);
    const BRect inner = DrawRaised(rect, face, state);
    Look black(*this);
    black.fHigh = ui_color(B_CONTROL_TEXT_COLOR);
    black.DrawArrow(inner, way, state);
}

// Lines or dots where a thumb is held, as the settings have it.
void Look::_DrawKnob(BRect thumb, orientation direction, int32 knob) const
{
    const float pitch = 3 * fLine;
    const float along = direction == B_VERTICAL ? thumb.Height() : thumb.Width();
    if (knob == 0 || along < 4 * pitch)
        return;
    const float inset = std::floor((direction == B_VERTICAL ? thumb.Width() : thumb.Height()) / 4);
    const BPoint middle(std::floor((thumb.left + thumb.right) / 2),
                        std::floor((thumb.top + thumb.bottom) / 2));
    const float half =
        knob == 1
            ? fLine / 2
            : std::floor((direction == B_VERTICAL ? thumb.Width() : thumb.Height()) / 2 - inset);
    for (float step = -1; step <= 1; step++) {
        BRect mark(middle.x - half, middle.y + step * pitch, middle.x + half,
                   middle.y + step * pitch + fLine - 1);
        if (direction == B_HORIZONTAL)
            mark.Set(middle.x + step * pitch, middle.y - half, middle.x + step * pitch + fLine - 1,
                     middle.y + half);
        Fill(mark.OffsetByCopy(fLine, fLine), Shade(B_LIGHTEN_MAX_TINT));
        Fill(mark, Shade(B_DARKEN_3_TINT));
    }
}

void Look::DrawScrollThumb(BRect rect, orientation direction, uint32 state) const
{
    scroll_bar_info info;
    get_scroll_bar_info(&info);
    const BRect inner = DrawRaised(rect, ui_color(B_SCROLL_BAR_THUMB_COLOR), state);
    _DrawKnob(inner, direction, info.knob);
}

// --- sliders

BRect Look::SliderThumb(BRect bar, float center, orientation direction, Thumb thumb) const
{
    const bool across = direction == B_HORIZONTAL;
    const float half = Scaled(thumb == Thumb::Block ? 8 : 6);
    const float reach = Scaled(4);
    BRect frame;
    if (thumb == Thumb::Block) {
        frame = bar.InsetByCopy(across ? 0 : -reach, across ? -reach : 0);
    } else {
        frame = bar;  // its tip is on the bar's farther edge
        (across ? frame.top : frame.left) = (across ? bar.bottom : bar.right) - Scaled(2);
        (across ? frame.bottom : frame.right) = (across ? frame.top : frame.left) + Scaled(8);
    }
    if (across) {
        frame.left = center - half;
        frame.right = frame.left + 2 * half + (thumb == Thumb::Block ? 1 : 0);
    } else {
        frame.top = center - half;
        frame.bottom = frame.top + 2 * half + (thumb == Thumb::Block ? 1 : 0);
    }
    return frame;
}

void Look::DrawSliderBar(BRect bar, BRect filled, rgb_color color, rgb_color fill,
                         uint32 state) const
{
    const bool disabled = (state & kDisabled) != 0;
    if (disabled) {
        color = Mix(fBase, color, 0.5f);
        fill = Mix(fBase, fill, 0.5f);
    }
    const BRect inner = DrawEdges(
        DrawRoundEdges(bar, Shade(disabled ? 1.07f : B_DARKEN_1_TINT), Shade(B_LIGHTEN_2_TINT)),
        Shade(disabled ? B_DARKEN_1_TINT : B_DARKEN_4_TINT),
        Shade(disabled ? B_DARKEN_1_TINT : B_DARKEN_2_TINT));
    Fill(inner, color);
    if (filled.IsValid())
        Fill(inner & filled, fill);
}

void Look::DrawSliderThumb(BRect thumb, orientation direction, Thumb kind, uint32 state) const
{
    const rgb_color face = tint_color(ui_color(B_CONTROL_BACKGROUND_COLOR), B_LIGHTEN_1_TINT);
    if (kind == Thumb::Triangle) {
        _DrawTriangle(thumb, direction == B_HORIZONTAL, face, state);
        return;
    }
    BRect inner = DrawRoundEdges(thumb, Outline(state));
    Fill(inner, (state & kPressed) != 0 ? tint_color(face, 1.1f) : face);
    inner =
        DrawEdges(inner, tint_color(face, B_LIGHTEN_MAX_TINT), tint_color(face, B_DARKEN_1_TINT));
    // A groove in the middle, across the way of the thumb.
    const float middle = direction == B_HORIZONTAL
                             ? std::floor((inner.left + inner.right - fLine) / 2)
                             : std::floor((inner.top + inner.bottom - fLine) / 2);
    const float inset = fLine;
    if (direction == B_HORIZONTAL)
        DrawSeparator(BRect(middle, inner.top + inset, middle, inner.bottom - inset), B_VERTICAL);
    else
        DrawSeparator(BRect(inner.left + inset, middle, inner.right - inset, middle), B_HORIZONTAL);
}

// The thumb that points up to a bar above it, or left to one beside it, row by row from its tip.
void Look::_DrawTriangle(BRect rect, bool up, rgb_color face, uint32 state) const
{
    const float rows = (up ? rect.Height() : rect.Width()) + 1;
    const float half = std::floor((up ? rect.Width() : rect.Height()) / 2);
    const float middle =
        std::floor(up ? (rect.left + rect.right) / 2 : (rect.top + rect.bottom) / 2);
    const float first = up ? rect.top : rect.left;
    const rgb_color edge = Outline(state);
    if ((state & kPressed) != 0)
        face = tint_color(face, 1.1f);
    const auto span = [&](float row, float from, float to, rgb_color color) {
        Fill(up ? BRect(from, first + row, to, first + row)
                : BRect(first + row, from, first + row, to),
             color);
    };
    const float thick = fLine;
    for (float row = 0; row < rows; row++) {
        const float reach = std::min(half, row);
        span(row, middle - reach, middle + reach, edge);
        if (reach >= thick && row < rows - thick) {
            span(row, middle - reach + thick, middle + reach - thick, face);
            span(row, middle - reach + thick, std::min(middle, middle - reach + 2 * thick - 1),
                 tint_color(face, B_LIGHTEN_MAX_TINT));
        }
    }
}

void Look::DrawHashMarks(BRect rect, orientation direction, int32 count) const
{
    if (!rect.IsValid() || count < 1)
        return;
    const bool across = direction == B_HORIZONTAL;
    const float length = across ? rect.Width() : rect.Height();
    const float marks = std::min(float(count), length + 1);
    const float pitch = marks > 1 ? length / (marks - 1) : 0;
    const bool room = pitch >= 3 * fLine || marks == 1;
    const float thick = room ? fLine : 1;
    const float half = std::floor(thick / 2);  // the ends' marks reach beyond them
    for (float i = 0; i < marks; i++) {
        const float at = std::floor((across ? rect.left : rect.top) + i * pitch + 0.5f) - half;
        const BRect mark = across ? BRect(at, rect.top, at + thick - 1, rect.bottom)
                                  : BRect(rect.left, at, rect.right, at + thick - 1);
        if (room)
            Fill(mark.OffsetByCopy(across ? fLine : 0, across ? 0 : fLine),
                 Shade(B_LIGHTEN_2_TINT));
        Fill(mark, Shade(B_DARKEN_3_TINT));
    }
}

// --- status bars

void Look::DrawStatusBar(BRect bar, float filled, rgb_color color) const
{
    Look thin(*this);
    thin._SetLine(1);
    const BRect inner = thin.DrawSunken(bar);
    Fill(inner, Shade(B_LIGHTEN_2_TINT));
    if (filled < 1)
        return;
    BRect done = inner;
    done.right = std::min(inner.right, inner.left + filled - 1);
    Fill(done, color);
    if (done.Width() >= 2)
        thin.DrawEdges(done, tint_color(color, B_LIGHTEN_1_TINT),
                       tint_color(color, B_DARKEN_1_TINT));
}

// --- colour ramps

void Look::DrawRamp(BRect rect, rgb_color from, rgb_color to, uint32 state) const
{
    const int32 columns = int32(rect.Width()) + 1;
    if (!rect.IsValid())
        return;
    fView->BeginLineArray(columns);
    for (int32 x = 0; x < columns; x++) {
        rgb_color color = Mix(from, to, columns > 1 ? float(x) / float(columns - 1) : 0);
        if ((state & kDisabled) != 0)
            color = Mix(color, fBase, 0.6f);
        const float at = rect.left + float(x);
        fView->AddLine(BPoint(at, rect.top), BPoint(at, rect.bottom), color);
    }
    fView->EndLineArray();
}

// A light box in a dark one, so that it shows on every colour.
void Look::DrawRampMark(BRect rect, float place) const
{
    const float half = 2 * fLine;
    BRect mark(place - half, rect.top + fLine, place + half, rect.bottom - fLine);
    if (!mark.IsValid())
        return;
    mark.OffsetBy(
        std::clamp(mark.left, rect.left, std::max(rect.left, rect.right - 2 * half)) - mark.left,
        0);
    DrawRoundEdges(mark, make_color(0, 0, 0));
    DrawEdges(mark.InsetByCopy(fLine, fLine), make_color(255, 255, 255));
}

}  // namespace BPrivate
