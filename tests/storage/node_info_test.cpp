// What files and executables say of themselves, and the icons that go with it.

#include <gtest/gtest.h>

#include <AppFileInfo.h>
#include <Bitmap.h>
#include <Directory.h>
#include <Entry.h>
#include <File.h>
#include <Message.h>
#include <Mime.h>
#include <NodeInfo.h>
#include <Path.h>
#include <Roster.h>
#include <TypeConstants.h>
#include <Volume.h>
#include <VolumeRoster.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <string>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <glib.h>

#include <Injection.h>
#include <interface/drawing/SharpPicture.h>

#include "support/command.h"
#include "support/desktop_folder.h"

static BBitmap icon_bitmap(icon_size size, color_space space = B_RGBA32)
{
    const float last = static_cast<float>(size - 1);
    return BBitmap(BRect(0, 0, last, last), space);
}

static uint32 pixel_at(const BBitmap& bitmap, int x, int y)
{
    uint32 pixel = 0;
    const auto* bits = static_cast<const uint8*>(bitmap.Bits()) + y * bitmap.BytesPerRow();
    if (bitmap.ColorSpace() == B_CMAP8)
        return bits[x];
    memcpy(&pixel, bits + x * 4, 4);
    return pixel;
}

// Opaque red on the left half, transparent on the right.
static BBitmap red_half(icon_size size)
{
    BBitmap bitmap = icon_bitmap(size);
    for (int y = 0; y < size; y++) {
        auto* row = reinterpret_cast<uint32*>(static_cast<uint8*>(bitmap.Bits()) +
                                              y * bitmap.BytesPerRow());
        for (int x = 0; x < size; x++)
            row[x] = x < size / 2 ? 0xFFFF0000 : 0;
    }
    return bitmap;
}

static bool is_red_half(const BBitmap& bitmap)
{
    const int last = bitmap.Bounds().IntegerWidth();
    return pixel_at(bitmap, 0, 0) == 0xFFFF0000 && pixel_at(bitmap, 0, last) == 0xFFFF0000 &&
           pixel_at(bitmap, last, 0) >> 24 == 0;
}

static bool is_blank(const BBitmap& bitmap)
{
    for (int y = 0; y <= bitmap.Bounds().IntegerHeight(); y++) {
        for (int x = 0; x <= bitmap.Bounds().IntegerWidth(); x++) {
            if (bitmap.ColorSpace() == B_CMAP8 ? pixel_at(bitmap, x, y) != 255
                                               : pixel_at(bitmap, x, y) >> 24 != 0)
                return false;
        }
    }
    return true;
}

// As another program reads it.
static std::string host_value(const std::string& attribute, const std::string& path)
{
    return output_of("getfattr --absolute-names --only-values -n " + attribute + " " + path);
}

static std::string type_of(const std::string& path)
{
    BNode node(path.c_str());
    char type[B_MIME_TYPE_LENGTH] = "";
    return BNodeInfo(&node).GetType(type) == B_OK ? type : "";
}

TEST(NodeInfo, TypeIsTheOneSetElseWhatTheDesktopGuesses)
{
    DesktopFolder folder;
    const std::string file = folder.Put("/a.png", "no picture");
    EXPECT_EQ(type_of(file), "image/png");
    EXPECT_EQ(type_of(folder.Put("/b", "#!/bin/sh\n")), "application/x-shellscript");
    EXPECT_EQ(type_of(folder.Put("/c")), "application/x-zerosize");
    EXPECT_EQ(type_of(folder.Put("/empty.html")), "text/html");  // which has a second type, too
    EXPECT_EQ(type_of(folder.Path()), "inode/directory");
    mkfifo(folder.At("/pipe").c_str(), 0600);
    EXPECT_EQ(type_of(folder.At("/pipe")), "inode/fifo");
    symlink("a.png", folder.At("/link").c_str());
    EXPECT_EQ(type_of(folder.At("/link")), "inode/symlink");
    for (const char* name :
         {"/x.tar.gz", "/Makefile", "/\xff\xfe.txt", "/a b.C", "/none.\xc3\xa9"}) {
        const std::string path = folder.Put(name, "text\n");
        EXPECT_EQ("  standard::content-type: " + type_of(path),
                  output_of("gio info -a standard::content-type '" + path + "' | tail -1"));
    }

    BNode node(file.c_str());
    BNodeInfo info(&node);
    EXPECT_EQ(info.SetType("text/x-mine"), B_OK);
    EXPECT_EQ(type_of(file), "text/x-mine");
    EXPECT_EQ(host_value("user.mime_type", file), "text/x-mine");
    output_of("setfattr -n user.mime_type -v audio/mpeg " + file);
    EXPECT_EQ(type_of(file), "audio/mpeg");
    for (const std::string& bad : {std::string("no type"), std::string(300, 'x')}) {
        EXPECT_EQ(info.SetType(bad.c_str()), B_BAD_VALUE);
        setxattr(file.c_str(), "user.mime_type", bad.data(), bad.size(), 0);
        EXPECT_EQ(type_of(file), "image/png") << bad;
    }
    EXPECT_EQ(info.SetType(nullptr), B_OK);
    EXPECT_EQ(info.SetType(nullptr), B_OK);
    EXPECT_EQ(getxattr(file.c_str(), "user.mime_type", nullptr, 0), -1);
}

