#ifndef TESTS_DEVICE_DEVICE_FOLDER_H
#define TESTS_DEVICE_DEVICE_FOLDER_H

// A folder laid out as the host's device tree, which the device kit reads while it lives.

#include <filesystem>
#include <string>

#include "device/DeviceTree.h"
#include "support/temp_folder.h"

class DeviceFolder : public TempFolder {
public:
    DeviceFolder() : fFormer(BPrivate::device_host())
    {
        BPrivate::device_host() = {Path(), [](const char*) { return true; }};
    }
    ~DeviceFolder() { BPrivate::device_host() = fFormer; }

    void Folder(const std::string& path) const { std::filesystem::create_directories(At(path)); }
    void Device(const std::string& path, const std::string& text) const
    {
        Folder(std::filesystem::path(path).parent_path());
        Put(path, text);
    }
    void Link(const std::string& path, const std::string& target) const
    {
        Folder(std::filesystem::path(path).parent_path());
        std::filesystem::create_symlink(target, At(path));
    }

private:
    BPrivate::DeviceHost fFormer;
};

#endif  // TESTS_DEVICE_DEVICE_FOLDER_H
