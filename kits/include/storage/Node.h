#ifndef _NODE_H
#define _NODE_H

#include <Statable.h>
#include <SupportDefs.h>

class BDirectory;
class BEntry;
struct entry_ref;

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

// An open file, directory or link; links are not followed. Failures also leave the host's number
// in errno.
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
    status_t SetTo(const BDirectory* dir, const char* path);
    void Unset();
    // Keeps others from locking the node; B_BUSY if one has. The lock ends with the object.
    status_t Lock();
    status_t Unlock();
    status_t Sync();
    BNode& operator=(const BNode& node);
    bool operator==(const BNode& node) const;
    bool operator!=(const BNode& node) const;
    // A descriptor of the node for the caller to close; negative on failure.
    int Dup();

private:
    friend class BDirectory;
    virtual status_t set_stat(struct stat& stat, uint32 what);
    status_t _Open(const char* path, int flags);

    int fFile;    // descriptor, -1 when not set
    char* fPath;  // where the node was when it was opened; null when not set
    status_t fStatus;
};

#endif  // _NODE_H
