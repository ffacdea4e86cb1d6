// The picture of a drag, in a window that takes no input; half of its pixels are left out where the
// screen does not blend.

#include "server/qt/QtDrag.h"

#include <QBackingStore>
#include <QDrag>
#include <QImage>
#include <QMimeData>
#include <QPainter>
#include <QPixmap>
#include <QRegion>
#include <QSurfaceFormat>
#include <QTimer>
#include <QWindow>

#include <utility>

#include "server/qt/Platforms.h"
#include "server/qt/QtClipboard.h"
#include "server/qt/QtWindow.h"
#include "server/qt/x11/X11Drag.h"
#include "server/qt/x11/X11Screen.h"

namespace server {

class DragWindow final : public QWindow {
public:
    DragWindow(std::shared_ptr<const DragPicture> picture, X11Screen* x11);

    void MoveTo(BPoint pointer);

protected:
    void exposeEvent(QExposeEvent*) override;

private:
    const std::shared_ptr<const DragPicture> fPicture;
    X11Screen* const fX11;
    const bool fBlends;
    QBackingStore fStore{this};
};

// The pixels that stay of a picture with transparent ones, evenly spread.
static QRegion sieved(const DragPicture& picture)
{
    const uint32 kLeast[2][2] = {{51, 153}, {204, 102}};  // alpha that shows
    QRegion region;
    for (int y = 0; y < picture.height; y++) {
        for (int x = 0; x < picture.width;) {
            const int start = x;
            while (x < picture.width &&
                   picture.pixels[size_t(y) * size_t(picture.width) + size_t(x)] >> 24 >
                       kLeast[y & 1][x & 1])
                x++;
            if (x > start)
                region += QRect(start, y, x - start, 1);
            x += x == start;
        }
    }
    return region;
}

DragWindow::DragWindow(std::shared_ptr<const DragPicture> picture, X11Screen* x11)
    : fPicture(std::move(picture)), fX11(x11), fBlends(x11->HasCompositor())
{
    setSurfaceType(QSurface::RasterSurface);
    setFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
             Qt::WindowDoesNotAcceptFocus);
    resize(fPicture->width, fPicture->height);
    if (fBlends) {
        QSurfaceFormat format;
        format.setAlphaBufferSize(8);
        setFormat(format);
    } else {
        setMask(sieved(*fPicture));
    }
}

// Qt makes the window that counts when it is shown.
void DragWindow::MoveTo(BPoint pointer)
{
    const BPoint place = pointer - fPicture->offset;
    setPosition(int(place.x), int(place.y));
    if (isVisible())
        return;
    show();
    fX11->PassInputThrough(uint32(winId()));
}

void DragWindow::exposeEvent(QExposeEvent*)
{
    if (!isExposed())
        return;
    const QRect all(QPoint(0, 0), size());
    const QImage image(reinterpret_cast<const uchar*>(fPicture->pixels.data()), fPicture->width,
                       fPicture->height, fPicture->width * 4,
                       fBlends ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    fStore.resize(size());
    fStore.beginPaint(all);
    {
        QPainter painter(fStore.paintDevice());
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(0, 0, image);
    }
    fStore.endPaint();
    fStore.flush(all);
}

static bool is_own_window(uint32 id)
{
    StageLock lock;
    for (ScreenWindow* window : stage().Windows()) {
        if (static_cast<QtWindow*>(window)->IsNative(id))
            return true;
    }
    return false;
}

// A drag that the compositor carries, which may outlive the QtDrag that began it.
struct QtDrag::Carried {
    std::shared_ptr<const DragPicture> picture;
    ClipboardForms forms;
    bool ended = false;    // the stage knows
    bool entered = false;  // the compositor has it
};

QtDrag::Carried* QtDrag::sCarried = nullptr;

static QPixmap pixmap_of(const DragPicture& picture)
{
    const QImage image(reinterpret_cast<const uchar*>(picture.pixels.data()), picture.width,
                       picture.height, picture.width * 4, QImage::Format_ARGB32);
    return QPixmap::fromImage(image.copy());
}

bool QtDrag::IsCarried() { return sCarried != nullptr; }

void QtDrag::Entered()
{
    if (sCarried != nullptr)
        sCarried->entered = true;
}

void QtDrag::Over()
{
    const Carried* const carried = std::exchange(sCarried, nullptr);
    if (carried == nullptr)
        return;
    StageLock lock;
    // A button that was up before the compositor knew leaves all to the stage, which hears of that
    // in the usual way.
    if (stage().Dragged() != carried->picture.get() || !carried->entered)
        return;
    stage().SetCovered(true);  // another program has it, or nobody
    stage().SyncButtons(0);
}

// Qt's loop for it runs inside of the server's, with all that this has to do, until the drag is
// over. What our own windows hear of it is their NativeWindow's affair.
void QtDrag::_Carry(std::shared_ptr<Carried> carried)
{
    static bool running;
    if (running) {
        // Over as well, but still to return.
        QTimer::singleShot(0, [=] { _Carry(carried); });
        return;
    }
    if (carried->ended)
        return;
    QObject source;
    auto* drag = new QDrag(&source);  // Qt deletes it
    drag->setMimeData(mime_data_of(carried->forms));
    if (!carried->picture->pixels.empty()) {
        const BPoint offset = carried->picture->offset;
        drag->setPixmap(pixmap_of(*carried->picture));
        drag->setHotSpot(QPoint(int(offset.x), int(offset.y)));
    }
    sCarried = carried.get();
    running = true;
    drag->exec(Qt::CopyAction);
    running = false;
    if (sCarried == carried.get())
        Over();
}

QtDrag::QtDrag(X11Screen* x11, std::shared_ptr<const DragPicture> picture, ClipboardForms forms)
{
    if (x11 == nullptr && hides_places()) {
        fCarried = std::make_shared<Carried>(Carried{std::move(picture), std::move(forms)});
        // Not from within the queue of work, which goes on meanwhile.
        QTimer::singleShot(0, [carried = fCarried] { _Carry(carried); });
    }
    if (x11 == nullptr)
        return;
    if (!picture->pixels.empty())
        fWindow = std::make_unique<DragWindow>(picture, x11);
    fOffer = X11Drag::Begin(std::move(forms), is_own_window);
}

QtDrag::~QtDrag() = default;

bool QtDrag::MoveTo(BPoint pointer)
{
    if (fWindow != nullptr)
        fWindow->MoveTo(pointer);
    return fOffer != nullptr && !fEnded && fOffer->MoveTo(int32(pointer.x), int32(pointer.y));
}

void QtDrag::End(bool dropped)
{
    if (fCarried != nullptr && !std::exchange(fCarried->ended, true) && !dropped &&
        sCarried == fCarried.get())
        QDrag::cancel();
    fWindow.reset();
    if (fOffer != nullptr && !std::exchange(fEnded, true))
        fOffer->End(dropped);
}

}  // namespace server
