#ifndef _BUFFEREDDATAIO_H
#define _BUFFEREDDATAIO_H

#include <DataIO.h>
#include <SupportDefs.h>

class BBufferedDataIO : public BDataIO {
public:
    BBufferedDataIO(BDataIO& stream, size_t bufferSize = 65536L, bool ownsStream = true, bool partialReads = false);
    virtual ~BBufferedDataIO();
    status_t InitCheck() const;
    BDataIO* Stream() const;
    size_t BufferSize() const;
    bool OwnsStream() const;
    void SetOwnsStream(bool ownsStream);
    virtual status_t Flush();
    virtual ssize_t Read(void* buffer, size_t size);
    virtual ssize_t Write(const void* buffer, size_t size);

private:
};

#endif  // _BUFFEREDDATAIO_H
