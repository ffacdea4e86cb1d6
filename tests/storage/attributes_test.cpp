// Attributes: what our programs read back, and what other programs of the host see.

#include <File.h>
#include <Node.h>
#include <String.h>
#include <SymLink.h>
#include <TypeConstants.h>
#include <fs_attr.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "support/temp_folder.h"

namespace {

class Attributes : public testing::Test {
protected:
    Attributes() : fPath(fFolder.Put("/file")), fNode(fPath.c_str()) {}

    // As any other program of the host reads and writes; "none" if it is not there.
    std::string Host(const char* name) const
    {
        char value[70000];
        const ssize_t size = getxattr(fPath.c_str(), name, value, sizeof(value));
        return size < 0 ? "none" : std::string(value, size);
    }
    void SetHost(const char* name, const std::string& value) const
    {
        ASSERT_EQ(setxattr(fPath.c_str(), name, value.data(), value.size(), 0), 0);
    }
    ssize_t Write(const char* name, type_code type, const std::string& bytes)
    {
        return fNode.WriteAttr(name, type, 0, bytes.data(), bytes.size());
    }
    std::string Read(const char* name) const
    {
        char value[70000];
        const ssize_t size = fNode.ReadAttr(name, B_RAW_TYPE, 0, value, sizeof(value));
        return size < 0 ? "none" : std::string(value, size);
    }
    type_code Type(const char* name) const
    {
        attr_info info = {};
        return fNode.GetAttrInfo(name, &info) == B_OK ? info.type : 0;
    }
    std::set<std::string> Names()
    {
        std::set<std::string> names;
        char name[256];
        fNode.RewindAttrs();
        while (fNode.GetNextAttrName(name) == B_OK)
            EXPECT_TRUE(names.insert(name).second) << name;
        return names;
    }

    TempFolder fFolder;
    std::string fPath;
    BNode fNode;
};

std::string bytes_of(const char* text, size_t size) { return std::string(text, size); }

}  // namespace

TEST_F(Attributes, ValueAndTypeComeBackForEveryKindOfValue)
{
    const struct {
        type_code type;
        std::string value;
    } kRows[] = {
        {B_STRING_TYPE, bytes_of("plain text", 11)},
        {B_STRING_TYPE, bytes_of("no terminator", 13)},
        {B_STRING_TYPE, bytes_of("two\0\0", 5)},
        {B_STRING_TYPE, bytes_of("inner\0zero\0", 11)},
        {B_STRING_TYPE, bytes_of("\xC3\xA4\xFF\0", 4)},
        {B_STRING_TYPE, bytes_of("\0", 1)},
        {B_STRING_TYPE, ""},
        {B_MIME_STRING_TYPE, bytes_of("text/plain", 11)},
        {B_MIME_STRING_TYPE, "text/plain"},
        {B_RAW_TYPE, bytes_of("\0\1\2\xFF", 4)},
        {B_RAW_TYPE, "looks like text"},
        {B_RAW_TYPE, bytes_of("ends in zero\0", 13)},
        {B_INT32_TYPE, bytes_of("\x2A\0\0\0", 4)},
        {B_DOUBLE_TYPE, bytes_of("ABCDEFGH", 8)},
        {0, "type without letters"},
        {0xFFFFFFFF, "+0"},
        {'a b+', "0x00000000+0"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.value);
        // Also over each other: nothing of the former value may stay.
        for (const auto& former : kRows) {
            ASSERT_EQ(Write("it", former.type, former.value),
                      static_cast<ssize_t>(former.value.size()));
            ASSERT_EQ(Write("it", row.type, row.value), static_cast<ssize_t>(row.value.size()));
            attr_info info;
            ASSERT_EQ(fNode.GetAttrInfo("it", &info), B_OK);
            EXPECT_EQ(info.type, row.type);
            EXPECT_EQ(info.size, static_cast<off_t>(row.value.size()));
            EXPECT_EQ(Read("it"), row.value);
        }
    }
    EXPECT_EQ(Names(), std::set<std::string>{"it"});
}

