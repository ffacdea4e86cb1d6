// Recorded drawing as calls of a program's own functions: BPicture::Play().

#include <Font.h>
#include <Region.h>
#include <View.h>

#include <interface/drawing/PictureReader.h>
#include <interface/view/ViewPrivate.h>

namespace BPrivate {

namespace {

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
        case PictureOp::ClipToPicture:
            take(sizeof(int32) + sizeof(BPoint) + sizeof(bool));
            break;
        case PictureOp::Gradient:
            in.GetSpan<char>();
            break;
        default:
            return false;
    }
    return in.IsGood();
}

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

// With the pattern that follows the call's arguments.
template <class... Args>
void draw(const Table& table, Reader& in, int32 entry, Args... args)
{
    table.Call(kTablePattern, in.Get<pattern>());
    table.Call(entry, args...);
}

// The calls that draw; false for any other.
bool PlayDrawing(const Table& table, Reader& in, PictureOp op)
{
    switch (op) {
        case PictureOp::StrokeLine: {
            const BPoint start = in.Get<BPoint>(), end = in.Get<BPoint>();
            draw(table, in, kTableStrokeLine, start, end);
            return true;
        }
        case PictureOp::LineArray:
            for (const LineArray::Line& line : in.GetSpan<LineArray::Line>()) {
                table.Call(kTableHighColor, line.color);
                table.Call(kTableStrokeLine, line.start, line.end);
            }
            return true;
        case PictureOp::StrokeRect:
        case PictureOp::FillRect:
            draw(table, in, op == PictureOp::FillRect ? kTableFillRect : kTableStrokeRect,
                 in.Get<BRect>());
            return true;
        case PictureOp::StrokeRoundRect:
        case PictureOp::FillRoundRect: {
            const BRect rect = in.Get<BRect>();
            const BPoint radii = in.Get<BPoint>();
            const bool fills = op == PictureOp::FillRoundRect;
            draw(table, in, fills ? kTableFillRoundRect : kTableStrokeRoundRect, rect, radii);
            return true;
        }
        case PictureOp::StrokeEllipse:
        case PictureOp::FillEllipse: {
            const BPoint center = in.Get<BPoint>(), radii = in.Get<BPoint>();
            const bool fills = op == PictureOp::FillEllipse;
            draw(table, in, fills ? kTableFillEllipse : kTableStrokeEllipse, center, radii);
            return true;
        }
        case PictureOp::StrokeArc:
        case PictureOp::FillArc: {
            const BPoint center = in.Get<BPoint>(), radii = in.Get<BPoint>();
            const float start = in.Get<float>(), arc = in.Get<float>();
            const bool fills = op == PictureOp::FillArc;
            draw(table, in, fills ? kTableFillArc : kTableStrokeArc, center, radii, start, arc);
            return true;
        }
        default:
            return false;
    }
}

// The calls that draw what lists tell; false for any other.
bool PlayLists(const Table& table, Reader& in, PictureOp op)
{
    switch (op) {
        case PictureOp::StrokeBezier:
        case PictureOp::FillBezier: {
            auto points = in.GetSpan<BPoint>();
            const bool fills = op == PictureOp::FillBezier;
            if (points.size() == 4)
                draw(table, in, fills ? kTableFillBezier : kTableStrokeBezier, points.data());
            return true;
        }
        case PictureOp::StrokePolygon: {
            auto points = in.GetSpan<BPoint>();
            const bool closed = in.Get<uint8>() != 0;
            draw(table, in, kTableStrokePolygon, int32(points.size()), points.data(), closed);
            return true;
        }
        case PictureOp::FillPolygon: {
            auto points = in.GetSpan<BPoint>();
            draw(table, in, kTableFillPolygon, int32(points.size()), points.data());
            return true;
        }
        case PictureOp::DrawString: {
            table.Call(kTablePenLocation, in.Get<BPoint>());
            const escapement_delta delta = in.Get<escapement_delta>();
            auto text = in.GetSpan<char>();
            text.push_back(0);
            table.Call(kTableDrawString, text.data(), delta.nonspace, delta.space);
            return true;
        }
        default:
            return false;
    }
}

// The calls that change the drawing state; false for any other.
bool PlayState(const Table& table, Reader& in, PictureOp op)
{
    switch (op) {
        case PictureOp::MovePenTo:
            table.Call(kTablePenLocation, in.Get<BPoint>());
            return true;
        case PictureOp::HighColor:
            table.Call(kTableHighColor, in.Get<rgb_color>());
            return true;
        case PictureOp::LowColor:
            table.Call(kTableLowColor, in.Get<rgb_color>());
            return true;
        case PictureOp::DrawingMode:
            table.Call(kTableDrawingMode, int16(in.Get<int32>()));
            return true;
        case PictureOp::PenSize:
            table.Call(kTablePenSize, in.Get<float>());
            return true;
        case PictureOp::Origin:
            table.Call(kTableOrigin, in.Get<BPoint>());
            return true;
        case PictureOp::Scale:
            table.Call(kTableScale, in.Get<float>());
            return true;
        case PictureOp::PushState:
            table.Call(kTablePushState);
            return true;
        case PictureOp::PopState:
            table.Call(kTablePopState);
            return true;
        default:
            return false;
    }
}

}  // namespace

// Each call of the table, in the order of the recording; a picture inside comes as its calls.
void PictureData::PlayTable(void** functions, int32 entries, void* userData) const
{
    const Table table{functions, entries, userData};
    Reader in(bytes);
    while (!in.AtEnd()) {
        const PictureOp op = PictureOp(in.Get<uint8>());
        if (op == PictureOp::DrawPicture) {
            const size_t index = size_t(in.Get<int32>());
            const BPoint where = in.Get<BPoint>();
            if (!in.IsGood() || index >= pictures.size())
                continue;
            table.Call(kTablePushState);
            table.Call(kTableOrigin, where);
            pictures[index]->PlayTable(functions, entries, userData);
            table.Call(kTablePopState);
        } else if (!PlayDrawing(table, in, op) && !PlayLists(table, in, op) &&
                   !PlayState(table, in, op) && !Skip(in, op)) {
            return;
        }
    }
}

}  // namespace BPrivate
