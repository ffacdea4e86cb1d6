// BTextView: fonts and colours of the text, and blocks of runs.

#include <TextView.h>

#include <ByteOrder.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <vector>

#include "interface/text/TextData.h"

namespace BPrivate {

// What `mode` names of a font, put on another.
static BFont mixed(BFont font, const BFont& with, uint32 mode)
{
    if ((mode & B_FONT_FAMILY_AND_STYLE) != 0)
        font.SetFamilyAndStyle(with.FamilyAndStyle());
    if ((mode & B_FONT_FACE) != 0 || (mode & B_FONT_FAMILY_AND_STYLE) != 0)
        font.SetFace(with.Face());
    if ((mode & B_FONT_SIZE) != 0)
        font.SetSize(with.Size());
    if ((mode & B_FONT_SHEAR) != 0)
        font.SetShear(with.Shear());
    if ((mode & B_FONT_SPACING) != 0)
        font.SetSpacing(with.Spacing());
    if ((mode & B_FONT_ENCODING) != 0)
        font.SetEncoding(with.Encoding());
    if ((mode & B_FONT_FLAGS) != 0)
        font.SetFlags(with.Flags());
    if ((mode & B_FONT_FALSE_BOLD_WIDTH) != 0)
        font.SetFalseBoldWidth(with.FalseBoldWidth());
    font.SetRotation(0);  // lines of text lie flat
    return font;
}

static bool same_color(rgb_color a, rgb_color b)
{
    return a.red == b.red && a.green == b.green && a.blue == b.blue && a.alpha == b.alpha;
}

// What of two fonts is the same.
static uint32 common_mode(const BFont& a, const BFont& b)
{
    uint32 mode = 0;
    const auto keep = [&](bool same, uint32 bit) { mode |= same ? bit : 0; };
    keep(a.FamilyAndStyle() == b.FamilyAndStyle(), B_FONT_FAMILY_AND_STYLE);
    keep(a.Size() == b.Size(), B_FONT_SIZE);
    keep(a.Shear() == b.Shear(), B_FONT_SHEAR);
    keep(true, B_FONT_ROTATION);
    keep(a.Spacing() == b.Spacing(), B_FONT_SPACING);
    keep(a.Encoding() == b.Encoding(), B_FONT_ENCODING);
    keep(a.Face() == b.Face(), B_FONT_FACE);
    keep(a.Flags() == b.Flags(), B_FONT_FLAGS);
    return mode;
}

void TextData::ChangedStyle(int32 from, int32 to)
{
    InvalidateChange(body.Rebreak(from, to));
    Resized();
}

// A new font or colour on each run of a part.
void TextData::Restyle(int32 from, int32 to, const BFont* font, uint32 mode, const rgb_color* color)
{
    const std::vector<StyleRun> before = body.Runs().Copy(from, to);
    int32 at = from;
    for (const StyleRun& run : before) {
        const TextStyle style = body.Styles().At(run.style);
        const int32 changed =
            body.StyleFor(font != nullptr ? mixed(style.font, *font, mode) : style.font,
                          color != nullptr ? *color : style.color);
        body.SetStyle(at, at + run.length, changed);
        at += run.length;
    }
    Restyled(from, before);
    ChangedStyle(from, to);
}

// Writes a change of styles down, as a step of its own. A text of one style is as the program wants
// it: that is nothing a user did.
void TextData::Restyled(int32 from, const std::vector<StyleRun>& before)
{
    if (!stylable)
        return;
    history.Begin(B_UNDO_TYPING, Selection());
    history.AddStyles(from, before, body.Runs());
    history.End(Selection());
    history.Close();
}

void TextData::ApplyRuns(int32 offset, int32 length, const text_run_array* runs)
{
    if (runs == nullptr || runs->count <= 0 || length <= 0)
        return;
    int32 from = 0;
    for (int32 i = 0; i < runs->count && from < length; i++) {
        const text_run& run = runs->runs[i];
        const int32 to =
            i + 1 < runs->count ? std::clamp(runs->runs[i + 1].offset, from, length) : length;
        const int32 style = body.StyleFor(mixed(run.font, run.font, 0), run.color);
        body.SetStyle(offset + from, offset + to, style);
        from = to;
    }
    ChangedStyle(offset, offset + length);
}

}  // namespace BPrivate

using BPrivate::StyleRun;
using BPrivate::TextData;
using BPrivate::TextStyle;

// ---- Fonts and colours

void BTextView::SetFontAndColor(const BFont* font, uint32 mode, const rgb_color* color)
{
    SetFontAndColor(fText->selStart, fText->selEnd, font, mode, color);
}

