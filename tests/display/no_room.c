/* Loaded before a program's libraries: a block of the size of its window's picture can not be had
   until a file is there. */

#include <stddef.h>
#include <stdlib.h>
#include <unistd.h>

enum { PICTURE = 300 * 200 * 4 };

void* __libc_malloc(size_t size);

void* malloc(size_t size)
{
    const char* until = size == PICTURE ? getenv("NO_ROOM_UNTIL") : NULL;
    return until != NULL && access(until, F_OK) != 0 ? NULL : __libc_malloc(size);
}
