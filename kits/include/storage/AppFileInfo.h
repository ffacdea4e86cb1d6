#ifndef _APP_FILE_INFO_H
#define _APP_FILE_INFO_H

#include <NodeInfo.h>

class BFile;
class BMessage;

struct version_info {
    uint32 major;
    uint32 middle;
    uint32 minor;
    uint32 variety;  // B_DEVELOPMENT_VERSION ...
    uint32 internal;
    char short_info[64];
    char long_info[256];
};

enum info_variety {
    B_DEVELOPMENT_VERSION = 0,
    B_ALPHA_VERSION = 1,
    B_BETA_VERSION = 2,
    B_GAMMA_VERSION = 3,
    B_GOLDEN_MASTER_VERSION = 4,
    B_FINAL_VERSION = 5
};

enum info_location { B_USE_ATTRIBUTES = 1, B_USE_RESOURCES = 2, B_USE_BOTH_LOCATIONS = 3 };

enum version_kind { B_APP_VERSION_KIND = 0, B_SYSTEM_VERSION_KIND = 1 };

// What an executable says of itself. Kept as its attributes, with the platform's names; there are
// no resources on this host. Where an executable has no signature or icon of its own and the
// desktop has an entry for it, those of the entry count. Null removes what was set.
class BAppFileInfo : public BNodeInfo {
public:
    BAppFileInfo();
    BAppFileInfo(BFile* file);
    virtual ~BAppFileInfo();
    status_t SetTo(BFile* file);

    virtual status_t GetType(char* type) const;
    virtual status_t SetType(const char* type);
    // `signature` holds B_MIME_TYPE_LENGTH bytes.
    status_t GetSignature(char* signature) const;
    status_t SetSignature(const char* signature);
    // `catalogEntry` holds B_MIME_TYPE_LENGTH * 3 bytes.
    status_t GetCatalogEntry(char* catalogEntry) const;
    status_t SetCatalogEntry(const char* catalogEntry);
    // B_SINGLE_LAUNCH ...
    status_t GetAppFlags(uint32* flags) const;
    status_t SetAppFlags(uint32 flags);
    status_t RemoveAppFlags();

    // Strings "types". With `updateMimeDB` the application is made known to the desktop, if it has
    // a signature: create_app_meta_mime().
    status_t GetSupportedTypes(BMessage* types) const;
    status_t SetSupportedTypes(const BMessage* types, bool updateMimeDB, bool syncAll);
    status_t SetSupportedTypes(const BMessage* types, bool syncAll);
    status_t SetSupportedTypes(const BMessage* types);
    // Any type is supported by who tells application/octet-stream.
    bool IsSupportedType(const char* type) const;
    bool Supports(BMimeType* type) const;

    // With `updateMimeDB` the icon is also that of the signature.
    virtual status_t GetIcon(BBitmap* icon, icon_size which) const;
    status_t SetIcon(const BBitmap* icon, icon_size which, bool updateMimeDB);
    virtual status_t SetIcon(const BBitmap* icon, icon_size which);
    status_t GetIcon(uint8** data, size_t* size) const;
    status_t SetIcon(const uint8* data, size_t size, bool updateMimeDB);
    status_t SetIcon(const uint8* data, size_t size);

    status_t GetVersionInfo(version_info* info, version_kind kind) const;
    status_t SetVersionInfo(const version_info* info, version_kind kind);

    status_t GetIconForType(const char* type, BBitmap* icon, icon_size which) const;
    status_t GetIconForType(const char* type, uint8** data, size_t* size) const;
    status_t SetIconForType(const char* type, const BBitmap* icon, icon_size which,
                            bool updateMimeDB);
    status_t SetIconForType(const char* type, const BBitmap* icon, icon_size which);
    status_t SetIconForType(const char* type, const uint8* data, size_t size, bool updateMimeDB);
    status_t SetIconForType(const char* type, const uint8* data, size_t size);

    // There are attributes only.
    void SetInfoLocation(info_location location);
    bool IsUsingAttributes() const;
    bool IsUsingResources() const;

private:
    status_t _UpdateDatabase();
};

#endif  // _APP_FILE_INFO_H
