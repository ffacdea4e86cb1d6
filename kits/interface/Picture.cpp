// Recorded drawing: pictures, and the calls of BView that make and draw them.

#include <Picture.h>

#include <Bitmap.h>
#include <DataIO.h>
#include <Message.h>
#include <TypeConstants.h>
#include <Shape.h>
#include <View.h>

#include <interface/BitmapSurface.h>
#include <interface/PictureOps.h>
#include <interface/RegionAccess.h>
#include <interface/ShapeData.h>
#include <interface/ViewPrivate.h>

#include <cstdio>
#include <functional>
#include <new>
#include <tuple>

namespace BPrivate {

static const int kMaxDepth = 32;  // of pictures in pictures
static const uint32 kMagic = 'pPic';
static const uint32 kVersion = 1;

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

namespace {

// Walks through the bytes; once something is missing everything reads as zero.
class Reader {
public:
    explicit Reader(const std::vector<uint8>& bytes) : fAt(bytes.data()), fLeft(bytes.size()) {}

    bool IsGood() const { return fGood; }
    bool AtEnd() const { return fLeft == 0 || !fGood; }
    template <class Value>
    Value Get()
    {
        Value value{};
        Take(&value, sizeof(Value));
        return value;
    }
    template <class Value>
    std::vector<Value> GetSpan()
    {
        const int32 count = Get<int32>();
        std::vector<Value> values;
        if (!fGood || count < 0 || size_t(count) > fLeft / sizeof(Value)) {
            fGood = false;
            return values;
        }
        values.resize(size_t(count));
        Take(values.data(), sizeof(Value) * size_t(count));
        return values;
    }
    void Take(void* target, size_t size)
    {
        if (size > fLeft)
            fGood = false;
        if (!fGood || size == 0)
            return;
        memcpy(target, fAt, size);
        fAt += size;
        fLeft -= size;
    }

private:
    const uint8* fAt;
    size_t fLeft;
    bool fGood = true;
};

// Passes over a call that a table has no entry for; false for bytes that are no call.
bool Skip(Reader& in, PictureOp op)
{
    uint8 unused[256];
    auto take = [&](size_t size) { in.Take(unused, size); };
    switch (op) {
    case PictureOp::InvertRect:
    case PictureOp::ClipToRect:
    case PictureOp::ClipToInverseRect:
        take(sizeof(BRect));
        break;
    case PictureOp::CopyBits:
        take(2 * sizeof(BRect));
        break;
    case PictureOp::StrokeShape:
    case PictureOp::FillShape:
    case PictureOp::ClipToShape:
        take(1);
        in.GetSpan<uint8>();
        in.GetSpan<BPoint>();
        if (op != PictureOp::ClipToShape)
            take(sizeof(pattern));
        break;
    case PictureOp::DrawStringAt:
        in.GetSpan<BPoint>();
        in.GetSpan<char>();
        break;
    case PictureOp::DrawBitmap:
        take(2 * sizeof(BRect) + 2 * sizeof(int32));
        break;
    case PictureOp::BlendingMode:
        take(sizeof(source_alpha) + sizeof(alpha_function));
        break;
    case PictureOp::LineMode:
        take(sizeof(cap_mode) + sizeof(join_mode) + sizeof(float));
        break;
    case PictureOp::FillRule:
        take(sizeof(int32));
        break;
    case PictureOp::Transform:
        take(6 * sizeof(double));
        break;
    case PictureOp::Font:
        take(sizeof(font_family) + sizeof(font_style));
        take(4 * sizeof(float) + 2 * sizeof(uint8) + sizeof(uint16) + sizeof(uint32));
        break;
    case PictureOp::ClipRegion:
        if (in.Get<uint8>() != 0)
            in.GetSpan<clipping_rect>();
        break;
    default:
        return false;
    }
    return in.IsGood();
}

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

}  // namespace

static void play_transform(Reader& in, BView* view)
{
    double values[6];
    for (double& value : values)
        value = in.Get<double>();
    if (in.IsGood()) {
        view->SetTransform(BAffineTransform(values[0], values[1], values[2], values[3], values[4],
                                            values[5]));
    }
}

void PictureData::Play(BView* view, int depth) const
{
    using Line = void (BView::*)(BPoint, BPoint, ::pattern);
    using Rect = void (BView::*)(BRect, ::pattern);
    using Round = void (BView::*)(BRect, float, float, ::pattern);
    using Ellipse = void (BView::*)(BPoint, float, float, ::pattern);
    using Arc = void (BView::*)(BPoint, float, float, float, float, ::pattern);
    using Point = void (BView::*)(BPoint);
    using Color = void (BView::*)(rgb_color);
    Reader in(bytes);
    while (!in.AtEnd()) {
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
            if (in.IsGood() && index < pictures.size() && depth < kMaxDepth)
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
        default:
            return;
        }
    }
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

namespace {

// Calls the functions of a program's table: entry 0 is for nothing.
struct Table {
    void** functions;
    int32 entries;
    void* userData;

