#ifndef _BITMAP_STREAM_H
#define _BITMAP_STREAM_H

#include <DataIO.h>
#include <TranslatorFormats.h>

class BBitmap;

namespace BPrivate {
struct BitmapStreamAccess;
}

/* A bitmap as a stream: a TranslatorBitmap, then the bits. Writing a header makes a bitmap; reading
   one without a bitmap is B_NO_INIT. */
class BBitmapStream : public BPositionIO {
public:
    /* Takes over the bitmap. */
    BBitmapStream(BBitmap* bitmap = nullptr);
    virtual ~BBitmapStream();

    virtual ssize_t ReadAt(off_t offset, void* buffer, size_t size);
    virtual ssize_t WriteAt(off_t offset, const void* buffer, size_t size);
    virtual off_t Seek(off_t position, uint32 seekMode);
    virtual off_t Position() const;
    virtual off_t Size() const;
    virtual status_t SetSize(off_t size);
    virtual status_t GetSize(off_t* size) const;

    /* Hands the bitmap over to the caller, who deletes it after the stream's last use. B_ERROR when
       there is none, or it was detached before. */
    status_t DetachBitmap(BBitmap** _bitmap);

protected:
    /* Turns a header from the host's byte order into the stream's, and back. */
    void SwapHeader(const TranslatorBitmap* source, TranslatorBitmap* destination);

    TranslatorBitmap fHeader = {};  // the host's order
    BBitmap* fBitmap;
    size_t fPosition = 0;
    size_t fSize = 0;  // header and bits
    bool fDetached = false;

private:
    friend struct BPrivate::BitmapStreamAccess;

    status_t _TakeHeader();

    TranslatorBitmap fBigEndianHeader = {};
};

#endif  // _BITMAP_STREAM_H
