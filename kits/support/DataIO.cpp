// Streams of bytes: the interfaces, and those over memory.

#include <DataIO.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <limits>

static const size_t kMaxSize = std::numeric_limits<ssize_t>::max();

// Moves bytes until all are moved, or `move` moves none.
template <class Move>
static status_t move_all(size_t size, size_t* moved, status_t partial, Move move)
{
    size_t done = 0;
    status_t status = B_OK;
    while (done < size && status == B_OK) {
        const ssize_t step = move(done, size - done);
        if (step > 0)
            done += std::min<size_t>(step, size - done);
        else
            status = step == 0 ? partial : static_cast<status_t>(step);
    }
    if (moved != nullptr)
        *moved = done;
    return status;
}

BDataIO::BDataIO() {}

BDataIO::~BDataIO() {}

ssize_t BDataIO::Read(void*, size_t) { return B_NOT_SUPPORTED; }

ssize_t BDataIO::Write(const void*, size_t) { return B_NOT_SUPPORTED; }

status_t BDataIO::Flush() { return B_OK; }

status_t BDataIO::ReadExactly(void* buffer, size_t size, size_t* _bytesRead)
{
    return move_all(size, _bytesRead, B_PARTIAL_READ, [=, this](size_t done, size_t left) {
        return Read(static_cast<char*>(buffer) + done, left);
    });
}

status_t BDataIO::WriteExactly(const void* buffer, size_t size, size_t* _bytesWritten)
{
    return move_all(size, _bytesWritten, B_PARTIAL_WRITE, [=, this](size_t done, size_t left) {
        return Write(static_cast<const char*>(buffer) + done, left);
    });
}

BPositionIO::BPositionIO() {}

BPositionIO::~BPositionIO() {}

ssize_t BPositionIO::Read(void* buffer, size_t size)
{
    const off_t position = Position();
    const ssize_t read = ReadAt(position, buffer, size);
    if (read > 0)
        Seek(position + read, SEEK_SET);
    return read;
}

ssize_t BPositionIO::Write(const void* buffer, size_t size)
{
    const off_t position = Position();
    const ssize_t written = WriteAt(position, buffer, size);
    if (written > 0)
        Seek(position + written, SEEK_SET);
    return written;
}

status_t BPositionIO::ReadAtExactly(off_t position, void* buffer, size_t size, size_t* _bytesRead)
{
    return move_all(size, _bytesRead, B_PARTIAL_READ, [=, this](size_t done, size_t left) {
        return ReadAt(position + done, static_cast<char*>(buffer) + done, left);
    });
}

status_t BPositionIO::WriteAtExactly(off_t position, const void* buffer, size_t size,
                                     size_t* _bytesWritten)
{
    return move_all(size, _bytesWritten, B_PARTIAL_WRITE, [=, this](size_t done, size_t left) {
        return WriteAt(position + done, static_cast<const char*>(buffer) + done, left);
    });
}

status_t BPositionIO::SetSize(off_t) { return B_ERROR; }

status_t BPositionIO::GetSize(off_t* size) const
{
    if (size == nullptr)
        return B_BAD_VALUE;
    BPositionIO* self = const_cast<BPositionIO*>(this);
    const off_t position = Position();
    const off_t end = self->Seek(0, SEEK_END);
    if (end < 0)
        return static_cast<status_t>(end);
    *size = end;
    return self->Seek(position, SEEK_SET) < 0 ? B_ERROR : B_OK;
}

// A seek's target; B_BAD_VALUE in place of a negative one.
static off_t seek_target(off_t offset, uint32 mode, off_t position, size_t end)
{
    off_t base = 0;
    if (mode == SEEK_CUR)
        base = position;
    else if (mode == SEEK_END)
        base = static_cast<off_t>(end);
    else if (mode != SEEK_SET)
        return B_BAD_VALUE;
    off_t target;
    if (__builtin_add_overflow(base, offset, &target) || target < 0)
        return B_BAD_VALUE;
    return target;
}

// Copies what there is from `position` on.
static ssize_t read_from(const char* data, size_t length, off_t position, void* buffer, size_t size)
{
    if (position < 0 || (buffer == nullptr && size > 0))
        return B_BAD_VALUE;
    if (static_cast<uint64>(position) >= length)
        return 0;
    size = std::min(size, length - static_cast<size_t>(position));
    memcpy(buffer, data + position, size);
    return size;
}

