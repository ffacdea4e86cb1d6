#ifndef INTERFACE_CONTROLS_LOOK_H
#define INTERFACE_CONTROLS_LOOK_H

// How controls and menus look: their frames, bevels, knobs, marks and labels, and the measures
// these have. Colours come from ui_color() and the view, measures from the font.

#include <Font.h>
#include <GraphicsDefs.h>
#include <InterfaceDefs.h>
#include <Point.h>
#include <Rect.h>

class BBitmap;
class BString;
class BView;

namespace [[gnu::visibility("hidden")]] BPrivate {

/* Made for one drawing or one question, on the stack. Rectangles are whole units, inclusive as in
   BView; what draws a frame returns the place inside it, where its edges end: on a screen between
   whole scales these are as many of its pixels on each side, and not always whole units. Its end
   gives the view its high colour back; the drawing mode is B_OP_COPY after a call. Threads: as
   BView's drawing calls. */
class Look {
public:
    // What a control is like at present; together in a word.
    enum State : uint32 {
        kPlain = 0,
        kDisabled = 1,
        kPressed = 2,  // held down by the pointer
        kOn = 4,
        kMixed = 8,  // neither on nor off
        kFocused = 16,
        kDefault = 32,  // the button that Enter presses
        kFlat = 64      // without a frame, unless pressed or on
    };
    enum class Way { Left, Up, Right, Down };
    enum class Thumb { Block, Triangle };
    enum class Side { Left, Top, Right, Bottom };

    // Draws in `view`, with its font, its high colour for text, on its view colour.
    explicit Look(BView* view);
    // Knows measures only.
    explicit Look(const BFont& font);
    // For drawing with other edges or colours meanwhile: the original looks after the view.
    Look(const Look& other) = default;
    ~Look();

    // --- measures, in whole pixels

    float Size() const { return fSize; }
    // What is `pixels` wide at 12 points; never less than one pixel.
    float Scaled(float pixels) const;
    // The thickness of an edge.
    float Line() const { return fLine; }
    // The nearest length that is a whole number of the screen's pixels.
    float WholePixels(float units) const;
    const font_height& Height() const { return fHeight; }
    float Ascent() const { return fAscent; }
    float Descent() const { return fDescent; }
    // Ascent and descent together, rounded as one number.
    float TextHeight() const { return fTextHeight; }
    // From baseline to baseline.
    float LineHeight() const { return fLineHeight; }
    float LabelSpacing() const;
    float ItemSpacing() const;
    float TextWidth(const char* text) const;
    // Of a label with a picture beside it; either may be null.
    float LabelWidth(const char* label, const BBitmap* icon) const;
    float LabelHeight(const BBitmap* icon) const;
    static float BorderWidth(border_style border);
    // Where the label of a group starts.
    float GroupLabelStart() const { return Scaled(10); }
    float ScrollBarThickness() const;
    // Edges no thicker than suits a scroll bar so thick, which may be less than the font wants.
    void FitScrollBar(float thickness);
    // The room that a push button's frame takes on each side; the default button has more.
    float ButtonInset(uint32 state = 0) const;
    // The box of a check box or the knob of a radio button in a control with left top corner 0, 0.
    BRect MarkFrame() const;
    // From a slider's bar to the edges of the view: across it, and at its ends for half a thumb.
    float SliderMargin() const { return Scaled(6); }
    float SliderInset(Thumb thumb) const { return Scaled(thumb == Thumb::Block ? 8 : 7); }
    // The thumb whose middle is at `center` along the bar.
    BRect SliderThumb(BRect bar, float center, orientation direction, Thumb thumb) const;
    // Below that, such a control would cut its box or its label.
    float MarkHeight() const;
    // Across the side that tabs are on, and along it: of any, and of one as wide as its label.
    float TabHeight() const;
    float UsualTabWidth() const;
    float TabWidth(const char* label) const;

    // --- colours

    rgb_color Base() const { return fBase; }
    // The base colour lighter (below 1) or darker (above 1).
    rgb_color Shade(float tint) const;
    // Of an edge that has to be seen.
    rgb_color Outline(uint32 state = 0) const;
    rgb_color Text(uint32 state = 0) const;
    rgb_color Mark(uint32 state = 0) const;
    // The ground that text and marks are put on.
    rgb_color Well(uint32 state = 0) const;
    // `amount` from 0, all of `from`, to 1, all of `to`.
    static rgb_color Mix(rgb_color from, rgb_color to, float amount);

    // --- edges

    void Fill(BRect rect, rgb_color color) const;
    BRect DrawEdges(BRect rect, rgb_color leftTop, rgb_color rightBottom) const;
    BRect DrawEdges(BRect rect, rgb_color all) const { return DrawEdges(rect, all, all); }
    // Without its corners.
    BRect DrawRoundEdges(BRect rect, rgb_color leftTop, rgb_color rightBottom) const;
    BRect DrawRoundEdges(BRect rect, rgb_color all) const { return DrawRoundEdges(rect, all, all); }
    // Two edges around something that lies lower, as a field for text does.
    BRect DrawSunken(BRect rect, uint32 state = 0) const;
    // The frame around a view: BorderWidth() on each side.
    BRect DrawBorder(BRect rect, border_style border, uint32 state = 0) const;
    // Around a group of controls: a groove, a line or nothing, GroupInset() on each side.
    BRect DrawGroup(BRect rect, border_style border) const;
    static float GroupInset(border_style border);
    // Between two parts: a line of the rectangle's length at its left or top.
    void DrawSeparator(BRect rect, orientation direction) const;
    // Around something that has the keyboard; outside of `rect` is not touched.
    void DrawFocusRing(BRect rect) const;

