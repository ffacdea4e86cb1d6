#ifndef MAIL_SENDMAIL_H
#define MAIL_SENDMAIL_H

#include <SupportDefs.h>

namespace [[gnu::visibility("hidden")]] mail {

// Hands a mail, which names its recipients itself, to the host's sendmail: the program that
// PLINTH_SENDMAIL names, else "sendmail" on the PATH or where hosts keep it. Waits for its end,
// for at most a minute or PLINTH_MAIL_TIMEOUT seconds.
status_t run_sendmail(const char* mail_path);

}  // namespace mail

#endif  // MAIL_SENDMAIL_H
