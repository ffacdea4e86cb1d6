#ifndef DEVICE_DEVICE_TREE_H
#define DEVICE_DEVICE_TREE_H

// The host's devices, as its tree in /sys tells them. A test puts a tree of its own in.

#include <string>
#include <vector>

#include <SupportDefs.h>

namespace BPrivate {

struct DeviceHost {
    std::string root;                         // of /sys and /dev; "" for the machine's own
    bool (*is_joystick)(const char* device);  // "js0": no keyboard or mouse that looks like one
};

DeviceHost& device_host();

}  // namespace BPrivate

namespace [[gnu::visibility("hidden")]] device {

// Names of devices in natural order. Any thread.
std::vector<std::string> serial_ports();
std::vector<std::string> joysticks();

// Where a device's name leads: below /dev, or where it says itself.
std::string device_path(const char* name);

// One line of a file below /sys/class, "" without such a file.
std::string read_attribute(const std::string& path);

// The last part of what a link below /sys/class leads to, "" without such a link.
std::string read_link_leaf(const std::string& path);

// Opens what `name` stands for, without waiting; above 0, or a status with errno.
int open_device(const char* name, int flags);

}  // namespace device

#endif  // DEVICE_DEVICE_TREE_H
