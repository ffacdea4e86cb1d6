#ifndef _FIND_DIRECTORY_H
#define _FIND_DIRECTORY_H

#include <sys/types.h>

#include <SupportDefs.h>

// "Common" is what older programs call the part of the system that its administrator adds to.
enum directory_which {
    B_DESKTOP_DIRECTORY = 0,
    B_TRASH_DIRECTORY = 1,
    B_SYSTEM_DIRECTORY = 1000,
    B_SYSTEM_ADDONS_DIRECTORY = 1002,
    B_SYSTEM_BOOT_DIRECTORY = 1003,
    B_SYSTEM_FONTS_DIRECTORY = 1004,
    B_SYSTEM_LIB_DIRECTORY = 1005,
    B_SYSTEM_SERVERS_DIRECTORY = 1006,
    B_SYSTEM_APPS_DIRECTORY = 1007,
    B_SYSTEM_BIN_DIRECTORY = 1008,
    B_SYSTEM_DOCUMENTATION_DIRECTORY = 1010,
    B_SYSTEM_PREFERENCES_DIRECTORY = 1011,
    B_SYSTEM_TRANSLATORS_DIRECTORY = 1012,
    B_SYSTEM_MEDIA_NODES_DIRECTORY = 1013,
    B_SYSTEM_SOUNDS_DIRECTORY = 1014,
    B_SYSTEM_DATA_DIRECTORY = 1015,
    B_SYSTEM_DEVELOP_DIRECTORY = 1016,
    B_SYSTEM_PACKAGES_DIRECTORY = 1017,
    B_SYSTEM_HEADERS_DIRECTORY = 1018,
    B_SYSTEM_DESKBAR_DIRECTORY = 1019,
    B_COMMON_DIRECTORY = 2000,
    B_COMMON_SYSTEM_DIRECTORY = 2001,
    B_COMMON_ADDONS_DIRECTORY = 2002,
    B_COMMON_BOOT_DIRECTORY = 2003,
    B_COMMON_FONTS_DIRECTORY = 2004,
    B_COMMON_LIB_DIRECTORY = 2005,
    B_COMMON_SERVERS_DIRECTORY = 2006,
    B_COMMON_BIN_DIRECTORY = 2007,
    B_COMMON_ETC_DIRECTORY = 2008,
    B_COMMON_DOCUMENTATION_DIRECTORY = 2009,
    B_COMMON_SETTINGS_DIRECTORY = 2010,
    B_COMMON_DEVELOP_DIRECTORY = 2011,
    B_COMMON_LOG_DIRECTORY = 2012,
    B_COMMON_SPOOL_DIRECTORY = 2013,
    B_COMMON_TEMP_DIRECTORY = 2014,
    B_COMMON_VAR_DIRECTORY = 2015,
    B_SYSTEM_ETC_DIRECTORY = 2008,
    B_SYSTEM_SETTINGS_DIRECTORY = 2010,
    B_SYSTEM_LOG_DIRECTORY = 2012,
    B_SYSTEM_SPOOL_DIRECTORY = 2013,
    B_SYSTEM_TEMP_DIRECTORY = 2014,
    B_SYSTEM_VAR_DIRECTORY = 2015,
    B_SYSTEM_CACHE_DIRECTORY = 2020,
    B_SYSTEM_NONPACKAGED_DIRECTORY = 2023,
    B_SYSTEM_NONPACKAGED_ADDONS_DIRECTORY = 2024,
    B_SYSTEM_NONPACKAGED_TRANSLATORS_DIRECTORY = 2025,
    B_SYSTEM_NONPACKAGED_MEDIA_NODES_DIRECTORY = 2026,
    B_SYSTEM_NONPACKAGED_BIN_DIRECTORY = 2027,
    B_SYSTEM_NONPACKAGED_DATA_DIRECTORY = 2028,
    B_SYSTEM_NONPACKAGED_FONTS_DIRECTORY = 2029,
    B_SYSTEM_NONPACKAGED_SOUNDS_DIRECTORY = 2030,
    B_SYSTEM_NONPACKAGED_DOCUMENTATION_DIRECTORY = 2031,
    B_SYSTEM_NONPACKAGED_LIB_DIRECTORY = 2032,
    B_SYSTEM_NONPACKAGED_HEADERS_DIRECTORY = 2033,
    B_SYSTEM_NONPACKAGED_DEVELOP_DIRECTORY = 2034,
    B_USER_DIRECTORY = 3000,
    B_USER_CONFIG_DIRECTORY = 3001,
    B_USER_ADDONS_DIRECTORY = 3002,
    B_USER_BOOT_DIRECTORY = 3003,
    B_USER_FONTS_DIRECTORY = 3004,
    B_USER_LIB_DIRECTORY = 3005,
    B_USER_SETTINGS_DIRECTORY = 3006,
    B_USER_DESKBAR_DIRECTORY = 3007,
    B_USER_PRINTERS_DIRECTORY = 3008,
    B_USER_TRANSLATORS_DIRECTORY = 3009,
    B_USER_MEDIA_NODES_DIRECTORY = 3010,
    B_USER_SOUNDS_DIRECTORY = 3011,
    B_USER_DATA_DIRECTORY = 3012,
    B_USER_CACHE_DIRECTORY = 3013,
    B_USER_PACKAGES_DIRECTORY = 3014,
    B_USER_HEADERS_DIRECTORY = 3015,
    B_USER_NONPACKAGED_DIRECTORY = 3016,
    B_USER_NONPACKAGED_ADDONS_DIRECTORY = 3017,
    B_USER_NONPACKAGED_TRANSLATORS_DIRECTORY = 3018,
    B_USER_NONPACKAGED_MEDIA_NODES_DIRECTORY = 3019,
    B_USER_NONPACKAGED_BIN_DIRECTORY = 3020,
    B_USER_NONPACKAGED_DATA_DIRECTORY = 3021,
    B_USER_NONPACKAGED_FONTS_DIRECTORY = 3022,
    B_USER_NONPACKAGED_SOUNDS_DIRECTORY = 3023,
    B_USER_NONPACKAGED_DOCUMENTATION_DIRECTORY = 3024,
    B_USER_NONPACKAGED_LIB_DIRECTORY = 3025,
    B_USER_NONPACKAGED_HEADERS_DIRECTORY = 3026,
    B_USER_NONPACKAGED_DEVELOP_DIRECTORY = 3027,
    B_USER_DEVELOP_DIRECTORY = 3028,
    B_USER_DOCUMENTATION_DIRECTORY = 3029,
    B_USER_SERVERS_DIRECTORY = 3030,
    B_USER_APPS_DIRECTORY = 3031,
    B_USER_BIN_DIRECTORY = 3032,
    B_USER_PREFERENCES_DIRECTORY = 3033,
    B_USER_ETC_DIRECTORY = 3034,
    B_USER_LOG_DIRECTORY = 3035,
    B_USER_SPOOL_DIRECTORY = 3036,
    B_USER_VAR_DIRECTORY = 3037,
    B_APPS_DIRECTORY = 4000,
    B_PREFERENCES_DIRECTORY = 4001,
    B_UTILITIES_DIRECTORY = 4002,
    B_PACKAGE_LINKS_DIRECTORY = 4003,
    B_BEOS_DIRECTORY = 1000,
    B_BEOS_SYSTEM_DIRECTORY = 1001,
    B_BEOS_ADDONS_DIRECTORY = 1002,
    B_BEOS_BOOT_DIRECTORY = 1003,
    B_BEOS_FONTS_DIRECTORY = 1004,
    B_BEOS_LIB_DIRECTORY = 1005,
    B_BEOS_SERVERS_DIRECTORY = 1006,
    B_BEOS_APPS_DIRECTORY = 1007,
    B_BEOS_BIN_DIRECTORY = 1008,
    B_BEOS_ETC_DIRECTORY = 1009,
    B_BEOS_DOCUMENTATION_DIRECTORY = 1010,
    B_BEOS_PREFERENCES_DIRECTORY = 1011,
    B_BEOS_TRANSLATORS_DIRECTORY = 1012,
    B_BEOS_MEDIA_NODES_DIRECTORY = 1013,
    B_BEOS_SOUNDS_DIRECTORY = 1014
};

