// Image files, read and written by Qt.

#include <server/screen/Images.h>

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageReader>

#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "server/qt/DrawingCheck.h"
#include "server/qt/ImagePlugins.h"

namespace server {

static const off_t kLargestFile = 16 * 1024 * 1024;  // bytes
static const qsizetype kLargestDrawing = 1024 * 1024;

// The bytes of a regular file; empty for all else, whatever is behind its name.
static QByteArray read_file(const std::string& path)
{
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    struct stat info;
    QByteArray bytes;
    if (fd >= 0 && fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && info.st_size <= kLargestFile) {
        bytes.resize(static_cast<qsizetype>(info.st_size));
        qsizetype size = 0;
        ssize_t more;
        while (size < bytes.size() &&
               (more = read(fd, bytes.data() + size, static_cast<size_t>(bytes.size() - size))) > 0)
            size += more;
        bytes.truncate(size);
    }
    if (fd >= 0)
        close(fd);
    return bytes;
}

static QImage fitted(const QImage& image, int size)
{
    if (image.width() == size && image.height() == size)
        return image;
    const bool larger = image.width() > size || image.height() > size;
    const QImage part =
        larger ? image.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation) : image;
    // QImage::copy fills what is outside with transparent pixels.
    return part.copy(-((size - part.width()) / 2), -((size - part.height()) / 2), size, size);
}

bool ReadIconFile(const std::string& path, int32 size, std::vector<uint32>* pixels)
{
    const ImageWork work;  // outlives all of Qt's in here
    if (!work.IsAllowed())
        return false;
    QByteArray bytes = size > 0 ? read_file(path) : QByteArray();
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    if (reader.format() == "svg") {
        if (bytes.size() > kLargestDrawing || !is_harmless_drawing(bytes))
            return false;
        const QSize natural = reader.size();
        reader.setScaledSize(natural.isEmpty() ? QSize(size, size)
                                               : natural.scaled(size, size, Qt::KeepAspectRatio));
    } else if (!is_harmless_picture(bytes)) {
        return false;
    }
    QImage image = reader.read();
    if (image.isNull())
        return false;
    image = fitted(image.convertToFormat(QImage::Format_ARGB32), size);
    pixels->resize(static_cast<size_t>(size) * size);
    for (int32 y = 0; y < size; y++)
        memcpy(&(*pixels)[static_cast<size_t>(y) * size], image.constScanLine(y), size * 4u);
    return true;
}

std::string EncodePng(const std::vector<uint32>& pixels, int32 width, int32 height)
{
    const ImageWork work;  // outlives all of Qt's in here
    if (!work.IsAllowed())
        return "";
    const QImage image(reinterpret_cast<const uchar*>(pixels.data()), width, height, width * 4,
                       QImage::Format_ARGB32);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG"))
        return "";
    return std::string(bytes.constData(), static_cast<size_t>(bytes.size()));
}

}  // namespace server
