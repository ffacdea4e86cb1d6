#ifndef INTERFACE_FONT_ACCESS_H
#define INTERFACE_FONT_ACCESS_H

#include <Font.h>

#include <server/text/Fonts.h>

// What the kit's own classes need of a font's inside. The default fonts stay unresolved here: a
// spec costs no look-up.
struct FontAccess {
    // One of the default fonts.
    static constexpr BFont Default(server::DefaultStyle style, uint16 face)
    {
        BFont font;
        font.fStyle = style;
        font.fFace = face;
        return font;
    }

    static server::FontSpec Spec(const BFont& font)
    {
        return {font.fFamily,   font.fStyle,   font.fFace,     font.fSize,  font.fShear,
                font.fRotation, font.fSpacing, font.fEncoding, font.fFlags, font.fFalseBoldWidth};
    }
};

#endif  // INTERFACE_FONT_ACCESS_H
