#ifndef _NODE_H
#define _NODE_H

#include <Statable.h>
#include <SupportDefs.h>
#include <fs_attr.h>

class BDirectory;
class BEntry;
class BString;
struct entry_ref;

namespace BPrivate {
struct StorageAccess;
}

// Names a node (a file, directory or link itself, whatever its entries are called).
struct node_ref {
    node_ref();
    node_ref(dev_t device, ino_t node);
    node_ref(const node_ref& other);
    bool operator==(const node_ref& other) const;
    bool operator!=(const node_ref& other) const;
    bool operator<(const node_ref& other) const;
    node_ref& operator=(const node_ref& other);
    dev_t device;
    ino_t node;
};

// An existing file, directory or link, held open: it stays the same node when its entry moves or
// goes. A link is the node itself, never what it names. Nothing of the node need be readable to
// hold it. Failures also leave the host's number in errno; what needs a node that is set answers
// B_FILE_ERROR without one. One thread at a time.
//
// Attributes are the host's extended attributes of the user's namespace, "user.NAME", and other
// programs see them: text without its terminator, all else byte for byte. A type that the value
// does not tell stands beside it (kits/storage/Attributes.h has the encoding). Where the file
// system keeps no attributes, these calls are B_NOT_SUPPORTED. The host may limit an attribute to a
// few kilobytes (B_DEVICE_FULL); 64 KB is the most anywhere (B_TOO_MANY_ARGS).
class BNode : public BStatable {
public:
    BNode();
    BNode(const entry_ref* ref);
    BNode(const BEntry* entry);
    BNode(const char* path);
    BNode(const BDirectory* dir, const char* path);
    BNode(const BNode& node);
    virtual ~BNode();
    status_t InitCheck() const;
    virtual status_t GetStat(struct stat* stat) const;
    status_t SetTo(const entry_ref* ref);
    status_t SetTo(const BEntry* entry);
    status_t SetTo(const char* path);
    // `path` is relative to `dir`.
    status_t SetTo(const BDirectory* dir, const char* path);
    void Unset();

    // Until Unlock() or Unset() nobody else can open or lock the node: B_BUSY, here too if somebody
    // has locked it. Who has it open keeps it; another program's BNode may still name it.
    status_t Lock();
    status_t Unlock();
    status_t Sync();

    // Writes at `offset`; at 0 the new value replaces the old one. Returns the bytes written.
    ssize_t WriteAttr(const char* name, type_code type, off_t offset, const void* buffer,
                      size_t length);
    // Returns the bytes read, 0 behind the end; any type reads any attribute.
    ssize_t ReadAttr(const char* name, type_code type, off_t offset, void* buffer,
                     size_t length) const;
    status_t RemoveAttr(const char* name);
    // Replaces an attribute that has the new name.
    status_t RenameAttr(const char* oldName, const char* newName);
    status_t GetAttrInfo(const char* name, attr_info* info) const;
    // `buffer` holds B_ATTR_NAME_LENGTH bytes. B_ENTRY_NOT_FOUND after the last.
    status_t GetNextAttrName(char* buffer);
    status_t RewindAttrs();
    status_t WriteAttrString(const char* name, const BString* data);
    status_t ReadAttrString(const char* name, BString* result) const;

    BNode& operator=(const BNode& node);
    bool operator==(const BNode& node) const;  // the same node, or both not set
    bool operator!=(const BNode& node) const;
    // A descriptor of the caller's own; for a plain BNode it names the node without opening it.
    int Dup();

private:
    friend struct BPrivate::StorageAccess;

    virtual status_t set_stat(struct stat& stat, uint32 what);
    status_t _Adopt(int fd);
    status_t _Fail(status_t status);

    int fFd;      // -1 when not set
    int fLockFd;  // -1 when not locked
    status_t fStatus;
    char* fAttrNames;  // those still to be told, each with its terminator; null before the first
    size_t fAttrNamesSize;
    size_t fAttrNext;
};

#endif  // _NODE_H
