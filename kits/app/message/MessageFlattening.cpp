// The flat form of a message, in files, in the clipboard and inside other messages.
//
// All numbers are 32 bits, little end first. Head: 'P' 'l' 'M' '1', size of the whole, the
// message's code, count of fields. Each field: type, count of values, size of each value (-1 if
// each has its own), bytes of all values, length of the name; the name; the values one behind the
// other, each with its size in front where sizes differ.

#include <Message.h>

#include <DataIO.h>
#include <TypeConstants.h>

#include <string.h>

#include <algorithm>
#include <bit>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "app/message/MessageFields.h"

using namespace BPrivate;

static_assert(std::endian::native == std::endian::little);

struct FlatHead {
    char magic[4];
    uint32 size;
    uint32 what;
    uint32 count;
};

struct FlatField {
    uint32 type;
    uint32 count;
    uint32 item_size;
    uint32 data_size;
    uint32 name_length;
};

static const char kMagic[4] = {'P', 'l', 'M', '1'};
static const size_t kReadAtOnce = 1 << 16;
static const uint32 kManyFields = 16;

static uint32 flat_data_size(const FieldRecord* record)
{
    if (record->IsFixed())
        return record->data_size;
    uint32 total = 0;
    uint32 size;
    ValueWalk values(record);
    while (values.Next(&size) != nullptr)
        total += sizeof(uint32) + size;
    return total;
}

ssize_t BMessage::FlattenedSize() const
{
    ssize_t total = sizeof(FlatHead);
    FieldWalk walk(fFields);
    while (FieldRecord* record = walk.Next())
        total += sizeof(FlatField) + record->name_length + flat_data_size(record);
    return total;
}

static char* put(char* to, const void* from, size_t size)
{
    memcpy(to, from, size);
    return to + size;
}

status_t BMessage::Flatten(char* buffer, ssize_t size) const
{
    const ssize_t needed = FlattenedSize();
    if (buffer == nullptr || size < needed)
        return B_BAD_VALUE;
    FlatHead head = {
        {}, static_cast<uint32>(needed), what, static_cast<uint32>(CountNames(B_ANY_TYPE))};
    memcpy(head.magic, kMagic, sizeof(kMagic));
    char* at = put(buffer, &head, sizeof(head));
    FieldWalk walk(fFields);
    while (FieldRecord* record = walk.Next()) {
        const FlatField field = {record->type, static_cast<uint32>(record->count),
                                 record->item_size, flat_data_size(record), record->name_length};
        at = put(at, &field, sizeof(field));
        at = put(at, record->Name(), record->name_length);
        if (record->IsFixed()) {
            at = put(at, record->Data(), record->data_size);
            continue;
        }
        ValueWalk values(record);
        uint32 value_size;
        while (const void* value = values.Next(&value_size)) {
            at = put(at, &value_size, sizeof(value_size));
            at = put(at, value, value_size);
        }
    }
    return B_OK;
}

status_t BMessage::Flatten(BDataIO* stream, ssize_t* size) const
{
    if (stream == nullptr)
        return B_BAD_VALUE;
    std::vector<char> flat(FlattenedSize());
    const status_t status = Flatten(flat.data(), flat.size());
    if (status != B_OK)
        return status;
    if (size != nullptr)
        *size = flat.size();
    return stream->WriteExactly(flat.data(), flat.size());
}

// Reads numbers and stretches of bytes that are surely there.
class FlatReader {
public:
    FlatReader(const void* bytes, size_t size) : fAt(static_cast<const char*>(bytes)), fLeft(size)
    {
    }

    size_t Left() const { return fLeft; }

    const char* Take(size_t size)
    {
        if (size > fLeft)
            return nullptr;
        const char* taken = fAt;
        fAt += size;
        fLeft -= size;
        return taken;
    }

    template <class Part>
    bool Read(Part& part)
    {
        const char* bytes = Take(sizeof(Part));
        if (bytes != nullptr)
            memcpy(&part, bytes, sizeof(Part));
        return bytes != nullptr;
    }

private:
    const char* fAt;
    size_t fLeft;
};

