// The drawing state of views: colours, pen, modes, font, coordinate system, and the stack of them.

#include <View.h>

#include <Window.h>

#include <interface/drawing/FontAccess.h>
#include <interface/view/ViewPrivate.h>

#include <cmath>
#include <cstring>

namespace BPrivate {

BAffineTransform composed(const BAffineTransform& outer, const BAffineTransform& inner)
{
    return BAffineTransform(
        outer.sx * inner.sx + outer.shx * inner.shy, outer.shy * inner.sx + outer.sy * inner.shy,
        outer.sx * inner.shx + outer.shx * inner.sy, outer.shy * inner.shx + outer.sy * inner.sy,
        outer.sx * inner.tx + outer.shx * inner.ty + outer.tx,
        outer.shy * inner.tx + outer.sy * inner.ty + outer.ty);
}

BAffineTransform DrawState::Full() const
{
    return composed(Base(),
                    composed(BAffineTransform(scale, 0, 0, scale, origin.x, origin.y), Own()));
}

BAffineTransform DrawState::Own() const
{
    return transforms != nullptr ? transforms->own : BAffineTransform();
}

BAffineTransform DrawState::Base() const
{
    return transforms != nullptr
               ? transforms->base
               : BAffineTransform(baseScale, 0, 0, baseScale, baseOrigin.x, baseOrigin.y);
}

void DrawState::SetTransform(const BAffineTransform& matrix)
{
    transforms = std::make_shared<Transforms>(Transforms{matrix, Base()});
}

void DrawState::SetFont(const BFont& newFont)
{
    font = newFont;
    fontSpec = FontAccess::Spec(font);
    fontSpec.size *= FullScale();
}

void ViewData::PushState()
{
    saved.reset(new SavedState{state, std::move(saved)});
    stateDepth++;
    if (state.clip || state.viewClip) {
        auto clipped = std::make_shared<BRegion>();
        clipped->Set(clipping_rect{-(1 << 29), -(1 << 29), 1 << 29, 1 << 29});
        state.ClipInView(clipped.get());
        state.baseClip = std::move(clipped);
        state.clip = state.viewClip = nullptr;
    }
    if (state.IsTransformed())
        state.transforms =
            std::make_shared<DrawState::Transforms>(DrawState::Transforms{{}, state.Full()});
    state.baseOrigin = state.FullOrigin();
    state.baseScale = state.FullScale();
    state.origin = BPoint();
    state.scale = 1;
    Outdate();
}

void ViewData::PopState()
{
    if (saved == nullptr)
        return;
    state = std::move(saved->state);
    saved = std::move(saved->below);
    stateDepth--;
    Outdate();
}

int32 ViewPrivate::StateDepth(const BView* view) { return view->fData->stateDepth; }

void ViewPrivate::RestoreState(BView* view, int32 depth)
{
    while (view->fData->stateDepth > depth)
        view->fData->PopState();
}

}  // namespace BPrivate

using BPrivate::DrawState;
using BPrivate::PictureOp;

void BView::PushState()
{
    fData->Recorded(PictureOp::PushState);
    fData->PushState();
}

void BView::PopState()
{
    fData->Recorded(PictureOp::PopState);
    fData->PopState();
}

// Colours.

void BView::SetHighColor(rgb_color color)
{
    fData->state.paint.high = color;
    fData->highWhich = B_NO_COLOR;
    fData->Recorded(PictureOp::HighColor, color);
}

void BView::SetHighColor(uchar red, uchar green, uchar blue, uchar alpha)
{
    SetHighColor(rgb_color{red, green, blue, alpha});
}

rgb_color BView::HighColor() const { return fData->state.paint.high; }

void BView::SetLowColor(rgb_color color)
{
    fData->state.paint.low = color;
    fData->lowWhich = B_NO_COLOR;
    fData->Recorded(PictureOp::LowColor, color);
}

void BView::SetLowColor(uchar red, uchar green, uchar blue, uchar alpha)
{
    SetLowColor(rgb_color{red, green, blue, alpha});
}

rgb_color BView::LowColor() const { return fData->state.paint.low; }

void BView::SetViewColor(rgb_color color)
{
    fData->viewColor = color;
    fData->viewWhich = B_NO_COLOR;
}

