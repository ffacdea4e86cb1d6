#ifndef _BUFFERIO_H
#define _BUFFERIO_H

#include <DataIO.h>
#include <SupportDefs.h>

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
    void SetOwnsStream(bool ownsStream);
    void PrintToStream() const;

private:
};

#endif  // _BUFFERIO_H
