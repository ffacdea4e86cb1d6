#ifndef INTERFACE_PICTURE_OPS_H
#define INTERFACE_PICTURE_OPS_H

// The drawing calls that a picture holds: one after the other an operation and its arguments, as
// their bytes. Flattened pictures are the same bytes, so an operation keeps its number.

#include <GraphicsDefs.h>
#include <Rect.h>
#include <SupportDefs.h>

#include <cstring>
#include <memory>
#include <type_traits>
#include <vector>

class BBitmap;
class BFont;
class BGradient;
class BPicture;
class BRegion;
class BShape;
class BView;

namespace BPrivate {

class Reader;

enum class PictureOp : uint8 {
    End,
    MovePenTo,
    StrokeLine,
    LineArray,
    StrokePolygon,
    FillPolygon,
    StrokeRect,
    FillRect,
    FillRegion,
    InvertRect,
    StrokeRoundRect,
    FillRoundRect,
    StrokeEllipse,
    FillEllipse,
    StrokeArc,
    FillArc,
    StrokeBezier,
    FillBezier,
    StrokeShape,
    FillShape,
    DrawString,
    DrawStringAt,
    DrawBitmap,
    DrawPicture,
    CopyBits,
    HighColor,
    LowColor,
    DrawingMode,
    BlendingMode,
    PenSize,
    LineMode,
    FillRule,
    Origin,
    Scale,
    Transform,
    Font,
    PushState,
    PopState,
    ClipRegion,  // null region: none
    ClipToRect,
    ClipToInverseRect,
    ClipToShape,
    ClipToPicture,
    Gradient,  // of the next call alone
    Count
};

// A run of values as an argument.
template <class Value>
struct Span {
    const Value* values;
    int32 count;
};

const int kMaxPictureDepth = 32;  // of pictures in pictures

struct [[gnu::visibility("hidden")]] PictureData
{
    std::vector<uint8> bytes;
    std::vector<std::shared_ptr<const BBitmap>> bitmaps;       // drawn by index
    std::vector<std::shared_ptr<const PictureData>> pictures;  // likewise

    template <class... Args>
    void Add(PictureOp op, const Args&... args)
    {
        bytes.push_back(uint8(op));
        (Put(args), ...);
    }
    template <class Value>
    void Put(const Value& value)
    {
        static_assert(std::is_trivially_destructible_v<Value>);
        const uint8* from = reinterpret_cast<const uint8*>(&value);
        bytes.insert(bytes.end(), from, from + sizeof(Value));
    }
    template <class Value>
    void Put(const Span<Value>& span)
    {
        Put(span.count);
        const uint8* from = reinterpret_cast<const uint8*>(span.values);
        bytes.insert(bytes.end(), from, from + sizeof(Value) * size_t(span.count));
    }

    void AddRegion(PictureOp op, const BRegion* region);
    void AddShape(PictureOp op, const BShape& shape, bool inverse);
    void AddFont(const BFont& font);
    void AddBitmap(PictureOp op, const BBitmap& bitmap, BRect from, BRect to, uint32 options);
    void AddPicture(std::shared_ptr<const PictureData> picture, BPoint where);
    // A null picture takes the clips away.
    void AddClip(std::shared_ptr<const PictureData> picture, BPoint where, bool inverse);
    // The gradient, and the call that `add_call` notes; nothing if it notes none.
    template <class AddCall>
    void AddGradient(const BGradient& gradient, AddCall add_call)
    {
        const size_t start = bytes.size();
        AddGradient(gradient);
        const size_t call = bytes.size();
        add_call();
        if (bytes.size() == call)
            bytes.resize(start);
    }
    void AddGradient(const BGradient& gradient);

    // Draws it in a view; what is damaged ends it.
    void Play(BView * view, int depth) const;
    static void PlayAt(const PictureData& picture, BView* view, BPoint where, int depth);
    // One call; false at the end and for what is damaged.
    bool PlayCall(Reader & in, BView * view, int depth) const;
    // For BPicture::Play().
    void PlayTable(void** table, int32 entries, void* userData) const;
};

}  // namespace BPrivate

#endif  // INTERFACE_PICTURE_OPS_H
