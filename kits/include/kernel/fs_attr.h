#ifndef _FS_ATTR_H
#define _FS_ATTR_H

#include <dirent.h>
#include <sys/types.h>

#include <SupportDefs.h>

// The attributes of a node as plain calls; see BNode. They return -1 or null on failure, with the
// host's number in errno.

typedef struct attr_info {
    uint32 type;
    off_t size;
} attr_info;

#ifdef __cplusplus
extern "C" {
#endif

ssize_t fs_read_attr(int fd, const char* attribute, uint32 type, off_t pos, void* buffer,
                     size_t readBytes);
ssize_t fs_write_attr(int fd, const char* attribute, uint32 type, off_t pos, const void* buffer,
                      size_t writeBytes);
int fs_remove_attr(int fd, const char* attribute);
int fs_stat_attr(int fd, const char* attribute, struct attr_info* attrInfo);

// A descriptor of one attribute, for read(), write(), lseek(), ftruncate() and fstat(). `openMode`
// is that of open(): O_CREAT makes an attribute that is not there, with O_EXCL only then, O_TRUNC
// empties it. What was written stands in the attribute once fs_close_attr() has returned 0; close()
// throws it away.
int fs_open_attr(const char* path, const char* attribute, uint32 type, int openMode);
int fs_fopen_attr(int fd, const char* attribute, uint32 type, int openMode);
int fs_close_attr(int fd);

// The names of a node's attributes, as they were when the list was opened or rewound. A DIR of
// these calls goes to no other call. `fs_lopen_attr_dir` opens a link itself.
DIR* fs_open_attr_dir(const char* path);
DIR* fs_lopen_attr_dir(const char* path);
DIR* fs_fopen_attr_dir(int fd);
int fs_close_attr_dir(DIR* dir);
// The record lives until the next call for `dir`. Null at the end.
struct dirent* fs_read_attr_dir(DIR* dir);
void fs_rewind_attr_dir(DIR* dir);

#ifdef __cplusplus
}
#endif

#endif  // _FS_ATTR_H
