// Drawing and measuring text. What a thread has drawn lately comes out of its table of finished
// runs and goes to the painter as one mask; giant and transformed text is drawn from the outlines.

#include <server/text/Fonts.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

#include <server/text/TextLayout.h>
#include <server/text/TextRuns.h>

#include "server/painter/PainterUnits.h"
#include "support/Boxes.h"
#include "support/ThreadOwned.h"

namespace server {

namespace {

constexpr clipping_rect kNothing = BPrivate::kEmptyBox;
constexpr float kFarthest = 1e9f;  // pens beyond it draw nothing: pixels are 32-bit numbers

void join(clipping_rect& all, const clipping_rect& more) { all = BPrivate::unite(all, more); }

bool within_reach(const BPoint& pen)
{
    return std::abs(pen.x) < kFarthest && std::abs(pen.y) < kFarthest;
}

bool touches(const clipping_rect& a, const clipping_rect& b)
{
    return !BPrivate::is_empty(a) && BPrivate::overlap(a, b);
}

bool wants_outlines(const Paint& paint, const FontSpec& font, RunScale scale)
{
    return font.size * scale.times > kLargestKeptSize || paint.transform != nullptr;
}

// The lines of a face, and the bar behind a negative one, along the whole text.
clipping_rect draw_bar(const Target& target, const Paint& paint, const FontSpec& font, BPoint pen,
                       float width, float top, float bottom)
{
    if (!(width > 0.0f) || !within_reach(pen))
        return kNothing;
    Turn turn(font.rotation);
    if (!turn.turned) {
        float left = std::floor(pen.x + 0.5f), base = std::floor(pen.y + 0.5f);
        return FillRect(
            target, paint,
            BRect(left, base + std::round(top), left + std::max(0.0f, std::round(width) - 1.0f),
                  base + std::max(std::round(top), std::round(bottom) - 1.0f)));
    }
    const BPoint corners[4] = {pen + turn.At(0, top), pen + turn.At(width, top),
                               pen + turn.At(width, bottom), pen + turn.At(0, bottom)};
    return FillPolygon(target, paint, corners, 4);
}

clipping_rect draw_lines(const Target& target, const Paint& paint, const FontSpec& font, BPoint pen,
                         float width)
{
    clipping_rect changed = kNothing;
    float size = std::min(font.size, kLargestSize);
    float thick = std::max(1.0f, std::round(size / 16.0f));
    if (font.face & B_UNDERSCORE_FACE) {
        float top = std::max(1.0f, std::round(size / 9.0f));
        join(changed, draw_bar(target, paint, font, pen, width, top, top + thick));
    }
    if (font.face & B_STRIKEOUT_FACE) {
        float top = -std::round(size * 0.28f);
        join(changed, draw_bar(target, paint, font, pen, width, top, top + thick));
    }
    return changed;
}

clipping_rect draw_run_at(const Target& target, const Paint& paint, const TextRun& run, int32 x,
                          int32 y)
{
    clipping_rect ink = {run.ink.left + x, run.ink.top + y, run.ink.right + x, run.ink.bottom + y};
    if (!touches(ink, target.bounds))
        return kNothing;
    if (run.mask != nullptr) {
        int32 width = ink.right - ink.left + 1;
        return FillMask(target, paint, run.mask.get(), width, ink.left, ink.top, width,
                        ink.bottom - ink.top + 1);
    }
    clipping_rect changed = kNothing;
    for (const RunGlyph& set : run.glyphs) {
        const Glyph& glyph = *set.glyph;
        clipping_rect box = {set.x + x, set.y + y, set.x + x + glyph.width - 1,
                             set.y + y + glyph.height - 1};
        if (touches(box, target.bounds)) {
            join(changed, FillMask(target, paint, glyph.bits.get(), glyph.width, box.left, box.top,
                                   glyph.width, glyph.height));
        }
    }
    return changed;
}

// Draws one piece from finished pixels and returns its width. The pen is pixels, the width is not
// scaled.
float draw_piece(const Target& target, const Paint& paint, const FontSpec& font, const char* text,
                 int32 length, const escapement_delta* delta, RunScale scale, BPoint pen,
                 clipping_rect& changed)
{
    bool whole = font.rotation == 0.0f &&
                 (font.spacing == B_BITMAP_SPACING || font.spacing == B_FIXED_SPACING);
    bool seen = within_reach(pen);
    float x = 0.0f, y = 0.0f;
    GlyphPhase phase;
    if (seen && whole) {
        x = std::floor(pen.x + 0.5f);
        y = std::floor(pen.y + 0.5f);
    } else if (seen) {
        x = std::floor(pen.x);
        y = std::floor(pen.y);
        phase.x = static_cast<uint8>((pen.x - x) * 4.0f);
        phase.y = static_cast<uint8>((pen.y - y) * 4.0f);
    }
    auto run = FindRun(font, text, length, delta, phase, scale, RunUse::Draw);
    if (seen) {
        join(changed,
             draw_run_at(target, paint, *run, static_cast<int32>(x), static_cast<int32>(y)));
    }
    return run->width;
}

FT_Matrix matrix_of(const BAffineTransform* transform)
{
    if (transform == nullptr)
        return {0x10000, 0, 0, 0x10000};
    auto fixed = [](double value) {
        double bounded = std::isfinite(value) ? std::clamp(value, -30000.0, 30000.0) : 0.0;
        return static_cast<FT_Fixed>(std::lround(bounded * 65536.0));
    };
    // The outline's y points up, the transformation's down.
    return {fixed(transform->sx), fixed(-transform->shx), fixed(-transform->shy),
            fixed(transform->sy)};
}

// Draws one piece from the outlines, clipped, and returns its width.
float draw_outlines(const Target& target, const Paint& paint, const FontSpec& font,
                    const char* text, int32 length, const escapement_delta* delta, RunScale scale,
                    BPoint pen, clipping_rect& changed)
{
    Turn turn(font.rotation);
    FT_Matrix matrix = matrix_of(paint.transform);
    Paint plain = paint;
    plain.transform = nullptr;
    std::vector<uint8> bits;
    BPrivate::MutexLock lock(FontLock());
    Layout layout;  // gives its fonts back with the lock held
    LayOut(font, text, length, delta, &layout);
    std::vector<std::shared_ptr<ScaledFont>> drawn;
    for (const auto& each : layout.fonts)
        drawn.push_back(DrawnFont(font, each, scale));
    for (const PlacedGlyph& placed : layout.glyphs) {
        BPoint offset = turn.At(placed.x, placed.y);
        double x = static_cast<double>(pen.x) + offset.x * scale.times;
        double y = static_cast<double>(pen.y) + offset.y * scale.times;
        if (const BAffineTransform* transform = paint.transform) {
            double movedX = x * transform->sx + y * transform->shx + transform->tx;
            y = x * transform->shy + y * transform->sy + transform->ty;
            x = movedX;
        }
        clipping_rect box;
        if (!drawn[placed.font]->RasterClipped(placed.glyph, matrix, x, y, target.bounds, &box,
                                               &bits)) {
            continue;
        }
        lock.Unlock();
        int32 width = box.right - box.left + 1;
        join(changed, FillMask(target, plain, bits.data(), width, box.left, box.top, width,
                               box.bottom - box.top + 1));
        lock.Lock();
    }
    return layout.width;
}

// True if a piece that is `width` wide cannot reach the target, with room for what glyphs have
// outside their own width. All of it is pixels.
bool misses(const Target& target, float size, float rotation, BPoint pen, float width)
{
    BPoint end = pen + Turn(rotation).At(width, 0);
    double room = 4.0 * std::min(size, kLargestSize) + 16.0;
    return std::max(pen.x, end.x) + room < target.bounds.left ||
           std::min(pen.x, end.x) - room > target.bounds.right ||
           std::max(pen.y, end.y) + room < target.bounds.top ||
           std::min(pen.y, end.y) - room > target.bounds.bottom;
}

float measure_piece(const FontSpec& font, const char* text, int32 length,
                    const escapement_delta* delta)
{
    BPrivate::MutexLock lock(FontLock());
    Layout layout;
    LayOut(font, text, length, delta, &layout);
    return layout.width;
}

// `target` and `paint` are those of pixels.
clipping_rect draw_scaled_text(const Target& target, const Paint& paint, const FontSpec& font,
                               const char* text, int32 length, const escapement_delta* delta,
                               RunScale scale, BPoint* pen)
{
    clipping_rect changed = kNothing;
    auto in_pixels = [=](BPoint place) {
        return BPoint(place.x * scale.times, place.y * scale.times);
    };
    auto draw = wants_outlines(paint, font, scale) ? draw_outlines : draw_piece;
    if (length <= kPieceBytes) {
        float width =
            draw(target, paint, font, text, length, delta, scale, in_pixels(*pen), changed);
        *pen += Turn(font.rotation).At(width, 0);
        return changed;
    }
    // Most of a long text is out of sight: only pieces that may be seen are drawn and kept.
    Turn turn(font.rotation);
    BPoint start = *pen;
    double along = 0.0;
    while (length > 0) {
        int32 piece = PieceLength(font, text, length);
        float width = measure_piece(font, text, piece, delta);
        const BPoint place = in_pixels(*pen);
        if (paint.transform != nullptr ||
            !misses(target, font.size * scale.times, font.rotation, place, width * scale.times))
            draw(target, paint, font, text, piece, delta, scale, place, changed);
        along += width;
        *pen = start + turn.At(along, 0);
        text += piece;
        length -= piece;
    }
    return changed;
}

clipping_rect draw_text(const Target& target, const Paint& paint, const FontSpec& font,
                        const char* text, int32 length, const escapement_delta* delta, BPoint* pen)
{
    if (!is_scaled(target))
        return draw_scaled_text(target, paint, font, text, length, delta, {}, pen);
    const PixelTarget pixels(target);
    return draw_scaled_text(pixels, PixelPaint(paint, pixels, PixelPaint::Places::Edges), font,
                            text, length, delta, {pixels.Scale()}, pen);
}

}  // namespace

float StringWidth(const FontSpec& font, const char* text, int32 length,
                  const escapement_delta* delta)
{
    length = TextLength(text, length);
    if (length == 0)
        return 0.0f;
    if (length <= kPieceBytes)
        return RunWidth(font, text, length, delta);
    double width = 0.0;
    while (length > 0) {
        int32 piece = PieceLength(font, text, length);
        width += measure_piece(font, text, piece, delta);
        text += piece;
        length -= piece;
    }
    return static_cast<float>(width);
}

clipping_rect DrawString(const Target& target, const Paint& paint, const FontSpec& font,
                         const char* text, int32 length, const escapement_delta* delta, BPoint* pen)
{
    length = TextLength(text, length);
    if (length == 0 || target.surface == nullptr)
        return kNothing;
    constexpr uint16 kBars = B_UNDERSCORE_FACE | B_STRIKEOUT_FACE | B_NEGATIVE_FACE;
    if ((font.face & kBars) == 0)
        return draw_text(target, paint, font, text, length, delta, pen);

    clipping_rect changed = kNothing;
    BPoint start = *pen;
    Paint ink = paint;
    if (font.face & B_NEGATIVE_FACE) {
        font_height height;
        FontHeight(font, &height);
        float width = StringWidth(font, text, length, delta);
        join(changed, draw_bar(target, paint, font, start, width, -height.ascent, height.descent));
        std::swap(ink.high, ink.low);
    }
    join(changed, draw_text(target, ink, font, text, length, delta, pen));
    float width = std::hypot(pen->x - start.x, pen->y - start.y);
    join(changed, draw_lines(target, ink, font, start, width));
    return changed;
}

clipping_rect DrawStringAt(const Target& target, const Paint& paint, const FontSpec& font,
                           const char* text, int32 length, const BPoint* places, int32 placeCount,
                           BPoint* pen)
{
    clipping_rect changed = kNothing;
    length = TextLength(text, length);
    for (int32 i = 0; i < placeCount && places != nullptr && length > 0; i++) {
        uint32 code;
        int32 size = NextCharacter(font, text, length, &code);
        *pen = places[i];
        join(changed, DrawString(target, paint, font, text, size, nullptr, pen));
        text += size;
        length -= size;
    }
    if (length > 0)
        join(changed, DrawString(target, paint, font, text, length, nullptr, pen));
    return changed;
}

void FontHeight(const FontSpec& font, font_height* height)
{
    struct Known {
        uint32 ids = 0;
        float size = 0.0f;
        uint32 generation = ~0u;
        font_height height = {};
    };
    struct Table {
        Known slots[16];
    };
    thread_local Table* tTable = nullptr;
    Table* const table = BPrivate::thread_owned(&tTable);
    Known unkept;
    uint32 ids = static_cast<uint32>(font.family) << 16 | font.style;
    uint32 size = font.size > 0.0f ? static_cast<uint32>(std::min(font.size, kLargestSize)) : 0;
    const uint32 place = ((ids >> 16) * 3 + ids * 7 + size) & 15;
    Known& slot = table != nullptr ? table->slots[place] : unkept;
    if (slot.ids == ids && slot.size == font.size && slot.generation == RunGeneration()) {
        *height = slot.height;
        return;
    }

    *height = {};
    BPrivate::MutexLock lock(FontLock());
    auto scaled = ScaledFont::Get(font, FontCatalog::Get().StyleFor(font.family, font.style));
    if (scaled == nullptr)
        return;
    FT_Face face = scaled->File().Face();
    // Whole pixels, as lines of text are laid out by them; a hair above one is not the next.
    float unit = scaled->Pixels() / std::max<FT_UShort>(1, face->units_per_EM);
    auto up = [](float value) { return std::max(0.0f, std::ceil(value - 0.02f)); };
    height->ascent = std::max(1.0f, up(face->ascender * unit));
    height->descent = std::max(1.0f, up(-face->descender * unit));
    height->leading = up((face->height - (face->ascender - face->descender)) * unit);
    slot = {ids, font.size, RunGeneration(), *height};
}

}  // namespace server
