#ifndef _MIME_TYPE_H
#define _MIME_TYPE_H

#include <Messenger.h>
#include <Mime.h>
#include <StorageDefs.h>
#include <SupportDefs.h>

class BBitmap;
class BMessage;
class BString;
struct entry_ref;

enum app_verb { B_OPEN = 0 };

extern const char* B_APP_MIME_TYPE;  // the one of executables, B_ELF_APP_MIME_TYPE
extern const char* B_PEF_APP_MIME_TYPE;
extern const char* B_PE_APP_MIME_TYPE;
extern const char* B_ELF_APP_MIME_TYPE;
extern const char* B_RESOURCE_MIME_TYPE;
extern const char* B_FILE_MIME_TYPE;  // of any file

// Of messages that StartWatching() asks for: the field "be:which" says what changed of "be:type",
// "be:action" how. Of an icon for another type, that is in "be:extra_type"; "be:large_icon" tells
// which of two icons it was.
enum {
    B_ICON_CHANGED = 0x00000001,
    B_PREFERRED_APP_CHANGED = 0x00000002,
    B_ATTR_INFO_CHANGED = 0x00000004,
    B_FILE_EXTENSIONS_CHANGED = 0x00000008,
    B_SHORT_DESCRIPTION_CHANGED = 0x00000010,
    B_LONG_DESCRIPTION_CHANGED = 0x00000020,
    B_ICON_FOR_TYPE_CHANGED = 0x00000040,
    B_APP_HINT_CHANGED = 0x00000080,
    B_MIME_TYPE_CREATED = 0x00000100,
    B_MIME_TYPE_DELETED = 0x00000200,
    B_SNIFFER_RULE_CHANGED = 0x00000400,
    B_SUPPORTED_TYPES_CHANGED = 0x00000800,
    B_EVERYTHING_CHANGED = static_cast<int>(0xFFFFFFFF)
};

enum {
    B_META_MIME_CHANGED = 0x4D4D4348,   // 'MMCH'
    B_META_MIME_MODIFIED = 0x4D4D4D44,  // 'MMMD'
    B_META_MIME_DELETED = 0x4D4D444C    // 'MMDL'
};

// A MIME type and what the type database says of it. The database is the desktop's: its system
// part is only read, what is set lands in the user's own part, where other programs see it;
// preferred applications in the user's mimeapps.list; what the desktop has no place for is kept
// beside it, for programs of this kit. What other programs change is seen with the next call.
//
// Signatures of the desktop's applications (kits/storage/DesktopEntries.h) are installed types,
// with their application's name, icon and executable. Types are equal without case. Failures also
// leave the host's number in errno. Calls that ask for a type that is not installed fail with
// B_ENTRY_NOT_FOUND, those that set something install it. Any thread, each object one at a time.
class BMimeType {
public:
    BMimeType();
    BMimeType(const char* mimeType);
    virtual ~BMimeType();
    BMimeType(const BMimeType&) = delete;
    BMimeType& operator=(const BMimeType&) = delete;

    // B_BAD_VALUE, and nothing set, unless IsValid(mimeType).
    status_t SetTo(const char* mimeType);
    void Unset();
    status_t InitCheck() const;
    const char* Type() const;  // as it was given; null when not set
    bool IsValid() const;
    bool IsSupertypeOnly() const;
    status_t GetSupertype(BMimeType* supertype) const;
    bool operator==(const BMimeType& type) const;
    bool operator==(const char* type) const;
    // True for the same type, and for a supertype of `type`.
    bool Contains(const BMimeType* type) const;

    // B_FILE_EXISTS for a type that is installed; B_BAD_VALUE for one that no file can be named by.
    status_t Install();
    // B_ENTRY_NOT_FOUND for a type that is not installed, B_NOT_ALLOWED for one that the system or
    // an application brings. The user's preferred application goes, too.
    status_t Delete();
    bool IsInstalled() const;

