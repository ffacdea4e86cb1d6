// Views: birth, archive, messages and hooks. The rest has a file for each family: ViewTree,
// ViewFrame, ViewState, ViewClip, ViewDraw, ViewBitmaps, ViewInput, ViewLayout, ViewScripting.

#include <View.h>

#include <AppDefs.h>
#include <Message.h>
#include <Picture.h>

#include <interface/view/ViewPrivate.h>
#include <support/EnumNumbers.h>

#include <algorithm>
#include <cmath>

namespace BPrivate {

// What `generation` points to without a canvas: no view is ever ready for it.
static const uint32 kNoCanvas = 0xFFFFFFFF;

float whole_pixels(float value)
{
    if (std::isnan(value))
        return 0;
    const float limit = 536870912;  // 2^29
    return std::round(std::min(std::max(value, -limit), limit));
}

BPoint whole_pixels(BPoint point) { return BPoint(whole_pixels(point.x), whole_pixels(point.y)); }

// Beyond it a rectangle of floats would lose its width.
BPoint scroll_place(BPoint place)
{
    const float limit = 8388608;  // 2^23
    place = whole_pixels(place);
    return BPoint(std::clamp(place.x, -limit, limit), std::clamp(place.y, -limit, limit));
}

ViewData::ViewData(BView* view) : generation(&kNoCanvas), self(view) {}

ViewData::~ViewData()
{
    for (auto& [picture, data] : Extras().pictures)
        delete data;
    while (saved != nullptr)  // one by one: there may be very many
        saved = std::move(saved->below);
}

const ViewExtras& ViewData::Extras() const
{
    // Never destroyed, and needs no memory: who deletes a view asks as well.
    alignas(ViewExtras) static char room[sizeof(ViewExtras)];
    static const auto* const none = new (room) ViewExtras;
    return extras != nullptr ? *extras : *none;
}

ViewExtras& ViewData::NeedExtras()
{
    if (extras == nullptr)
        extras = std::make_unique<ViewExtras>();
    return *extras;
}

void ViewData::SetCanvas(Canvas* newCanvas)
{
    canvas = newCanvas;
    generation = canvas != nullptr ? canvas->Generation() : &kNoCanvas;
    readyAt = 0;
    visibleAt = wholeAt = 0;
    gridAt = 0;
}

ViewRef::ViewRef(BView* view) : fData(&ViewPrivate::Data(view)) { _Acquire(); }

}  // namespace BPrivate

using BPrivate::ViewData;
using BPrivate::ViewPrivate;
using BPrivate::whole_pixels;

void BView::_Init(BRect frame, uint32 resizingMode, uint32 flags)
{
    fData = new ViewData(this);
    fData->leftTop = whole_pixels(frame.LeftTop());
    fData->bounds.Set(0, 0, whole_pixels(frame.right) - fData->leftTop.x,
                      whole_pixels(frame.bottom) - fData->leftTop.y);
    fData->resizingMode = resizingMode & 0xFFFF;
    fData->flags = flags;
    SetFont(be_plain_font);
}

BView::BView(BRect frame, const char* name, uint32 resizingMode, uint32 flags) : BHandler(name)
{
    // Old programs give the resizing mode's bits and the flags in either argument.
    _Init(frame, resizingMode, flags | (resizingMode & 0xFFFF0000));
}

BView::BView(const char* name, uint32 flags, BLayout* layout) : BHandler(name)
{
    _Init(BRect(0, 0, -1, -1), B_FOLLOW_LEFT_TOP, flags | B_SUPPORTS_LAYOUT);
    if (layout != nullptr)
        fData->NeedExtras().layout = layout;
}

BView::~BView()
{
    BPrivate::ViewLock lock(this);
    fData->alive = false;
    if (fData->isTop)
        ViewPrivate::Detach(this);
    else
        RemoveSelf();
    while (BView* child = fData->first) {
        child->RemoveSelf();
        delete child;
    }
    ViewPrivate::ForgetScrollBars(this);
    fData->Release();
}

// Archive.

static void read_number(const BMessage* archive, const char* name, int32 index, uint32* value)
{
    int32 number;
    if (archive->FindInt32(name, index, &number) == B_OK)
        *value = uint32(number);
}

