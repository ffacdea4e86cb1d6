// Fonts as programs hold them: a few numbers. Names, metrics and pixels come from the server's
// fonts, which all threads share. Cutting strings to a width is in FontTruncation.cpp.

#include <Font.h>

#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include <Shape.h>

#include <interface/drawing/FontAccess.h>

using server::CharacterMetrics;
using server::FontInfo;

namespace {

// Faces that are drawn onto any style and belong to none.
constexpr uint16 kDecorations =
    B_UNDERSCORE_FACE | B_NEGATIVE_FACE | B_OUTLINED_FACE | B_STRIKEOUT_FACE;

int32 length_of(const char* string)
{
    size_t length = string != nullptr ? strlen(string) : 0;
    return static_cast<int32>(std::min<size_t>(length, INT32_MAX));
}

// Measures the characters of a text; as many entries as it has, at most `count`.
std::vector<CharacterMetrics> measure(const server::FontSpec& font, const char* text, int32 count,
                                      const escapement_delta* delta, server::Boxes boxes)
{
    std::vector<CharacterMetrics> metrics;
    if (text == nullptr || count <= 0)
        return metrics;
    // No text has more characters than bytes before its end.
    metrics.resize(strnlen(text, static_cast<size_t>(count) * 4));
    count = std::min(count, static_cast<int32>(std::min<size_t>(metrics.size(), INT32_MAX)));
    metrics.resize(static_cast<size_t>(
        server::MeasureCharacters(font, text, count, delta, boxes, metrics.data())));
    return metrics;
}

// The step of the pen along a baseline, y down.
BPoint along(const server::FontSpec& font, float distance)
{
    if (font.rotation == 0.0f)
        return BPoint(distance, 0.0f);
    double angle = std::remainder(static_cast<double>(font.rotation), 360.0) * M_PI / 180.0;
    return BPoint(static_cast<float>(std::cos(angle) * distance),
                  static_cast<float>(-std::sin(angle) * distance));
}

server::Boxes boxes_for(font_metric_mode mode)
{
    return mode == B_PRINTING_METRIC ? server::Boxes::Outline : server::Boxes::Screen;
}

FontInfo info_of(const server::FontSpec& font)
{
    FontInfo info;
    server::GetFontInfo(font.family, font.style, &info);
    return info;
}

void copy_name(char* to, const char* from) { snprintf(to, B_FONT_FAMILY_LENGTH + 1, "%s", from); }

uint32 flags_of(const FontInfo& info) { return info.fixed ? B_IS_FIXED : 0; }

}  // namespace

// Ready before any code runs; which installed fonts they are is looked up on first use.
static constexpr BFont kPlain = FontAccess::Default(server::kPlainStyle, B_REGULAR_FACE);
static constexpr BFont kBold = FontAccess::Default(server::kBoldStyle, B_BOLD_FACE);
static constexpr BFont kFixed = FontAccess::Default(server::kFixedStyle, B_REGULAR_FACE);

const BFont* be_plain_font = &kPlain;
const BFont* be_bold_font = &kBold;
const BFont* be_fixed_font = &kFixed;

BFont::BFont(const BFont* font)
{
    if (font != nullptr)
        *this = *font;
}

void BFont::_SetStyle(uint16 family, uint16 style, uint16 face)
{
    fFamily = family;
    fStyle = style;
    fFace = face;
}

status_t BFont::SetFamilyAndStyle(const font_family family, const font_style style)
{
    FontInfo info = info_of(FontAccess::Spec(*this));
    status_t status = server::FindFontStyle(family, style, &info);
    if (status == B_OK)
        _SetStyle(info.familyId, info.styleId, info.face | (fFace & kDecorations));
    return status;
}

void BFont::SetFamilyAndStyle(uint32 code)
{
    FontInfo info;
    server::GetFontInfo(static_cast<uint16>(code >> 16), static_cast<uint16>(code), &info);
    _SetStyle(info.familyId, info.styleId, info.face | (fFace & kDecorations));
}

status_t BFont::SetFamilyAndFace(const font_family family, uint16 face)
{
    FontInfo info = info_of(FontAccess::Spec(*this));
    status_t status = server::FindFontFace(family, face, &info);
    if (status == B_OK)
        _SetStyle(info.familyId, info.styleId, face);
    return status;
}

void BFont::SetFace(uint16 face)
{
    if (SetFamilyAndFace(nullptr, face) != B_OK)
        fFace = face;
}

void BFont::SetSize(float size)
{
    if (std::isfinite(size))
        fSize = size;
}

