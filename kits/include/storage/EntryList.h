#ifndef _ENTRYLIST_H
#define _ENTRYLIST_H

#include <SupportDefs.h>

#include <dirent.h>
#include <limits.h>
#include <stddef.h>

class BEntry;
struct dirent;
struct entry_ref;

// A list of entries that is read from its start to its end. "." and ".." are only among the
// dirents.
class BEntryList {
public:
    BEntryList();
    virtual ~BEntryList();
    // B_ENTRY_NOT_FOUND after the last.
    virtual status_t GetNextEntry(BEntry* entry, bool traverse = false) = 0;
    virtual status_t GetNextRef(entry_ref* ref) = 0;
    // Fills `buffer` with records, each d_reclen bytes long. Returns their number, 0 at the end.
    virtual int32 GetNextDirents(struct dirent* buffer, size_t size, int32 count = INT_MAX) = 0;
    virtual status_t Rewind() = 0;
    virtual int32 CountEntries() = 0;
};

#endif  // _ENTRYLIST_H
