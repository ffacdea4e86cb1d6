#ifndef _SYM_LINK_H
#define _SYM_LINK_H

#include <Entry.h>
#include <Node.h>
#include <StorageDefs.h>
#include <SupportDefs.h>

class BPath;

// A symbolic link itself.
class BSymLink : public BNode {
public:
    BSymLink();
    BSymLink(const BSymLink& other);
    BSymLink(const entry_ref* ref);
    BSymLink(const BEntry* entry);
    BSymLink(const char* path);
    BSymLink(const BDirectory* dir, const char* path);
    virtual ~BSymLink();
    // Copies what the link says, cut to the buffer and with a terminator. Returns its whole length.
    ssize_t ReadLink(char* buffer, size_t size);
    // Makes the path that the link names, seen from a directory. Returns its length.
    ssize_t MakeLinkedPath(const char* dirPath, BPath* path);
    ssize_t MakeLinkedPath(const BDirectory* dir, BPath* path);
    bool IsAbsolute();
    BSymLink& operator=(const BSymLink& other);
};

#endif  // _SYM_LINK_H