// Where find_path() looks, below a place where software is installed.
typedef enum path_base_directory {
    B_FIND_PATH_INSTALLATION_LOCATION_DIRECTORY = 0,
    B_FIND_PATH_ADD_ONS_DIRECTORY = 1,
    B_FIND_PATH_APPS_DIRECTORY = 2,
    B_FIND_PATH_BIN_DIRECTORY = 3,
    B_FIND_PATH_BOOT_DIRECTORY = 4,
    B_FIND_PATH_CACHE_DIRECTORY = 5,
    B_FIND_PATH_DATA_DIRECTORY = 6,
    B_FIND_PATH_DEVELOP_DIRECTORY = 7,
    B_FIND_PATH_DEVELOP_LIB_DIRECTORY = 8,
    B_FIND_PATH_DOCUMENTATION_DIRECTORY = 9,
    B_FIND_PATH_ETC_DIRECTORY = 10,
    B_FIND_PATH_FONTS_DIRECTORY = 11,
    B_FIND_PATH_HEADERS_DIRECTORY = 12,
    B_FIND_PATH_LIB_DIRECTORY = 13,
    B_FIND_PATH_LOG_DIRECTORY = 14,
    B_FIND_PATH_MEDIA_NODES_DIRECTORY = 15,
    B_FIND_PATH_PACKAGES_DIRECTORY = 16,
    B_FIND_PATH_PREFERENCES_DIRECTORY = 17,
    B_FIND_PATH_SERVERS_DIRECTORY = 18,
    B_FIND_PATH_SETTINGS_DIRECTORY = 19,
    B_FIND_PATH_SOUNDS_DIRECTORY = 20,
    B_FIND_PATH_SPOOL_DIRECTORY = 21,
    B_FIND_PATH_TRANSLATORS_DIRECTORY = 22,
    B_FIND_PATH_VAR_DIRECTORY = 23,
    B_FIND_PATH_IMAGE_PATH = 1000,
    B_FIND_PATH_PACKAGE_PATH = 1001
} path_base_directory;