// One of the enumerators from 0 to `last`; the value stays if the archive has no such number.
template <class Enum>
static void read_enum(const BMessage* archive, const char* name, int32 index, Enum last,
                      Enum* value)
{
    *value = BPrivate::enum_up_to(archive->GetInt32(name, index, int32(*value)), last, *value);
}

static void read_drawing(const BMessage* archive, BPrivate::DrawState* state)
{
    server::Paint& paint = state->paint;
    archive->FindColor("_color", 0, &paint.high);
    archive->FindColor("_color", 1, &paint.low);
    archive->FindPoint("_origin", &state->origin);
    archive->FindPoint("_pen_loc", &state->pen);
    archive->FindFloat("_psize", &state->penSize);
    archive->FindFloat("_scale", &state->scale);
    archive->FindFloat("_mitre", &paint.miterLimit);
    static const cap_mode kCaps[] = {B_ROUND_CAP, B_BUTT_CAP, B_SQUARE_CAP};
    read_enum(archive, "_dmod", 0, B_OP_ALPHA, &paint.mode);
    paint.cap = BPrivate::enum_among(archive->GetInt32("_lines", 0, paint.cap), kCaps, paint.cap);
    read_enum(archive, "_lines", 1, B_SQUARE_JOIN, &paint.join);
    read_enum(archive, "_blend", 0, B_CONSTANT_ALPHA, &paint.alphaSource);
    read_enum(archive, "_blend", 1, B_ALPHA_COMPOSITE_DARKEN, &paint.alphaFunction);
    if (archive->GetInt32("_fillrule", B_NONZERO) == B_EVEN_ODD)
        paint.fillRule = B_EVEN_ODD;
}

static BFont read_font(const BMessage* archive)
{
    BFont font;
    const char* family;
    const char* style;
    if (archive->FindString("_fname", 0, &family) == B_OK &&
        archive->FindString("_fname", 1, &style) == B_OK)
        font.SetFamilyAndStyle(family, style);
    float number;
    if (archive->FindFloat("_fflt", 0, &number) == B_OK)
        font.SetSize(number);
    if (archive->FindFloat("_fflt", 1, &number) == B_OK)
        font.SetShear(number);
    if (archive->FindFloat("_fflt", 2, &number) == B_OK)
        font.SetRotation(number);
    int32 value;
    if (archive->FindInt32("_fint", 0, &value) == B_OK)
        font.SetSpacing(uint8(value));
    if (archive->FindInt32("_fint", 1, &value) == B_OK)
        font.SetFace(uint16(value));
    if (archive->FindInt32("_fint", 2, &value) == B_OK)
        font.SetFlags(uint32(value));
    return font;
}

BView::BView(BMessage* archive) : BHandler(archive)
{
    BRect frame(0, 0, -1, -1);
    int32 mode = B_FOLLOW_LEFT_TOP, flags = 0;
    if (archive != nullptr) {
        archive->FindRect("_frame", &frame);
        archive->FindInt32("_resize_mode", &mode);
        archive->FindInt32("_flags", &flags);
    }
    _Init(frame, uint32(mode), uint32(flags));
    if (archive == nullptr)
        return;

    BPoint point;
    if (archive->FindPoint("_bounds_origin", &point) == B_OK)
        fData->bounds.OffsetTo(BPrivate::scroll_place(point));
    read_drawing(archive, &fData->state);
    archive->FindColor("_color", 2, &fData->viewColor);
    archive->FindInt32("_showlevel", &fData->hidden);
    read_number(archive, "_evmask", 0, &fData->eventMask);
    read_number(archive, "_evmask", 1, &fData->eventOptions);
    const BFont font = read_font(archive);
    SetFont(&font);

    BMessage childArchive;
    for (int32 i = 0; archive->FindMessage("_views", i, &childArchive) == B_OK; i++) {
        BArchivable* object = instantiate_object(&childArchive);
        if (BView* child = dynamic_cast<BView*>(object))
            AddChild(child);
        else
            delete object;
    }
}

BArchivable* BView::Instantiate(BMessage* archive)
{
    if (!validate_instantiation(archive, "BView"))
        return nullptr;
    return new (std::nothrow) BView(archive);
}

