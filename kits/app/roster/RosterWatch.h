#ifndef APP_ROSTER_WATCH_H
#define APP_ROSTER_WATCH_H

// Telling of applications that begin, end and become active. Any thread.

#include <Messenger.h>
#include <SupportDefs.h>

namespace [[gnu::visibility("hidden")]] BPrivate {

// B_BAD_VALUE for a target that is not there, B_ERROR without a folder to watch.
status_t start_watching_apps(const BMessenger& target, uint32 mask);
// B_BAD_VALUE for one that does not watch.
status_t stop_watching_apps(const BMessenger& target);

}  // namespace BPrivate

#endif  // APP_ROSTER_WATCH_H
