/* The windows of gallery.c that have files of their own. Handlers of all windows tell what they
   hear by gallery_log. */

#ifndef EXAMPLES_GALLERY_H
#define EXAMPLES_GALLERY_H

#include <stdint.h>

/* Opens all windows of the gallery. Program's thread. */
void gallery_open(void);

/* Adds a line to the log. Any handler. */
void gallery_log(const char *gadget, const char *event, int32_t value);

/* The three handlers that a gadget of the gallery has: PRESSED, TYPED and CHANGED of its name. */
#define LOGGED(name)                                                                  \
    static void name##_pressed(void) { gallery_log(#name, "pressed", -1); }           \
    static void name##_typed(int32_t key, int32_t modifiers)                          \
    {                                                                                 \
        (void)modifiers;                                                              \
        gallery_log(#name, "key", key);                                               \
    }                                                                                 \
    static void name##_changed(int32_t value) { gallery_log(#name, "value", value); } \
    static void name##_log(int32_t ident)                                             \
    {                                                                                 \
        SetHandlerForGadget(ident, PLINTH_GADGET_ACTION, (void *)name##_pressed);     \
        SetHandlerForGadget(ident, PLINTH_GADGET_KEY, (void *)name##_typed);          \
        SetHandlerForGadget(ident, PLINTH_GADGET_VALUE, (void *)name##_changed);      \
    }

/* A window with every control in each of its states, made anew for a size of the font in points. */
void states_open(int32_t left, int32_t top);
void states_show(int32_t points);
/* Colours of all samples, 0xRRGGBBAA: of texts, of the ground, of bars. */
enum { TEXTS, GROUND, BARS };
void states_color(int32_t part, uint32_t color);

/* A window with lists, fields, editors and tabs. */
void texts_open(int32_t left, int32_t top);

#endif