    template <class... Args>
    void Call(int32 index, Args... args) const
    {
        if (index < entries && functions[index] != nullptr)
            reinterpret_cast<void (*)(void*, Args...)>(functions[index])(userData, args...);
    }
};

enum TableEntry : int32 {
    kTableMovePenBy = 1,
    kTableStrokeLine,
    kTableStrokeRect,
    kTableFillRect,
    kTableStrokeRoundRect,
    kTableFillRoundRect,
    kTableStrokeBezier,
    kTableFillBezier,
    kTableStrokeArc,
    kTableFillArc,
    kTableStrokeEllipse,
    kTableFillEllipse,
    kTableStrokePolygon,
    kTableFillPolygon,
    kTableDrawString = 17,
    kTablePushState = 22,
    kTablePopState = 23,
    kTableOrigin = 28,
    kTablePenLocation = 29,
    kTableDrawingMode = 30,
    kTablePenSize = 32,
    kTableHighColor = 33,
    kTableLowColor = 34,
    kTablePattern = 35,
    kTableScale = 36
};

}  // namespace

// Each call of the table, in the order of the recording; a picture inside comes as its calls.
void PictureData::PlayTable(void** functions, int32 entries, void* userData) const
{
    const Table table{functions, entries, userData};
    Reader in(bytes);
    auto with_pattern = [&](auto draw) {
        const pattern fill = in.Get<pattern>();
        table.Call(kTablePattern, fill);
        draw();
    };
    while (!in.AtEnd()) {
        const PictureOp op = PictureOp(in.Get<uint8>());
        switch (op) {
        case PictureOp::MovePenTo:
            table.Call(kTablePenLocation, in.Get<BPoint>());
            break;
        case PictureOp::StrokeLine: {
            const BPoint start = in.Get<BPoint>(), end = in.Get<BPoint>();
            with_pattern([&] { table.Call(kTableStrokeLine, start, end); });
            break;
        }
        case PictureOp::LineArray:
            for (const LineArray::Line& line : in.GetSpan<LineArray::Line>()) {
                table.Call(kTableHighColor, line.color);
                table.Call(kTableStrokeLine, line.start, line.end);
            }
            break;
        case PictureOp::StrokeRect:
        case PictureOp::FillRect: {
            const BRect rect = in.Get<BRect>();
            with_pattern([&] {
                table.Call(op == PictureOp::FillRect ? kTableFillRect : kTableStrokeRect, rect);
            });
            break;
        }
        case PictureOp::StrokeRoundRect:
        case PictureOp::FillRoundRect: {
            const BRect rect = in.Get<BRect>();
            const BPoint radii = in.Get<BPoint>();
            with_pattern([&] {
                table.Call(op == PictureOp::FillRoundRect ? kTableFillRoundRect
                                                          : kTableStrokeRoundRect,
                           rect, radii);
            });
            break;
        }
        case PictureOp::StrokeEllipse:
        case PictureOp::FillEllipse: {
            const BPoint center = in.Get<BPoint>(), radii = in.Get<BPoint>();
            with_pattern([&] {
                table.Call(op == PictureOp::FillEllipse ? kTableFillEllipse : kTableStrokeEllipse,
                           center, radii);
            });
            break;
        }
        case PictureOp::StrokeArc:
        case PictureOp::FillArc: {
            const BPoint center = in.Get<BPoint>(), radii = in.Get<BPoint>();
            const float start = in.Get<float>(), arc = in.Get<float>();
            with_pattern([&] {
                table.Call(op == PictureOp::FillArc ? kTableFillArc : kTableStrokeArc, center,
                           radii, start, arc);
            });
            break;
        }
        case PictureOp::StrokeBezier:
        case PictureOp::FillBezier: {
            auto points = in.GetSpan<BPoint>();
            if (points.size() == 4) {
                with_pattern([&] {
                    table.Call(op == PictureOp::FillBezier ? kTableFillBezier : kTableStrokeBezier,
                               points.data());
                });
            }
            break;
        }
        case PictureOp::StrokePolygon: {
            auto points = in.GetSpan<BPoint>();
            const bool closed = in.Get<uint8>() != 0;
            with_pattern([&] {
                table.Call(kTableStrokePolygon, int32(points.size()), points.data(), closed);
            });
            break;
        }
        case PictureOp::FillPolygon: {
            auto points = in.GetSpan<BPoint>();
            with_pattern(
                [&] { table.Call(kTableFillPolygon, int32(points.size()), points.data()); });
            break;
        }
        case PictureOp::DrawString: {
            table.Call(kTablePenLocation, in.Get<BPoint>());
            const escapement_delta delta = in.Get<escapement_delta>();
            auto text = in.GetSpan<char>();
            text.push_back(0);
            table.Call(kTableDrawString, text.data(), delta.nonspace, delta.space);
            break;
        }
        case PictureOp::DrawPicture: {
            const size_t index = size_t(in.Get<int32>());
            const BPoint where = in.Get<BPoint>();
            if (!in.IsGood() || index >= pictures.size())
                break;
            table.Call(kTablePushState);
            table.Call(kTableOrigin, where);
            pictures[index]->PlayTable(functions, entries, userData);
            table.Call(kTablePopState);
            break;
        }
        case PictureOp::HighColor:
            table.Call(kTableHighColor, in.Get<rgb_color>());
            break;
        case PictureOp::LowColor:
            table.Call(kTableLowColor, in.Get<rgb_color>());
            break;
        case PictureOp::DrawingMode:
            table.Call(kTableDrawingMode, int16(in.Get<int32>()));
            break;
        case PictureOp::PenSize:
            table.Call(kTablePenSize, in.Get<float>());
            break;
        case PictureOp::Origin:
            table.Call(kTableOrigin, in.Get<BPoint>());
            break;
        case PictureOp::Scale:
            table.Call(kTableScale, in.Get<float>());
            break;
        case PictureOp::PushState:
            table.Call(kTablePushState);
            break;
        case PictureOp::PopState:
            table.Call(kTablePopState);
            break;
        default:
            if (!Skip(in, op))
                return;
        }
    }
}

// Flat pictures: a head, the calls, the bitmaps, the pictures inside.

static bool write(BDataIO* stream, const void* data, size_t size)
{
    return stream->Write(data, size) == ssize_t(size);
}

static bool read(BDataIO* stream, void* data, size_t size)
{
    return stream->Read(data, size) == ssize_t(size);
}

struct FlatHead {
    uint32 magic = kMagic;
    uint32 version = kVersion;
    uint32 length = 0;
    uint32 bitmaps = 0;
    uint32 pictures = 0;
};

struct FlatBitmap {
    BRect bounds;
    int32 space = 0;
    int32 bytesPerRow = 0;
    int32 length = 0;
};

static bool flatten(const PictureData& data, BDataIO* stream)
{
    FlatHead head;
    head.length = uint32(data.bytes.size());
    head.bitmaps = uint32(data.bitmaps.size());
    head.pictures = uint32(data.pictures.size());
    if (!write(stream, &head, sizeof(head)) ||
        !write(stream, data.bytes.data(), data.bytes.size()))
        return false;
    for (const auto& bitmap : data.bitmaps) {
        FlatBitmap flat;
        flat.bounds = bitmap->Bounds();
        flat.space = bitmap->ColorSpace();
        flat.bytesPerRow = bitmap->BytesPerRow();
        flat.length = bitmap->BitsLength();
        if (!write(stream, &flat, sizeof(flat)) ||
            !write(stream, bitmap->Bits(), size_t(flat.length)))
            return false;
    }
    for (const auto& picture : data.pictures) {
        if (!flatten(*picture, stream))
            return false;
    }
    return true;
}

static std::shared_ptr<PictureData> unflatten(BDataIO* stream, int depth)
{
    FlatHead head;
    if (depth > kMaxDepth || !read(stream, &head, sizeof(head)) || head.magic != kMagic ||
        head.version != kVersion)
        return nullptr;
    auto data = std::make_shared<PictureData>();
    // By pieces: a damaged length must not ask for memory that no stream fills.
    for (size_t left = head.length; left > 0;) {
        const size_t part = std::min<size_t>(left, 65536), start = data->bytes.size();
        data->bytes.resize(start + part);
        if (!read(stream, data->bytes.data() + start, part))
            return nullptr;
        left -= part;
    }
    for (uint32 i = 0; i < head.bitmaps; i++) {
        FlatBitmap flat;
        if (!read(stream, &flat, sizeof(flat)))
            return nullptr;
        auto bitmap = std::make_shared<BBitmap>(flat.bounds, 0, color_space(flat.space),
                                                flat.bytesPerRow);
        if (bitmap->BitsLength() != flat.length ||
            !read(stream, bitmap->Bits(), size_t(flat.length)))
            return nullptr;
        data->bitmaps.push_back(std::move(bitmap));
    }
    for (uint32 i = 0; i < head.pictures; i++) {
        auto picture = unflatten(stream, depth + 1);
        if (picture == nullptr)
            return nullptr;
        data->pictures.push_back(std::move(picture));
    }
    return data;
}

}  // namespace BPrivate