status_t BView::Archive(BMessage* archive, bool deep) const
{
    status_t status = BHandler::Archive(archive, deep);
    if (status != B_OK)
        return status;
    const BPrivate::DrawState& state = fData->state;
    const server::Paint& paint = state.paint;
    archive->AddRect("_frame", Frame());
    archive->AddInt32("_resize_mode", int32(fData->resizingMode));
    archive->AddInt32("_flags", int32(fData->flags));
    archive->AddPoint("_bounds_origin", fData->bounds.LeftTop());
    archive->AddColor("_color", paint.high);
    archive->AddColor("_color", paint.low);
    archive->AddColor("_color", fData->viewColor);
    archive->AddPoint("_origin", state.origin);
    archive->AddPoint("_pen_loc", state.pen);
    archive->AddFloat("_psize", state.penSize);
    archive->AddFloat("_scale", state.scale);
    archive->AddFloat("_mitre", paint.miterLimit);
    archive->AddInt32("_dmod", paint.mode);
    archive->AddInt32("_lines", paint.cap);
    archive->AddInt32("_lines", paint.join);
    archive->AddInt32("_blend", paint.alphaSource);
    archive->AddInt32("_blend", paint.alphaFunction);
    archive->AddInt32("_fillrule", paint.fillRule);
    archive->AddInt32("_showlevel", fData->hidden);
    archive->AddInt32("_evmask", int32(fData->eventMask));
    archive->AddInt32("_evmask", int32(fData->eventOptions));

    font_family family;
    font_style style;
    state.font.GetFamilyAndStyle(&family, &style);
    archive->AddString("_fname", family);
    archive->AddString("_fname", style);
    archive->AddFloat("_fflt", state.font.Size());
    archive->AddFloat("_fflt", state.font.Shear());
    archive->AddFloat("_fflt", state.font.Rotation());
    archive->AddInt32("_fint", state.font.Spacing());
    archive->AddInt32("_fint", state.font.Face());
    status = archive->AddInt32("_fint", int32(state.font.Flags()));

    for (BView* child = fData->first; deep && child != nullptr && status == B_OK;
         child = child->fData->next) {
        BMessage childArchive;
        status = child->Archive(&childArchive, true);
        if (status == B_OK)
            status = archive->AddMessage("_views", &childArchive);
    }
    return status;
}

status_t BView::AllUnarchived(const BMessage* archive) { return BHandler::AllUnarchived(archive); }

status_t BView::AllArchived(BMessage* archive) const { return BHandler::AllArchived(archive); }

// Messages.

void BView::MessageReceived(BMessage* message)
{
    switch (message->what) {
        case BPrivate::kInvalidateLater: {
            BRect rect;
            if (message->FindRect("rect", &rect) == B_OK)
                Invalidate(rect);
            break;
        }
        case B_MOUSE_WHEEL_CHANGED: {
            float dx = 0, dy = 0;
            message->FindFloat("be:wheel_delta_x", &dx);
            message->FindFloat("be:wheel_delta_y", &dy);
            bool moved = dx != 0 && ScrollWithMouseWheelDelta(ScrollBar(B_HORIZONTAL), dx) == B_OK;
            if (dy != 0 && ScrollWithMouseWheelDelta(ScrollBar(B_VERTICAL), dy) == B_OK)
                moved = true;
            if (!moved)
                BHandler::MessageReceived(message);  // a view around it may have bars
            break;
        }
        default:
            if (!BPrivate::answer_view_script(*this, message))
                BHandler::MessageReceived(message);
    }
}

bool BView::IsPrinting() const { return false; }

status_t BView::Perform(perform_code code, void* data) { return BHandler::Perform(code, data); }

// Hooks that do nothing of themselves.

void BView::AttachedToWindow() {}
void BView::AllAttached() {}
void BView::DetachedFromWindow() {}
void BView::AllDetached() {}
void BView::Draw(BRect) {}
void BView::DrawAfterChildren(BRect) {}
void BView::MouseDown(BPoint) {}
void BView::MouseUp(BPoint) {}
void BView::MouseMoved(BPoint, uint32, const BMessage*) {}
void BView::WindowActivated(bool) {}
void BView::KeyUp(const char*, int32) {}
void BView::Pulse() {}
void BView::FrameMoved(BPoint) {}
void BView::FrameResized(float, float) {}
void BView::TargetedByScrollView(BScrollView*) {}
