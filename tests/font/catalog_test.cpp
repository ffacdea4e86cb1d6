// Fonts that come and go while a program runs, in a font folder of the test's own. Each test runs
// in a process of its own, since fonts are looked up once a process.

#include <Font.h>

#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct Sample {
    std::string path, family;
};

// Files of installed fonts, each of another family.
std::vector<Sample> samples(size_t count)
{
    std::vector<Sample> found;
    std::set<std::string> families;
    FcConfig* config = FcInitLoadConfigAndFonts();
    FcFontSet* fonts = FcConfigGetFonts(config, FcSetSystem);
    for (int i = 0; fonts != nullptr && i < fonts->nfont && found.size() < count; i++) {
        FcChar8 *path, *family, *style;
        FcBool scalable = FcFalse;
        int index = 1;
        FcPatternGetBool(fonts->fonts[i], FC_SCALABLE, 0, &scalable);
        FcPatternGetInteger(fonts->fonts[i], FC_INDEX, 0, &index);
        if (scalable && index == 0 &&
            FcPatternGetString(fonts->fonts[i], FC_FILE, 0, &path) == FcResultMatch &&
            FcPatternGetString(fonts->fonts[i], FC_FAMILY, 0, &family) == FcResultMatch &&
            FcPatternGetString(fonts->fonts[i], FC_STYLE, 0, &style) == FcResultMatch &&
            families.insert(reinterpret_cast<char*>(family)).second) {
            found.push_back({reinterpret_cast<char*>(path), reinterpret_cast<char*>(family)});
        }
    }
    FcConfigDestroy(config);
    return found;
}

// A folder that is all the fonts there are, gone with the object.
class FontFolder {
public:
    FontFolder()
    {
        char name[] = "/tmp/font_folder_XXXXXX";
        fRoot = mkdtemp(name);
        fs::create_directory(fRoot / "fonts");
        std::ofstream(fRoot / "fonts.conf")
            << "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\"><fontconfig><dir>"
            << (fRoot / "fonts").string() << "</dir><cachedir>" << (fRoot / "cache").string()
            << "</cachedir></fontconfig>";
        setenv("FONTCONFIG_FILE", (fRoot / "fonts.conf").c_str(), 1);
    }
    ~FontFolder() { fs::remove_all(fRoot); }

    void Add(const Sample& sample) { fs::copy(sample.path, fRoot / "fonts"); }
    void Remove(const Sample& sample)
    {
        fs::remove(fRoot / "fonts" / fs::path(sample.path).filename());
    }
    // Waits until the change is taken over, which may have come within the second of the last look.
    bool ChangeArrives()
    {
        for (int i = 0; i < 1000; i++) {
            if (update_font_families(false))
                return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }

private:
    fs::path fRoot;
};

bool is_listed(const Sample& sample)
{
    font_family family;
    for (int32 i = 0; get_font_family(i, &family) == B_OK; i++) {
        if (sample.family == family)
            return true;
    }
    return false;
}

#define CHECK(what)                                 \
    do {                                            \
        if (!(what)) {                              \
            fprintf(stderr, "failed: %s\n", #what); \
            _exit(1);                               \
        }                                           \
    } while (false)

void follow_the_folder()
{
    std::vector<Sample> fonts = samples(3);
    CHECK(fonts.size() == 3);
    FontFolder folder;
    folder.Add(fonts[0]);
    CHECK(count_font_families() == 1 && is_listed(fonts[0]));
    BFont font;
    CHECK(font.StringWidth("abc 123") > 0);  // the only one there is, whatever its name
    uint32 first = be_plain_font->FamilyAndStyle();

    folder.Add(fonts[1]);
    CHECK(folder.ChangeArrives());
    CHECK(count_font_families() == 2 && is_listed(fonts[1]));
    CHECK(font.SetFamilyAndStyle(fonts[0].family.c_str(), nullptr) == B_OK);
    CHECK(font.FamilyAndStyle() == first);  // ids stay

    CHECK(font.SetFamilyAndStyle(fonts[1].family.c_str(), nullptr) == B_OK);
    uint32 second = font.FamilyAndStyle();
    folder.Remove(fonts[1]);
    CHECK(folder.ChangeArrives());
    CHECK(count_font_families() == 1 && !is_listed(fonts[1]));
    CHECK(font.StringWidth("abc 123") > 0);
    CHECK(font.SetFamilyAndStyle(fonts[1].family.c_str(), nullptr) == B_NAME_NOT_FOUND);
    CHECK(font.FamilyAndStyle() == second);

    // A program's own font is listed until it is given back, also across a change.
    BFont own;
    CHECK(own.LoadFont(fonts[2].path.c_str()) == B_OK);
    CHECK(is_listed(fonts[2]) && own.StringWidth("abc") >= 0);
    folder.Add(fonts[1]);
    CHECK(folder.ChangeArrives());
    CHECK(is_listed(fonts[2]) && is_listed(fonts[1]));
    CHECK(own.UnloadFont() == B_OK);
    CHECK(!is_listed(fonts[2]) && own == *be_plain_font);
    CHECK(own.UnloadFont() != B_OK);
    CHECK(own.LoadFont(fonts[2].path.c_str()) == B_OK && is_listed(fonts[2]));
}

void live_without_fonts()
{
    FontFolder folder;
    CHECK(count_font_families() == 0);
    BFont font;
    CHECK(font.StringWidth("abc") == 0);
    font_height height;
    font.GetHeight(&height);
    CHECK(height.ascent == 0);
    font_family family;
    font_style style;
    font.GetFamilyAndStyle(&family, &style);
    CHECK(family[0] == '\0' && style[0] == '\0');
    CHECK(font.SetFamilyAndFace(nullptr, B_BOLD_FACE) != B_OK);
    CHECK(!font.Blocks().Includes(B_BASIC_LATIN_BLOCK));
    font.PrintToStream();
}

void live_with_a_broken_file()
{
    std::vector<Sample> fonts = samples(2);
    FontFolder folder;
    folder.Add(fonts[0]);
    folder.Add(fonts[1]);
    BFont font;
    CHECK(font.SetFamilyAndStyle(fonts[1].family.c_str(), nullptr) == B_OK);
    folder.Remove(fonts[1]);  // listed still, but nothing to open
    CHECK(font.StringWidth("abc 123") == be_plain_font->StringWidth("abc 123"));
    CHECK(font.StringWidth("abc") > 0);
}

void expect_success(void (*run)())
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT((run(), exit(0)), testing::ExitedWithCode(0), "");
}

}  // namespace

TEST(FontCatalogDeathTest, FollowsTheFontFolder) { expect_success(follow_the_folder); }

TEST(FontCatalogDeathTest, LivesWithoutAnyFont) { expect_success(live_without_fonts); }

TEST(FontCatalogDeathTest, UnreadableFontBecomesThePlainOne)
{
    expect_success(live_with_a_broken_file);
}
