#ifndef _STATABLE_H
#define _STATABLE_H

struct node_ref;
struct stat;
#include <SupportDefs.h>

class BVolume;

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
    status_t GetCreationTime(time_t* ctime) const;
    status_t SetCreationTime(time_t ctime);
    status_t GetAccessTime(time_t* atime) const;
    status_t SetAccessTime(time_t atime);
    status_t GetVolume(BVolume* volume) const;

private:
};

#endif  // _STATABLE_H