void BFont::SetShear(float shear)
{
    if (std::isfinite(shear))
        fShear = shear;
}

void BFont::SetRotation(float rotation)
{
    if (std::isfinite(rotation))
        fRotation = rotation;
}

void BFont::SetFalseBoldWidth(float width)
{
    if (std::isfinite(width))
        fFalseBoldWidth = width;
}

void BFont::SetSpacing(uint8 spacing) { fSpacing = spacing; }

void BFont::SetEncoding(uint8 encoding) { fEncoding = encoding; }

void BFont::SetFlags(uint32 flags) { fFlags = flags; }

void BFont::GetFamilyAndStyle(font_family* family, font_style* style) const
{
    FontInfo info = info_of(FontAccess::Spec(*this));
    if (family != nullptr)
        copy_name(*family, info.family);
    if (style != nullptr)
        copy_name(*style, info.style);
}

uint32 BFont::FamilyAndStyle() const
{
    if (fFamily != 0)
        return static_cast<uint32>(fFamily) << 16 | fStyle;
    FontInfo info = info_of(FontAccess::Spec(*this));
    return static_cast<uint32>(info.familyId) << 16 | info.styleId;
}

font_direction BFont::Direction() const
{
    return info_of(FontAccess::Spec(*this)).rightToLeft ? B_FONT_RIGHT_TO_LEFT
                                                        : B_FONT_LEFT_TO_RIGHT;
}

bool BFont::IsFixed() const { return info_of(FontAccess::Spec(*this)).fixed; }

bool BFont::IsFullAndHalfFixed() const { return info_of(FontAccess::Spec(*this)).fullAndHalfFixed; }

BRect BFont::BoundingBox() const { return server::FontBox(FontAccess::Spec(*this)); }

unicode_block BFont::Blocks() const
{
    unicode_block blocks;
    for (const unicode_block_range& range : kUnicodeBlockMap) {
        if (IncludesBlock(range.start, range.end))
            blocks = blocks | range.block;
    }
    return blocks;
}

bool BFont::IncludesBlock(uint32 start, uint32 end) const
{
    return server::CountGlyphs(fFamily, fStyle, start, end) > 0;
}

font_file_format BFont::FileFormat() const
{
    return info_of(FontAccess::Spec(*this)).postScript ? B_POSTSCRIPT_TYPE1_WINDOWS
                                                       : B_TRUETYPE_WINDOWS;
}

int32 BFont::CountTuned() const { return 0; }

void BFont::GetTunedInfo(int32 /*index*/, tuned_font_info* info) const
{
    if (info != nullptr)
        *info = {};
}

float BFont::StringWidth(const char* string) const
{
    return StringWidth(string, length_of(string));
}

float BFont::StringWidth(const char* string, int32 length) const
{
    return server::StringWidth(FontAccess::Spec(*this), string, length, nullptr);
}

void BFont::GetStringWidths(const char* stringArray[], const int32 lengthArray[], int32 numStrings,
                            float widthArray[]) const
{
    if (stringArray == nullptr || widthArray == nullptr)
        return;
    for (int32 i = 0; i < numStrings; i++) {
        widthArray[i] = lengthArray != nullptr ? StringWidth(stringArray[i], lengthArray[i])
                                               : StringWidth(stringArray[i]);
    }
}

void BFont::GetEscapements(const char charArray[], int32 numChars, float escapementArray[]) const
{
    GetEscapements(charArray, numChars, nullptr, escapementArray);
}

void BFont::GetEscapements(const char charArray[], int32 numChars, escapement_delta* delta,
                           float escapementArray[]) const
{
    if (escapementArray == nullptr || numChars <= 0)
        return;
    auto metrics =
        measure(FontAccess::Spec(*this), charArray, numChars, delta, server::Boxes::None);
    for (size_t i = 0; i < metrics.size(); i++)
        escapementArray[i] = fSize > 0.0f ? metrics[i].advance / fSize : 0.0f;
    std::fill(escapementArray + metrics.size(), escapementArray + numChars, 0.0f);
}

void BFont::GetEscapements(const char charArray[], int32 numChars, escapement_delta* delta,
                           BPoint escapementArray[]) const
{
    GetEscapements(charArray, numChars, delta, escapementArray, nullptr);
}

