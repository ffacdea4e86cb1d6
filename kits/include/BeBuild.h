#ifndef _BE_BUILD_H
#define _BE_BUILD_H

// What a program asks for the release of the platform that it is built for.
#define B_BEOS_VERSION_4 0x0400
#define B_BEOS_VERSION_4_5 0x0450
#define B_BEOS_VERSION_5 0x0500
#define B_BEOS_VERSION B_BEOS_VERSION_5

// Marks of what a library imports or exports: libraries of this host need none.
#define _EXPORT
#define _IMPORT
#define _IMPEXP_ROOT
#define _IMPEXP_BE
#define _IMPEXP_TRACKER
#define _IMPEXP_TEXTENCODING
#define _IMPEXP_MAIL
#define _IMPEXP_DEVICE
#define _IMPEXP_MEDIA
#define _IMPEXP_MIDI
#define _IMPEXP_GAME
#define _IMPEXP_GL
#define _IMPEXP_TRANSLATION

#endif  // _BE_BUILD_H
