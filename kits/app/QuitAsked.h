#ifndef APP_QUIT_ASKED_H
#define APP_QUIT_ASKED_H

namespace [[gnu::visibility("hidden")]] BPrivate {

// True while the application asks its windows whether it may quit, and while it ends them: who
// waits for the user on a window's thread gives up then. Any thread.
bool is_quit_asked();

}  // namespace BPrivate

#endif  // APP_QUIT_ASKED_H