void BFont::GetEscapements(const char charArray[], int32 numChars, escapement_delta* delta,
                           BPoint escapementArray[], BPoint offsetArray[]) const
{
    if (escapementArray == nullptr || numChars <= 0)
        return;
    server::FontSpec spec = FontAccess::Spec(*this);
    auto metrics = measure(spec, charArray, numChars, delta, server::Boxes::None);
    for (size_t i = 0; i < metrics.size(); i++)
        escapementArray[i] = along(spec, fSize > 0.0f ? metrics[i].advance / fSize : 0.0f);
    std::fill(escapementArray + metrics.size(), escapementArray + numChars, BPoint(0, 0));
    // No character is drawn off the place that its neighbours' widths give it.
    if (offsetArray != nullptr)
        std::fill(offsetArray, offsetArray + numChars, BPoint(0, 0));
}

void BFont::GetEdges(const char charArray[], int32 numBytes, edge_info edgeArray[]) const
{
    if (edgeArray == nullptr || numBytes <= 0)
        return;
    server::FontSpec spec = FontAccess::Spec(*this);
    spec.rotation = 0.0f;
    auto metrics = measure(spec, charArray, numBytes, nullptr, server::Boxes::Outline);
    for (size_t i = 0; i < metrics.size(); i++) {
        const CharacterMetrics& one = metrics[i];
        bool blank = one.right < one.left || !(fSize > 0.0f);
        edgeArray[i] = blank ? edge_info{0, 0}
                             : edge_info{one.left / fSize, (one.advance - one.right) / fSize};
    }
    std::fill(edgeArray + metrics.size(), edgeArray + numBytes, edge_info{0, 0});
}

void BFont::GetHeight(font_height* height) const
{
    if (height != nullptr)
        server::FontHeight(FontAccess::Spec(*this), height);
}

void BFont::GetBoundingBoxesAsGlyphs(const char charArray[], int32 numChars, font_metric_mode mode,
                                     BRect boundingBoxArray[]) const
{
    if (boundingBoxArray == nullptr || numChars <= 0)
        return;
    auto metrics = measure(FontAccess::Spec(*this), charArray, numChars, nullptr, boxes_for(mode));
    for (size_t i = 0; i < metrics.size(); i++)
        boundingBoxArray[i] = metrics[i].box;
    std::fill(boundingBoxArray + metrics.size(), boundingBoxArray + numChars, BRect());
}

void BFont::GetBoundingBoxesAsString(const char charArray[], int32 numChars, font_metric_mode mode,
                                     escapement_delta* delta, BRect boundingBoxArray[]) const
{
    if (boundingBoxArray == nullptr || numChars <= 0)
        return;
    server::FontSpec spec = FontAccess::Spec(*this);
    auto metrics = measure(spec, charArray, numChars, delta, boxes_for(mode));
    for (size_t i = 0; i < metrics.size(); i++) {
        BPoint start = along(spec, metrics[i].start);
        bool seen = metrics[i].box.IsValid();
        boundingBoxArray[i] = seen ? metrics[i].box.OffsetByCopy(start) : BRect();
    }
    std::fill(boundingBoxArray + metrics.size(), boundingBoxArray + numChars, BRect());
}

void BFont::GetBoundingBoxesForStrings(const char* stringArray[], int32 numStrings,
                                       font_metric_mode mode, escapement_delta deltas[],
                                       BRect boundingBoxArray[]) const
{
    if (stringArray == nullptr || boundingBoxArray == nullptr)
        return;
    for (int32 i = 0; i < numStrings; i++) {
        std::vector<BRect> boxes(static_cast<size_t>(length_of(stringArray[i])));
        GetBoundingBoxesAsString(stringArray[i], static_cast<int32>(boxes.size()), mode,
                                 deltas != nullptr ? &deltas[i] : nullptr, boxes.data());
        BRect all;
        for (const BRect& box : boxes) {
            if (box.IsValid())
                all = all.IsValid() ? all | box : box;
        }
        boundingBoxArray[i] = all;
    }
}

void BFont::GetGlyphShapes(const char charArray[], int32 numChars, BShape* glyphShapeArray[]) const
{
    if (charArray == nullptr || glyphShapeArray == nullptr)
        return;
    server::FontSpec spec = FontAccess::Spec(*this);
    std::vector<uint8> ops;
    std::vector<BPoint> points;
    for (int32 i = 0; i < numChars; i++) {
        uint32 code = 0;
        if (*charArray != '\0')
            charArray += server::NextCharacter(spec, charArray, 4, &code);
        BShape* shape = glyphShapeArray[i];
        if (shape == nullptr)
            continue;
        shape->Clear();
        if (code < 0x20 || !server::GlyphOutline(spec, code, &ops, &points))
            continue;
        const BPoint* point = points.data();
        for (uint8 op : ops) {
            switch (op) {
                case server::kPathMoveTo:
                    shape->MoveTo(*point++);
                    break;
                case server::kPathLineTo:
                    shape->LineTo(*point++);
                    break;
                case server::kPathBezierTo:
                    shape->BezierTo(point[0], point[1], point[2]);
                    point += 3;
                    break;
                default:
                    shape->Close();
            }
        }
    }
}

