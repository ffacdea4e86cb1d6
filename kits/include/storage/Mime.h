#ifndef _MIME_H
#define _MIME_H

#include <StorageDefs.h>
#include <SupportDefs.h>
#include <TypeConstants.h>

#include <sys/types.h>

class BBitmap;

enum icon_size { B_LARGE_ICON = 32, B_MINI_ICON = 16 };

// What update_mime_info() and create_app_meta_mime() do to what is there already.
enum {
    B_UPDATE_MIME_INFO_NO_FORCE = 0,
    B_UPDATE_MIME_INFO_FORCE_KEEP_TYPE = 1,
    B_UPDATE_MIME_INFO_FORCE_UPDATE_ALL = 2
};

extern "C" {
// Gives a file that has no type of its own the one that its name and content tell; with
// B_UPDATE_MIME_INFO_FORCE_UPDATE_ALL a new one to those that have. With `recursive` a folder's
// files too. Returns a status; it always waits, whatever `synchronous` says. Any thread.
int update_mime_info(const char* path, int recursive, int synchronous, int force);
// Makes the application at `path` known by its signature attribute: to the type database, and to
// the desktop by an entry in the user's applications folder. With `force` also where the desktop
// has an entry for it, which then hides that one.
status_t create_app_meta_mime(const char* path, int recursive, int synchronous, int force);
// `icon` takes size * size bytes of B_CMAP8.
status_t get_device_icon(const char* device, void* icon, int32 size);
}

// The icon of what is mounted from a device such as "/dev/sda1".
status_t get_device_icon(const char* device, BBitmap* icon, icon_size which);
// There are no vector icons of devices: B_NOT_SUPPORTED.
status_t get_device_icon(const char* device, uint8** _data, size_t* _size, type_code* _type);
// An icon of the user's icon theme.
status_t get_named_icon(const char* name, BBitmap* icon, icon_size which);
// No vector icons of these either: B_NOT_SUPPORTED.
status_t get_named_icon(const char* name, uint8** _data, size_t* _size, type_code* _type);

// Programs that include this header expect the class, too.
#include <MimeType.h>

#endif  // _MIME_H
