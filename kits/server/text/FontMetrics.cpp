// What BFont tells beyond widths and heights: characters one by one, outlines, and the list of
// installed fonts.

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <server/text/FontGlyphs.h>
#include <server/text/Fonts.h>
#include <server/text/TextLayout.h>
#include <server/text/TextRuns.h>

namespace server {

namespace {

std::shared_ptr<ScaledFont> scaled_font(const FontSpec& font) REQUIRES(FontLock())
{
    return ScaledFont::Get(font, FontCatalog::Get().StyleFor(font.family, font.style));
}

void join(BRect& all, const BRect& more) { all = all.IsValid() ? all | more : more; }

bool letters_without(FcCharSet* characters, uint32 wanted, uint32 missing)
{
    return FcCharSetHasChar(characters, wanted) && !FcCharSetHasChar(characters, missing);
}

void describe(const FontStyle& style, FontInfo* info) REQUIRES(FontLock())
{
    const FontFamily* family = FontCatalog::Get().FamilyFor(style.familyId);
    snprintf(info->family, sizeof(info->family), "%s",
             family != nullptr ? family->name.c_str() : "");
    snprintf(info->style, sizeof(info->style), "%s", style.name.c_str());
    info->familyId = style.familyId;
    info->styleId = style.styleId;
    info->face = style.face;
    info->fixed = style.fixed;
    info->fullAndHalfFixed = style.dual;
    info->postScript = style.postScript;
    FcCharSet* characters = nullptr;
    info->rightToLeft =
        FcPatternGetCharSet(style.pattern, FC_CHARSET, 0, &characters) == FcResultMatch &&
        (letters_without(characters, 0x5D0, 'A') || letters_without(characters, 0x627, 'A'));
}

// Adds a glyph's extent to the metrics of its character.
void add_extent(const FontSpec& spec, const Layout& layout, const PlacedGlyph& placed, Boxes boxes,
                CharacterMetrics& metrics)
{
    ScaledFont& font = *layout.fonts[placed.font];
    FT_Outline* outline = font.Outline(placed.glyph, false);
    if (outline == nullptr || outline->n_points == 0)
        return;
    FT_BBox box;
    FT_Outline_Get_CBox(outline, &box);
    float shift = placed.x - layout.starts[placed.character];
    float left = static_cast<float>(box.xMin) / 64.0f + shift;
    float right = static_cast<float>(box.xMax) / 64.0f + shift;
    if (metrics.right < metrics.left) {
        metrics.left = left;
        metrics.right = right;
    } else {
        metrics.left = std::min(metrics.left, left);
        metrics.right = std::max(metrics.right, right);
    }
    BPoint at = Turn(spec.rotation).At(shift, placed.y);
    if (boxes == Boxes::Screen && spec.size <= kLargestKeptSize) {
        GlyphPhase phase;
        phase.centred = spec.rotation == 0.0f && spec.spacing == B_BITMAP_SPACING;
        auto glyph = font.Raster(placed.glyph, phase);
        float x = std::round(at.x) + glyph->left, y = std::round(at.y) + glyph->top;
        if (glyph->bits != nullptr)
            join(metrics.box, BRect(x, y, x + glyph->width - 1, y + glyph->height - 1));
    } else {
        join(metrics.box, BRect(at.x + box.xMin / 64.0f, at.y - box.yMax / 64.0f,
                                at.x + box.xMax / 64.0f, at.y - box.yMin / 64.0f));
    }
}

struct OutlineSink {
    std::vector<uint8>* ops;
    std::vector<BPoint>* points;
    BPoint last;
    bool open = false;