void BView::SetViewColor(uchar red, uchar green, uchar blue, uchar alpha)
{
    SetViewColor(rgb_color{red, green, blue, alpha});
}

rgb_color BView::ViewColor() const { return fData->viewColor; }

static rgb_color ui_tinted(color_which which, float tint)
{
    const rgb_color color = ui_color(which);
    return tint == B_NO_TINT ? color : tint_color(color, tint);
}

void BView::SetHighUIColor(color_which which, float tint)
{
    if (which != B_NO_COLOR)
        SetHighColor(ui_tinted(which, tint));
    fData->highWhich = which;
    fData->highTint = tint;
}

void BView::SetLowUIColor(color_which which, float tint)
{
    if (which != B_NO_COLOR)
        SetLowColor(ui_tinted(which, tint));
    fData->lowWhich = which;
    fData->lowTint = tint;
}

void BView::SetViewUIColor(color_which which, float tint)
{
    if (which != B_NO_COLOR)
        SetViewColor(ui_tinted(which, tint));
    fData->viewWhich = which;
    fData->viewTint = tint;
}

static color_which told(color_which which, float tint, float* target)
{
    if (target != nullptr)
        *target = tint;
    return which;
}

color_which BView::HighUIColor(float* tint) const
{
    return told(fData->highWhich, fData->highTint, tint);
}

color_which BView::LowUIColor(float* tint) const
{
    return told(fData->lowWhich, fData->lowTint, tint);
}

color_which BView::ViewUIColor(float* tint) const
{
    return told(fData->viewWhich, fData->viewTint, tint);
}

bool BView::HasDefaultColors() const
{
    return fData->viewWhich == B_NO_COLOR && fData->lowWhich == B_NO_COLOR &&
           fData->highWhich == B_NO_COLOR && ViewColor() == rgb_color{255, 255, 255, 255} &&
           LowColor() == rgb_color{255, 255, 255, 255} && HighColor() == rgb_color{0, 0, 0, 255};
}

bool BView::HasSystemColors() const
{
    return fData->viewWhich == B_PANEL_BACKGROUND_COLOR &&
           fData->lowWhich == B_PANEL_BACKGROUND_COLOR && fData->highWhich == B_PANEL_TEXT_COLOR &&
           fData->viewTint == B_NO_TINT && fData->lowTint == B_NO_TINT &&
           fData->highTint == B_NO_TINT;
}

void BView::AdoptParentColors() { AdoptViewColors(Parent()); }

void BView::AdoptSystemColors()
{
    SetViewUIColor(B_PANEL_BACKGROUND_COLOR);
    SetLowUIColor(B_PANEL_BACKGROUND_COLOR);
    SetHighUIColor(B_PANEL_TEXT_COLOR);
}

void BView::AdoptViewColors(BView* view)
{
    if (view == nullptr)
        return;
    const BPrivate::ViewData& other = *view->fData;
    SetViewColor(other.viewColor);
    SetViewUIColor(other.viewWhich, other.viewTint);
    SetLowColor(other.state.paint.low);
    SetLowUIColor(other.lowWhich, other.lowTint);
    SetHighColor(other.state.paint.high);
    SetHighUIColor(other.highWhich, other.highTint);
}

// Modes and pen.

void BView::SetDrawingMode(drawing_mode mode)
{
    fData->state.paint.mode = mode;
    fData->Recorded(PictureOp::DrawingMode, mode);
}

drawing_mode BView::DrawingMode() const { return fData->state.paint.mode; }

void BView::SetBlendingMode(source_alpha srcAlpha, alpha_function alphaFunc)
{
    fData->state.paint.alphaSource = srcAlpha;
    fData->state.paint.alphaFunction = alphaFunc;
    fData->Recorded(PictureOp::BlendingMode, srcAlpha, alphaFunc);
}

void BView::GetBlendingMode(source_alpha* srcAlpha, alpha_function* alphaFunc) const
{
    if (srcAlpha != nullptr)
        *srcAlpha = fData->state.paint.alphaSource;
    if (alphaFunc != nullptr)
        *alphaFunc = fData->state.paint.alphaFunction;
}

void BView::SetPenSize(float size)
{
    fData->state.penSize = size;
    fData->state.paint.penSize = size * fData->state.FullScale();
    fData->Recorded(PictureOp::PenSize, size);
}

