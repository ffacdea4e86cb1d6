// The picture of a drag, in a window that takes no input; half of its pixels are left out where the
// screen does not blend.

#include "server/qt/QtDrag.h"

#include <QBackingStore>
#include <QImage>
#include <QPainter>
#include <QRegion>
#include <QSurfaceFormat>
#include <QWindow>

#include <utility>

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

QtDrag::QtDrag(X11Screen* x11, std::shared_ptr<const DragPicture> picture, ClipboardForms forms)
{
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
    fWindow.reset();
    if (fOffer != nullptr && !std::exchange(fEnded, true))
        fOffer->End(dropped);
}

}  // namespace server
