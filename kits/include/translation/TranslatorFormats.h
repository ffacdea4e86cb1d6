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
    B_TRANSLATOR_BITMAP = 0x62697473,   // 'bits', TranslatorBitmap
    B_TRANSLATOR_PICTURE = 0x70696374,  // 'pict', a flattened BPicture
    B_TRANSLATOR_SOUND = 0x6E6F6973,    // 'nois', TranslatorSound
    B_TRANSLATOR_TEXT = 0x54455854,     // 'TEXT', text in UTF-8
    B_TRANSLATOR_MIDI = 0x6D696469,     // 'midi'
    B_TRANSLATOR_MEDIA = 0x6D686921,    // 'mhi!'
    B_TRANSLATOR_NONE = 0x6E6F6E65,     // 'none'
    B_TRANSLATOR_ANY_TYPE = 0
};

enum {
    B_GIF_FORMAT = 0x47494620,         // 'GIF '
    B_JPEG_FORMAT = 0x4A504547,        // 'JPEG'
    B_PNG_FORMAT = 0x504E4720,         // 'PNG '
    B_PPM_FORMAT = 0x50504D20,         // 'PPM '
    B_TGA_FORMAT = 0x54474120,         // 'TGA '
    B_BMP_FORMAT = 0x424D5020,         // 'BMP '
    B_TIFF_FORMAT = 0x54494646,        // 'TIFF'
    B_WEBP_FORMAT = 0x57656250,        // 'WebP'
    B_DXF_FORMAT = 0x44584620,         // 'DXF '
    B_EPS_FORMAT = 0x45505320,         // 'EPS '
    B_PICT_FORMAT = 0x50494354,        // 'PICT'
    B_WAV_FORMAT = 0x57415620,         // 'WAV '
    B_AIFF_FORMAT = 0x41494646,        // 'AIFF'
    B_CD_FORMAT = 0x43442020,          // 'CD  '
    B_AU_FORMAT = 0x41552020,          // 'AU  '
    B_STYLED_TEXT_FORMAT = 0x53545854  // 'STXT'
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
    enum {
        STREAM_HEADER_MAGIC = 0x53545854  // 'STXT'
    };
    TranslatorStyledTextRecordHeader header;
    int32 version;
};

struct TranslatorStyledTextTextHeader {
    enum {
        TEXT_HEADER_MAGIC = 0x54455854  // 'TEXT'
    };
    TranslatorStyledTextRecordHeader header;
    int32 charset;
};

struct TranslatorStyledTextStyleHeader {
    enum {
        STYLE_HEADER_MAGIC = 0x5354594C  // 'STYL'
    };
    TranslatorStyledTextRecordHeader header;
    uint32 apply_offset;
    uint32 apply_length;
};

#endif  // _TRANSLATOR_FORMATS_H
