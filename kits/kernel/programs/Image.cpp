// The images of this team, as the host's loader lists them. Any thread.
//
// An image has its id from when it is first seen until it is found gone. What is read of its
// memory is read while the loader is kept from unmapping it.

#include <image.h>

#include <dlfcn.h>
#include <elf.h>
#include <errno.h>
#include <link.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "support/HostErrors.h"
#include "support/Mutex.h"

namespace {

// One of the loader's list; valid during for_each_loaded().
struct Loaded {
    ElfW(Addr) base;
    const char* name;  // "" for the program
    const ElfW(Phdr) * headers;
    int header_count;
};

struct Image {
    image_id id;
    ElfW(Addr) base;
    std::string name;
};

struct AddOn {
    void* handle;
    int32 count;  // of load_add_on()
};

struct Images {
    BPrivate::Mutex lock;
    image_id last_id GUARDED_BY(lock) = 0;
    std::vector<Image> all GUARDED_BY(lock);  // in the order of loading
    std::map<image_id, AddOn> add_ons GUARDED_BY(lock);
};

struct Symbol {
    const char* name;
    int32 type;
    void* address;
};

}  // namespace

// Never destroyed: destructors of others may still ask.
static Images& images()
{
    static Images* const the = new Images;
    return *the;
}

// Until `act` answers false.
static void for_each_loaded(const std::function<bool(const Loaded&)>& act)
{
    const auto step = [](dl_phdr_info* info, size_t, void* data) {
        const Loaded loaded = {info->dlpi_addr, info->dlpi_name, info->dlpi_phdr, info->dlpi_phnum};
        return (*static_cast<const std::function<bool(const Loaded&)>*>(data))(loaded) ? 0 : 1;
    };
    dl_iterate_phdr(step, const_cast<std::function<bool(const Loaded&)>*>(&act));
}

// Brings the list up to date.
static void refresh(Images& list) REQUIRES(list.lock)
{
    std::vector<Image> present;
    for_each_loaded([&](const Loaded& loaded) REQUIRES(list.lock) {
        const auto known = std::find_if(list.all.begin(), list.all.end(), [&](const Image& image) {
            return image.base == loaded.base && image.name == loaded.name;
        });
        const image_id id = known != list.all.end() ? known->id : ++list.last_id;
        present.push_back({id, loaded.base, loaded.name});
        return true;
    });
    list.all = std::move(present);
}

// The index of an image in the list, -1 if there is none.
static int32 index_of(Images& list, image_id id) REQUIRES(list.lock)
{
    refresh(list);
    for (size_t i = 0; i < list.all.size(); ++i) {
        if (list.all[i].id == id)
            return static_cast<int32>(i);
    }
    return -1;
}

// Calls `act` with the image while it can not go. False if there is none.
static bool with_image(image_id id, const std::function<void(const Loaded&)>& act)
{
    Images& list = images();
    BPrivate::MutexLock hold(list.lock);
    const int32 index = index_of(list, id);
    if (index < 0)
        return false;
    const Image& image = list.all[index];
    bool found = false;
    for_each_loaded([&](const Loaded& loaded) {
        found = loaded.base == image.base && image.name == loaded.name;
        if (found)
            act(loaded);
        return !found;
    });
    return found;
}

static void fill_segments(const Loaded& loaded, image_info* info)
{
    for (int i = 0; i < loaded.header_count; ++i) {
        const ElfW(Phdr)& header = loaded.headers[i];
        if (header.p_type != PT_LOAD)
            continue;
        void* address = reinterpret_cast<void*>(loaded.base + header.p_vaddr);
        const int32 size = static_cast<int32>(std::min<size_t>(header.p_memsz, INT32_MAX));
        if ((header.p_flags & PF_X) != 0) {
            info->text = address;
            info->text_size = size;
        } else if ((header.p_flags & PF_W) != 0) {
            info->data = address;
            info->data_size = size;
        }
    }
}

static void fill_file(const std::string& name, image_info* info)
{
    char path[sizeof(info->name)] = {};
    if (!name.empty())
        name.copy(path, sizeof(path) - 1);
    else if (readlink("/proc/self/exe", path, sizeof(path) - 1) < 0)
        path[0] = '\0';
    memcpy(info->name, path, sizeof(path));
    info->device = static_cast<dev_t>(-1);
    info->node = static_cast<ino_t>(-1);
    struct stat file;
    if (stat(path, &file) == 0) {
        info->device = file.st_dev;
        info->node = file.st_ino;
    }
}

static status_t fill_info(Images& list, int32 index, image_info* info) REQUIRES(list.lock)
{
    const Image& image = list.all[index];
    *info = {};
    info->id = image.id;
    info->sequence = index + 1;
    info->init_order = index;
    fill_file(image.name, info);
    info->type = index == 0                             ? B_APP_IMAGE
                 : list.add_ons.contains(image.id)      ? B_ADD_ON_IMAGE
                 : info->node == static_cast<ino_t>(-1) ? B_SYSTEM_IMAGE
                                                        : B_LIBRARY_IMAGE;
    for_each_loaded([&](const Loaded& loaded) {
        const bool found = loaded.base == image.base && image.name == loaded.name;
        if (found)
            fill_segments(loaded, info);
        return !found;
    });
    return B_OK;
}

