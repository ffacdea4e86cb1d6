// Image files as Qt's plug-ins read and write them.

#include <server/screen/ImageCodecs.h>

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>

#include <string.h>

#include <algorithm>
#include <new>

#include "server/qt/ImagePlugins.h"

namespace server {

static const int kJpegQuality = 90;  // per cent

// A stream as Qt reads it, which remembers whether it was asked for more than it has. Readers ask
// for a few bytes at a time: they come from a piece that is read at once.
class StreamDevice final : public QIODevice {
public:
    explicit StreamDevice(BPositionIO* source) : fSource(source)
    {
        off_t size = 0;
        if (source->GetSize(&size) == B_OK)
            fSize = std::max<qint64>(size, 0);
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool WasShort() const { return fWasShort; }  // a part of what was asked for was there
    bool WasEmpty() const { return fWasEmpty; }  // nothing of it

    qint64 size() const override { return fSize; }
    bool seek(qint64 place) override
    {
        fPlace = place;
        return QIODevice::seek(place);
    }

protected:
    qint64 readData(char* bytes, qint64 most) override
    {
        qint64 got = 0;
        while (got < most) {
            const qint64 part = _ReadPart(fPlace + got, bytes + got, most - got);
            if (part <= 0)
                break;
            got += part;
        }
        fWasShort = fWasShort || got < most;
        fWasEmpty = fWasEmpty || (got == 0 && most > 0);
        fPlace += got;
        return got;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    // Some of the bytes from `place` on; 0 behind the last one.
    qint64 _ReadPart(qint64 place, char* bytes, qint64 most)
    {
        if (place < fPieceStart || place >= fPieceStart + fPieceSize) {
            if (most >= qint64(sizeof(fPiece)))
                return fSource->ReadAt(place, bytes, size_t(most));
            fPieceStart = place;
            fPieceSize = std::max<ssize_t>(fSource->ReadAt(place, fPiece, sizeof(fPiece)), 0);
        }
        const qint64 part = std::min(most, fPieceStart + fPieceSize - place);
        memcpy(bytes, fPiece + (place - fPieceStart), size_t(part));
        return part;
    }

    BPositionIO* fSource;
    char fPiece[16 * 1024];
    qint64 fPieceStart = 0;
    qint64 fPieceSize = 0;
    qint64 fSize = 0;
    qint64 fPlace = 0;
    bool fWasShort = false;
    bool fWasEmpty = false;
};

// Two readers make do with what is there. One takes the file in pieces and stops at its end mark,
// the other takes what it needs exactly.
static bool is_cut_off(const StreamDevice& device, const char* format)
{
    if (strcmp(format, "jpeg") == 0)
        return device.WasEmpty();
    return strcmp(format, "bmp") == 0 && device.WasShort();
}

static bool is_too_large(const QSize& size)
{
    return qint64(size.width()) * size.height() > kMostPixels;
}

// The space that keeps an image's pixels, B_NO_COLOR_SPACE where they have to be turned.
static color_space space_of(QImage::Format format)
{
    switch (format) {
        case QImage::Format_RGB32:
            return B_RGB32;
        case QImage::Format_ARGB32:
            return B_RGBA32;
        default:
            return B_NO_COLOR_SPACE;
    }
}

static QImage image_in(const Surface& surface)
{
    const auto format = surface.space == B_RGB32 ? QImage::Format_RGB32 : QImage::Format_ARGB32;
    return QImage(surface.bits, surface.width, surface.height, surface.bytesPerRow, format);
}

// Copies an image to where `place` wants it, or to `surface` if that was asked before.
static status_t copy_image(QImage image, Surface surface, const PlaceForImage& place)
{
    if (surface.bits == nullptr) {
        if (is_too_large(image.size()))
            return B_NO_MEMORY;
        surface =
            place(image.width(), image.height(), image.hasAlphaChannel() ? B_RGBA32 : B_RGB32);
    }
    if (surface.bits == nullptr)
        return B_NO_MEMORY;
    if (image.width() != surface.width || image.height() != surface.height)
        return B_BAD_DATA;
    image.convertTo(image_in(surface).format());
    if (image.isNull())
        return B_NO_MEMORY;
    for (int y = 0; y < surface.height; y++)
        memcpy(surface.bits + ptrdiff_t(y) * surface.bytesPerRow, image.constScanLine(y),
               size_t(surface.width) * 4);
    return B_OK;
}

static status_t read_image(StreamDevice& device, const char* format, const PlaceForImage& place)
{
    QImageReader reader(&device, format);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isValid() && is_too_large(size))
        return B_NO_MEMORY;
    // Where the reader has the pixels as they are wanted, it writes them where they stay.
    Surface surface;
    const color_space space = space_of(reader.imageFormat());
    QImage image;
    if (!size.isEmpty() && space != B_NO_COLOR_SPACE &&
        reader.transformation() == QImageIOHandler::TransformationNone) {
        surface = place(size.width(), size.height(), space);
        if (surface.bits == nullptr)
            return B_NO_MEMORY;
        image = image_in(surface);
    }
    if (!reader.read(&image) || image.isNull())
        return reader.error() == QImageReader::UnsupportedFormatError ? B_NOT_SUPPORTED
                                                                      : B_BAD_DATA;
    if (is_cut_off(device, format))
        return B_BAD_DATA;
    return image.constBits() == surface.bits ? B_OK : copy_image(image, surface, place);
}

bool ReadsImages(const char* format)
{
    const ImageWork work;
    return work.IsAllowed() && QImageReader::supportedImageFormats().contains(format);
}

bool WritesImages(const char* format)
{
    const ImageWork work;
    return work.IsAllowed() && QImageWriter::supportedImageFormats().contains(format);
}

status_t ReadImage(BPositionIO* source, const char* format, const PlaceForImage& place)
try {
    const ImageWork work;
    if (!work.IsAllowed())
        return B_ERROR;
    StreamDevice device(source);
    return read_image(device, format, place);
} catch (const std::bad_alloc&) {
    return B_NO_MEMORY;
}

status_t WriteImage(const Surface& image, const char* format, BPositionIO* destination)
try {
    const ImageWork work;
    if (!work.IsAllowed())
        return B_ERROR;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadWrite);
    QImageWriter writer(&buffer, format);
    if (strcmp(format, "jpeg") == 0)
        writer.setQuality(kJpegQuality);
    if (!writer.write(image_in(image)))
        return writer.error() == QImageWriter::UnsupportedFormatError ? B_NOT_SUPPORTED : B_ERROR;
    const ssize_t written = destination->Write(bytes.constData(), size_t(bytes.size()));
    if (written < 0)
        return status_t(written);
    return written == bytes.size() ? B_OK : B_DEVICE_FULL;
} catch (const std::bad_alloc&) {
    return B_NO_MEMORY;
}

}  // namespace server
