// The parts of menus: grounds, marks, lines and arrows. Texts of items have the view's high colour,
// which is set to MenuText() before.

#include <interface/controls/Look.h>

#include <View.h>

#include <algorithm>
#include <cmath>

namespace BPrivate {

// --- grounds

void Look::DrawMenu(BRect bounds, rgb_color ground) const
{
    Fill(bounds, ground);
    Look thin(*this);
    thin._SetLine(1);
    thin.DrawEdges(bounds, tint_color(ground, B_DARKEN_3_TINT));
}

void Look::DrawMenuBar(BRect bounds, rgb_color ground) const
{
    Fill(bounds, ground);
    fView->SetHighColor(tint_color(ground, B_LIGHTEN_2_TINT));
    fView->StrokeLine(bounds.LeftTop(), bounds.RightTop());
    fView->SetHighColor(tint_color(ground, B_DARKEN_2_TINT));
    fView->StrokeLine(bounds.LeftBottom(), bounds.RightBottom());
}

void Look::DrawMenuItem(BRect frame, rgb_color ground, uint32 state) const
{
    const bool selected = (state & kOn) != 0 && (state & kDisabled) == 0;
    const rgb_color face = selected ? ui_color(B_MENU_SELECTED_BACKGROUND_COLOR) : ground;
    Fill(frame, face);
    fView->SetLowColor(face);
}

rgb_color Look::MenuText(rgb_color ground, uint32 state) const
{
    if ((state & kDisabled) != 0)
        return tint_color(ground, B_DISABLED_LABEL_TINT);
    return ui_color((state & kOn) != 0 ? B_MENU_SELECTED_ITEM_TEXT_COLOR : B_MENU_ITEM_TEXT_COLOR);
}

// --- lines

void Look::DrawMenuLine(BRect frame, rgb_color ground, bool standing) const
{
    Fill(frame, ground);
    const float across = standing ? frame.left + frame.right : frame.top + frame.bottom;
    const float middle = std::floor((across + 1) / 2);
    const rgb_color dark = tint_color(ground, B_DARKEN_2_TINT);
    const rgb_color light = tint_color(ground, B_LIGHTEN_2_TINT);
    const float before = middle - fLine;
    const float after = middle + fLine - 1;
    if (standing) {
        Fill(BRect(before, frame.top + 1, middle - 1, frame.bottom - 1), dark);
        Fill(BRect(middle, frame.top + 1, after, frame.bottom - 1), light);
    } else {
        Fill(BRect(frame.left + 1, before, frame.right - 1, middle - 1), dark);
        Fill(BRect(frame.left + 1, middle, frame.right - 1, after), light);
    }
}

// --- signs

void Look::DrawMenuMark(BRect room, bool dot) const
{
    if (!dot) {
        DrawTick(room, 0);
        return;
    }
    const float size = Scaled(5);
    const float left = std::floor((room.left + room.right - size + 1) / 2);
    const float top = std::floor((room.top + room.bottom - size + 1) / 2);
    fView->FillEllipse(BRect(left, top, left + size - 1, top + size - 1));
}

void Look::DrawSubmenuArrow(BRect room) const { DrawArrow(room, Way::Right, 0); }

void Look::DrawMenuTitle(BRect frame, bool marker, uint32 state) const
{
    const bool selected = (state & kOn) != 0;
    const rgb_color face = selected ? ui_color(B_MENU_SELECTED_BACKGROUND_COLOR)
                                    : ui_color(B_CONTROL_BACKGROUND_COLOR);
    DrawRaised(frame, face, state & kDisabled);
    fView->SetLowColor(face);
    fView->SetHighColor(MenuText(face, state));
    if (!marker)
        return;
    const float width = Scaled(13);
    const Look sign(fView);
    sign.DrawArrow(BRect(frame.right - width, frame.top, frame.right - fLine, frame.bottom),
                   Way::Down, 0);
}

void Look::DrawMenuScroller(BRect frame, rgb_color ground, Way way, bool ended) const
{
    Fill(frame, tint_color(ground, B_DARKEN_1_TINT));
    Look thin(*this);
    thin._SetLine(1);
    thin.DrawEdges(frame, tint_color(ground, B_DARKEN_3_TINT));
    fView->SetHighColor(MenuText(ground, ended ? static_cast<uint32>(kDisabled) : 0));
    const Look sign(fView);
    sign.DrawArrow(frame, way, 0);
}

}  // namespace BPrivate