    // `icon` is `size` pixels square, of any colour space. The icon that was set, else the one of
    // the user's icon theme for the type, or for its kind if the system brings the type;
    // B_ENTRY_NOT_FOUND without any.
    status_t GetIcon(BBitmap* icon, icon_size size) const;
    // The vector icon that was set, in memory for the caller to delete[].
    status_t GetIcon(uint8** _data, size_t* _size) const;
    // The user's choice, else the system's, else an application that tells the type or what it is
    // a kind of. `signature` holds B_MIME_TYPE_LENGTH bytes.
    status_t GetPreferredApp(char* signature, app_verb verb = B_OPEN) const;
    status_t GetAttrInfo(BMessage* info) const;
    // Strings "extensions", without dots; none is no failure.
    status_t GetFileExtensions(BMessage* extensions) const;
    // In the user's language. `description` holds B_MIME_TYPE_LENGTH bytes; longer ones are cut.
    status_t GetShortDescription(char* description) const;
    status_t GetLongDescription(char* description) const;
    // Strings "applications": "be:sub" of them tell the type itself, then "be:super" what it is a
    // kind of.
    status_t GetSupportingApps(BMessage* signatures) const;

    // Null, or empty, removes what was set.
    status_t SetIcon(const BBitmap* icon, icon_size size);
    status_t SetIcon(const uint8* data, size_t size);
    status_t SetPreferredApp(const char* signature, app_verb verb = B_OPEN);
    status_t SetAttrInfo(const BMessage* info);
    // In place of all that the system tells. B_BAD_VALUE if one has a dot's worth of path or
    // pattern in it.
    status_t SetFileExtensions(const BMessage* extensions);
    // B_BAD_VALUE for texts that do not fit the buffers above, or are no UTF-8.
    status_t SetShortDescription(const char* description);
    status_t SetLongDescription(const char* description);

    // Strings "super_types"; "types". Add to the message.
    static status_t GetInstalledSupertypes(BMessage* supertypes);
    static status_t GetInstalledTypes(BMessage* types);
    static status_t GetInstalledTypes(const char* supertype, BMessage* subtypes);
    // Those that open any file, as GetSupportingApps().
    static status_t GetWildcardApps(BMessage* wildcardApps);

    // "supertype" or "supertype/subtype", shorter than B_MIME_TYPE_LENGTH, without white space and
    // any of <>@,;:"()[]?=\.
    static bool IsValid(const char* mimeType);

    // Where the application of a signature was last; for those of the desktop, where it is.
    status_t GetAppHint(entry_ref* ref) const;
    status_t SetAppHint(const entry_ref* ref);

    // The icon that this application has for files of another type.
    status_t GetIconForType(const char* type, BBitmap* icon, icon_size which) const;
    status_t GetIconForType(const char* type, uint8** _data, size_t* _size) const;
    status_t SetIconForType(const char* type, const BBitmap* icon, icon_size which);
    status_t SetIconForType(const char* type, const uint8* data, size_t size);

    // The rule that was set. B_BAD_MIME_SNIFFER_RULE for what is none; `parseError` may be null.
    status_t GetSnifferRule(BString* result) const;
    status_t SetSnifferRule(const char*);
    static status_t CheckSnifferRule(const char* rule, BString* parseError);

    // By name and content; by content; by name alone.
    static status_t GuessMimeType(const entry_ref* file, BMimeType* type);
    static status_t GuessMimeType(const void* buffer, int32 length, BMimeType* type);
    static status_t GuessMimeType(const char* filename, BMimeType* type);

    // Sends `target` B_META_MIME_CHANGED messages from now on; B_BAD_VALUE if it is not valid, or
    // to the other call if it was not watching.
    static status_t StartWatching(BMessenger target);
    static status_t StopWatching(BMessenger target);

    status_t SetType(const char* mimeType);  // SetTo()

private:
    status_t _CheckInstalled() const;

    char* fType;  // null when not set
    status_t fStatus;
};

#endif  // _MIME_TYPE_H
