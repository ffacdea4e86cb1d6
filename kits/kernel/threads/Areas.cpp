// Areas: pages of this process by id. Each is a memory file, so that a clone sees the same pages.

#include <OS.h>

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>

#include <string.h>

#include "kernel/threads/Threads.h"
#include "support/Mutex.h"

using namespace BPrivate;

struct Area {
    area_info info;
    int descriptor;
};

struct AreaTable {
    BPrivate::Mutex lock;
    std::map<area_id, Area> areas GUARDED_BY(lock);
    area_id last GUARDED_BY(lock) = 0;
};

static AreaTable& table()
{
    static AreaTable* const the = new AreaTable;
    return *the;
}

static int host_protection(uint32 protection)
{
    int bits = PROT_NONE;
    if (protection & B_READ_AREA)
        bits |= PROT_READ;
    if (protection & B_WRITE_AREA)
        bits |= PROT_WRITE;
    if (protection & B_EXECUTE_AREA)
        bits |= PROT_EXEC;
    return bits;
}

static bool is_page_multiple(size_t size)
{
    return size > 0 && size % B_PAGE_SIZE == 0 && size <= SIZE_MAX / 2;
}

// Maps the file where `spec` and `*address` want it.
static status_t map_file(int descriptor, size_t size, uint32 protection, uint32 spec,
                         void** address)
{
    const bool exact = spec == B_EXACT_ADDRESS;
    if (exact && reinterpret_cast<uintptr_t>(*address) % B_PAGE_SIZE != 0)
        return B_BAD_VALUE;
    const bool hint = exact || spec == B_BASE_ADDRESS || spec == B_RANDOMIZED_BASE_ADDRESS;
    void* mapped = mmap(hint ? *address : nullptr, size, host_protection(protection),
                        MAP_SHARED | (exact ? MAP_FIXED_NOREPLACE : 0), descriptor, 0);
    if (mapped == MAP_FAILED)
        return B_NO_MEMORY;
    if (exact && mapped != *address) {
        munmap(mapped, size);
        return B_NO_MEMORY;
    }
    *address = mapped;
    return B_OK;
}

// Adopts the descriptor, also when it fails.
static area_id add_area(int descriptor, const char* name, void** address, uint32 spec, size_t size,
                        uint32 lock, uint32 protection)
{
    if (const status_t status = map_file(descriptor, size, protection, spec, address);
        status != B_OK) {
        close(descriptor);
        return status;
    }
    Area area = {};
    copy_name(area.info.name, name, "unnamed area");
    area.info.size = size;
    area.info.lock = lock;
    area.info.protection = protection;
    area.info.team = getpid();
    area.info.ram_size = static_cast<uint32>(size);
    area.info.address = *address;
    area.descriptor = descriptor;
    BPrivate::MutexLock hold(table().lock);
    area.info.area = ++table().last;
    table().areas[area.info.area] = area;
    return area.info.area;
}

area_id create_area(const char* name, void** startAddress, uint32 addressSpec, size_t size,
                    uint32 lock, uint32 protection)
{
    if (startAddress == nullptr || !is_page_multiple(size) || addressSpec == B_CLONE_ADDRESS ||
        addressSpec > B_RANDOMIZED_BASE_ADDRESS)
        return B_BAD_VALUE;
    const int descriptor = memfd_create("area", MFD_CLOEXEC);
    if (descriptor < 0)
        return B_NO_MEMORY;
    if (ftruncate(descriptor, size) != 0) {
        close(descriptor);
        return B_NO_MEMORY;
    }
    return add_area(descriptor, name, startAddress, addressSpec, size, lock, protection);
}

area_id clone_area(const char* name, void** destAddress, uint32 addressSpec, uint32 protection,
                   area_id source)
{
    if (destAddress == nullptr)
        return B_BAD_VALUE;
    area_info info;
    int descriptor;
    {
        BPrivate::MutexLock hold(table().lock);
        const auto found = table().areas.find(source);
        if (found == table().areas.end())
            return B_BAD_VALUE;
        info = found->second.info;
        descriptor = dup(found->second.descriptor);
    }
    if (descriptor < 0)
        return B_NO_MEMORY;
    if (addressSpec == B_CLONE_ADDRESS)
        addressSpec = B_ANY_ADDRESS;  // the source's own address is taken, in the same process
    return add_area(descriptor, name, destAddress, addressSpec, info.size, info.lock, protection);
}