using BPrivate::PictureData;
using BPrivate::PictureOp;

BPicture::BPicture() : fData(std::make_shared<PictureData>()) {}

BPicture::BPicture(const BPicture& other) : BArchivable(), fData(other.fData) {}

BPicture::BPicture(BMessage* data) : BArchivable(data), fData(std::make_shared<PictureData>())
{
    const void* bytes;
    ssize_t size;
    if (data == nullptr || data->FindData("_data", B_RAW_TYPE, &bytes, &size) != B_OK)
        return;
    BMemoryIO stream(bytes, size_t(size));
    Unflatten(&stream);
}

BPicture::~BPicture() = default;

BArchivable* BPicture::Instantiate(BMessage* data)
{
    return validate_instantiation(data, "BPicture") ? new (std::nothrow) BPicture(data) : nullptr;
}

status_t BPicture::Archive(BMessage* data, bool deep) const
{
    status_t status = BArchivable::Archive(data, deep);
    if (status != B_OK)
        return status;
    BMallocIO stream;
    if (!BPrivate::flatten(*fData, &stream))
        return B_NO_MEMORY;
    return data->AddData("_data", B_RAW_TYPE, stream.Buffer(), ssize_t(stream.BufferLength()));
}

status_t BPicture::Perform(perform_code code, void* arg)
{
    return BArchivable::Perform(code, arg);
}

