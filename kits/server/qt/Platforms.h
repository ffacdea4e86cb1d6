#ifndef SERVER_QT_PLATFORMS_H
#define SERVER_QT_PLATFORMS_H

namespace server {

// True if Qt will find a screen: it ends a process in which it finds none. Any thread.
bool can_reach_display();

// How large the user of an X server wants everything, by the resolution that its fonts are set to:
// 1 for 96 dots an inch and what is near it, in quarters. 1 where Qt takes no X server, or knows of
// a scale by another way. Before Qt starts; any thread.
double font_resolution_scale();

// True where no window hears its place on the screen, nor chooses it: on Wayland. Once Qt runs.
bool hides_places();

}  // namespace server

#endif  // SERVER_QT_PLATFORMS_H
