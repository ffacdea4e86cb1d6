#ifndef STORAGE_FILE_LOCK_H
#define STORAGE_FILE_LOCK_H

#include <OS.h>
#include <SupportDefs.h>

#include <string>

namespace [[gnu::visibility("hidden")]] storage {

// Holds a file or a folder, so that programs of ours change what it stands for one after
// another. Not to be taken twice by one thread. A program that stands still holds the others up
// no longer than they have patience.
class FileLock {
public:
    // `flags` are open()'s.
    FileLock(const std::string& path, int flags, bigtime_t patience_us);
    ~FileLock();
    FileLock(const FileLock&) = delete;

    // B_BUSY if somebody else held it all the time.
    status_t Status() const { return fStatus; }

private:
    const int fFile;
    status_t fStatus = B_OK;
};

}  // namespace storage

#endif  // STORAGE_FILE_LOCK_H
