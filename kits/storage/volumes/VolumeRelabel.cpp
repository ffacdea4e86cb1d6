// Relabelling through the host's disk service.

#include <errno.h>
#include <limits.h>
#include <stdio.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <OS.h>

#include "support/HostErrors.h"
#include "storage/volumes/MountTable.h"
#include "storage/volumes/VolumeLabels.h"
#include "support/HostBus.h"
#include "support/RealPath.h"

using BPrivate::HostBus;

namespace storage {

using BPrivate::fail;

static const char* const kService = "org.freedesktop.UDisks2";
static const char* const kFileSystem = "org.freedesktop.UDisks2.Filesystem";
static const char* const kObjects = "/org/freedesktop/UDisks2/block_devices/";
static const bigtime_t kTimeout = 10'000'000;     // labels are written to slow disks, too
static const bigtime_t kLongestWait = 2'000'000;  // until the host has seen the label
static const bigtime_t kPause = 10'000;

struct ErrorRow {
    const char* name;  // below the service's own
    int host_number;
};

static const ErrorRow kErrors[] = {
    {"org.freedesktop.UDisks2.Error.NotAuthorized", EACCES},
    {"org.freedesktop.UDisks2.Error.NotAuthorizedCanObtain", EACCES},
    {"org.freedesktop.UDisks2.Error.NotAuthorizedDismissed", EACCES},
    {"org.freedesktop.UDisks2.Error.NotSupported", EOPNOTSUPP},
    {"org.freedesktop.UDisks2.Error.DeviceBusy", EBUSY},
    {"org.freedesktop.UDisks2.Error.Timedout", ETIMEDOUT},
    {"org.freedesktop.DBus.Error.AccessDenied", EACCES},
    {"org.freedesktop.DBus.Error.UnknownMethod", EOPNOTSUPP},
    {"org.freedesktop.DBus.Error.UnknownObject", EOPNOTSUPP},
    {"org.freedesktop.DBus.Error.UnknownInterface", EOPNOTSUPP},
};

// The kernel's name of the device that is mounted, "" if it is none.
static std::string kernel_name(const Mount& mount)
{
    char link[64], target[PATH_MAX];
    snprintf(link, sizeof(link), "/sys/dev/block/%u:%u", major(mount.device), minor(mount.device));
    const ssize_t length = readlink(link, target, sizeof(target));
    std::string path = length > 0 ? std::string(target, length) : std::string();
    // File systems over several devices have a number of their own, and name one of these.
    if (path.empty() && mount.source.compare(0, 5, "/dev/") == 0)
        path = BPrivate::real_path(mount.source);
    return path.substr(path.rfind('/') + 1);
}

// As the service spells names in its objects' paths.
static std::string object_path(const std::string& name)
{
    std::string path = kObjects;
    for (const char byte : name) {
        char code[4] = {byte, '\0'};
        if (!g_ascii_isalnum(byte))
            snprintf(code, sizeof(code), "_%02x", static_cast<unsigned char>(byte));
        path += code;
    }
    return path;
}

static int host_number(const HostBus& bus)
{
    if (bus.Status() == B_TIMED_OUT)
        return ETIMEDOUT;
    if (bus.Status() == B_ENTRY_NOT_FOUND)
        return EOPNOTSUPP;
    for (const ErrorRow& row : kErrors) {
        if (bus.ErrorName() == row.name)
            return row.host_number;
    }
    return EIO;
}

status_t set_label(const Mount& mount, const std::string& label)
{
    const std::string name = kernel_name(mount);
    if (name.empty())
        return fail(EOPNOTSUPP);
    if (!g_utf8_validate(label.c_str(), -1, nullptr))
        return fail(EINVAL);
    const std::string before = label_of(mount.source);
    HostBus bus(HostBus::Kind::System, kTimeout);
    const std::string path = object_path(name);
    GVariantBuilder options;
    g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&options, "{sv}", "auth.no_user_interaction",
                          g_variant_new_boolean(true));
    if (bus.Call({kService, path.c_str(), kFileSystem}, "SetLabel",
                 g_variant_new("(sa{sv})", label.c_str(), &options), "()") == nullptr)
        return fail(host_number(bus));
    // The service answers before the host's links are made anew.
    const bigtime_t end = system_time() + kLongestWait;
    while (label != before && label_of(mount.source) == before && system_time() < end)
        snooze(kPause);
    return B_OK;
}

}  // namespace storage