TEST(NodeInfo, WhatNamesNothingIsRefused)
{
    BNode unset;
    BNodeInfo info;
    char text[B_MIME_TYPE_LENGTH];
    EXPECT_EQ(info.InitCheck(), B_NO_INIT);
    EXPECT_EQ(info.GetType(text), B_NO_INIT);
    EXPECT_EQ(info.SetTo(nullptr), B_BAD_VALUE);
    EXPECT_EQ(info.SetTo(&unset), B_BAD_VALUE);
    EXPECT_EQ(info.SetType("text/plain"), B_NO_INIT);
    EXPECT_EQ(info.GetPreferredApp(text), B_NO_INIT);
    EXPECT_EQ(info.GetTrackerIcon(nullptr), B_NO_INIT);
    entry_ref none;
    BBitmap icon = icon_bitmap(B_MINI_ICON);
    EXPECT_NE(BNodeInfo::GetTrackerIcon(&none, &icon, B_MINI_ICON), B_OK);
}

TEST(NodeInfo, NodesDeeperThanAnyPathAndThoseThatAreGoneHaveTypesToo)
{
    DesktopFolder folder;
    ASSERT_EQ(chdir(folder.Path().c_str()), 0);
    const std::string name(200, 'n');
    for (int depth = 0; depth < 25; depth++)
        ASSERT_TRUE(mkdir(name.c_str(), 0755) == 0 && chdir(name.c_str()) == 0);
    std::ofstream("page") << "<html>";
    ASSERT_EQ(mkdir("dir", 0755), 0);
    BBitmap icon = icon_bitmap(B_MINI_ICON);
    const char* const types[] = {"text/html", "inode/directory"};
    const char* const names[] = {"page", "dir"};
    for (int i = 0; i < 2; i++) {
        BNode node(names[i]);
        BNodeInfo info(&node);
        char type[B_MIME_TYPE_LENGTH];
        for (bool gone : {false, true}) {
            EXPECT_EQ(info.GetType(type), B_OK);
            EXPECT_STREQ(type, types[i]) << gone;
            EXPECT_EQ(info.GetTrackerIcon(&icon, B_MINI_ICON), B_OK);
            EXPECT_TRUE(gone || std::filesystem::remove(names[i]));
        }
    }
    EXPECT_EQ(type_of(folder.At("/" + name)), "inode/directory");
}

TEST(NodeInfo, FileSystemWithoutAttributesSaysSo)
{
    DesktopFolder folder;
    BNode node("/proc/self/status");
    BNodeInfo info(&node);
    char text[B_MIME_TYPE_LENGTH];
    EXPECT_EQ(info.GetType(text), B_OK);
    EXPECT_EQ(info.SetType("text/plain"), B_NOT_SUPPORTED);
    EXPECT_EQ(errno, EOPNOTSUPP);
}

