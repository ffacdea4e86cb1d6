#ifndef SUPPORT_HOST_ERRORS_H
#define SUPPORT_HOST_ERRORS_H

#include <SupportDefs.h>

namespace [[gnu::visibility("hidden")]] BPrivate {

// The status of the host call that just failed; errno stays as the call left it.
status_t host_failure();

// Leaves `host_number` in errno, as a failing host call would, and returns its status.
status_t fail(int host_number);

// The status of an object that names nothing: B_NO_INIT, and the host's number for that.
status_t not_set();

// The status of an object that could not be set before, with the host's number for it once
// more.
status_t fail_again(status_t status);

}  // namespace BPrivate

#endif  // SUPPORT_HOST_ERRORS_H
