#ifndef APP_APP_CHANNEL_H
#define APP_APP_CHANNEL_H

// Messages between the applications of one user: a datagram socket for each in the roster's folder.
// What is malformed or another user's is dropped.

#include <Messenger.h>
#include <OS.h>
#include <SupportDefs.h>

#include <string>

class BMessage;

namespace [[gnu::visibility("hidden")]] BPrivate {

// This application's end: begins and ends to take messages. Not from the thread that takes
// them.
void open_channel(const std::string& folder);
void close_channel();

// Sends a copy to another team. A message whose sender waits is answered, if only by
// B_NO_REPLY, as long as the other lives. Waits for `timeout_us`, a second at most, while the
// other's queue is full: B_TIMED_OUT, and B_WOULD_BLOCK for a timeout of 0. B_BAD_PORT_ID
// without such a team, B_BUFFER_OVERFLOW for what is too large. Any thread.
status_t send_to_team(const BMessenger& target, const BMessage& message, const BMessenger& reply_to,
                      uint32 delivery, bigtime_t timeout_us);
// True as long as the team may still answer.
bool is_channel_open(team_id team);

}  // namespace BPrivate

#endif  // APP_APP_CHANNEL_H
