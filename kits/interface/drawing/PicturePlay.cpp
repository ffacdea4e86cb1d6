// Recorded drawing: how calls are noted, and made again in a view.

#include <Bitmap.h>
#include <DataIO.h>
#include <Font.h>
#include <Gradient.h>
#include <Picture.h>
#include <Region.h>
#include <Shape.h>
#include <View.h>

#include <interface/drawing/PictureReader.h>
#include <interface/geometry/RegionAccess.h>
#include <interface/drawing/ShapeData.h>
#include <interface/view/ViewPrivate.h>

#include <array>
#include <tuple>

namespace BPrivate {

void PictureData::AddRegion(PictureOp op, const BRegion* region)
{
    if (region != nullptr)
        Add(op, true, Span<clipping_rect>{RegionAccess::Rects(*region), region->CountRects()});
    else
        Add(op, false);
}

void PictureData::AddShape(PictureOp op, const BShape& shape, bool inverse)
{
    // Shapes are noted as they are drawn: without arcs.
    std::vector<uint8> ops;
    std::vector<BPoint> points;
    if (const ShapeData* parts = ShapeData::Of(shape))
        parts->AppendPath(BPoint(), 1, &ops, &points);
    Add(op, inverse, Span<uint8>{ops.data(), int32(ops.size())},
        Span<BPoint>{points.data(), int32(points.size())});
}

void PictureData::AddFont(const BFont& font)
{
    font_family family = {};
    font_style style = {};
    font.GetFamilyAndStyle(&family, &style);
    Add(PictureOp::Font);
    Put(family);
    Put(style);
    Put(font.Size());
    Put(font.Shear());
    Put(font.Rotation());
    Put(font.FalseBoldWidth());
    Put(font.Spacing());
    Put(font.Encoding());
    Put(font.Face());
    Put(font.Flags());
}

void PictureData::AddBitmap(PictureOp op, const BBitmap& bitmap, BRect from, BRect to,
                            uint32 options)
{
    Add(op, int32(bitmaps.size()), from, to, options);
    bitmaps.push_back(std::make_shared<BBitmap>(bitmap, 0));
}

void PictureData::AddPicture(std::shared_ptr<const PictureData> picture, BPoint where)
{
    Add(PictureOp::DrawPicture, int32(pictures.size()), where);
    pictures.push_back(std::move(picture));
}

void PictureData::AddClip(std::shared_ptr<const PictureData> picture, BPoint where, bool inverse)
{
    Add(PictureOp::ClipToPicture, picture != nullptr ? int32(pictures.size()) : -1, where, inverse);
    if (picture != nullptr)
        pictures.push_back(std::move(picture));
}

void PictureData::AddGradient(const BGradient& gradient)
{
    BMallocIO stream;
    if (gradient.Flatten(&stream) == B_OK)
        Add(PictureOp::Gradient,
            Span<char>{static_cast<const char*>(stream.Buffer()), int32(stream.BufferLength())});
}

namespace {

// Reads the arguments of a call in their order, then makes it.
template <class... Args>
void call(Reader& in, BView* view, void (BView::*method)(Args...))
{
    std::tuple<std::decay_t<Args>...> args{in.Get<std::decay_t<Args>>()...};
    if (in.IsGood())
        std::apply([&](const auto&... each) { (view->*method)(each...); }, args);
}

BShape read_shape(Reader& in)
{
    const std::vector<uint8> ops = in.GetSpan<uint8>();
    std::vector<BPoint> points = in.GetSpan<BPoint>();
    BShape shape;
    size_t at = 0;
    for (uint8 op : ops) {
        const size_t needed = op == server::kPathBezierTo ? 3 : op == server::kPathClose ? 0 : 1;
        if (at + needed > points.size())
            break;
        switch (op) {
            case server::kPathMoveTo:
                shape.MoveTo(points[at]);
                break;
            case server::kPathLineTo:
                shape.LineTo(points[at]);
                break;
            case server::kPathBezierTo:
                shape.BezierTo(&points[at]);
                break;
            case server::kPathClose:
                shape.Close();
                break;
        }
        at += needed;
    }
    return shape;
}

void play_font(Reader& in, BView* view)
{
    font_family family;
    font_style style;
    in.Take(family, sizeof(family));
    in.Take(style, sizeof(style));
    BFont font;
    if (in.IsGood()) {
        family[sizeof(family) - 1] = style[sizeof(style) - 1] = 0;
        font.SetFamilyAndStyle(family, style);
    }
    font.SetSize(in.Get<float>());
    font.SetShear(in.Get<float>());
    font.SetRotation(in.Get<float>());
    font.SetFalseBoldWidth(in.Get<float>());
    font.SetSpacing(in.Get<uint8>());
    font.SetEncoding(in.Get<uint8>());
    font.SetFace(in.Get<uint16>());
    font.SetFlags(in.Get<uint32>());
    if (in.IsGood())
        view->SetFont(&font);
}

void play_line_array(Reader& in, BView* view)
{
    const auto lines = in.GetSpan<LineArray::Line>();
    view->BeginLineArray(int32(lines.size()));
    for (const LineArray::Line& line : lines)
        view->AddLine(line.start, line.end, line.color);
    view->EndLineArray();
}

template <PictureOp op>
void play_polygon(Reader& in, BView* view)
{
    const auto points = in.GetSpan<BPoint>();
    const bool closed = op == PictureOp::StrokePolygon && in.Get<uint8>() != 0;
    const pattern fill = in.Get<pattern>();
    if (!in.IsGood())
        return;
    if (op == PictureOp::StrokePolygon)
        view->StrokePolygon(points.data(), int32(points.size()), closed, fill);
    else
        view->FillPolygon(points.data(), int32(points.size()), fill);
}

template <PictureOp op>
void play_bezier(Reader& in, BView* view)
{
    auto points = in.GetSpan<BPoint>();
    const pattern fill = in.Get<pattern>();
    if (!in.IsGood() || points.size() != 4)
        return;
    if (op == PictureOp::StrokeBezier)
        view->StrokeBezier(points.data(), fill);
    else
        view->FillBezier(points.data(), fill);
}

template <PictureOp op>
void play_shape(Reader& in, BView* view)
{
    const bool inverse = in.Get<uint8>() != 0;
    BShape shape = read_shape(in);
    if (op == PictureOp::ClipToShape) {
        if (inverse)
            view->ClipToInverseShape(&shape);
        else
            view->ClipToShape(&shape);
        return;
    }
    const pattern fill = in.Get<pattern>();
    if (op == PictureOp::StrokeShape)
        view->StrokeShape(&shape, fill);
    else
        view->FillShape(&shape, fill);
}

void play_clip(Reader& in, BView* view)
{
    if (in.Get<uint8>() == 0) {
        view->ConstrainClippingRegion(nullptr);
        return;
    }
    BRegion region;
    for (const clipping_rect& rect : in.GetSpan<clipping_rect>())
        region.Include(rect);
    view->ConstrainClippingRegion(&region);
}

void play_string(Reader& in, BView* view)
{
    const BPoint where = in.Get<BPoint>();
    escapement_delta delta = in.Get<escapement_delta>();
    const auto text = in.GetSpan<char>();
    view->DrawString(text.data(), int32(text.size()), where, &delta);
}

void play_string_at(Reader& in, BView* view)
{
    const auto places = in.GetSpan<BPoint>();
    const auto text = in.GetSpan<char>();
    view->DrawString(text.data(), int32(text.size()), places.data(), int32(places.size()));
}

void play_scale(Reader& in, BView* view) { view->SetScale(in.Get<float>()); }

void play_transform(Reader& in, BView* view)
{
    double values[6];
    for (double& value : values)
        value = in.Get<double>();
    if (in.IsGood()) {
        view->SetTransform(
            BAffineTransform(values[0], values[1], values[2], values[3], values[4], values[5]));
    }
}

// Makes the call behind a gradient with it. One of no kind that can be read changes nothing.
template <class Call>
bool play_with_gradient(Reader& in, BView* view, Call make_call)
{
    const auto flat = in.GetSpan<char>();
    if (in.AtEnd() || in.Peek() == uint8(PictureOp::Gradient))
        return false;
    BMemoryIO stream(flat.data(), flat.size());
    BGradient* read = nullptr;
    BGradient::Unflatten(read, &stream);
    const std::unique_ptr<BGradient> gradient(read);
    bool goes_on = false;
    if (gradient == nullptr)
        return make_call();
    ViewPrivate::WithGradient(view, *gradient, [&] { goes_on = make_call(); });
    return goes_on;
}

template <auto method>
void play(Reader& in, BView* view)
{
    call(in, view, method);
}

using PlayCallFunction = void (*)(Reader&, BView*);

// By operation, how a call is read and made; null for those that need more than the view.
constexpr auto kPlays = [] {
    using Op = PictureOp;
    using Line = void (BView::*)(BPoint, BPoint, ::pattern);
    using Rect = void (BView::*)(BRect, ::pattern);
    using Round = void (BView::*)(BRect, float, float, ::pattern);
    using Ellipse = void (BView::*)(BPoint, float, float, ::pattern);
    using Arc = void (BView::*)(BPoint, float, float, float, float, ::pattern);
    using Point = void (BView::*)(BPoint);
    using Color = void (BView::*)(rgb_color);
    std::array<PlayCallFunction, size_t(Op::Count)> plays{};
    auto on = [&](Op op, PlayCallFunction function) { plays[size_t(op)] = function; };
    on(Op::MovePenTo, play<static_cast<Point>(&BView::MovePenTo)>);
    on(Op::StrokeLine, play<static_cast<Line>(&BView::StrokeLine)>);
    on(Op::LineArray, play_line_array);
    on(Op::StrokePolygon, play_polygon<Op::StrokePolygon>);
    on(Op::FillPolygon, play_polygon<Op::FillPolygon>);
    on(Op::StrokeRect, play<static_cast<Rect>(&BView::StrokeRect)>);
    on(Op::FillRect, play<static_cast<Rect>(&BView::FillRect)>);
    on(Op::InvertRect, play<&BView::InvertRect>);
    on(Op::StrokeRoundRect, play<static_cast<Round>(&BView::StrokeRoundRect)>);
    on(Op::FillRoundRect, play<static_cast<Round>(&BView::FillRoundRect)>);
    on(Op::StrokeEllipse, play<static_cast<Ellipse>(&BView::StrokeEllipse)>);
    on(Op::FillEllipse, play<static_cast<Ellipse>(&BView::FillEllipse)>);
    on(Op::StrokeArc, play<static_cast<Arc>(&BView::StrokeArc)>);
    on(Op::FillArc, play<static_cast<Arc>(&BView::FillArc)>);
    on(Op::StrokeBezier, play_bezier<Op::StrokeBezier>);
    on(Op::FillBezier, play_bezier<Op::FillBezier>);
    on(Op::StrokeShape, play_shape<Op::StrokeShape>);
    on(Op::FillShape, play_shape<Op::FillShape>);
    on(Op::DrawString, play_string);
    on(Op::DrawStringAt, play_string_at);
    on(Op::CopyBits, play<&BView::CopyBits>);
    on(Op::HighColor, play<static_cast<Color>(&BView::SetHighColor)>);
    on(Op::LowColor, play<static_cast<Color>(&BView::SetLowColor)>);
    on(Op::DrawingMode, play<&BView::SetDrawingMode>);
    on(Op::BlendingMode, play<&BView::SetBlendingMode>);
    on(Op::PenSize, play<&BView::SetPenSize>);
    on(Op::LineMode, play<&BView::SetLineMode>);
    on(Op::FillRule, play<&BView::SetFillRule>);
    on(Op::Origin, play<static_cast<Point>(&BView::SetOrigin)>);
    on(Op::Scale, play_scale);
    on(Op::Transform, play_transform);
    on(Op::Font, play_font);
    on(Op::PushState, play<&BView::PushState>);
    on(Op::PopState, play<&BView::PopState>);
    on(Op::ClipRegion, play_clip);
    on(Op::ClipToRect, play<&BView::ClipToRect>);
    on(Op::ClipToInverseRect, play<&BView::ClipToInverseRect>);
    on(Op::ClipToShape, play_shape<Op::ClipToShape>);
    return plays;
}();

}  // namespace

void PictureData::Play(BView* view, int depth) const
{
    Reader in(bytes);
    while (PlayCall(in, view, depth)) {
    }
}

bool PictureData::PlayCall(Reader& in, BView* view, int depth) const
{
    if (in.AtEnd())
        return false;
    const PictureOp op = PictureOp(in.Get<uint8>());
    switch (op) {
        case PictureOp::DrawBitmap: {
            const size_t index = size_t(in.Get<int32>());
            const BRect from = in.Get<BRect>(), to = in.Get<BRect>();
            const uint32 options = in.Get<uint32>();
            if (!in.IsGood() || index >= bitmaps.size())
                break;
            if ((options & B_TILE_BITMAP) == B_TILE_BITMAP)
                view->DrawTiledBitmap(bitmaps[index].get(), to, from.LeftTop());
            else
                view->DrawBitmap(bitmaps[index].get(), from, to, options);
            break;
        }
        case PictureOp::DrawPicture: {
            const size_t index = size_t(in.Get<int32>());
            const BPoint where = in.Get<BPoint>();
            if (in.IsGood() && index < pictures.size() && depth < kMaxPictureDepth)
                PlayAt(*pictures[index], view, where, depth + 1);
            break;
        }
        case PictureOp::ClipToPicture: {
            const int32 index = in.Get<int32>();
            const BPoint where = in.Get<BPoint>();
            const bool inverse = in.Get<uint8>() != 0;
            if (in.IsGood() && index == -1)
                ViewPrivate::ClipToPicture(view, nullptr, where, inverse);
            else if (in.IsGood() && size_t(index) < pictures.size() && depth < kMaxPictureDepth)
                ViewPrivate::ClipToPicture(view, pictures[size_t(index)], where, inverse);
            break;
        }
        case PictureOp::Gradient:
            return play_with_gradient(in, view, [&] { return PlayCall(in, view, depth); });
        default:
            if (op >= PictureOp::Count || kPlays[size_t(op)] == nullptr)
                return false;
            kPlays[size_t(op)](in, view);
    }
    return in.IsGood();
}

// With a state of its own, which is gone afterwards.
void PictureData::PlayAt(const PictureData& picture, BView* view, BPoint where, int depth)
{
    const int32 states = ViewPrivate::StateDepth(view);
    view->SetOrigin(view->Origin() + where);
    view->PushState();
    picture.Play(view, depth);
    ViewPrivate::RestoreState(view, states);
    view->SetOrigin(view->Origin() - where);
}

}  // namespace BPrivate
