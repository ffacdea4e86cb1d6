#ifndef _PROPERTYINFO_H
#define _PROPERTYINFO_H

#include <Flattenable.h>
#include <SupportDefs.h>
#include <TypeConstants.h>

class BMessage;

enum value_kind { B_COMMAND_KIND = 0, B_TYPE_CODE_KIND = 1 };

struct compound_type {
    struct field_pair {
        const char* name;
        type_code type;
    };
    compound_type::field_pair pairs[5];
};

struct property_info {
    const char* name;
    uint32 commands[10];
    uint32 specifiers[10];
    const char* usage;
    uint32 extra_data;
    uint32 types[10];
    compound_type ctypes[3];
};

struct value_info {
    const char* name;
    uint32 value;
    value_kind kind;
    const char* usage;
    uint32 extra_data;
};

/* What a class understands of scripting messages: a table of properties and one of other codes,
   each ended by an empty row. The tables are used in place; with `freeOnDelete` they come from
   malloc() and are freed. */
class BPropertyInfo : public BFlattenable {
public:
    BPropertyInfo(property_info* prop = nullptr, value_info* value = nullptr,
                  bool freeOnDelete = false);
    virtual ~BPropertyInfo();

    /* Index of the first row that fits, -1 if none does; `data` gets its extra word. */
    virtual int32 FindMatch(BMessage* msg, int32 index, BMessage* specifier, int32 form,
                            const char* prop, void* data = nullptr) const;

    virtual bool IsFixedSize() const;
    virtual type_code TypeCode() const;
    virtual ssize_t FlattenedSize() const;
    virtual status_t Flatten(void* buffer, ssize_t size) const;
    virtual bool AllowsTypeCode(type_code code) const;
    virtual status_t Unflatten(type_code code, const void* buffer, ssize_t size);
    const property_info* Properties() const;
    const value_info* Values() const;
    int32 CountProperties() const;
    int32 CountValues() const;
    void PrintToStream() const;

protected:
    static bool FindCommand(uint32 what, int32 index, property_info* info);
    static bool FindSpecifier(uint32 form, property_info* info);

private:
    BPropertyInfo(const BPropertyInfo&) = delete;
    BPropertyInfo& operator=(const BPropertyInfo&) = delete;

    void _Free();

    property_info* fProperties;  // ended by a row without name, as the values
    value_info* fValues;
    bool fFreeOnDelete;  // the tables come from malloc()
    bool fOwnsNames;     // and so do the texts in them
};

#endif  // _PROPERTYINFO_H