status_t _get_image_info(image_id image, image_info* info, size_t size)
{
    if (info == nullptr || size != sizeof(image_info))
        return B_BAD_VALUE;
    Images& list = images();
    BPrivate::MutexLock hold(list.lock);
    const int32 index = index_of(list, image);
    return index >= 0 ? fill_info(list, index, info) : B_BAD_IMAGE_ID;
}

// The cookie is the id that was told of last; ids rise in the list but where a library went and
// another came.
status_t _get_next_image_info(team_id team, int32* cookie, image_info* info, size_t size)
{
    if (cookie == nullptr || info == nullptr || size != sizeof(image_info))
        return B_BAD_VALUE;
    if (team != B_CURRENT_TEAM && team != getpid())
        return B_BAD_TEAM_ID;
    Images& list = images();
    BPrivate::MutexLock hold(list.lock);
    refresh(list);
    int32 next = -1;
    for (size_t i = 0; i < list.all.size(); ++i) {
        if (list.all[i].id > *cookie && (next < 0 || list.all[i].id < list.all[next].id))
            next = static_cast<int32>(i);
    }
    if (next < 0)
        return B_BAD_VALUE;
    *cookie = list.all[next].id;
    return fill_info(list, next, info);
}

static void call_hook(image_id image, const char* name)
{
    void* address;
    if (get_image_symbol(image, name, B_SYMBOL_TYPE_TEXT, &address) == B_OK)
        reinterpret_cast<void (*)(image_id)>(address)(image);
}

// B_OK for a file that the loader may be asked to map.
static status_t check_add_on(const char* path)
{
    FILE* file = fopen(path, "re");
    if (file == nullptr)
        return BPrivate::host_failure();
    char magic[SELFMAG];
    const bool is_elf =
        fread(magic, 1, SELFMAG, file) == SELFMAG && memcmp(magic, ELFMAG, SELFMAG) == 0;
    fclose(file);
    return is_elf ? B_OK : BPrivate::fail(ENOEXEC);
}

// The id of what a handle stands for. With the lock held.
static image_id id_of_handle(Images& list, void* handle) REQUIRES(list.lock)
{
    link_map* map = nullptr;
    if (dlinfo(handle, RTLD_DI_LINKMAP, &map) != 0 || map == nullptr)
        return B_ERROR;
    refresh(list);
    for (const Image& image : list.all) {
        if (image.base == map->l_addr && image.name == map->l_name)
            return image.id;
    }
    return B_ERROR;
}

image_id load_add_on(const char* path)
{
    if (path == nullptr)
        return B_BAD_VALUE;
    if (status_t status = check_add_on(path); status != B_OK)
        return status;
    const std::string from_here = strchr(path, '/') != nullptr ? path : std::string("./") + path;
    void* handle = dlopen(from_here.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* reason = dlerror();
        return reason != nullptr && strstr(reason, "undefined symbol") != nullptr
                   ? B_MISSING_SYMBOL
                   : B_MISSING_LIBRARY;
    }
    image_id id;
    bool is_new = false;
    {
        Images& list = images();
        BPrivate::MutexLock hold(list.lock);
        id = id_of_handle(list, handle);
        if (id > 0)
            is_new = list.add_ons.try_emplace(id, AddOn{handle, 0}).first->second.count++ == 0;
    }
    if (id <= 0)
        dlclose(handle);
    if (is_new) {
        call_hook(id, B_INIT_BEFORE_FUNCTION_NAME);
        call_hook(id, B_INIT_AFTER_FUNCTION_NAME);
    }
    return id;
}

status_t unload_add_on(image_id image)
{
    Images& list = images();
    void* handle;
    bool is_last;
    {
        BPrivate::MutexLock hold(list.lock);
        const auto found = list.add_ons.find(image);
        if (found == list.add_ons.end())
            return B_BAD_IMAGE_ID;
        handle = found->second.handle;
        is_last = --found->second.count == 0;
        if (is_last)
            list.add_ons.erase(found);
    }
    if (is_last) {
        call_hook(image, B_TERM_BEFORE_FUNCTION_NAME);
        call_hook(image, B_TERM_AFTER_FUNCTION_NAME);
    }
    dlclose(handle);
    return B_OK;
}

namespace {

// What an image's dynamic section says of its symbols.
struct SymbolTable {
    const ElfW(Sym) * symbols = nullptr;
    const char* names = nullptr;
    uint32 count = 0;
};

}  // namespace

// The highest symbol that the hash table leads to ends the table.
static uint32 count_by_hash(const uint32* table)
{
    const uint32 bucket_count = table[0], first = table[1], bloom_size = table[2];
    const uint32* buckets = table + 4 + bloom_size * (sizeof(ElfW(Addr)) / sizeof(uint32));
    const uint32* chain = buckets + bucket_count;
    uint32 last = 0;
    for (uint32 i = 0; i < bucket_count; ++i)
        last = std::max(last, buckets[i]);
    if (last < first)
        return first;
    while ((chain[last - first] & 1) == 0)
        ++last;
    return last + 1;
}

