#ifndef _UTF8_H
#define _UTF8_H

#include <InterfaceDefs.h>
#include <SupportDefs.h>

// Character sets.
enum {
    B_ISO1_CONVERSION = 0,
    B_ISO2_CONVERSION = 1,
    B_ISO3_CONVERSION = 2,
    B_ISO4_CONVERSION = 3,
    B_ISO5_CONVERSION = 4,
    B_ISO6_CONVERSION = 5,
    B_ISO7_CONVERSION = 6,
    B_ISO8_CONVERSION = 7,
    B_ISO9_CONVERSION = 8,
    B_ISO10_CONVERSION = 9,
    B_MAC_ROMAN_CONVERSION = 10,
    B_SJIS_CONVERSION = 11,
    B_EUC_CONVERSION = 12,
    B_JIS_CONVERSION = 13,
    B_MS_WINDOWS_CONVERSION = 14,
    B_UNICODE_CONVERSION = 15,
    B_KOI8R_CONVERSION = 16,
    B_MS_WINDOWS_1251_CONVERSION = 17,
    B_MS_DOS_866_CONVERSION = 18,
    B_MS_DOS_CONVERSION = 19,
    B_EUC_KR_CONVERSION = 20,
    B_ISO13_CONVERSION = 21,
    B_ISO14_CONVERSION = 22,
    B_ISO15_CONVERSION = 23,
    B_BIG5_CONVERSION = 24,
    B_GBK_CONVERSION = 25,
    B_UTF16_CONVERSION = 26,
    B_MS_WINDOWS_1250_CONVERSION = 27
};

/* Convert text, in pieces if need be. `sourceLength` and `destLength` tell the bytes that there
   are, and afterwards those that were used; text that is no character of its set becomes
   `substitute`. A character that is cut off by the end of the source, or does not fit into what is
   left of the destination, is not used. `state` starts as 0 and belongs to one text. B_BAD_VALUE
   for null or a negative length, B_ERROR for a set that the host does not know, or when not one
   character could be converted. */
status_t convert_to_utf8(uint32 sourceEncoding, const char* source, int32* sourceLength, char* dest,
                         int32* destLength, int32* state, char substitute = B_SUBSTITUTE);
status_t convert_from_utf8(uint32 destEncoding, const char* source, int32* sourceLength, char* dest,
                           int32* destLength, int32* state, char substitute = B_SUBSTITUTE);

#endif  // _UTF8_H
