// Files and directories by path: renaming, removing, asking, scanning. Main thread.

#include "files/filesystem.h"

#include "plinth.h"
#include "runtime/lasting_locker.h"
#include "runtime/strings.h"
#include "runtime/trace.h"

#include <Application.h>
#include <Directory.h>
#include <Entry.h>
#include <File.h>
#include <Path.h>
#include <Roster.h>
#include <Volume.h>
#include <VolumeRoster.h>
#include <exception>
#include <fs_info.h>

#include <errno.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

static const mode_t kNewDirectoryMode = 0777;
static const size_t kTextSize = 1024;  // of a text result, with the terminator

static char kNoText[] = "";

// The permission bits by their letters, in the order of the text.
static const struct {
    char letter;
    mode_t bit;
} kPermissions[] = {
    {'r', 0400}, {'w', 0200}, {'x', 0100}, {'r', 0040}, {'w', 0020},
    {'x', 0010}, {'r', 0004}, {'w', 0002}, {'x', 0001},
};
static const size_t kPermissionLetters = sizeof(kPermissions) / sizeof(kPermissions[0]);

// The program's thread scans; a handler may end the program meanwhile.
static LastingLocker sScanLock("scan");
static BDirectory* sScan GUARDED_BY(sScanLock);   // the directory being scanned
static BEntry* sScanEntry GUARDED_BY(sScanLock);  // what the scan fills

bool keep_file_error(const char* call)
{
    GetDosErr(errno);
    show_status(kFileError, 0, call, errno);
    return false;
}

bool no_memory(const char* call)
{
    errno = ENOMEM;
    return keep_file_error(call);
}

// Ends an operation: its result, by the error rule.
static bool report(status_t status, const char* call)
{
    if (status != B_OK)
        return keep_file_error(call);
    GetDosErr(0);  // kept on purpose: a success clears nothing
    return true;
}

static bool is_null(const void* argument, const char* call)
{
    if (argument != nullptr)
        return false;
    errno = EINVAL;
    keep_file_error(call);
    return true;
}

extern "C" bool DeleteFile(const char* path)
try {
    BEntry entry(text_or_empty(path));
    status_t status = entry.InitCheck();
    if (status == B_OK)
        status = entry.Exists() ? entry.Remove() : B_ENTRY_NOT_FOUND;
    return report(status, __func__);
} catch (const std::exception&) {
    return no_memory(__func__);
}

extern "C" bool RenameFile(const char* path, const char* new_name)
try {
    if (is_null(new_name, __func__))
        return false;
    BEntry entry(text_or_empty(path));
    const status_t status = entry.InitCheck();
    return report(status == B_OK ? entry.Rename(new_name, false) : status, __func__);
} catch (const std::exception&) {
    return no_memory(__func__);
}

extern "C" bool FileMoveTo(const char* path, const char* directory)
try {
    BEntry entry(text_or_empty(path));
    status_t status = entry.InitCheck();
    if (status == B_OK) {
        BDirectory target(text_or_empty(directory));
        status = target.InitCheck();
        if (status == B_OK)
            status = entry.MoveTo(&target, nullptr, false);
    }
    return report(status, __func__);
} catch (const std::exception&) {
    return no_memory(__func__);
}

extern "C" bool CreateLink(const char* target, const char* link_name)
try {
    if (is_null(link_name, __func__))
        return false;
    BEntry entry(text_or_empty(target));
    BDirectory directory;
    status_t status = entry.InitCheck();
    if (status == B_OK)
        status = entry.GetParent(&directory);
    if (status == B_OK)
        status = directory.CreateSymLink(link_name, target, nullptr);
    return report(status, __func__);
} catch (const std::exception&) {
    return no_memory(__func__);
}

extern "C" bool MakeDir(const char* path)
try {
    return report(create_directory(text_or_empty(path), kNewDirectoryMode), __func__);
} catch (const std::exception&) {
    return no_memory(__func__);
}

extern "C" bool ChangeDir(const char* path)
{
    return report(chdir(text_or_empty(path)) == 0 ? B_OK : B_ERROR, __func__);
}

extern "C" bool CopyFile(const char*, const char*)
{
    GetDosErr(0);
    return true;  // kept on purpose: nothing is copied
}

extern "C" bool CreateFileSize(const char* path, int32_t size)
try {
    BFile file(text_or_empty(path), B_WRITE_ONLY | B_CREATE_FILE);
    const status_t status = file.InitCheck();
    return report(status == B_OK ? file.SetSize(size) : status, __func__);
} catch (const std::exception&) {
    return no_memory(__func__);
}

extern "C" int32_t GetLengthFile(const char* path)
try {
    BFile file(text_or_empty(path), B_READ_ONLY);
    off_t size = 0;
    status_t status = file.InitCheck();
    if (status == B_OK)
        status = file.GetSize(&size);
    return report(status, __func__) ? static_cast<int32_t>(size) : -1;
} catch (const std::exception&) {
    no_memory(__func__);
    return -1;
}

static int32_t type_of(mode_t mode)
{
    if (S_ISREG(mode))
        return 0;
    if (S_ISDIR(mode))
        return 1;
    return S_ISLNK(mode) ? 2 : -1;
}

extern "C" int32_t GetFileType(const char* path)
try {
    BFile file(text_or_empty(path), B_READ_ONLY);
    struct stat info = {};
    status_t status = file.InitCheck();
    if (status == B_OK)
        status = file.GetStat(&info);
    return report(status, __func__) ? type_of(info.st_mode) : -1;
} catch (const std::exception&) {
    no_memory(__func__);
    return -1;
}

