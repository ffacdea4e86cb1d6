#ifndef _FS_INDEX_H
#define _FS_INDEX_H

#include <SupportDefs.h>

#include <dirent.h>
#include <sys/types.h>
#include <time.h>

typedef struct index_info {
    uint32 type;
    off_t size;
    time_t modification_time;
    time_t creation_time;
    uid_t uid;
    gid_t gid;
} index_info;

extern "C" {
/* Indices over a volume's attributes. The host's file systems keep none: every call returns -1 or
   null, with EOPNOTSUPP in errno, ENODEV for a device without file system, EINVAL for a null name.
   Any thread. */
int fs_create_index(dev_t device, const char* name, uint32 type, uint32 flags);
int fs_remove_index(dev_t device, const char* name);
int fs_stat_index(dev_t device, const char* name, struct index_info* indexInfo);

DIR* fs_open_index_dir(dev_t device);
int fs_close_index_dir(DIR* indexDirectory);
struct dirent* fs_read_index_dir(DIR* indexDirectory);
void fs_rewind_index_dir(DIR* indexDirectory);
}

#endif  // _FS_INDEX_H
