#ifndef SERVER_BELL_H
#define SERVER_BELL_H

namespace server {

// Rings the bell of the display; false where there is none. Any thread.
bool RingBell();

}  // namespace server

#endif  // SERVER_BELL_H
