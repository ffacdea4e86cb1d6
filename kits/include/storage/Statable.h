#ifndef _STATABLE_H
#define _STATABLE_H

#include <StorageDefs.h>
#include <SupportDefs.h>

#include <sys/stat.h>
#include <sys/types.h>

class BVolume;
struct node_ref;

// What files, directories and links have in common. Failures also leave the host's number in errno.
class BStatable {
public:
    virtual ~BStatable();
    virtual status_t GetStat(struct stat* stat) const = 0;
    bool IsFile() const;
    bool IsDirectory() const;
    bool IsSymLink() const;
    status_t GetNodeRef(node_ref* ref) const;
    status_t GetOwner(uid_t* owner) const;
    status_t SetOwner(uid_t owner);
    status_t GetGroup(gid_t* group) const;
    status_t SetGroup(gid_t group);
    status_t GetPermissions(mode_t* permissions) const;
    status_t SetPermissions(mode_t permissions);
    status_t GetSize(off_t* size) const;
    status_t GetModificationTime(time_t* mtime) const;
    status_t SetModificationTime(time_t mtime);
    // The host keeps no creation time that could be set: the last change of the node stands in
    // for it, and setting it is B_NOT_SUPPORTED.
    status_t GetCreationTime(time_t* ctime) const;
    status_t SetCreationTime(time_t ctime);
    status_t GetAccessTime(time_t* atime) const;
    status_t SetAccessTime(time_t atime);
    status_t GetVolume(BVolume* volume) const;

private:
    // Applies the fields of `stat` that `what` names (a set of StatField).
    virtual status_t set_stat(struct stat& stat, uint32 what) = 0;
};

#endif  // _STATABLE_H