void BTextView::SetFontAndColor(int32 startOffset, int32 endOffset, const BFont* font, uint32 mode,
                                const rgb_color* color)
{
    TextData& text = *fText;
    if (color != nullptr)
        text.systemColors = false;
    if (!text.stylable) {
        startOffset = 0;
        endOffset = text.body.Length();
    }
    startOffset = text.Clamp(startOffset);
    endOffset = text.Clamp(endOffset);
    if (startOffset < endOffset) {
        text.Restyle(startOffset, endOffset, font, mode, color);
        return;
    }
    // Of a caret, or of a text that is to come.
    const int32 old = text.caretStyle >= 0
                          ? text.caretStyle
                          : text.body.Runs().At(std::max(startOffset - 1, int32(0))).style;
    const TextStyle style = text.body.Styles().At(old);
    const int32 changed =
        text.body.StyleFor(font != nullptr ? BPrivate::mixed(style.font, *font, mode) : style.font,
                           color != nullptr ? *color : style.color);
    if (text.body.Length() == 0) {
        text.body.SetOnlyStyle(changed);
        text.Relayout();
    } else if (startOffset == text.selStart && text.selStart == text.selEnd) {
        text.caretStyle = changed;
    }
}

void BTextView::GetFontAndColor(int32 offset, BFont* _font, rgb_color* _color) const
{
    const TextStyle& style = fText->body.StyleAt(fText->Clamp(offset));
    if (_font != nullptr)
        *_font = style.font;
    if (_color != nullptr)
        *_color = style.color;
}

void BTextView::GetFontAndColor(BFont* _font, uint32* _mode, rgb_color* _color,
                                bool* _sameColor) const
{
    const TextData& text = *fText;
    const bool caret = text.selStart == text.selEnd;
    const int32 at = caret ? std::max(text.selStart - 1, int32(0)) : text.selStart;
    const int32 first =
        caret && text.caretStyle >= 0 ? text.caretStyle : text.body.Runs().At(at).style;
    const TextStyle& style = text.body.Styles().At(first);
    uint32 mode = B_FONT_ALL;
    bool sameColor = true;
    for (const StyleRun& run : text.body.Runs().Copy(text.selStart, text.selEnd)) {
        const TextStyle& other = text.body.Styles().At(run.style);
        mode &= BPrivate::common_mode(style.font, other.font);
        sameColor = sameColor && BPrivate::same_color(style.color, other.color);
    }
    if (_font != nullptr)
        *_font = style.font;
    if (_mode != nullptr)
        *_mode = mode;
    if (_color != nullptr)
        *_color = style.color;
    if (_sameColor != nullptr)
        *_sameColor = sameColor;
}

void BTextView::SetRunArray(int32 startOffset, int32 endOffset, const text_run_array* runs)
{
    TextData& text = *fText;
    startOffset = text.Clamp(startOffset);
    endOffset = text.Clamp(endOffset);
    if (runs == nullptr || runs->count <= 0 || startOffset >= endOffset)
        return;
    text_run_array first = {1, {runs->runs[0]}};
    if (!text.stylable) {
        startOffset = 0;
        endOffset = text.body.Length();
        runs = &first;
    }
    const std::vector<StyleRun> before = text.body.Runs().Copy(startOffset, endOffset);
    text.ApplyRuns(startOffset, endOffset - startOffset, runs);
    text.Restyled(startOffset, before);
}

text_run_array* BTextView::RunArray(int32 startOffset, int32 endOffset, int32* _size) const
{
    const TextData& text = *fText;
    startOffset = text.Clamp(startOffset);
    endOffset = text.Clamp(endOffset);
    std::vector<StyleRun> runs = text.body.Runs().Copy(startOffset, endOffset);
    if (runs.empty())
        runs.push_back({0, text.body.Runs().At(startOffset).style});
    text_run_array* array = AllocRunArray(int32(runs.size()), _size);
    if (array == nullptr)
        return nullptr;
    int32 offset = 0;
    for (size_t i = 0; i < runs.size(); i++) {
        const TextStyle& style = text.body.Styles().At(runs[i].style);
        array->runs[i].offset = offset;
        array->runs[i].font = style.font;
        array->runs[i].color = style.color;
        offset += runs[i].length;
    }
    return array;
}

// ---- Blocks of runs

static size_t array_size(int32 count)
{
    return sizeof(text_run_array) + size_t(count - 1) * sizeof(text_run);
}

text_run_array* BTextView::AllocRunArray(int32 entryCount, int32* outSize)
{
    if (outSize != nullptr)
        *outSize = 0;
    if (entryCount <= 0 || array_size(entryCount) > size_t(INT32_MAX))
        return nullptr;
    void* block = malloc(array_size(entryCount));
    if (block == nullptr)
        return nullptr;
    auto* array = static_cast<text_run_array*>(block);
    array->count = entryCount;
    text_run* runs = array->runs;
    for (int32 i = 0; i < entryCount; i++)
        new (&runs[i]) text_run{0, BFont(), {0, 0, 0, 255}};
    if (outSize != nullptr)
        *outSize = int32(array_size(entryCount));
    return array;
}

