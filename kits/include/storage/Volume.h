#ifndef _VOLUME_H
#define _VOLUME_H

#include <Entry.h>
#include <Mime.h>
#include <StorageDefs.h>
#include <SupportDefs.h>

#include <sys/types.h>

class BBitmap;
class BDirectory;

// A mounted file system, named by its device number. Failures also leave the host's number in
// errno.
class BVolume {
public:
    BVolume();
    BVolume(dev_t device);
    BVolume(const BVolume& volume);
    virtual ~BVolume();
    status_t InitCheck() const;
    // B_ENTRY_NOT_FOUND if no file system is mounted from the device.
    status_t SetTo(dev_t device);
    void Unset();
    dev_t Device() const;
    status_t GetRootDirectory(BDirectory* directory) const;
    // Bytes; negative: a status code.
    off_t Capacity() const;
    off_t FreeBytes() const;
    off_t BlockSize() const;
    // The file system's label, else the name of its mount point. `name` holds B_FILE_NAME_LENGTH
    // bytes.
    status_t GetName(char* name) const;
    // Relabels the file system, which the host leaves to a service of its own. The user is asked
    // for nothing: what he may not do is B_PERMISSION_DENIED. B_NOT_SUPPORTED where no such service
    // runs and for file systems without labels, B_BAD_VALUE for what is not UTF-8, B_BUSY,
    // B_TIMED_OUT, and B_IO_ERROR for a name that the file system does not take.
    status_t SetName(const char* name);
    // The icon of the user's icon theme for that kind of volume; `icon` is `which` pixels square.
    status_t GetIcon(BBitmap* icon, icon_size which) const;
    // There are no vector icons of volumes: B_NOT_SUPPORTED.
    status_t GetIcon(uint8** _data, size_t* _size, type_code* _type) const;
    bool IsRemovable() const;
    bool IsReadOnly() const;
    bool IsPersistent() const;
    bool IsShared() const;
    bool KnowsMime() const;
    bool KnowsAttr() const;
    bool KnowsQuery() const;
    bool operator==(const BVolume& volume) const;
    bool operator!=(const BVolume& volume) const;
    BVolume& operator=(const BVolume& volume);

private:
    uint32 _Flags() const;

    dev_t fDevice;
    status_t fStatus;
};

#endif  // _VOLUME_H
