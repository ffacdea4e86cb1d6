// Thread-local words by index.

#include <TLS.h>

#include <atomic>
#include <memory>

static std::atomic<int32> sUsed{0};
static thread_local std::unique_ptr<void*[]> tWords;  // made with the first use

int32 tls_allocate()
{
    int32 index = sUsed.load();
    do {
        if (index == TLS_MAX_KEYS)
            return B_NO_MEMORY;
    } while (!sUsed.compare_exchange_weak(index, index + 1));
    return index;
}

void** tls_address(int32 index)
{
    if (index < 0 || index >= TLS_MAX_KEYS)
        return nullptr;
    if (tWords == nullptr)
        tWords = std::make_unique<void*[]>(TLS_MAX_KEYS);
    return &tWords[index];
}

void* tls_get(int32 index)
{
    void** word = tls_address(index);
    return word != nullptr ? *word : nullptr;
}

void tls_set(int32 index, void* value)
{
    if (void** word = tls_address(index))
        *word = value;
}
