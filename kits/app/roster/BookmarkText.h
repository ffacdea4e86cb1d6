#ifndef APP_BOOKMARK_TEXT_H
#define APP_BOOKMARK_TEXT_H

// A list of bookmarks as text, changed at one bookmark: all else, whatever other programs put
// there, stays byte for byte. The text is known to be well-formed. Any thread.

#include <string>

namespace [[gnu::visibility("hidden")]] BPrivate {

// The element with that address; empty if there is none.
std::string bookmark_in(const std::string& text, const std::string& uri);

// The list with `element` in the place of the bookmark with that address, else behind the last.
// Empty where it would not be understood there.
std::string with_bookmark(const std::string& text, const std::string& uri,
                          const std::string& element);

}  // namespace BPrivate

#endif  // APP_BOOKMARK_TEXT_H
