#ifndef _BUFFERIO_H
#define _BUFFERIO_H

#include <DataIO.h>
#include <SupportDefs.h>

/* Keeps one stretch of another stream in memory, for many small reads and writes near each other.
   What was written reaches the stream with Flush(), with the next stretch, or in the end. */
class BBufferIO : public BPositionIO {
public:
    BBufferIO(BPositionIO* stream, size_t bufferSize = 65536L, bool ownsStream = true);
    virtual ~BBufferIO();

    virtual ssize_t ReadAt(off_t pos, void* buffer, size_t size);
    virtual ssize_t WriteAt(off_t pos, const void* buffer, size_t size);
    virtual off_t Seek(off_t position, uint32 seekMode);
    virtual off_t Position() const;
    virtual status_t SetSize(off_t size);
    virtual status_t Flush();

    BPositionIO* Stream() const;
    size_t BufferSize() const;
    bool OwnsStream() const;
    void SetOwnsStream(bool ownsStream);  // an owned stream is deleted along
    void PrintToStream() const;

private:
    status_t _Fetch(off_t position);

    BPositionIO* fStream;
    char* fBuffer;
    size_t fBufferSize;
    off_t fStart;    // of the stretch in memory
    size_t fLength;  // bytes of it that are there
    bool fDirty;
    off_t fPosition;
    bool fOwnsStream;
};

#endif  // _BUFFERIO_H
