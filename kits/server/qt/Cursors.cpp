// BeOS cursors as Qt's.

#include "server/qt/Cursors.h"

#include <QPixmap>

#include "app/CursorImage.h"

namespace server {

static const struct {
    BCursorID id;
    Qt::CursorShape shape;
} kShapes[] = {
    {B_CURSOR_ID_SYSTEM_DEFAULT, Qt::ArrowCursor},
    {B_CURSOR_ID_I_BEAM, Qt::IBeamCursor},
    {B_CURSOR_ID_CONTEXT_MENU, Qt::ArrowCursor},
    {B_CURSOR_ID_COPY, Qt::DragCopyCursor},
    {B_CURSOR_ID_CREATE_LINK, Qt::DragLinkCursor},
    {B_CURSOR_ID_CROSS_HAIR, Qt::CrossCursor},
    {B_CURSOR_ID_FOLLOW_LINK, Qt::PointingHandCursor},
    {B_CURSOR_ID_GRAB, Qt::OpenHandCursor},
    {B_CURSOR_ID_GRABBING, Qt::ClosedHandCursor},
    {B_CURSOR_ID_HELP, Qt::WhatsThisCursor},
    {B_CURSOR_ID_I_BEAM_HORIZONTAL, Qt::IBeamCursor},
    {B_CURSOR_ID_MOVE, Qt::SizeAllCursor},
    {B_CURSOR_ID_NO_CURSOR, Qt::BlankCursor},
    {B_CURSOR_ID_NOT_ALLOWED, Qt::ForbiddenCursor},
    {B_CURSOR_ID_PROGRESS, Qt::BusyCursor},
    {B_CURSOR_ID_RESIZE_NORTH, Qt::SizeVerCursor},
    {B_CURSOR_ID_RESIZE_EAST, Qt::SizeHorCursor},
    {B_CURSOR_ID_RESIZE_SOUTH, Qt::SizeVerCursor},
    {B_CURSOR_ID_RESIZE_WEST, Qt::SizeHorCursor},
    {B_CURSOR_ID_RESIZE_NORTH_EAST, Qt::SizeBDiagCursor},
    {B_CURSOR_ID_RESIZE_NORTH_WEST, Qt::SizeFDiagCursor},
    {B_CURSOR_ID_RESIZE_SOUTH_EAST, Qt::SizeFDiagCursor},
    {B_CURSOR_ID_RESIZE_SOUTH_WEST, Qt::SizeBDiagCursor},
    {B_CURSOR_ID_RESIZE_NORTH_SOUTH, Qt::SizeVerCursor},
    {B_CURSOR_ID_RESIZE_EAST_WEST, Qt::SizeHorCursor},
    {B_CURSOR_ID_RESIZE_NORTH_EAST_SOUTH_WEST, Qt::SizeBDiagCursor},
    {B_CURSOR_ID_RESIZE_NORTH_WEST_SOUTH_EAST, Qt::SizeFDiagCursor},
    {B_CURSOR_ID_ZOOM_IN, Qt::CrossCursor},
    {B_CURSOR_ID_ZOOM_OUT, Qt::CrossCursor},
};

QCursor qt_cursor(const Cursor& image)
{
    if (image == nullptr)
        return QCursor(Qt::ArrowCursor);
    if (image->pixels.empty()) {
        for (const auto& row : kShapes) {
            if (row.id == image->id)
                return QCursor(row.shape);
        }
        return QCursor(Qt::ArrowCursor);
    }
    QImage picture(reinterpret_cast<const uchar*>(image->pixels.data()), image->width,
                   image->height, image->width * 4, QImage::Format_ARGB32);
    return QCursor(QPixmap::fromImage(picture.copy()), image->hotX, image->hotY);
}

}  // namespace server
