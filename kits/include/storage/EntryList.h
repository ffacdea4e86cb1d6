#ifndef _ENTRY_LIST_H
#define _ENTRY_LIST_H

#include <SupportDefs.h>

#include <limits.h>

class BEntry;
struct dirent;
struct entry_ref;

// A list of entries that is read from front to end.
class BEntryList {
public:
    BEntryList();
    virtual ~BEntryList();
    virtual status_t GetNextEntry(BEntry* entry, bool traverse = false) = 0;
    virtual status_t GetNextRef(entry_ref* ref) = 0;
    virtual int32 GetNextDirents(struct dirent* direntBuffer, size_t bufferSize,
        int32 maxEntries = INT_MAX)
        = 0;
    virtual status_t Rewind() = 0;
    virtual int32 CountEntries() = 0;
};

#endif  // _ENTRY_LIST_H