area_id find_area(const char* name)
{
    if (name == nullptr)
        return B_BAD_VALUE;
    BPrivate::MutexLock hold(table().lock);
    for (const auto& [id, area] : table().areas) {
        if (strcmp(area.info.name, name) == 0)
            return id;
    }
    return B_NAME_NOT_FOUND;
}

area_id area_for(void* address)
{
    const auto where = reinterpret_cast<uintptr_t>(address);
    BPrivate::MutexLock hold(table().lock);
    for (const auto& [id, area] : table().areas) {
        const auto start = reinterpret_cast<uintptr_t>(area.info.address);
        if (where >= start && where - start < area.info.size)
            return id;
    }
    return B_ERROR;
}

status_t delete_area(area_id id)
{
    BPrivate::MutexLock hold(table().lock);
    const auto found = table().areas.find(id);
    if (found == table().areas.end())
        return B_BAD_VALUE;
    munmap(found->second.info.address, found->second.info.size);
    close(found->second.descriptor);
    table().areas.erase(found);
    return B_OK;
}

// Whether another area shows the same pages.
static bool has_clones(const Area& area) REQUIRES(table().lock)
{
    struct stat mine, other;
    if (fstat(area.descriptor, &mine) != 0)
        return true;
    for (const auto& [id, each] : table().areas) {
        if (id != area.info.area && fstat(each.descriptor, &other) == 0 &&
            other.st_ino == mine.st_ino)
            return true;
    }
    return false;
}

status_t resize_area(area_id id, size_t newSize)
{
    if (!is_page_multiple(newSize))
        return B_BAD_VALUE;
    BPrivate::MutexLock hold(table().lock);
    const auto found = table().areas.find(id);
    if (found == table().areas.end())
        return B_BAD_VALUE;
    area_info& info = found->second.info;
    struct stat file;
    if (fstat(found->second.descriptor, &file) != 0)
        return B_ERROR;
    if (static_cast<off_t>(newSize) > file.st_size &&
        ftruncate(found->second.descriptor, newSize) != 0)
        return B_NO_MEMORY;
    if (mremap(info.address, info.size, newSize, 0) == MAP_FAILED)
        return B_NO_MEMORY;
    const bool shrinks = newSize < info.size;
    info.size = newSize;
    info.ram_size = static_cast<uint32>(newSize);
    // A file that shrank would pull the pages from under a clone. Without one, what is cut off must
    // not come back when the area grows.
    if (shrinks && !has_clones(found->second) && ftruncate(found->second.descriptor, newSize) != 0)
        return B_ERROR;
    return B_OK;
}

status_t set_area_protection(area_id id, uint32 newProtection)
{
    BPrivate::MutexLock hold(table().lock);
    const auto found = table().areas.find(id);
    if (found == table().areas.end())
        return B_BAD_VALUE;
    area_info& info = found->second.info;
    if (mprotect(info.address, info.size, host_protection(newProtection)) != 0)
        return B_NOT_ALLOWED;
    info.protection = newProtection;
    return B_OK;
}

status_t _get_area_info(area_id id, area_info* areaInfo, size_t size)
{
    if (areaInfo == nullptr || size != sizeof(area_info))
        return B_BAD_VALUE;
    BPrivate::MutexLock hold(table().lock);
    const auto found = table().areas.find(id);
    if (found == table().areas.end())
        return B_BAD_VALUE;
    *areaInfo = found->second.info;
    return B_OK;
}

status_t _get_next_area_info(team_id team, ssize_t* cookie, area_info* areaInfo, size_t size)
{
    if (cookie == nullptr || areaInfo == nullptr || size != sizeof(area_info))
        return B_BAD_VALUE;
    if (team != B_CURRENT_TEAM && team != getpid())
        return B_BAD_TEAM_ID;
    BPrivate::MutexLock hold(table().lock);
    const auto next = table().areas.upper_bound(static_cast<area_id>(*cookie));
    if (next == table().areas.end())
        return B_BAD_VALUE;
    *cookie = next->first;
    *areaInfo = next->second.info;
    return B_OK;
}
