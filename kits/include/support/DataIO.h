#ifndef _DATA_IO_H
#define _DATA_IO_H

#include <SupportDefs.h>

class BDataIO {
public:
    BDataIO();
    virtual ~BDataIO();
    virtual ssize_t Read(void* buffer, size_t size);
    virtual ssize_t Write(const void* buffer, size_t size);
    virtual status_t Flush();
    status_t ReadExactly(void* buffer, size_t size, size_t* _bytesRead = nullptr);
    status_t WriteExactly(const void* buffer, size_t size, size_t* _bytesWritten = nullptr);

private:
};

class BPositionIO : public BDataIO {
public:
    BPositionIO();
    virtual ~BPositionIO();
    virtual ssize_t Read(void* buffer, size_t size);
    virtual ssize_t Write(const void* buffer, size_t size);
    virtual ssize_t ReadAt(off_t position, void* buffer, size_t size) = 0;
    virtual ssize_t WriteAt(off_t position, const void* buffer, size_t size) = 0;
    status_t ReadAtExactly(off_t position, void* buffer, size_t size, size_t* _bytesRead = nullptr);
    status_t WriteAtExactly(off_t position, const void* buffer, size_t size, size_t* _bytesWritten = nullptr);
    virtual off_t Seek(off_t position, uint32 seekMode) = 0;
    virtual off_t Position() const = 0;
    virtual status_t SetSize(off_t size);
    virtual status_t GetSize(off_t* size) const;

private:
};

class BMallocIO : public BPositionIO {
public:
    BMallocIO();
    virtual ~BMallocIO();
    virtual ssize_t ReadAt(off_t position, void* buffer, size_t size);
    virtual ssize_t WriteAt(off_t position, const void* buffer, size_t size);
    virtual off_t Seek(off_t position, uint32 seekMode);
    virtual off_t Position() const;
    virtual status_t SetSize(off_t size);
    void SetBlockSize(size_t blockSize);
    const void* Buffer() const;
    size_t BufferLength() const;

private:
};

class BMemoryIO : public BPositionIO {
public:
    BMemoryIO(void* data, size_t length);
    BMemoryIO(const void* data, size_t length);
    virtual ~BMemoryIO();
    virtual ssize_t ReadAt(off_t position, void* buffer, size_t size);
    virtual ssize_t WriteAt(off_t position, const void* buffer, size_t size);
    virtual off_t Seek(off_t position, uint32 seekMode);
    virtual off_t Position() const;
    virtual status_t SetSize(off_t size);

private:
};

#endif  // _DATA_IO_H