    static BPoint At(const FT_Vector* point)
    {
        return BPoint(static_cast<float>(point->x) / 64.0f, static_cast<float>(-point->y) / 64.0f);
    }
    void Close()
    {
        if (open)
            ops->push_back(kPathClose);
        open = false;
    }
};

OutlineSink& sink(void* user) { return *static_cast<OutlineSink*>(user); }

int move_to(const FT_Vector* to, void* user)
{
    OutlineSink& out = sink(user);
    out.Close();
    out.ops->push_back(kPathMoveTo);
    out.points->push_back(out.last = out.At(to));
    out.open = true;
    return 0;
}

int line_to(const FT_Vector* to, void* user)
{
    OutlineSink& out = sink(user);
    out.ops->push_back(kPathLineTo);
    out.points->push_back(out.last = out.At(to));
    return 0;
}

int cubic_to(const FT_Vector* one, const FT_Vector* two, const FT_Vector* to, void* user)
{
    OutlineSink& out = sink(user);
    out.ops->push_back(kPathBezierTo);
    out.points->insert(out.points->end(), {out.At(one), out.At(two), out.At(to)});
    out.last = out.At(to);
    return 0;
}

int conic_to(const FT_Vector* control, const FT_Vector* to, void* user)
{
    OutlineSink& out = sink(user);
    BPoint middle = out.At(control), end = out.At(to);
    auto toward = [](BPoint from, BPoint through) {
        return BPoint(from.x + (through.x - from.x) * 2.0f / 3.0f,
                      from.y + (through.y - from.y) * 2.0f / 3.0f);
    };
    out.ops->push_back(kPathBezierTo);
    out.points->insert(out.points->end(), {toward(out.last, middle), toward(end, middle), end});
    out.last = end;
    return 0;
}

// Fonts that are gone stay usable for who still has their ids, but are no longer listed.
const FontStyle* installed_style(const FontFamily& family, int32 index)
{
    for (auto& style : family.styles) {
        if (style->installed && index-- == 0)
            return style.get();
    }
    return nullptr;
}

// The installed family of a name, or without one that which `info` is of; null if there is none.
const FontFamily* family_for(const char* name, const FontInfo& info) REQUIRES(FontLock())
{
    FontCatalog& catalog = FontCatalog::Get();
    const FontFamily* family =
        name != nullptr ? catalog.FindFamily(name) : catalog.FamilyFor(info.familyId);
    return family != nullptr && family->Installed() ? family : nullptr;
}

}  // namespace

int32 MeasureCharacters(const FontSpec& font, const char* text, int32 count,
                        const escapement_delta* delta, Boxes boxes, CharacterMetrics* metrics)
{
    if (text == nullptr || count <= 0)
        return 0;
    int32 length = 0, found = 0;
    while (found < count && text[length] != '\0') {
        uint32 code;
        length += NextCharacter(font, text + length, 4, &code);
        found++;
    }
    BPrivate::MutexLock lock(FontLock());
    Layout layout;
    float start = 0.0f;
    for (int32 done = 0; length > 0;) {
        int32 piece = PieceLength(font, text, length);
        LayOut(font, text, piece, delta, &layout);
        int32 here = static_cast<int32>(layout.advances.size());
        for (int32 i = 0; i < here; i++) {
            metrics[done + i] = {};
            metrics[done + i].start = start + layout.starts[i];
            metrics[done + i].advance = layout.advances[i];
            metrics[done + i].turned = layout.turned[i] != 0;
        }
        for (const PlacedGlyph& placed : layout.glyphs) {
            if (boxes != Boxes::None)
                add_extent(font, layout, placed, boxes, metrics[done + placed.character]);
        }
        start += layout.width;
        done += here;
        text += piece;
        length -= piece;
    }
    return found;
}

bool HasGlyph(const FontSpec& font, uint32 code, bool useFallbacks)
{
    BPrivate::MutexLock lock(FontLock());
    auto scaled = scaled_font(font);
    if (scaled == nullptr)
        return false;
    return scaled->GlyphFor(code) != 0 ||
           (useFallbacks && FontCatalog::Get().FallbackFor(scaled->Style(), code) != nullptr);
}

bool GlyphOutline(const FontSpec& font, uint32 code, std::vector<uint8>* ops,
                  std::vector<BPoint>* points)
{
    ops->clear();
    points->clear();
    BPrivate::MutexLock lock(FontLock());
    auto scaled = scaled_font(font);
    if (scaled != nullptr && scaled->GlyphFor(code) == 0) {
        FontStyle* other = FontCatalog::Get().FallbackFor(scaled->Style(), code);
        if (other != nullptr)
            scaled = ScaledFont::Get(font, other);
    }
    FT_Outline* outline =
        scaled != nullptr ? scaled->Outline(scaled->GlyphFor(code), false) : nullptr;
    if (outline == nullptr || outline->n_points == 0)
        return false;
    OutlineSink out = {ops, points, BPoint(), false};
    const FT_Outline_Funcs funcs = {move_to, line_to, conic_to, cubic_to, 0, 0};
    FT_Outline_Decompose(outline, &funcs, &out);
    out.Close();
    return !ops->empty();
}

BRect FontBox(const FontSpec& font)
{
    BPrivate::MutexLock lock(FontLock());
    auto scaled = scaled_font(font);
    if (scaled == nullptr)
        return BRect();
    FT_Face face = scaled->File().Face();
    float unit = scaled->Pixels() / std::max<FT_UShort>(1, face->units_per_EM);
    return BRect(face->bbox.xMin * unit, -face->bbox.yMax * unit, face->bbox.xMax * unit,
                 -face->bbox.yMin * unit);
}

int32 CountFontFamilies()
{
    BPrivate::MutexLock lock(FontLock());
    return FontCatalog::Get().CountFamilies();
}

bool FontFamilyAt(int32 index, FontInfo* info)
{
    BPrivate::MutexLock lock(FontLock());
    const FontFamily* family = FontCatalog::Get().FamilyAt(index);
    const FontStyle* style = family != nullptr ? installed_style(*family, 0) : nullptr;
    if (style != nullptr)
        describe(*style, info);
    return style != nullptr;
}

int32 CountFontStyles(const char* name)
{
    BPrivate::MutexLock lock(FontLock());
    const FontFamily* family = name != nullptr ? FontCatalog::Get().FindFamily(name) : nullptr;
    if (family == nullptr)
        return 0;
    return static_cast<int32>(std::count_if(family->styles.begin(), family->styles.end(),
                                            [](auto& style) { return style->installed; }));
}

bool FontStyleAt(const char* name, int32 index, FontInfo* info)
{
    BPrivate::MutexLock lock(FontLock());
    const FontFamily* family = name != nullptr ? FontCatalog::Get().FindFamily(name) : nullptr;
    if (family == nullptr || index < 0)
        return false;
    const FontStyle* style = installed_style(*family, index);
    if (style != nullptr)
        describe(*style, info);
    return style != nullptr;
}

bool GetFontInfo(uint16 family, uint16 style, FontInfo* info)
{
    BPrivate::MutexLock lock(FontLock());
    const FontStyle* found = FontCatalog::Get().StyleFor(family, style);
    if (found != nullptr)
        describe(*found, info);
    return found != nullptr;
}

status_t FindFontStyle(const char* name, const char* styleName, FontInfo* info)
{
    BPrivate::MutexLock lock(FontLock());
    const FontFamily* family = family_for(name, *info);
    if (family == nullptr)
        return B_NAME_NOT_FOUND;
    describe(*FontCatalog::Get().FindStyle(*family, styleName != nullptr ? styleName : info->style),
             info);
    return B_OK;
}

status_t FindFontFace(const char* name, uint16 face, FontInfo* info)
{
    BPrivate::MutexLock lock(FontLock());
    const FontFamily* family = family_for(name, *info);
    if (family == nullptr)
        return B_NAME_NOT_FOUND;
    describe(*FontCatalog::Get().NearestStyle(*family, face), info);
    return B_OK;
}

int32 CountGlyphs(uint16 family, uint16 style, uint32 first, uint32 last)
{
    BPrivate::MutexLock lock(FontLock());
    const FontStyle* found = FontCatalog::Get().StyleFor(family, style);
    FcCharSet* characters = nullptr;
    if (found == nullptr ||
        FcPatternGetCharSet(found->pattern, FC_CHARSET, 0, &characters) != FcResultMatch) {
        return 0;
    }
    int32 count = 0;
    FcChar32 map[FC_CHARSET_MAP_SIZE], next;
    FcChar32 page = FcCharSetFirstPage(characters, map, &next);
    for (; page != FC_CHARSET_DONE; page = FcCharSetNextPage(characters, map, &next)) {
        for (uint32 bit = 0; bit < 256; bit++) {
            if ((map[bit / 32] >> (bit % 32) & 1) && page + bit >= first && page + bit <= last)
                count++;
        }
    }
    return count;
}

bool RefreshFonts(bool checkOnly)
{
    BPrivate::MutexLock lock(FontLock());
    bool changed = FontCatalog::Get().Refresh(checkOnly);
    if (changed && !checkOnly)
        ForgetRuns();
    return changed;
}

status_t LoadFontFile(const char* path, uint16 index, uint16 instance, FontInfo* info)
{
    BPrivate::MutexLock lock(FontLock());
    status_t error;
    const FontStyle* style = FontCatalog::Get().AddFile(path, instance << 16 | index, &error);
    if (style == nullptr)
        return error;
    ForgetRuns();
    describe(*style, info);
    return B_OK;
}

status_t UnloadFontFile(uint16 family, uint16 style)
{
    BPrivate::MutexLock lock(FontLock());
    FontStyle* found = FontCatalog::Get().StyleFor(family, style);
    if (found == nullptr || !found->loaded || !found->installed)
        return B_ERROR;
    FontCatalog::Get().Remove(found);
    ForgetRuns();
    return B_OK;
}

}  // namespace server
