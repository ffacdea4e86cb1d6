// Recorded drawing as calls of a program's own functions: BPicture::Play().

#include <Font.h>
#include <Region.h>
#include <View.h>

#include <interface/PictureReader.h>
#include <interface/ViewPrivate.h>

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

}  // namespace BPrivate
