#ifndef INTERFACE_DESKBAR_PATIENCE_H
#define INTERFACE_DESKBAR_PATIENCE_H

// How long a call of the Deskbar waits for others. A test on a busy machine has more patience, one
// of those that never answer has less.

#include <SupportDefs.h>

namespace BPrivate {

struct DeskbarPatience {
    bigtime_t panel;     // microseconds for each call of a desktop's panel
    bigtime_t settings;  // microseconds until other programs have left the settings
};

DeskbarPatience& deskbar_patience();

}  // namespace BPrivate

#endif  // INTERFACE_DESKBAR_PATIENCE_H
