// BStringList: an array of strings.

#include <StringList.h>

#include <TypeConstants.h>

#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <limits>
#include <new>
#include <stdexcept>
#include <utility>

static bool is_same(const BString& a, const BString& b, bool ignoreCase)
{
    return ignoreCase ? a.ICompare(b) == 0 : a == b;
}

BStringList::BStringList(int32 count)
{
    if (count > 0)
        fStrings.reserve(std::min(count, 1024));
}

BStringList::BStringList(const BStringList& other) : BFlattenable(other), fStrings(other.fStrings)
{
}

BStringList::~BStringList() {}

bool BStringList::Add(const BString& string, int32 index)
{
    if (index < 0 || index > CountStrings() || CountStrings() == std::numeric_limits<int32>::max())
        return false;
    try {
        fStrings.insert(fStrings.begin() + index, BString(string));
    } catch (const std::exception&) {
        return false;
    }
    return true;
}

bool BStringList::Add(const BString& string) { return Add(string, CountStrings()); }

bool BStringList::Add(const BStringList& list, int32 index)
{
    if (index < 0 || index > CountStrings() ||
        list.CountStrings() > std::numeric_limits<int32>::max() - CountStrings())
        return false;
    try {
        const std::vector<BString> copy = list.fStrings;  // it may be this one
        fStrings.insert(fStrings.begin() + index, copy.begin(), copy.end());
    } catch (const std::exception&) {
        return false;
    }
    return true;
}

bool BStringList::Add(const BStringList& list) { return Add(list, CountStrings()); }

bool BStringList::Remove(const BString& string, bool ignoreCase)
{
    const BString wanted(string);  // it may be in the list
    return std::erase_if(fStrings, [&](const BString& each) {
               return is_same(each, wanted, ignoreCase);
           }) > 0;
}

bool BStringList::Remove(const BStringList& list, bool ignoreCase)
{
    const BStringList wanted(list);
    return std::erase_if(fStrings, [&](const BString& each) {
               return wanted.HasString(each, ignoreCase);
           }) > 0;
}

BString BStringList::Remove(int32 index)
{
    const BString removed = StringAt(index);
    Remove(index, 1);
    return removed;
}

bool BStringList::Remove(int32 index, int32 count)
{
    if (index < 0 || index > CountStrings() || count < 0)
        return false;
    const auto first = fStrings.begin() + index;
    fStrings.erase(first, first + std::min(count, CountStrings() - index));
    return true;
}

bool BStringList::Replace(int32 index, const BString& string)
{
    if (index < 0 || index >= CountStrings())
        return false;
    fStrings[index] = string;
    return true;
}

void BStringList::MakeEmpty() { fStrings.clear(); }

void BStringList::Sort(bool ignoreCase)
{
    std::stable_sort(fStrings.begin(), fStrings.end(), [=](const BString& a, const BString& b) {
        return (ignoreCase ? a.ICompare(b) : a.Compare(b)) < 0;
    });
}

// Sorts with a function of the program, whose answers need not make sense: qsort() bears that.
template <class Compare>
static void sort_with(std::vector<BString>& strings, Compare compare)
{
    std::vector<const BString*> order;
    for (const BString& string : strings)
        order.push_back(&string);
    const auto call = [](const void* a, const void* b, void* compare) {
        return (*static_cast<Compare*>(compare))(**static_cast<const BString* const*>(a),
                                                 **static_cast<const BString* const*>(b));
    };
    qsort_r(order.data(), order.size(), sizeof(order[0]), call, &compare);
    std::vector<BString> sorted;
    for (const BString* string : order)
        sorted.push_back(*string);
    strings = std::move(sorted);
}

void BStringList::Sort(int (*compareFunc)(const char*, const char*, void*), void* context)
{
    if (compareFunc == nullptr)
        return;
    sort_with(fStrings, [=](const BString& a, const BString& b) {
        return compareFunc(a.String(), b.String(), context);
    });
}

void BStringList::Sort(int (*compareFunc)(const BString&, const BString&, void*), void* context)
{
    if (compareFunc == nullptr)
        return;
    sort_with(fStrings,
              [=](const BString& a, const BString& b) { return compareFunc(a, b, context); });
}

