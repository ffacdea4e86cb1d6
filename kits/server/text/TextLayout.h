#ifndef SERVER_TEXT_LAYOUT_H
#define SERVER_TEXT_LAYOUT_H

// Bytes to characters, characters to placed glyphs.

#include <memory>
#include <vector>

#include <server/text/FontGlyphs.h>
#include <server/text/Fonts.h>

namespace server {

// Text is laid out in pieces of at most so many bytes; longer text is cut, at spaces if it can be.
constexpr int32 kPieceBytes = 256;
// That of text with letters read from the right, which do not stand where the text is cut.
constexpr int32 kTurnedPieceBytes = 2048;

struct PlacedGlyph {
    uint32 glyph = 0;
    uint16 font = 0;       // index into Layout::fonts
    uint16 character = 0;  // index of the character that it belongs to
    float x = 0.0f;        // from the start of the text along the unturned baseline, pixels
    float y = 0.0f;        // off the baseline, y down
};

struct Layout {
    std::vector<std::shared_ptr<ScaledFont>> fonts;  // the first is the font asked for
    std::vector<PlacedGlyph> glyphs;                 // in visual order
    std::vector<float> advances;                     // one a character, in text order
    std::vector<float> starts;                       // where each one begins, in text order
    std::vector<uint8> turned;                       // 1 for what is read from the right
    float width = 0.0f;
};

// Lays out one piece of text; what is behind kTurnedPieceBytes is left out.
void LayOut(const FontSpec& font, const char* text, int32 length, const escapement_delta* delta,
            Layout* layout) REQUIRES(FontLock());

// The bytes of `text` up to the first zero byte or `length`.
int32 TextLength(const char* text, int32 length);
// The first piece of a text; never 0 for a text that is not empty, never half a character.
int32 PieceLength(const FontSpec& font, const char* text, int32 length);

bool IsSpace(uint32 character);
// What has its width whatever its neighbours are, in a font of whole-pixel spacing.
bool StandsAlone(uint32 character);

}  // namespace server

#endif  // SERVER_TEXT_LAYOUT_H
