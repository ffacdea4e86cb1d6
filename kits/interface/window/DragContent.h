#ifndef INTERFACE_DRAG_CONTENT_H
#define INTERFACE_DRAG_CONTENT_H

// What the screen and other programs see of a drag.

#include <GraphicsDefs.h>
#include <Point.h>
#include <Rect.h>

#include <memory>

#include <server/screen/Screen.h>

class BBitmap;
class BMessage;

namespace [[gnu::visibility("hidden")]] BPrivate {

// `offset` is the pointer's place in the image.
std::shared_ptr<const server::DragPicture> drag_picture(const BBitmap& image, drawing_mode mode,
                                                        BPoint offset);
// The outline of what has no image.
std::shared_ptr<const server::DragPicture> drag_outline(BRect rect, BPoint offset);

// The message in the forms that other programs take: its texts, files and images; and all of it.
server::ClipboardForms drag_forms(const BMessage& message);
// The message that came in such forms; false if that was none.
bool message_of_forms(const server::ClipboardForms& forms, BMessage* message);

}  // namespace BPrivate

#endif  // INTERFACE_DRAG_CONTENT_H