static bool is_sound(const FlatField& field)
{
    if (field.count == 0 || field.count > INT32_MAX || field.name_length > B_FIELD_NAME_LENGTH ||
        field.type == B_ANY_TYPE)
        return false;
    if (field.item_size == kVariable)
        return field.data_size / sizeof(uint32) >= field.count;
    return field.type != B_STRING_TYPE && field.item_size > 0 &&
           uint64(field.item_size) * field.count == field.data_size;
}

// Reads one field into a block that has none of that name.
static status_t read_field(FieldBlock*& block, const char* name, const FlatField& field,
                           FlatReader values)
{
    const FieldRecord* record = add_field(block, name, field.type, field.item_size);
    if (record == nullptr)
        return B_NO_MEMORY;
    const size_t place = field_offset(block, record);
    for (uint32 i = 0; i < field.count; ++i) {
        uint32 size = field.item_size;
        if (field.item_size == kVariable && !values.Read(size))
            return B_BAD_VALUE;
        const char* value = values.Take(size);
        if (value == nullptr)
            return B_BAD_VALUE;
        const status_t status = add_value(block, field_at(block, place), value, size);
        if (status != B_OK)
            return status;
    }
    return values.Left() == 0 ? B_OK : B_BAD_VALUE;
}

status_t BMessage::_Unflatten(const void* bytes, size_t size)
{
    FlatReader reader(bytes, size);
    FlatHead head;
    if (!reader.Read(head) || memcmp(head.magic, kMagic, sizeof(kMagic)) != 0 ||
        head.size != size || head.count > reader.Left() / sizeof(FlatField))
        return B_BAD_VALUE;
    BMessage read(head.what);
    // Looking among the fields takes the longer the more there are.
    const bool many = head.count > kManyFields;
    std::unordered_set<std::string_view> names;
    for (uint32 i = 0; i < head.count; ++i) {
        FlatField field;
        if (!reader.Read(field) || !is_sound(field))
            return B_BAD_VALUE;
        const char* bytes = reader.Take(field.name_length);
        const char* values = bytes != nullptr ? reader.Take(field.data_size) : nullptr;
        if (values == nullptr || memchr(bytes, '\0', field.name_length) != nullptr)
            return B_BAD_VALUE;
        char name[B_FIELD_NAME_LENGTH + 1];
        *put(name, bytes, field.name_length) = '\0';
        const bool is_new = many ? names.insert(std::string_view(bytes, field.name_length)).second
                                 : find_field(read.fFields, name) == nullptr;
        if (!is_new)
            return B_BAD_VALUE;
        const status_t status =
            read_field(read.fFields, name, field, FlatReader(values, field.data_size));
        if (status != B_OK)
            return status;
    }
    if (reader.Left() != 0)
        return B_BAD_VALUE;
    what = head.what;
    std::swap(fFields, read.fFields);
    fCurrentSpecifier = -1;
    return B_OK;
}

status_t BMessage::Unflatten(const char* flatBuffer)
{
    if (flatBuffer == nullptr || memcmp(flatBuffer, kMagic, sizeof(kMagic)) != 0)
        return B_BAD_VALUE;
    FlatHead head;
    memcpy(&head, flatBuffer, sizeof(head));
    return _Unflatten(flatBuffer, head.size);
}

status_t BMessage::Unflatten(BDataIO* stream)
{
    FlatHead head;
    if (stream == nullptr)
        return B_BAD_VALUE;
    status_t status = stream->ReadExactly(&head, sizeof(head));
    if (status != B_OK)
        return status == B_PARTIAL_READ ? B_BAD_VALUE : status;
    if (memcmp(head.magic, kMagic, sizeof(kMagic)) != 0 || head.size < sizeof(head) ||
        head.size > kMaxFieldBytes)
        return B_BAD_VALUE;
    // Memory is taken as the bytes come, whatever size the head claims.
    std::vector<char> flat(sizeof(head));
    memcpy(flat.data(), &head, sizeof(head));
    while (flat.size() < head.size) {
        const size_t before = flat.size();
        const size_t step = std::min<size_t>(head.size - before, std::max(before, kReadAtOnce));
        try {
            flat.resize(before + step);
        } catch (const std::bad_alloc&) {
            return B_NO_MEMORY;
        }
        status = stream->ReadExactly(flat.data() + before, step);
        if (status != B_OK)
            return status == B_PARTIAL_READ ? B_BAD_VALUE : status;
    }
    return _Unflatten(flat.data(), flat.size());
}
