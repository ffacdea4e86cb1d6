#include <server/text/FontGlyphs.h>

#include FT_ADVANCES_H
#include FT_STROKER_H
#include <hb-ft.h>
#include <hb-ot.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <tuple>

namespace server {

namespace {

constexpr size_t kMaxGlyphBytes = 8 << 20;
constexpr size_t kMaxScaledFonts = 128;
constexpr float kLargestHintedSize = 96.0f;
constexpr double kSyntheticSlant = 0.2;

// What a ScaledFont differs by: style, size in 1/64 pixel, flags, shear, rotation, false bold.
using ScaleKey = std::tuple<FontStyle*, int32, uint32, float, float, float>;

size_t sGlyphBytes;  // font lock

// Outlives every thread that draws at exit. Font lock.
std::map<ScaleKey, std::shared_ptr<ScaledFont>>& scaled_fonts()
{
    static auto& fonts = *new std::map<ScaleKey, std::shared_ptr<ScaledFont>>;
    return fonts;
}

FT_Library library()
{
    static FT_Library opened = [] {
        FT_Library result = nullptr;
        FT_Init_FreeType(&result);
        return result;
    }();
    return opened;
}

FT_Matrix matrix_of(double shear, double rotation)
{
    double slant = 0.0;
    if (shear != 90.0)
        slant = 1.0 / std::tan(std::clamp(shear, 30.0, 150.0) * M_PI / 180.0);
    double angle = std::remainder(rotation, 360.0) * M_PI / 180.0;
    double c = std::cos(angle), s = std::sin(angle);
    auto fixed = [](double value) { return static_cast<FT_Fixed>(std::lround(value * 65536.0)); };
    return {fixed(c), fixed(c * slant - s), fixed(s), fixed(s * slant + c)};
}

void copy_bitmap(const FT_Bitmap& from, uint8* to)
{
    for (unsigned row = 0; row < from.rows; row++) {
        const uint8* source = from.buffer + static_cast<ptrdiff_t>(row) * from.pitch;
        for (unsigned x = 0; x < from.width; x++)
            *to++ = source[x >> 3] & (0x80 >> (x & 7)) ? 255 : 0;
    }
}

// Draws an outline into `width` x `height` pixels whose left bottom corner is the outline's origin.
void raster(FT_Outline* outline, int32 width, int32 height, bool mono, uint8* bits)
{
    FT_Bitmap bitmap = {};
    bitmap.rows = static_cast<unsigned>(height);
    bitmap.width = static_cast<unsigned>(width);
    if (mono) {
        bitmap.pitch = (width + 7) / 8;
        bitmap.pixel_mode = FT_PIXEL_MODE_MONO;
        std::vector<uint8> packed(static_cast<size_t>(bitmap.pitch) * height);
        bitmap.buffer = packed.data();
        FT_Outline_Get_Bitmap(library(), outline, &bitmap);
        copy_bitmap(bitmap, bits);
    } else {
        bitmap.pitch = width;
        bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
        bitmap.num_grays = 256;
        bitmap.buffer = bits;
        FT_Outline_Get_Bitmap(library(), outline, &bitmap);
    }
}

// Replaces an outline by the line along it.
void hollow(FT_Outline* outline, float lineWidth)
{
    FT_Stroker stroker;
    if (FT_Stroker_New(library(), &stroker) != 0)
        return;
    FT_Stroker_Set(stroker, static_cast<FT_Fixed>(lineWidth * 32.0f), FT_STROKER_LINECAP_BUTT,
                   FT_STROKER_LINEJOIN_ROUND, 0);
    FT_UInt points = 0, contours = 0;
    FT_Outline line;
    if (FT_Stroker_ParseOutline(stroker, outline, false) == 0 &&
        FT_Stroker_GetCounts(stroker, &points, &contours) == 0 &&
        FT_Outline_New(library(), points, static_cast<FT_Int>(contours), &line) == 0) {
        line.n_points = line.n_contours = 0;
        FT_Stroker_Export(stroker, &line);
        // The slot's own outline has other room; FreeType frees what owns its points.
        if (outline->flags & FT_OUTLINE_OWNER)
            FT_Outline_Done(library(), outline);
        *outline = line;
    }
    FT_Stroker_Done(stroker);
}

}  // namespace

std::shared_ptr<FontFile> FontFile::Open(FontStyle& style)
{
    if (style.file != nullptr || style.unreadable)
        return style.file;
    FT_Face face = nullptr;
    if (library() == nullptr ||
        FT_New_Face(library(), style.path.c_str(), style.index, &face) != 0) {
        style.unreadable = true;
        return nullptr;
    }
    if (!FT_IS_SCALABLE(face)) {
        FT_Done_Face(face);
        style.unreadable = true;
        return nullptr;
    }
    style.file.reset(new FontFile);
    style.file->fFace = face;
    if (face->charmap == nullptr && face->num_charmaps > 0)
        FT_Set_Charmap(face, face->charmaps[0]);
    style.file->fSymbols =
        face->charmap != nullptr && face->charmap->encoding == FT_ENCODING_MS_SYMBOL;
    return style.file;
}

FontFile::~FontFile()
{
    hb_face_destroy(fShaper);
    FT_Done_Face(fFace);
}

hb_face_t* FontFile::Shaper()
{
    if (!fTriedShaper) {
        fTriedShaper = true;
        if (FT_IS_SFNT(fFace))
            fShaper = hb_ft_face_create(fFace, nullptr);
    }
    return fShaper;
}

uint32 FontFile::GlyphFor(uint32 character) const
{
    uint32 glyph = FT_Get_Char_Index(fFace, character);
    if (glyph == 0 && fSymbols && character < 0x100)
        glyph = FT_Get_Char_Index(fFace, 0xF000 + character);
    return glyph;
}

std::shared_ptr<ScaledFont> ScaledFont::Get(const FontSpec& spec, FontStyle* style)
{
    if (style == nullptr || !(spec.size > 0.0f))
        return nullptr;
    float size = std::min(spec.size, kLargestSize);
    int32 units = static_cast<int32>(std::lround(size * 64.0f));
    if (units < 1)
        return nullptr;
    uint16 missing = spec.face & ~style->face & (B_BOLD_FACE | B_ITALIC_FACE);
    uint32 flags = (spec.flags & B_DISABLE_ANTIALIASING) | static_cast<uint32>(missing) << 8 |
                   static_cast<uint32>(spec.face & B_OUTLINED_FACE) << 16;
    float shear = std::isfinite(spec.shear) ? spec.shear : 90.0f;
    float rotation = std::isfinite(spec.rotation) ? spec.rotation : 0.0f;
    float falseBold = std::isfinite(spec.falseBoldWidth) ? spec.falseBoldWidth : 0.0f;
    ScaleKey key(style, units, flags, shear, rotation, falseBold);
    auto& fonts = scaled_fonts();
    auto known = fonts.find(key);
    if (known != fonts.end())
        return known->second;

    if (fonts.size() >= kMaxScaledFonts || sGlyphBytes > kMaxGlyphBytes)
        ForgetAll();
    std::shared_ptr<FontFile> file = FontFile::Open(*style);
    if (file == nullptr)
        return nullptr;
    FT_Size ftSize = nullptr;
    if (FT_New_Size(file->Face(), &ftSize) != 0)
        return nullptr;
    FT_Activate_Size(ftSize);
    if (FT_Set_Char_Size(file->Face(), 0, units, 72, 72) != 0) {
        FT_Done_Size(ftSize);
        return nullptr;
    }
    std::shared_ptr<ScaledFont> font(new ScaledFont);
    font->fStyle = style;
    font->fFile = std::move(file);
    font->fSize = ftSize;
    font->fPixels = static_cast<float>(units) / 64.0f;
    font->fMatrix = matrix_of(shear, rotation);
    if (missing & B_ITALIC_FACE) {
        FT_Matrix slant = {0x10000, static_cast<FT_Fixed>(kSyntheticSlant * 65536), 0, 0x10000};
        FT_Matrix_Multiply(&font->fMatrix, &slant);
        font->fMatrix = slant;
    }
    font->fTransformed = font->fMatrix.xx != 0x10000 || font->fMatrix.xy != 0 ||
                         font->fMatrix.yx != 0 || font->fMatrix.yy != 0x10000;
    font->fMono = (spec.flags & B_DISABLE_ANTIALIASING) != 0;
    font->fHinted = size <= kLargestHintedSize && font->fMatrix.yx == 0;
    font->fOutlined = (spec.face & B_OUTLINED_FACE) != 0;
    if (missing & B_BOLD_FACE)
        font->fBold = std::max(size / 20.0f, 0.6f);
    font->fBold = std::clamp(font->fBold + falseBold, -size / 8.0f, size);
    std::fill(std::begin(font->fAscii), std::end(font->fAscii), ~0u);
    fonts[key] = font;
    return font;
}

void ScaledFont::ForgetAll()
{
    for (auto& [key, font] : scaled_fonts())
        font->fStyle->file.reset();
    scaled_fonts().clear();
    sGlyphBytes = 0;
}

ScaledFont::~ScaledFont()
{
    hb_font_destroy(fShaper);
    FT_Done_Size(fSize);
}

void ScaledFont::_Activate()
{
    if (fFile->Face()->size != fSize)
        FT_Activate_Size(fSize);
}

uint32 ScaledFont::GlyphFor(uint32 character)
{
    if (character >= std::size(fAscii))
        return fFile->GlyphFor(character);
    if (fAscii[character] == ~0u)
        fAscii[character] = fFile->GlyphFor(character);
    return fAscii[character];
}

float ScaledFont::Advance(uint32 glyph)
{
    auto [entry, fresh] = fAdvances.try_emplace(glyph, 0.0f);
    if (fresh) {
        _Activate();
        FT_Fixed advance = 0;
        if (FT_Get_Advance(fFile->Face(), glyph, FT_LOAD_NO_HINTING, &advance) == 0)
            entry->second = static_cast<float>(advance) / 65536.0f;
        if (entry->second > 0.0f)
            entry->second = std::max(0.0f, entry->second + fBold);
    }
    return entry->second;
}

hb_font_t* ScaledFont::Shaper()
{
    if (fShaper == nullptr && fFile->Shaper() != nullptr) {
        fShaper = hb_font_create(fFile->Shaper());
        hb_ot_font_set_funcs(fShaper);
        int scale = static_cast<int>(std::lround(fPixels * 64.0f));
        hb_font_set_scale(fShaper, scale, scale);
        if (fStyle->index >> 16)
            hb_font_set_var_named_instance(fShaper, (fStyle->index >> 16) - 1);
    }
    return fShaper;
}

FT_Outline* ScaledFont::Outline(uint32 glyph, bool hinted)
{
    _Activate();
    FT_Int32 flags = FT_LOAD_NO_BITMAP;
    if (!hinted || !fHinted)
        flags |= FT_LOAD_NO_HINTING;
    else
        flags |= fMono ? FT_LOAD_TARGET_MONO : FT_LOAD_TARGET_LIGHT;
    FT_Face face = fFile->Face();
    if (FT_Load_Glyph(face, glyph, flags) != 0 || face->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
        return nullptr;
    FT_Outline* outline = &face->glyph->outline;
    if (fBold != 0.0f)
        FT_Outline_EmboldenXY(outline, static_cast<FT_Pos>(fBold * 64.0f), 0);
    if (fTransformed)
        FT_Outline_Transform(outline, &fMatrix);
    return outline;
}

std::shared_ptr<const Glyph> ScaledFont::Raster(uint32 glyph, GlyphPhase phase)
{
    uint64 key = static_cast<uint64>(glyph) << 8 | static_cast<uint64>(phase.centred) << 7 |
                 static_cast<uint64>(phase.y) << 2 | phase.x;
    auto& kept = fGlyphs[key];
    if (kept != nullptr)
        return kept;
    auto made = std::make_shared<Glyph>();
    FT_Outline* source = Outline(glyph, true);
    if (source != nullptr && source->n_points > 0) {
        FT_Outline copy = *source;
        copy.flags &= ~FT_OUTLINE_OWNER;
        FT_Outline* outline = &copy;
        if (fOutlined)
            hollow(outline, std::max(1.0f, fPixels / 24.0f));
        FT_Pos shiftX = phase.x * 16;
        if (phase.centred && !fMono) {
            float advance = Advance(glyph);
            shiftX += static_cast<FT_Pos>((std::round(advance) - advance) * 32.0f);
        }
        FT_Outline_Translate(outline, shiftX, -phase.y * 16);
        FT_BBox box;
        FT_Outline_Get_CBox(outline, &box);
        FT_Pos left = box.xMin >> 6, bottom = box.yMin >> 6;
        FT_Pos right = (box.xMax + 63) >> 6, top = (box.yMax + 63) >> 6;
        constexpr FT_Pos kSide = 4096;  // an outline may lie far outside its em
        left = std::clamp(left, -kSide, kSide);
        bottom = std::clamp(bottom, -kSide, kSide);
        right = std::clamp(right, left, left + kSide);
        top = std::clamp(top, bottom, bottom + kSide);
        if (right > left && top > bottom) {
            made->left = static_cast<int32>(left);
            made->top = static_cast<int32>(-top);
            made->width = static_cast<int32>(right - left);
            made->height = static_cast<int32>(top - bottom);
            size_t bytes = static_cast<size_t>(made->width) * made->height;
            made->bits.reset(new uint8[bytes]());
            FT_Outline_Translate(outline, -left * 64, -bottom * 64);
            raster(outline, made->width, made->height, fMono, made->bits.get());
            sGlyphBytes += bytes + 200;
        }
        if (copy.flags & FT_OUTLINE_OWNER)
            FT_Outline_Done(library(), &copy);
    }
    kept = made;
    return made;
}

bool ScaledFont::RasterClipped(uint32 glyph, const FT_Matrix& matrix, double x, double y,
                               const clipping_rect& bounds, clipping_rect* box,
                               std::vector<uint8>* bits)
{
    constexpr double kFarthest = 200000.0;  // where the rasteriser's coordinates end
    if (!(std::abs(x) < kFarthest && std::abs(y) < kFarthest))
        return false;
    FT_Outline* source = Outline(glyph, false);
    if (source == nullptr || source->n_points == 0)
        return false;
    FT_Outline outline = *source;
    outline.flags &= ~FT_OUTLINE_OWNER;
    if (fOutlined)
        hollow(&outline, std::max(1.0f, fPixels / 24.0f));
    FT_Outline_Transform(&outline, &matrix);
    FT_Outline_Translate(&outline, std::lround(x * 64.0), std::lround(-y * 64.0));
    FT_BBox cbox;
    FT_Outline_Get_CBox(&outline, &cbox);
    box->left = static_cast<int32>(std::max<FT_Pos>(cbox.xMin >> 6, bounds.left));
    box->right = static_cast<int32>(std::min<FT_Pos>((cbox.xMax + 63) >> 6, bounds.right));
    box->top = static_cast<int32>(std::max<FT_Pos>(-((cbox.yMax + 63) >> 6), bounds.top));
    box->bottom = static_cast<int32>(std::min<FT_Pos>(-(cbox.yMin >> 6), bounds.bottom));
    bool seen = box->left <= box->right && box->top <= box->bottom;
    if (seen) {
        int32 width = box->right - box->left + 1, height = box->bottom - box->top + 1;
        bits->assign(static_cast<size_t>(width) * height, 0);
        FT_Outline_Translate(&outline, -64L * box->left, 64L * (box->bottom + 1));
        raster(&outline, width, height, fMono, bits->data());
    }
    if (outline.flags & FT_OUTLINE_OWNER)
        FT_Outline_Done(library(), &outline);
    return seen;
}

}  // namespace server
