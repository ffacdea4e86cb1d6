#ifndef _ENTRY_H
#define _ENTRY_H

#include <Statable.h>
#include <SupportDefs.h>

class BDirectory;
class BPath;

namespace BPrivate {
struct StorageAccess;
}

// Names an entry of a directory, whether it exists or not. The numbers alone do not lead back to
// the directory on this host: it is found if the kit met it before in this process, as it has for
// every one of the latest thousands of refs that the kits hand out, and nobody moved it since but
// this kit or where that watches.
struct entry_ref {
    entry_ref();
    entry_ref(dev_t dev, ino_t dir, const char* name);
    entry_ref(const entry_ref& ref);
    ~entry_ref();
    // Copies `name`; null leaves the ref without a name.
    status_t set_name(const char* name);
    bool operator==(const entry_ref& ref) const;
    bool operator!=(const entry_ref& ref) const;
    entry_ref& operator=(const entry_ref& ref);
    dev_t device;
    ino_t directory;
    char* name;
};

// An entry in an existing directory; the entry itself need not exist. With `traverse` a symbolic
// link is followed to what it names. Failures also leave the host's number in errno.
class BEntry : public BStatable {
public:
    BEntry();
    BEntry(const BDirectory* dir, const char* path, bool traverse = false);
    BEntry(const entry_ref* ref, bool traverse = false);
    BEntry(const char* path, bool traverse = false);
    BEntry(const BEntry& entry);
    virtual ~BEntry();
    status_t InitCheck() const;
    bool Exists() const;
    const char* Name() const;
    virtual status_t GetStat(struct stat* stat) const;
    status_t SetTo(const BDirectory* dir, const char* path, bool traverse = false);
    status_t SetTo(const entry_ref* ref, bool traverse = false);
    status_t SetTo(const char* path, bool traverse = false);
    void Unset();
    status_t GetRef(entry_ref* ref) const;
    status_t GetPath(BPath* path) const;
    // B_ENTRY_NOT_FOUND for the root directory.
    status_t GetParent(BEntry* entry) const;
    status_t GetParent(BDirectory* dir) const;
    // `buffer` holds B_FILE_NAME_LENGTH bytes.
    status_t GetName(char* buffer) const;
    // A relative `path` starts at the entry's own directory. The object then names the new place.
    status_t Rename(const char* path, bool clobber = false);
    status_t MoveTo(BDirectory* dir, const char* path = nullptr, bool clobber = false);
    // Removes a file, a link or an empty directory; the object stays set.
    status_t Remove();
    bool operator==(const BEntry& item) const;
    bool operator!=(const BEntry& item) const;
    BEntry& operator=(const BEntry& item);

private:
    friend struct BPrivate::StorageAccess;

    virtual status_t set_stat(struct stat& stat, uint32 what);
    status_t _Adopt(status_t status, const char* path);
    status_t _MoveTo(const char* target, bool clobber);

    char* fPath;  // absolute, the directory part free of links; null when not set
    status_t fStatus;
};

status_t get_ref_for_path(const char* path, entry_ref* ref);
bool operator<(const entry_ref& a, const entry_ref& b);

#endif  // _ENTRY_H