TEST_F(Attributes, OtherProgramsSeePlainTextAndTheTypesOfTheRest)
{
    BString text("read by others");
    EXPECT_EQ(fNode.WriteAttrString("xdg.comment", &text), B_OK);
    EXPECT_EQ(Host("user.xdg.comment"), "read by others");
    EXPECT_EQ(Host("user.beos-type.xdg.comment"), "none");

    Write("BEOS:TYPE", B_MIME_STRING_TYPE, bytes_of("image/png", 10));
    EXPECT_EQ(Host("user.mime_type"), "image/png");
    EXPECT_EQ(Host("user.beos-type.mime_type"), "none");

    Write("count", B_INT32_TYPE, bytes_of("\1\0\0\0", 4));
    EXPECT_EQ(Host("user.count"), bytes_of("\1\0\0\0", 4));
    EXPECT_EQ(Host("user.beos-type.count"), "LONG");
    Write("odd", 0x10203040, "x");
    EXPECT_EQ(Host("user.beos-type.odd"), "0x10203040");
    Write("kind", B_MIME_STRING_TYPE, bytes_of("a/b", 4));
    EXPECT_EQ(Host("user.kind"), "a/b");
    EXPECT_EQ(Host("user.beos-type.kind"), "MIMS+0");
    const std::set<std::string> names = {"xdg.comment", "BEOS:TYPE", "count", "odd", "kind"};
    EXPECT_EQ(Names(), names);
}

TEST_F(Attributes, WhatOtherProgramsWroteIsTextOrRaw)
{
    SetHost("user.comment", "by another");
    EXPECT_EQ(Type("comment"), static_cast<type_code>(B_STRING_TYPE));
    EXPECT_EQ(Read("comment"), bytes_of("by another", 11));
    BString text;
    EXPECT_EQ(fNode.ReadAttrString("comment", &text), B_OK);
    EXPECT_STREQ(text.String(), "by another");

    SetHost("user.binary", bytes_of("\0\1", 2));
    EXPECT_EQ(Type("binary"), static_cast<type_code>(B_RAW_TYPE));
    EXPECT_EQ(Read("binary"), bytes_of("\0\1", 2));
    SetHost("user.mime_type", "text/html");
    EXPECT_EQ(Type("BEOS:TYPE"), static_cast<type_code>(B_MIME_STRING_TYPE));
    EXPECT_EQ(Read("BEOS:TYPE"), bytes_of("text/html", 10));

    // A new value under our type, a companion that is none, and one whose value is gone.
    Write("kind", B_MIME_STRING_TYPE, bytes_of("a/b", 4));
    SetHost("user.kind", "c/d");
    EXPECT_EQ(Read("kind"), bytes_of("c/d", 4));
    SetHost("user.beos-type.comment", "nonsense");
    EXPECT_EQ(Type("comment"), static_cast<type_code>(B_STRING_TYPE));
    SetHost("user.beos-type.orphan", "LONG");
    EXPECT_EQ(Names(), (std::set<std::string>{"comment", "binary", "BEOS:TYPE", "kind"}));
    EXPECT_EQ(fNode.RemoveAttr("kind"), B_OK);
    EXPECT_EQ(Host("user.beos-type.kind"), "none");
}

TEST_F(Attributes, OffsetsReadAndWriteParts)
{
    char buffer[16] = {};
    Write("it", B_RAW_TYPE, "0123456789");
    EXPECT_EQ(fNode.ReadAttr("it", B_RAW_TYPE, 7, buffer, sizeof(buffer)), 3);
    EXPECT_STREQ(buffer, "789");
    EXPECT_EQ(fNode.ReadAttr("it", B_RAW_TYPE, 10, buffer, sizeof(buffer)), 0);
    EXPECT_EQ(fNode.ReadAttr("it", B_RAW_TYPE, 4, nullptr, 0), 0);
    EXPECT_EQ(fNode.WriteAttr("it", B_RAW_TYPE, 3, "xyz", 3), 3);
    EXPECT_EQ(Read("it"), "012xyz6789");
    EXPECT_EQ(fNode.WriteAttr("it", B_RAW_TYPE, 12, "end", 3), 3);
    EXPECT_EQ(Read("it"), bytes_of("012xyz6789\0\0end", 15));
    EXPECT_EQ(fNode.WriteAttr("it", B_RAW_TYPE, 0, "new", 3), 3);
    EXPECT_EQ(Read("it"), "new");
    EXPECT_EQ(fNode.WriteAttr("fresh", B_STRING_TYPE, 2, "c", 2), 2);
    EXPECT_EQ(Read("fresh"), bytes_of("\0\0c\0", 4));
}

