#ifndef APP_MESSAGE_FORMS_H
#define APP_MESSAGE_FORMS_H

// Messages as other programs can read them.

#include <SupportDefs.h>

#include "server/clipboard/Clipboard.h"

class BMessage;

namespace [[gnu::visibility("hidden")]] BPrivate {

// The message itself, flattened.
status_t add_message_form(const BMessage& message, const char* type, server::ClipboardForms* forms);
// Each of its MIME fields, but one of the type `except`. Text is made valid.
void add_mime_forms(const BMessage& message, const char* except, server::ClipboardForms* forms);

}  // namespace BPrivate

#endif  // APP_MESSAGE_FORMS_H
