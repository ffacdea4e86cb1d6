// The block of memory that holds a message's fields.

#include "app/message/MessageFields.h"

#include <string.h>

#include <algorithm>
#include <memory>

namespace BPrivate {

static const uint32 kFirstCapacity = 496;

static uint32 padded(uint32 size) { return (size + 7) & ~7u; }

// Bytes that a value of variable size takes.
static uint32 slot_size(uint32 size) { return 8 + padded(size + 1); }

static uint32 hash_name(const char* name, uint32* length)
{
    uint32 hash = 2166136261u;
    const char* at = name;
    for (; *at != '\0'; ++at)
        hash = (hash ^ static_cast<uint8>(*at)) * 16777619u;
    *length = static_cast<uint32>(at - name);
    return hash;
}

FieldRecord* find_field(FieldBlock* block, const char* name)
{
    if (block == nullptr)
        return nullptr;
    uint32 length;
    const uint32 hash = hash_name(name, &length);
    FieldRecord* record = first_field(block);
    for (int32 i = block->count; i > 0; --i, record = next_field(record)) {
        if (record->hash == hash && record->name_length == length &&
            memcmp(record->Name(), name, length) == 0)
            return record;
    }
    return nullptr;
}

FieldBlock* copy_fields(const FieldBlock* block)
{
    if (block == nullptr)
        return nullptr;
    auto* copy = static_cast<FieldBlock*>(malloc(sizeof(FieldBlock) + block->used));
    if (copy == nullptr)
        return nullptr;
    memcpy(copy, block, sizeof(FieldBlock) + block->used);
    copy->capacity = block->used;
    return copy;
}

// Makes room for `extra` bytes behind the last record.
static bool reserve(FieldBlock*& block, uint32 extra)
{
    const uint32 used = block != nullptr ? block->used : 0;
    if (extra > kMaxFieldBytes - used)
        return false;
    if (block != nullptr && used + extra <= block->capacity)
        return true;
    const uint32 doubled = block != nullptr ? 2 * std::min(block->capacity, kMaxFieldBytes / 2) : 0;
    const uint32 capacity = std::max({used + extra, doubled, kFirstCapacity});
    auto* grown = static_cast<FieldBlock*>(realloc(block, sizeof(FieldBlock) + capacity));
    if (grown == nullptr)
        return false;
    if (block == nullptr)
        *grown = {};
    grown->capacity = capacity;
    block = grown;
    return true;
}

// Moves all that is behind `record`, which becomes larger by `extra`. Null without memory; the
// record's new place otherwise.
static FieldRecord* widen(FieldBlock*& block, FieldRecord* record, uint32 extra)
{
    const size_t offset = field_offset(block, record);
    if (!reserve(block, extra))
        return nullptr;
    record = field_at(block, offset);
    char* behind = reinterpret_cast<char*>(next_field(record));
    char* end = reinterpret_cast<char*>(first_field(block)) + block->used;
    memmove(behind + extra, behind, end - behind);
    record->size += extra;
    block->used += extra;
    return record;
}

// Sees to it that `extra` more bytes fit behind the record's values.
static FieldRecord* make_room(FieldBlock*& block, FieldRecord* record, uint32 extra)
{
    if (extra > kMaxFieldBytes)
        return nullptr;
    const uint32 room = record->size - record->DataOffset();
    const uint32 needed = padded(record->data_size + extra);
    if (needed <= room)
        return record;
    const bool is_last =
        field_offset(block, record) + record->size == sizeof(FieldBlock) + block->used;
    return widen(block, record, std::max(needed - room, is_last ? 0 : padded(room)));
}

FieldRecord* add_field(FieldBlock*& block, const char* name, type_code type, uint32 item_size)
{
    FieldRecord head = {};
    head.hash = hash_name(name, &head.name_length);
    head.type = type;
    head.item_size = item_size;
    head.size = head.DataOffset();
    if (!reserve(block, head.size))
        return nullptr;
    FieldRecord* record = field_at(block, sizeof(FieldBlock) + block->used);
    *record = head;
    memset(record->Name() + (head.name_length & ~7u), 0, 8);
    memcpy(record->Name(), name, head.name_length);
    block->used += head.size;
    ++block->count;
    return record;
}

static void write_variable(char* slot, const void* data, uint32 size)
{
    const uint64 head = size;
    const uint32 whole = slot_size(size);
    memset(slot + whole - 8, 0, 8);
    memcpy(slot, &head, 8);
    if (size > 0)
        memcpy(slot + 8, data, size);
}

// A copy of `data` if it lies in the block, which may move or be changed under it.
static std::unique_ptr<char[]> keep_safe(const FieldBlock* block, const void*& data, uint32 size)
{
    const auto start = reinterpret_cast<uintptr_t>(block);
    const auto from = reinterpret_cast<uintptr_t>(data);
    if (block == nullptr || from < start || from - start >= sizeof(FieldBlock) + block->capacity)
        return nullptr;
    std::unique_ptr<char[]> copy(new char[size + 1]);
    memcpy(copy.get(), data, size);
    data = copy.get();
    return copy;
}

status_t add_value(FieldBlock*& block, FieldRecord* record, const void* data, uint32 size)
{
    if (record->IsFixed() && size != record->item_size)
        return B_BAD_VALUE;
    if (size > kMaxFieldBytes - 16)
        return B_NO_MEMORY;
    const auto copy = keep_safe(block, data, size);
    const uint32 extra = record->IsFixed() ? size : slot_size(size);
    record = make_room(block, record, extra);
    if (record == nullptr)
        return B_NO_MEMORY;
    char* place = record->Data() + record->data_size;
    if (record->IsFixed())
        memcpy(place, data, size);
    else
        write_variable(place, data, size);
    record->data_size += extra;
    ++record->count;
    return B_OK;
}

static uint64 variable_size(const char* slot)
{
    uint64 size;
    memcpy(&size, slot, 8);
    return size;
}

// The place of a value of variable size.
static const char* slot_at(const FieldRecord* record, int32 index)
{
    const char* slot = record->Data();
    for (; index > 0; --index)
        slot += slot_size(static_cast<uint32>(variable_size(slot)));
    return slot;
}

status_t replace_value(FieldBlock*& block, FieldRecord* record, int32 index, const void* data,
                       uint32 size)
{
    if (record->IsFixed()) {
        if (size != record->item_size)
            return B_BAD_VALUE;
        memmove(record->Data() + static_cast<size_t>(index) * size, data, size);
        return B_OK;
    }
    if (size > kMaxFieldBytes - 16)
        return B_NO_MEMORY;
    const auto copy = keep_safe(block, data, size);
    const uint32 offset = static_cast<uint32>(slot_at(record, index) - record->Data());
    const uint32 before = slot_size(static_cast<uint32>(variable_size(record->Data() + offset)));
    const uint32 after = slot_size(size);
    if (after > before) {
        record = make_room(block, record, after - before);
        if (record == nullptr)
            return B_NO_MEMORY;
    }
    char* slot = record->Data() + offset;
    memmove(slot + after, slot + before, record->data_size - offset - before);
    record->data_size = record->data_size - before + after;
    write_variable(slot, data, size);
    return B_OK;
}

void remove_value(FieldBlock* block, FieldRecord* record, int32 index)
{
    if (record->count == 1) {
        remove_field(block, record);
        return;
    }
    uint32 offset = static_cast<uint32>(index) * record->item_size;
    uint32 size = record->item_size;
    if (!record->IsFixed()) {
        const char* slot = slot_at(record, index);
        offset = static_cast<uint32>(slot - record->Data());
        size = slot_size(static_cast<uint32>(variable_size(slot)));
    }
    char* place = record->Data() + offset;
    memmove(place, place + size, record->data_size - offset - size);
    record->data_size -= size;
    --record->count;
}

void remove_field(FieldBlock* block, FieldRecord* record)
{
    const uint32 size = record->size;
    char* place = reinterpret_cast<char*>(record);
    const char* end = reinterpret_cast<char*>(first_field(block)) + block->used;
    memmove(place, place + size, end - place - size);
    block->used -= size;
    --block->count;
}

status_t rename_field(FieldBlock*& block, FieldRecord* record, const char* name)
{
    uint32 length;
    const uint32 hash = hash_name(name, &length);
    // The name may be one that GetInfo() gave out, and moves along.
    char kept[256];
    memcpy(kept, name, length);
    const uint32 before = record->DataOffset();
    FieldRecord wanted = {};
    wanted.name_length = length;
    const uint32 after = wanted.DataOffset();
    if (after > before) {
        record = widen(block, record, after - before);
        if (record == nullptr)
            return B_NO_MEMORY;
    }
    char* start = reinterpret_cast<char*>(record);
    memmove(start + after, start + before, record->data_size);
    record->name_length = length;
    record->hash = hash;
    memset(record->Name() + (length & ~7u), 0, 8);
    memcpy(record->Name(), kept, length);
    return B_OK;
}

const void* value_at(const FieldRecord* record, int32 index, uint32* size)
{
    if (record->IsFixed()) {
        *size = record->item_size;
        return record->Data() + static_cast<size_t>(index) * record->item_size;
    }
    const char* slot = slot_at(record, index);
    *size = static_cast<uint32>(variable_size(slot));
    return slot + 8;
}

const void* ValueWalk::Next(uint32* size)
{
    if (fLeft-- <= 0)
        return nullptr;
    if (fRecord->IsFixed()) {
        *size = fRecord->item_size;
        const char* value = fNext;
        fNext += fRecord->item_size;
        return value;
    }
    *size = static_cast<uint32>(variable_size(fNext));
    const char* value = fNext + 8;
    fNext += slot_size(*size);
    return value;
}

}  // namespace BPrivate
