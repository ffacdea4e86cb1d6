// Finds serial ports and joysticks below /sys. What udev knows of a device is asked of udev.

#include "device/DeviceTree.h"

#include <errno.h>
#include <fcntl.h>
#include <libudev.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>

#include "support/HostErrors.h"

namespace fs = std::filesystem;

// True as well where udev does not run: the kernel's own idea of a joystick is good enough then.
static bool udev_says_joystick(const char* name)
{
    const std::unique_ptr<udev, decltype(&udev_unref)> context(udev_new(), udev_unref);
    if (context == nullptr)
        return true;
    const std::unique_ptr<udev_device, decltype(&udev_device_unref)> device(
        udev_device_new_from_subsystem_sysname(context.get(), "input", name), udev_device_unref);
    if (device == nullptr || udev_device_get_property_value(device.get(), "ID_INPUT") == nullptr)
        return true;
    return udev_device_get_property_value(device.get(), "ID_INPUT_JOYSTICK") != nullptr;
}

BPrivate::DeviceHost& BPrivate::device_host()
{
    static auto& host = *new DeviceHost{"", udev_says_joystick};  // outlives the exit handlers
    return host;
}

namespace device {

static std::string class_path(const std::string& path)
{
    return BPrivate::device_host().root + "/sys/class/" + path;
}

std::string read_attribute(const std::string& path)
{
    std::ifstream file(class_path(path));
    std::string line;
    std::getline(file, line);
    return line;
}

std::string read_link_leaf(const std::string& path)
{
    std::error_code error;
    return fs::read_symlink(class_path(path), error).filename().string();
}

// Digits count as numbers: "ttyS2" comes before "ttyS10".
static bool natural_less(const std::string& a, const std::string& b)
{
    return strverscmp(a.c_str(), b.c_str()) < 0;
}

template <class Accepts>
static std::vector<std::string> list_class(const char* name, Accepts accepts)
{
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator end, entries(class_path(name), error);
    for (; !error && entries != end; entries.increment(error)) {
        const std::string leaf = entries->path().filename().string();
        if (accepts(leaf))
            names.push_back(leaf);
    }
    std::sort(names.begin(), names.end(), natural_less);
    return names;
}

// The host makes nodes for ports that may come; a driver found hardware only behind some. Terminals
// of consoles and windows have no driver either.
static bool is_serial_port(const std::string& leaf)
{
    std::error_code error;
    return fs::exists(class_path("tty/" + leaf + "/device/driver"), error) &&
           read_attribute("tty/" + leaf + "/type") != "0";
}

std::vector<std::string> serial_ports() { return list_class("tty", is_serial_port); }

static bool is_joystick(const std::string& leaf)
{
    return leaf.size() > 2 && leaf.compare(0, 2, "js") == 0 &&
           leaf.find_first_not_of("0123456789", 2) == std::string::npos &&
           BPrivate::device_host().is_joystick(leaf.c_str());
}

std::vector<std::string> joysticks() { return list_class("input", is_joystick); }

std::string device_path(const char* name)
{
    const std::string& root = BPrivate::device_host().root;
    if (name[0] == '/')
        return root + name;
    const bool of_input = strncmp(name, "js", 2) == 0;
    return root + (of_input ? "/dev/input/" : "/dev/") + name;
}

int open_device(const char* name, int flags)
{
    if (name == nullptr || name[0] == '\0')
        return BPrivate::fail(EINVAL);
    int file = open(device_path(name).c_str(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file == 0) {  // means failure to those who call
        file = fcntl(file, F_DUPFD_CLOEXEC, 3);
        close(0);
    }
    return file < 0 ? BPrivate::host_failure() : file;
}

}  // namespace device