static SymbolTable symbols_of(const Loaded& loaded)
{
    SymbolTable table;
    const ElfW(Dyn)* entry = nullptr;
    for (int i = 0; i < loaded.header_count; ++i) {
        if (loaded.headers[i].p_type == PT_DYNAMIC)
            entry = reinterpret_cast<const ElfW(Dyn)*>(loaded.base + loaded.headers[i].p_vaddr);
    }
    const uint32* hash = nullptr;
    for (; entry != nullptr && entry->d_tag != DT_NULL; ++entry) {
        // The loader has made addresses of most, but not of every image's.
        const ElfW(Addr) address =
            entry->d_un.d_ptr < loaded.base ? entry->d_un.d_ptr + loaded.base : entry->d_un.d_ptr;
        if (entry->d_tag == DT_SYMTAB)
            table.symbols = reinterpret_cast<const ElfW(Sym)*>(address);
        else if (entry->d_tag == DT_STRTAB)
            table.names = reinterpret_cast<const char*>(address);
        else if (entry->d_tag == DT_HASH)
            table.count = reinterpret_cast<const uint32*>(address)[1];
        else if (entry->d_tag == DT_GNU_HASH)
            hash = reinterpret_cast<const uint32*>(address);
    }
    if (table.count == 0 && hash != nullptr)
        table.count = count_by_hash(hash);
    if (table.symbols == nullptr || table.names == nullptr)
        table.count = 0;
    return table;
}

// True for what the image itself exports, functions and data.
static bool is_exported(const Loaded& loaded, const SymbolTable& table, uint32 index,
                        Symbol* symbol)
{
    const ElfW(Sym)& entry = table.symbols[index];
    const unsigned binding = ELF64_ST_BIND(entry.st_info);
    const unsigned type = ELF64_ST_TYPE(entry.st_info);
    const bool is_text = type == STT_FUNC || type == STT_GNU_IFUNC;
    if (entry.st_shndx == SHN_UNDEF || (binding != STB_GLOBAL && binding != STB_WEAK) ||
        (!is_text && type != STT_OBJECT))
        return false;
    symbol->name = table.names + entry.st_name;
    symbol->type = is_text ? B_SYMBOL_TYPE_TEXT : B_SYMBOL_TYPE_DATA;
    symbol->address = reinterpret_cast<void*>(loaded.base + entry.st_value);
    if (type == STT_GNU_IFUNC)
        symbol->address = reinterpret_cast<void* (*)()>(symbol->address)();
    return true;
}

status_t get_image_symbol(image_id image, const char* name, int32 symbolType,
                          void** _symbolLocation)
{
    if (name == nullptr || (symbolType & ~B_SYMBOL_TYPE_ANY & ~B_SYMBOL_TYPE_TEXT) != 0)
        return B_BAD_VALUE;
    status_t status = B_ENTRY_NOT_FOUND;
    const bool found = with_image(image, [&](const Loaded& loaded) {
        const SymbolTable table = symbols_of(loaded);
        Symbol symbol;
        for (uint32 i = 0; i < table.count; ++i) {
            if (strcmp(table.names + table.symbols[i].st_name, name) != 0 ||
                !is_exported(loaded, table, i, &symbol) ||
                (symbolType != B_SYMBOL_TYPE_ANY && symbolType != symbol.type))
                continue;
            if (_symbolLocation != nullptr)
                *_symbolLocation = symbol.address;
            status = B_OK;
            return;
        }
    });
    return found ? status : B_BAD_IMAGE_ID;
}

status_t get_nth_image_symbol(image_id image, int32 n, char* nameBuffer, int32* _nameLength,
                              int32* _symbolType, void** _symbolLocation)
{
    if (nameBuffer != nullptr && _nameLength == nullptr)
        return B_BAD_VALUE;
    status_t status = B_BAD_INDEX;
    const bool found = with_image(image, [&](const Loaded& loaded) {
        const SymbolTable table = symbols_of(loaded);
        Symbol symbol;
        int32 left = n;
        uint32 i = 0;
        while (i < table.count && (!is_exported(loaded, table, i, &symbol) || left-- != 0))
            ++i;
        if (n < 0 || i == table.count)
            return;
        if (nameBuffer != nullptr && *_nameLength > 0)
            snprintf(nameBuffer, *_nameLength, "%s", symbol.name);
        if (_nameLength != nullptr)
            *_nameLength = static_cast<int32>(strlen(symbol.name));
        if (_symbolType != nullptr)
            *_symbolType = symbol.type;
        if (_symbolLocation != nullptr)
            *_symbolLocation = symbol.address;
        status = B_OK;
    });
    return found ? status : B_BAD_IMAGE_ID;
}

void clear_caches(void* address, size_t length, uint32 flags)
{
    if (address != nullptr && (flags & (B_FLUSH_ICACHE | B_INVALIDATE_ICACHE)) != 0)
        __builtin___clear_cache(static_cast<char*>(address), static_cast<char*>(address) + length);
}
