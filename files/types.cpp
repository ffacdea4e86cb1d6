// File types: what files say of themselves, and the system's types. Main thread.

#include "files/types.h"

#include "graphics/icons.h"
#include "plinth.h"
#include "runtime/guarded.h"
#include "runtime/registry.h"
#include "runtime/trace.h"

#include <Bitmap.h>
#include <Entry.h>
#include <Message.h>
#include <Mime.h>
#include <Node.h>
#include <NodeInfo.h>
#include <Path.h>
#include <StorageDefs.h>

#include <exception>
#include <string.h>

static const size_t kInfoSize = 1024;  // of a text result, with the terminator
static_assert(kInfoSize >= B_MIME_TYPE_LENGTH, "the kits write whole types into it");

static char kNoInfo[] = "";

static void trace(const char* call, const char* subject)
{
    show_dbg(subject == nullptr ? kBadArgument : kFileError, 0, call);
}

// The path of a ref, "" if it has none or does not fit.
static bool copy_path(const entry_ref& ref, char* text)
{
    BEntry entry(&ref);
    BPath path;
    if (entry.GetPath(&path) != B_OK || strlen(path.Path()) >= kInfoSize)
        return false;
    strcpy(text, path.Path());
    return true;
}

// ---- Files

// Calls `act` with what the file at `path` says of itself. False if there is none.
template <class Act>
static bool with_info(const char* path, Act act)
try {
    if (path == nullptr)
        return false;
    BEntry entry(path, true);
    if (entry.InitCheck() != B_OK)
        return false;
    BNode node(&entry);
    if (node.InitCheck() != B_OK)
        return false;
    BNodeInfo info(&node);
    return info.InitCheck() == B_OK && act(info);
} catch (const std::exception&) {
    return false;
}

static bool read_info(const BNodeInfo& info, int32_t which, char* text)
{
    entry_ref ref;
    switch (which) {
        case kFileType:
            return info.GetType(text) == B_OK;
        case kFilePreferredApp:
            return info.GetPreferredApp(text, B_OPEN) == B_OK;
        case kFileAppHint:
            return info.GetAppHint(&ref) == B_OK && copy_path(ref, text);
        default:
            return false;
    }
}

char* GetMimeInfo(const char* path, int32_t which)
{
    static char texts[kFileInfos][kInfoSize];
    if (which < 0 || which >= kFileInfos)
        return kNoInfo;
    char* text = texts[which];
    text[0] = '\0';
    if (!with_info(path, [&](BNodeInfo& info) { return read_info(info, which, text); })) {
        text[0] = '\0';
        trace("GetMimeInfo", path);
    }
    return text;
}

static bool write_info(BNodeInfo& info, const char* value, int32_t which)
{
    entry_ref ref;
    switch (which) {
        case kFileType:
            return info.SetType(value) == B_OK;
        case kFilePreferredApp:
            return info.SetPreferredApp(value, B_OPEN) == B_OK;
        case kFileAppHint:
            return BEntry(value, true).GetRef(&ref) == B_OK && info.SetAppHint(&ref) == B_OK;
        default:
            return false;
    }
}

void SetMimeInfo(const char* path, const char* value, int32_t which)
{
    if (value == nullptr ||
        !with_info(path, [&](BNodeInfo& info) { return write_info(info, value, which); }))
        trace("SetMimeInfo", value);
}

extern "C" char* GetFileMime(const char* path) { return GetMimeInfo(path, kFileType); }

extern "C" char* GetFilePreferredApp(const char* path)
{
    return GetMimeInfo(path, kFilePreferredApp);
}

extern "C" char* GetFileAppHint(const char* path)
{
    return GetMimeInfo(path, kFilePreferredApp);  // kept on purpose: not the hint
}

extern "C" void SetFileMime(const char* path, const char* type)
{
    SetMimeInfo(path, type, kFileType);
}

extern "C" void SetFilePreferredApp(const char* path, const char* signature)
{
    SetMimeInfo(path, signature, kFilePreferredApp);
}

extern "C" void SetFileAppHint(const char* path, const char* application_path)
{
    SetMimeInfo(path, application_path, kFileAppHint);
}

// ---- Types

// Calls `act` with a type that has the form of one. False else, or if `act` fails.
template <class Act>
static bool with_type(const char* type, const char* call, Act act)
try {
    BMimeType mime(type);
    if (mime.InitCheck() == B_OK && act(mime))
        return true;
    trace(call, type);
    return false;
} catch (const std::exception&) {
    return false;
}

extern "C" bool ExistsMime(const char* type)
{
    return with_type(type, __func__, [](BMimeType& mime) { return mime.IsInstalled(); });
}

extern "C" bool DeleteMime(const char* type)
{
    return with_type(type, __func__, [](BMimeType& mime) { return mime.Delete() == B_OK; });
}

extern "C" bool InstallMime(const char* type)
{
    return with_type(type, __func__, [](BMimeType& mime) { return mime.Install() == B_OK; });
}

extern "C" bool IsValidMime(const char* type) { return BMimeType::IsValid(type); }

extern "C" char* GetPreferredApp(const char* type)
{
    static char text[kInfoSize];
    const bool found = with_type(
        type, __func__, [](BMimeType& mime) { return mime.GetPreferredApp(text, B_OPEN) == B_OK; });
    return found ? text : kNoInfo;
}

extern "C" char* GetAppHintMime(const char* type)
{
    static char text[kInfoSize];
    const bool found = with_type(type, __func__, [](BMimeType& mime) {
        entry_ref ref;
        return mime.GetAppHint(&ref) == B_OK && copy_path(ref, text);
    });
    return found ? text : kNoInfo;
}

extern "C" int32_t LoadMimeIcon(const char* type)
try {
    BMimeType mime(type);
    const bool is_open = RegistryLock().List(kIcons) != nullptr;
    IconRecord* icon = is_open && mime.InitCheck() == B_OK ? MyAllocIcon() : nullptr;
    if (icon == nullptr)
        return 0;
    const auto ident = static_cast<int32_t>(GetUniqueID());
    icon->ident = ident;
    const bool loaded = guarded(false, [&] {
        return mime.GetIcon(icon->image, B_MINI_ICON) == B_OK &&
               mime.GetIcon(icon->selected_image, B_LARGE_ICON) == B_OK;
    });
    if (loaded && enter_record(RegistryLock(), icon))
        return ident;  // the record may be closed already
    MyFreeIcon(icon);
    trace(__func__, type);
    return 0;
} catch (const std::exception&) {
    trace(__func__, type);
    return 0;
}

// Neither has a caller that wants the texts: what is read is left.

int32_t GetExtensions(const char* type)
{
    BMessage message;
    BMimeType mime(type);
    const char* text = nullptr;
    if (mime.InitCheck() == B_OK && mime.GetFileExtensions(&message) == B_OK) {
        for (int32 i = 0; message.FindString("extensions", i, &text) == B_OK;)
            i++;
    }
    return 0;
}

int32_t GetMimeList(const char* type)
{
    BMessage message;
    BMimeType mime(type);
    int32 sub = 0;
    int32 super = 0;
    const char* text = nullptr;
    if (mime.InitCheck() == B_OK && mime.GetSupportingApps(&message) == B_OK &&
        message.FindInt32("be:sub", &sub) == B_OK &&
        message.FindInt32("be:super", &super) == B_OK) {
        for (int32 i = 0; i < sub + super; i++)
            message.FindString("applications", i, &text);
    }
    return 0;
}
