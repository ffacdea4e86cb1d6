#ifndef SERVER_QT_CURSORS_H
#define SERVER_QT_CURSORS_H

#include <QCursor>

#include "server/screen/Stage.h"

namespace server {

// Qt's cursor for a picture or a system cursor; the arrow for null. Server's thread.
QCursor qt_cursor(const Cursor& image);

}  // namespace server

#endif  // SERVER_QT_CURSORS_H
