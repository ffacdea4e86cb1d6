#ifndef _STRINGLIST_H
#define _STRINGLIST_H

#include <Flattenable.h>
#include <String.h>
#include <SupportDefs.h>

#include <vector>

/* An array of strings. Adding answers false, and changes nothing, for a bad index or without
   memory. Flattens to the strings with their terminators. One thread at a time. */
class BStringList : public BFlattenable {
public:
    BStringList(int32 count = 20);
    BStringList(const BStringList& other);
    virtual ~BStringList();

    bool Add(const BString& string, int32 index);
    bool Add(const BString& string);
    bool Add(const BStringList& list, int32 index);
    bool Add(const BStringList& list);

    /* By value: every such string; whether there was one. */
    bool Remove(const BString& string, bool ignoreCase = false);
    bool Remove(const BStringList& list, bool ignoreCase = false);
    BString Remove(int32 index);  // returns it
    bool Remove(int32 index, int32 count);
    bool Replace(int32 index, const BString& string);
    void MakeEmpty();

    void Sort(bool ignoreCase = false);
    void Sort(int (*compareFunc)(const char*, const char*, void*), void* context);
    void Sort(int (*compareFunc)(const BString&, const BString&, void*), void* context);
    bool Swap(int32 indexA, int32 indexB);
    bool Move(int32 fromIndex, int32 toIndex);

    BString StringAt(int32 index) const;
    BString First() const;
    BString Last() const;
    bool HasString(const BString& string, bool ignoreCase = false) const;
    int32 IndexOf(const BString& string, bool ignoreCase = false) const;
    int32 CountStrings() const;
    bool IsEmpty() const;
    /* `length` of the separator, -1 for all of it. */
    BString Join(const char* separator, int32 length = -1) const;
    /* Until `func` answers true. */
    void DoForEach(bool (*func)(const BString&));
    void DoForEach(bool (*func)(const BString&, void*), void* arg2);

    BStringList& operator=(const BStringList& other);
    bool operator==(const BStringList& other) const;
    bool operator!=(const BStringList& other) const;

    virtual bool IsFixedSize() const;
    virtual type_code TypeCode() const;
    virtual bool AllowsTypeCode(type_code code) const;
    virtual ssize_t FlattenedSize() const;
    virtual status_t Flatten(void* buffer, ssize_t size) const;
    virtual status_t Unflatten(type_code code, const void* buffer, ssize_t size);

private:
    std::vector<BString> fStrings;
};

#endif  // _STRINGLIST_H
