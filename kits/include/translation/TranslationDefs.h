#ifndef _TRANSLATION_DEFS_H
#define _TRANSLATION_DEFS_H

#include <SupportDefs.h>
#include <TranslatorFormats.h>

typedef unsigned long translator_id;

#define B_TRANSLATION_CURRENT_VERSION 1280
#define B_TRANSLATION_MIN_VERSION 161

#define B_TRANSLATION_MAKE_VERSION(major, minor, revision) \
    ((major << 8) | ((minor << 4) & 0xf0) | (revision & 0x0f))
#define B_TRANSLATION_MAJOR_VERSION(v) (v >> 8)
#define B_TRANSLATION_MINOR_VERSION(v) ((v >> 4) & 0x0f)
#define B_TRANSLATION_REVISION_VERSION(v) (v & 0x0f)

extern const char* B_TRANSLATOR_MIME_TYPE;

/* A format that a translator reads or writes. `quality` says how much of what there is to keep the
   format keeps, `capability` how much of that the translator does; both from 0 to 1. */
struct translation_format {
    uint32 type;   // B_PNG_FORMAT and so on, or the group's own format
    uint32 group;  // B_TRANSLATOR_BITMAP and so on
    float quality;
    float capability;
    char MIME[251];
    char name[251];
};

/* What a translator takes a stream for. */
struct translator_info {
    uint32 type;
    translator_id translator;
    uint32 group;
    float quality;
    float capability;
    char name[251];
    char MIME[251];
};

#endif  // _TRANSLATION_DEFS_H
