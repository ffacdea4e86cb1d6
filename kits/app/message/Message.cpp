// BMessage: its life, and fields as plain data. One thread at a time, as its owner sees to it.

#include <Message.h>

#include <TypeConstants.h>

#include <string.h>

#include <new>

#include "app/message/MessageFields.h"

using namespace BPrivate;

static const int kMaxCompareDepth = 64;

BMessage::BMessage() : what(0) {}

BMessage::BMessage(uint32 what) : what(what) {}

BMessage::BMessage(const BMessage& other)
    : what(other.what),
      fFields(copy_fields(other.fFields)),
      fCurrentSpecifier(other.fCurrentSpecifier)
{
}

BMessage::~BMessage()
{
    if (fDelivery != 0 || fPrevious != nullptr)
        _EndDelivery();
    free(fFields);
}

BMessage& BMessage::operator=(const BMessage& other)
{
    if (this == &other)
        return *this;
    FieldBlock* copy = copy_fields(other.fFields);
    free(fFields);
    fFields = copy;
    what = other.what;
    fCurrentSpecifier = other.fCurrentSpecifier;
    return *this;
}

void* BMessage::operator new(size_t size) { return ::operator new(size); }

void* BMessage::operator new(size_t, void* pointer) { return pointer; }

void* BMessage::operator new(size_t size, const std::nothrow_t& noThrow)
{
    return ::operator new(size, noThrow);
}

void BMessage::operator delete(void* pointer, size_t) { ::operator delete(pointer); }

static bool is_name(const char* name)
{
    return name != nullptr && strnlen(name, B_FIELD_NAME_LENGTH + 1) <= B_FIELD_NAME_LENGTH;
}

// The field `name` with values of `type`.
static status_t find_typed(FieldBlock* block, const char* name, type_code type,
                           FieldRecord*& record)
{
    if (name == nullptr)
        return B_BAD_VALUE;
    record = find_field(block, name);
    if (record == nullptr)
        return B_NAME_NOT_FOUND;
    return type == record->type || type == B_ANY_TYPE ? B_OK : B_BAD_TYPE;
}

// The same, where it has a value at `index`.
static status_t find_indexed(FieldBlock* block, const char* name, type_code type, int32 index,
                             FieldRecord*& record)
{
    const status_t status = find_typed(block, name, type, record);
    if (status != B_OK)
        return status;
    return index >= 0 && index < record->count ? B_OK : B_BAD_INDEX;
}

static void describe(const FieldRecord* record, type_code* type, int32* count, bool* fixed)
{
    if (type != nullptr)
        *type = record != nullptr ? record->type : 0;
    if (count != nullptr)
        *count = record != nullptr ? record->count : 0;
    if (fixed != nullptr && record != nullptr)
        *fixed = record->IsFixed();
}

status_t BMessage::GetInfo(type_code typeRequested, int32 index, char** nameFound,
                           type_code* typeFound, int32* countFound) const
{
    int32 seen = 0;
    FieldWalk walk(fFields);
    while (FieldRecord* record = walk.Next()) {
        if (typeRequested != B_ANY_TYPE && record->type != typeRequested)
            continue;
        if (seen++ != index)
            continue;
        if (nameFound != nullptr)
            *nameFound = record->Name();
        describe(record, typeFound, countFound, nullptr);
        return B_OK;
    }
    describe(nullptr, typeFound, countFound, nullptr);
    return seen > 0 || typeRequested == B_ANY_TYPE ? B_BAD_INDEX : B_BAD_TYPE;
}

status_t BMessage::GetInfo(const char* name, type_code* typeFound, int32* countFound) const
{
    return GetInfo(name, typeFound, countFound, nullptr);
}

status_t BMessage::GetInfo(const char* name, type_code* typeFound, bool* fixedSize) const
{
    return GetInfo(name, typeFound, nullptr, fixedSize);
}

status_t BMessage::GetInfo(const char* name, type_code* typeFound, int32* countFound,
                           bool* fixedSize) const
{
    FieldRecord* record = nullptr;
    const status_t status = find_typed(fFields, name, B_ANY_TYPE, record);
    describe(record, typeFound, countFound, fixedSize);
    return status;
}

int32 BMessage::CountNames(type_code type) const
{
    int32 count = 0;
    FieldWalk walk(fFields);
    while (FieldRecord* record = walk.Next())
        count += type == B_ANY_TYPE || record->type == type;
    return count;
}

bool BMessage::IsEmpty() const { return fFields == nullptr || fFields->count == 0; }

bool BMessage::IsSystem() const
{
    for (int shift = 16; shift >= 0; shift -= 8) {
        const uint32 letter = what >> shift & 0xFF;
        if (letter < 'A' || letter > 'Z')
            return false;
    }
    return what >> 24 == '_';
}

status_t BMessage::Rename(const char* oldEntry, const char* newEntry)
{
    FieldRecord* record;
    if (!is_name(newEntry))
        return B_BAD_VALUE;
    const status_t status = find_typed(fFields, oldEntry, B_ANY_TYPE, record);
    if (status != B_OK || strcmp(oldEntry, newEntry) == 0)
        return status;
    if (find_field(fFields, newEntry) != nullptr)
        return B_NAME_IN_USE;
    return rename_field(fFields, record, newEntry);
}