TEST_F(Attributes, RenameCarriesTheTypeAndReplaces)
{
    Write("old", B_INT32_TYPE, bytes_of("\7\0\0\0", 4));
    Write("new", B_STRING_TYPE, bytes_of("replaced", 9));
    EXPECT_EQ(fNode.RenameAttr("old", "new"), B_OK);
    EXPECT_EQ(Read("new"), bytes_of("\7\0\0\0", 4));
    EXPECT_EQ(Type("new"), static_cast<type_code>(B_INT32_TYPE));
    EXPECT_EQ(fNode.RenameAttr("new", "new"), B_OK);
    EXPECT_EQ(Names(), std::set<std::string>{"new"});
    EXPECT_EQ(fNode.RenameAttr("old", "other"), B_ENTRY_NOT_FOUND);
}

TEST_F(Attributes, BadNamesAndArgumentsAreRefused)
{
    char buffer[256];
    const std::string longest(250, 'n'), too_long(251, 'n');
    for (const char* name : {static_cast<const char*>(nullptr), "", "beos-type.count"}) {
        EXPECT_EQ(Write(name, B_RAW_TYPE, "x"), B_BAD_VALUE);
        EXPECT_EQ(fNode.ReadAttr(name, B_RAW_TYPE, 0, buffer, 1), B_BAD_VALUE);
        EXPECT_EQ(fNode.RemoveAttr(name), B_BAD_VALUE);
        EXPECT_EQ(errno, EINVAL);
    }
    EXPECT_EQ(Write(longest.c_str(), B_STRING_TYPE, bytes_of("x", 2)), 2);
    EXPECT_EQ(Names(), std::set<std::string>{longest});
    EXPECT_EQ(Write(longest.c_str(), B_INT32_TYPE, "x"), B_NAME_TOO_LONG);
    EXPECT_EQ(Read(longest.c_str()), bytes_of("x", 2));
    EXPECT_EQ(Write(too_long.c_str(), B_STRING_TYPE, "x"), B_NAME_TOO_LONG);
    EXPECT_EQ(errno, ENAMETOOLONG);
    // Every byte that a name can have.
    for (int byte = 1; byte < 256; byte++) {
        const char name[] = {'n', static_cast<char>(byte), '\0'};
        ASSERT_EQ(Write(name, B_RAW_TYPE, name), 2) << byte;
        ASSERT_EQ(Read(name), name);
        ASSERT_EQ(fNode.RemoveAttr(name), B_OK);
    }

    EXPECT_EQ(fNode.ReadAttr("none", B_RAW_TYPE, 0, buffer, 1), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(errno, ENODATA);
    EXPECT_EQ(fNode.RemoveAttr("none"), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(fNode.ReadAttr("x", B_RAW_TYPE, -1, buffer, 1), B_BAD_VALUE);
    EXPECT_EQ(fNode.WriteAttr("x", B_RAW_TYPE, INT64_MIN, "x", 1), B_BAD_VALUE);
    EXPECT_EQ(fNode.WriteAttr("x", B_RAW_TYPE, 0, nullptr, 1), B_BAD_VALUE);
    EXPECT_EQ(fNode.WriteAttr("x", B_RAW_TYPE, INT64_MAX, "x", 1), B_TOO_MANY_ARGS);
    EXPECT_EQ(fNode.WriteAttr("x", B_RAW_TYPE, 0, "x", SIZE_MAX), B_TOO_MANY_ARGS);
    EXPECT_EQ(fNode.GetAttrInfo("x", nullptr), B_BAD_VALUE);
    EXPECT_EQ(fNode.GetNextAttrName(nullptr), B_BAD_VALUE);
    EXPECT_EQ(fNode.ReadAttrString("x", nullptr), B_BAD_VALUE);
    BNode unset;
    EXPECT_EQ(unset.WriteAttr("x", B_RAW_TYPE, 0, "x", 1), B_FILE_ERROR);
    EXPECT_EQ(unset.GetNextAttrName(buffer), B_FILE_ERROR);
}

// The host's file systems draw the line at a block, at 64 KB, or somewhere between.
TEST_F(Attributes, SixtyFourKilobytesFitOrFailWithoutATrace)
{
    const std::string most(64 * 1024, 'm'), more(64 * 1024 + 1, 'm');
    for (const char* base : {"/tmp", "/dev/shm"}) {
        if (access(base, W_OK) != 0)
            continue;
        SCOPED_TRACE(base);
        TempFolder folder(base);
        fPath = folder.Put("/file");
        fNode.SetTo(fPath.c_str());
        if (Write("it", B_INT32_TYPE, "four") == B_NOT_SUPPORTED)
            continue;
        EXPECT_EQ(Write("it", B_RAW_TYPE, more), B_TOO_MANY_ARGS);
        EXPECT_EQ(errno, E2BIG);
        const ssize_t written = Write("it", B_RAW_TYPE, most);
        if (written < 0) {
            EXPECT_EQ(written, B_DEVICE_FULL);
            EXPECT_EQ(errno, ENOSPC);
            EXPECT_EQ(Read("it"), "four");
            EXPECT_EQ(Type("it"), static_cast<type_code>(B_INT32_TYPE));
            EXPECT_EQ(Write("fresh", B_RAW_TYPE, most), B_DEVICE_FULL);
            EXPECT_EQ(Names(), std::set<std::string>{"it"});
            EXPECT_EQ(Host("user.beos-type.fresh"), "none");
        } else {
            EXPECT_EQ(Read("it"), most);
            EXPECT_EQ(Type("it"), static_cast<type_code>(B_RAW_TYPE));
        }
    }
}

TEST_F(Attributes, WhereTheFileSystemKeepsNoneOnlyTheyFail)
{
    BNode node("/proc/self/status");
    ASSERT_EQ(node.InitCheck(), B_OK);
    EXPECT_TRUE(node.IsFile());
    char buffer[256];
    EXPECT_EQ(node.WriteAttr("x", B_STRING_TYPE, 0, "x", 2), B_NOT_SUPPORTED);
    EXPECT_EQ(errno, EOPNOTSUPP);
    EXPECT_EQ(node.ReadAttr("x", B_STRING_TYPE, 0, buffer, 2), B_NOT_SUPPORTED);
    EXPECT_LT(node.GetNextAttrName(buffer), B_OK);

    ASSERT_EQ(symlink("file", fFolder.At("/link").c_str()), 0);
    BSymLink link(fFolder.At("/link").c_str());
    EXPECT_LT(link.WriteAttr("x", B_STRING_TYPE, 0, "x", 2), B_OK);
    EXPECT_EQ(Names(), std::set<std::string>());
}

TEST_F(Attributes, FollowTheNodeWhereverItsEntryGoes)
{
    Write("it", B_STRING_TYPE, bytes_of("kept", 5));
    ASSERT_EQ(rename(fPath.c_str(), fFolder.At("/elsewhere").c_str()), 0);
    EXPECT_EQ(Read("it"), bytes_of("kept", 5));
    ASSERT_EQ(unlink(fFolder.At("/elsewhere").c_str()), 0);
    EXPECT_EQ(Write("it", B_STRING_TYPE, "x"), 1);
    BNode copy(fNode);
    EXPECT_TRUE(copy == fNode);
    fNode.Unset();
    char byte;
    EXPECT_EQ(copy.ReadAttr("it", B_STRING_TYPE, 0, &byte, 1), 1);
}

TEST_F(Attributes, PlainCallsGoByDescriptor)
{
    const int fd = open(fPath.c_str(), O_RDONLY);
    EXPECT_EQ(fs_write_attr(fd, "one", B_INT32_TYPE, 0, "1234", 4), 4);
    EXPECT_EQ(fs_write_attr(fd, "two", B_STRING_TYPE, 0, "text", 5), 5);
    attr_info info;
    EXPECT_EQ(fs_stat_attr(fd, "one", &info), 0);
    EXPECT_EQ(info.type, static_cast<uint32>(B_INT32_TYPE));
    char buffer[8];
    EXPECT_EQ(fs_read_attr(fd, "two", B_STRING_TYPE, 0, buffer, sizeof(buffer)), 5);
    for (DIR* list : {fs_open_attr_dir(fPath.c_str()), fs_fopen_attr_dir(fd)}) {
        ASSERT_NE(list, nullptr);
        std::set<std::string> names;
        while (struct dirent* record = fs_read_attr_dir(list))
            names.insert(record->d_name);
        EXPECT_EQ(names, (std::set<std::string>{"one", "two"}));
        fs_rewind_attr_dir(list);
        EXPECT_NE(fs_read_attr_dir(list), nullptr);
        EXPECT_EQ(fs_close_attr_dir(list), 0);
    }
    EXPECT_EQ(fs_remove_attr(fd, "one"), 0);
    EXPECT_EQ(fs_remove_attr(fd, "one"), -1);
    close(fd);
    EXPECT_EQ(fs_read_attr(-1, "two", B_STRING_TYPE, 0, buffer, 1), -1);
    EXPECT_EQ(fs_open_attr_dir("/none"), nullptr);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(fs_fopen_attr_dir(-1), nullptr);
}
