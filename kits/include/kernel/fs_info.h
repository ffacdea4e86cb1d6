#ifndef _FS_INFO_H
#define _FS_INFO_H

#include <OS.h>
#include <StorageDefs.h>
#include <SupportDefs.h>

#include <sys/types.h>

// fs_info.flags: a set.
#define B_FS_IS_READONLY 0x00000001
#define B_FS_IS_REMOVABLE 0x00000002
#define B_FS_IS_PERSISTENT 0x00000004
#define B_FS_IS_SHARED 0x00000008
#define B_FS_HAS_MIME 0x00010000
#define B_FS_HAS_ATTR 0x00020000
#define B_FS_HAS_QUERY 0x00040000
#define B_FS_HAS_SELF_HEALING_LINKS 0x00080000
#define B_FS_HAS_ALIASES 0x00100000
#define B_FS_SUPPORTS_NODE_MONITORING 0x00200000
#define B_FS_SUPPORTS_MONITOR_CHILDREN 0x00400000

typedef struct fs_info {
    dev_t dev;
    ino_t root;
    uint32 flags;
    off_t block_size;
    off_t io_size;
    off_t total_blocks;
    off_t free_blocks;
    off_t total_nodes;
    off_t free_nodes;
    char device_name[128];
    char volume_name[B_FILE_NAME_LENGTH];
    char fsh_name[32];
} fs_info;

#ifdef __cplusplus
extern "C" {
#endif

// The device of what `path` names, links followed; a status code, which is negative when taken as
// a signed number. errno is set.
dev_t dev_for_path(const char* path);

// The next volume's device; `pos` starts at 0. B_BAD_VALUE after the last.
dev_t next_dev(int32* pos);

// -1 and errno if no file system is mounted from the device.
int fs_stat_dev(dev_t dev, fs_info* info);

#ifdef __cplusplus
}
#endif

#endif  // _FS_INFO_H
