#ifndef _TRANSLATOR_FORMATS_H
#define _TRANSLATOR_FORMATS_H

#include <GraphicsDefs.h>
#include <Rect.h>
#include <SupportDefs.h>

// Names of the fields of an extension message.

extern char B_TRANSLATOR_EXT_HEADER_ONLY[];  // bool: only the header is written
extern char B_TRANSLATOR_EXT_DATA_ONLY[];    // bool: only what follows it
extern char B_TRANSLATOR_EXT_COMMENT[];
extern char B_TRANSLATOR_EXT_TIME[];
extern char B_TRANSLATOR_EXT_FRAME[];
extern char B_TRANSLATOR_EXT_BITMAP_RECT[];
extern char B_TRANSLATOR_EXT_BITMAP_COLOR_SPACE[];  // int32: the colours of a bitmap
extern char B_TRANSLATOR_EXT_BITMAP_PALETTE[];
extern char B_TRANSLATOR_EXT_SOUND_CHANNEL[];
extern char B_TRANSLATOR_EXT_SOUND_MONO[];
extern char B_TRANSLATOR_EXT_SOUND_MARKER[];
extern char B_TRANSLATOR_EXT_SOUND_LOOP[];

/* Kinds of content; the number is also that of the format all translators of the kind share. */
enum TranslatorGroups {
    B_TRANSLATOR_BITMAP = 'bits',   // TranslatorBitmap
    B_TRANSLATOR_PICTURE = 'pict',  // a flattened BPicture
    B_TRANSLATOR_SOUND = 'nois',    // TranslatorSound
    B_TRANSLATOR_TEXT = 'TEXT',     // text in UTF-8
    B_TRANSLATOR_MIDI = 'midi',
    B_TRANSLATOR_MEDIA = 'mhi!',
    B_TRANSLATOR_NONE = 'none',
    B_TRANSLATOR_ANY_TYPE = 0
};

enum {
    B_GIF_FORMAT = 'GIF ',
    B_JPEG_FORMAT = 'JPEG',
    B_PNG_FORMAT = 'PNG ',
    B_PPM_FORMAT = 'PPM ',
    B_TGA_FORMAT = 'TGA ',
    B_BMP_FORMAT = 'BMP ',
    B_TIFF_FORMAT = 'TIFF',
    B_WEBP_FORMAT = 'WebP',
    B_DXF_FORMAT = 'DXF ',
    B_EPS_FORMAT = 'EPS ',
    B_PICT_FORMAT = 'PICT',
    B_WAV_FORMAT = 'WAV ',
    B_AIFF_FORMAT = 'AIFF',
    B_CD_FORMAT = 'CD  ',
    B_AU_FORMAT = 'AU  ',
    B_STYLED_TEXT_FORMAT = 'STXT'
};

// Headers in a stream have their numbers in big-endian order.

/* Before the rows of a bitmap. */
struct TranslatorBitmap {
    uint32 magic;  // B_TRANSLATOR_BITMAP
    BRect bounds;
    uint32 rowBytes;
    color_space colors;
    uint32 dataSize;  // bytes behind the header
};

/* Before the samples of a sound: 16 bits, interleaved. */
struct TranslatorSound {
    uint32 magic;  // B_TRANSLATOR_SOUND
    uint32 channels;
    float sampleFreq;
    uint32 numFrames;
};

/* Styled text is a stream of records, each with such a header. */
struct TranslatorStyledTextRecordHeader {
    uint32 magic;
    uint32 header_size;
    uint32 data_size;
};

struct TranslatorStyledTextStreamHeader {
    enum { STREAM_HEADER_MAGIC = 'STXT' };
    TranslatorStyledTextRecordHeader header;
    int32 version;
};

struct TranslatorStyledTextTextHeader {
    enum { TEXT_HEADER_MAGIC = 'TEXT' };
    TranslatorStyledTextRecordHeader header;
    int32 charset;
};

struct TranslatorStyledTextStyleHeader {
    enum { STYLE_HEADER_MAGIC = 'STYL' };
    TranslatorStyledTextRecordHeader header;
    uint32 apply_offset;
    uint32 apply_length;
};

#endif  // _TRANSLATOR_FORMATS_H
