#ifndef FILES_CHANNELS_H
#define FILES_CHANNELS_H

// What the library's other file families share with the channels.

#include <stdint.h>

// Keeps the C library's error number of a call that just failed in dos_err. Returns false, the
// result of most operations that failed.
bool keep_error();

#endif  // FILES_CHANNELS_H
