#ifndef _UNICODE_BLOCK_OBJECTS_H
#define _UNICODE_BLOCK_OBJECTS_H

// Sets of Unicode blocks, as BFont::Blocks() tells them.

#include <SupportDefs.h>

class unicode_block {
public:
    constexpr unicode_block() = default;
    // `block2` has the blocks from number 64 on.
    constexpr unicode_block(uint64 block2, uint64 block1) : fData{block1, block2} {}

    // True if both sets share a block.
    constexpr bool Includes(const unicode_block& block) const
    {
        return (fData[0] & block.fData[0]) != 0 || (fData[1] & block.fData[1]) != 0;
    }
    constexpr unicode_block operator&(const unicode_block& block) const
    {
        return unicode_block(fData[1] & block.fData[1], fData[0] & block.fData[0]);
    }
    constexpr unicode_block operator|(const unicode_block& block) const
    {
        return unicode_block(fData[1] | block.fData[1], fData[0] | block.fData[0]);
    }
    constexpr bool operator==(const unicode_block& block) const
    {
        return fData[0] == block.fData[0] && fData[1] == block.fData[1];
    }
    constexpr bool operator!=(const unicode_block& block) const { return !(*this == block); }

private:
    uint64 fData[2] = {0, 0};
};

// The characters of one block, first and last.
struct unicode_block_range {
    uint32 start;
    uint32 end;
    const unicode_block& block;

    uint32 Count() const { return end + 1 - start; }
};

