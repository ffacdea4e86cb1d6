#ifndef SERVER_QT_DRAWING_CHECK_H
#define SERVER_QT_DRAWING_CHECK_H

class QByteArray;

namespace server {

// Whether Qt may read this picture, which anybody may have made: its format is one of pictures, and
// it is no larger than an icon can need.
bool is_harmless_picture(const QByteArray& bytes);
// Whether Qt may draw this SVG drawing, which anybody may have made: it asks for no other file and
// no entities, the pictures inside are harmless, and what it repeats does not add up to more than
// an icon can need. Text passes where there are fonts for it. Any thread.
bool is_harmless_drawing(const QByteArray& bytes);

}  // namespace server

#endif  // SERVER_QT_DRAWING_CHECK_H
