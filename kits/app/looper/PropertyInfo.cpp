// Tables of what a class can be asked by scripting messages: matching, and the flat form that
// GetSupportedSuites() sends. The flat form is this kit's own; all numbers are of the host's order.

#include <PropertyInfo.h>

#include <Message.h>
#include <TypeConstants.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <string>
#include <vector>

static const int kMaxCommands = 10;  // entries in the fixed arrays of property_info
static const int kMaxCompounds = 3;
static const int kMaxFields = 5;

BPropertyInfo::BPropertyInfo(property_info* prop, value_info* value, bool freeOnDelete)
    : fProperties(prop), fValues(value), fFreeOnDelete(freeOnDelete), fOwnsNames(false)
{
}

BPropertyInfo::~BPropertyInfo() { _Free(); }

int32 BPropertyInfo::FindMatch(BMessage* msg, int32 index, BMessage*, int32 form, const char* prop,
                               void* data) const
{
    if (prop == nullptr)
        return -1;
    for (int32 i = 0; i < CountProperties(); i++) {
        property_info* info = fProperties + i;
        if (strcmp(info->name, prop) != 0 || !FindSpecifier(form, info) ||
            (msg != nullptr && !FindCommand(msg->what, index, info)))
            continue;
        if (data != nullptr)
            *static_cast<uint32*>(data) = info->extra_data;
        return i;
    }
    return -1;
}

bool BPropertyInfo::IsFixedSize() const { return false; }

type_code BPropertyInfo::TypeCode() const { return B_PROPERTY_INFO_TYPE; }

namespace {

class Writer {
public:
    void Number(uint32 number)
    {
        fBytes.append(reinterpret_cast<const char*>(&number), sizeof(number));
    }
    void Text(const char* text)
    {
        Number(text != nullptr);
        if (text != nullptr)
            fBytes.append(text, strlen(text) + 1);
    }
    const std::string& Bytes() const { return fBytes; }

private:
    std::string fBytes;
};

class Reader {
public:
    Reader(const void* buffer, size_t size) : fAt(static_cast<const char*>(buffer)), fLeft(size) {}

    uint32 Number()
    {
        uint32 number = 0;
        if (fLeft < sizeof(number)) {
            fBad = true;
            return 0;
        }
        memcpy(&number, fAt, sizeof(number));
        _Skip(sizeof(number));
        return number;
    }
    // A copy from malloc(); null if none was written.
    char* Text()
    {
        if (Number() == 0)
            return nullptr;
        const size_t length = strnlen(fAt, fLeft);
        if (length == fLeft) {
            fBad = true;
            return nullptr;
        }
        char* text = strdup(fAt);
        _Skip(length + 1);
        return text;
    }
    // How many entries can follow at most.
    uint32 Count()
    {
        const uint32 count = Number();
        fBad = fBad || count > fLeft / sizeof(uint32);
        return fBad ? 0 : count;
    }
    bool IsBad() const { return fBad; }

private:
    void _Skip(size_t size)
    {
        fAt += size;
        fLeft -= size;
    }

    const char* fAt;
    size_t fLeft;
    bool fBad = false;
};

}  // namespace

static void write_numbers(Writer& out, const uint32* numbers)
{
    for (int i = 0; i < kMaxCommands; i++)
        out.Number(numbers[i]);
}

static void read_numbers(Reader& in, uint32* numbers)
{
    for (int i = 0; i < kMaxCommands; i++)
        numbers[i] = in.Number();
}

static std::string flat_form(const BPropertyInfo& info)
{
    Writer out;
    out.Number(info.CountProperties());
    for (int32 i = 0; i < info.CountProperties(); i++) {
        const property_info& row = info.Properties()[i];
        out.Text(row.name);
        out.Text(row.usage);
        out.Number(row.extra_data);
        write_numbers(out, row.commands);
        write_numbers(out, row.specifiers);
        write_numbers(out, row.types);
        for (const compound_type& compound : row.ctypes) {
            for (const compound_type::field_pair& field : compound.pairs) {
                out.Text(field.name);
                out.Number(field.type);
            }
        }
    }
    out.Number(info.CountValues());
    for (int32 i = 0; i < info.CountValues(); i++) {
        const value_info& row = info.Values()[i];
        out.Text(row.name);
        out.Text(row.usage);
        out.Number(row.value);
        out.Number(row.kind);
        out.Number(row.extra_data);
    }
    return out.Bytes();
}

ssize_t BPropertyInfo::FlattenedSize() const
{
    return static_cast<ssize_t>(flat_form(*this).size());
}

status_t BPropertyInfo::Flatten(void* buffer, ssize_t size) const
{
    const std::string bytes = flat_form(*this);
    if (buffer == nullptr)
        return B_BAD_VALUE;
    if (size < static_cast<ssize_t>(bytes.size()))
        return B_NO_MEMORY;
    memcpy(buffer, bytes.data(), bytes.size());
    return B_OK;
}

