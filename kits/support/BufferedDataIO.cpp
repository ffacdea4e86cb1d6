// BBufferedDataIO: large reads and writes out of small ones.

#include <BufferedDataIO.h>

#include <stdlib.h>
#include <string.h>

#include <algorithm>

BBufferedDataIO::BBufferedDataIO(BDataIO& stream, size_t bufferSize, bool ownsStream,
                                 bool partialReads)
    : fStream(stream),
      fBufferSize(std::max<size_t>(bufferSize, 512)),
      fStart(0),
      fLength(0),
      fDirty(false),
      fOwnsStream(ownsStream),
      fPartialReads(partialReads)
{
    fBuffer = static_cast<char*>(malloc(fBufferSize));
}

BBufferedDataIO::~BBufferedDataIO()
{
    Flush();
    free(fBuffer);
    if (fOwnsStream)
        delete &fStream;
}

status_t BBufferedDataIO::InitCheck() const { return fBuffer != nullptr ? B_OK : B_NO_MEMORY; }

BDataIO* BBufferedDataIO::Stream() const { return &fStream; }

size_t BBufferedDataIO::BufferSize() const { return fBufferSize; }

bool BBufferedDataIO::OwnsStream() const { return fOwnsStream; }

void BBufferedDataIO::SetOwnsStream(bool ownsStream) { fOwnsStream = ownsStream; }

status_t BBufferedDataIO::Flush()
{
    if (!fDirty)
        return B_OK;
    size_t written;
    const status_t status = fStream.WriteExactly(fBuffer + fStart, fLength, &written);
    fStart += written;
    fLength -= written;
    if (fLength == 0) {
        fStart = 0;
        fDirty = false;
    }
    return status;
}

ssize_t BBufferedDataIO::Read(void* buffer, size_t size)
{
    if (fBuffer == nullptr)
        return B_NO_MEMORY;
    if (buffer == nullptr && size > 0)
        return B_BAD_VALUE;
    if (const status_t status = Flush(); status != B_OK)
        return status;
    char* to = static_cast<char*>(buffer);
    size_t done = 0;
    while (done < size) {
        if (fLength == 0) {
            if (done > 0 && fPartialReads)
                break;
            // What is as large as the buffer goes straight to where it is wanted.
            const bool direct = size - done >= fBufferSize;
            const ssize_t read =
                fStream.Read(direct ? to + done : fBuffer, direct ? size - done : fBufferSize);
            if (read <= 0)
                return done > 0 ? static_cast<ssize_t>(done) : read;
            if (direct) {
                done += read;
                continue;
            }
            fStart = 0;
            fLength = read;
        }
        const size_t step = std::min(size - done, fLength);
        memcpy(to + done, fBuffer + fStart, step);
        fStart += step;
        fLength -= step;
        done += step;
    }
    return done;
}

ssize_t BBufferedDataIO::Write(const void* buffer, size_t size)
{
    if (fBuffer == nullptr)
        return B_NO_MEMORY;
    if (buffer == nullptr && size > 0)
        return B_BAD_VALUE;
    if (!fDirty) {
        fStart = 0;  // what was read ahead is forgotten
        fLength = 0;
    }
    if (fStart + fLength + size > fBufferSize) {
        if (const status_t status = Flush(); status != B_OK)
            return status;
    }
    if (size >= fBufferSize)
        return fStream.Write(buffer, size);
    if (size > 0)
        memcpy(fBuffer + fStart + fLength, buffer, size);
    fLength += size;
    fDirty = fLength > 0;
    return size;
}