bool BStringList::Swap(int32 indexA, int32 indexB)
{
    if (indexA < 0 || indexA >= CountStrings() || indexB < 0 || indexB >= CountStrings())
        return false;
    std::swap(fStrings[indexA], fStrings[indexB]);
    return true;
}

bool BStringList::Move(int32 fromIndex, int32 toIndex)
{
    if (fromIndex < 0 || fromIndex >= CountStrings() || toIndex < 0 || toIndex >= CountStrings())
        return false;
    const auto first = fStrings.begin() + std::min(fromIndex, toIndex);
    const auto last = fStrings.begin() + std::max(fromIndex, toIndex) + 1;
    std::rotate(first, fromIndex < toIndex ? first + 1 : last - 1, last);
    return true;
}

BString BStringList::StringAt(int32 index) const
{
    return index >= 0 && index < CountStrings() ? fStrings[index] : BString();
}

BString BStringList::First() const { return StringAt(0); }

BString BStringList::Last() const { return StringAt(CountStrings() - 1); }

bool BStringList::HasString(const BString& string, bool ignoreCase) const
{
    return IndexOf(string, ignoreCase) >= 0;
}

int32 BStringList::IndexOf(const BString& string, bool ignoreCase) const
{
    const auto found = std::find_if(fStrings.begin(), fStrings.end(), [&](const BString& each) {
        return is_same(each, string, ignoreCase);
    });
    return found != fStrings.end() ? static_cast<int32>(found - fStrings.begin()) : -1;
}

int32 BStringList::CountStrings() const { return static_cast<int32>(fStrings.size()); }

bool BStringList::IsEmpty() const { return fStrings.empty(); }

BString BStringList::Join(const char* separator, int32 length) const
{
    const BString between(separator, length < 0 ? std::numeric_limits<int32>::max() : length);
    BString joined;
    for (int32 i = 0; i < CountStrings(); ++i) {
        if (i > 0)
            joined += between;
        joined += fStrings[i];
    }
    return joined;
}

void BStringList::DoForEach(bool (*func)(const BString&))
{
    for (int32 i = 0; func != nullptr && i < CountStrings(); ++i) {
        if (func(fStrings[i]))
            return;
    }
}

void BStringList::DoForEach(bool (*func)(const BString&, void*), void* arg2)
{
    for (int32 i = 0; func != nullptr && i < CountStrings(); ++i) {
        if (func(fStrings[i], arg2))
            return;
    }
}

BStringList& BStringList::operator=(const BStringList& other)
{
    fStrings = other.fStrings;
    return *this;
}

bool BStringList::operator==(const BStringList& other) const { return fStrings == other.fStrings; }

bool BStringList::operator!=(const BStringList& other) const { return !(*this == other); }

bool BStringList::IsFixedSize() const { return false; }

type_code BStringList::TypeCode() const { return B_STRING_LIST_TYPE; }

bool BStringList::AllowsTypeCode(type_code code) const { return code == B_STRING_LIST_TYPE; }

ssize_t BStringList::FlattenedSize() const
{
    ssize_t size = 0;
    for (const BString& string : fStrings)
        size += strlen(string.String()) + 1;
    return size;
}

status_t BStringList::Flatten(void* buffer, ssize_t size) const
{
    if (buffer == nullptr)
        return B_BAD_VALUE;
    if (size < FlattenedSize())
        return B_NO_MEMORY;
    char* to = static_cast<char*>(buffer);
    for (const BString& string : fStrings)
        to = stpcpy(to, string.String()) + 1;
    return B_OK;
}

status_t BStringList::Unflatten(type_code code, const void* buffer, ssize_t size)
{
    if (code != B_STRING_LIST_TYPE || buffer == nullptr || size < 0)
        return B_BAD_VALUE;
    const char* from = static_cast<const char*>(buffer);
    // The last string has to end inside.
    if (size > 0 && from[size - 1] != '\0')
        return B_BAD_VALUE;
    MakeEmpty();
    for (const char* end = from + size; from < end; from += strlen(from) + 1) {
        if (!Add(from))
            return B_NO_MEMORY;
    }
    return B_OK;
}
