#ifndef _TYPECONSTANTS_H
#define _TYPECONSTANTS_H

#include <SupportDefs.h>

enum {
    B_AFFINE_TRANSFORM_TYPE = 0x414D5458,       // 'AMTX'
    B_ALIGNMENT_TYPE = 0x414C474E,              // 'ALGN'
    B_ANY_TYPE = 0x414E5954,                    // 'ANYT'
    B_ATOM_TYPE = 0x41544F4D,                   // 'ATOM'
    B_ATOMREF_TYPE = 0x41544D52,                // 'ATMR'
    B_BOOL_TYPE = 0x424F4F4C,                   // 'BOOL'
    B_CHAR_TYPE = 0x43484152,                   // 'CHAR'
    B_COLOR_8_BIT_TYPE = 0x434C5242,            // 'CLRB'
    B_DOUBLE_TYPE = 0x44424C45,                 // 'DBLE'
    B_FLOAT_TYPE = 0x464C4F54,                  // 'FLOT'
    B_GRAYSCALE_8_BIT_TYPE = 0x47525942,        // 'GRYB'
    B_INT16_TYPE = 0x53485254,                  // 'SHRT'
    B_INT32_TYPE = 0x4C4F4E47,                  // 'LONG'
    B_INT64_TYPE = 0x4C4C4E47,                  // 'LLNG'
    B_INT8_TYPE = 0x42595445,                   // 'BYTE'
    B_LARGE_ICON_TYPE = 0x49434F4E,             // 'ICON'
    B_MEDIA_PARAMETER_GROUP_TYPE = 0x424D4347,  // 'BMCG'
    B_MEDIA_PARAMETER_TYPE = 0x424D4354,        // 'BMCT'
    B_MEDIA_PARAMETER_WEB_TYPE = 0x424D4357,    // 'BMCW'
    B_MESSAGE_TYPE = 0x4D534747,                // 'MSGG'
    B_MESSENGER_TYPE = 0x4D534E47,              // 'MSNG'
    B_MIME_TYPE = 0x4D494D45,                   // 'MIME'
    B_MINI_ICON_TYPE = 0x4D49434E,              // 'MICN'
    B_MONOCHROME_1_BIT_TYPE = 0x4D4E4F42,       // 'MNOB'
    B_OBJECT_TYPE = 0x4F505452,                 // 'OPTR'
    B_OFF_T_TYPE = 0x4F464654,                  // 'OFFT'
    B_PATTERN_TYPE = 0x5041544E,                // 'PATN'
    B_POINTER_TYPE = 0x504E5452,                // 'PNTR'
    B_POINT_TYPE = 0x42504E54,                  // 'BPNT'
    B_PROPERTY_INFO_TYPE = 0x53435444,          // 'SCTD'
    B_RAW_TYPE = 0x52415754,                    // 'RAWT'
    B_RECT_TYPE = 0x52454354,                   // 'RECT'
    B_REF_TYPE = 0x52524546,                    // 'RREF'
    B_NODE_REF_TYPE = 0x4E524546,               // 'NREF'
    B_RGB_32_BIT_TYPE = 0x52474242,             // 'RGBB'
    B_RGB_COLOR_TYPE = 0x52474243,              // 'RGBC'
    B_SIZE_TYPE = 0x53495A45,                   // 'SIZE'
    B_SIZE_T_TYPE = 0x53495A54,                 // 'SIZT'
    B_SSIZE_T_TYPE = 0x53535A54,                // 'SSZT'
    B_STRING_TYPE = 0x43535452,                 // 'CSTR'
    B_STRING_LIST_TYPE = 0x5354524C,            // 'STRL'
    B_TIME_TYPE = 0x54494D45,                   // 'TIME'
    B_UINT16_TYPE = 0x55534854,                 // 'USHT'
    B_UINT32_TYPE = 0x554C4E47,                 // 'ULNG'
    B_UINT64_TYPE = 0x554C4C47,                 // 'ULLG'
    B_UINT8_TYPE = 0x55425954,                  // 'UBYT'
    B_VECTOR_ICON_TYPE = 0x5649434E,            // 'VICN'
    B_XATTR_TYPE = 0x58415452,                  // 'XATR'
    B_NETWORK_ADDRESS_TYPE = 0x4E574144,        // 'NWAD'
    B_MIME_STRING_TYPE = 0x4D494D53,            // 'MIMS'
    B_ASCII_TYPE = 0x54455854                   // 'TEXT'
};

// MIME types of links, by scheme.
extern const char* B_URL_HTTP;
extern const char* B_URL_HTTPS;
extern const char* B_URL_FTP;
extern const char* B_URL_GOPHER;
extern const char* B_URL_MAILTO;
extern const char* B_URL_NEWS;
extern const char* B_URL_NNTP;
extern const char* B_URL_TELNET;
extern const char* B_URL_RLOGIN;
extern const char* B_URL_TN3270;
extern const char* B_URL_WAIS;
extern const char* B_URL_FILE;

#endif  // _TYPECONSTANTS_H