constexpr unicode_block B_BASIC_LATIN_BLOCK(0x0, 0x1);
constexpr unicode_block B_LATIN1_SUPPLEMENT_BLOCK(0x0, 0x2);
constexpr unicode_block B_LATIN_EXTENDED_A_BLOCK(0x0, 0x4);
constexpr unicode_block B_LATIN_EXTENDED_B_BLOCK(0x0, 0x8);
constexpr unicode_block B_IPA_EXTENSIONS_BLOCK(0x0, 0x10);
constexpr unicode_block B_SPACING_MODIFIER_LETTERS_BLOCK(0x0, 0x20);
constexpr unicode_block B_COMBINING_DIACRITICAL_MARKS_BLOCK(0x0, 0x40);
constexpr unicode_block B_BASIC_GREEK_BLOCK(0x0, 0x80);
constexpr unicode_block B_GREEK_SYMBOLS_AND_COPTIC_BLOCK(0x0, 0x100);
constexpr unicode_block B_CYRILLIC_BLOCK(0x0, 0x200);
constexpr unicode_block B_ARMENIAN_BLOCK(0x0, 0x400);
constexpr unicode_block B_BASIC_HEBREW_BLOCK(0x0, 0x800);
constexpr unicode_block B_HEBREW_EXTENDED_BLOCK(0x0, 0x1000);
constexpr unicode_block B_BASIC_ARABIC_BLOCK(0x0, 0x2000);
constexpr unicode_block B_ARABIC_EXTENDED_BLOCK(0x0, 0x4000);
constexpr unicode_block B_DEVANAGARI_BLOCK(0x0, 0x8000);
constexpr unicode_block B_BENGALI_BLOCK(0x0, 0x10000);
constexpr unicode_block B_GURMUKHI_BLOCK(0x0, 0x20000);
constexpr unicode_block B_GUJARATI_BLOCK(0x0, 0x40000);
constexpr unicode_block B_ORIYA_BLOCK(0x0, 0x80000);
constexpr unicode_block B_TAMIL_BLOCK(0x0, 0x100000);
constexpr unicode_block B_TELUGU_BLOCK(0x0, 0x200000);
constexpr unicode_block B_KANNADA_BLOCK(0x0, 0x400000);
constexpr unicode_block B_MALAYALAM_BLOCK(0x0, 0x800000);
constexpr unicode_block B_THAI_BLOCK(0x0, 0x1000000);
constexpr unicode_block B_LAO_BLOCK(0x0, 0x2000000);
constexpr unicode_block B_BASIC_GEORGIAN_BLOCK(0x0, 0x4000000);
constexpr unicode_block B_GEORGIAN_EXTENDED_BLOCK(0x0, 0x8000000);
constexpr unicode_block B_HANGUL_JAMO_BLOCK(0x0, 0x10000000);
constexpr unicode_block B_LATIN_EXTENDED_ADDITIONAL_BLOCK(0x0, 0x20000000);
constexpr unicode_block B_GREEK_EXTENDED_BLOCK(0x0, 0x40000000);
constexpr unicode_block B_GENERAL_PUNCTUATION_BLOCK(0x0, 0x80000000);
constexpr unicode_block B_SUPERSCRIPTS_AND_SUBSCRIPTS_BLOCK(0x0, 0x100000000);
constexpr unicode_block B_CURRENCY_SYMBOLS_BLOCK(0x0, 0x200000000);
constexpr unicode_block B_COMBINING_MARKS_FOR_SYMBOLS_BLOCK(0x0, 0x400000000);
constexpr unicode_block B_LETTERLIKE_SYMBOLS_BLOCK(0x0, 0x800000000);
constexpr unicode_block B_NUMBER_FORMS_BLOCK(0x0, 0x1000000000);
constexpr unicode_block B_ARROWS_BLOCK(0x0, 0x2000000000);
constexpr unicode_block B_MATHEMATICAL_OPERATORS_BLOCK(0x0, 0x4000000000);
constexpr unicode_block B_MISCELLANEOUS_TECHNICAL_BLOCK(0x0, 0x8000000000);
constexpr unicode_block B_CONTROL_PICTURES_BLOCK(0x0, 0x10000000000);
constexpr unicode_block B_OPTICAL_CHARACTER_RECOGNITION_BLOCK(0x0, 0x20000000000);
constexpr unicode_block B_ENCLOSED_ALPHANUMERICS_BLOCK(0x0, 0x40000000000);
constexpr unicode_block B_BOX_DRAWING_BLOCK(0x0, 0x80000000000);
constexpr unicode_block B_BLOCK_ELEMENTS_BLOCK(0x0, 0x100000000000);
constexpr unicode_block B_GEOMETRIC_SHAPES_BLOCK(0x0, 0x200000000000);
constexpr unicode_block B_MISCELLANEOUS_SYMBOLS_BLOCK(0x0, 0x400000000000);
constexpr unicode_block B_DINGBATS_BLOCK(0x0, 0x800000000000);
constexpr unicode_block B_CJK_SYMBOLS_AND_PUNCTUATION_BLOCK(0x0, 0x1000000000000);
constexpr unicode_block B_HIRAGANA_BLOCK(0x0, 0x2000000000000);
constexpr unicode_block B_KATAKANA_BLOCK(0x0, 0x4000000000000);
constexpr unicode_block B_BOPOMOFO_BLOCK(0x0, 0x8000000000000);
constexpr unicode_block B_HANGUL_COMPATIBILITY_JAMO_BLOCK(0x0, 0x10000000000000);
constexpr unicode_block B_CJK_MISCELLANEOUS_BLOCK(0x0, 0x20000000000000);
constexpr unicode_block B_ENCLOSED_CJK_LETTERS_AND_MONTHS_BLOCK(0x0, 0x40000000000000);
constexpr unicode_block B_CJK_COMPATIBILITY_BLOCK(0x0, 0x80000000000000);
constexpr unicode_block B_HANGUL_BLOCK(0x0, 0x100000000000000);
constexpr unicode_block B_HIGH_SURROGATES_BLOCK(0x0, 0x200000000000000);
constexpr unicode_block B_LOW_SURROGATES_BLOCK(0x0, 0x400000000000000);
constexpr unicode_block B_CJK_UNIFIED_IDEOGRAPHS_BLOCK(0x0, 0x800000000000000);
constexpr unicode_block B_PRIVATE_USE_AREA_BLOCK(0x0, 0x1000000000000000);
constexpr unicode_block B_CJK_COMPATIBILITY_IDEOGRAPHS_BLOCK(0x0, 0x2000000000000000);
constexpr unicode_block B_ALPHABETIC_PRESENTATION_FORMS_BLOCK(0x0, 0x4000000000000000);
constexpr unicode_block B_ARABIC_PRESENTATION_FORMS_A_BLOCK(0x0, 0x8000000000000000);
constexpr unicode_block B_COMBINING_HALF_MARKS_BLOCK(0x1, 0x0);
constexpr unicode_block B_CJK_COMPATIBILITY_FORMS_BLOCK(0x2, 0x0);
constexpr unicode_block B_SMALL_FORM_VARIANTS_BLOCK(0x4, 0x0);
constexpr unicode_block B_ARABIC_PRESENTATION_FORMS_B_BLOCK(0x8, 0x0);
constexpr unicode_block B_HALFWIDTH_AND_FULLWIDTH_FORMS_BLOCK(0x10, 0x0);
constexpr unicode_block B_SPECIALS_BLOCK(0x20, 0x0);
constexpr unicode_block B_TIBETAN_BLOCK(0x40, 0x0);

