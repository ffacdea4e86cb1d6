#ifndef _DIRECTORY_H
#define _DIRECTORY_H

#include <EntryList.h>
#include <Node.h>
#include <StorageDefs.h>

// A directory, its entries read in the host's order, without "." and "..".
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
    status_t SetTo(const node_ref* nref);
    status_t SetTo(const BEntry* entry);
    status_t SetTo(const char* path);
    status_t SetTo(const BDirectory* dir, const char* path);
    void Unset();
    status_t GetEntry(BEntry* entry) const;
    bool IsRootDirectory() const;
    // `path` is relative to the directory.
    status_t FindEntry(const char* path, BEntry* entry, bool traverse = false) const;
    bool Contains(const char* path, int32 nodeFlags = B_ANY_NODE) const;
    bool Contains(const BEntry* entry, int32 nodeFlags = B_ANY_NODE) const;
    status_t GetStatFor(const char* path, struct stat* stat) const;
    // B_ENTRY_NOT_FOUND behind the last entry.
    virtual status_t GetNextEntry(BEntry* entry, bool traverse = false);
    virtual status_t GetNextRef(entry_ref* ref);
    // Returns the number of records put into the buffer, 0 behind the last.
    virtual int32 GetNextDirents(struct dirent* buf, size_t bufSize, int32 count = INT_MAX);
    virtual status_t Rewind();
    virtual int32 CountEntries();
    status_t CreateDirectory(const char* path, BDirectory* dir);
    BDirectory& operator=(const BDirectory& dir);

private:
    status_t _CheckDirectory(status_t status);
    void _CloseStream();
    struct dirent* _Next();

    void* fStream;  // the host's directory stream, null until it is read
};

#endif  // _DIRECTORY_H
