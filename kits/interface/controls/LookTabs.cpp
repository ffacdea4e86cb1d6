// Tabs and the box that they stand on. Places are reckoned along and across the side that the tabs
// are on: `along` from the start of the side, `across` from the outer edge of the tab to the box.

#include <interface/controls/Look.h>

#include <String.h>
#include <View.h>

#include <algorithm>
#include <cmath>

namespace BPrivate {

namespace {

// A tab as if it stood at the top, wherever it is.
class TabPlace {
public:
    TabPlace(BRect frame, Look::Side side) : fFrame(frame), fSide(side) {}

    float Length() const { return fUpright() ? fFrame.Height() : fFrame.Width(); }
    float Height() const { return fUpright() ? fFrame.Width() : fFrame.Height(); }
    BRect Part(float start, float outer, float end, float inner) const
    {
        switch (fSide) {
            case Look::Side::Left:
                return BRect(fFrame.left + outer, fFrame.top + start, fFrame.left + inner,
                             fFrame.top + end);
            case Look::Side::Right:
                return BRect(fFrame.right - inner, fFrame.top + start, fFrame.right - outer,
                             fFrame.top + end);
            case Look::Side::Bottom:
                return BRect(fFrame.left + start, fFrame.bottom - inner, fFrame.left + end,
                             fFrame.bottom - outer);
            default:
                return BRect(fFrame.left + start, fFrame.top + outer, fFrame.left + end,
                             fFrame.top + inner);
        }
    }
    // Light comes from the left top.
    bool OuterEdgeIsLit() const { return fSide == Look::Side::Top || fSide == Look::Side::Left; }

private:
    bool fUpright() const { return fSide == Look::Side::Left || fSide == Look::Side::Right; }

    const BRect fFrame;
    const Look::Side fSide;
};

}  // namespace

// --- measures

float Look::TabHeight() const
{
    return std::ceil(fHeight.ascent + fHeight.descent + fHeight.leading + 1.3f * LabelSpacing());
}

float Look::UsualTabWidth() const { return 5 * std::ceil(3.3f * LabelSpacing()); }

float Look::TabWidth(const char* label) const
{
    return TextWidth(label) + std::ceil(3.3f * LabelSpacing());
}

// --- tabs

// The one in front is as high as it may be, on the ground of the box; the others are lower, darker,
// and stand behind its edge.
void Look::DrawTab(BRect frame, Side side, uint32 state, bool full) const
{
    const TabPlace place(frame, side);
    const bool front = (state & kOn) != 0;
    const float outer = front ? 0 : 2 * fLine;
    const float length = place.Length();
    const float inner = place.Height() - fLine;
    const float t = fLine - 1;
    const rgb_color face = front ? fBase : Shade(1.1f);
    const rgb_color edge = Shade(B_DARKEN_3_TINT);
    const rgb_color lit = tint_color(face, B_LIGHTEN_2_TINT);
    const rgb_color shade = tint_color(face, B_DARKEN_1_TINT);
    const float round = 2 * fLine;  // of the corners
    const float end = full ? length : length + fLine;

    Fill(place.Part(fLine, outer + fLine, length - fLine, inner), face);
    Fill(place.Part(round, outer, end - round, outer + t), edge);
    Fill(place.Part(fLine, outer + fLine, fLine + t, outer + fLine + t), edge);
    Fill(place.Part(0, outer + round, t, inner), edge);
    if (full) {
        Fill(place.Part(length - fLine - t, outer + fLine, length - fLine, outer + fLine + t),
             edge);
        Fill(place.Part(length - t, outer + round, length, inner), edge);
        Fill(place.Part(length - fLine - t, outer + round, length - fLine, inner), shade);
    }
    Fill(place.Part(fLine, outer + round, fLine + t, inner), lit);
    Fill(place.Part(round, outer + fLine, end - round, outer + fLine + t),
         place.OuterEdgeIsLit() ? lit : shade);
}

static float cut_to(BString* text, const BFont& font, float room)
{
    float width = font.StringWidth(text->String());
    if (width > room) {
        font.TruncateString(text, B_TRUNCATE_END, room);
        width = font.StringWidth(text->String());
    }
    return std::ceil(width);
}

// Where the text of a label is, in the middle of its tab; cuts what does not fit.
BRect Look::_TabLabelFrame(BString* text, BRect frame, Side side) const
{
    const TabPlace place(frame, side);
    const float width = cut_to(text, fFont, place.Length() - LabelSpacing());
    const float start = std::floor((place.Length() - width) / 2);
    const float outer = std::floor((place.Height() + 2 * fLine - fAscent - fDescent) / 2);
    return place.Part(start, outer, start + width, outer + fAscent + fDescent - 1);
}

void Look::DrawTabLabel(const char* label, BRect frame, Side side, uint32 state) const
{
    if (label == nullptr || label[0] == '\0')
        return;
    BString text(label);
    const BRect place = _TabLabelFrame(&text, frame, side);
    if (side == Side::Top || side == Side::Bottom) {
        DrawText(text.String(), BPoint(place.left, place.top + fAscent), state);
        return;
    }
    BFont turned(fFont);
    turned.SetRotation(side == Side::Left ? 90 : 270);
    fView->SetFont(&turned);
    DrawText(text.String(),
             side == Side::Left ? BPoint(place.left + fAscent, place.bottom)
                                : BPoint(place.right - fAscent, place.top),
             state);
    fView->SetFont(&fFont);
}

// A line along the base of the label.
void Look::DrawTabFocus(const char* label, BRect frame, Side side) const
{
    BString text(label != nullptr ? label : "");
    BRect line = _TabLabelFrame(&text, frame, side);
    const float away = fAscent + fLine;
    const float t = fLine - 1;
    if (side == Side::Left)
        line.Set(line.left + away, line.top, line.left + away + t, line.bottom);
    else if (side == Side::Right)
        line.Set(line.right - away - t, line.top, line.right - away, line.bottom);
    else
        line.Set(line.left, line.top + away, line.right, line.top + away + t);
    Fill(line, keyboard_navigation_color());
}

// Open towards the tab in front, which is `front`.
BRect Look::DrawTabBox(BRect box, BRect front, Side side, border_style border) const
{
    const float inset = GroupInset(border);
    if (border == B_NO_BORDER)
        return box;
    Look thin(*this);
    thin._SetLine(1);
    BRect inner = thin.DrawEdges(box, Shade(B_DARKEN_3_TINT));
    if (border == B_FANCY_BORDER)
        thin.DrawEdges(inner, Shade(B_LIGHTEN_2_TINT), Shade(B_DARKEN_1_TINT));
    inner = box.InsetByCopy(inset, inset);
    if (!front.IsValid())
        return inner;
    // From the foot of the tab through the edges of the box, between the tab's own edges.
    const TabPlace place(front, side);
    const float foot = place.Height() - fLine + 1;
    const float within = place.Height() + (border == B_FANCY_BORDER ? 1 : 0);
    const float t = fLine - 1;
    Fill(place.Part(fLine, foot, place.Length() - fLine, within), fBase);
    Fill(place.Part(fLine, foot, fLine + t, within), Shade(B_LIGHTEN_2_TINT));
    Fill(place.Part(place.Length() - fLine - t, foot, place.Length() - fLine, within),
         Shade(B_DARKEN_1_TINT));
    return inner;
}

}  // namespace BPrivate