void BFont::GetHasGlyphs(const char charArray[], int32 numChars, bool hasArray[]) const
{
    GetHasGlyphs(charArray, numChars, hasArray, true);
}

void BFont::GetHasGlyphs(const char charArray[], int32 numChars, bool hasArray[],
                         bool useFallbacks) const
{
    if (charArray == nullptr || hasArray == nullptr)
        return;
    server::FontSpec spec = FontAccess::Spec(*this);
    for (int32 i = 0; i < numChars; i++) {
        uint32 code = 0;
        if (*charArray != '\0')
            charArray += server::NextCharacter(spec, charArray, 4, &code);
        hasArray[i] = code != 0 && server::HasGlyph(spec, code, useFallbacks);
    }
}

bool BFont::operator==(const BFont& font) const
{
    bool alike = fFace == font.fFace && fSpacing == font.fSpacing && fEncoding == font.fEncoding &&
                 fSize == font.fSize && fShear == font.fShear && fRotation == font.fRotation &&
                 fFalseBoldWidth == font.fFalseBoldWidth && fFlags == font.fFlags;
    if (!alike || (fFamily == font.fFamily && fStyle == font.fStyle))
        return alike;
    return FamilyAndStyle() == font.FamilyAndStyle();
}

bool BFont::operator!=(const BFont& font) const { return !(*this == font); }

void BFont::PrintToStream() const
{
    FontInfo info = info_of(FontAccess::Spec(*this));
    font_height height;
    GetHeight(&height);
    printf("BFont { %s (%d), %s (%d) 0x%x %f/%f %f, height %f+%f+%f }\n", info.family,
           info.familyId, info.style, info.styleId, fFace, fSize, fShear, fRotation, height.ascent,
           height.descent, height.leading);
}

status_t BFont::LoadFont(const char* path) { return LoadFont(path, 0, 0); }

status_t BFont::LoadFont(const char* path, uint16 index, uint16 instance)
{
    if (path == nullptr)
        return B_BAD_VALUE;
    FontInfo info;
    status_t status = server::LoadFontFile(path, index, instance, &info);
    if (status == B_OK)
        _SetStyle(info.familyId, info.styleId, info.face | (fFace & kDecorations));
    return status;
}

status_t BFont::LoadFont(const area_id fontAreaID, size_t size, size_t offset)
{
    return LoadFont(fontAreaID, size, offset, 0, 0);
}

// The host shares no font files as areas.
status_t BFont::LoadFont(const area_id /*fontAreaID*/, size_t /*size*/, size_t /*offset*/,
                         uint16 /*index*/, uint16 /*instance*/)
{
    return B_NOT_SUPPORTED;
}

status_t BFont::UnloadFont()
{
    status_t status = server::UnloadFontFile(fFamily, fStyle);
    if (status == B_OK)
        _SetStyle(0, server::kPlainStyle, B_REGULAR_FACE | (fFace & kDecorations));
    return status;
}

int32 count_font_families() { return server::CountFontFamilies(); }

status_t get_font_family(int32 index, font_family* name, uint32* flags)
{
    FontInfo info;
    if (name == nullptr || !server::FontFamilyAt(index, &info))
        return B_BAD_VALUE;
    copy_name(*name, info.family);
    if (flags != nullptr)
        *flags = flags_of(info);
    return B_OK;
}

int32 count_font_styles(font_family name) { return server::CountFontStyles(name); }

status_t get_font_style(font_family family, int32 index, font_style* name, uint32* flags)
{
    return get_font_style(family, index, name, nullptr, flags);
}

status_t get_font_style(font_family family, int32 index, font_style* name, uint16* face,
                        uint32* flags)
{
    FontInfo info;
    if (name == nullptr || !server::FontStyleAt(family, index, &info))
        return B_BAD_VALUE;
    copy_name(*name, info.style);
    if (face != nullptr)
        *face = info.face;
    if (flags != nullptr)
        *flags = flags_of(info);
    return B_OK;
}

bool update_font_families(bool checkOnly) { return server::RefreshFonts(checkOnly); }