status_t BPicture::Flatten(BDataIO* stream)
{
    if (stream == nullptr)
        return B_BAD_VALUE;
    return BPrivate::flatten(*fData, stream) ? B_OK : B_IO_ERROR;
}

status_t BPicture::Unflatten(BDataIO* stream)
{
    if (stream == nullptr)
        return B_BAD_VALUE;
    std::shared_ptr<PictureData> data = BPrivate::unflatten(stream, 0);
    if (data == nullptr)
        return B_BAD_DATA;
    fData = std::move(data);
    return B_OK;
}

status_t BPicture::Play(void** callBackTable, int32 tableEntries, void* userData)
{
    if (callBackTable == nullptr || tableEntries < 0)
        return B_BAD_VALUE;
    fData->PlayTable(callBackTable, tableEntries, userData);
    return B_OK;
}

// The views' part. A recording begun in another one goes on when the inner one ends.

static void begin_recording(BPrivate::ViewData& data, BPicture* picture,
                            std::unique_ptr<PictureData> start)
{
    data.pictures.emplace_back(picture, start.get());
    data.recording = start.release();
    data.Outdate();
}

void BView::BeginPicture(BPicture* a_picture)
{
    if (a_picture != nullptr)
        begin_recording(*fData, a_picture, std::make_unique<PictureData>());
}

void BView::AppendToPicture(BPicture* a_picture)
{
    if (a_picture != nullptr)
        begin_recording(*fData, a_picture, std::make_unique<PictureData>(*a_picture->fData));
}

BPicture* BView::EndPicture()
{
    if (fData->pictures.empty())
        return nullptr;
    auto [picture, data] = fData->pictures.back();
    fData->pictures.pop_back();
    fData->recording = fData->pictures.empty() ? nullptr : fData->pictures.back().second;
    fData->Outdate();
    picture->fData.reset(data);
    return picture;
}

void BView::DrawPicture(const BPicture* a_picture)
{
    DrawPicture(a_picture, fData->state.pen);
}

void BView::DrawPicture(const BPicture* a_picture, BPoint where)
{
    if (a_picture == nullptr)
        return;
    // The picture may be drawn while it is recorded anew.
    const std::shared_ptr<const PictureData> data = a_picture->fData;
    if (fData->recording != nullptr)
        fData->recording->AddPicture(data, where);
    else
        PictureData::PlayAt(*data, this, where, 0);
}

void BView::DrawPicture(const char* filename, long offset, BPoint where)
{
    if (filename == nullptr)
        return;
    std::unique_ptr<FILE, int (*)(FILE*)> file(fopen(filename, "rb"), fclose);
    if (file == nullptr || fseek(file.get(), offset, SEEK_SET) != 0)
        return;
    BMallocIO stream;
    char part[4096];
    while (size_t count = fread(part, 1, sizeof(part), file.get()))
        stream.Write(part, count);
    stream.Seek(0, SEEK_SET);
    BPicture picture;
    if (picture.Unflatten(&stream) == B_OK)
        DrawPicture(&picture, where);
}

void BView::DrawPictureAsync(const BPicture* a_picture)
{
    DrawPicture(a_picture);
}

void BView::DrawPictureAsync(const BPicture* a_picture, BPoint where)
{
    DrawPicture(a_picture, where);
}

void BView::DrawPictureAsync(const char* filename, long offset, BPoint where)
{
    DrawPicture(filename, offset, where);
}

// Views do not draw into files.
void BView::SetDiskMode(char*, long) {}
