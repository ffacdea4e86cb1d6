#ifndef _DIRECTORY_H
#define _DIRECTORY_H

#include <Entry.h>
#include <EntryList.h>
#include <Node.h>
#include <StorageDefs.h>
#include <SupportDefs.h>

class BFile;
class BSymLink;

// A directory held open; links to it are followed. Paths given to its calls are relative to it.
// Entries come in the file system's own order; what comes and goes during a scan may be missing.
class BDirectory : public BNode, public BEntryList {
public:
    BDirectory();
    BDirectory(const BDirectory& dir);
    BDirectory(const entry_ref* ref);
    BDirectory(const node_ref* nref);
    BDirectory(const BEntry* entry);
    BDirectory(const char* path);
    BDirectory(const BDirectory* dir, const char* path);
    virtual ~BDirectory();
    status_t SetTo(const entry_ref* ref);
    // Finds directories that the kit met before in this process.
    status_t SetTo(const node_ref* nref);
    status_t SetTo(const BEntry* entry);
    status_t SetTo(const char* path);
    status_t SetTo(const BDirectory* dir, const char* path);
    status_t GetEntry(BEntry* entry) const;
    // The root directory of its volume.
    bool IsRootDirectory() const;
    // A null `path` finds the directory itself. Unlike BEntry, the entry must exist.
    status_t FindEntry(const char* path, BEntry* entry, bool traverse = false) const;
    // Whether an entry of one of the kinds (a set of node_flavor) is in the directory or below it.
    bool Contains(const char* path, int32 nodeFlags = B_ANY_NODE) const;
    bool Contains(const BEntry* entry, int32 nodeFlags = B_ANY_NODE) const;
    status_t GetStatFor(const char* path, struct stat* stat) const;
    virtual status_t GetNextEntry(BEntry* entry, bool traverse = false);
    virtual status_t GetNextRef(entry_ref* ref);
    virtual int32 GetNextDirents(struct dirent* buffer, size_t size, int32 count = INT_MAX);
    virtual status_t Rewind();
    // Without "." and ".."; leaves the scan where it is. Negative: a status code.
    virtual int32 CountEntries();
    // `path` may also be absolute. `dir`, `file` and `link` may be null; else they are set to what
    // was created, and unset if nothing was.
    status_t CreateDirectory(const char* path, BDirectory* dir);
    // Empties a file that is there, unless that is to fail (B_FILE_EXISTS).
    status_t CreateFile(const char* path, BFile* file, bool failIfExists = false);
    status_t CreateSymLink(const char* path, const char* linkToPath, BSymLink* link);
    BDirectory& operator=(const BDirectory& dir);

private:
    class Scan;

    status_t _Open(int at, const char* path);
    status_t _NextName(const char** name);

    Scan* fScan;  // null until the first entry is asked for
};

// Creates a directory and the parents that are missing. B_OK if it is there already,
// B_NOT_A_DIRECTORY if something else is.
status_t create_directory(const char* path, mode_t mode);

#endif  // _DIRECTORY_H
