#include <server/text/FontCatalog.h>

#include <fontconfig/fcfreetype.h>

#include <strings.h>
#include <sys/stat.h>
#include <time.h>

#include <algorithm>
#include <cctype>
#include <cstring>

#include <server/text/FontGlyphs.h>

#include "support/Mutex.h"
#include "support/UTF8Characters.h"

namespace server {

namespace {

constexpr size_t kMaxFallbacks = 20000;
constexpr bigtime_t kCheckPeriod_us = 500000;  // a look at the font folders costs some 100 us
constexpr bigtime_t kClockTick_us = 20000;     // by which times of files may be behind the clock

struct DefaultFont {
    const char* family;
    const char* generic;
    int weight;
    int spacing;
};
constexpr DefaultFont kDefaults[3] = {
    {"Noto Sans", "sans-serif", FC_WEIGHT_REGULAR, FC_PROPORTIONAL},
    {"Noto Sans", "sans-serif", FC_WEIGHT_BOLD, FC_PROPORTIONAL},
    {"Noto Sans Mono", "monospace", FC_WEIGHT_REGULAR, FC_MONO},
};

// Families of BeOS's own standard fonts, for which the default fonts stand in.
struct OldName {
    const char* family;
    uint16 which;  // of kDefaults
};
constexpr OldName kOldNames[] = {{"Swis721 BT", 0}, {"Courier10 BT", 2}};

std::string lower(const char* text)
{
    std::string result(text);
    for (char& c : result)
        c = static_cast<char>(tolower(static_cast<unsigned char>(c)));
    return result;
}

// Fits the arrays that programs keep names in, without half a character at the end.
std::string name_of(FcPattern* pattern, const char* object)
{
    FcChar8* value = nullptr;
    if (FcPatternGetString(pattern, object, 0, &value) != FcResultMatch)
        return {};
    return std::string(
        BPrivate::utf8_fitting(reinterpret_cast<const char*>(value), B_FONT_FAMILY_LENGTH));
}

int integer_of(FcPattern* pattern, const char* object, int otherwise)
{
    int value = otherwise;
    return FcPatternGetInteger(pattern, object, 0, &value) == FcResultMatch ? value : otherwise;
}

bool truth_of(FcPattern* pattern, const char* object, bool otherwise)
{
    FcBool value = FcFalse;
    return FcPatternGetBool(pattern, object, 0, &value) == FcResultMatch ? value != FcFalse
                                                                         : otherwise;
}

std::string file_key(FcPattern* pattern)
{
    FcChar8* path = nullptr;
    if (FcPatternGetString(pattern, FC_FILE, 0, &path) != FcResultMatch)
        return {};
    return std::string(reinterpret_cast<const char*>(path)) + ':' +
           std::to_string(integer_of(pattern, FC_INDEX, 0));
}

uint16 face_of(int weight, int slant, int width)
{
    uint16 face = 0;
    if (weight >= FC_WEIGHT_DEMIBOLD)
        face |= B_BOLD_FACE;
    if (slant != FC_SLANT_ROMAN)
        face |= B_ITALIC_FACE;
    if (face == 0)
        face = B_REGULAR_FACE;
    if (weight >= FC_WEIGHT_EXTRABOLD)
        face |= B_HEAVY_FACE;
    else if (weight <= FC_WEIGHT_LIGHT)
        face |= B_LIGHT_FACE;
    if (width < FC_WIDTH_SEMICONDENSED)
        face |= B_CONDENSED_FACE;
    return face;
}

int32 weight_of(uint16 face)
{
    if (face & B_HEAVY_FACE)
        return FC_WEIGHT_BLACK;
    if (face & B_BOLD_FACE)
        return FC_WEIGHT_BOLD;
    return face & B_LIGHT_FACE ? FC_WEIGHT_LIGHT : FC_WEIGHT_REGULAR;
}

bigtime_t time_us(const timespec& time) { return time.tv_sec * 1000000LL + time.tv_nsec / 1000; }

bigtime_t clock_us(clockid_t clock)
{
    timespec time;
    clock_gettime(clock, &time);
    return time_us(time);
}

}  // namespace

BPrivate::Mutex& FontLock()
{
    static BPrivate::Mutex& lock =
        *new BPrivate::Mutex;  // outlives every thread that draws at exit
    return lock;
}

bool FontFamily::Installed() const
{
    return std::any_of(styles.begin(), styles.end(), [](auto& style) { return style->installed; });
}

FontCatalog& FontCatalog::Get()
{
    static FontCatalog& catalog = *new FontCatalog;
    return catalog;
}

// A configuration of our own: other users of fontconfig in the process may swap theirs any time.
FontCatalog::FontCatalog()
{
    const bigtime_t start = clock_us(CLOCK_REALTIME);
    fConfig = FcInitLoadConfigAndFonts();
    fLastCheck = clock_us(CLOCK_MONOTONIC);
    _NoteTimes(start);
    _Collect();
}

// When the font folders changed, as one number: fontconfig compares whole seconds, and misses a
// font that came within the second of the last look. 0 if one changed after `since`, while the
// fonts were read perhaps.
uint64 FontCatalog::_FolderTimes(bigtime_t since) const
{
    const bigtime_t now = clock_us(CLOCK_REALTIME);
    uint64 times = 1;
    FcStrList* folders = fConfig != nullptr ? FcConfigGetFontDirs(fConfig) : nullptr;
    while (const FcChar8* folder = folders != nullptr ? FcStrListNext(folders) : nullptr) {
        struct stat info;
        if (stat(reinterpret_cast<const char*>(folder), &info) != 0)
            continue;
        const bigtime_t changed = time_us(info.st_mtim);
        if (changed > since - kClockTick_us && changed <= now)
            return 0;
        times = times * 1000003 + static_cast<uint64>(changed);
    }
    if (folders != nullptr)
        FcStrListDone(folders);
    return times;
}

void FontCatalog::_Collect()
{
    for (FcSetName set : {FcSetSystem, FcSetApplication}) {
        FcFontSet* fonts = fConfig != nullptr ? FcConfigGetFonts(fConfig, set) : nullptr;
        for (int i = 0; fonts != nullptr && i < fonts->nfont; i++)
            _Add(fonts->fonts[i]);
    }
    _Sort();
}

void FontCatalog::_Sort()
{
    fSorted.clear();
    for (size_t i = 0; i < fFamilies.size(); i++) {
        if (fFamilies[i]->Installed())
            fSorted.push_back(static_cast<uint16>(i + 1));
    }
    std::sort(fSorted.begin(), fSorted.end(), [this](uint16 a, uint16 b) {
        return strcasecmp(fFamilies[a - 1]->name.c_str(), fFamilies[b - 1]->name.c_str()) < 0;
    });
}

// Takes a scalable font into its family; a second file for the same style is passed over, but for
// one that replaces a Type 1 font.
FontStyle* FontCatalog::_Add(FcPattern* pattern)
{
    std::string key = file_key(pattern);
    std::string family = name_of(pattern, FC_FAMILY);
    if (key.empty() || family.empty() || !truth_of(pattern, FC_SCALABLE, true) ||
        truth_of(pattern, FC_VARIABLE, false) || truth_of(pattern, FC_COLOR, false)) {
        return nullptr;
    }
    auto known = fByFile.find(key);
    if (known != fByFile.end()) {
        known->second->installed = true;
        return known->second;
    }

    FontFamily* owner = _Named(family.c_str());
    if (owner == nullptr) {
        if (fFamilies.size() >= 0xFFFE)
            return nullptr;
        fFamilies.push_back(std::make_unique<FontFamily>());
        owner = fFamilies.back().get();
        owner->name = family;
        fByName[lower(family.c_str())] = static_cast<uint16>(fFamilies.size());
    }
    std::string name = name_of(pattern, FC_STYLE);
    if (name.empty())
        name = "Regular";
    FcChar8* format = nullptr;
    FcPatternGetString(pattern, FC_FONTFORMAT, 0, &format);
    bool postScript = format != nullptr && strcmp(reinterpret_cast<char*>(format), "Type 1") == 0;

    FontStyle* style = nullptr;
    for (auto& other : owner->styles) {
        if (strcasecmp(other->name.c_str(), name.c_str()) != 0)
            continue;
        if (other->installed && (!other->postScript || postScript)) {
            fByFile[key] = other.get();
            return other.get();
        }
        style = other.get();
        break;
    }
    if (style == nullptr) {
        if (owner->styles.size() >= 0xFFFE)
            return nullptr;
        owner->styles.push_back(std::make_unique<FontStyle>());
        style = owner->styles.back().get();
        style->familyId = fByName[lower(family.c_str())];
        style->styleId = static_cast<uint16>(owner->styles.size() - 1);
    }
    FcChar8* path = nullptr;
    FcPatternGetString(pattern, FC_FILE, 0, &path);
    style->name = name;
    style->path = reinterpret_cast<const char*>(path);
    style->index = integer_of(pattern, FC_INDEX, 0);
    double weight = FC_WEIGHT_REGULAR;
    FcPatternGetDouble(pattern, FC_WEIGHT, 0, &weight);
    style->weight = static_cast<int32>(weight);
    style->face = face_of(style->weight, integer_of(pattern, FC_SLANT, FC_SLANT_ROMAN),
                          integer_of(pattern, FC_WIDTH, FC_WIDTH_NORMAL));
    int spacing = integer_of(pattern, FC_SPACING, FC_PROPORTIONAL);
    style->fixed = spacing >= FC_MONO;
    style->dual = spacing == FC_DUAL;
    style->postScript = postScript;
    style->installed = true;
    style->unreadable = false;
    style->file.reset();
    FcPatternReference(pattern);
    if (style->pattern != nullptr)
        FcPatternDestroy(style->pattern);
    style->pattern = pattern;
    fByFile[key] = style;
    return style;
}

const FontFamily* FontCatalog::FamilyAt(int32 index) const
{
    if (index < 0 || index >= CountFamilies())
        return nullptr;
    return fFamilies[fSorted[index] - 1].get();
}

FontFamily* FontCatalog::_Named(const char* name)
{
    auto found = fByName.find(lower(name));
    return found != fByName.end() ? fFamilies[found->second - 1].get() : nullptr;
}

const FontFamily* FontCatalog::FindFamily(const char* name)
{
    const FontFamily* family = _Named(name);
    if (family != nullptr && family->Installed())
        return family;
    for (const OldName& old : kOldNames) {
        const FontStyle* style =
            strcasecmp(old.family, name) == 0 ? StyleFor(0, old.which) : nullptr;
        if (style != nullptr)
            return FamilyFor(style->familyId);
    }
    return family;
}

const FontFamily* FontCatalog::FamilyFor(uint16 id) const
{
    return id > 0 && id <= fFamilies.size() ? fFamilies[id - 1].get() : nullptr;
}

FontStyle* FontCatalog::FindStyle(const FontFamily& family, const char* name) const
{
    std::string wanted = lower(name);
    for (auto& style : family.styles) {
        if (style->installed && strcasecmp(style->name.c_str(), name) == 0)
            return style.get();
    }
    // Families call the same thing Regular, Book, Roman or Medium, and Italic or Oblique.
    auto says = [&](const char* word) { return wanted.find(word) != std::string::npos; };
    uint16 face = 0;
    if (says("bold") || says("demi"))
        face |= B_BOLD_FACE;
    if (says("italic") || says("oblique"))
        face |= B_ITALIC_FACE;
    if (says("black") || says("heavy"))
        face |= B_HEAVY_FACE;
    if (says("light") || says("thin"))
        face |= B_LIGHT_FACE;
    if (says("condensed") || says("narrow"))
        face |= B_CONDENSED_FACE;
    return NearestStyle(family, face);
}

FontStyle* FontCatalog::NearestStyle(const FontFamily& family, uint16 face) const
{
    FontStyle* best = nullptr;
    int32 bestCost = INT32_MAX;
    for (auto& style : family.styles) {
        if (!style->installed)
            continue;
        uint16 differs = style->face ^ face;
        int32 cost = std::abs(style->weight - weight_of(face)) +
                     (differs & B_ITALIC_FACE ? 250 : 0) + (differs & B_CONDENSED_FACE ? 500 : 0);
        if (cost < bestCost) {
            best = style.get();
            bestCost = cost;
        }
    }
    return best;
}

FontStyle* FontCatalog::_Match(FcPattern* query)
{
    if (fConfig == nullptr)
        return nullptr;
    FcConfigSubstitute(fConfig, query, FcMatchPattern);
    FcDefaultSubstitute(query);
    FcResult result;
    FcPattern* match = FcFontMatch(fConfig, query, &result);
    if (match == nullptr)
        return nullptr;
    auto found = fByFile.find(file_key(match));
    FontStyle* style = found != fByFile.end() ? found->second : nullptr;
    FcPatternDestroy(match);
    return style;
}

FontStyle* FontCatalog::StyleFor(uint16 family, uint16 style)
{
    if (const FontFamily* known = FamilyFor(family)) {
        if (style < known->styles.size() && !known->styles[style]->unreadable)
            return known->styles[style].get();
    }
    size_t which = family == 0 && style < std::size(kDefaults) ? style : 0;
    if (fDefaults[which] != nullptr && !fDefaults[which]->unreadable)
        return fDefaults[which];

    const DefaultFont& wanted = kDefaults[which];
    FcPattern* query = FcPatternCreate();
    FcPatternAddString(query, FC_FAMILY, reinterpret_cast<const FcChar8*>(wanted.family));
    FcPatternAddString(query, FC_FAMILY, reinterpret_cast<const FcChar8*>(wanted.generic));
    FcPatternAddInteger(query, FC_WEIGHT, wanted.weight);
    FcPatternAddInteger(query, FC_SPACING, wanted.spacing);
    FcPatternAddBool(query, FC_SCALABLE, FcTrue);
    FontStyle* found = _Match(query);
    FcPatternDestroy(query);
    if (found == nullptr || found->unreadable) {
        for (size_t i = 0; i < fSorted.size() && (found == nullptr || found->unreadable); i++)
            found = NearestStyle(*fFamilies[fSorted[i] - 1], B_REGULAR_FACE);
    }
    return fDefaults[which] = found;
}

FontStyle* FontCatalog::FallbackFor(const FontStyle& style, uint32 character)
{
    uint64 key = static_cast<uint64>(style.familyId) << 48 |
                 static_cast<uint64>(style.styleId) << 32 | character;
    auto known = fFallbacks.find(key);
    if (known != fFallbacks.end())
        return known->second;
    if (fFallbacks.size() >= kMaxFallbacks)
        fFallbacks.clear();

    const FontFamily* family = FamilyFor(style.familyId);
    FcPattern* query = FcPatternCreate();
    FcCharSet* characters = FcCharSetCreate();
    FcCharSetAddChar(characters, character);
    FcPatternAddCharSet(query, FC_CHARSET, characters);
    if (family != nullptr) {
        FcPatternAddString(query, FC_FAMILY,
                           reinterpret_cast<const FcChar8*>(family->name.c_str()));
    }
    FcPatternAddString(query, FC_FAMILY,
                       reinterpret_cast<const FcChar8*>(style.fixed ? "monospace" : "sans-serif"));
    FcPatternAddInteger(query, FC_WEIGHT, style.weight);
    FcPatternAddInteger(query, FC_SLANT,
                        style.face & B_ITALIC_FACE ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(query, FC_SCALABLE, FcTrue);
    FcPatternAddBool(query, FC_COLOR, FcFalse);
    FontStyle* found = _Match(query);
    FcPatternDestroy(query);
    FcCharSetDestroy(characters);

    FcCharSet* covered = nullptr;
    if (found != nullptr &&
        (FcPatternGetCharSet(found->pattern, FC_CHARSET, 0, &covered) != FcResultMatch ||
         !FcCharSetHasChar(covered, character) || found->unreadable)) {
        found = nullptr;
    }
    fFallbacks[key] = found;
    return found;
}

bool FontCatalog::Refresh(bool checkOnly)
{
    bigtime_t now = clock_us(CLOCK_MONOTONIC);
    if (now - fLastCheck < kCheckPeriod_us)
        return false;
    const bigtime_t start = clock_us(CLOCK_REALTIME);
    if (fConfig != nullptr && fFolderTimes != 0 && fFolderTimes == _FolderTimes(INT64_MAX) &&
        FcConfigUptoDate(fConfig)) {
        fLastCheck = now;
        return false;
    }
    if (checkOnly)
        return true;
    FcConfig* config = FcInitLoadConfigAndFonts();
    fLastCheck = now;
    if (config == nullptr)
        return false;
    if (fConfig != nullptr)
        FcConfigDestroy(fConfig);
    fConfig = config;
    _NoteTimes(start);
    for (auto& family : fFamilies) {
        for (auto& style : family->styles)
            style->installed = style->loaded && style->installed;
    }
    fByFile.clear();
    fFallbacks.clear();
    std::fill(std::begin(fDefaults), std::end(fDefaults), nullptr);
    _Collect();
    ScaledFont::ForgetAll();
    return true;
}

FontStyle* FontCatalog::AddFile(const char* path, int32 index, status_t* error)
{
    int count = 0;
    FcPattern* pattern =
        FcFreeTypeQuery(reinterpret_cast<const FcChar8*>(path), index, nullptr, &count);
    *error = B_BAD_VALUE;
    if (pattern == nullptr)
        return nullptr;
    auto before = fByFile.find(file_key(pattern));
    bool installed = before != fByFile.end() && before->second->installed;
    FontStyle* style = _Add(pattern);
    FcPatternDestroy(pattern);
    if (style == nullptr)
        return nullptr;
    if (!installed)
        style->loaded = style->path == path;  // else an installed font that is the same
    _Sort();
    *error = B_OK;
    return style;
}

void FontCatalog::Remove(FontStyle* style)
{
    style->installed = false;
    _Sort();
}

}  // namespace server
