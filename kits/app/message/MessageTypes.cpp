// BMessage's fields by type: each is stored as the bytes that a program on the same kind of machine
// understands.

#include <Message.h>

#include <Flattenable.h>
#include <Node.h>
#include <String.h>
#include <StringList.h>
#include <TypeConstants.h>

#include <string.h>

#include <memory>
#include <new>
#include <string>
#include <vector>

#include "storage/Directories.h"

template <class Value>
static status_t find_value(const BMessage& message, const char* name, type_code type, int32 index,
                           Value* value)
{
    if (value == nullptr)
        return B_BAD_VALUE;
    const void* data;
    ssize_t size;
    const status_t status = message.FindData(name, type, index, &data, &size);
    if (status != B_OK || size != static_cast<ssize_t>(sizeof(Value))) {
        *value = Value();
        return status != B_OK ? status : B_BAD_DATA;
    }
    memcpy(static_cast<void*>(value), data, sizeof(Value));
    return B_OK;
}

template <class Value>
static Value value_or(const BMessage& message, const char* name, type_code type, int32 index,
                      const Value& otherwise)
{
    Value value;
    return find_value(message, name, type, index, &value) == B_OK ? value : otherwise;
}

// The members that a type of fixed size has; In is how it is passed.
#define ADD_FIND_REPLACE_HAS(Name, Value, In, type)                                  \
    status_t BMessage::Add##Name(const char* name, In value)                         \
    {                                                                                \
        return AddData(name, type, &value, sizeof(Value), true);                     \
    }                                                                                \
    status_t BMessage::Find##Name(const char* name, Value* value) const              \
    {                                                                                \
        return find_value(*this, name, type, 0, value);                              \
    }                                                                                \
    status_t BMessage::Find##Name(const char* name, int32 index, Value* value) const \
    {                                                                                \
        return find_value(*this, name, type, index, value);                          \
    }                                                                                \
    status_t BMessage::Replace##Name(const char* name, In value)                     \
    {                                                                                \
        return ReplaceData(name, type, &value, sizeof(Value));                       \
    }                                                                                \
    status_t BMessage::Replace##Name(const char* name, int32 index, In value)        \
    {                                                                                \
        return ReplaceData(name, type, index, &value, sizeof(Value));                \
    }                                                                                \
    bool BMessage::Has##Name(const char* name, int32 n) const { return HasData(name, type, n); }

#define GET_SET(Name, Value, In, type)                                              \
    Value BMessage::Get##Name(const char* name, In defaultValue) const              \
    {                                                                               \
        return value_or<Value>(*this, name, type, 0, defaultValue);                 \
    }                                                                               \
    Value BMessage::Get##Name(const char* name, int32 index, In defaultValue) const \
    {                                                                               \
        return value_or<Value>(*this, name, type, index, defaultValue);             \
    }                                                                               \
    status_t BMessage::Set##Name(const char* name, In value)                        \
    {                                                                               \
        return SetData(name, type, &value, sizeof(Value));                          \
    }

#define ALL(Name, Value, In, type)              \
    ADD_FIND_REPLACE_HAS(Name, Value, In, type) \
    GET_SET(Name, Value, In, type)

ALL(Alignment, BAlignment, const BAlignment&, B_ALIGNMENT_TYPE)
ADD_FIND_REPLACE_HAS(Rect, BRect, BRect, B_RECT_TYPE)
GET_SET(Rect, BRect, const BRect&, B_RECT_TYPE)
ADD_FIND_REPLACE_HAS(Point, BPoint, BPoint, B_POINT_TYPE)
GET_SET(Point, BPoint, const BPoint&, B_POINT_TYPE)
ADD_FIND_REPLACE_HAS(Size, BSize, BSize, B_SIZE_TYPE)
GET_SET(Size, BSize, const BSize&, B_SIZE_TYPE)
ALL(Int8, int8, int8, B_INT8_TYPE)
ALL(UInt8, uint8, uint8, B_UINT8_TYPE)
ALL(Int16, int16, int16, B_INT16_TYPE)
ALL(UInt16, uint16, uint16, B_UINT16_TYPE)
ALL(Int32, int32, int32, B_INT32_TYPE)
ALL(UInt32, uint32, uint32, B_UINT32_TYPE)
ALL(Int64, int64, int64, B_INT64_TYPE)
ALL(UInt64, uint64, uint64, B_UINT64_TYPE)
ALL(Float, float, float, B_FLOAT_TYPE)
ALL(Double, double, double, B_DOUBLE_TYPE)
ALL(Color, rgb_color, rgb_color, B_RGB_32_BIT_TYPE)

