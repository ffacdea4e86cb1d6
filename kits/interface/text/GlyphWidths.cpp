// Widths of characters, in pages of 256.

#include "interface/text/GlyphWidths.h"

#include <algorithm>
#include <cmath>
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

// As drawing places them, or by their widths alone.
static void shaped_starts(const server::FontSpec& spec, const char* text, int32 length,
                          GlyphWidths::Along along, std::vector<float>* starts)
{
    const std::string ended(text, size_t(length));
    std::vector<server::CharacterMetrics> metrics(size_t(length) + 1);
    const int32 count = server::MeasureCharacters(spec, ended.c_str(), length, nullptr,
                                                  server::Boxes::None, metrics.data());
    float width = 0;
    int32 at = 0;
    for (int32 i = 0; i < count && at < length; i++) {
        uint32 code;
        const int32 size = server::NextCharacter(spec, text + at, length - at, &code);
        const server::CharacterMetrics& metric = metrics[size_t(i)];
        const float start = along == GlyphWidths::Along::Line ? metric.start : width;
        for (int32 byte = 0; byte < size; byte++)
            (*starts)[size_t(at + byte)] = start;
        width = std::max(width, start + metric.advance);
        at += size;
    }
    std::fill(starts->begin() + at, starts->end(), width);
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