float BView::PenSize() const { return fData->state.penSize; }

void BView::SetLineMode(cap_mode lineCap, join_mode lineJoin, float miterLimit)
{
    if (!(miterLimit >= 1))
        miterLimit = B_DEFAULT_MITER_LIMIT;
    fData->state.paint.cap = lineCap;
    fData->state.paint.join = lineJoin;
    fData->state.paint.miterLimit = miterLimit;
    fData->Recorded(PictureOp::LineMode, lineCap, lineJoin, miterLimit);
}

join_mode BView::LineJoinMode() const { return fData->state.paint.join; }

cap_mode BView::LineCapMode() const { return fData->state.paint.cap; }

float BView::LineMiterLimit() const { return fData->state.paint.miterLimit; }

void BView::SetFillRule(int32 rule)
{
    if (rule != B_EVEN_ODD && rule != B_NONZERO)
        return;
    fData->state.paint.fillRule = rule;
    fData->Recorded(PictureOp::FillRule, rule);
}

int32 BView::FillRule() const { return fData->state.paint.fillRule; }

void BView::MovePenTo(BPoint pt)
{
    fData->state.pen = pt;
    fData->Recorded(PictureOp::MovePenTo, pt);
}

void BView::MovePenTo(float x, float y) { MovePenTo(BPoint(x, y)); }

void BView::MovePenBy(float x, float y) { MovePenTo(fData->state.pen + BPoint(x, y)); }

BPoint BView::PenLocation() const { return fData->state.pen; }

// Coordinate system.

void BView::SetOrigin(BPoint where)
{
    fData->state.origin = where;
    fData->Outdate();
    fData->Recorded(PictureOp::Origin, where);
}

void BView::SetOrigin(float x, float y) { SetOrigin(BPoint(x, y)); }

BPoint BView::Origin() const { return fData->state.origin; }

void BView::SetScale(float scale) const
{
    if (!(scale > 0) || std::isinf(scale))
        return;
    fData->state.scale = scale;
    fData->Outdate();
    fData->Recorded(PictureOp::Scale, scale);
}

float BView::Scale() const { return fData->state.scale; }

void BView::SetTransform(BAffineTransform transform)
{
    fData->state.SetTransform(transform);
    fData->Outdate();
    fData->Recorded(PictureOp::Transform, transform.sx, transform.shy, transform.shx, transform.sy,
                    transform.tx, transform.ty);
}

BAffineTransform BView::Transform() const { return fData->state.Own(); }

void BView::TranslateBy(double x, double y)
{
    SetTransform(BPrivate::composed(Transform(), BAffineTransform(1, 0, 0, 1, x, y)));
}

void BView::ScaleBy(double x, double y)
{
    SetTransform(BPrivate::composed(Transform(), BAffineTransform(x, 0, 0, y, 0, 0)));
}

void BView::RotateBy(double angleRadians)
{
    const double c = std::cos(angleRadians), s = std::sin(angleRadians);
    SetTransform(BPrivate::composed(Transform(), BAffineTransform(c, s, -s, c, 0, 0)));
}

BAffineTransform BView::TransformTo(coordinate_space basis) const
{
    const DrawState& state = fData->state;
    BPoint shift;
    switch (basis) {
        case B_CURRENT_STATE_COORDINATES:
            return BAffineTransform();
        case B_PREVIOUS_STATE_COORDINATES:
            return BPrivate::composed(
                BAffineTransform(state.scale, 0, 0, state.scale, state.origin.x, state.origin.y),
                state.Own());
        case B_VIEW_COORDINATES:
            break;
        case B_PARENT_VIEW_DRAW_COORDINATES:
        case B_PARENT_VIEW_COORDINATES:
            shift = ConvertToParent(shift);
            break;
        case B_WINDOW_COORDINATES:
            shift = BPrivate::ViewPrivate::FromView(this, shift);
            break;
        case B_SCREEN_COORDINATES:
            shift = ConvertToScreen(shift);
            break;
    }
    return BPrivate::composed(BAffineTransform(1, 0, 0, 1, shift.x, shift.y), state.Full());
}

// Font.

