#ifndef SERVER_FONTS_H
#define SERVER_FONTS_H

// Installed fonts, metrics, and text as pixels. All functions may be called from any thread; the
// caches behind them have locks of their own, which are never held across a call back.

#include <Font.h>

#include <server/Painter.h>

namespace server {

// What of a BFont decides how its glyphs look.
struct FontSpec {
    uint16 family = 0;
    uint16 style = 0;
    uint16 face = 0;      // B_BOLD_FACE ...: synthesised where the style does not bring it
    float size = 12.0f;   // pixels
    float shear = 90.0f;  // degrees
    float rotation = 0.0f;
    uint8 spacing = 0;  // B_BITMAP_SPACING ...
    uint8 encoding = 0; // B_UNICODE_UTF8 ...
    uint32 flags = 0;   // B_DISABLE_ANTIALIASING ...
    float falseBoldWidth = 0.0f;
};

// Width of `length` bytes in pixels. Bytes that are no UTF-8 count as Latin-1 characters.
float StringWidth(const FontSpec& font, const char* text, int32 length,
                  const escapement_delta* delta);
// Draws on the baseline at `pen` and returns the box changed; `pen` moves to the end of the text.
clipping_rect DrawString(const Target& target, const Paint& paint, const FontSpec& font,
                         const char* text, int32 length, const escapement_delta* delta,
                         BPoint* pen);
// Draws each character at a place of its own; the last one follows on when places run out.
clipping_rect DrawStringAt(const Target& target, const Paint& paint, const FontSpec& font,
                           const char* text, int32 length, const BPoint* places, int32 placeCount,
                           BPoint* pen);
void FontHeight(const FontSpec& font, font_height* height);

}  // namespace server

#endif  // SERVER_FONTS_H