#undef ALL
#undef GET_SET
#undef ADD_FIND_REPLACE_HAS

// A truth value is one byte, and any but zero is true, wherever it came from.

status_t BMessage::AddBool(const char* name, bool value)
{
    return AddData(name, B_BOOL_TYPE, &value, 1, true);
}

status_t BMessage::FindBool(const char* name, bool* value) const
{
    return FindBool(name, 0, value);
}

status_t BMessage::FindBool(const char* name, int32 index, bool* value) const
{
    if (value == nullptr)
        return B_BAD_VALUE;
    uint8 byte;
    const status_t status = find_value(*this, name, B_BOOL_TYPE, index, &byte);
    *value = byte != 0;
    return status;
}

status_t BMessage::ReplaceBool(const char* name, bool aBoolean)
{
    return ReplaceBool(name, 0, aBoolean);
}

status_t BMessage::ReplaceBool(const char* name, int32 index, bool value)
{
    return ReplaceData(name, B_BOOL_TYPE, index, &value, 1);
}

bool BMessage::HasBool(const char* name, int32 n) const { return HasData(name, B_BOOL_TYPE, n); }

bool BMessage::GetBool(const char* name, bool defaultValue) const
{
    return GetBool(name, 0, defaultValue);
}

bool BMessage::GetBool(const char* name, int32 index, bool defaultValue) const
{
    bool value;
    return FindBool(name, index, &value) == B_OK ? value : defaultValue;
}

status_t BMessage::SetBool(const char* name, bool value)
{
    return SetData(name, B_BOOL_TYPE, &value, 1);
}

BRect BMessage::FindRect(const char* name, int32 n) const
{
    return value_or(*this, name, B_RECT_TYPE, n, BRect(0, 0, -1, -1));
}

BPoint BMessage::FindPoint(const char* name, int32 n) const
{
    return value_or(*this, name, B_POINT_TYPE, n, BPoint(0, 0));
}

const char* BMessage::FindString(const char* name, int32 n) const
{
    const char* string;
    return FindString(name, n, &string) == B_OK ? string : nullptr;
}

int8 BMessage::FindInt8(const char* name, int32 n) const
{
    return value_or<int8>(*this, name, B_INT8_TYPE, n, 0);
}

int16 BMessage::FindInt16(const char* name, int32 n) const
{
    return value_or<int16>(*this, name, B_INT16_TYPE, n, 0);
}

int32 BMessage::FindInt32(const char* name, int32 n) const
{
    return value_or<int32>(*this, name, B_INT32_TYPE, n, 0);
}

int64 BMessage::FindInt64(const char* name, int32 n) const
{
    return value_or<int64>(*this, name, B_INT64_TYPE, n, 0);
}

bool BMessage::FindBool(const char* name, int32 n) const { return GetBool(name, n, false); }

float BMessage::FindFloat(const char* name, int32 n) const
{
    return value_or<float>(*this, name, B_FLOAT_TYPE, n, 0);
}

double BMessage::FindDouble(const char* name, int32 n) const
{
    return value_or<double>(*this, name, B_DOUBLE_TYPE, n, 0);
}

// Strings. Null adds nothing.

static ssize_t string_size(const char* string)
{
    return string != nullptr ? strlen(string) + 1 : 0;
}

status_t BMessage::AddString(const char* name, const char* string)
{
    return AddData(name, B_STRING_TYPE, string, string_size(string), false);
}

status_t BMessage::AddString(const char* name, const BString& string)
{
    return AddData(name, B_STRING_TYPE, string.String(), string.Length() + 1, false);
}

status_t BMessage::AddStrings(const char* name, const BStringList& list)
{
    for (int32 i = 0; i < list.CountStrings(); ++i) {
        const status_t status = AddString(name, list.StringAt(i));
        if (status != B_OK)
            return status;
    }
    return B_OK;
}

status_t BMessage::FindString(const char* name, const char** string) const
{
    return FindString(name, 0, string);
}

status_t BMessage::FindString(const char* name, int32 index, const char** string) const
{
    const void* data = nullptr;
    if (string == nullptr)
        return B_BAD_VALUE;
    const status_t status = FindData(name, B_STRING_TYPE, index, &data, nullptr);
    *string = static_cast<const char*>(data);
    return status;
}

status_t BMessage::FindString(const char* name, BString* string) const
{
    return FindString(name, 0, string);
}

status_t BMessage::FindString(const char* name, int32 index, BString* string) const
{
    const char* found;
    if (string == nullptr)
        return B_BAD_VALUE;
    const status_t status = FindString(name, index, &found);
    if (status == B_OK)
        string->SetTo(found);
    return status;
}

