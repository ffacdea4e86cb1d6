// Directories of the installation that programs, libraries and files belong to; indices; attributes
// as files.

#include <FindDirectory.h>
#include <Node.h>
#include <TypeConstants.h>
#include <fs_attr.h>
#include <fs_index.h>
#include <fs_info.h>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/temp_folder.h"

namespace {

std::string path_for(const std::string& file, path_base_directory base, const char* below = nullptr,
                     uint32 flags = 0)
{
    char path[B_PATH_NAME_LENGTH];
    const status_t status = find_path_for_path_etc(file.c_str(), nullptr, nullptr, base, below,
                                                   flags, path, sizeof(path));
    return status == B_OK ? path : status == B_ENTRY_NOT_FOUND ? "none" : "failed";
}

}  // namespace

TEST(FindPath, IsBelowTheInstallationOfTheFile)
{
    TempFolder folder;
    const std::string place = folder.At("/place");
    std::filesystem::create_directories(place + "/bin/tools");
    std::filesystem::create_directories(place + "/share");
    const std::string program = folder.Put("/place/bin/tools/program", "x");
    EXPECT_EQ(place, path_for(program, B_FIND_PATH_INSTALLATION_LOCATION_DIRECTORY));
    EXPECT_EQ(place + "/share/pictures/a.png",
              path_for(program, B_FIND_PATH_DATA_DIRECTORY, "pictures/a.png"));
    EXPECT_EQ(program, path_for(program, B_FIND_PATH_IMAGE_PATH));
    EXPECT_EQ("none", path_for(program, B_FIND_PATH_PACKAGE_PATH));
    EXPECT_EQ(place + "/share",
              path_for(program, B_FIND_PATH_DATA_DIRECTORY, "", B_FIND_PATH_EXISTING_ONLY));
    EXPECT_EQ("none",
              path_for(program, B_FIND_PATH_DATA_DIRECTORY, "x", B_FIND_PATH_EXISTING_ONLY));
    EXPECT_EQ(place + "/lib/add/one", path_for(program, B_FIND_PATH_ADD_ONS_DIRECTORY, "add/one",
                                               B_FIND_PATH_CREATE_PARENT_DIRECTORY));
    EXPECT_TRUE(std::filesystem::is_directory(place + "/lib/add"));
    EXPECT_EQ("failed", path_for(program, B_FIND_PATH_DATA_DIRECTORY, "/absolute"));
    EXPECT_EQ("failed", path_for(program, static_cast<path_base_directory>(77)));
    EXPECT_EQ("/etc", path_for("/usr/bin/env", B_FIND_PATH_SETTINGS_DIRECTORY));
}

TEST(FindPath, KnowsProgramsAndLibrariesByTheirCode)
{
    char path[B_PATH_NAME_LENGTH];
    ASSERT_EQ(B_OK, find_path(nullptr, B_FIND_PATH_IMAGE_PATH, nullptr, path, sizeof(path)));
    EXPECT_EQ(std::filesystem::read_symlink("/proc/self/exe"), path);
    ASSERT_EQ(B_OK, find_path(reinterpret_cast<void*>(&strtol), B_FIND_PATH_IMAGE_PATH, nullptr,
                              path, sizeof(path)));
    EXPECT_NE(std::string::npos, std::string(path).find(".so"));
    EXPECT_EQ(B_ENTRY_NOT_FOUND,
              find_path(path, B_FIND_PATH_IMAGE_PATH, nullptr, path, sizeof(path)))
        << "the stack is no code";
    EXPECT_EQ(B_BUFFER_OVERFLOW, find_path(nullptr, B_FIND_PATH_IMAGE_PATH, nullptr, path, 3));
    EXPECT_EQ(B_BAD_VALUE, find_path(nullptr, B_FIND_PATH_IMAGE_PATH, nullptr, nullptr, 3));
}

