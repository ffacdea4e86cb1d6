// Volumes, and the mount table that they are read from.

#include <Directory.h>
#include <Entry.h>
#include <Path.h>
#include <Volume.h>
#include <VolumeRoster.h>
#include <fs_info.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <set>
#include <string>

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

#include "storage/volumes/MountTable.h"
#include "support/temp_folder.h"

using namespace storage;

static const char* const kTable =
    "22 27 0:21 / /proc rw,relatime - proc proc rw\n"
    "27 1 8:2 / / rw shared:1 master:2 - ext4 /dev/sda2 rw\n"
    "30 27 8:1 /part /mnt/bind rw - vfat /dev/sda1 rw\n"
    "31 27 8:1 / /media/a\\040stick\\134 ro - vfat /dev/sda1 ro\n"
    "32 27 0:50 / /net rw - nfs4 server:/share rw\n"
    "33 27 8:2 /home /home rw - ext4 /dev/sda2 rw\n"
    "34 27 0:6 / /dev rw - devtmpfs /dev/null rw\n"
    "\nrubbish\n35 27 nonsense / /x rw - ext4 /dev/x rw\n36 27 8:9 / /cut rw - ext4";

TEST(MountTable, LinesAreReadAndRubbishIsLeftOut)
{
    const std::vector<Mount> mounts = parse_mounts(kTable);
    ASSERT_EQ(mounts.size(), 7u);
    EXPECT_EQ(mounts[1].device, makedev(8, 2));
    EXPECT_EQ(mounts[1].type, "ext4");
    EXPECT_EQ(mounts[1].source, "/dev/sda2");
    EXPECT_EQ(mounts[3].point, "/media/a stick\\");
    EXPECT_EQ(mounts[2].root, "/part");
    EXPECT_TRUE(parse_mounts("").empty());
}

TEST(MountTable, VolumesAreBlockDevicesOnceAndTheRoot)
{
    const std::vector<Mount> volumes = volumes_of(parse_mounts(kTable));
    ASSERT_EQ(volumes.size(), 2u);
    EXPECT_EQ(volumes[0].point, "/");
    EXPECT_EQ(volumes[1].point, "/media/a stick\\");  // rather than a part of it
    EXPECT_EQ(volume_name(volumes[1]), "a stick\\");
    EXPECT_EQ(volumes_of(parse_mounts("1 0 0:5 / / rw - overlay overlay rw\n")).size(), 1u);
}

TEST(MountTable, ChangesTellWhatWentAndCame)
{
    std::vector<Mount> before = volumes_of(parse_mounts(kTable));
    std::vector<Mount> after = before;
    EXPECT_TRUE(compare_volumes(before, after).empty());
    after[1].device = makedev(8, 17);
    const std::vector<VolumeChange> changes = compare_volumes(before, after);
    ASSERT_EQ(changes.size(), 2u);
    EXPECT_FALSE(changes[0].mounted);
    EXPECT_EQ(changes[0].mount.device, makedev(8, 1));
    EXPECT_TRUE(changes[1].mounted);
    EXPECT_EQ(changes[1].mount.device, makedev(8, 17));
}

TEST(Volumes, TheBootVolumeHoldsTheRoot)
{
    BVolumeRoster roster;
    BVolume boot;
    ASSERT_EQ(roster.GetBootVolume(&boot), B_OK);
    struct stat info;
    ASSERT_EQ(stat("/", &info), 0);
    EXPECT_EQ(boot.Device(), info.st_dev);
    EXPECT_EQ(dev_for_path("/"), info.st_dev);
    BDirectory root;
    ASSERT_EQ(boot.GetRootDirectory(&root), B_OK);
    EXPECT_TRUE(root.IsRootDirectory());
    struct statvfs numbers;
    ASSERT_EQ(statvfs("/", &numbers), 0);
    EXPECT_EQ(boot.Capacity(), off_t(numbers.f_blocks * numbers.f_frsize));
    EXPECT_LE(boot.FreeBytes(), boot.Capacity());
    char name[B_FILE_NAME_LENGTH] = {};
    EXPECT_EQ(boot.GetName(name), B_OK);
    EXPECT_STRNE(name, "");
    EXPECT_FALSE(boot.IsShared());
    BVolume of_entry;
    EXPECT_EQ(BEntry("/").GetVolume(&of_entry), B_OK);
    EXPECT_TRUE(of_entry == boot);

    std::set<dev_t> devices;
    BVolume volume;
    while (roster.GetNextVolume(&volume) == B_OK)
        EXPECT_TRUE(devices.insert(volume.Device()).second);
    EXPECT_EQ(devices.count(boot.Device()), 1u);
    EXPECT_EQ(roster.GetNextVolume(&volume), B_BAD_VALUE);
    roster.Rewind();
    EXPECT_EQ(roster.GetNextVolume(&volume), B_OK);
    EXPECT_EQ(roster.GetNextVolume(nullptr), B_BAD_VALUE);
    fs_info facts;
    EXPECT_EQ(fs_stat_dev(boot.Device(), &facts), 0);
    EXPECT_STREQ(facts.volume_name, name);
    EXPECT_EQ(facts.total_blocks * facts.block_size, boot.Capacity());
}

TEST(Volumes, FileSystemsOfMemoryAreNotPersistent)
{
    BVolume memory(dev_for_path("/proc"));
    EXPECT_EQ(memory.InitCheck(), B_OK);
    EXPECT_FALSE(memory.IsPersistent());
    EXPECT_FALSE(memory.KnowsAttr());
    TempFolder folder;
    BVolume disk(dev_for_path(folder.Path().c_str()));
    EXPECT_EQ(disk.InitCheck(), B_OK);
    EXPECT_FALSE(disk.IsReadOnly());
}

TEST(Volumes, WhatIsNoneFails)
{
    const dev_t none = makedev(4000, 7);
    BVolume volume(none);
    EXPECT_EQ(volume.InitCheck(), B_ENTRY_NOT_FOUND);
    char name[B_FILE_NAME_LENGTH];
    EXPECT_LT(volume.Capacity(), 0);
    EXPECT_NE(volume.GetName(name), B_OK);
    EXPECT_NE(volume.SetName("x"), B_OK);
    BDirectory root;
    EXPECT_NE(volume.GetRootDirectory(&root), B_OK);
    EXPECT_FALSE(volume.IsPersistent());
    fs_info facts;
    EXPECT_EQ(fs_stat_dev(none, &facts), -1);
    EXPECT_EQ(errno, ENODEV);
    EXPECT_EQ(fs_stat_dev(dev_for_path("/"), nullptr), -1);
    EXPECT_LT(static_cast<int64>(dev_for_path("/none")), 0);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_LT(static_cast<int64>(dev_for_path(nullptr)), 0);
    int32 position = -1;
    EXPECT_LT(static_cast<int64>(next_dev(&position)), 0);
    EXPECT_LT(static_cast<int64>(next_dev(nullptr)), 0);
}
