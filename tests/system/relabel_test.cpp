// Relabelling of volumes, by a disk service that is the test itself: no volume is touched.

#include <gtest/gtest.h>

#include <Volume.h>
#include <VolumeRoster.h>
#include <OS.h>
#include <fs_info.h>
#include <plinth.h>

#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include <sys/sysmacros.h>
#include <unistd.h>

#include "storage/volumes/VolumeLabels.h"
#include "support/temp_folder.h"
#include "support/test_bus.h"

static const char* const kFileSystem =
    "<node><interface name='org.freedesktop.UDisks2.Filesystem'><method name='SetLabel'>"
    "<arg type='s' direction='in'/><arg type='a{sv}' direction='in'/></method></interface>"
    "</node>";

// The root's volume, whose labels are links in the test's folder.
class VolumeLabels : public testing::Test {
protected:
    void SetUp() override
    {
        const dev_t device = dev_for_path("/");
        char target[PATH_MAX];
        const std::string link =
            "/sys/dev/block/" + std::to_string(major(device)) + ":" + std::to_string(minor(device));
        const ssize_t length = readlink(link.c_str(), target, sizeof(target));
        if (length <= 0)
            GTEST_SKIP() << "the root is on no block device";
        const std::string path(target, length);
        fDevice = "/dev/" + path.substr(path.rfind('/') + 1);
        if (access(fDevice.c_str(), F_OK) != 0)
            GTEST_SKIP() << "the root's device has no node";
        fObject = "/org/freedesktop/UDisks2/block_devices/";
        for (char byte : fDevice.substr(5)) {
            char code[4] = {byte, 0};
            if (!isalnum(static_cast<unsigned char>(byte)))
                snprintf(code, sizeof(code), "_%02x", static_cast<unsigned char>(byte));
            fObject += code;
        }
        BPrivate::volume_label_folder() = fFolder.At("/labels");
        std::filesystem::create_directories(fFolder.At("/labels"));
        SeeLabel("Before");
        fBus = std::make_unique<TestBus>("DBUS_SYSTEM_BUS_ADDRESS");
    }
    // What the host does once it has seen a label, spelled as in the name of its link.
    void SeeLabel(const std::string& spelled)
    {
        for (const auto& entry : std::filesystem::directory_iterator(fFolder.At("/labels")))
            std::filesystem::remove(entry);
        if (!spelled.empty())
            std::filesystem::create_symlink(fDevice, fFolder.At("/labels/" + spelled));
    }
    void Serve(TestService::Method method)
    {
        fService = std::make_unique<TestService>(
            *fBus, "org.freedesktop.UDisks2", std::initializer_list<const char*>{fObject.c_str()},
            kFileSystem, method);
    }

    TempFolder fFolder;
    std::string fDevice;
    std::string fObject;
    std::unique_ptr<TestBus> fBus;
    std::unique_ptr<TestService> fService;
};

TEST_F(VolumeLabels, TheNewNameIsReadBack)
{
    std::thread slow;
    Serve([&](auto&, auto&, GVariant*) {
        slow = std::thread([this] {
            usleep(50'000);  // as slow as a host: its links come after the answer
            SeeLabel("My\\x20disk");
        });
        return TestService::Answer{g_variant_new("()"), ""};
    });
    EXPECT_STREQ(GetBootVolumeName(), "Before");
    EXPECT_TRUE(Relabel("/", "My disk"));
    slow.join();
    EXPECT_STREQ(GetBootVolumeName(), "My disk");
    const std::vector<std::string> expected = {
        "SetLabel ('My disk', {'auth.no_user_interaction': <true>})"};
    EXPECT_EQ(fService->TakeCalls(), expected);
    EXPECT_TRUE(Relabel("/", "My disk"));  // no change to wait for
    slow.join();
}

TEST_F(VolumeLabels, EachFailureHasItsReason)
{
    struct Row {
        const char* error;
        status_t status;
        int number;
    };
    std::string error;
    Serve([&](auto&, auto&, GVariant*) { return TestService::Answer{nullptr, error}; });
    BVolume volume(dev_for_path("/"));
    for (const Row& row : {
             Row{"org.freedesktop.UDisks2.Error.NotAuthorizedCanObtain", B_PERMISSION_DENIED,
                 EACCES},
             Row{"org.freedesktop.UDisks2.Error.NotSupported", B_NOT_SUPPORTED, EOPNOTSUPP},
             Row{"org.freedesktop.UDisks2.Error.DeviceBusy", B_BUSY, EBUSY},
             Row{"org.freedesktop.UDisks2.Error.Timedout", B_TIMED_OUT, ETIMEDOUT},
             Row{"org.freedesktop.UDisks2.Error.Failed", B_IO_ERROR, EIO},
             Row{"org.example.Strange", B_IO_ERROR, EIO},
         }) {
        error = row.error;
        errno = 0;
        EXPECT_EQ(volume.SetName("x"), row.status) << row.error;
        EXPECT_EQ(errno, row.number) << row.error;
        EXPECT_FALSE(Relabel("/", "x"));
        EXPECT_EQ(GetDosErr(0), row.number);
    }
    fService->TakeCalls();
    EXPECT_EQ(volume.SetName("\xFF"), B_BAD_VALUE);
    EXPECT_EQ(volume.SetName(std::string(B_FILE_NAME_LENGTH, 'n').c_str()), B_NAME_TOO_LONG);
    EXPECT_EQ(volume.SetName(nullptr), B_BAD_VALUE);
    EXPECT_EQ(BVolume(dev_for_path("/proc")).SetName("x"), B_NOT_SUPPORTED);
    EXPECT_TRUE(fService->TakeCalls().empty());
    char name[B_FILE_NAME_LENGTH];
    EXPECT_EQ(volume.GetName(name), B_OK);
    EXPECT_STREQ(name, "Before");
}

TEST_F(VolumeLabels, WithoutTheServiceOrABusItFailsAtOnce)
{
    BVolume volume(dev_for_path("/"));
    const bigtime_t before = system_time();
    EXPECT_EQ(volume.SetName("x"), B_NOT_SUPPORTED);
    EXPECT_EQ(errno, EOPNOTSUPP);
    fBus.reset();
    EXPECT_EQ(volume.SetName("x"), B_NOT_SUPPORTED);
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "nonsense", 1);
    EXPECT_EQ(volume.SetName("x"), B_NOT_SUPPORTED);
    EXPECT_LT(system_time() - before, 20'000'000);
    EXPECT_STREQ(GetBootVolumeName(), "Before");
}
