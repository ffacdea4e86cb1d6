// Image files, read and written by Qt.

#include <server/screen/Images.h>

#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>

#include <string.h>

#include <algorithm>

namespace server {

static const qint64 kLargestFile = 16 * 1024 * 1024;  // bytes
static const int kLargestImage = 4096;                // pixels across

// Text in a drawing needs fonts, and Qt ends a process that asks for them without an application.
static bool asks_for_fonts(const QByteArray& bytes)
{
    return QCoreApplication::instance() == nullptr && bytes.contains("<text");
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
    QFile file(QString::fromLocal8Bit(path.c_str()));
    if (size <= 0 || !file.open(QIODevice::ReadOnly) || file.size() > kLargestFile)
        return false;
    QByteArray bytes = file.readAll();
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    const QByteArray format = reader.format();
    if (format.startsWith("svg")) {
        if (path.ends_with(".svgz") || asks_for_fonts(bytes))
            return false;
        const QSize natural = reader.size();
        reader.setScaledSize(natural.isEmpty() ? QSize(size, size)
                                               : natural.scaled(size, size, Qt::KeepAspectRatio));
    } else if (std::max(reader.size().width(), reader.size().height()) > kLargestImage) {
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
