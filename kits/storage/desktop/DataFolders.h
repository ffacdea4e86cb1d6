#ifndef STORAGE_DATA_FOLDERS_H
#define STORAGE_DATA_FOLDERS_H

#include <string>
#include <string_view>
#include <vector>

namespace [[gnu::visibility("hidden")]] storage {

// The desktop's base directories, the user's own first; those of the system follow in the order
// of their weight. They are read from the environment once.
std::vector<std::string> data_folders();
std::vector<std::string> config_folders();

// The names of the running desktop in lower case, most special first.
std::vector<std::string> desktop_names();

// The parts of a text between separators, without empty ones.
std::vector<std::string> split_text(std::string_view text, char separator);

std::string lower_case(std::string_view text);

// The whole file; empty if it can not be read.
std::string read_text_file(const std::string& path);

}  // namespace storage

#endif  // STORAGE_DATA_FOLDERS_H
