#ifndef SERVER_FONT_CATALOG_H
#define SERVER_FONT_CATALOG_H

// The installed fonts by family and style, as fontconfig knows them, and the fonts that stand in
// for missing characters. Everything here is used with the font lock held.

#include <Font.h>

#include <fontconfig/fontconfig.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "support/Mutex.h"

namespace server {

class FontFile;

// Guards the catalog, the open font files and the glyph caches: all that FreeType, HarfBuzz and
// fontconfig are asked. Taken only where a cache of finished text has no answer.
BPrivate::Mutex& FontLock();

// One style of a family: a face of a font file. Lives as long as the process, so that ids and
// pointers stay good when fonts come and go.
struct FontStyle {
    std::string name;
    std::string path;
    int32 index = 0;  // face of the file; a named instance in the upper 16 bits
    uint16 familyId = 0;
    uint16 styleId = 0;
    uint16 face = B_REGULAR_FACE;  // what the style brings itself
    int32 weight = FC_WEIGHT_REGULAR;
    bool installed = true;
    bool loaded = false;  // by the program itself; no part of the configuration
    bool fixed = false;
    bool dual = false;
    bool postScript = false;
    FcPattern* pattern = nullptr;
    std::shared_ptr<FontFile> file;  // null while closed
    bool unreadable = false;
};

struct FontFamily {
    std::string name;
    std::vector<std::unique_ptr<FontStyle>> styles;  // by style id
    bool Installed() const;
};

class FontCatalog {
public:
    // Reads the configuration on the first call, some milliseconds.
    static FontCatalog& Get() REQUIRES(FontLock());

    int32 CountFamilies() const { return fSorted.size(); }
    const FontFamily* FamilyAt(int32 index) const;
    // By its name in any case, or one that BeOS had for a standard font; null if there is none.
    const FontFamily* FindFamily(const char* name);
    const FontFamily* FamilyFor(uint16 id) const;

    // The style of this name, or the nearest one to what the name says.
    FontStyle* FindStyle(const FontFamily& family, const char* name) const;
    FontStyle* NearestStyle(const FontFamily& family, uint16 face) const;
    // Family 0 has the default fonts: style 0 plain, 1 bold, 2 fixed. Unknown ids become the plain
    // font; null only when no font at all is installed.
    FontStyle* StyleFor(uint16 family, uint16 style);
    // An installed font that has the character and comes near `style`, or null.
    FontStyle* FallbackFor(const FontStyle& style, uint32 character);

    // True if fonts were installed or removed since the last look; takes the change over unless
    // `checkOnly`.
    bool Refresh(bool checkOnly);
    FontStyle* AddFile(const char* path, int32 index, status_t* error);
    void Remove(FontStyle* style);

private:
    FontCatalog();
    void _Collect();
    void _Sort();
    FontStyle* _Add(FcPattern* pattern);
    FontFamily* _Named(const char* name);
    FontStyle* _Match(FcPattern* query);
    uint64 _FolderTimes(bigtime_t since) const;
    void _NoteTimes(bigtime_t since) { fFolderTimes = _FolderTimes(since); }

    FcConfig* fConfig;
    std::vector<std::unique_ptr<FontFamily>> fFamilies;  // family id - 1
    std::vector<uint16> fSorted;                         // ids of installed families by name
    std::unordered_map<std::string, FontStyle*> fByFile;
    std::unordered_map<std::string, uint16> fByName;  // lower case
    std::unordered_map<uint64, FontStyle*> fFallbacks;
    FontStyle* fDefaults[3] = {};
    uint64 fFolderTimes = 0;  // of the font folders; 0: has to be looked at again
    bigtime_t fLastCheck = 0;
};

}  // namespace server

#endif  // SERVER_FONT_CATALOG_H