TEST(FindPath, ListsAllPlacesTheUsersFirst)
{
    TempFolder folder;
    char** paths = nullptr;
    size_t count = 0;
    ASSERT_EQ(B_OK, find_paths(B_FIND_PATH_BIN_DIRECTORY, "x", &paths, &count));
    ASSERT_EQ(3u, count);
    EXPECT_TRUE(std::string(paths[0]).ends_with("/.local/bin/x"));
    EXPECT_STREQ("/usr/local/bin/x", paths[1]);
    EXPECT_STREQ("/usr/bin/x", paths[2]);
    free(paths);
    ASSERT_EQ(B_OK,
              find_paths_etc(nullptr, B_FIND_PATH_BIN_DIRECTORY, "env",
                             B_FIND_PATH_EXISTING_ONLY | B_FIND_PATHS_SYSTEM_ONLY, &paths, &count));
    EXPECT_EQ(1u, count);
    free(paths);
    EXPECT_EQ(B_ENTRY_NOT_FOUND,
              find_paths_etc(nullptr, B_FIND_PATH_BIN_DIRECTORY, "no such program",
                             B_FIND_PATH_EXISTING_ONLY, &paths, &count));
    EXPECT_EQ(B_BAD_VALUE, find_paths(B_FIND_PATH_BIN_DIRECTORY, "x", nullptr, &count));
}

TEST(Indices, AreNotKeptByTheHost)
{
    const dev_t root = dev_for_path("/");
    index_info info;
    errno = 0;
    EXPECT_EQ(-1, fs_create_index(root, "MAIL:subject", B_STRING_TYPE, 0));
    EXPECT_EQ(EOPNOTSUPP, errno);
    EXPECT_EQ(-1, fs_remove_index(root, nullptr));
    EXPECT_EQ(EINVAL, errno);
    EXPECT_EQ(-1, fs_stat_index(static_cast<dev_t>(-1), "x", &info));
    EXPECT_EQ(ENODEV, errno);
    EXPECT_EQ(nullptr, fs_open_index_dir(root));
    EXPECT_EQ(nullptr, fs_read_index_dir(nullptr));
    EXPECT_EQ(-1, fs_close_index_dir(nullptr));
    fs_rewind_index_dir(nullptr);
}

TEST(AttributeFiles, AreReadAndWrittenAsFiles)
{
    TempFolder folder;
    const std::string path = folder.Put("/file", "content");
    BNode node(path.c_str());
    if (node.WriteAttr("one", B_INT32_TYPE, 0, "1234", 4) != 4)
        GTEST_SKIP() << "no attributes here";
    int fd = fs_open_attr(path.c_str(), "one", B_ANY_TYPE, O_RDWR);
    ASSERT_GE(fd, 0);
    EXPECT_EQ(4, lseek(fd, 0, SEEK_END));
    EXPECT_EQ(4, write(fd, "5678", 4));
    EXPECT_EQ(0, fs_close_attr(fd));
    attr_info info;
    ASSERT_EQ(B_OK, node.GetAttrInfo("one", &info));
    EXPECT_EQ(8, info.size);
    EXPECT_EQ(uint32(B_INT32_TYPE), info.type) << "as it was";

    fd = fs_fopen_attr(node.Dup(), "one", B_RAW_TYPE, O_WRONLY | O_CREAT | O_TRUNC);
    ASSERT_GE(fd, 0);
    EXPECT_EQ(1, write(fd, "9", 1));
    EXPECT_EQ(0, fs_close_attr(fd));
    ASSERT_EQ(B_OK, node.GetAttrInfo("one", &info));
    EXPECT_EQ(1, info.size);
    EXPECT_EQ(uint32(B_RAW_TYPE), info.type);

    fd = fs_open_attr(path.c_str(), "one", B_ANY_TYPE, O_RDONLY);
    EXPECT_EQ(-1, write(fd, "x", 1)) << "for reading only";
    EXPECT_EQ(0, fs_close_attr(fd));
    EXPECT_EQ(-1, fs_close_attr(fd)) << "it is closed";
    EXPECT_EQ(-1, fs_open_attr(path.c_str(), "two", B_ANY_TYPE, O_RDWR));
    EXPECT_EQ(-1, fs_open_attr(path.c_str(), "one", B_ANY_TYPE, O_RDWR | O_CREAT | O_EXCL));
    EXPECT_EQ(EEXIST, errno);
    EXPECT_EQ(-1, fs_open_attr(nullptr, "one", B_ANY_TYPE, O_RDONLY));
    EXPECT_EQ(-1, fs_open_attr(path.c_str(), nullptr, B_ANY_TYPE, O_RDONLY));
    EXPECT_EQ(-1, fs_fopen_attr(-1, "one", B_ANY_TYPE, O_RDONLY));
}
