#ifndef RUNTIME_STATUS_NAMES_H
#define RUNTIME_STATUS_NAMES_H

#include <SupportDefs.h>

// The name of a status code ("B_ENTRY_NOT_FOUND"); of any other number what the C library says of
// it. Any thread.
const char* status_name(status_t status);

#endif  // RUNTIME_STATUS_NAMES_H
