// BMessage::PrintToStream(): a message in words, for who looks for a fault.

#include <Message.h>

#include <Entry.h>
#include <TypeConstants.h>

#include <ctype.h>
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

#include "app/message/MessageFields.h"

using namespace BPrivate;

static const int kMaxDepth = 16;
static const uint32 kMaxBytes = 64;  // shown of raw data

static void print_code(uint32 code)
{
    char letters[5] = {};
    for (int i = 0; i < 4; ++i)
        letters[i] = static_cast<char>(code >> (24 - 8 * i));
    bool printable = true;
    for (int i = 0; i < 4; ++i)
        printable = printable && isprint(static_cast<uchar>(letters[i])) != 0;
    if (printable)
        printf("'%s'", letters);
    else
        printf("0x%08" PRIx32, code);
}

static void print_bytes(const void* value, uint32 size)
{
    const uint8* bytes = static_cast<const uint8*>(value);
    for (uint32 i = 0; i < size && i < kMaxBytes; ++i)
        printf(" %02x", bytes[i]);
    printf("%s (%" PRIu32 " bytes)", size > kMaxBytes ? " ..." : "", size);
}

template <class Value>
static bool read_value(const void* bytes, uint32 size, Value& value)
{
    if (size != sizeof(Value))
        return false;
    memcpy(static_cast<void*>(&value), bytes, size);
    return true;
}

template <class Number>
static bool print_integer(const char* type, const void* bytes, uint32 size)
{
    Number number;
    if (!read_value(bytes, size, number))
        return false;
    const bool is_negative = number < 0;
    const uint64 shown = is_negative ? 0 - static_cast<uint64>(number) : number;
    printf("%s(%s%" PRIu64 " or 0x%" PRIx64 ")", type, is_negative ? "-" : "", shown,
           static_cast<uint64>(number) & (~uint64(0) >> (64 - 8 * sizeof(Number))));
    return true;
}

template <class Number>
static bool print_real(const char* type, const void* bytes, uint32 size)
{
    Number number;
    if (!read_value(bytes, size, number))
        return false;
    printf("%s(%.8g)", type, static_cast<double>(number));
    return true;
}

static bool print_geometry(type_code type, const void* bytes, uint32 size)
{
    BRect rect;
    float pair[2];
    if (type == B_RECT_TYPE && read_value(bytes, size, rect))
        printf("BRect(l:%.1f, t:%.1f, r:%.1f, b:%.1f)", rect.left, rect.top, rect.right,
               rect.bottom);
    else if (type == B_POINT_TYPE && read_value(bytes, size, pair))
        printf("BPoint(x:%.1f, y:%.1f)", pair[0], pair[1]);
    else if (type == B_SIZE_TYPE && read_value(bytes, size, pair))
        printf("BSize(%.1f x %.1f)", pair[0], pair[1]);
    else
        return false;
    return true;
}

// False for a type that has no words of its own, or a value that is not one of the type.
static bool print_value(type_code type, const void* bytes, uint32 size)
{
    switch (type) {
        case B_INT8_TYPE:
            return print_integer<int8>("int8", bytes, size);
        case B_UINT8_TYPE:
            return print_integer<uint8>("uint8", bytes, size);
        case B_INT16_TYPE:
            return print_integer<int16>("int16", bytes, size);
        case B_UINT16_TYPE:
            return print_integer<uint16>("uint16", bytes, size);
        case B_INT32_TYPE:
            return print_integer<int32>("int32", bytes, size);
        case B_UINT32_TYPE:
            return print_integer<uint32>("uint32", bytes, size);
        case B_INT64_TYPE:
            return print_integer<int64>("int64", bytes, size);
        case B_UINT64_TYPE:
            return print_integer<uint64>("uint64", bytes, size);
        case B_FLOAT_TYPE:
            return print_real<float>("float", bytes, size);
        case B_DOUBLE_TYPE:
            return print_real<double>("double", bytes, size);
        case B_BOOL_TYPE: {
            uint8 value;
            if (!read_value(bytes, size, value))
                return false;
            printf("bool(%s)", value != 0 ? "true" : "false");
            return true;
        }
        case B_STRING_TYPE:
            printf("string(\"%s\", %" PRIu32 " bytes)", static_cast<const char*>(bytes), size);
            return true;
        case B_POINTER_TYPE: {
            void* pointer;
            if (!read_value(bytes, size, pointer))
                return false;
            printf("pointer(%p)", pointer);
            return true;
        }
        case B_RGB_32_BIT_TYPE: {
            rgb_color color;
            if (!read_value(bytes, size, color))
                return false;
            printf("rgb_color(%d, %d, %d, %d)", color.red, color.green, color.blue, color.alpha);
            return true;
        }
        default:
            return print_geometry(type, bytes, size);
    }
}

void BMessage::PrintToStream() const
{
    _Print(0);
    fflush(stdout);
}

void BMessage::_Print(int depth) const
{
    const int indent = 8 * (depth + 1);
    printf("BMessage(");
    print_code(what);
    printf(") {\n");
    FieldWalk walk(fFields);
    while (FieldRecord* record = walk.Next()) {
        for (int32 i = 0; i < record->count; ++i) {
            uint32 size;
            const void* value = value_at(record, i, &size);
            printf("%*s%s", indent, "", record->Name());
            if (record->count > 1)
                printf("[%" PRId32 "]", i);
            printf(" = ");
            BMessage nested;
            entry_ref ref;
            if (record->type == B_MESSAGE_TYPE && depth < kMaxDepth &&
                nested._Unflatten(value, size) == B_OK) {
                nested._Print(depth + 1);
                continue;
            }
            if (record->type == B_REF_TYPE && FindRef(record->Name(), i, &ref) == B_OK) {
                printf("entry_ref(device=%lld, directory=%lld, name=\"%s\")",
                       static_cast<long long>(ref.device), static_cast<long long>(ref.directory),
                       ref.name != nullptr ? ref.name : "");
            } else if (!print_value(record->type, value, size)) {
                print_code(record->type);
                print_bytes(value, size);
            }
            printf("\n");
        }
    }
    printf("%*s}\n", 8 * depth, "");
}
