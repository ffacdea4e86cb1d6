// Another program: a red window at (600, 120), 100 x 100 pixels, from which files can be dragged.

#include <QBackingStore>
#include <QDrag>
#include <QGuiApplication>
#include <QMimeData>
#include <QPainter>
#include <QUrl>
#include <QWindow>

class Source : public QWindow {
public:
    explicit Source(const QStringList& paths)
    {
        for (const QString& path : paths)
            fUrls.append(QUrl::fromLocalFile(path));
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
        auto* data = new QMimeData;
        data->setUrls(fUrls);
        auto* drag = new QDrag(this);  // Qt's own: it outlives the drop
        drag->setMimeData(data);
        drag->exec(Qt::CopyAction);
        fDragging = false;
    }
    void mousePressEvent(QMouseEvent*) override {}

private:
    QBackingStore fStore{this};
    QList<QUrl> fUrls;
    bool fDragging = true;  // until a button is down

    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::MouseButtonPress)
            fDragging = false;
        return QWindow::event(event);
    }
};

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    Source source(application.arguments().mid(1));
    source.show();
    return application.exec();
}
