#ifndef _BLOCKCACHE_H
#define _BLOCKCACHE_H

#include <SupportDefs.h>

enum {
    B_OBJECT_CACHE = 0,  // blocks come from operator new[]
    B_MALLOC_CACHE = 1   // and from malloc()
};

/* Keeps some blocks of one size at hand. Any thread. */
class BBlockCache {
public:
    BBlockCache(uint32 blockCount, size_t blockSize, uint32 allocationType);
    virtual ~BBlockCache();

    void* Get(size_t blockSize);  // a block of another size is simply allocated
    void Save(void* pointer, size_t blockSize);

private:
    BBlockCache(const BBlockCache&) = delete;
    BBlockCache& operator=(const BBlockCache&) = delete;

    struct FreeBlock;

    void* _Allocate(size_t size) const;
    void _Free(void* pointer) const;

    FreeBlock* fFree;
    uint32 fCount;
    uint32 fLimit;
    size_t fBlockSize;
    bool fMalloc;
    alignas(8) unsigned char fLock[32];
};

#endif  // _BLOCKCACHE_H
