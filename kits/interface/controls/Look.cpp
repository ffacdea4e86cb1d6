// Measures, colours, edges and labels: what all parts of controls are made of.

#include <interface/controls/Look.h>

#include <Bitmap.h>
#include <ScrollBar.h>
#include <String.h>
#include <View.h>

#include <interface/view/ViewPrivate.h>

#include <algorithm>
#include <cmath>

namespace BPrivate {

static const float kDesignSize = 12;  // points; measures are given for this size

Look::Look(BView* view) : fView(view)
{
    view->GetFont(&fFont);
    fScale = ViewPrivate::Scale(view);
    fBase = view->ViewColor();
    if (fBase == B_TRANSPARENT_COLOR)
        fBase = view->LowColor();
    fHigh = view->HighColor();
    fKeeper.view = view;
    _Measure();
}

Look::~Look()
{
    if (fKeeper.view != nullptr && fKeeper.view->HighColor() != fHigh)
        fKeeper.view->SetHighColor(fHigh);
}

Look::Look(const BFont& font) : fFont(font) { _Measure(); }

void Look::_Measure()
{
    fSize = std::max(fFont.Size(), 1.0f);
    _SetLine(std::max(1.0f, std::floor(fSize / kDesignSize + 0.25f)));
    fFont.GetHeight(&fHeight);
    fAscent = std::ceil(fHeight.ascent);
    fDescent = std::ceil(fHeight.descent);
    fTextHeight = std::ceil(fHeight.ascent + fHeight.descent);
    fLineHeight = std::ceil(fHeight.ascent + fHeight.descent + fHeight.leading);
}

void Look::_SetLine(float line)
{
    fLine = line;
    fEdge = std::max(1.0f / fScale, WholePixels(line));
}

float Look::WholePixels(float units) const { return std::round(units * fScale) / fScale; }

// --- measures

float Look::Scaled(float pixels) const
{
    return std::max(1.0f, std::round(pixels * fSize / kDesignSize));
}

float Look::LabelSpacing() const { return std::ceil(fSize / 2); }
float Look::ItemSpacing() const { return std::ceil(fSize * 0.85f); }
float Look::TextWidth(const char* text) const
{
    return text != nullptr ? std::ceil(fFont.StringWidth(text)) : 0;
}

float Look::LabelWidth(const char* label, const BBitmap* icon) const
{
    const float text = TextWidth(label);
    if (icon == nullptr)
        return text;
    return icon->Bounds().Width() + 1 + (text > 0 ? LabelSpacing() + text : 0);
}

float Look::LabelHeight(const BBitmap* icon) const
{
    return std::max(fTextHeight, icon != nullptr ? icon->Bounds().Height() + 1 : 0);
}

float Look::BorderWidth(border_style border)
{
    return border == B_FANCY_BORDER ? 2 : border == B_PLAIN_BORDER ? 1 : 0;
}

float Look::ScrollBarThickness() const
{
    return std::max(14.0f, std::ceil(1.272f * ItemSpacing()));
}

void Look::FitScrollBar(float thickness)
{
    const float most = std::max(1.0f, std::floor(thickness / B_V_SCROLL_BAR_WIDTH));
    if (fLine > most)
        _SetLine(most);
}

float Look::ButtonInset(uint32 state) const
{
    const float inset = std::ceil(2 * fSize / kDesignSize);
    return (state & kDefault) != 0 ? inset + Scaled(3) : inset;
}

BRect Look::MarkFrame() const
{
    return BRect(0, 2, std::ceil(3 + fHeight.ascent), std::ceil(5 + fHeight.ascent));
}

float Look::MarkHeight() const { return std::ceil(6 + fHeight.ascent + fHeight.descent); }

// --- colours

rgb_color Look::Mix(rgb_color from, rgb_color to, float amount)
{
    const auto part = [=](uint8 a, uint8 b) {
        return static_cast<uint8>(a + (float(b) - float(a)) * amount);
    };
    return make_color(part(from.red, to.red), part(from.green, to.green), part(from.blue, to.blue),
                      from.alpha);
}

rgb_color Look::Shade(float tint) const { return tint_color(fBase, tint); }

rgb_color Look::Outline(uint32 state) const
{
    if ((state & kFocused) != 0)
        return keyboard_navigation_color();
    const rgb_color border = ui_color(B_CONTROL_BORDER_COLOR);
    return (state & kDisabled) != 0 ? border : tint_color(border, B_DARKEN_2_TINT);
}

// A disabled label on a grey ground is the ground darkened by B_DISABLED_LABEL_TINT.
rgb_color Look::Text(uint32 state) const
{
    return (state & kDisabled) != 0 ? Mix(fBase, fHigh, B_DISABLED_LABEL_TINT - 1) : fHigh;
}

rgb_color Look::Mark(uint32 state) const
{
    const rgb_color mark = ui_color(B_CONTROL_MARK_COLOR);
    return (state & kDisabled) != 0 ? Mix(fBase, mark, B_DISABLED_LABEL_TINT - 1) : mark;
}

rgb_color Look::Well(uint32 state) const
{
    const rgb_color ground = ui_color(B_DOCUMENT_BACKGROUND_COLOR);
    return (state & kDisabled) != 0  ? Mix(fBase, ground, 0.4f)
           : (state & kPressed) != 0 ? Mix(fBase, ground, 0.25f)
                                     : ground;
}

// --- edges

void Look::Fill(BRect rect, rgb_color color) const
{
    // Less than a unit is thinner than its own place.
    if (!(rect.right + 1 > rect.left && rect.bottom + 1 > rect.top))
        return;
    fView->SetHighColor(color);
    fView->FillRect(rect);
}

BRect Look::DrawEdges(BRect rect, rgb_color leftTop, rgb_color rightBottom) const
{
    const float t = fEdge - 1;
    Fill(BRect(rect.left, rect.top, rect.left + t, rect.bottom - fEdge), leftTop);
    Fill(BRect(rect.left + fEdge, rect.top, rect.right, rect.top + t), leftTop);
    Fill(BRect(rect.right - t, rect.top + fEdge, rect.right, rect.bottom), rightBottom);
    Fill(BRect(rect.left, rect.bottom - t, rect.right - fEdge, rect.bottom), rightBottom);
    return rect.InsetByCopy(fEdge, fEdge);
}

BRect Look::DrawRoundEdges(BRect rect, rgb_color leftTop, rgb_color rightBottom) const
{
    const float t = fEdge - 1;
    const float left = rect.left + fEdge;
    const float top = rect.top + fEdge;
    const float right = rect.right - fEdge;
    const float bottom = rect.bottom - fEdge;
    Fill(BRect(rect.left, top, rect.left + t, bottom), leftTop);
    Fill(BRect(left, rect.top, right, rect.top + t), leftTop);
    Fill(BRect(rect.right - t, top, rect.right, bottom), rightBottom);
    Fill(BRect(left, rect.bottom - t, right, rect.bottom), rightBottom);
    return BRect(left, top, right, bottom);
}

BRect Look::DrawSunken(BRect rect, uint32 state) const
{
    const bool disabled = (state & kDisabled) != 0;
    const bool focused = (state & kFocused) != 0;
    rect = DrawEdges(rect, Shade(disabled ? B_NO_TINT : B_DARKEN_1_TINT),
                     Shade(disabled ? B_LIGHTEN_1_TINT : B_LIGHTEN_2_TINT));
    if (focused)
        return DrawEdges(rect, keyboard_navigation_color());
    return DrawEdges(rect, Shade(disabled ? B_DARKEN_2_TINT : B_DARKEN_4_TINT),
                     Shade(disabled ? B_DARKEN_1_TINT : B_DARKEN_2_TINT));
}

BRect Look::DrawBorder(BRect rect, border_style border, uint32 state) const
{
    const float width = BorderWidth(border);
    const bool disabled = (state & kDisabled) != 0;
    Look thin(*this);
    thin._SetLine(1);
    if (border == B_FANCY_BORDER) {
        thin.DrawSunken(rect, state);
    } else if (border == B_PLAIN_BORDER) {
        thin.DrawEdges(rect, (state & kFocused) != 0
                                 ? keyboard_navigation_color()
                                 : Shade(disabled ? B_DARKEN_1_TINT : B_DARKEN_2_TINT));
    }
    return rect.InsetByCopy(width, width);
}

float Look::GroupInset(border_style border)
{
    return border == B_FANCY_BORDER ? 3 : border == B_PLAIN_BORDER ? 1 : 0;
}

BRect Look::DrawGroup(BRect rect, border_style border) const
{
    const float inset = GroupInset(border);
    Look thin(*this);
    thin._SetLine(1);
    if (border == B_FANCY_BORDER) {
        const BRect inner =
            thin.DrawRoundEdges(rect, Shade(B_DARKEN_1_TINT), Shade(B_LIGHTEN_2_TINT));
        thin.DrawEdges(inner, Shade(B_LIGHTEN_2_TINT), Shade(B_DARKEN_1_TINT));
    } else if (border == B_PLAIN_BORDER) {
        thin.DrawEdges(rect, Shade(B_DARKEN_2_TINT));
    }
    return rect.InsetByCopy(inset, inset);
}

void Look::DrawSeparator(BRect rect, orientation direction) const
{
    BRect light = rect;
    if (direction == B_VERTICAL) {
        rect.right = rect.left + fLine - 1;
        light.left = rect.right + 1;
        light.right = light.left + fLine - 1;
    } else {
        rect.bottom = rect.top + fLine - 1;
        light.top = rect.bottom + 1;
        light.bottom = light.top + fLine - 1;
    }
    Fill(rect, Shade(B_DARKEN_2_TINT));
    Fill(light, Shade(B_LIGHTEN_2_TINT));
}

void Look::DrawFocusRing(BRect rect) const { DrawEdges(rect, keyboard_navigation_color()); }

// --- labels

void Look::DrawText(const char* text, BPoint baseline, uint32 state) const
{
    fView->SetHighColor(Text(state));
    fView->SetDrawingMode(B_OP_OVER);
    fView->DrawString(text, baseline);
    fView->SetDrawingMode(B_OP_COPY);
}

void Look::DrawLabel(const char* label, BRect rect, alignment align, uint32 state) const
{
    if (label == nullptr || label[0] == '\0')
        return;
    BString text(label);
    const float room = rect.Width() + 1;
    float width = fFont.StringWidth(label);
    if (width > room) {
        fFont.TruncateString(&text, B_TRUNCATE_END, room);
        width = fFont.StringWidth(text.String());
    }
    float left = rect.left;
    if (align == B_ALIGN_CENTER)
        left += std::floor((room - width) / 2);
    else if (align == B_ALIGN_RIGHT)
        left += std::floor(room - width);
    const float top = rect.top + std::floor((rect.Height() + 1 - fAscent - fDescent) / 2);
    DrawText(text.String(), BPoint(left, top + fAscent), state);
}

void Look::DrawLabel(const char* label, const BBitmap* icon, BRect rect, alignment align,
                     uint32 state) const
{
    if (icon == nullptr) {
        DrawLabel(label, rect, align, state);
        return;
    }
    const BRect picture = icon->Bounds();
    const float room = rect.Width() + 1;
    const float width = std::min(room, LabelWidth(label, icon));
    float left = rect.left;
    if (align == B_ALIGN_CENTER)
        left += std::floor((room - width) / 2);
    else if (align == B_ALIGN_RIGHT)
        left += room - width;
    fView->SetDrawingMode(B_OP_ALPHA);
    fView->SetBlendingMode(B_PIXEL_ALPHA, B_ALPHA_OVERLAY);
    fView->DrawBitmap(icon,
                      BPoint(left, std::floor((rect.top + rect.bottom - picture.Height()) / 2)));
    fView->SetDrawingMode(B_OP_COPY);
    rect.left = left + picture.Width() + 1 + LabelSpacing();
    DrawLabel(label, rect, B_ALIGN_LEFT, state);
}

}  // namespace BPrivate
