// Byte swapping by type.

#include <ByteOrder.h>
#include <TypeConstants.h>

#include <string.h>

double __swap_double(double arg)
{
    uint64 bits;
    memcpy(&bits, &arg, sizeof(bits));
    bits = B_SWAP_INT64(bits);
    memcpy(&arg, &bits, sizeof(bits));
    return arg;
}

float __swap_float(float arg)
{
    uint32 bits;
    memcpy(&bits, &arg, sizeof(bits));
    bits = B_SWAP_INT32(bits);
    memcpy(&arg, &bits, sizeof(bits));
    return arg;
}

// Bytes that are swapped among themselves; 0 for a type without byte order.
static size_t unit_size(type_code type)
{
    switch (type) {
        case B_BOOL_TYPE:
        case B_CHAR_TYPE:
        case B_COLOR_8_BIT_TYPE:
        case B_GRAYSCALE_8_BIT_TYPE:
        case B_INT8_TYPE:
        case B_MONOCHROME_1_BIT_TYPE:
        case B_UINT8_TYPE:
            return 1;
        case B_INT16_TYPE:
        case B_UINT16_TYPE:
            return 2;
        case B_FLOAT_TYPE:
        case B_INT32_TYPE:
        case B_UINT32_TYPE:
        case B_TIME_TYPE:
        case B_RECT_TYPE:
        case B_POINT_TYPE:
        case B_SIZE_TYPE:
        case B_MESSENGER_TYPE:
            return 4;
        case B_DOUBLE_TYPE:
        case B_INT64_TYPE:
        case B_UINT64_TYPE:
        case B_OFF_T_TYPE:
            return 8;
        case B_SIZE_T_TYPE:
        case B_SSIZE_T_TYPE:
        case B_POINTER_TYPE:
            return sizeof(void*);
        default:
            return 0;
    }
}

template <class Unit, class Swap>
static void swap_units(void* data, size_t length, Swap swap)
{
    char* at = static_cast<char*>(data);
    for (size_t i = 0; i < length; i += sizeof(Unit)) {
        Unit unit;
        memcpy(&unit, at + i, sizeof(unit));
        unit = swap(unit);
        memcpy(at + i, &unit, sizeof(unit));
    }
}

status_t swap_data(type_code type, void* data, size_t length, swap_action action)
{
    const size_t unit = unit_size(type);
    if (data == nullptr || unit == 0 || length % unit != 0)
        return B_BAD_VALUE;
    if (action == B_SWAP_HOST_TO_LENDIAN || action == B_SWAP_LENDIAN_TO_HOST)
        return B_OK;
    if (unit == 2)
        swap_units<uint16>(data, length, [](uint16 value) { return B_SWAP_INT16(value); });
    else if (unit == 4)
        swap_units<uint32>(data, length, [](uint32 value) { return B_SWAP_INT32(value); });
    else if (unit == 8)
        swap_units<uint64>(data, length, [](uint64 value) { return B_SWAP_INT64(value); });
    return B_OK;
}

// Whether values of the type are the system's own, which holds them in the host's order.
bool is_type_swapped(type_code type)
{
    switch (type) {
        case B_MESSAGE_TYPE:
        case B_MIME_TYPE:
        case B_PATTERN_TYPE:
        case B_REF_TYPE:
        case B_RGB_32_BIT_TYPE:
        case B_RGB_COLOR_TYPE:
        case B_STRING_TYPE:
            return true;
        default:
            return unit_size(type) != 0;
    }
}
