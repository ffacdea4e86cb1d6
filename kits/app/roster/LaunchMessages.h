#ifndef APP_LAUNCH_MESSAGES_H
#define APP_LAUNCH_MESSAGES_H

// Messages that a program is launched with: they wait in the roster's folder until its application
// runs. Any thread.

#include <Message.h>
#include <OS.h>

#include <vector>

namespace [[gnu::visibility("hidden")]] BPrivate {

// For a program that does not run yet.
void leave_messages(team_id team, const std::vector<BMessage>& messages);
// This program's, once; empty if it was started otherwise.
std::vector<BMessage> take_messages();

}  // namespace BPrivate

#endif  // APP_LAUNCH_MESSAGES_H
