#ifndef INTERFACE_TOLD_CONTENT_H
#define INTERFACE_TOLD_CONTENT_H

// What screen readers are told of a text that changes: only what is about a change is read again.

#include <interface/text/TextBuffer.h>
#include <server/screen/AccessibleContent.h>

#include <memory>

namespace [[gnu::visibility("hidden")]] BPrivate {

using ToldContent = std::shared_ptr<const server::AccessibleContent>;

// The text of a buffer; of `before`, null for none, bytes at either end are as they were.
ToldContent tell_content(const TextBuffer& text, bool hidden, const ToldContent& before,
                         const TextChange& change);
// The place, in units, of a byte of that text.
int32 told_unit_at(const server::AccessibleContent& content, const TextBuffer& text, bool hidden,
                   int32 byte);

}  // namespace BPrivate

#endif  // INTERFACE_TOLD_CONTENT_H
