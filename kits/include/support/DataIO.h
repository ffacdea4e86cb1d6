#ifndef _DATA_IO_H
#define _DATA_IO_H

#include <SupportDefs.h>

/* A stream of bytes. Read() and Write() return the bytes they moved, fewer at the end of what
   there is, or a status code. */
class BDataIO {
public:
    BDataIO();
    virtual ~BDataIO();

    virtual ssize_t Read(void* buffer, size_t size);         // here: B_NOT_SUPPORTED
    virtual ssize_t Write(const void* buffer, size_t size);  // here: B_NOT_SUPPORTED
    virtual status_t Flush();

    /* All bytes, or B_PARTIAL_READ / B_PARTIAL_WRITE. */
    status_t ReadExactly(void* buffer, size_t size, size_t* _bytesRead = nullptr);
    status_t WriteExactly(const void* buffer, size_t size, size_t* _bytesWritten = nullptr);

private:
    BDataIO(const BDataIO&) = delete;
    BDataIO& operator=(const BDataIO&) = delete;
};

/* A stream with a position. Read() and Write() work there, and move it on. */
class BPositionIO : public BDataIO {
public:
    BPositionIO();
    virtual ~BPositionIO();

    virtual ssize_t Read(void* buffer, size_t size);
    virtual ssize_t Write(const void* buffer, size_t size);
    /* These leave the position alone. B_BAD_VALUE for a negative one. */
    virtual ssize_t ReadAt(off_t position, void* buffer, size_t size) = 0;
    virtual ssize_t WriteAt(off_t position, const void* buffer, size_t size) = 0;
    status_t ReadAtExactly(off_t position, void* buffer, size_t size, size_t* _bytesRead = nullptr);
    status_t WriteAtExactly(off_t position, const void* buffer, size_t size,
                            size_t* _bytesWritten = nullptr);

    /* `seekMode` is SEEK_SET, SEEK_CUR or SEEK_END. Returns the new position. */
    virtual off_t Seek(off_t position, uint32 seekMode) = 0;
    virtual off_t Position() const = 0;
    virtual status_t SetSize(off_t size);  // here: B_ERROR
    virtual status_t GetSize(off_t* size) const;
};

/* Memory of its own, which grows. Writing behind the end leaves zeroes between. */
class BMallocIO : public BPositionIO {
public:
    BMallocIO();
    virtual ~BMallocIO();

    virtual ssize_t ReadAt(off_t position, void* buffer, size_t size);
    virtual ssize_t WriteAt(off_t position, const void* buffer, size_t size);
    virtual off_t Seek(off_t position, uint32 seekMode);
    virtual off_t Position() const;
    virtual status_t SetSize(off_t size);

    void SetBlockSize(size_t blockSize);  // memory is taken in multiples of it
    const void* Buffer() const;           // until the next write
    size_t BufferLength() const;

private:
    status_t _Grow(size_t size);

    size_t fBlockSize;
    size_t fCapacity;
    size_t fLength;
    char* fData;
    off_t fPosition;
};

/* The caller's memory, which is not copied and does not grow. */
class BMemoryIO : public BPositionIO {
public:
    BMemoryIO(void* data, size_t length);
    BMemoryIO(const void* data, size_t length);  // writing is B_NOT_ALLOWED
    virtual ~BMemoryIO();

    virtual ssize_t ReadAt(off_t position, void* buffer, size_t size);
    virtual ssize_t WriteAt(off_t position, const void* buffer, size_t size);
    virtual off_t Seek(off_t position, uint32 seekMode);
    virtual off_t Position() const;
    virtual status_t SetSize(off_t size);  // up to the memory's own size

private:
    bool fReadOnly;
    char* fData;
    size_t fLength;
    size_t fCapacity;
    off_t fPosition;
};

#endif  // _DATA_IO_H
