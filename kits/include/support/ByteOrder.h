#ifndef _BYTEORDER_H
#define _BYTEORDER_H

#include <SupportDefs.h>

#define B_HOST_IS_LENDIAN                    1
#define B_HOST_IS_BENDIAN                    0

enum swap_action {
    B_SWAP_HOST_TO_LENDIAN = 0,
    B_SWAP_HOST_TO_BENDIAN = 1,
    B_SWAP_LENDIAN_TO_HOST = 2,
    B_SWAP_BENDIAN_TO_HOST = 3,
    B_SWAP_ALWAYS = 4
};

extern "C" {
status_t swap_data(type_code type, void* data, size_t length, swap_action action);
bool is_type_swapped(type_code type);
}

// macro B_SWAP_DOUBLE(arg)
// macro B_SWAP_FLOAT(arg)
// macro B_SWAP_INT64(arg)
// macro B_SWAP_INT32(arg)
// macro B_SWAP_INT16(arg)
// macro B_HOST_TO_LENDIAN_DOUBLE(arg)
// macro B_HOST_TO_LENDIAN_FLOAT(arg)
// macro B_HOST_TO_LENDIAN_INT64(arg)
// macro B_HOST_TO_LENDIAN_INT32(arg)
// macro B_HOST_TO_LENDIAN_INT16(arg)
// macro B_LENDIAN_TO_HOST_DOUBLE(arg)
// macro B_LENDIAN_TO_HOST_FLOAT(arg)
// macro B_LENDIAN_TO_HOST_INT64(arg)
// macro B_LENDIAN_TO_HOST_INT32(arg)
// macro B_LENDIAN_TO_HOST_INT16(arg)
// macro B_HOST_TO_BENDIAN_DOUBLE(arg)
// macro B_HOST_TO_BENDIAN_FLOAT(arg)
// macro B_HOST_TO_BENDIAN_INT64(arg)
// macro B_HOST_TO_BENDIAN_INT32(arg)
// macro B_HOST_TO_BENDIAN_INT16(arg)
// macro B_BENDIAN_TO_HOST_DOUBLE(arg)
// macro B_BENDIAN_TO_HOST_FLOAT(arg)
// macro B_BENDIAN_TO_HOST_INT64(arg)
// macro B_BENDIAN_TO_HOST_INT32(arg)
// macro B_BENDIAN_TO_HOST_INT16(arg)

#endif  // _BYTEORDER_H