status_t BMessage::FindStrings(const char* name, BStringList* list) const
{
    if (list == nullptr)
        return B_BAD_VALUE;
    list->MakeEmpty();
    const char* string;
    status_t status = FindString(name, 0, &string);
    if (status != B_OK)
        return status;
    for (int32 i = 0; FindString(name, i, &string) == B_OK; ++i) {
        if (!list->Add(string))
            return B_NO_MEMORY;
    }
    return B_OK;
}

status_t BMessage::ReplaceString(const char* name, const char* string)
{
    return ReplaceString(name, 0, string);
}

status_t BMessage::ReplaceString(const char* name, int32 index, const char* string)
{
    return ReplaceData(name, B_STRING_TYPE, index, string, string_size(string));
}

status_t BMessage::ReplaceString(const char* name, const BString& string)
{
    return ReplaceString(name, 0, string);
}

status_t BMessage::ReplaceString(const char* name, int32 index, const BString& string)
{
    return ReplaceData(name, B_STRING_TYPE, index, string.String(), string.Length() + 1);
}

bool BMessage::HasString(const char* name, int32 n) const
{
    return HasData(name, B_STRING_TYPE, n);
}

const char* BMessage::GetString(const char* name, const char* defaultValue) const
{
    return GetString(name, 0, defaultValue);
}

const char* BMessage::GetString(const char* name, int32 index, const char* defaultValue) const
{
    const char* string;
    return FindString(name, index, &string) == B_OK ? string : defaultValue;
}

status_t BMessage::SetString(const char* name, const char* string)
{
    return SetData(name, B_STRING_TYPE, string, string_size(string), false);
}

status_t BMessage::SetString(const char* name, const BString& string)
{
    return SetData(name, B_STRING_TYPE, string.String(), string.Length() + 1, false);
}

// Pointers mean something to this process only.

status_t BMessage::AddPointer(const char* name, const void* pointer)
{
    return AddData(name, B_POINTER_TYPE, &pointer, sizeof(pointer), true);
}

status_t BMessage::FindPointer(const char* name, void** pointer) const
{
    return FindPointer(name, 0, pointer);
}

status_t BMessage::FindPointer(const char* name, int32 index, void** pointer) const
{
    return find_value(*this, name, B_POINTER_TYPE, index, pointer);
}

status_t BMessage::ReplacePointer(const char* name, const void* pointer)
{
    return ReplacePointer(name, 0, pointer);
}

status_t BMessage::ReplacePointer(const char* name, int32 index, const void* pointer)
{
    return ReplaceData(name, B_POINTER_TYPE, index, &pointer, sizeof(pointer));
}

bool BMessage::HasPointer(const char* name, int32 n) const
{
    return HasData(name, B_POINTER_TYPE, n);
}

const void* BMessage::GetPointer(const char* name, int32 index, const void* defaultValue) const
{
    return value_or<const void*>(*this, name, B_POINTER_TYPE, index, defaultValue);
}

const void* BMessage::GetPointer(const char* name, const void* defaultValue) const
{
    return GetPointer(name, 0, defaultValue);
}

status_t BMessage::SetPointer(const char* name, const void* value)
{
    return SetData(name, B_POINTER_TYPE, &value, sizeof(value));
}

// Messengers travel as their three numbers.

struct FlatMessenger {
    int32 team, looper, handler;
};

status_t BMessage::AddMessenger(const char* name, BMessenger messenger)
{
    const FlatMessenger flat = {messenger.fTeam, messenger.fLooper, messenger.fHandler};
    return AddData(name, B_MESSENGER_TYPE, &flat, sizeof(flat), true);
}

status_t BMessage::FindMessenger(const char* name, BMessenger* messenger) const
{
    return FindMessenger(name, 0, messenger);
}

status_t BMessage::FindMessenger(const char* name, int32 index, BMessenger* messenger) const
{
    FlatMessenger flat;
    if (messenger == nullptr)
        return B_BAD_VALUE;
    const status_t status = find_value(*this, name, B_MESSENGER_TYPE, index, &flat);
    *messenger = status == B_OK
                     ? BMessenger(BMessenger::Address{flat.team, flat.looper, flat.handler})
                     : BMessenger();
    return status;
}

status_t BMessage::ReplaceMessenger(const char* name, BMessenger messenger)
{
    return ReplaceMessenger(name, 0, messenger);
}

