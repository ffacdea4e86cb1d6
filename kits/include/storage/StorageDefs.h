#ifndef _STORAGEDEFS_H
#define _STORAGEDEFS_H

#include <SupportDefs.h>

#include <fcntl.h>
#include <limits.h>

#define B_DEV_NAME_LENGTH 128
#define B_FILE_NAME_LENGTH 0x100
#define B_PATH_NAME_LENGTH 0x400
#define B_ATTR_NAME_LENGTH 255
#define B_MIME_TYPE_LENGTH 240
#define B_MAX_SYMLINKS 16
#define B_READ_ONLY 0
#define B_WRITE_ONLY 1
#define B_READ_WRITE 2
#define B_FAIL_IF_EXISTS 0x100
#define B_CREATE_FILE 0x200
#define B_ERASE_FILE 0x400
#define B_OPEN_AT_END 0x800

enum node_flavor { B_FILE_NODE = 1, B_SYMLINK_NODE = 2, B_DIRECTORY_NODE = 4, B_ANY_NODE = 7 };

#endif  // _STORAGEDEFS_H
