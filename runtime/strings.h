#ifndef RUNTIME_STRINGS_H
#define RUNTIME_STRINGS_H

// String helpers that the library's other families use.

// A null text counts as the empty one.
inline const char* text_or_empty(const char* text) { return text == nullptr ? "" : text; }

// A copy from MyAlloc, freed with MyFree; null for a null or empty text and when there is no room.
char* MyStringStr(const char* text);

// Lowers `text` in place and returns it; "" for null.
char* StrLower(char* text);

#endif  // RUNTIME_STRINGS_H