bool BPropertyInfo::AllowsTypeCode(type_code code) const { return code == B_PROPERTY_INFO_TYPE; }

// The tables end with an empty row, as those written by hand.
status_t BPropertyInfo::Unflatten(type_code code, const void* buffer, ssize_t size)
{
    if (!AllowsTypeCode(code))
        return B_BAD_TYPE;
    if (buffer == nullptr || size < 0)
        return B_BAD_VALUE;
    _Free();
    Reader in(buffer, size);
    const uint32 properties = in.Count();
    fProperties = static_cast<property_info*>(calloc(properties + 1, sizeof(property_info)));
    fFreeOnDelete = true;
    fOwnsNames = true;
    for (uint32 i = 0; fProperties != nullptr && i < properties && !in.IsBad(); i++) {
        property_info& row = fProperties[i];
        row.name = in.Text();
        row.usage = in.Text();
        row.extra_data = in.Number();
        read_numbers(in, row.commands);
        read_numbers(in, row.specifiers);
        read_numbers(in, row.types);
        for (int compound = 0; compound < kMaxCompounds; compound++) {
            for (int field = 0; field < kMaxFields; field++) {
                row.ctypes[compound].pairs[field].name = in.Text();
                row.ctypes[compound].pairs[field].type = in.Number();
            }
        }
    }
    const uint32 values = in.Count();
    fValues = static_cast<value_info*>(calloc(values + 1, sizeof(value_info)));
    for (uint32 i = 0; fValues != nullptr && i < values && !in.IsBad(); i++) {
        value_info& row = fValues[i];
        row.name = in.Text();
        row.usage = in.Text();
        row.value = in.Number();
        row.kind = static_cast<value_kind>(in.Number());
        row.extra_data = in.Number();
    }
    if (!in.IsBad() && fProperties != nullptr && fValues != nullptr)
        return B_OK;
    _Free();
    return B_BAD_VALUE;
}

const property_info* BPropertyInfo::Properties() const { return fProperties; }

const value_info* BPropertyInfo::Values() const { return fValues; }

int32 BPropertyInfo::CountProperties() const
{
    int32 count = 0;
    while (fProperties != nullptr && fProperties[count].name != nullptr)
        count++;
    return count;
}

int32 BPropertyInfo::CountValues() const
{
    int32 count = 0;
    while (fValues != nullptr && fValues[count].name != nullptr)
        count++;
    return count;
}

static void print_codes(const char* label, const uint32* codes)
{
    printf("    %s:", label);
    for (int i = 0; i < kMaxCommands && codes[i] != 0; i++)
        printf(" 0x%08x", codes[i]);
    printf("\n");
}

void BPropertyInfo::PrintToStream() const
{
    for (int32 i = 0; i < CountProperties(); i++) {
        const property_info& row = fProperties[i];
        printf("property %s%s%s\n", row.name, row.usage != nullptr ? ": " : "",
               row.usage != nullptr ? row.usage : "");
        print_codes("commands", row.commands);
        print_codes("specifiers", row.specifiers);
        print_codes("types", row.types);
    }
    for (int32 i = 0; i < CountValues(); i++)
        printf("value %s: 0x%08x\n", fValues[i].name, fValues[i].value);
}

static bool holds(const uint32* codes, uint32 code)
{
    for (int i = 0; i < kMaxCommands && codes[i] != 0; i++) {
        if (codes[i] == code)
            return true;
    }
    return false;
}

// A row without commands takes any; one of the commands counts for the last specifier only.
bool BPropertyInfo::FindCommand(uint32 what, int32 index, property_info* info)
{
    return info->commands[0] == 0 || (index == 0 && holds(info->commands, what));
}

bool BPropertyInfo::FindSpecifier(uint32 form, property_info* info)
{
    return info->specifiers[0] == 0 || holds(info->specifiers, form);
}

void BPropertyInfo::_Free()
{
    for (int32 i = 0; fOwnsNames && i < CountProperties(); i++) {
        for (compound_type& compound : fProperties[i].ctypes) {
            for (compound_type::field_pair& field : compound.pairs)
                free(const_cast<char*>(field.name));
        }
        free(const_cast<char*>(fProperties[i].usage));
    }
    for (int32 i = 0; fOwnsNames && i < CountValues(); i++)
        free(const_cast<char*>(fValues[i].usage));
    if (fOwnsNames) {
        for (property_info* row = fProperties; row != nullptr && row->name != nullptr; row++)
            free(const_cast<char*>(row->name));
        for (value_info* row = fValues; row != nullptr && row->name != nullptr; row++)
            free(const_cast<char*>(row->name));
    }
    if (fFreeOnDelete) {
        free(fProperties);
        free(fValues);
    }
    fProperties = nullptr;
    fValues = nullptr;
    fFreeOnDelete = false;
    fOwnsNames = false;
}
