// find_path: directories of the installation that a program, a library or a file belongs to. Any
// thread.

#include <FindDirectory.h>

#include <dlfcn.h>
#include <errno.h>
#include <limits.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <Directory.h>
#include <Path.h>

#include "storage/Directories.h"
#include "support/HostErrors.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::host_failure;

struct BaseRow {
    path_base_directory which;
    const char* below;     // the installation's folder
    const char* in_usr;    // where the system has another place for it
    directory_which user;  // where the user has one
};

static const directory_which kNoDirectory = static_cast<directory_which>(-1);

static const BaseRow kBases[] = {
    {B_FIND_PATH_INSTALLATION_LOCATION_DIRECTORY, "", nullptr, kNoDirectory},
    {B_FIND_PATH_ADD_ONS_DIRECTORY, "/lib", nullptr, kNoDirectory},
    {B_FIND_PATH_APPS_DIRECTORY, "/share/applications", nullptr, B_USER_APPS_DIRECTORY},
    {B_FIND_PATH_BIN_DIRECTORY, "/bin", nullptr, kNoDirectory},
    {B_FIND_PATH_CACHE_DIRECTORY, "/var/cache", "/var/cache", B_USER_CACHE_DIRECTORY},
    {B_FIND_PATH_DATA_DIRECTORY, "/share", nullptr, B_USER_DATA_DIRECTORY},
    {B_FIND_PATH_DEVELOP_DIRECTORY, "", nullptr, kNoDirectory},
    {B_FIND_PATH_DEVELOP_LIB_DIRECTORY, "/lib", nullptr, kNoDirectory},
    {B_FIND_PATH_DOCUMENTATION_DIRECTORY, "/share/doc", nullptr, B_USER_DOCUMENTATION_DIRECTORY},
    {B_FIND_PATH_ETC_DIRECTORY, "/etc", "/etc", B_USER_SETTINGS_DIRECTORY},
    {B_FIND_PATH_FONTS_DIRECTORY, "/share/fonts", nullptr, B_USER_FONTS_DIRECTORY},
    {B_FIND_PATH_HEADERS_DIRECTORY, "/include", nullptr, kNoDirectory},
    {B_FIND_PATH_LIB_DIRECTORY, "/lib", nullptr, kNoDirectory},
    {B_FIND_PATH_LOG_DIRECTORY, "/var/log", "/var/log", B_USER_LOG_DIRECTORY},
    {B_FIND_PATH_PREFERENCES_DIRECTORY, "/share/applications", nullptr, B_USER_APPS_DIRECTORY},
    {B_FIND_PATH_SERVERS_DIRECTORY, "/sbin", nullptr, kNoDirectory},
    {B_FIND_PATH_SETTINGS_DIRECTORY, "/etc", "/etc", B_USER_SETTINGS_DIRECTORY},
    {B_FIND_PATH_SOUNDS_DIRECTORY, "/share/sounds", nullptr, B_USER_SOUNDS_DIRECTORY},
    {B_FIND_PATH_SPOOL_DIRECTORY, "/var/spool", "/var/spool", B_USER_SPOOL_DIRECTORY},
    {B_FIND_PATH_VAR_DIRECTORY, "/var", "/var", B_USER_VAR_DIRECTORY},
};

// The user's own installation; empty if there is no home.
static std::string user_installation()
{
    BPath path;
    return find_directory(B_USER_NONPACKAGED_DIRECTORY, &path) == B_OK ? path.Path() : "";
}

// The folder above the "bin", "lib", "libexec" or "sbin" that the file lies in or below, as its
// path is without links; its own folder, if there is none.
static std::string installation_of(const std::string& file)
{
    for (std::string folder = directory_of(file); folder != "/"; folder = directory_of(folder)) {
        const std::string_view leaf = leaf_of(folder.c_str());
        if (leaf == "bin" || leaf == "lib" || leaf == "lib64" || leaf == "libexec" ||
            leaf == "sbin") {
            const std::string above = directory_of(folder);
            return above == "/" ? "/usr" : above;
        }
    }
    return directory_of(file);
}

static status_t base_path(const std::string& installation, path_base_directory which,
                          std::string* path)
{
    for (const BaseRow& row : kBases) {
        if (row.which != which)
            continue;
        BPath of_user;
        if (row.user != kNoDirectory && installation == user_installation() &&
            find_directory(row.user, &of_user) == B_OK)
            *path = of_user.Path();
        else if (row.in_usr != nullptr && installation == "/usr")
            *path = row.in_usr;
        else
            *path = installation + row.below;
        return B_OK;
    }
    return fail(EINVAL);
}

static status_t complete(std::string* path, const char* sub_path, uint32 flags)
{
    if (sub_path != nullptr && sub_path[0] == '/')
        return fail(EINVAL);
    if (sub_path != nullptr && sub_path[0] != '\0')
        *path = join(*path, sub_path);
    if ((flags & B_FIND_PATH_CREATE_DIRECTORY) != 0 &&
        create_directory(path->c_str(), 0755) != B_OK)
        return host_failure();
    if ((flags & B_FIND_PATH_CREATE_PARENT_DIRECTORY) != 0 &&
        create_directory(directory_of(*path).c_str(), 0755) != B_OK)
        return host_failure();
    if ((flags & B_FIND_PATH_EXISTING_ONLY) != 0 && access(path->c_str(), F_OK) != 0)
        return host_failure();
    return B_OK;
}