status_t BMessage::AddData(const char* name, type_code type, const void* data, ssize_t numBytes,
                           bool isFixedSize, int32)
{
    if (!is_name(name) || data == nullptr || numBytes < 0 || type == B_ANY_TYPE)
        return B_BAD_VALUE;
    if (numBytes > static_cast<ssize_t>(kMaxFieldBytes))
        return B_NO_MEMORY;
    const uint32 size = static_cast<uint32>(numBytes);
    FieldRecord* record = find_field(fFields, name);
    if (record != nullptr)
        return record->type == type ? add_value(fFields, record, data, size) : B_BAD_TYPE;

    // A string is read up to its terminator, which only a value of variable size surely has.
    const bool fixed = isFixedSize && type != B_STRING_TYPE;
    if (fixed && size == 0)
        return B_BAD_VALUE;
    // The data may lie in this very message, and the new field moves it.
    const uintptr_t offset =
        reinterpret_cast<uintptr_t>(data) - reinterpret_cast<uintptr_t>(fFields);
    const bool own = fFields != nullptr && offset < sizeof(FieldBlock) + fFields->used;
    record = add_field(fFields, name, type, fixed ? size : uint32(kVariable));
    if (record == nullptr)
        return B_NO_MEMORY;
    if (own)
        data = reinterpret_cast<const char*>(fFields) + offset;
    const size_t place = field_offset(fFields, record);
    const status_t status = add_value(fFields, record, data, size);
    if (status != B_OK)
        remove_field(fFields, field_at(fFields, place));
    return status;
}

status_t BMessage::Append(const BMessage& message)
{
    const BMessage copy(message);  // it may be this one
    FieldWalk walk(copy.fFields);
    while (FieldRecord* record = walk.Next()) {
        ValueWalk values(record);
        uint32 size;
        while (const void* value = values.Next(&size)) {
            const status_t status =
                AddData(record->Name(), record->type, value, size, record->IsFixed());
            if (status != B_OK)
                return status;
        }
    }
    return B_OK;
}

status_t BMessage::RemoveData(const char* name, int32 index)
{
    FieldRecord* record;
    const status_t status = find_indexed(fFields, name, B_ANY_TYPE, index, record);
    if (status == B_OK)
        remove_value(fFields, record, index);
    return status;
}

status_t BMessage::RemoveName(const char* name)
{
    FieldRecord* record;
    const status_t status = find_typed(fFields, name, B_ANY_TYPE, record);
    if (status == B_OK)
        remove_field(fFields, record);
    return status;
}

status_t BMessage::MakeEmpty()
{
    free(fFields);
    fFields = nullptr;
    fCurrentSpecifier = -1;
    return B_OK;
}

status_t BMessage::FindData(const char* name, type_code type, const void** data,
                            ssize_t* numBytes) const
{
    return FindData(name, type, 0, data, numBytes);
}

status_t BMessage::FindData(const char* name, type_code type, int32 index, const void** data,
                            ssize_t* numBytes) const
{
    if (data == nullptr)
        return B_BAD_VALUE;
    *data = nullptr;
    FieldRecord* record;
    const status_t status = find_indexed(fFields, name, type, index, record);
    if (status != B_OK)
        return status;
    uint32 size;
    *data = value_at(record, index, &size);
    if (numBytes != nullptr)
        *numBytes = size;
    return B_OK;
}

status_t BMessage::ReplaceData(const char* name, type_code type, const void* data, ssize_t numBytes)
{
    return ReplaceData(name, type, 0, data, numBytes);
}

status_t BMessage::ReplaceData(const char* name, type_code type, int32 index, const void* data,
                               ssize_t numBytes)
{
    if (data == nullptr || numBytes < 0)
        return B_BAD_VALUE;
    if (numBytes > static_cast<ssize_t>(kMaxFieldBytes))
        return B_NO_MEMORY;
    FieldRecord* record;
    const status_t status = find_indexed(fFields, name, type, index, record);
    if (status != B_OK)
        return status;
    return replace_value(fFields, record, index, data, static_cast<uint32>(numBytes));
}

bool BMessage::HasData(const char* name, type_code type, int32 n) const
{
    FieldRecord* record;
    return find_indexed(fFields, name, type, n, record) == B_OK;
}

status_t BMessage::SetData(const char* name, type_code type, const void* data, ssize_t numBytes,
                           bool fixedSize, int count)
{
    const status_t status = ReplaceData(name, type, data, numBytes);
    if (status != B_NAME_NOT_FOUND)
        return status;
    return AddData(name, type, data, numBytes, fixedSize, count);
}

bool BMessage::HasSameData(const BMessage& other, bool ignoreFieldOrder, bool deep) const
{
    return _HasSameData(other, ignoreFieldOrder, deep, 0);
}

bool BMessage::_HasSameData(const BMessage& other, bool ignoreFieldOrder, bool deep,
                            int depth) const
{
    if (CountNames(B_ANY_TYPE) != other.CountNames(B_ANY_TYPE))
        return false;
    FieldWalk walk(fFields);
    FieldWalk others(other.fFields);
    while (FieldRecord* mine = walk.Next()) {
        FieldRecord* theirs =
            ignoreFieldOrder ? find_field(other.fFields, mine->Name()) : others.Next();
        if (theirs == nullptr || strcmp(mine->Name(), theirs->Name()) != 0 ||
            mine->type != theirs->type || mine->count != theirs->count)
            return false;
        const bool nested = deep && mine->type == B_MESSAGE_TYPE && depth < kMaxCompareDepth;
        ValueWalk my_values(mine);
        ValueWalk their_values(theirs);
        uint32 my_size, their_size = 0;
        while (const void* my_value = my_values.Next(&my_size)) {
            const void* their_value = their_values.Next(&their_size);
            if (my_size == their_size && memcmp(my_value, their_value, my_size) == 0)
                continue;
            BMessage my_message, their_message;
            if (!nested || my_message._Unflatten(my_value, my_size) != B_OK ||
                their_message._Unflatten(their_value, their_size) != B_OK ||
                my_message.what != their_message.what ||
                !my_message._HasSameData(their_message, ignoreFieldOrder, deep, depth + 1))
                return false;
        }
    }
    return true;
}
