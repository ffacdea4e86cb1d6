#ifndef GADGETS_TEXT_SEARCH_H
#define GADGETS_TEXT_SEARCH_H

// Searching in a text of the user's. Pure. Any thread.

#include <stdint.h>

#include <string_view>

// The numbers are the programs'; together in a word.
enum SearchFlags : int32_t { kExactCase = 1, kBackwards = 2, kWholeWords = 4 };

// The offset of the first place at `from` or behind it that says `wanted`, or with kBackwards of
// the last one that ends at `from` or before it; -1 if there is none. Capital and small letters of
// all alphabets are the same without kExactCase. A whole word has no letter or digit beside it.
// Texts are UTF-8; a byte that is none equals itself. An empty `wanted` is found nowhere.
int32_t find_text(std::string_view text, std::string_view wanted, int32_t from, int32_t flags);

#endif  // GADGETS_TEXT_SEARCH_H
