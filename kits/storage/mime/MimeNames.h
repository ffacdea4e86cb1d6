#ifndef STORAGE_MIME_NAMES_H
#define STORAGE_MIME_NAMES_H

namespace [[gnu::visibility("hidden")]] storage {

// True for what may stand in a part of a MIME string.
bool is_mime_character(char c);

// True for "supertype/subtype" or "supertype", shorter than B_MIME_TYPE_LENGTH.
bool is_mime_name(const char* text);

}  // namespace storage

#endif  // STORAGE_MIME_NAMES_H
