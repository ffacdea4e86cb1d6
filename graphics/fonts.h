#ifndef GRAPHICS_FONTS_H
#define GRAPHICS_FONTS_H

// The fonts that a program keeps by ident, in the list kFonts.

#include <stdint.h>

class BFont;

// Copies the font of that ident. False, and `font` stays, if there is none. Any thread.
bool Find_Font(int32_t ident, BFont* font);

#endif  // GRAPHICS_FONTS_H
