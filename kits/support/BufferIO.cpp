// BBufferIO: one stretch of a stream in memory.

#include <BufferIO.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>

BBufferIO::BBufferIO(BPositionIO* stream, size_t bufferSize, bool ownsStream)
    : fStream(stream),
      fBufferSize(std::max<size_t>(bufferSize, 512)),
      fStart(0),
      fLength(0),
      fDirty(false),
      fPosition(0),
      fOwnsStream(ownsStream)
{
    fBuffer = static_cast<char*>(malloc(fBufferSize));
    if (fBuffer == nullptr)
        fBufferSize = 0;
    if (stream != nullptr)
        fPosition = std::max<off_t>(stream->Position(), 0);
}

BBufferIO::~BBufferIO()
{
    Flush();
    free(fBuffer);
    if (fOwnsStream)
        delete fStream;
}

ssize_t BBufferIO::ReadAt(off_t pos, void* buffer, size_t size)
{
    if (fStream == nullptr)
        return B_NO_INIT;
    if (pos < 0 || (buffer == nullptr && size > 0))
        return B_BAD_VALUE;
    if (size >= fBufferSize) {
        const status_t status = Flush();
        return status == B_OK ? fStream->ReadAt(pos, buffer, size) : status;
    }
    size_t done = 0;
    while (done < size) {
        const off_t at = pos + static_cast<off_t>(done);
        if (at < fStart || at >= fStart + static_cast<off_t>(fLength)) {
            const status_t status = _Fetch(at);
            if (status != B_OK)
                return done > 0 ? static_cast<ssize_t>(done) : status;
            if (fLength == 0)
                break;
        }
        const size_t offset = static_cast<size_t>(at - fStart);
        const size_t step = std::min(size - done, fLength - offset);
        memcpy(static_cast<char*>(buffer) + done, fBuffer + offset, step);
        done += step;
    }
    return done;
}

ssize_t BBufferIO::WriteAt(off_t pos, const void* buffer, size_t size)
{
    if (fStream == nullptr)
        return B_NO_INIT;
    if (pos < 0 || (buffer == nullptr && size > 0))
        return B_BAD_VALUE;
    if (size >= fBufferSize) {
        const status_t status = Flush();
        if (status != B_OK)
            return status;
        fLength = 0;
        return fStream->WriteAt(pos, buffer, size);
    }
    // What does not continue the stretch, or does not fit, starts another.
    const bool fits = pos >= fStart && pos <= fStart + static_cast<off_t>(fLength) &&
                      static_cast<uint64>(pos - fStart) + size <= fBufferSize;
    if (!fits) {
        const status_t status = _Fetch(pos);
        if (status != B_OK)
            return status;
    }
    const size_t offset = static_cast<size_t>(pos - fStart);
    memcpy(fBuffer + offset, buffer, size);
    fLength = std::max(fLength, offset + size);
    fDirty = fDirty || size > 0;
    return size;
}

off_t BBufferIO::Seek(off_t position, uint32 seekMode)
{
    if (fStream == nullptr)
        return B_NO_INIT;
    off_t base = 0;
    if (seekMode == SEEK_CUR) {
        base = fPosition;
    } else if (seekMode == SEEK_END) {
        status_t status = Flush();
        if (status == B_OK)
            status = fStream->GetSize(&base);
        if (status != B_OK)
            return status;
    } else if (seekMode != SEEK_SET) {
        return B_BAD_VALUE;
    }
    off_t target;
    if (__builtin_add_overflow(base, position, &target) || target < 0)
        return B_BAD_VALUE;
    fPosition = target;
    return target;
}

off_t BBufferIO::Position() const { return fPosition; }

status_t BBufferIO::SetSize(off_t size)
{
    if (fStream == nullptr)
        return B_NO_INIT;
    const status_t status = Flush();
    if (status != B_OK)
        return status;
    fLength = 0;
    return fStream->SetSize(size);
}

status_t BBufferIO::Flush()
{
    if (fStream == nullptr)
        return B_NO_INIT;
    if (!fDirty)
        return B_OK;
    const status_t status = fStream->WriteAtExactly(fStart, fBuffer, fLength);
    if (status == B_OK)
        fDirty = false;
    return status;
}

BPositionIO* BBufferIO::Stream() const { return fStream; }

size_t BBufferIO::BufferSize() const { return fBufferSize; }

bool BBufferIO::OwnsStream() const { return fOwnsStream; }

void BBufferIO::SetOwnsStream(bool ownsStream) { fOwnsStream = ownsStream; }

void BBufferIO::PrintToStream() const
{
    printf("stream %p\nbuffer %p\nstart  %lld\nlength %zu of %zu\ndirty  %s\nowned  %s\n",
           static_cast<void*>(fStream), static_cast<void*>(fBuffer), static_cast<long long>(fStart),
           fLength, fBufferSize, fDirty ? "yes" : "no", fOwnsStream ? "yes" : "no");
    fflush(stdout);
}

// Makes the stretch the one that starts at `position`, with what the stream has of it.
status_t BBufferIO::_Fetch(off_t position)
{
    const status_t status = Flush();
    if (status != B_OK)
        return status;
    fStart = position;
    fLength = 0;
    const ssize_t read = fStream->ReadAt(position, fBuffer, fBufferSize);
    if (read > 0)
        fLength = static_cast<size_t>(read);
    return read < 0 ? static_cast<status_t>(read) : B_OK;
}
