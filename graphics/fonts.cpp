// The font of a window, fonts kept by ident, and the families that are installed. Any thread, but
// for what gives back a name: that belongs to the main thread.

#include "graphics/fonts.h"

#include "graphics/raster_port.h"
#include "plinth.h"
#include "runtime/guarded.h"
#include "runtime/registry.h"
#include "runtime/trace.h"

#include <Font.h>

#include <exception>
#include <iterator>
#include <new>

// A font kept by ident: one block of two words from MyAlloc.
struct FontRecord {
    static const RegistrySlot kSlot = kFonts;

    intptr_t ident;
    BFont* font;  // owned
};

// What SetFont takes over of a font.
static const uint32 kAllOfFont = 0xFF;
static const uint32 kFamilyStyleAndSize = B_FONT_FAMILY_AND_STYLE | B_FONT_SIZE;

// Face bits by flag bit: the language numbers them in an order of its own.
static const uint16 kFaceOfFlag[] = {
    B_REGULAR_FACE,    B_BOLD_FACE,     B_ITALIC_FACE,   B_STRIKEOUT_FACE,
    B_UNDERSCORE_FACE, B_NEGATIVE_FACE, B_OUTLINED_FACE,
};

static char sNothing[] = "";

// --- the font of a window

// A window or an image for a call, as the view that its text is drawn with.
class FontPort : public RasterPort {
public:
    FontPort(int32_t ident, const char* call) : RasterPort(std::max(ident, 0), call) {}

    BFont Font() const
    {
        BFont font;
        View().GetFont(&font);
        return font;
    }
};

// Changes a copy of the window's font and gives `mask` of it back.
template <class Change>
static void change_font(int32_t ident, uint32 mask, const char* call, Change change)
{
    guarded([&] {
        FontPort port(ident, call);
        if (!port)
            return;
        BFont font = port.Font();
        change(font);
        port->SetFont(&font, mask);
    });
}

// What `ask` tells of the window's font, as a whole number; `unknown` for what is no window.
template <class Ask>
static int32_t font_number(int32_t ident, const char* call, int32_t unknown, Ask ask)
try {
    BFont font;
    {
        FontPort port(ident, call);
        if (!port)
            return unknown;
        font = port.Font();
    }
    return truncated(static_cast<double>(ask(font)));
} catch (const std::exception&) {
    show_dbg(kNoMemory, ident, call);
    return unknown;
}

extern "C" void SetFontSize(int32_t ident, int32_t size)
try {
    if (FontPort port(ident, __func__); port)
        port->SetFontSize(static_cast<float>(size));
} catch (const std::exception&) {
    show_dbg(kNoMemory, ident, __func__);
}

extern "C" void SetShear(int32_t ident, int32_t degrees)
{
    change_font(ident, kAllOfFont, __func__,
                [=](BFont& font) { font.SetShear(static_cast<float>(degrees)); });
}

extern "C" void SetRotation(int32_t ident, int32_t degrees)
{
    change_font(ident, kAllOfFont, __func__,
                [=](BFont& font) { font.SetRotation(static_cast<float>(degrees)); });
}

extern "C" void SetSpacing(int32_t ident, int32_t mode)
{
    change_font(ident, kAllOfFont, __func__,
                [=](BFont& font) { font.SetSpacing(static_cast<uint8>(mode)); });
}

extern "C" void FontLeasing(int32_t ident, int32_t smooth)
{
    change_font(ident, kAllOfFont, __func__, [=](BFont& font) {
        font.SetFlags(smooth == 0 ? uint32{B_DISABLE_ANTIALIASING} : 0);
    });
}

extern "C" int32_t IsFontFixed(int32_t ident)
{
    return font_number(ident, __func__, 0, [](const BFont& font) { return font.IsFixed(); });
}

extern "C" int32_t GetFontType(int32_t ident)
{
    return font_number(ident, __func__, 0, [](const BFont& font) { return font.FileFormat(); });
}

extern "C" int32_t GetFontSize(int32_t ident)
{
    return font_number(ident, __func__, 0, [](const BFont& font) { return font.Size(); });
}

extern "C" int32_t GetShear(int32_t ident)
{
    return font_number(ident, __func__, 0, [](const BFont& font) { return font.Shear(); });
}

extern "C" int32_t GetRotation(int32_t ident)
{
    return font_number(ident, __func__, 0, [](const BFont& font) { return font.Rotation(); });
}

extern "C" int32_t GetSpacing(int32_t ident)
{
    return font_number(ident, __func__, 0, [](const BFont& font) { return font.Spacing(); });
}

extern "C" void SetFontType(int32_t ident, int32_t kind)
try {
    const BFont* const fonts[] = {be_plain_font, be_bold_font, be_fixed_font};
    FontPort port(ident, __func__);
    if (!port)
        return;
    if (static_cast<uint32_t>(kind) < std::size(fonts))
        port->SetFont(fonts[kind], kAllOfFont);
    else
        show_dbg(kBadArgument, ident, __func__);
} catch (const std::exception&) {
    show_dbg(kNoMemory, ident, __func__);
}