constexpr unicode_block_range kUnicodeBlockMap[] = {
    {0x0000, 0x007F, B_BASIC_LATIN_BLOCK},
    {0x0080, 0x00FF, B_LATIN1_SUPPLEMENT_BLOCK},
    {0x0100, 0x017F, B_LATIN_EXTENDED_A_BLOCK},
    {0x0180, 0x024F, B_LATIN_EXTENDED_B_BLOCK},
    {0x0250, 0x02AF, B_IPA_EXTENSIONS_BLOCK},
    {0x02B0, 0x02FF, B_SPACING_MODIFIER_LETTERS_BLOCK},
    {0x0300, 0x036F, B_COMBINING_DIACRITICAL_MARKS_BLOCK},
    {0x0370, 0x03CF, B_BASIC_GREEK_BLOCK},
    {0x03D0, 0x03FF, B_GREEK_SYMBOLS_AND_COPTIC_BLOCK},
    {0x0400, 0x04FF, B_CYRILLIC_BLOCK},
    {0x0530, 0x058F, B_ARMENIAN_BLOCK},
    {0x05D0, 0x05FF, B_BASIC_HEBREW_BLOCK},
    {0x0590, 0x05CF, B_HEBREW_EXTENDED_BLOCK},
    {0x0600, 0x0652, B_BASIC_ARABIC_BLOCK},
    {0x0653, 0x06FF, B_ARABIC_EXTENDED_BLOCK},
    {0x0900, 0x097F, B_DEVANAGARI_BLOCK},
    {0x0980, 0x09FF, B_BENGALI_BLOCK},
    {0x0A00, 0x0A7F, B_GURMUKHI_BLOCK},
    {0x0A80, 0x0AFF, B_GUJARATI_BLOCK},
    {0x0B00, 0x0B7F, B_ORIYA_BLOCK},
    {0x0B80, 0x0BFF, B_TAMIL_BLOCK},
    {0x0C00, 0x0C7F, B_TELUGU_BLOCK},
    {0x0C80, 0x0CFF, B_KANNADA_BLOCK},
    {0x0D00, 0x0D7F, B_MALAYALAM_BLOCK},
    {0x0E00, 0x0E7F, B_THAI_BLOCK},
    {0x0E80, 0x0EFF, B_LAO_BLOCK},
    {0x10D0, 0x10FF, B_BASIC_GEORGIAN_BLOCK},
    {0x10A0, 0x10CF, B_GEORGIAN_EXTENDED_BLOCK},
    {0x1100, 0x11FF, B_HANGUL_JAMO_BLOCK},
    {0x1E00, 0x1EFF, B_LATIN_EXTENDED_ADDITIONAL_BLOCK},
    {0x1F00, 0x1FFF, B_GREEK_EXTENDED_BLOCK},
    {0x2000, 0x206F, B_GENERAL_PUNCTUATION_BLOCK},
    {0x2070, 0x209F, B_SUPERSCRIPTS_AND_SUBSCRIPTS_BLOCK},
    {0x20A0, 0x20CF, B_CURRENCY_SYMBOLS_BLOCK},
    {0x20D0, 0x20FF, B_COMBINING_MARKS_FOR_SYMBOLS_BLOCK},
    {0x2100, 0x214F, B_LETTERLIKE_SYMBOLS_BLOCK},
    {0x2150, 0x218F, B_NUMBER_FORMS_BLOCK},
    {0x2190, 0x21FF, B_ARROWS_BLOCK},
    {0x2200, 0x22FF, B_MATHEMATICAL_OPERATORS_BLOCK},
    {0x2300, 0x23FF, B_MISCELLANEOUS_TECHNICAL_BLOCK},
    {0x2400, 0x243F, B_CONTROL_PICTURES_BLOCK},
    {0x2440, 0x245F, B_OPTICAL_CHARACTER_RECOGNITION_BLOCK},
    {0x2460, 0x24FF, B_ENCLOSED_ALPHANUMERICS_BLOCK},
    {0x2500, 0x257F, B_BOX_DRAWING_BLOCK},
    {0x2580, 0x259F, B_BLOCK_ELEMENTS_BLOCK},
    {0x25A0, 0x25FF, B_GEOMETRIC_SHAPES_BLOCK},
    {0x2600, 0x26FF, B_MISCELLANEOUS_SYMBOLS_BLOCK},
    {0x2700, 0x27BF, B_DINGBATS_BLOCK},
    {0x3000, 0x303F, B_CJK_SYMBOLS_AND_PUNCTUATION_BLOCK},
    {0x3040, 0x309F, B_HIRAGANA_BLOCK},
    {0x30A0, 0x30FF, B_KATAKANA_BLOCK},
    {0x3100, 0x312F, B_BOPOMOFO_BLOCK},
    {0x3130, 0x318F, B_HANGUL_COMPATIBILITY_JAMO_BLOCK},
    {0x3190, 0x319F, B_CJK_MISCELLANEOUS_BLOCK},
    {0x3200, 0x32FF, B_ENCLOSED_CJK_LETTERS_AND_MONTHS_BLOCK},
    {0x3300, 0x33FF, B_CJK_COMPATIBILITY_BLOCK},
    {0xAC00, 0xD7AF, B_HANGUL_BLOCK},
    {0xD800, 0xDBFF, B_HIGH_SURROGATES_BLOCK},
    {0xDC00, 0xDFFF, B_LOW_SURROGATES_BLOCK},
    {0x4E00, 0x9FFF, B_CJK_UNIFIED_IDEOGRAPHS_BLOCK},
    {0xE000, 0xF8FF, B_PRIVATE_USE_AREA_BLOCK},
    {0xF900, 0xFAFF, B_CJK_COMPATIBILITY_IDEOGRAPHS_BLOCK},
    {0xFB00, 0xFB4F, B_ALPHABETIC_PRESENTATION_FORMS_BLOCK},
    {0xFB50, 0xFDFF, B_ARABIC_PRESENTATION_FORMS_A_BLOCK},
    {0xFE20, 0xFE2F, B_COMBINING_HALF_MARKS_BLOCK},
    {0xFE30, 0xFE4F, B_CJK_COMPATIBILITY_FORMS_BLOCK},
    {0xFE50, 0xFE6F, B_SMALL_FORM_VARIANTS_BLOCK},
    {0xFE70, 0xFEFE, B_ARABIC_PRESENTATION_FORMS_B_BLOCK},
    {0xFF00, 0xFFEF, B_HALFWIDTH_AND_FULLWIDTH_FORMS_BLOCK},
    {0xFFF0, 0xFFFF, B_SPECIALS_BLOCK},
    {0x0F00, 0x0FFF, B_TIBETAN_BLOCK},
};
constexpr uint32 kNumUnicodeBlockRanges = sizeof(kUnicodeBlockMap) / sizeof(kUnicodeBlockMap[0]);

#endif  // _UNICODE_BLOCK_OBJECTS_H
