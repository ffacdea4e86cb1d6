#ifndef _PATH_H
#define _PATH_H

#include <Entry.h>
#include <Flattenable.h>
#include <StorageDefs.h>
#include <SupportDefs.h>

class BDirectory;

// An absolute path without "." or ".." parts, doubled or trailing slashes; nothing need exist at
// its end. A path that is relative or has such parts, or any path when `normalize` is set, is
// resolved against the file system: links in its directory part are followed, and that part must
// exist.
class BPath : public BFlattenable {
public:
    BPath();
    BPath(const BPath& path);
    BPath(const entry_ref* ref);
    BPath(const BEntry* entry);
    BPath(const char* dir, const char* leaf = nullptr, bool normalize = false);
    BPath(const BDirectory* dir, const char* leaf = nullptr, bool normalize = false);
    virtual ~BPath();
    status_t InitCheck() const;
    status_t SetTo(const entry_ref* ref);
    status_t SetTo(const BEntry* entry);
    status_t SetTo(const char* path, const char* leaf = nullptr, bool normalize = false);
    status_t SetTo(const BDirectory* dir, const char* leaf = nullptr, bool normalize = false);
    void Unset();
    // `path` must be relative.
    status_t Append(const char* path, bool normalize = false);
    const char* Path() const;
    // The part after the last slash, "" for the root directory; null if the path is not set.
    const char* Leaf() const;
    status_t GetParent(BPath* path) const;
    bool IsAbsolute() const;
    bool operator==(const BPath& item) const;
    bool operator==(const char* path) const;
    bool operator!=(const BPath& item) const;
    bool operator!=(const char* path) const;
    BPath& operator=(const BPath& item);
    BPath& operator=(const char* path);
    // Flattens as the path's entry_ref (B_REF_TYPE): device, directory, name.
    virtual bool IsFixedSize() const;
    virtual type_code TypeCode() const;
    virtual ssize_t FlattenedSize() const;
    virtual status_t Flatten(void* buffer, ssize_t size) const;
    virtual bool AllowsTypeCode(type_code code) const;
    virtual status_t Unflatten(type_code code, const void* buffer, ssize_t size);

private:
    status_t _Resolve(const char* path, bool normalize);
    status_t _Adopt(status_t status, const char* path);

    char* fPath;  // null when not set
    status_t fStatus;
};

#endif  // _PATH_H
