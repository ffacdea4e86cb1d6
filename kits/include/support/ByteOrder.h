#ifndef _BYTEORDER_H
#define _BYTEORDER_H

#include <SupportDefs.h>
#include <TypeConstants.h>

#define B_HOST_IS_LENDIAN 1
#define B_HOST_IS_BENDIAN 0

enum swap_action {
    B_SWAP_HOST_TO_LENDIAN = 0,
    B_SWAP_HOST_TO_BENDIAN = 1,
    B_SWAP_LENDIAN_TO_HOST = 2,
    B_SWAP_BENDIAN_TO_HOST = 3,
    B_SWAP_ALWAYS = 4
};

extern "C" {
/* Swaps the bytes of `length` bytes of values of a type, where `action` asks for it on this host.
   B_BAD_VALUE for a type without a byte order, such as text, or a length that is no multiple. */
status_t swap_data(type_code type, void* data, size_t length, swap_action action);
/* Whether messages carry values of the type in the host's own byte order. */
bool is_type_swapped(type_code type);

double __swap_double(double arg);
float __swap_float(float arg);
}

#define B_SWAP_DOUBLE(arg) __swap_double(arg)
#define B_SWAP_FLOAT(arg) __swap_float(arg)
#define B_SWAP_INT64(arg) __builtin_bswap64(arg)
#define B_SWAP_INT32(arg) __builtin_bswap32(arg)
#define B_SWAP_INT16(arg) __builtin_bswap16(arg)

#define B_HOST_TO_LENDIAN_DOUBLE(arg) ((double)(arg))
#define B_HOST_TO_LENDIAN_FLOAT(arg) ((float)(arg))
#define B_HOST_TO_LENDIAN_INT64(arg) ((uint64)(arg))
#define B_HOST_TO_LENDIAN_INT32(arg) ((uint32)(arg))
#define B_HOST_TO_LENDIAN_INT16(arg) ((uint16)(arg))
#define B_LENDIAN_TO_HOST_DOUBLE(arg) ((double)(arg))
#define B_LENDIAN_TO_HOST_FLOAT(arg) ((float)(arg))
#define B_LENDIAN_TO_HOST_INT64(arg) ((uint64)(arg))
#define B_LENDIAN_TO_HOST_INT32(arg) ((uint32)(arg))
#define B_LENDIAN_TO_HOST_INT16(arg) ((uint16)(arg))

#define B_HOST_TO_BENDIAN_DOUBLE(arg) B_SWAP_DOUBLE(arg)
#define B_HOST_TO_BENDIAN_FLOAT(arg) B_SWAP_FLOAT(arg)
#define B_HOST_TO_BENDIAN_INT64(arg) B_SWAP_INT64(arg)
#define B_HOST_TO_BENDIAN_INT32(arg) B_SWAP_INT32(arg)
#define B_HOST_TO_BENDIAN_INT16(arg) B_SWAP_INT16(arg)
#define B_BENDIAN_TO_HOST_DOUBLE(arg) B_SWAP_DOUBLE(arg)
#define B_BENDIAN_TO_HOST_FLOAT(arg) B_SWAP_FLOAT(arg)
#define B_BENDIAN_TO_HOST_INT64(arg) B_SWAP_INT64(arg)
#define B_BENDIAN_TO_HOST_INT32(arg) B_SWAP_INT32(arg)
#define B_BENDIAN_TO_HOST_INT16(arg) B_SWAP_INT16(arg)

#endif  // _BYTEORDER_H
