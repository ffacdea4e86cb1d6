#ifndef _BLOCKCACHE_H
#define _BLOCKCACHE_H

#include <SupportDefs.h>

enum {
    B_OBJECT_CACHE = 0,
    B_MALLOC_CACHE = 1
};

class BBlockCache {
public:
    BBlockCache(uint32 blockCount, size_t blockSize, uint32 allocationType);
    virtual ~BBlockCache();
    void* Get(size_t blockSize);
    void Save(void* pointer, size_t blockSize);

private:
};

#endif  // _BLOCKCACHE_H
