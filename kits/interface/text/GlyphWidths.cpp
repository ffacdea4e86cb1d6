// Widths of characters, in pages of 256.

#include "interface/text/GlyphWidths.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

#include <interface/drawing/FontAccess.h>
#include <server/text/TextLayout.h>
#include <support/ValidUTF8.h>

namespace BPrivate {

static const float kUnknown = NAN;
static const uint32 kCharacters = 0x110000;

GlyphWidths::GlyphWidths(const BFont& font) : fFont(font), fSpec(FontAccess::Spec(font))
{
    fSimple = (fSpec.spacing == B_BITMAP_SPACING || fSpec.spacing == B_FIXED_SPACING) &&
              fSpec.encoding == B_UNICODE_UTF8;
    for (uint32 code = 0; code < std::size(fAscii); code++)
        fAscii[code] = code == 0 ? 0 : _Measure(code);
}

float GlyphWidths::_Measure(uint32 code) const
{
    if (!fSimple || !server::StandsAlone(code))
        return -1;
    char bytes[4];
    return server::StringWidth(fSpec, bytes, int32(put_utf8(code, bytes)), nullptr);
}

float GlyphWidths::Of(uint32 code)
{
    if (code < 128)
        return fAscii[code];
    if (code >= kCharacters || !fSimple)
        return -1;
    if (fPages.empty())
        fPages.resize(kCharacters / kPage);
    auto& page = fPages[code / kPage];
    if (page == nullptr) {
        page.reset(new float[kPage]);
        std::fill_n(page.get(), kPage, kUnknown);
    }
    float& width = page[code % kPage];
    if (std::isnan(width))
        width = _Measure(code);
    return width;
}

float GlyphWidths::Sum(const char* text, int32 length)
{
    float sum = 0;
    std::string_view rest(text, size_t(length));
    while (fSimple && !rest.empty()) {
        const auto byte = uint8(rest[0]);
        if (byte < 0x80) {
            sum += fAscii[byte];
            rest.remove_prefix(1);
            continue;
        }
        uint32 code;
        const size_t size = next_character(rest, &code);
        const float width = Of(code);
        if (width < 0)
            break;
        sum += width;
        rest.remove_prefix(size);
    }
    return rest.empty() ? sum : server::StringWidth(fSpec, text, length, nullptr);
}

namespace {

struct Measured {
    int32 offset;
    int32 size;
    float left;
    float advance;
    bool turned;

    float Right() const { return left + advance; }
    float Before() const { return turned ? Right() : left; }
    float Behind() const { return turned ? left : Right(); }
};

}  // namespace

// The characters of a text as drawing places them.
static std::vector<Measured> measured(const server::FontSpec& spec, const char* text, int32 length)
{
    const std::string ended(text, size_t(length));
    std::vector<server::CharacterMetrics> metrics(size_t(length) + 1);
    const int32 count = server::MeasureCharacters(spec, ended.c_str(), length, nullptr,
                                                  server::Boxes::None, metrics.data());
    std::vector<Measured> characters;
    int32 at = 0;
    for (int32 i = 0; i < count && at < length; i++) {
        uint32 code;
        const int32 size = server::NextCharacter(spec, text + at, length - at, &code);
        const server::CharacterMetrics& metric = metrics[size_t(i)];
        characters.push_back({at, size, metric.start, metric.advance, metric.turned});
        at += size;
    }
    return characters;
}

// As drawing places them, or by their widths alone.
static void shaped_starts(const server::FontSpec& spec, const char* text, int32 length,
                          GlyphWidths::Along along, std::vector<float>* starts)
{
    const std::vector<Measured> characters = measured(spec, text, length);
    const bool on_line = along == GlyphWidths::Along::Line;
    float start = on_line && !characters.empty() ? characters[0].Before() : 0;
    int32 behind = 0;
    for (const Measured& each : characters) {
        std::fill_n(starts->begin() + each.offset, each.size, start);
        if (each.advance > 0)  // else it stands with the one before
            start = on_line ? each.Behind() : start + each.advance;
        behind = each.offset + each.size;
    }
    std::fill(starts->begin() + behind, starts->end(), start);
}

GlyphWidths::Side GlyphWidths::SideAt(const char* text, int32 length, float x) const
{
    Side side = {0, false, 0};
    float nearest = INFINITY;
    for (const Measured& each : measured(fSpec, text, length)) {
        const float off = std::fabs(x - std::clamp(x, each.left, each.Right()));
        if (each.advance <= 0 || off >= nearest)
            continue;
        nearest = off;
        const bool left = x < each.left + each.advance / 2;
        side = {each.offset, left == each.turned, left ? each.left : each.Right()};
    }
    return side;
}

std::vector<GlyphWidths::Span> GlyphWidths::Spans(const char* text, int32 length, int32 from,
                                                  int32 to) const
{
    const float kTouching = 0.01f;
    std::vector<Span> parts;
    for (const Measured& each : measured(fSpec, text, length)) {
        if (each.offset >= from && each.offset < to && each.advance > 0)
            parts.push_back({each.left, each.left + each.advance});
    }
    std::sort(parts.begin(), parts.end(),
              [](const Span& a, const Span& b) { return a.left < b.left; });
    std::vector<Span> spans;
    for (const Span& part : parts) {
        if (spans.empty() || part.left > spans.back().right + kTouching)
            spans.push_back(part);
        else
            spans.back().right = std::max(spans.back().right, part.right);
    }
    return spans;
}

void GlyphWidths::Starts(const char* text, int32 length, Along along, std::vector<float>* starts)
{
    starts->assign(size_t(length) + 1, 0);
    float x = 0;
    int32 at = 0;
    while (fSimple && at < length) {
        uint32 code;
        const auto size =
            int32(next_character(std::string_view(text + at, size_t(length - at)), &code));
        const float width = Of(code);
        if (width < 0)
            break;
        for (int32 byte = 0; byte < size; byte++)
            (*starts)[size_t(at + byte)] = x;
        x += width;
        at += size;
    }
    if (at == length)
        (*starts)[size_t(length)] = x;
    else
        shaped_starts(fSpec, text, length, along, starts);
}

}  // namespace BPrivate
