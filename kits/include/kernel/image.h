#ifndef _IMAGE_H
#define _IMAGE_H

#include <OS.h>
#include <SupportDefs.h>

#include <sys/types.h>

typedef int32 image_id;

enum image_type { B_APP_IMAGE = 1, B_LIBRARY_IMAGE = 2, B_ADD_ON_IMAGE = 3, B_SYSTEM_IMAGE = 4 };

// What is mapped into a team: its program, the libraries, the add-ons.
struct image_info {
    image_id id;
    image_type type;
    int32 sequence;  // in the order of loading, from 1
    int32 init_order;
    void (*init_routine)();  // null: the host's loader calls them
    void (*term_routine)();
    dev_t device;  // of the file, -1 where there is none
    ino_t node;
    char name[1024];  // path
    void* text;       // executable bytes
    void* data;       // writable bytes
    int32 text_size;  // bytes
    int32 data_size;
    int32 api_version;
    int32 abi;
};

#define B_FLUSH_DCACHE 1
#define B_INVALIDATE_DCACHE 2
#define B_FLUSH_ICACHE 4
#define B_INVALIDATE_ICACHE 8

#define B_SYMBOL_TYPE_DATA 1
#define B_SYMBOL_TYPE_TEXT 2
#define B_SYMBOL_TYPE_ANY 5

#define B_INIT_BEFORE_FUNCTION_NAME "initialize_before"
#define B_INIT_AFTER_FUNCTION_NAME "initialize_after"
#define B_TERM_BEFORE_FUNCTION_NAME "terminate_before"
#define B_TERM_AFTER_FUNCTION_NAME "terminate_after"

#define B_APP_IMAGE_SYMBOL ((void*)0)
#define B_CURRENT_IMAGE_SYMBOL ((void*)1)

extern "C" {
// Hooks that an add-on may export. Both "initialize" run once it is loaded, both "terminate" before
// it goes.
void initialize_before(image_id self);
void initialize_after(image_id self);
void terminate_before(image_id self);
void terminate_after(image_id self);

/* Starts the program argv[0], a path that is not searched for, with the arguments `argv` (argc of
   them) and the environment `environ` (ends with null; null: the caller's own). It inherits the
   standard channels, no other descriptor, and no blocked signal.
   Returns the id of its main thread, which is its team's too and waits, the program loaded and not
   one instruction of it run, until resume_thread() or wait_for_thread(); the latter tells its exit
   status. Negative: why it is no program that can be started, the host's number in errno. Any
   thread. */
thread_id load_image(int32 argc, const char** argv, const char** environ);

/* Maps an add-on; what is loaded already is only counted. B_ENTRY_NOT_FOUND, B_NOT_AN_EXECUTABLE,
   B_MISSING_LIBRARY, B_MISSING_SYMBOL. Any thread. */
image_id load_add_on(const char* path);
/* Takes back one load_add_on(). B_BAD_IMAGE_ID. Any thread. */
status_t unload_add_on(image_id image);

/* The address of what the image itself exports under that name. B_BAD_IMAGE_ID, B_BAD_VALUE,
   B_ENTRY_NOT_FOUND. Any thread. */
status_t get_image_symbol(image_id image, const char* name, int32 symbolType,
                          void** _symbolLocation);
/* The exported symbols by index: *_nameLength is the room in `nameBuffer` and becomes the name's
   length. B_BAD_INDEX behind the last. The last three results may be null. Any thread. */
status_t get_nth_image_symbol(image_id image, int32 n, char* nameBuffer, int32* _nameLength,
                              int32* _symbolType, void** _symbolLocation);

/* Makes code that was written to memory executable. Any thread. */
void clear_caches(void* address, size_t length, uint32 flags);

/* Images of this team only: another's are B_BAD_TEAM_ID. The cookie starts at 0; B_BAD_VALUE behind
   the last. Any thread. */
status_t _get_image_info(image_id image, image_info* info, size_t size);
status_t _get_next_image_info(team_id team, int32* cookie, image_info* info, size_t size);
}

#define get_image_info(image, info) _get_image_info((image), (info), sizeof(*(info)))
#define get_next_image_info(team, cookie, info) \
    _get_next_image_info((team), (cookie), (info), sizeof(*(info)))

#endif  // _IMAGE_H
