#ifndef FILES_TYPES_H
#define FILES_TYPES_H

// What the families of file types share with the rest of the library. Main thread.

#include <stdint.h>

// What a file says of itself.
enum FileInfo : int32_t { kFileType, kFilePreferredApp, kFileAppHint };
static const int32_t kFileInfos = 3;

// The text of `which`, in a buffer of its own; "" on failure.
char* GetMimeInfo(const char* path, int32_t which);
void SetMimeInfo(const char* path, const char* value, int32_t which);

// Read what the system has on a type and return 0.
int32_t GetExtensions(const char* type);
int32_t GetMimeList(const char* type);

#endif  // FILES_TYPES_H