void BView::SetFont(const BFont* font, uint32 mask)
{
    if (font == nullptr || mask == 0)
        return;
    BFont changed = fData->state.font;
    if ((mask & B_FONT_ALL) == B_FONT_ALL) {
        changed = *font;
    } else {
        if ((mask & B_FONT_FAMILY_AND_STYLE) != 0) {
            changed.SetFamilyAndStyle(font->FamilyAndStyle());
            changed.SetFace(font->Face());  // kept on purpose: the family brings its face along
        }
        if ((mask & B_FONT_SIZE) != 0)
            changed.SetSize(font->Size());
        if ((mask & B_FONT_SHEAR) != 0)
            changed.SetShear(font->Shear());
        if ((mask & B_FONT_ROTATION) != 0)
            changed.SetRotation(font->Rotation());
        if ((mask & B_FONT_SPACING) != 0)
            changed.SetSpacing(font->Spacing());
        if ((mask & B_FONT_ENCODING) != 0)
            changed.SetEncoding(font->Encoding());
        if ((mask & B_FONT_FACE) != 0)
            changed.SetFace(font->Face());
        if ((mask & B_FONT_FLAGS) != 0)
            changed.SetFlags(font->Flags());
        if ((mask & B_FONT_FALSE_BOLD_WIDTH) != 0)
            changed.SetFalseBoldWidth(font->FalseBoldWidth());
    }
    fData->state.SetFont(changed);
    if (fData->recording != nullptr)
        fData->recording->AddFont(changed);
}

void BView::GetFont(BFont* font) const
{
    if (font != nullptr)
        *font = fData->state.font;
}

void BView::SetFontSize(float size)
{
    BFont font;
    font.SetSize(size);
    SetFont(&font, B_FONT_SIZE);
}

void BView::ForceFontAliasing(bool enable)
{
    BFont font = fData->state.font;
    const uint32 flags = font.Flags() & ~uint32(B_DISABLE_ANTIALIASING);
    font.SetFlags(enable ? flags | B_DISABLE_ANTIALIASING : flags);
    SetFont(&font, B_FONT_FLAGS);
}

void BView::GetFontHeight(font_height* height) const
{
    if (height != nullptr)
        fData->state.font.GetHeight(height);
}

void BView::TruncateString(BString* in_out, uint32 mode, float width) const
{
    fData->state.font.TruncateString(in_out, mode, width);
}

float BView::StringWidth(const char* string) const { return fData->state.font.StringWidth(string); }

float BView::StringWidth(const char* string, int32 length) const
{
    return fData->state.font.StringWidth(string, length);
}

void BView::GetStringWidths(char* stringArray[], int32 lengthArray[], int32 numStrings,
                            float widthArray[]) const
{
    fData->state.font.GetStringWidths(const_cast<const char**>(stringArray), lengthArray,
                                      numStrings, widthArray);
}

// Background picture.

void BView::SetViewBitmap(const BBitmap* bitmap, BRect srcRect, BRect dstRect, uint32 followFlags,
                          uint32 options)
{
    if (bitmap == nullptr || !bitmap->IsValid()) {
        ClearViewBitmap();
        return;
    }
    auto background = std::make_unique<BPrivate::ViewBitmap>();
    background->bitmap = std::make_unique<BBitmap>(*bitmap, 0);
    background->source = srcRect;
    background->target = dstRect;
    background->follow = followFlags;
    background->options = options;
    BPrivate::ViewLock lock(this);
    fData->NeedExtras().background = std::move(background);
    Invalidate();
}

void BView::SetViewBitmap(const BBitmap* bitmap, uint32 followFlags, uint32 options)
{
    const BRect bounds = bitmap != nullptr ? bitmap->Bounds() : BRect();
    SetViewBitmap(bitmap, bounds, bounds.OffsetToCopy(B_ORIGIN), followFlags, options);
}

void BView::ClearViewBitmap()
{
    BPrivate::ViewLock lock(this);
    if (fData->Extras().background == nullptr)
        return;
    fData->extras->background.reset();
    Invalidate();
}

// No screen here has overlays.

status_t BView::SetViewOverlay(const BBitmap*, BRect, BRect, rgb_color*, uint32, uint32)
{
    return B_ERROR;
}

status_t BView::SetViewOverlay(const BBitmap*, rgb_color*, uint32, uint32) { return B_ERROR; }

void BView::ClearViewOverlay() {}
