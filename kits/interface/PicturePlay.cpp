// Recorded drawing: how calls are noted, and made again in a view.

#include <Bitmap.h>
#include <DataIO.h>
#include <Font.h>
#include <Gradient.h>
#include <Picture.h>
#include <Region.h>
#include <Shape.h>
#include <View.h>

#include <interface/PictureReader.h>
#include <interface/RegionAccess.h>
#include <interface/ShapeData.h>
#include <interface/ViewPrivate.h>

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
        Add(PictureOp::Gradient, Span<char>{static_cast<const char*>(stream.Buffer()),
                                            int32(stream.BufferLength())});
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

void play_polygon(Reader& in, BView* view, PictureOp op)
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

void play_bezier(Reader& in, BView* view, PictureOp op)
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

void play_shape(Reader& in, BView* view, PictureOp op)
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

void play_transform(Reader& in, BView* view)
{
    double values[6];
    for (double& value : values)
        value = in.Get<double>();
    if (in.IsGood()) {
        view->SetTransform(BAffineTransform(values[0], values[1], values[2], values[3], values[4],
                                            values[5]));
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

}  // namespace

void PictureData::Play(BView* view, int depth) const
{
    Reader in(bytes);
    while (PlayCall(in, view, depth)) {
    }
}

bool PictureData::PlayCall(Reader& in, BView* view, int depth) const
{
    using Line = void (BView::*)(BPoint, BPoint, ::pattern);
    using Rect = void (BView::*)(BRect, ::pattern);
    using Round = void (BView::*)(BRect, float, float, ::pattern);
    using Ellipse = void (BView::*)(BPoint, float, float, ::pattern);
    using Arc = void (BView::*)(BPoint, float, float, float, float, ::pattern);
    using Point = void (BView::*)(BPoint);
    using Color = void (BView::*)(rgb_color);
    if (in.AtEnd())
        return false;
    const PictureOp op = PictureOp(in.Get<uint8>());
    switch (op) {
    case PictureOp::MovePenTo:
        call(in, view, static_cast<Point>(&BView::MovePenTo));
        break;
    case PictureOp::StrokeLine:
        call(in, view, static_cast<Line>(&BView::StrokeLine));
        break;
    case PictureOp::LineArray:
        play_line_array(in, view);
        break;
    case PictureOp::StrokePolygon:
    case PictureOp::FillPolygon:
        play_polygon(in, view, op);
        break;
    case PictureOp::StrokeRect:
        call(in, view, static_cast<Rect>(&BView::StrokeRect));
        break;
    case PictureOp::FillRect:
        call(in, view, static_cast<Rect>(&BView::FillRect));
        break;
    case PictureOp::InvertRect:
        call(in, view, &BView::InvertRect);
        break;
    case PictureOp::StrokeRoundRect:
        call(in, view, static_cast<Round>(&BView::StrokeRoundRect));
        break;
    case PictureOp::FillRoundRect:
        call(in, view, static_cast<Round>(&BView::FillRoundRect));
        break;
    case PictureOp::StrokeEllipse:
        call(in, view, static_cast<Ellipse>(&BView::StrokeEllipse));
        break;
    case PictureOp::FillEllipse:
        call(in, view, static_cast<Ellipse>(&BView::FillEllipse));
        break;
    case PictureOp::StrokeArc:
        call(in, view, static_cast<Arc>(&BView::StrokeArc));
        break;
    case PictureOp::FillArc:
        call(in, view, static_cast<Arc>(&BView::FillArc));
        break;
    case PictureOp::StrokeBezier:
    case PictureOp::FillBezier:
        play_bezier(in, view, op);
        break;
    case PictureOp::StrokeShape:
    case PictureOp::FillShape:
    case PictureOp::ClipToShape:
        play_shape(in, view, op);
        break;
    case PictureOp::DrawString:
        play_string(in, view);
        break;
    case PictureOp::DrawStringAt:
        play_string_at(in, view);
        break;
    case PictureOp::DrawBitmap: {
        const size_t index = size_t(in.Get<int32>());
        const BRect from = in.Get<BRect>(), to = in.Get<BRect>();
        const uint32 options = in.Get<uint32>();
        if (in.IsGood() && index < bitmaps.size())
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
    case PictureOp::CopyBits:
        call(in, view, &BView::CopyBits);
        break;
    case PictureOp::HighColor:
        call(in, view, static_cast<Color>(&BView::SetHighColor));
        break;
    case PictureOp::LowColor:
        call(in, view, static_cast<Color>(&BView::SetLowColor));
        break;
    case PictureOp::DrawingMode:
        call(in, view, &BView::SetDrawingMode);
        break;
    case PictureOp::BlendingMode:
        call(in, view, &BView::SetBlendingMode);
        break;
    case PictureOp::PenSize:
        call(in, view, &BView::SetPenSize);
        break;
    case PictureOp::LineMode:
        call(in, view, &BView::SetLineMode);
        break;
    case PictureOp::FillRule:
        call(in, view, &BView::SetFillRule);
        break;
    case PictureOp::Origin:
        call(in, view, static_cast<Point>(&BView::SetOrigin));
        break;
    case PictureOp::Scale:
        view->SetScale(in.Get<float>());
        break;
    case PictureOp::Transform:
        play_transform(in, view);
        break;
    case PictureOp::Font:
        play_font(in, view);
        break;
    case PictureOp::PushState:
        view->PushState();
        break;
    case PictureOp::PopState:
        view->PopState();
        break;
    case PictureOp::ClipRegion:
        play_clip(in, view);
        break;
    case PictureOp::ClipToRect:
        call(in, view, &BView::ClipToRect);
        break;
    case PictureOp::ClipToInverseRect:
        call(in, view, &BView::ClipToInverseRect);
        break;
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
        return false;
    }
    return in.IsGood();
}

// With a state of its own, which is gone afterwards.
void PictureData::PlayAt(const PictureData& picture, BView* view, BPoint where, int depth)
{
    const size_t states = ViewPrivate::StateDepth(view);
    view->SetOrigin(view->Origin() + where);
    view->PushState();
    picture.Play(view, depth);
    ViewPrivate::RestoreState(view, states);
    view->SetOrigin(view->Origin() - where);
}

}  // namespace BPrivate
