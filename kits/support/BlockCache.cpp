// BBlockCache: a chain of free blocks.

#include <BlockCache.h>

#include <stdlib.h>

#include <algorithm>
#include <new>

#include "support/RecursiveLock.h"

using BPrivate::RecursiveLock;

struct BBlockCache::FreeBlock {
    FreeBlock* next;
};

class CacheLock {
public:
    explicit CacheLock(unsigned char* bytes)
        : fLock(*std::launder(reinterpret_cast<RecursiveLock*>(bytes)))
    {
        fLock.Lock();
    }
    ~CacheLock() { fLock.Unlock(); }
    CacheLock(const CacheLock&) = delete;

private:
    RecursiveLock& fLock;
};

BBlockCache::BBlockCache(uint32 blockCount, size_t blockSize, uint32 allocationType)
    : fFree(nullptr),
      fCount(0),
      fLimit(blockCount),
      fBlockSize(std::max(blockSize, sizeof(FreeBlock))),
      fMalloc(allocationType == B_MALLOC_CACHE)
{
    static_assert(sizeof(RecursiveLock) <= sizeof(fLock));
    new (fLock) RecursiveLock;
}

BBlockCache::~BBlockCache()
{
    while (fFree != nullptr) {
        FreeBlock* block = fFree;
        fFree = block->next;
        _Free(block);
    }
}

void* BBlockCache::Get(size_t blockSize)
{
    if (std::max(blockSize, sizeof(FreeBlock)) == fBlockSize) {
        CacheLock hold(fLock);
        if (FreeBlock* block = fFree) {
            fFree = block->next;
            --fCount;
            return block;
        }
    }
    return _Allocate(std::max(blockSize, sizeof(FreeBlock)));
}

void BBlockCache::Save(void* pointer, size_t blockSize)
{
    if (pointer == nullptr)
        return;
    if (std::max(blockSize, sizeof(FreeBlock)) == fBlockSize) {
        CacheLock hold(fLock);
        if (fCount < fLimit) {
            fFree = new (pointer) FreeBlock{fFree};
            ++fCount;
            return;
        }
    }
    _Free(pointer);
}

void* BBlockCache::_Allocate(size_t size) const
{
    return fMalloc ? malloc(size) : static_cast<void*>(new (std::nothrow) char[size]);
}

void BBlockCache::_Free(void* pointer) const
{
    if (fMalloc)
        free(pointer);
    else
        delete[] static_cast<char*>(pointer);
}
