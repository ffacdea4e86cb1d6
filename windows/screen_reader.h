#ifndef WINDOWS_SCREEN_READER_H
#define WINDOWS_SCREEN_READER_H

// What the host's screen readers ask of things of the library's own, by Perform() with a BMessage
// for the answer. A host that does not ask gets no answer.

#include <SupportDefs.h>

static const uint32 kTellReader = '_RDT';
static const char* const kReaderView = "view";          // of which the tool tip is asked for
static const char* const kReaderText = "text";          // what is shown
static const char* const kReaderPassword = "password";  // nobody is to hear what is typed

#endif  // WINDOWS_SCREEN_READER_H