    // --- parts of controls

    void DrawButton(BRect rect, uint32 state) const;
    void DrawCheckBox(BRect box, uint32 state) const;
    void DrawRadio(BRect knob, uint32 state) const;
    // A triangle in the middle of `rect`.
    void DrawArrow(BRect rect, Way way, uint32 state) const;
    // A tick in the middle of `rect`, as marked items of menus have it.
    void DrawTick(BRect rect, uint32 state) const;
    // A raised face with edges: the thumb of a scroll bar, its buttons, the thumb of a slider.
    BRect DrawRaised(BRect rect, rgb_color face, uint32 state) const;

    // Of scroll bars, by the settings of get_scroll_bar_info().
    void DrawTrough(BRect rect, orientation direction, uint32 state) const;
    void DrawArrowButton(BRect rect, Way way, uint32 state) const;
    void DrawScrollThumb(BRect rect, orientation direction, uint32 state) const;

    // `filled` is the part of the bar in the fill colour, or not valid.
    void DrawSliderBar(BRect bar, BRect filled, rgb_color color, rgb_color fill,
                       uint32 state) const;
    void DrawSliderThumb(BRect thumb, orientation direction, Thumb kind, uint32 state) const;
    // Evenly from one end of the rectangle to the other, at most one for each pixel.
    void DrawHashMarks(BRect rect, orientation direction, int32 count) const;
    // `filled` pixels of the inside are done.
    void DrawStatusBar(BRect bar, float filled, rgb_color color) const;

    // --- menus

    // The ground of an open menu, with its frame; of a bar, with its lower edge.
    void DrawMenu(BRect bounds, rgb_color ground) const;
    void DrawMenuBar(BRect bounds, rgb_color ground) const;
    // The ground of an item; `ground` is the menu's.
    void DrawMenuItem(BRect frame, rgb_color ground, uint32 state) const;
    // What stands on the ground of an item: kOn is the selected one.
    rgb_color MenuText(rgb_color ground, uint32 state) const;
    // The line between items, lying or standing.
    void DrawMenuLine(BRect frame, rgb_color ground, bool standing) const;
    // In the room left of an item's label: a tick, or the dot of one of several choices.
    void DrawMenuMark(BRect room, bool dot) const;
    void DrawSubmenuArrow(BRect room) const;
    // The title of a field, `frame` being all of it: a raised face, and the sign that a menu opens.
    void DrawMenuTitle(BRect frame, bool marker, uint32 state) const;
    // The strip at the end of a menu that is too tall for the screen.
    void DrawMenuScroller(BRect frame, rgb_color ground, Way way, bool ended) const;

    // --- tabs, at a side of the box that they belong to

    // kOn is the one in front. Without `full` the end is left to the next tab.
    void DrawTab(BRect frame, Side side, uint32 state, bool full) const;
    void DrawTabLabel(const char* label, BRect frame, Side side, uint32 state) const;
    void DrawTabFocus(const char* label, BRect frame, Side side) const;
    // GroupInset() on each side. `front` is the frame of the tab in front, or not valid.
    BRect DrawTabBox(BRect box, BRect front, Side side, border_style border) const;

    // From one colour at the left to another at the right; and the mark of a place on it.
    void DrawRamp(BRect rect, rgb_color from, rgb_color to, uint32 state) const;
    void DrawRampMark(BRect rect, float place) const;

    // --- labels

    // One line, in the height's middle, with an ellipsis if it does not fit.
    void DrawLabel(const char* label, BRect rect, alignment align, uint32 state) const;
    void DrawLabel(const char* label, const BBitmap* icon, BRect rect, alignment align,
                   uint32 state) const;
    // One line from its baseline's start.
    void DrawText(const char* text, BPoint baseline, uint32 state) const;

private:
    void _Measure();
    void _SetLine(float line);
    void _DrawTriangle(BRect rect, bool up, rgb_color face, uint32 state) const;
    void _DrawKnob(BRect thumb, orientation direction, int32 knob) const;
    BRect _TabLabelFrame(BString* text, BRect frame, Side side) const;

    // A view to be left as it was found; a copy has none.
    struct Keeper {
        BView* view = nullptr;
        Keeper() = default;
        Keeper(const Keeper&) {}
    };

    BView* fView = nullptr;
    Keeper fKeeper;
    BFont fFont;
    font_height fHeight = {};
    rgb_color fBase = {};
    rgb_color fHigh = {};
    float fSize = 0;
    float fScale = 1;  // of the screen
    float fLine = 0;
    float fEdge = 0;  // a line as the screen has it
    float fAscent = 0;
    float fDescent = 0;
    float fTextHeight = 0;
    float fLineHeight = 0;
};

}  // namespace BPrivate

#endif  // INTERFACE_CONTROLS_LOOK_H
