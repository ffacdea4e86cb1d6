#ifndef _UTF8_H
#define _UTF8_H

#include <SupportDefs.h>

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

#define B_SUBSTITUTE 0x1a

status_t convert_to_utf8(uint32 sourceEncoding, const char* source, int32* sourceLength, char* dest, int32* destLength, int32* state, char substitute = B_SUBSTITUTE);
status_t convert_from_utf8(uint32 destEncoding, const char* source, int32* sourceLength, char* dest, int32* destLength, int32* state, char substitute = B_SUBSTITUTE);

#endif  // _UTF8_H
