#ifndef STORAGE_DIRECTORIES_H
#define STORAGE_DIRECTORIES_H

#include <sys/stat.h>

#include <string>

#include <SupportDefs.h>

class BDirectory;
class BEntry;
class BStatable;
struct entry_ref;

namespace [[gnu::visibility("hidden")]] storage {

// Remembers a directory by its device and inode, so that a ref made for it leads back to a
// path. Any thread. The thirty thousand that were used last stay remembered.
status_t remember_directory(const std::string& path, dev_t* device, ino_t* inode);

// The remembered path; B_ENTRY_NOT_FOUND when the directory was never met or has moved away.
status_t find_directory_path(dev_t device, ino_t inode, std::string* path);

// The remembered path as it is, without a look whether it is still right; empty if there is none.
std::string known_directory_path(dev_t device, ino_t inode);

// Remembers what another program says of a directory that was never met here, or is no longer where
// it was, if it is true.
void learn_directory(dev_t device, ino_t inode, const std::string& path);

// The same for any node, of which only the last thousands are kept unless they are directories.
void remember_node(const std::string& path, const struct stat& info);
status_t find_node_path(dev_t device, ino_t inode, std::string* path);

// A directory moved: what was remembered below its old path is now below the new one.
void follow_moved_directory(const std::string& from, const std::string& to);

// The absolute path of what the object names or holds open.
status_t path_of(const entry_ref* ref, std::string* path);
status_t path_of(const BEntry* entry, std::string* path);
status_t path_of(const BDirectory* dir, const char* relative, std::string* path);
status_t path_of(const BStatable& statable, std::string* path);

// The path of an open descriptor's node, as the host names it: B_ENTRY_NOT_FOUND if it is gone
// from there, B_NAME_TOO_LONG for one deeper than the host tells.
status_t path_of_descriptor(int fd, std::string* path);

// Makes `path` (relative paths start at the working directory) absolute, its directory part
// free of links, "." and "..". The directory must exist, the leaf need not; with `traverse` a
// leaf that is a link is followed.
status_t resolve_entry(std::string path, bool traverse, std::string* resolved);

// `directory`/`leaf`, with one slash between.
std::string join(const std::string& directory, const std::string& leaf);

// The directory part of a path with a slash; "/" for the root directory too.
std::string directory_of(const std::string& path);

// The leaf of a resolved path; "." for the root directory and for an empty path.
const char* leaf_of(const char* path);

// Replaces the heap text `owned` by a copy of `text` if `status` is B_OK, else by null. Returns
// the status, B_NO_MEMORY if there was no room.
status_t replace_path(char** owned, status_t status, const char* text);

}  // namespace storage

#endif  // STORAGE_DIRECTORIES_H
