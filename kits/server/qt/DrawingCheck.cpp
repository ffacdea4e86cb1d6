// Looks through drawings and pictures before Qt takes them, by the same parser and the same format
// detection.

#include "server/qt/DrawingCheck.h"

#include <QBuffer>
#include <QByteArray>
#include <QCoreApplication>
#include <QImageReader>
#include <QXmlStreamReader>

#include <algorithm>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include <SupportDefs.h>

namespace server {

static const char* const kPictureFormats[] = {"png", "jpeg", "jpg", "gif",
                                              "bmp", "ico",  "xpm", "webp"};
static const int kLargestPicture = 4096;  // pixels across
static const int kMostPictures = 16;      // in a drawing
static const int kMostElements = 50000;   // with all that is drawn once more
static const int kDeepest = 200;

static bool is_picture_format(const QByteArray& format)
{
    return std::any_of(std::begin(kPictureFormats), std::end(kPictureFormats),
                       [&](const char* name) { return format == name; });
}

bool is_harmless_picture(const QByteArray& bytes)
{
    QByteArray copy = bytes;
    QBuffer buffer(&copy);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    return is_picture_format(reader.format()) && !size.isEmpty() &&
           std::max(size.width(), size.height()) <= kLargestPicture;
}

namespace {

struct Element {
    std::vector<size_t> below;
    std::string target;  // of a "use": the id that it draws once more
    int cost = 0;        // with all that it draws; 0 while that is not known, -1 while counted
};

class Drawing {
public:
    bool Read(const QByteArray& bytes);
    bool IsSmall() { return !fElements.empty() && _Count(0, 0) > 0; }

private:
    bool _Begin(const QXmlStreamReader& reader);
    bool _IsHarmlessImage(const QString& address);
    int _Count(size_t index, int depth);

    std::vector<Element> fElements;
    std::vector<size_t> fOpen;  // those that are being read
    std::multimap<std::string, size_t> fIds;
    int fPictures = 0;
};

}  // namespace

// Without the prefix, which Qt's drawings do not look behind.
static QString local_name(const QString& name) { return name.mid(name.lastIndexOf(':') + 1); }

static bool is_text(const QString& name)
{
    return name.startsWith(QLatin1String("text")) || name == QLatin1String("tspan") ||
           name == QLatin1String("tbreak");
}

// Files are nobody's to ask for; what is inside is looked at as Qt will.
bool Drawing::_IsHarmlessImage(const QString& address)
{
    const QString mark = QStringLiteral("base64,");
    const qsizetype at = address.indexOf(mark);
    if (!address.startsWith(QLatin1String("data")) || at < 0 || ++fPictures > kMostPictures)
        return false;
    return is_harmless_picture(QByteArray::fromBase64(address.mid(at + mark.size()).toLatin1()));
}

bool Drawing::_Begin(const QXmlStreamReader& reader)
{
    const QString name = local_name(reader.qualifiedName().toString());
    // Qt ends a process that asks for fonts without an application.
    if (is_text(name) && QCoreApplication::instance() == nullptr)
        return false;
    if (fElements.size() >= kMostElements || fOpen.size() >= kDeepest)
        return false;
    const size_t index = fElements.size();
    fElements.emplace_back();
    if (!fOpen.empty())
        fElements[fOpen.back()].below.push_back(index);
    fOpen.push_back(index);
    for (const QXmlStreamAttribute& attribute : reader.attributes()) {
        const QString key = local_name(attribute.qualifiedName().toString());
        const QString value = attribute.value().toString();
        if (key == QLatin1String("id"))
            fIds.emplace(value.toStdString(), index);
        if (key != QLatin1String("href"))
            continue;
        if (name == QLatin1String("image") && !_IsHarmlessImage(value))
            return false;
        if (name == QLatin1String("use"))
            fElements[index].target = value.trimmed().mid(1).toStdString();
    }
    return true;
}

bool Drawing::Read(const QByteArray& bytes)
{
    QXmlStreamReader reader(bytes);
    reader.setNamespaceProcessing(false);  // as Qt's drawings do
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
            case QXmlStreamReader::StartElement:
                if (!_Begin(reader))
                    return false;
                break;
            case QXmlStreamReader::EndElement:
                fOpen.pop_back();
                break;
            case QXmlStreamReader::DTD:
                if (!reader.entityDeclarations().isEmpty())
                    return false;
                break;
            case QXmlStreamReader::ProcessingInstruction:  // a style sheet is another file
            case QXmlStreamReader::EntityReference:
                return false;
            default:
                break;
        }
    }
    return !reader.hasError();
}

// What drawing an element costs; 0 if that is too much, or never ends.
int Drawing::_Count(size_t index, int depth)
{
    if (fElements[index].cost != 0)
        return std::max(fElements[index].cost, 0);
    if (depth > kDeepest)
        return 0;
    fElements[index].cost = -1;
    std::vector<size_t> drawn = fElements[index].below;
    const auto [first, last] = fIds.equal_range(fElements[index].target);
    for (auto row = first; row != last && !fElements[index].target.empty(); ++row)
        drawn.push_back(row->second);
    int cost = 1;
    for (const size_t one : drawn) {
        const int more = _Count(one, depth + 1);
        cost += more;
        if (more == 0 || cost > kMostElements)
            return 0;
    }
    return fElements[index].cost = cost;
}

bool is_harmless_drawing(const QByteArray& bytes)
{
    Drawing drawing;
    return drawing.Read(bytes) && drawing.IsSmall();
}

}  // namespace server