static status_t give(const std::string& path, char* buffer, size_t size)
{
    if (path.size() >= size)
        return fail(EOVERFLOW);
    strcpy(buffer, path.c_str());
    return B_OK;
}

static status_t find(const std::string& file, const char* dependency, const char* architecture,
                     path_base_directory base, const char* sub_path, uint32 flags, char* buffer,
                     size_t size)
{
    if (buffer == nullptr)
        return fail(EINVAL);
    if (dependency != nullptr || architecture != nullptr || base == B_FIND_PATH_PACKAGE_PATH)
        return fail(ENOENT);
    if (base == B_FIND_PATH_IMAGE_PATH)
        return sub_path != nullptr ? fail(EINVAL) : give(file, buffer, size);
    std::string path;
    status_t status = base_path(installation_of(file), base, &path);
    if (status == B_OK)
        status = complete(&path, sub_path, flags);
    return status == B_OK ? give(path, buffer, size) : status;
}

extern "C" status_t find_path(const void* codePointer, path_base_directory baseDirectory,
                              const char* subPath, char* pathBuffer, size_t bufferSize)
{
    return find_path_etc(codePointer, nullptr, nullptr, baseDirectory, subPath, 0, pathBuffer,
                         bufferSize);
}

extern "C" status_t find_path_etc(const void* codePointer, const char* dependency,
                                  const char* architecture, path_base_directory baseDirectory,
                                  const char* subPath, uint32 flags, char* pathBuffer,
                                  size_t bufferSize)
{
    Dl_info image = {};
    if (codePointer != nullptr && dladdr(codePointer, &image) == 0)
        return fail(ENOENT);
    // The program itself goes by the name that it was called by, which need be no path.
    const bool is_library =
        codePointer != nullptr && image.dli_fname != nullptr && strstr(image.dli_fname, ".so");
    std::string file;
    const status_t status =
        resolve_entry(is_library ? image.dli_fname : "/proc/self/exe", true, &file);
    return status == B_OK ? find(file, dependency, architecture, baseDirectory, subPath, flags,
                                 pathBuffer, bufferSize)
                          : status;
}

extern "C" status_t find_path_for_path(const char* path, path_base_directory baseDirectory,
                                       const char* subPath, char* pathBuffer, size_t bufferSize)
{
    return find_path_for_path_etc(path, nullptr, nullptr, baseDirectory, subPath, 0, pathBuffer,
                                  bufferSize);
}

extern "C" status_t find_path_for_path_etc(const char* path, const char* dependency,
                                           const char* architecture,
                                           path_base_directory baseDirectory, const char* subPath,
                                           uint32 flags, char* pathBuffer, size_t bufferSize)
{
    if (path == nullptr)
        return fail(EINVAL);
    std::string file;
    const status_t status = resolve_entry(path, true, &file);
    return status == B_OK ? find(file, dependency, architecture, baseDirectory, subPath, flags,
                                 pathBuffer, bufferSize)
                          : status;
}

extern "C" status_t find_paths(path_base_directory baseDirectory, const char* subPath,
                               char*** _paths, size_t* _pathCount)
{
    return find_paths_etc(nullptr, baseDirectory, subPath, 0, _paths, _pathCount);
}

// The texts stand behind the array, in the same memory.
static char** as_array(const std::vector<std::string>& paths)
{
    size_t size = paths.size() * sizeof(char*);
    for (const std::string& path : paths)
        size += path.size() + 1;
    char** array = static_cast<char**>(malloc(size));
    char* text = reinterpret_cast<char*>(array + paths.size());
    for (size_t i = 0; array != nullptr && i < paths.size(); i++) {
        array[i] = text;
        text = stpcpy(text, paths[i].c_str()) + 1;
    }
    return array;
}

extern "C" status_t find_paths_etc(const char* architecture, path_base_directory baseDirectory,
                                   const char* subPath, uint32 flags, char*** _paths,
                                   size_t* _pathCount)
{
    if (_paths == nullptr || _pathCount == nullptr)
        return fail(EINVAL);
    if (architecture != nullptr)
        return fail(ENOENT);
    std::vector<std::string> places;
    if (const std::string own = user_installation();
        !own.empty() && (flags & B_FIND_PATHS_SYSTEM_ONLY) == 0)
        places.push_back(own);
    if ((flags & B_FIND_PATHS_USER_ONLY) == 0)
        places.insert(places.end(), {"/usr/local", "/usr"});

    std::vector<std::string> paths;
    for (const std::string& place : places) {
        std::string path;
        const status_t status = base_path(place, baseDirectory, &path);
        if (status != B_OK)
            return status;
        if (complete(&path, subPath, flags) == B_OK)
            paths.push_back(path);
    }
    if (paths.empty())
        return fail(ENOENT);
    *_paths = as_array(paths);
    if (*_paths == nullptr)
        return B_NO_MEMORY;
    *_pathCount = paths.size();
    return B_OK;
}
