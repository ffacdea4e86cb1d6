// Another program: a red window at (600, 120), 100 x 100 pixels. What the arguments say can be
// dragged out of it: files, or after "--text" a text, or after "--picture" a picture. Prints what
// falls on it, and what is held over it.

#include <QBackingStore>
#include <QDropEvent>
#include <QDrag>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QPainter>
#include <QUrl>
#include <QWindow>

#include <cstdio>

class Source : public QWindow {
public:
    explicit Source(const QStringList& arguments) : fArguments(arguments)
    {
        setTitle("drag source");
        setGeometry(600, 120, 100, 100);
    }

protected:
    void exposeEvent(QExposeEvent*) override
    {
        fStore.resize(size());
        QRect all(QPoint(0, 0), size());
        fStore.beginPaint(all);
        QPainter(fStore.paintDevice()).fillRect(all, Qt::red);
        fStore.endPaint();
        fStore.flush(all);
    }
    void mouseMoveEvent(QMouseEvent*) override
    {
        if (fDragging)
            return;
        fDragging = true;
        auto* drag = new QDrag(this);  // Qt's own: it outlives the drop
        drag->setMimeData(_Data());
        drag->exec(Qt::CopyAction);
        fDragging = false;
    }
    void mousePressEvent(QMouseEvent*) override {}

    bool event(QEvent* event) override
    {
        switch (event->type()) {
            case QEvent::MouseButtonPress:
                fDragging = false;
                break;
            case QEvent::DragEnter:
                puts("held");
                [[fallthrough]];
            case QEvent::DragMove: {
                auto* drag = static_cast<QDropEvent*>(event);
                drag->setDropAction(Qt::CopyAction);
                drag->setAccepted(!fArguments.contains("--refuse"));
                return true;
            }
            case QEvent::DragLeave:
                puts("left");
                return true;
            case QEvent::Drop:
                _Print(*static_cast<QDropEvent*>(event));
                return true;
            default:
                break;
        }
        return QWindow::event(event);
    }

private:
    QMimeData* _Data() const
    {
        auto* data = new QMimeData;
        QList<QUrl> urls;
        for (const QString& argument : fArguments) {
            if (argument == "--text") {
                data->setText(QString::fromUtf8("fallen \xc3\xbc"));
            } else if (argument == "--picture") {
                QImage image(5, 3, QImage::Format_RGB32);
                image.fill(Qt::green);
                data->setImageData(image);
            } else {
                urls.append(QUrl::fromLocalFile(argument));
            }
        }
        if (!urls.isEmpty())
            data->setUrls(urls);
        return data;
    }
    static void _Print(QDropEvent& event)
    {
        const QMimeData* data = event.mimeData();
        if (data->hasUrls())
            printf("got file %s\n", qPrintable(data->urls().at(0).fileName()));
        else if (data->hasImage())
            printf("got picture %d x %d\n", qvariant_cast<QImage>(data->imageData()).width(),
                   qvariant_cast<QImage>(data->imageData()).height());
        else
            printf("got text %s\n", data->text().toUtf8().constData());
        event.setDropAction(Qt::CopyAction);
        event.accept();
    }

    QBackingStore fStore{this};
    const QStringList fArguments;
    bool fDragging = true;  // until a button is down
};

int main(int argc, char** argv)
{
    setvbuf(stdout, nullptr, _IOLBF, 0);
    QGuiApplication application(argc, argv);
    Source source(application.arguments().mid(1));
    source.show();
    return application.exec();
}