extern "C" bool IsEmptyDirectory(const char* path)
try {
    BDirectory directory(text_or_empty(path));
    int32 count = directory.InitCheck();
    if (count == B_OK)
        count = directory.Rewind();
    if (count == B_OK)
        count = directory.CountEntries();
    return report(count < 0 ? count : B_OK, __func__) && count == 0;
} catch (const std::exception&) {
    return no_memory(__func__);
}

// Opens what stands at `path`, with its directory part tidied first.
static status_t open_entry(const char* path, BFile* file)
{
    const BEntry entry(text_or_empty(path));
    return entry.InitCheck() == B_OK ? file->SetTo(&entry, B_READ_ONLY) : entry.InitCheck();
}

extern "C" char* GetAttribut(const char* path)
try {
    static char text[kTextSize];  // main thread
    BFile file;
    mode_t bits = 0;
    status_t status = open_entry(path, &file);
    if (status == B_OK)
        status = file.GetPermissions(&bits);
    if (!report(status, __func__))
        return kNoText;
    memset(text, 0, sizeof(text));
    for (size_t i = 0; i < kPermissionLetters; i++)
        text[i] = (bits & kPermissions[i].bit) != 0 ? kPermissions[i].letter : '-';
    return text;
} catch (const std::exception&) {
    no_memory(__func__);
    return kNoText;
}

extern "C" bool SetAttribut(const char* path, const char* text)
try {
    if (is_null(path, __func__) || is_null(text, __func__))
        return false;
    if (strlen(text) != kPermissionLetters) {
        errno = EINVAL;
        return keep_file_error(__func__);
    }
    char letters[kPermissionLetters + 1];
    strcpy(letters, text);
    StrLower(letters);
    mode_t bits = 0;
    for (size_t i = 0; i < kPermissionLetters; i++) {
        if (letters[i] == kPermissions[i].letter)
            bits |= kPermissions[i].bit;
    }
    BFile file;
    const status_t status = open_entry(path, &file);
    return report(status == B_OK ? file.SetPermissions(bits) : status, __func__);
} catch (const std::exception&) {
    return no_memory(__func__);
}

void close_scan()
{
    Autolock guard(sScanLock);
    delete sScan;
    delete sScanEntry;
    sScan = nullptr;
    sScanEntry = nullptr;
}

// The name of the scan's next entry; null at the end, which is no failure, and on one.
static char* next_name(const char* call) REQUIRES(sScanLock)
{
    static char name[kTextSize];  // main thread
    status_t status = sScan->GetNextEntry(sScanEntry, false);
    if (status == B_OK)
        status = sScanEntry->GetName(name);
    if (status == B_OK)
        return name;
    if (status != B_ENTRY_NOT_FOUND)
        keep_file_error(call);
    return nullptr;
}

extern "C" char* FindFirstEntry(const char* path)
try {
    Autolock guard(sScanLock);
    close_scan();
    sScan = new BDirectory(text_or_empty(path));
    if (sScan->InitCheck() != B_OK) {
        keep_file_error(__func__);
        close_scan();
        return kNoText;
    }
    sScanEntry = new BEntry;
    sScan->Rewind();
    char* name = next_name(__func__);
    if (name == nullptr) {
        close_scan();
        return kNoText;
    }
    return name;
} catch (const std::exception&) {
    no_memory(__func__);
    return kNoText;
}

extern "C" char* FindNextEntry(void)
try {
    Autolock guard(sScanLock);
    if (sScan == nullptr || sScanEntry == nullptr)
        return kNoText;
    char* name = next_name(__func__);
    return name != nullptr ? name : kNoText;
} catch (const std::exception&) {
    no_memory(__func__);
    return kNoText;
}

static status_t directory_of_program(BPath* path)
{
    app_info info;
    errno = EINVAL;  // without an application
    status_t status = be_app != nullptr ? be_app->GetAppInfo(&info) : B_NO_INIT;
    BPath program;
    if (status == B_OK)
        status = program.SetTo(&info.ref);
    return status == B_OK ? program.GetParent(path) : status;
}

extern "C" char* GetPath(int8_t which)
try {
    static char text[kTextSize];  // main thread
    BPath path;
    const status_t status = which != 0 ? directory_of_program(&path) : path.SetTo(".");
    if (!report(status, __func__))
        return kNoText;
    const size_t length = strlen(path.Path());
    if (length + 2 > kTextSize) {
        errno = ENAMETOOLONG;
        keep_file_error(__func__);
        return kNoText;
    }
    memset(text, 0, sizeof(text));
    memcpy(text, path.Path(), length);
    if (text[length - 1] != '/')
        text[length] = '/';
    return text;
} catch (const std::exception&) {
    no_memory(__func__);
    return kNoText;
}

extern "C" char* GetBootVolumeName(void)
try {
    static char name[kTextSize];  // main thread
    BVolumeRoster roster;
    BVolume volume;
    memset(name, 0, sizeof(name));
    status_t status = roster.GetBootVolume(&volume);
    if (status == B_OK)
        status = volume.GetName(name);
    return report(status, __func__) ? name : kNoText;
} catch (const std::exception&) {
    no_memory(__func__);
    return kNoText;
}

extern "C" bool Relabel(const char* path, const char* name)
try {
    if (is_null(name, __func__))
        return false;
    const dev_t device = dev_for_path(text_or_empty(path));
    if (static_cast<int64>(device) < 0)
        return keep_file_error(__func__);
    BVolume volume(device);
    const status_t status = volume.InitCheck();
    return report(status == B_OK ? volume.SetName(name) : status, __func__);
} catch (const std::exception&) {
    return no_memory(__func__);
}