text_run_array* BTextView::CopyRunArray(const text_run_array* orig, int32 countDelta)
{
    if (orig == nullptr || orig->count <= 0)
        return nullptr;
    const int64 count = int64(orig->count) + countDelta;
    if (count <= 0 || count > INT32_MAX)
        return nullptr;
    text_run_array* copy = AllocRunArray(int32(count));
    for (int32 i = 0; copy != nullptr && i < std::min(int32(count), orig->count); i++)
        copy->runs[i] = orig->runs[i];
    return copy;
}

// Fonts hold nothing that would have to be given back.
void BTextView::FreeRunArray(text_run_array* array) { free(array); }

// ---- Flattened runs: big-endian, as files of styled text have them

struct flat_run {
    int32 offset;
    font_family family;
    font_style style;
    uint32 size;   // float
    uint32 shear;  // float
    uint16 face;
    uint8 red, green, blue, alpha;
    uint16 spare;
} __attribute__((packed));

struct flat_head {
    uint32 magic;
    uint32 version;
    int32 count;
} __attribute__((packed));

static const uint32 kFlatMagic = 'Ali!';
static const uint32 kFlatVersion = 0;

static uint32 flat_float(float value)
{
    uint32 bits;
    memcpy(&bits, &value, sizeof(bits));
    return uint32(B_HOST_TO_BENDIAN_INT32(bits));
}

static float plain_float(uint32 bits)
{
    bits = uint32(B_BENDIAN_TO_HOST_INT32(bits));
    float value;
    memcpy(&value, &bits, sizeof(value));
    return value;
}

void* BTextView::FlattenRunArray(const text_run_array* runArray, int32* _size)
{
    if (_size != nullptr)
        *_size = 0;
    if (runArray == nullptr || runArray->count < 0)
        return nullptr;
    const size_t size = sizeof(flat_head) + size_t(runArray->count) * sizeof(flat_run);
    auto* block = size <= size_t(INT32_MAX) ? static_cast<char*>(calloc(1, size)) : nullptr;
    if (block == nullptr)
        return nullptr;
    const flat_head head = {uint32(B_HOST_TO_BENDIAN_INT32(kFlatMagic)),
                            uint32(B_HOST_TO_BENDIAN_INT32(kFlatVersion)),
                            int32(B_HOST_TO_BENDIAN_INT32(runArray->count))};
    memcpy(block, &head, sizeof(head));
    for (int32 i = 0; i < runArray->count; i++) {
        const text_run& run = runArray->runs[i];
        flat_run flat = {};
        flat.offset = int32(B_HOST_TO_BENDIAN_INT32(run.offset));
        font_family family = "";
        font_style style = "";
        run.font.GetFamilyAndStyle(&family, &style);
        memcpy(flat.family, family, sizeof(family));
        memcpy(flat.style, style, sizeof(style));
        flat.size = flat_float(run.font.Size());
        flat.shear = flat_float(run.font.Shear());
        flat.face = uint16(B_HOST_TO_BENDIAN_INT16(run.font.Face()));
        flat.red = run.color.red;
        flat.green = run.color.green;
        flat.blue = run.color.blue;
        flat.alpha = 255;
        memcpy(block + sizeof(head) + size_t(i) * sizeof(flat), &flat, sizeof(flat));
    }
    if (_size != nullptr)
        *_size = int32(size);
    return block;
}

// `_size` may say how many bytes there are; it is told how large the array is.
text_run_array* BTextView::UnflattenRunArray(const void* data, int32* _size)
{
    const int32 given = _size != nullptr && *_size > 0 ? *_size : INT32_MAX;
    if (_size != nullptr)
        *_size = 0;
    flat_head head;
    if (data == nullptr || given < int32(sizeof(head)))
        return nullptr;
    memcpy(&head, data, sizeof(head));
    const int32 count = int32(B_BENDIAN_TO_HOST_INT32(head.count));
    if (uint32(B_BENDIAN_TO_HOST_INT32(head.magic)) != kFlatMagic ||
        uint32(B_BENDIAN_TO_HOST_INT32(head.version)) != kFlatVersion || count <= 0 ||
        size_t(count) > (size_t(given) - sizeof(head)) / sizeof(flat_run))
        return nullptr;
    text_run_array* array = AllocRunArray(count, _size);
    for (int32 i = 0; array != nullptr && i < count; i++) {
        flat_run flat;
        memcpy(&flat, static_cast<const char*>(data) + sizeof(head) + size_t(i) * sizeof(flat),
               sizeof(flat));
        text_run& run = array->runs[i];
        run.offset = int32(B_BENDIAN_TO_HOST_INT32(flat.offset));
        flat.family[sizeof(flat.family) - 1] = flat.style[sizeof(flat.style) - 1] = '\0';
        run.font.SetFamilyAndStyle(flat.family, flat.style);
        run.font.SetFace(uint16(B_BENDIAN_TO_HOST_INT16(flat.face)));
        const float size = plain_float(flat.size), shear = plain_float(flat.shear);
        if (size > 0 && size < 10000)
            run.font.SetSize(size);
        if (shear >= 45 && shear <= 135)
            run.font.SetShear(shear);
        run.color = {flat.red, flat.green, flat.blue, 255};
    }
    return array;
}
