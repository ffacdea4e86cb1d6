#ifndef INTERFACE_WINDOW_DRAG_H
#define INTERFACE_WINDOW_DRAG_H

// Drags that begin in this program, and drops from anywhere. There is one pointer, so there is one
// drag at most; any thread.

#include <Message.h>
#include <Messenger.h>
#include <Point.h>

#include <memory>

#include <server/screen/Display.h>

class BBitmap;

namespace [[gnu::visibility("hidden")]] BPrivate {

struct WindowData;

// What fell on a window; its target is the view under `where` when it is its turn.
class DropMessage : public BMessage {
public:
    // `where` in the window.
    DropMessage(const BMessage& dropped, BPoint where, BPoint screenWhere, BPoint offset);
    BPoint Where() const { return fWhere; }

private:
    BPoint fWhere;
};

// The windows that a drag may meet.
void add_drop_site(WindowData* window);
void remove_drop_site(WindowData* window);

// Adopts message and bitmap. `offset` is the pointer's place in the image.
void start_drag(WindowData* source, std::unique_ptr<BMessage> message,
                std::unique_ptr<BBitmap> image, BPoint offset);
// A pointer event that `grabbed` got: posts it there and to the window under the pointer.
// False, and nothing posted, if nothing is dragged.
bool drag_event(WindowData* grabbed, const server::Event& event);
// A drag of text that this window began and that left all of the program's goes on to the others.
// Its thread.
void hand_drag_over(WindowData* source);
// Posts the event to the window that it names as the one under the pointer.
void pass_to_window_below(const server::Event& event);

void post_file_drop(WindowData* window, const server::Event& event);
void post_text_drop(WindowData* window, const server::Event& event);

}  // namespace BPrivate

#endif  // INTERFACE_WINDOW_DRAG_H
