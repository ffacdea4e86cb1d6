// Simple letters in whole-pixel spacing stand side by side, whatever their neighbours; everything
// else (kerned text, marks, joined scripts, right-to-left runs) is shaped by HarfBuzz.

#include <server/text/TextLayout.h>

#include <hb.h>
#include <iconv.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <mutex>
#include <string_view>

#include "server/text/LineOrder.h"
#include "support/ValidUTF8.h"

namespace server {

namespace {

struct Character {
    uint32 code = 0;
    uint16 font = 0;
    uint8 level = 0;  // odd: read from the right
};

struct Range {
    uint32 first, last;
};

bool in_ranges(const Range* ranges, size_t count, uint32 code)
{
    const Range* end = ranges + count;
    const Range* found = std::upper_bound(
        ranges, end, code, [](uint32 value, const Range& range) { return value < range.first; });
    return found != ranges && code <= found[-1].last;
}

// Letters and signs that never change their shape, place or width with their neighbours.
constexpr Range kSimple[] = {
    {0x0020, 0x02FF},   {0x0370, 0x0482},   {0x048A, 0x058F},   {0x10A0, 0x10FF},
    {0x1E00, 0x200A},   {0x2010, 0x2027},   {0x202F, 0x205F},   {0x2070, 0x20CF},
    {0x2100, 0x2CEE},   {0x2CF2, 0x2DDF},   {0x2E00, 0x3029},   {0x3030, 0x3098},
    {0x309B, 0xA48F},   {0xAC00, 0xD7A3},   {0xE000, 0xFAFF},   {0xFF00, 0xFFEF},
    {0xFFFC, 0xFFFD},   {0x1D000, 0x1D164}, {0x1F000, 0x1F3FA}, {0x1F400, 0x1FAFF},
    {0x20000, 0x3FFFF},
};
// What is seen of the controls behind ASCII, which in most texts are stray bytes.
constexpr uint32 kReplacement = 0xFFFD;

// Signs that steer the layout and are never seen themselves.
constexpr Range kInvisible[] = {
    {0x0000, 0x0008}, {0x000A, 0x001F}, {0x007F, 0x007F},   {0x034F, 0x034F}, {0x061C, 0x061C},
    {0x180B, 0x180E}, {0x200B, 0x200F}, {0x2028, 0x202E},   {0x2060, 0x206F}, {0xFE00, 0xFE0F},
    {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE0FFF},
};

bool is_simple(uint32 code) { return code < 0x300 || in_ranges(kSimple, std::size(kSimple), code); }

bool is_invisible(uint32 code)
{
    return (code < 0x20 && code != '\t') ||
           (code >= 0x7F && in_ranges(kInvisible, std::size(kInvisible), code));
}

bool is_mark(uint32 code)
{
    if (code < 0x300)
        return false;
    switch (hb_unicode_general_category(hb_unicode_funcs_get_default(), code)) {
        case HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK:
        case HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK:
        case HB_UNICODE_GENERAL_CATEGORY_SPACING_MARK:
            return true;
        default:
            return false;
    }
}

// The upper half of a single-byte encoding.
const uint32* upper_half(uint8 encoding)
{
    static const char* const kNames[] = {
        nullptr,      "ISO-8859-1", "ISO-8859-2", "ISO-8859-3", "ISO-8859-4",  "ISO-8859-5",
        "ISO-8859-6", "ISO-8859-7", "ISO-8859-8", "ISO-8859-9", "ISO-8859-10", "MACINTOSH",
    };
    static uint32 tables[std::size(kNames)][128];
    static std::once_flag built[std::size(kNames)];
    if (encoding == B_UNICODE_UTF8 || encoding >= std::size(kNames))
        return nullptr;
    std::call_once(built[encoding], [encoding] {
        iconv_t converter = iconv_open("UTF-32LE", kNames[encoding]);
        for (int i = 0; i < 128; i++) {
            char byte = static_cast<char>(i + 128);
            char *in = &byte, *out = reinterpret_cast<char*>(&tables[encoding][i]);
            size_t inLeft = 1, outLeft = sizeof(uint32);
            if (converter == reinterpret_cast<iconv_t>(-1) ||
                iconv(converter, &in, &inLeft, &out, &outLeft) != 0 || outLeft != 0) {
                iconv(converter, nullptr, nullptr, nullptr, nullptr);
                tables[encoding][i] = static_cast<uint8>(byte);
            }
        }
        if (converter != reinterpret_cast<iconv_t>(-1))
            iconv_close(converter);
    });
    return tables[encoding];
}

float spaced(const FontSpec& font, const Layout& layout, float advance)
{
    switch (font.spacing) {
        case B_BITMAP_SPACING:
            return advance > 0.0f ? std::max(1.0f, std::round(advance)) : 0.0f;
        case B_FIXED_SPACING: {
            if (advance <= 0.0f)
                return 0.0f;
            ScaledFont& main = *layout.fonts[0];
            return std::max(1.0f, std::round(main.Advance(main.GlyphFor('M'))));
        }
        default:
            return advance;
    }
}

float extra(uint32 code, const escapement_delta* delta)
{
    if (delta == nullptr || is_invisible(code))
        return 0.0f;
    float value = IsSpace(code) ? delta->space : delta->nonspace;
    return std::isfinite(value) ? std::clamp(value, -1e6f, 1e6f) : 0.0f;
}

// The font that has the character: the one asked for, or one that stands in.
uint16 font_for(const FontSpec& spec, uint32 code, Layout& layout) REQUIRES(FontLock())
{
    if (layout.fonts[0]->GlyphFor(code) != 0)
        return 0;
    FontStyle* style = FontCatalog::Get().FallbackFor(layout.fonts[0]->Style(), code);
    if (style == nullptr)
        return 0;
    for (size_t i = 0; i < layout.fonts.size(); i++) {
        if (&layout.fonts[i]->Style() == style)
            return static_cast<uint16>(i);
    }
    auto font = ScaledFont::Get(spec, style);
    if (font == nullptr || font->GlyphFor(code) == 0)
        return 0;
    layout.fonts.push_back(std::move(font));
    return static_cast<uint16>(layout.fonts.size() - 1);
}

void place_simple(const FontSpec& spec, const Character* characters, int32 count,
                  const escapement_delta* delta, Layout& layout) REQUIRES(FontLock())
{
    for (int32 i = 0; i < count; i++) {
        uint32 code = characters[i].code;
        float advance = 0.0f;
        if (!is_invisible(code)) {
            uint32 drawn = code == '\t' ? ' ' : code;
            uint16 font = font_for(spec, drawn, layout);
            ScaledFont& scaled = *layout.fonts[font];
            uint32 glyph = scaled.GlyphFor(drawn);
            advance = spaced(spec, layout, scaled.Advance(glyph));
            if (!IsSpace(code))
                layout.glyphs.push_back({glyph, font, static_cast<uint16>(i), layout.width, 0.0f});
            advance += extra(code, delta);
        }
        layout.starts[i] = layout.width;
        layout.advances[i] = advance;
        layout.width += advance;
    }
}

struct Item {
    int32 start, end;
    uint8 level;
};

void shape_item(const FontSpec& spec, const Character* characters, const Item& item,
                const escapement_delta* delta, Layout& layout)
{
    ScaledFont& font = *layout.fonts[characters[item.start].font];
    hb_font_t* shaper = font.Shaper();
    static hb_buffer_t* buffer = hb_buffer_create();  // font lock
    if (shaper == nullptr) {
        // Type 1: no tables, so the letters stand side by side.
        int32 step = item.level & 1 ? -1 : 1;
        int32 i = step > 0 ? item.start : item.end - 1;
        for (; i >= item.start && i < item.end; i += step) {
            uint32 code = characters[i].code;
            float advance = 0.0f;
            if (!is_invisible(code)) {
                uint32 drawn = code == '\t' ? ' ' : step < 0 ? Mirrored(code) : code;
                uint32 glyph = font.GlyphFor(drawn);
                advance = spaced(spec, layout, font.Advance(glyph)) + extra(code, delta);
                layout.glyphs.push_back(
                    {glyph, characters[i].font, static_cast<uint16>(i), layout.width, 0.0f});
            }
            layout.starts[i] = layout.width;
            layout.advances[i] = advance;
            layout.width += advance;
        }
        return;
    }

    hb_buffer_clear_contents(buffer);
    for (int32 i = item.start; i < item.end; i++) {
        uint32 code = characters[i].code;
        if (code == '\t')
            code = ' ';
        else if (code < 0x20 || (code >= 0x7F && code < 0xA0))
            code = 0x200B;
        hb_buffer_add(buffer, code, static_cast<unsigned>(i));
    }
    hb_buffer_set_content_type(buffer, HB_BUFFER_CONTENT_TYPE_UNICODE);
    hb_buffer_set_direction(buffer, item.level & 1 ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
    hb_buffer_set_cluster_level(buffer, HB_BUFFER_CLUSTER_LEVEL_MONOTONE_GRAPHEMES);
    hb_buffer_guess_segment_properties(buffer);
    bool whole = spec.spacing == B_BITMAP_SPACING || spec.spacing == B_FIXED_SPACING;
    hb_feature_t off[] = {
        {HB_TAG('l', 'i', 'g', 'a'), 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END},
        {HB_TAG('c', 'l', 'i', 'g'), 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END},
        {HB_TAG('k', 'e', 'r', 'n'), 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END},
    };
    hb_shape(shaper, buffer, off, whole ? 3 : 2);

    unsigned count = 0;
    const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer, &count);
    const hb_glyph_position_t* places = hb_buffer_get_glyph_positions(buffer, &count);
    for (unsigned g = 0; g < count; g++) {
        uint32 cluster = infos[g].cluster;
        float advance = static_cast<float>(places[g].x_advance) / 64.0f;
        if (advance > 0.0f)
            advance = spaced(spec, layout, advance + font.SyntheticWeight());
        bool first = std::isnan(layout.starts[cluster]);
        if (first) {
            layout.starts[cluster] = layout.width;
            advance += extra(characters[cluster].code, delta);
        }
        layout.glyphs.push_back({infos[g].codepoint, characters[item.start].font,
                                 static_cast<uint16>(cluster),
                                 layout.width + static_cast<float>(places[g].x_offset) / 64.0f,
                                 static_cast<float>(-places[g].y_offset) / 64.0f});
        layout.advances[cluster] += advance;
        layout.width += advance;
    }
}

// Gives the characters their levels, and says in which order they stand; nothing for the order of
// the text.
std::vector<int32> set_levels(Character* characters, int32 count)
{
    const auto turns = [](const Character& each) { return TurnsOrder(each.code); };
    if (std::none_of(characters, characters + count, turns))
        return {};
    std::vector<uint32> codes(static_cast<size_t>(count));
    for (int32 i = 0; i < count; i++)
        codes[i] = characters[i].code;
    LineOrder line = OrderOf(codes.data(), count);
    for (int32 i = 0; i < count; i++)
        characters[i].level = line.levels[i];
    return std::move(line.order);
}

// Items as they stand. Each is of one level, so that its characters stand together.
std::vector<Item> reordered(const std::vector<Item>& items, const std::vector<int32>& order)
{
    std::vector<Item> standing;
    for (size_t at = 0; at < order.size();) {
        const auto behind =
            std::upper_bound(items.begin(), items.end(), order[at],
                             [](int32 place, const Item& item) { return place < item.start; });
        standing.push_back(behind[-1]);
        at += static_cast<size_t>(behind[-1].end - behind[-1].start);
    }
    return standing;
}

void place_shaped(const FontSpec& spec, Character* characters, int32 count,
                  const escapement_delta* delta, Layout& layout) REQUIRES(FontLock())
{
    hb_unicode_funcs_t* unicode = hb_unicode_funcs_get_default();
    const std::vector<int32> order = set_levels(characters, count);
    std::vector<Item> items;
    hb_script_t itemScript = HB_SCRIPT_COMMON;
    for (int32 i = 0; i < count; i++) {
        Character& character = characters[i];
        uint32 code = character.code == '\t' ? ' ' : character.code;
        bool joins = i > 0 && (is_mark(code) || is_invisible(code));
        if (joins &&
            (is_invisible(code) || layout.fonts[characters[i - 1].font]->GlyphFor(code) != 0)) {
            character.font = characters[i - 1].font;
        } else {
            character.font = is_invisible(code) ? 0 : font_for(spec, code, layout);
        }
        hb_script_t script = hb_unicode_script(unicode, code);
        bool neutral = script == HB_SCRIPT_COMMON || script == HB_SCRIPT_INHERITED ||
                       script == HB_SCRIPT_UNKNOWN;
        if (!items.empty() && character.font == characters[i - 1].font &&
            character.level == items.back().level &&
            (neutral || itemScript == HB_SCRIPT_COMMON || script == itemScript)) {
            items.back().end = i + 1;
        } else {
            items.push_back({i, i + 1, character.level});
            itemScript = HB_SCRIPT_COMMON;
        }
        if (!neutral)
            itemScript = script;
    }
    if (!order.empty())
        items = reordered(items, order);
    std::fill(layout.starts.begin(), layout.starts.end(), NAN);
    for (const Item& item : items)
        shape_item(spec, characters, item, delta, layout);
    // What went into another character's cluster begins where that one ends.
    for (int32 i = 0; i < count; i++) {
        layout.turned[i] = characters[i].level & 1;
        if (std::isnan(layout.starts[i]))
            layout.starts[i] = i > 0 ? layout.starts[i - 1] + layout.advances[i - 1] : 0.0f;
    }
}

// How long a piece of a text that is longer than most pieces may be.
int32 piece_limit(const FontSpec& font, const char* text)
{
    uint8 all = 0;
    for (int32 i = 0; i < kPieceBytes; i++)
        all |= static_cast<uint8>(text[i]);
    for (int32 at = 0; at < kPieceBytes && all >= 0x80;) {
        uint32 code;
        at += NextCharacter(font, text + at, kPieceBytes - at, &code);
        if (TurnsOrder(code))
            return kTurnedPieceBytes;
    }
    return kPieceBytes;
}

}  // namespace

bool IsSpace(uint32 character)
{
    return character == ' ' || character == '\t' || character == 0xA0 ||
           (character >= 0x2000 && character <= 0x200A) || character == 0x3000;
}

bool StandsAlone(uint32 character) { return is_simple(character); }

int32 NextCharacter(const FontSpec& font, const char* text, int32 length, uint32* code)
{
    const uint8* bytes = reinterpret_cast<const uint8*>(text);
    uint8 lead = bytes[0];
    if (lead < 0x80) {
        *code = lead;
        return 1;
    }
    if (const uint32* table = upper_half(font.encoding)) {
        *code = table[lead - 128];
        return 1;
    }
    const std::string_view rest(text, static_cast<size_t>(length));
    return static_cast<int32>(BPrivate::next_character(rest, code));
}

int32 TextLength(const char* text, int32 length)
{
    if (text == nullptr || length <= 0)
        return 0;
    return static_cast<int32>(strnlen(text, static_cast<size_t>(length)));
}

int32 PieceLength(const FontSpec& font, const char* text, int32 length)
{
    if (length <= kPieceBytes)
        return length;
    const int32 limit = piece_limit(font, text);
    if (length <= limit)
        return length;
    // Behind the last space; never before a mark that stands on it.
    for (int32 end = limit; end > limit / 2; end--) {
        if (text[end - 1] == ' ' && static_cast<uint8>(text[end]) < 0x80)
            return end;
    }
    int32 end = 0;
    int32 lastStart = 0;
    uint32 code;
    while (end < limit) {
        int32 size = NextCharacter(font, text + end, length - end, &code);
        if (end + size > limit)
            break;
        if (!is_mark(code))
            lastStart = end;
        end += size;
    }
    NextCharacter(font, text + end, length - end, &code);
    return is_mark(code) && lastStart > 0 ? lastStart : end;
}

void LayOut(const FontSpec& spec, const char* text, int32 length, const escapement_delta* delta,
            Layout* layout)
{
    layout->fonts.clear();
    layout->glyphs.clear();
    layout->width = 0.0f;

    static Character characters[kTurnedPieceBytes];  // font lock
    int32 count = 0;
    bool simple = spec.spacing == B_BITMAP_SPACING || spec.spacing == B_FIXED_SPACING;
    for (int32 at = 0; at < length && count < kTurnedPieceBytes; count++) {
        uint32 code;
        at += NextCharacter(spec, text + at, length - at, &code);
        characters[count] = {};
        characters[count].code = code >= 0x80 && code < 0xA0 ? kReplacement : code;
        simple = simple && is_simple(code);
    }
    layout->advances.assign(static_cast<size_t>(count), 0.0f);
    layout->starts.assign(static_cast<size_t>(count), 0.0f);
    layout->turned.assign(static_cast<size_t>(count), 0);
    FontCatalog& catalog = FontCatalog::Get();
    auto main = ScaledFont::Get(spec, catalog.StyleFor(spec.family, spec.style));
    if (main == nullptr)  // an unreadable file: the next look-up gives the plain font instead
        main = ScaledFont::Get(spec, catalog.StyleFor(spec.family, spec.style));
    if (main == nullptr)
        return;
    layout->fonts.push_back(std::move(main));
    if (simple)
        place_simple(spec, characters, count, delta, *layout);
    else
        place_shaped(spec, characters, count, delta, *layout);
}

}  // namespace server
