#ifndef FILES_WHOLE_FILE_H
#define FILES_WHOLE_FILE_H

// Files that are read or written as a whole. Links are followed. On failure errno has the number.
// Any thread; they may throw where memory fails.

#include <stddef.h>
#include <stdint.h>

#include <string>
#include <string_view>

// The bytes of a file. False, and `bytes` is of no use, for what is no plain file, can not be read,
// or has more than `most` bytes.
bool read_whole_file(const char* path, size_t most, std::string* bytes);

// Puts the bytes in place of what the file held, or makes it; whoever looks sees the old file or
// the new one, whole. It keeps its owner, permissions and attributes, as far as the system lets it.
// False, and the old file is untouched, for what is no plain file or can not be written.
bool replace_whole_file(const char* path, std::string_view bytes);

#endif  // FILES_WHOLE_FILE_H
