#ifndef SERVER_QT_PLATFORMS_H
#define SERVER_QT_PLATFORMS_H

namespace server {

// True if Qt will find a screen: it ends a process in which it finds none. Any thread.
bool can_reach_display();

// True where no window hears its place on the screen, nor chooses it: on Wayland. Once Qt runs.
bool hides_places();

}  // namespace server

#endif  // SERVER_QT_PLATFORMS_H