// How paths are looked for.
enum {
    B_FIND_PATH_CREATE_DIRECTORY = 0x1,
    B_FIND_PATH_CREATE_PARENT_DIRECTORY = 0x2,
    B_FIND_PATH_EXISTING_ONLY = 0x4,
    B_FIND_PATHS_SYSTEM_ONLY = 0x10,
    B_FIND_PATHS_USER_ONLY = 0x20
};

// Where the host keeps the files of that kind: the desktop's base directories for the user's own
// ("XDG_CONFIG_HOME" ...), the usual ones for the system's. Nothing need be there unless
// `createIt`. `volume` is not looked at. B_BAD_VALUE for a number without meaning here.
#ifdef __cplusplus
class BPath;
class BVolume;

status_t find_directory(directory_which which, BPath* path, bool createIt = false,
                        BVolume* volume = nullptr);

extern "C" {
#endif
// `length` bytes at `pathString`; B_BUFFER_OVERFLOW if the path does not fit.
status_t find_directory(directory_which which, dev_t volume, bool createIt, char* pathString,
                        int32 length);

/* The path of `subPath`, which may be null, below a directory of the installation that something
   belongs to: the image that `codePointer` lies in (null: the program), or the file at `path`. That
   is the folder above its "bin", "lib" or "sbin": the system's "/usr", "/usr/local", the user's
   "~/.local", or one of its own. The image or file itself is B_FIND_PATH_IMAGE_PATH; there are no
   packages. `architecture` and `dependency` name nothing here: null, or B_ENTRY_NOT_FOUND.
   B_ENTRY_NOT_FOUND with B_FIND_PATH_EXISTING_ONLY for what is not there, B_BUFFER_OVERFLOW if the
   path does not fit into `bufferSize` bytes, B_BAD_VALUE. Any thread. */
status_t find_path(const void* codePointer, path_base_directory baseDirectory, const char* subPath,
                   char* pathBuffer, size_t bufferSize);
status_t find_path_etc(const void* codePointer, const char* dependency, const char* architecture,
                       path_base_directory baseDirectory, const char* subPath, uint32 flags,
                       char* pathBuffer, size_t bufferSize);
status_t find_path_for_path(const char* path, path_base_directory baseDirectory,
                            const char* subPath, char* pathBuffer, size_t bufferSize);
status_t find_path_for_path_etc(const char* path, const char* dependency, const char* architecture,
                                path_base_directory baseDirectory, const char* subPath,
                                uint32 flags, char* pathBuffer, size_t bufferSize);
/* The same below every place where software is installed, the user's first: an array that one
   free() gives back. B_ENTRY_NOT_FOUND if it is empty. */
status_t find_paths(path_base_directory baseDirectory, const char* subPath, char*** _paths,
                    size_t* _pathCount);
status_t find_paths_etc(const char* architecture, path_base_directory baseDirectory,
                        const char* subPath, uint32 flags, char*** _paths, size_t* _pathCount);
#ifdef __cplusplus
}
#endif

#endif  // _FIND_DIRECTORY_H
