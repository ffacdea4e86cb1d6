#ifndef _BUFFEREDDATAIO_H
#define _BUFFEREDDATAIO_H

#include <DataIO.h>
#include <SupportDefs.h>

/* Gathers small reads and writes of a stream without position into large ones. One that is read
   should not be written as well: the two share the buffer. */
class BBufferedDataIO : public BDataIO {
public:
    BBufferedDataIO(BDataIO& stream, size_t bufferSize = 65536L, bool ownsStream = true,
                    bool partialReads = false);
    virtual ~BBufferedDataIO();

    status_t InitCheck() const;
    BDataIO* Stream() const;
    size_t BufferSize() const;
    bool OwnsStream() const;
    void SetOwnsStream(bool ownsStream);  // an owned stream is deleted along

    virtual status_t Flush();
    virtual ssize_t Read(void* buffer, size_t size);
    virtual ssize_t Write(const void* buffer, size_t size);

private:
    BDataIO& fStream;
    char* fBuffer;
    size_t fBufferSize;
    size_t fStart;   // of what was read ahead
    size_t fLength;  // of what was read ahead, or is to be written
    bool fDirty;
    bool fOwnsStream;
    bool fPartialReads;  // give what is there rather than wait for more
};

#endif  // _BUFFEREDDATAIO_H