status_t BMessage::ReplaceMessenger(const char* name, int32 index, BMessenger messenger)
{
    const FlatMessenger flat = {messenger.fTeam, messenger.fLooper, messenger.fHandler};
    return ReplaceData(name, B_MESSENGER_TYPE, index, &flat, sizeof(flat));
}

bool BMessage::HasMessenger(const char* name, int32 n) const
{
    return HasData(name, B_MESSENGER_TYPE, n);
}

// A ref is device and directory, 8 bytes each, and the name with its terminator, if it has one;
// then the path of the directory, also ended, where it is known: the host finds no directory by its
// number for another program that has not met it.

static std::vector<char> flat_ref(const entry_ref& ref)
{
    const uint64 numbers[2] = {static_cast<uint64>(ref.device), static_cast<uint64>(ref.directory)};
    const size_t name = ref.name != nullptr ? strlen(ref.name) + 1 : 0;
    std::string folder;
    if (name > 0)
        folder = storage::known_directory_path(ref.device, ref.directory);
    const size_t path = folder.empty() ? 0 : folder.size() + 1;
    std::vector<char> flat(sizeof(numbers) + name + path);
    memcpy(flat.data(), numbers, sizeof(numbers));
    if (name > 0)
        memcpy(flat.data() + sizeof(numbers), ref.name, name);
    if (path > 0)
        memcpy(flat.data() + sizeof(numbers) + name, folder.c_str(), path);
    return flat;
}

status_t BMessage::AddRef(const char* name, const entry_ref* ref)
{
    if (ref == nullptr)
        return B_BAD_VALUE;
    const std::vector<char> flat = flat_ref(*ref);
    return AddData(name, B_REF_TYPE, flat.data(), flat.size(), false);
}

status_t BMessage::FindRef(const char* name, entry_ref* ref) const { return FindRef(name, 0, ref); }

status_t BMessage::FindRef(const char* name, int32 index, entry_ref* ref) const
{
    if (ref == nullptr)
        return B_BAD_VALUE;
    const void* data;
    ssize_t size;
    const status_t status = FindData(name, B_REF_TYPE, index, &data, &size);
    if (status != B_OK)
        return status;
    uint64 numbers[2];
    // A name without its terminator came from elsewhere.
    const char* ref_name = static_cast<const char*>(data) + sizeof(numbers);
    const ssize_t name_size = size - static_cast<ssize_t>(sizeof(numbers));
    if (name_size < 0 || (name_size > 0 && ref_name[name_size - 1] != '\0'))
        return B_BAD_DATA;
    memcpy(numbers, data, sizeof(numbers));
    ref->device = static_cast<dev_t>(numbers[0]);
    ref->directory = static_cast<ino_t>(numbers[1]);
    if (name_size == 0)
        return ref->set_name(nullptr);
    const ssize_t folder_at = static_cast<ssize_t>(strlen(ref_name)) + 1;
    if (folder_at < name_size)
        storage::learn_directory(ref->device, ref->directory, ref_name + folder_at);
    return ref->set_name(ref_name);
}

status_t BMessage::ReplaceRef(const char* name, const entry_ref* ref)
{
    return ReplaceRef(name, 0, ref);
}

status_t BMessage::ReplaceRef(const char* name, int32 index, const entry_ref* ref)
{
    if (ref == nullptr)
        return B_BAD_VALUE;
    const std::vector<char> flat = flat_ref(*ref);
    return ReplaceData(name, B_REF_TYPE, index, flat.data(), flat.size());
}

bool BMessage::HasRef(const char* name, int32 n) const { return HasData(name, B_REF_TYPE, n); }

struct FlatNodeRef {
    uint64 device, node;
};

status_t BMessage::AddNodeRef(const char* name, const node_ref* ref)
{
    if (ref == nullptr)
        return B_BAD_VALUE;
    const FlatNodeRef flat = {static_cast<uint64>(ref->device), static_cast<uint64>(ref->node)};
    return AddData(name, B_NODE_REF_TYPE, &flat, sizeof(flat), true);
}

status_t BMessage::FindNodeRef(const char* name, node_ref* ref) const
{
    return FindNodeRef(name, 0, ref);
}

status_t BMessage::FindNodeRef(const char* name, int32 index, node_ref* ref) const
{
    FlatNodeRef flat;
    if (ref == nullptr)
        return B_BAD_VALUE;
    const status_t status = find_value(*this, name, B_NODE_REF_TYPE, index, &flat);
    if (status == B_OK)
        *ref = node_ref(static_cast<dev_t>(flat.device), static_cast<ino_t>(flat.node));
    return status;
}

