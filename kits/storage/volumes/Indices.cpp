// Indices over attributes, which the host's file systems do not keep. Any thread.

#include <fs_index.h>

#include <errno.h>

#include <fs_info.h>

// -1 with the reason in errno.
static int refuse(dev_t device)
{
    fs_info info;
    errno = fs_stat_dev(device, &info) == 0 ? EOPNOTSUPP : ENODEV;
    return -1;
}

static int refuse(dev_t device, const void* needed)
{
    if (needed != nullptr)
        return refuse(device);
    errno = EINVAL;
    return -1;
}

int fs_create_index(dev_t device, const char* name, uint32, uint32) { return refuse(device, name); }

int fs_remove_index(dev_t device, const char* name) { return refuse(device, name); }

int fs_stat_index(dev_t device, const char* name, struct index_info* indexInfo)
{
    return refuse(device, indexInfo != nullptr ? name : nullptr);
}

DIR* fs_open_index_dir(dev_t device)
{
    refuse(device);
    return nullptr;
}

int fs_close_index_dir(DIR*)
{
    errno = EINVAL;
    return -1;
}

struct dirent* fs_read_index_dir(DIR*)
{
    errno = EINVAL;
    return nullptr;
}

void fs_rewind_index_dir(DIR*) {}
