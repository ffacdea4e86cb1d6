#ifndef INTERFACE_WINDOW_DRAG_H
#define INTERFACE_WINDOW_DRAG_H

// Drags that begin in this program, and drops from anywhere. There is one pointer, so there is one
// drag at most; any thread.

#include <Message.h>
#include <Messenger.h>
#include <Point.h>

#include <memory>

#include <server/screen/Screen.h>

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

// No lock but the source's is held.
void start_drag(WindowData* source, std::unique_ptr<BMessage> message,
                std::shared_ptr<const server::DragPicture> picture);
// A pointer event that `grabbed` got: posts it there and to the window under the pointer.
// False, and nothing posted, if nothing is dragged.
bool drag_event(WindowData* grabbed, const server::Event& event);
// The drag ends as if it had not begun; `grabbed` has the pointer.
void cancel_drag(WindowData* grabbed, const server::Event& event);
// Posts the event to the window that it names as the one under the pointer.
void pass_to_window_below(const server::Event& event);

void post_file_drop(WindowData* window, const server::Event& event);
void post_data_drop(WindowData* window, const server::Event& event);

}  // namespace BPrivate

#endif  // INTERFACE_WINDOW_DRAG_H