status_t BMessage::ReplaceNodeRef(const char* name, const node_ref* ref)
{
    return ReplaceNodeRef(name, 0, ref);
}

status_t BMessage::ReplaceNodeRef(const char* name, int32 index, const node_ref* ref)
{
    if (ref == nullptr)
        return B_BAD_VALUE;
    const FlatNodeRef flat = {static_cast<uint64>(ref->device), static_cast<uint64>(ref->node)};
    return ReplaceData(name, B_NODE_REF_TYPE, index, &flat, sizeof(flat));
}

bool BMessage::HasNodeRef(const char* name, int32 n) const
{
    return HasData(name, B_NODE_REF_TYPE, n);
}

// Messages, and other objects that know how to become flat.

static status_t flatten_message(const BMessage* message, std::vector<char>& flat)
{
    if (message == nullptr)
        return B_BAD_VALUE;
    try {
        flat.resize(message->FlattenedSize());
    } catch (const std::bad_alloc&) {
        return B_NO_MEMORY;
    }
    return message->Flatten(flat.data(), flat.size());
}

status_t BMessage::AddMessage(const char* name, const BMessage* message)
{
    std::vector<char> flat;
    const status_t status = flatten_message(message, flat);
    return status == B_OK ? AddData(name, B_MESSAGE_TYPE, flat.data(), flat.size(), false) : status;
}

status_t BMessage::FindMessage(const char* name, BMessage* message) const
{
    return FindMessage(name, 0, message);
}

status_t BMessage::FindMessage(const char* name, int32 index, BMessage* message) const
{
    if (message == nullptr)
        return B_BAD_VALUE;
    const void* data;
    ssize_t size;
    const status_t status = FindData(name, B_MESSAGE_TYPE, index, &data, &size);
    return status == B_OK ? message->_Unflatten(data, size) : status;
}

status_t BMessage::ReplaceMessage(const char* name, const BMessage* message)
{
    return ReplaceMessage(name, 0, message);
}

status_t BMessage::ReplaceMessage(const char* name, int32 index, const BMessage* message)
{
    std::vector<char> flat;
    const status_t status = flatten_message(message, flat);
    return status == B_OK ? ReplaceData(name, B_MESSAGE_TYPE, index, flat.data(), flat.size())
                          : status;
}

bool BMessage::HasMessage(const char* name, int32 n) const
{
    return HasData(name, B_MESSAGE_TYPE, n);
}

status_t BMessage::_AddFlat(const char* name, const BFlattenable* object, bool replace, int32 index)
{
    const ssize_t size = object != nullptr ? object->FlattenedSize() : -1;
    if (size < 0)
        return B_BAD_VALUE;
    std::unique_ptr<char[]> flat(new (std::nothrow) char[size + 1]);
    if (flat == nullptr)
        return B_NO_MEMORY;
    const status_t status = object->Flatten(flat.get(), size);
    if (status != B_OK)
        return status;
    if (replace)
        return ReplaceData(name, object->TypeCode(), index, flat.get(), size);
    return AddData(name, object->TypeCode(), flat.get(), size, object->IsFixedSize());
}

status_t BMessage::AddFlat(const char* name, BFlattenable* object, int32)
{
    return _AddFlat(name, object, false, 0);
}

status_t BMessage::AddFlat(const char* name, const BFlattenable* object, int32)
{
    return _AddFlat(name, object, false, 0);
}

status_t BMessage::FindFlat(const char* name, BFlattenable* object) const
{
    return FindFlat(name, 0, object);
}

status_t BMessage::FindFlat(const char* name, int32 index, BFlattenable* object) const
{
    if (object == nullptr)
        return B_BAD_VALUE;
    type_code type;
    status_t status = GetInfo(name, &type);
    if (status != B_OK)
        return status;
    if (!object->AllowsTypeCode(type))
        return B_BAD_TYPE;
    const void* data;
    ssize_t size;
    status = FindData(name, type, index, &data, &size);
    return status == B_OK ? object->Unflatten(type, data, size) : status;
}

status_t BMessage::ReplaceFlat(const char* name, BFlattenable* object)
{
    return _AddFlat(name, object, true, 0);
}

status_t BMessage::ReplaceFlat(const char* name, int32 index, BFlattenable* object)
{
    return _AddFlat(name, object, true, index);
}

bool BMessage::HasFlat(const char* name, const BFlattenable* object) const
{
    return HasFlat(name, 0, object);
}

bool BMessage::HasFlat(const char* name, int32 n, const BFlattenable* object) const
{
    return object != nullptr && HasData(name, object->TypeCode(), n);
}
