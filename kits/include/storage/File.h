#ifndef _FILE_H
#define _FILE_H

#include <DataIO.h>
#include <Node.h>
#include <StorageDefs.h>
#include <SupportDefs.h>

// A file open for reading and writing; links to it are followed. `openMode` is B_READ_ONLY,
// B_WRITE_ONLY or B_READ_WRITE, with B_CREATE_FILE, B_FAIL_IF_EXISTS, B_ERASE_FILE and
// B_OPEN_AT_END. Opening never waits, also for a pipe that nobody writes into. A directory can be
// opened, but not read. One thread at a time.
class BFile : public BNode, public BPositionIO {
public:
    BFile();
    BFile(const BFile& file);
    BFile(const entry_ref* ref, uint32 openMode);
    BFile(const BEntry* entry, uint32 openMode);
    BFile(const char* path, uint32 openMode);
    BFile(const BDirectory* dir, const char* path, uint32 openMode);
    virtual ~BFile();
    status_t SetTo(const entry_ref* ref, uint32 openMode);
    status_t SetTo(const BEntry* entry, uint32 openMode);
    status_t SetTo(const char* path, uint32 openMode);
    status_t SetTo(const BDirectory* dir, const char* path, uint32 openMode);
    bool IsReadable() const;
    bool IsWritable() const;
    virtual ssize_t Read(void* buffer, size_t size);
    virtual ssize_t ReadAt(off_t location, void* buffer, size_t size);
    virtual ssize_t Write(const void* buffer, size_t size);
    virtual ssize_t WriteAt(off_t location, const void* buffer, size_t size);
    virtual off_t Seek(off_t offset, uint32 seekMode);
    virtual off_t Position() const;
    virtual status_t SetSize(off_t size);
    virtual status_t GetSize(off_t* size) const;
    // A copy has a position of its own, at the start.
    BFile& operator=(const BFile& file);

private:
    status_t _Open(int at, const char* path, uint32 openMode);

    uint32 fMode;  // as it was opened
};

#endif  // _FILE_H