BMallocIO::BMallocIO() : fBlockSize(256), fCapacity(0), fLength(0), fData(nullptr), fPosition(0) {}

BMallocIO::~BMallocIO() { free(fData); }

ssize_t BMallocIO::ReadAt(off_t position, void* buffer, size_t size)
{
    return read_from(fData, fLength, position, buffer, size);
}

ssize_t BMallocIO::WriteAt(off_t position, const void* buffer, size_t size)
{
    if (position < 0 || (buffer == nullptr && size > 0))
        return B_BAD_VALUE;
    if (size == 0)
        return 0;
    if (size > kMaxSize - static_cast<size_t>(position))
        return B_NO_MEMORY;
    const size_t end = static_cast<size_t>(position) + size;
    if (end > fLength) {
        if (const status_t status = _Grow(end); status != B_OK)
            return status;
    }
    memcpy(fData + position, buffer, size);
    return size;
}

off_t BMallocIO::Seek(off_t position, uint32 seekMode)
{
    const off_t target = seek_target(position, seekMode, fPosition, fLength);
    if (target >= 0)
        fPosition = target;
    return target;
}

off_t BMallocIO::Position() const { return fPosition; }

status_t BMallocIO::SetSize(off_t size)
{
    if (size < 0)
        return B_BAD_VALUE;
    if (static_cast<size_t>(size) > fLength)
        return _Grow(static_cast<size_t>(size));
    fLength = static_cast<size_t>(size);
    if (fLength == 0) {
        free(fData);
        fData = nullptr;
        fCapacity = 0;
    }
    return B_OK;
}

void BMallocIO::SetBlockSize(size_t blockSize) { fBlockSize = std::max<size_t>(blockSize, 1); }

const void* BMallocIO::Buffer() const { return fData; }

size_t BMallocIO::BufferLength() const { return fLength; }

// Makes the length `size`, which is more than it was; the new bytes are zero.
status_t BMallocIO::_Grow(size_t size)
{
    if (size > fCapacity) {
        const size_t wanted = std::max(size, fCapacity + fCapacity / 2);
        if (wanted > kMaxSize - fBlockSize)
            return B_NO_MEMORY;
        const size_t capacity = (wanted + fBlockSize - 1) / fBlockSize * fBlockSize;
        void* data = realloc(fData, capacity);
        if (data == nullptr)
            return B_NO_MEMORY;
        fData = static_cast<char*>(data);
        fCapacity = capacity;
    }
    memset(fData + fLength, 0, size - fLength);
    fLength = size;
    return B_OK;
}

BMemoryIO::BMemoryIO(void* data, size_t length)
    : fReadOnly(false),
      fData(static_cast<char*>(data)),
      fLength(data != nullptr ? length : 0),
      fCapacity(fLength),
      fPosition(0)
{
}

BMemoryIO::BMemoryIO(const void* data, size_t length) : BMemoryIO(const_cast<void*>(data), length)
{
    fReadOnly = true;
}

BMemoryIO::~BMemoryIO() {}

ssize_t BMemoryIO::ReadAt(off_t position, void* buffer, size_t size)
{
    return read_from(fData, fLength, position, buffer, size);
}

ssize_t BMemoryIO::WriteAt(off_t position, const void* buffer, size_t size)
{
    if (fReadOnly)
        return B_NOT_ALLOWED;
    if (position < 0 || (buffer == nullptr && size > 0))
        return B_BAD_VALUE;
    if (static_cast<uint64>(position) >= fCapacity)
        return 0;
    const size_t start = static_cast<size_t>(position);
    size = std::min(size, fCapacity - start);
    if (start > fLength)
        memset(fData + fLength, 0, start - fLength);
    memcpy(fData + start, buffer, size);
    fLength = std::max(fLength, start + size);
    return size;
}

off_t BMemoryIO::Seek(off_t position, uint32 seekMode)
{
    const off_t target = seek_target(position, seekMode, fPosition, fLength);
    if (target >= 0)
        fPosition = target;
    return target;
}

off_t BMemoryIO::Position() const { return fPosition; }

status_t BMemoryIO::SetSize(off_t size)
{
    if (fReadOnly)
        return B_NOT_ALLOWED;
    if (size < 0)
        return B_BAD_VALUE;
    if (static_cast<size_t>(size) > fCapacity)
        return B_ERROR;
    const size_t length = static_cast<size_t>(size);
    if (length > fLength)
        memset(fData + fLength, 0, length - fLength);
    fLength = length;
    return B_OK;
}