TEST(NodeInfo, PreferredAppAndHintStayWithTheFile)
{
    DesktopFolder folder;
    const std::string file = folder.Put("/file.txt");
    const std::string app = folder.Put("/an app \xff");
    BNode node(file.c_str());
    BNodeInfo info(&node);
    char signature[B_MIME_TYPE_LENGTH];
    entry_ref ref;
    EXPECT_EQ(info.GetPreferredApp(signature), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(info.GetAppHint(&ref), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(info.SetPreferredApp("application/x-vnd.Be-STEE"), B_OK);
    EXPECT_EQ(output_of("getfattr -d --absolute-names " + file),
              "# file: " + file + "\nuser.BEOS:PREF_APP=\"application/x-vnd.Be-STEE\"\n");
    EXPECT_EQ(info.GetPreferredApp(signature), B_OK);
    EXPECT_STREQ(signature, "application/x-vnd.Be-STEE");
    EXPECT_EQ(info.SetPreferredApp("bad app"), B_BAD_VALUE);
    const std::string longer(B_MIME_TYPE_LENGTH, 'x');
    setxattr(file.c_str(), "user.BEOS:PREF_APP", longer.data(), longer.size(), 0);
    EXPECT_EQ(info.GetPreferredApp(signature), B_BAD_DATA);
    EXPECT_EQ(info.SetPreferredApp(nullptr), B_OK);
    EXPECT_EQ(get_ref_for_path(app.c_str(), &ref), B_OK);
    EXPECT_EQ(info.SetAppHint(&ref), B_OK);
    entry_ref back;
    EXPECT_EQ(info.GetAppHint(&back), B_OK);
    EXPECT_EQ(back, ref);
    EXPECT_EQ(info.SetAppHint(nullptr), B_OK);
    EXPECT_EQ(info.GetAppHint(&back), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(output_of("getfattr -d " + file), "");
}

TEST(NodeInfo, IconsStayWithTheFileIn256Colours)
{
    DesktopFolder folder;
    const std::string file = folder.Put("/file.txt");
    BNode node(file.c_str());
    BNodeInfo info(&node);
    for (const icon_size size : {B_MINI_ICON, B_LARGE_ICON}) {
        const BBitmap red = red_half(size);
        BBitmap back = icon_bitmap(size);
        EXPECT_EQ(info.GetIcon(&back, size), B_ENTRY_NOT_FOUND);
        EXPECT_EQ(info.SetIcon(&red, size), B_OK);
        EXPECT_EQ(info.GetIcon(&back, size), B_OK);
        EXPECT_TRUE(is_red_half(back));
        BBitmap indexed = icon_bitmap(size, B_CMAP8);
        EXPECT_EQ(info.GetTrackerIcon(&indexed, size), B_OK);
        EXPECT_EQ(pixel_at(indexed, size - 1, 0), 255u);
        EXPECT_NE(pixel_at(indexed, 0, 0), 255u);
        attr_info attribute;
        EXPECT_EQ(node.GetAttrInfo(size == B_MINI_ICON ? "BEOS:M:STD_ICON" : "BEOS:L:STD_ICON",
                                   &attribute),
                  B_OK);
        EXPECT_EQ(attribute.size, size * size);
        EXPECT_EQ(attribute.type, static_cast<type_code>(size == B_MINI_ICON ? 'MICN' : 'ICON'));
        EXPECT_EQ(info.SetIcon(nullptr, size), B_OK);
    }
    BBitmap wrong = icon_bitmap(B_MINI_ICON);
    EXPECT_EQ(info.SetIcon(&wrong, B_LARGE_ICON), B_BAD_VALUE);
    EXPECT_EQ(info.GetIcon(&wrong, static_cast<icon_size>(17)), B_BAD_VALUE);
    EXPECT_EQ(info.GetIcon(nullptr, B_MINI_ICON), B_BAD_VALUE);
    const uint8 data[] = {'n', 'c', 'i', 'f', 0};
    EXPECT_EQ(info.SetIcon(data, sizeof(data)), B_OK);
    uint8* read = nullptr;
    size_t size = 0;
    type_code type = 0;
    EXPECT_EQ(info.GetIcon(&read, &size, &type), B_OK);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(read), size), std::string("ncif\0", 5));
    EXPECT_EQ(type, static_cast<type_code>(B_VECTOR_ICON_TYPE));
    delete[] read;
}

TEST(Icons, TypesHaveTheThemesIconsForTheirKindToo)
{
    DesktopFolder folder;
    for (const char* type :
         {"text/plain", "image/png", "text/x-python", "inode/directory", "text"}) {
        for (const icon_size size : {B_MINI_ICON, B_LARGE_ICON}) {
            for (const color_space space : {B_CMAP8, B_RGBA32, B_RGB32}) {
                BBitmap icon = icon_bitmap(size, space);
                EXPECT_EQ(BMimeType(type).GetIcon(&icon, size), B_OK) << type;
                EXPECT_FALSE(is_blank(icon)) << type;
            }
        }
    }
    BBitmap icon = icon_bitmap(B_MINI_ICON);
    EXPECT_EQ(BMimeType("x-nothing/known").GetIcon(&icon, B_MINI_ICON), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(BMimeType("x-nothing/known").Install(), B_OK);
    EXPECT_EQ(BMimeType("x-nothing/known").GetIcon(&icon, B_MINI_ICON), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(BMimeType("text/plain").GetIcon(&icon, B_LARGE_ICON), B_BAD_VALUE);
    EXPECT_EQ(BMimeType("text/plain").GetIcon(static_cast<BBitmap*>(nullptr), B_MINI_ICON),
              B_BAD_VALUE);
}

TEST(Icons, InstalledTypesHaveNoIconOfTheirKindButFilesShowIt)
{
    DesktopFolder folder;
    BMimeType type("text/x-freshly-installed");
    ASSERT_EQ(type.Install(), B_OK);
    BMessage extensions;
    extensions.AddString("extensions", "fresh");
    type.SetFileExtensions(&extensions);
    for (const icon_size size : {B_MINI_ICON, B_LARGE_ICON}) {
        BBitmap icon = icon_bitmap(size), kind = icon_bitmap(size);
        EXPECT_EQ(type.GetIcon(&icon, size), B_ENTRY_NOT_FOUND);
        EXPECT_TRUE(is_blank(icon));
        BNode node(folder.Put("/a.fresh", "x").c_str());
        EXPECT_EQ(BNodeInfo(&node).GetTrackerIcon(&icon, size), B_OK);
        EXPECT_EQ(BMimeType("text").GetIcon(&kind, size), B_OK);
        EXPECT_EQ(memcmp(icon.Bits(), kind.Bits(), static_cast<size_t>(icon.BitsLength())), 0);
    }
    for (const icon_size size : {B_MINI_ICON, B_LARGE_ICON}) {
        BBitmap icon = icon_bitmap(size);
        const BBitmap red = red_half(size);
        EXPECT_EQ(type.SetIcon(&red, size), B_OK);
        EXPECT_EQ(type.GetIcon(&icon, size), B_OK);
        EXPECT_TRUE(is_red_half(icon));
    }
}

TEST(Icons, IconThatIsSetReachesTheDesktopAndGoesAgain)
{
    DesktopFolder folder;
    BMimeType type("text/plain");
    BBitmap before = icon_bitmap(B_LARGE_ICON);
    EXPECT_EQ(type.GetIcon(&before, B_LARGE_ICON), B_OK);
    for (const icon_size size : {B_MINI_ICON, B_LARGE_ICON}) {
        const BBitmap red = red_half(size);
        EXPECT_EQ(type.SetIcon(&red, size), B_OK);
        BBitmap back = icon_bitmap(size);
        EXPECT_EQ(type.GetIcon(&back, size), B_OK);
        EXPECT_TRUE(is_red_half(back));
    }
    const std::string file = folder.Put("/a.txt", "x");
    const std::string icons = output_of("gio info -a standard::icon " + file + " | tail -1");
    EXPECT_EQ(icons.find("  standard::icon: beos-text-plain, "), 0u) << icons;
    EXPECT_TRUE(std::filesystem::exists(
        folder.At("/home/data/icons/hicolor/32x32/mimetypes/beos-text-plain.png")));
    EXPECT_EQ(type.SetIcon(nullptr, B_MINI_ICON), B_OK);
    EXPECT_EQ(type.SetIcon(nullptr, B_LARGE_ICON), B_OK);
    BBitmap after = icon_bitmap(B_LARGE_ICON);
    EXPECT_EQ(type.GetIcon(&after, B_LARGE_ICON), B_OK);
    EXPECT_EQ(memcmp(after.Bits(), before.Bits(), static_cast<size_t>(after.BitsLength())), 0);
    EXPECT_EQ(output_of("gio info -a standard::icon " + file + " | grep -o beos"), "");
}

TEST(Icons, UsersThemeIsAskedFirstAndItsDrawingsToo)
{
    DesktopFolder folder;
    namespace fs = std::filesystem;
    const std::string theme = "/home/data/icons/mine";
    fs::create_directories(folder.At(theme + "/any/mimetypes"));
    fs::create_directories(folder.At("/home/config/gtk-3.0"));
    folder.Put("/home/config/gtk-3.0/settings.ini", "[Settings]\ngtk-icon-theme-name=mine\n");
    folder.Put(theme + "/index.theme",
               "[Icon Theme]\nName=Mine\nInherits=Adwaita\n"
               "Directories=any/mimetypes\n[any/mimetypes]\nSize=48\nType=Scalable\nMinSize=8\n"
               "MaxSize=256\n");
    folder.Put(theme + "/any/mimetypes/text-plain.svg",
               "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 64 64'>"
               "<rect width='32' height='64' fill='#ff0000'/></svg>");
    folder.Put(theme + "/any/mimetypes/image-png.svg", "no drawing");
    folder.Put(theme + "/any/mimetypes/audio-mpeg.svg",
               "<svg xmlns='http://www.w3.org/2000/svg' "
               "viewBox='0 0 64 64'><text x='1' y='30'>Text</text></svg>");
    for (const icon_size size : {B_MINI_ICON, B_LARGE_ICON}) {
        BBitmap icon = icon_bitmap(size);
        EXPECT_EQ(BMimeType("text/plain").GetIcon(&icon, size), B_OK);
        EXPECT_TRUE(is_red_half(icon));
        EXPECT_EQ(BMimeType("image/png").GetIcon(&icon, size), B_OK);  // the theme's next name
        EXPECT_EQ(BMimeType("audio/mpeg").GetIcon(&icon, size), B_OK);
        EXPECT_EQ(get_named_icon("text-plain", &icon, size), B_OK);
        EXPECT_EQ(get_named_icon("../mimetypes/text-plain", &icon, size), B_ENTRY_NOT_FOUND);
        EXPECT_EQ(get_named_icon("no-such-icon", &icon, size), B_ENTRY_NOT_FOUND);
    }
    // On a screen of more pixels a drawing has them.
    inject_display_scale(2);
    BBitmap icon = icon_bitmap(B_MINI_ICON);
    EXPECT_EQ(BMimeType("text/plain").GetIcon(&icon, B_MINI_ICON), B_OK);
    const auto pixels = BPrivate::sharp_pixels(icon, 30, 30);
    inject_display_scale(1);
    ASSERT_NE(pixels, nullptr);
    EXPECT_EQ((*pixels)[14], 0xFFFF0000u);
    EXPECT_EQ((*pixels)[15] >> 24, 0u);
}

static const std::string kSvg =
    "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 64 64' "
    "xmlns:xlink='http://www.w3.org/1999/xlink'>";
static const std::string kRedRect = "<rect id='r' width='32' height='64' fill='#ff0000'/>";

static std::string image(const std::string& address)
{
    return kSvg + "<image width='64' height='64' xlink:href='" + address + "'/>" + kRedRect +
           "</svg>";
}

static std::string as_data(const char* type, const std::string& bytes)
{
    char* text = g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size());
    const std::string address = std::string("data:") + type + ";base64," + text;
    g_free(text);
    return address;
}

// A PNG file that says how large it is, and no more.
static std::string png_of_size(uint32 side)
{
    const auto number = [](uint32 value) {
        std::string bytes;
        for (int shift = 24; shift >= 0; shift -= 8)
            bytes += static_cast<char>(value >> shift);
        return bytes;
    };
    const std::string head =
        "IHDR" + number(side) + number(side) + std::string("\x08\x06\0\0\0", 5);
    uint32 sum = 0xFFFFFFFF;
    for (const char c : head) {
        sum ^= static_cast<uint8>(c);
        for (int bit = 0; bit < 8; bit++)
            sum = sum >> 1 ^ (sum & 1 ? 0xEDB88320 : 0);
    }
    return "\x89PNG\r\n\x1A\n" + number(13) + head + number(~sum);
}

static std::string repeated(int count, const std::string& text)
{
    std::string all;
    for (int i = 0; i < count; i++)
        all += text;
    return all;
}

// Each draws the one before twice.
static std::string doubling(int levels)
{
    std::string text = kSvg + "<g id='g0'>" + kRedRect + "</g>";
    for (int i = 1; i <= levels; i++) {
        const std::string use = "<use xlink:href='#g" + std::to_string(i - 1) + "'/>";
        text += "<g id='g" + std::to_string(i) + "'>" + use + use + "</g>";
    }
    return text + "</svg>";
}

static std::string utf16(const std::string& text)
{
    std::string wide = "\xFF\xFE";
    for (const char c : text)
        wide.append(1, c).append(1, '\0');
    return wide;
}

class HostileIcons : public testing::Test {
protected:
    HostileIcons()
    {
        std::filesystem::create_directories(fFolder.At(kPlace));
        fFolder.Put("/home/data/icons/hicolor/index.theme",
                    "[Icon Theme]\nName=Hicolor\nDirectories=any/mimetypes\n[any/mimetypes]\n"
                    "Size=48\nType=Scalable\nMinSize=8\nMaxSize=256\n");
    }
    // A type of its own with that file for its icon.
    status_t Load(const std::string& ending, const std::function<void(const std::string&)>& make)
    {
        const std::string name = "hostile" + std::to_string(fNumber++);
        make(fFolder.At(kPlace + "/x-icons-" + name + ending));
        BMimeType type(("x-icons/" + name).c_str());
        EXPECT_EQ(type.SetShortDescription("x"), B_OK);
        fIcon.emplace(BRect(0, 0, 31, 31), B_RGBA32);
        return type.GetIcon(&*fIcon, B_LARGE_ICON);
    }
    status_t LoadBytes(const std::string& ending, const std::string& bytes)
    {
        return Load(ending, [&](const std::string& path) { std::ofstream(path) << bytes; });
    }

    static inline const std::string kPlace = "/home/data/icons/hicolor/any/mimetypes";
    DesktopFolder fFolder;
    std::optional<BBitmap> fIcon;
    int fNumber = 0;
};

TEST_F(HostileIcons, AreNoIcons)
{
    const std::string pictures =
        repeated(20, "<image xlink:href='" + as_data("image/png", png_of_size(8)) + "'/>");
    const std::pair<const char*, std::string> kFiles[] = {
        {".svg", doubling(30)},
        {".svg", kSvg + "<g id='a'><use xlink:href='#b'/></g><g id='b'><use xlink:href='#a'/></g>"
                        "</svg>"},
        {".svg", kSvg + repeated(100000, "<g>") + repeated(100000, "</g>") + "</svg>"},
        {".svg", kSvg + repeated(60000, "<g/>") + "</svg>"},
        {".svg", kSvg + kRedRect + repeated(1 << 20, " ") + "</svg>"},
        {".svg", image("/dev/zero")},
        {".svg", image("file:///etc/passwd")},
        {".svg", image(as_data("image/svg+xml", kSvg + kRedRect + "</svg>"))},
        {".svg", image(as_data("image/png", kSvg + kRedRect + "</svg>"))},
        {".svg", image(as_data("image/png", png_of_size(30000)))},
        {".svg", kSvg + pictures + "</svg>"},
        {".svg", "<!DOCTYPE svg [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;&a;'>]>" + kSvg +
                     kRedRect + "<desc>&b;</desc></svg>"},
        {".svg", "<!DOCTYPE svg [<!ENTITY t SYSTEM '/dev/zero'>]>" + kSvg + "&t;</svg>"},
        {".svg", "<?xml version='1.0'?><?xml-stylesheet type='text/css' href='/dev/zero'?>" + kSvg +
                     kRedRect + "</svg>"},
        {".svg", utf16("<?xml version='1.0' encoding='UTF-16'?>" + kSvg +
                       "<text x='1' y='30'>T</text></svg>")},
        {".svg", kSvg + kRedRect},  // ends too early
        {".png", png_of_size(30000)},
        {".png", ""},
        {".xpm", "/* XPM */ static char* x[] = {\"30000 30000 1 1\", \"a c #ff0000\"};"},
    };
    for (const auto& [ending, bytes] : kFiles)
        EXPECT_EQ(LoadBytes(ending, bytes), B_ENTRY_NOT_FOUND) << bytes.substr(0, 300);
    // What a drawing looks like that was compressed, whatever its name says.
    for (const char* ending : {".svg", ".png"}) {
        EXPECT_EQ(Load(ending,
                       [&](const std::string& path) {
                           std::ofstream(fFolder.At("/plain")) << kSvg << kRedRect << "</svg>";
                           output_of("gzip -c " + fFolder.At("/plain") + " > " + path);
                       }),
                  B_ENTRY_NOT_FOUND);
    }
}

TEST_F(HostileIcons, OnlyRegularFilesAreRead)
{
    EXPECT_EQ(Load(".png", [](const std::string& path) { mkfifo(path.c_str(), 0600); }),
              B_ENTRY_NOT_FOUND);
    for (const char* target : {"/dev/zero", "/dev/full", "/proc/self/mem", "/tmp"}) {
        EXPECT_EQ(
            Load(".svg",
                 [&](const std::string& path) { ASSERT_EQ(symlink(target, path.c_str()), 0); }),
            B_ENTRY_NOT_FOUND)
            << target;
    }
}

TEST_F(HostileIcons, WhatIsHarmlessIsDrawnAllTheSame)
{
    const BBitmap red = red_half(B_LARGE_ICON);
    ASSERT_EQ(BMimeType("x-icons/red").SetIcon(&red, B_LARGE_ICON), B_OK);
    std::ifstream file(fFolder.At("/home/data/icons/hicolor/32x32/mimetypes/beos-x-icons-red.png"));
    const std::string png(std::istreambuf_iterator<char>(file), {});
    ASSERT_FALSE(png.empty());
    const std::string picture = kSvg + "<image width='64' height='64' xlink:href='" +
                                as_data("image/png", png) + "'/></svg>";
    for (const std::string& text :
         {picture, doubling(8),
          "<?xml version='1.0'?><!DOCTYPE svg PUBLIC '-//W3C//DTD SVG 1.1//EN' 'svg11.dtd'>" +
              kSvg + "<!-- red --><defs>" + kRedRect + "</defs><use xlink:href='#r'/></svg>"}) {
        EXPECT_EQ(LoadBytes(".svg", text), B_OK) << text.substr(0, 300);
        EXPECT_TRUE(is_red_half(*fIcon)) << text.substr(0, 300);
    }
    EXPECT_EQ(LoadBytes(".png", png), B_OK);
    EXPECT_TRUE(is_red_half(*fIcon));
}

TEST(Icons, BrowserShowsTheIconOfApplicationVolumeAndTarget)
{
    DesktopFolder folder;
    folder.Put("/app.svg",
               "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 64 64'>"
               "<rect width='32' height='64' fill='#ff0000'/></svg>");
    const std::string program = folder.PutEntry(folder.SystemEntry("app.desktop"), "app",
                                                "Icon=" + folder.At("/app.svg") + "\n");
    symlink(program.c_str(), folder.At("/link").c_str());
    symlink("nowhere", folder.At("/dangling").c_str());
    BBitmap icon = icon_bitmap(B_LARGE_ICON);
    for (const std::string& path : {program, folder.At("/link")}) {
        entry_ref ref;
        EXPECT_EQ(get_ref_for_path(path.c_str(), &ref), B_OK);
        EXPECT_EQ(BNodeInfo::GetTrackerIcon(&ref, &icon), B_OK);
        EXPECT_TRUE(is_red_half(icon)) << path;
    }
    for (const std::string& path : {folder.At("/dangling"), folder.Path(), std::string("/")}) {
        BBitmap other = icon_bitmap(B_LARGE_ICON);
        entry_ref ref;
        EXPECT_EQ(get_ref_for_path(path.c_str(), &ref), B_OK);
        EXPECT_EQ(BNodeInfo::GetTrackerIcon(&ref, &other), B_OK);
        EXPECT_FALSE(is_blank(other)) << path;
    }
    BVolume volume;
    BVolumeRoster().GetBootVolume(&volume);
    EXPECT_EQ(volume.GetIcon(&icon, B_LARGE_ICON), B_OK);
    EXPECT_FALSE(is_blank(icon));
    EXPECT_EQ(BVolume().GetIcon(&icon, B_LARGE_ICON), B_DEVICE_NOT_FOUND);
    uint8 bits[16 * 16];
    EXPECT_EQ(get_device_icon("/dev/null", bits, 16), B_OK);
    EXPECT_EQ(get_device_icon("/dev/null", bits, 17), B_BAD_VALUE);
    EXPECT_EQ(get_device_icon("/dev/nothing", bits, 16), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(get_device_icon(nullptr, bits, 16), B_BAD_VALUE);
}

TEST(AppFileInfo, ExecutableSaysWhatItIs)
{
    DesktopFolder folder;
    const std::string path = folder.Put("/app", "#!/bin/sh\n");
    BFile file(path.c_str(), B_READ_WRITE);
    BAppFileInfo info(&file);
    char text[B_MIME_TYPE_LENGTH * 3];
    uint32 flags = 0;
    version_info version = {};
    EXPECT_EQ(info.GetSignature(text), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(info.GetAppFlags(&flags), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(info.GetVersionInfo(&version, B_APP_VERSION_KIND), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(info.SetSignature("application/x-vnd.Test-App"), B_OK);
    EXPECT_EQ(info.SetSignature("no signature"), B_BAD_VALUE);
    EXPECT_EQ(info.GetSignature(text), B_OK);
    EXPECT_STREQ(text, "application/x-vnd.Test-App");
    EXPECT_EQ(host_value("user.BEOS:APP_SIG", path), text);
    EXPECT_EQ(info.SetAppFlags(B_SINGLE_LAUNCH | B_BACKGROUND_APP), B_OK);
    EXPECT_EQ(info.GetAppFlags(&flags), B_OK);
    EXPECT_EQ(flags, static_cast<uint32>(B_SINGLE_LAUNCH | B_BACKGROUND_APP));
    EXPECT_EQ(info.RemoveAppFlags(), B_OK);
    EXPECT_EQ(info.GetAppFlags(&flags), B_ENTRY_NOT_FOUND);
    const version_info set = {1, 2, 3, B_BETA_VERSION, 4, "short", "long"};
    EXPECT_EQ(info.SetVersionInfo(&set, B_SYSTEM_VERSION_KIND), B_OK);
    EXPECT_EQ(info.GetVersionInfo(&version, B_SYSTEM_VERSION_KIND), B_OK);
    EXPECT_EQ(version.variety, static_cast<uint32>(B_BETA_VERSION));
    EXPECT_STREQ(version.long_info, "long");
    EXPECT_EQ(info.GetVersionInfo(&version, B_APP_VERSION_KIND), B_OK);
    EXPECT_EQ(version.major, 0u);
    EXPECT_EQ(info.SetCatalogEntry("x-vnd.Test:name"), B_OK);
    EXPECT_EQ(info.GetCatalogEntry(text), B_OK);
    EXPECT_STREQ(text, "x-vnd.Test:name");
    const BBitmap red = red_half(B_MINI_ICON);
    EXPECT_EQ(info.SetIconForType("text/plain", &red, B_MINI_ICON, false), B_OK);
    BBitmap back = icon_bitmap(B_MINI_ICON);
    EXPECT_EQ(info.GetIconForType("Text/Plain", &back, B_MINI_ICON), B_OK);
    EXPECT_TRUE(is_red_half(back));
    EXPECT_TRUE(info.IsUsingAttributes());
    EXPECT_FALSE(info.IsUsingResources());
    EXPECT_FALSE(BAppFileInfo().IsUsingAttributes());
}

TEST(AppFileInfo, SupportedTypesMakeTheApplicationKnownToTheDesktop)
{
    DesktopFolder folder;
    const std::string path = folder.Put("/my \"$app", "#!/bin/sh\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    BFile file(path.c_str(), B_READ_WRITE);
    BAppFileInfo info(&file);
    info.SetSignature("application/x-vnd.Test-App");
    BMessage types;
    types.AddString("types", "text/x-mine");
    types.AddString("types", "image");
    EXPECT_EQ(info.SetSupportedTypes(&types), B_OK);
    EXPECT_TRUE(info.IsSupportedType("image/png"));
    EXPECT_TRUE(info.IsSupportedType("TEXT/x-mine"));
    EXPECT_FALSE(info.IsSupportedType("text/plain"));
    BMimeType png("image/png");
    EXPECT_TRUE(info.Supports(&png));
    types.AddString("types", "no type");
    EXPECT_EQ(info.SetSupportedTypes(&types), B_BAD_VALUE);

    BMimeType signature("application/x-vnd.test-app");
    EXPECT_TRUE(signature.IsInstalled());
    entry_ref ref;
    ASSERT_EQ(signature.GetAppHint(&ref), B_OK);
    EXPECT_EQ(BPath(&ref).Path(), path);
    const std::string entry = folder.At("/home/data/applications/beos-x-vnd.test-app.desktop");
    EXPECT_EQ(output_of("desktop-file-validate " + entry), "");
    EXPECT_NE(output_of("gio mime text/x-mine").find("beos-x-vnd.test-app.desktop"),
              std::string::npos);
    BMessage apps;
    EXPECT_EQ(BMimeType("text/x-mine").Install(), B_OK);
    EXPECT_EQ(BMimeType("text/x-mine").GetSupportingApps(&apps), B_OK);
    EXPECT_STREQ(apps.FindString("applications"), "application/x-vnd.Test-App");
}

TEST(Mime, UpdatingGivesFilesTheTypesThatTheyLack)
{
    DesktopFolder folder;
    std::filesystem::create_directories(folder.At("/tree/below"));
    const std::string plain = folder.Put("/tree/a.txt", "x");
    const std::string deep = folder.Put("/tree/below/b.png", "x");
    const std::string own = folder.Put("/tree/below/own.png", "x");
    symlink("below", folder.At("/tree/link").c_str());
    output_of("setfattr -n user.mime_type -v x-own/type " + own);
    const auto kept = [](const std::string& path) { return host_value("user.mime_type", path); };
    EXPECT_EQ(update_mime_info(plain.c_str(), false, true, B_UPDATE_MIME_INFO_NO_FORCE), B_OK);
    EXPECT_EQ(kept(plain), "text/plain");
    EXPECT_EQ(update_mime_info(folder.At("/tree").c_str(), true, true, B_UPDATE_MIME_INFO_NO_FORCE),
              B_OK);
    EXPECT_EQ(kept(deep), "image/png");
    EXPECT_EQ(kept(own), "x-own/type");
    EXPECT_EQ(update_mime_info(folder.At("/tree").c_str(), true, true,
                               B_UPDATE_MIME_INFO_FORCE_UPDATE_ALL),
              B_OK);
    EXPECT_EQ(kept(own), "image/png");
    EXPECT_EQ(update_mime_info("/no/such/file", false, true, 0), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(update_mime_info(nullptr, false, true, 0), B_BAD_VALUE);
    EXPECT_EQ(create_app_meta_mime(plain.c_str(), false, true, 0), B_ENTRY_NOT_FOUND);
}
