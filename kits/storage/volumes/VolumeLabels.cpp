// Labels of file systems, as the host's links to their devices tell them.

#include "storage/volumes/VolumeLabels.h"

#include <dirent.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "support/RealPath.h"

std::string& BPrivate::volume_label_folder()
{
    static auto& folder = *new std::string("/dev/disk/by-label");  // outlives the exit handlers
    return folder;
}

namespace storage {

// What a file name can not hold is written as "\x20".
static std::string decoded_label(const char* name)
{
    std::string label;
    for (; *name != '\0'; name++) {
        unsigned byte;
        if (name[0] == '\\' && name[1] == 'x' && sscanf(name + 2, "%2x", &byte) == 1 &&
            strlen(name) >= 4) {
            label += static_cast<char>(byte);
            name += 3;
        } else {
            label += *name;
        }
    }
    return label;
}

std::string label_of(const std::string& device)
{
    std::string label;
    const std::string& folder = BPrivate::volume_label_folder();
    const std::string real = BPrivate::real_path(device);
    DIR* labels = opendir(folder.c_str());
    while (labels != nullptr && label.empty()) {
        const struct dirent* entry = readdir(labels);
        if (entry == nullptr)
            break;
        if (!real.empty() && entry->d_name[0] != '.' &&
            BPrivate::real_path(folder + '/' + entry->d_name) == real)
            label = decoded_label(entry->d_name);
    }
    if (labels != nullptr)
        closedir(labels);
    return label;
}

}  // namespace storage
