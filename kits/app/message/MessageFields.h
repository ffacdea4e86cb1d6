#ifndef APP_MESSAGE_FIELDS_H
#define APP_MESSAGE_FIELDS_H

// The fields of a message: records one behind the other in one block of memory, so that a message
// is copied, and freed, in one piece. A field that grows in the middle gets room to spare.

#include <SupportDefs.h>

#include <stdlib.h>

namespace [[gnu::visibility("hidden")]] BPrivate {

struct FieldBlock {
    uint32 capacity;  // bytes behind this head
    uint32 used;
    int32 count;  // of fields
    uint32 unused;
};

// Then follow the name with its terminator, padded, and the values. A value of variable size
// has its size in front, 8 bytes, and at least one zero byte behind; everything starts at a
// multiple of 8.
struct FieldRecord {
    uint32 size;  // from this record to the next
    type_code type;
    uint32 hash;  // of the name
    uint32 name_length;
    int32 count;       // of values
    uint32 item_size;  // kVariable, or that of each value
    uint32 data_size;  // bytes of values
    uint32 unused;

    char* Name() { return reinterpret_cast<char*>(this + 1); }
    const char* Name() const { return reinterpret_cast<const char*>(this + 1); }
    uint32 DataOffset() const { return sizeof(FieldRecord) + ((name_length + 8) & ~7u); }
    char* Data() { return reinterpret_cast<char*>(this) + DataOffset(); }
    const char* Data() const { return reinterpret_cast<const char*>(this) + DataOffset(); }
    bool IsFixed() const;
};

enum : uint32 {
    kVariable = 0xFFFFFFFF,
    kMaxFieldBytes = 1u << 30,  // of all fields of a message
};

inline bool FieldRecord::IsFixed() const { return item_size != kVariable; }

inline FieldRecord* first_field(FieldBlock* block)
{
    return reinterpret_cast<FieldRecord*>(block + 1);
}

inline FieldRecord* next_field(FieldRecord* record)
{
    return reinterpret_cast<FieldRecord*>(reinterpret_cast<char*>(record) + record->size);
}

// Walks the fields of a block, which may be null.
class FieldWalk {
public:
    explicit FieldWalk(FieldBlock* block)
        : fLeft(block != nullptr ? block->count : 0),
          fNext(block != nullptr ? first_field(block) : nullptr)
    {
    }

    FieldRecord* Next()
    {
        if (fLeft-- <= 0)
            return nullptr;
        FieldRecord* record = fNext;
        fNext = next_field(record);
        return record;
    }

private:
    int32 fLeft;
    FieldRecord* fNext;
};

FieldRecord* find_field(FieldBlock* block, const char* name);
FieldBlock* copy_fields(const FieldBlock* block);  // null for null, and without memory

// Places that stay when the block moves, for those who add to one field again and again.
inline size_t field_offset(const FieldBlock* block, const FieldRecord* record)
{
    return reinterpret_cast<const char*>(record) - reinterpret_cast<const char*>(block);
}

inline FieldRecord* field_at(FieldBlock* block, size_t offset)
{
    return reinterpret_cast<FieldRecord*>(reinterpret_cast<char*>(block) + offset);
}

// Adds an empty field, whose name is not there; null without memory.
FieldRecord* add_field(FieldBlock*& block, const char* name, type_code type, uint32 item_size);
// Adds one value, which may lie in the block itself.
status_t add_value(FieldBlock*& block, FieldRecord* record, const void* data, uint32 size);
status_t replace_value(FieldBlock*& block, FieldRecord* record, int32 index, const void* data,
                       uint32 size);
// Removes the field with its last value.
void remove_value(FieldBlock* block, FieldRecord* record, int32 index);
void remove_field(FieldBlock* block, FieldRecord* record);
status_t rename_field(FieldBlock*& block, FieldRecord* record, const char* name);

// The value at an index that is there.
const void* value_at(const FieldRecord* record, int32 index, uint32* size);

// Walks the values of a field.
class ValueWalk {
public:
    explicit ValueWalk(const FieldRecord* record)
        : fRecord(record), fNext(record->Data()), fLeft(record->count)
    {
    }

    const void* Next(uint32* size);

private:
    const FieldRecord* fRecord;
    const char* fNext;
    int32 fLeft;
};

}  // namespace BPrivate

#endif  // APP_MESSAGE_FIELDS_H
