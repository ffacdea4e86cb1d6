#ifndef _FLATTENABLE_H
#define _FLATTENABLE_H

#include <SupportDefs.h>

/* What can be written to plain bytes and read back. */
class BFlattenable {
public:
    virtual bool IsFixedSize() const = 0;
    virtual type_code TypeCode() const = 0;
    virtual ssize_t FlattenedSize() const = 0;
    /* Writes FlattenedSize() bytes; `size` is the room there is. */
    virtual status_t Flatten(void* buffer, ssize_t size) const = 0;
    virtual bool AllowsTypeCode(type_code code) const;  // by itself: TypeCode() only
    virtual status_t Unflatten(type_code code, const void* buffer, ssize_t size) = 0;
    virtual ~BFlattenable();
};

#endif  // _FLATTENABLE_H
