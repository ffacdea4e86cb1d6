// A bitmap as a stream.

#include <BitmapStream.h>

#include <Bitmap.h>

#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <memory>

#include "translation/BitmapData.h"

static const size_t kHeaderSize = sizeof(TranslatorBitmap);

BBitmapStream::BBitmapStream(BBitmap* bitmap) : fBitmap(bitmap)
{
    if (fBitmap == nullptr)
        return;
    fHeader = BPrivate::header_of(*fBitmap);
    SwapHeader(&fHeader, &fBigEndianHeader);
    fSize = kHeaderSize + size_t(fBitmap->BitsLength());
}

BBitmapStream::~BBitmapStream()
{
    if (!fDetached)
        delete fBitmap;
}

ssize_t BBitmapStream::ReadAt(off_t offset, void* buffer, size_t size)
{
    if (fBitmap == nullptr)
        return B_NO_INIT;
    if (buffer == nullptr || offset < 0)
        return B_BAD_VALUE;
    auto* bytes = static_cast<uint8*>(buffer);
    size_t place = size_t(offset);
    size = std::min(size, fSize - std::min(place, fSize));
    const size_t end = place + size;
    if (place < kHeaderSize && place < end) {
        const size_t part = std::min(end, kHeaderSize) - place;
        memcpy(bytes, reinterpret_cast<const uint8*>(&fBigEndianHeader) + place, part);
        bytes += part;
        place += part;
    }
    if (place < end)
        memcpy(bytes, static_cast<const uint8*>(fBitmap->Bits()) + place - kHeaderSize,
               end - place);
    return ssize_t(size);
}

ssize_t BBitmapStream::WriteAt(off_t offset, const void* buffer, size_t size)
{
    if (buffer == nullptr || offset < 0 || size_t(offset) > std::max(fSize, kHeaderSize))
        return B_BAD_VALUE;
    const auto* bytes = static_cast<const uint8*>(buffer);
    size_t place = size_t(offset), rest = size;
    if (place < kHeaderSize) {
        const size_t part = std::min(rest, kHeaderSize - place);
        memcpy(reinterpret_cast<uint8*>(&fBigEndianHeader) + place, bytes, part);
        bytes += part;
        rest -= part;
        place += part;
        fSize = std::max(fSize, place);
        const status_t status = place == kHeaderSize ? _TakeHeader() : B_OK;
        if (status != B_OK)
            return status;
    }
    if (rest > 0) {
        if (fBitmap == nullptr)
            return B_NO_INIT;
        const size_t part = std::min(rest, fSize - std::min(place, fSize));
        memcpy(static_cast<uint8*>(fBitmap->Bits()) + place - kHeaderSize, bytes, part);
        rest -= part;
    }
    return ssize_t(size - rest);
}

// Makes the bitmap that the header describes, unless there is one like it.
status_t BBitmapStream::_TakeHeader()
{
    TranslatorBitmap header;
    SwapHeader(&fBigEndianHeader, &header);
    if (fBitmap != nullptr) {
        const TranslatorBitmap held = BPrivate::header_of(*fBitmap);
        if (header.magic == held.magic && header.bounds == held.bounds &&
            header.rowBytes == held.rowBytes &&
            BPrivate::raw_space(header) == BPrivate::raw_space(held) &&
            header.dataSize == held.dataSize)
            return B_OK;
        if (fDetached)
            return B_NOT_ALLOWED;
    }
    std::unique_ptr<BBitmap> bitmap;
    const status_t status = BPrivate::make_bitmap(header, &bitmap);
    if (status != B_OK) {
        // What was there goes on to be described by its own header.
        SwapHeader(&fHeader, &fBigEndianHeader);
        return status;
    }
    BPrivate::BitmapStreamAccess::SetTo(*this, std::move(bitmap));
    return B_OK;
}

off_t BBitmapStream::Seek(off_t position, uint32 seekMode)
{
    off_t start = 0;
    if (seekMode == SEEK_CUR)
        start = off_t(fPosition);
    else if (seekMode == SEEK_END)
        start = off_t(fSize);
    else if (seekMode != SEEK_SET)
        return B_BAD_VALUE;
    off_t place;
    if (__builtin_add_overflow(start, position, &place) || place < 0)
        return B_BAD_VALUE;
    fPosition = size_t(place);
    return place;
}

off_t BBitmapStream::Position() const { return off_t(fPosition); }

off_t BBitmapStream::Size() const { return off_t(fSize); }

status_t BBitmapStream::GetSize(off_t* size) const
{
    if (size == nullptr)
        return B_BAD_VALUE;
    *size = off_t(fSize);
    return B_OK;
}

// The header says how long the stream is; another size is only taken before there is a bitmap.
status_t BBitmapStream::SetSize(off_t size)
{
    if (size < 0)
        return B_BAD_VALUE;
    if (fBitmap != nullptr && size > off_t(fSize))
        return B_NOT_ALLOWED;
    if (fBitmap == nullptr && size < off_t(fSize))
        fSize = size_t(size);
    return B_OK;
}

status_t BBitmapStream::DetachBitmap(BBitmap** _bitmap)
{
    if (_bitmap == nullptr)
        return B_BAD_VALUE;
    *_bitmap = nullptr;
    if (fBitmap == nullptr || fDetached)
        return B_ERROR;
    fDetached = true;
    *_bitmap = fBitmap;
    return B_OK;
}

void BBitmapStream::SwapHeader(const TranslatorBitmap* source, TranslatorBitmap* destination)
{
    if (source != nullptr && destination != nullptr)
        BPrivate::swap_header(*source, destination);
}