static uint16 face_of_flags(int32_t flags)
{
    uint16 face = B_REGULAR_FACE;
    for (size_t bit = 0; bit < std::size(kFaceOfFlag); bit++) {
        if ((flags & 1 << bit) != 0)
            face |= kFaceOfFlag[bit];
    }
    return face;
}

extern "C" void SetFontAttribut(int32_t ident, int32_t flags)
{
    if (flags == 0)
        return;
    change_font(ident, B_FONT_FAMILY_AND_STYLE, __func__, [=](BFont& font) {
        font_family family;
        font.GetFamilyAndStyle(&family, nullptr);
        font.SetFamilyAndFace(family, face_of_flags(flags));
    });
}

extern "C" int32_t GetFontAttribut(int32_t ident)
{
    return font_number(ident, __func__, 1, [](const BFont& font) { return font.Face(); });
}

extern "C" void SetFontName(int32_t ident, const char* family)
try {
    change_font(ident, B_FONT_FAMILY_AND_STYLE, __func__, [=](BFont& font) {
        font_style style;
        font.GetFamilyAndStyle(nullptr, &style);
        font.SetFamilyAndStyle(family, style);
    });
} catch (const std::exception&) {
    show_dbg(kNoMemory, ident, __func__);
}

extern "C" char* GetFontName(int32_t ident)
try {
    static font_family name;  // main thread
    FontPort port(ident, __func__);
    if (!port)
        return sNothing;
    port.Font().GetFamilyAndStyle(&name, nullptr);
    return name;
} catch (const std::exception&) {
    show_dbg(kNoMemory, 0, __func__);
    return sNothing;
}

extern "C" void OpenFontInListe(int32_t ident, const char* family, const char* style, int32_t size)
try {
    if (!FontExists(family) || size < 1)
        return;
    FontPort port(ident, __func__);
    if (!port)
        return;
    BFont font;
    font.SetSize(static_cast<float>(size));
    font.SetFamilyAndStyle(family, style);
    port->SetFont(&font, kFamilyStyleAndSize);
} catch (const std::exception&) {
    show_dbg(kNoMemory, ident, __func__);
}

// --- fonts by ident

bool Find_Font(int32_t ident, BFont* font)
{
    RegistryLock registry;
    const auto* record = find_record<FontRecord>(registry, ident);
    if (record != nullptr)
        *font = *record->font;
    return record != nullptr;
}

static void free_font(FontRecord* record)
{
    delete record->font;
    MyFree(record);
}

extern "C" int32_t OpenFont(const char* family, const char* style, int32_t size)
{
    auto* font = guarded<BFont*>(nullptr, [] { return new BFont; });
    auto* record = static_cast<FontRecord*>(MyAlloc(sizeof(FontRecord)));
    if (font != nullptr && record != nullptr) {
        guarded([=] {
            font->SetSize(static_cast<float>(size));
            font->SetFamilyAndStyle(family, style);
        });
        const auto ident = static_cast<int32_t>(GetUniqueID());
        *record = {ident, font};
        if (enter_record(RegistryLock(), record))
            return ident;  // the record may be closed already
    }
    show_dbg(kNoMemory, 0, __func__);
    delete font;
    MyFree(record);
    return 0;
}

extern "C" void CloseFont(int32_t ident)
{
    FontRecord* record;
    {
        RegistryLock registry;
        record = find_record<FontRecord>(registry, ident);
        if (record != nullptr)
            remove_record(registry, record);
    }
    if (record != nullptr)
        free_font(record);
    else
        show_dbg(kBadArgument, ident, __func__);
}

void Close_All_Font(BList* fonts)
{
    RegistryLock registry;
    for (int32 i = 0; i < fonts->CountItems(); i++)
        free_font(static_cast<FontRecord*>(fonts->ItemAtFast(i)));
    fonts->MakeEmpty();
}

// --- families

extern "C" bool FontExists(const char* family)
try {
    if (family == nullptr || family[0] == '\0')
        return false;
    update_font_families(false);
    return count_font_styles(const_cast<char*>(family)) > 0;
} catch (const std::exception&) {
    return false;
}

extern "C" int32_t CountFontList(void)
try {
    update_font_families(false);
    return count_font_families();
} catch (const std::exception&) {
    return 0;
}

extern "C" char* GetFontNameList(int32_t index)
try {
    static font_family name;  // main thread
    if (index < 0)
        return sNothing;
    update_font_families(false);
    return get_font_family(index, &name) == B_OK ? name : sNothing;
} catch (const std::exception&) {
    show_dbg(kNoMemory, 0, __func__);
    return sNothing;
}
