/* The pages of primitives.c that have files of their own. */

#ifndef EXAMPLES_PAGES_H
#define EXAMPLES_PAGES_H

#include <stdint.h>

/* Installed fonts, and what can be set of one, drawn from (left, top) on. */
void draw_fonts_page(int32_t target, int32_t left, int32_t top);
/* Icons and images, drawn from (left, top) on. */
void draw_images_page(int32_t target, int32_t left, int32_t top);

#endif
