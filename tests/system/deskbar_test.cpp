// The Deskbar in the user's configuration, and panels that are told of it.

#include <gtest/gtest.h>

#include <Deskbar.h>
#include <InterfaceDefs.h>
#include <OS.h>
#include <Screen.h>
#include <View.h>
#include <plinth.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>

#include "interface/desktop/DeskbarPatience.h"
#include "support/temp_folder.h"
#include "support/test_bus.h"

static const char* const kXfconf =
    "<node><interface name='org.xfce.Xfconf'>"
    "<method name='SetProperty'><arg type='s' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='v' direction='in'/></method>"
    "<method name='GetAllProperties'><arg type='s' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='a{sv}' direction='out'/></method></interface></node>";
static const char* const kPlasma =
    "<node><interface name='org.kde.PlasmaShell'><method name='evaluateScript'>"
    "<arg type='s' direction='in'/><arg type='s' direction='out'/></method></interface></node>";

static std::string settings_file(const TempFolder& folder)
{
    return folder.At("/home/config/beos/deskbar");
}

static std::string read_file(const std::string& path)
{
    std::ifstream file(path);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

static void write_settings(const TempFolder& folder, const std::string& text)
{
    std::filesystem::create_directories(folder.At("/home/config/beos"));
    folder.Put("/home/config/beos/deskbar", text);
}

// With the patience that a busy machine takes, where all answer in the end.
class DeskbarPanels : public testing::Test {
protected:
    DeskbarPanels() : fSaved(BPrivate::deskbar_patience())
    {
        BPrivate::deskbar_patience().panel = 20'000'000;
    }
    ~DeskbarPanels() override { BPrivate::deskbar_patience() = fSaved; }

    const BPrivate::DeskbarPatience fSaved;
};

TEST(Deskbar, BeginsExpandedInTheRightTopCorner)
{
    TempFolder folder;
    EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_RIGHT_TOP);
    EXPECT_EQ(IsExpandedDeskBar(), 1);
    BDeskbar deskbar;
    EXPECT_FALSE(deskbar.IsRunning());
    EXPECT_FALSE(deskbar.IsAutoHide() || deskbar.IsAutoRaise() || deskbar.IsAlwaysOnTop());
    EXPECT_FALSE(std::filesystem::exists(settings_file(folder))) << "asking writes nothing";
}

TEST(Deskbar, MovingItKeepsItsExpansion)
{
    TempFolder folder;
    for (int expanded = 0; expanded < 2; expanded++) {
        SetExpandDeskBar(expanded ? 0x80 : 0);
        for (int32_t place = PLINTH_DESKBAR_TOP; place <= PLINTH_DESKBAR_RIGHT_BOTTOM; place++) {
            SetPosDeskBar(place);
            EXPECT_EQ(GetPosDeskBar(), place);
            EXPECT_EQ(IsExpandedDeskBar(), expanded);
        }
    }
    for (int32_t none : {-1, 6, INT32_MAX, INT32_MIN})
        SetPosDeskBar(none);
    EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_RIGHT_BOTTOM);
    bool expanded = false;
    EXPECT_EQ(BDeskbar().Location(&expanded), B_DESKBAR_RIGHT_BOTTOM);
    EXPECT_TRUE(expanded);
    EXPECT_EQ(BDeskbar().SetLocation(B_DESKBAR_TOP), B_OK);
    EXPECT_EQ(IsExpandedDeskBar(), 0);  // what that call says
}

TEST(Deskbar, EachFlagIsKeptByItself)
{
    TempFolder folder;
    BDeskbar deskbar;
    EXPECT_EQ(deskbar.SetAutoHide(true), B_OK);
    EXPECT_TRUE(deskbar.IsAutoHide() && !deskbar.IsAutoRaise() && !deskbar.IsAlwaysOnTop());
    EXPECT_EQ(deskbar.SetAutoRaise(true), B_OK);
    EXPECT_EQ(deskbar.SetAutoHide(false), B_OK);
    EXPECT_TRUE(!deskbar.IsAutoHide() && deskbar.IsAutoRaise() && !deskbar.IsAlwaysOnTop());
    EXPECT_EQ(deskbar.SetAlwaysOnTop(true), B_OK);
    EXPECT_EQ(deskbar.SetAutoRaise(false), B_OK);
    EXPECT_TRUE(!deskbar.IsAutoRaise() && deskbar.IsAlwaysOnTop() && deskbar.IsExpanded());
}

TEST(Deskbar, FrameLiesAtItsPlaceOnTheScreen)
{
    TempFolder folder;
    const BRect screen = BScreen().Frame();
    const auto frame = [](deskbar_location location, bool expanded) {
        BRect rect;
        EXPECT_EQ(BDeskbar().SetLocation(location, expanded), B_OK);
        EXPECT_EQ(get_deskbar_frame(&rect), B_OK);
        return rect;
    };
    const BRect top = frame(B_DESKBAR_TOP, false);
    EXPECT_EQ(top.LeftTop(), screen.LeftTop());
    EXPECT_EQ(top.right, screen.right);
    EXPECT_EQ(frame(B_DESKBAR_TOP, true), top);
    const BRect bottom = frame(B_DESKBAR_BOTTOM, true);
    EXPECT_EQ(bottom.RightBottom(), screen.RightBottom());
    EXPECT_EQ(bottom.Height(), top.Height());
    const BRect corner = frame(B_DESKBAR_RIGHT_TOP, false);
    EXPECT_EQ(corner.RightTop(), screen.RightTop());
    EXPECT_EQ(corner.bottom, top.bottom);
    EXPECT_EQ(frame(B_DESKBAR_RIGHT_TOP, true).bottom, screen.bottom);
    EXPECT_EQ(frame(B_DESKBAR_LEFT_BOTTOM, false).LeftBottom(), screen.LeftBottom());
    EXPECT_EQ(get_deskbar_frame(nullptr), B_BAD_VALUE);
}

TEST(Deskbar, DamagedSettingsCountAsNoneAndOthersStay)
{
    TempFolder folder;
    for (const char* text : {"", "rubbish", "[Deskbar\nlocation=top",
                             "[Deskbar]\nlocation=north\n"
                             "expanded=perhaps\nauto-hide=\n",
                             "[Deskbar]\nlocation=\xFF\xFE\n"}) {
        write_settings(folder, text);
        EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_RIGHT_TOP) << text;
        EXPECT_EQ(IsExpandedDeskBar(), 1) << text;
        SetPosDeskBar(PLINTH_DESKBAR_TOP);
        EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_TOP) << text;
    }
    write_settings(folder,
                   "# mine\n[Other]\nkey=value\n[Deskbar]\nlocation=left-top\ntheir=own\n"
                   "always-on-top=yes\nexpanded=false\n");
    EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_LEFT_TOP);
    EXPECT_FALSE(BDeskbar().IsAlwaysOnTop());
    EXPECT_EQ(IsExpandedDeskBar(), 0);
    SetPosDeskBar(PLINTH_DESKBAR_BOTTOM);
    const std::string text = read_file(settings_file(folder));
    for (const char* part :
         {"# mine", "key=value", "their=own", "location=bottom", "expanded=false"})
        EXPECT_NE(text.find(part), std::string::npos) << part;
}

TEST(Deskbar, WhatCannotBeKeptSaysWhy)
{
    TempFolder folder;
    std::filesystem::create_directories(folder.At("/home"));
    folder.Put("/home/config", "a file where a folder belongs");
    EXPECT_EQ(BDeskbar().Expand(false), B_NOT_A_DIRECTORY);
    EXPECT_EQ(errno, ENOTDIR);
    EXPECT_TRUE(BDeskbar().IsExpanded());
    std::filesystem::remove(folder.At("/home/config"));
    write_settings(folder, "");
    const int held = open(folder.At("/home/config/beos").c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    BPrivate::DeskbarPatience& patience = BPrivate::deskbar_patience();
    const bigtime_t saved = std::exchange(patience.settings, 100'000);
    EXPECT_EQ(BDeskbar().Expand(false), B_BUSY);
    patience.settings = saved;
    close(held);
    EXPECT_EQ(BDeskbar().Expand(false), B_OK);
}

TEST(Deskbar, SettingsMadeByManyProgramsAtOnceAllCount)
{
    TempFolder folder;
    BPrivate::deskbar_patience().settings = 60'000'000;
    status_t (BDeskbar::*const setters[])(bool) = {&BDeskbar::SetAutoHide, &BDeskbar::SetAutoRaise,
                                                   &BDeskbar::SetAlwaysOnTop};
    for (int round = 0; round < 20; round++) {
        const bool value = round % 2 == 0;
        std::vector<pid_t> children;
        for (auto setter : setters) {
            const pid_t child = fork();
            if (child == 0)
                _exit((BDeskbar().*setter)(value) == B_OK ? 0 : 1);
            children.push_back(child);
        }
        for (pid_t child : children) {
            int status = -1;
            waitpid(child, &status, 0);
            EXPECT_EQ(status, 0);
        }
        BDeskbar deskbar;
        EXPECT_EQ(deskbar.IsAutoHide(), value);
        EXPECT_EQ(deskbar.IsAutoRaise(), value);
        EXPECT_EQ(deskbar.IsAlwaysOnTop(), value);
    }
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder.At("/home/config/beos")))
        files += entry.exists();
    EXPECT_EQ(files, 1) << "nothing else is left behind";
}

TEST(Deskbar, ItemsAreRefused)
{
    BDeskbar deskbar;
    BView view(BRect(0, 0, 15, 15), "item", B_FOLLOW_NONE, B_WILL_DRAW);
    int32 id = 7;
    const char* name = "?";
    EXPECT_EQ(deskbar.AddItem(&view, &id), B_NOT_SUPPORTED);
    EXPECT_EQ(deskbar.AddItem(static_cast<BView*>(nullptr)), B_BAD_VALUE);
    EXPECT_EQ(deskbar.CountItems(), 0u);
    EXPECT_FALSE(deskbar.HasItem("item"));
    EXPECT_EQ(deskbar.GetItemInfo("item", &id), B_NAME_NOT_FOUND);
    EXPECT_EQ(deskbar.GetItemInfo(1, &name), B_NAME_NOT_FOUND);
    EXPECT_EQ(deskbar.RemoveItem("item"), B_NAME_NOT_FOUND);
    EXPECT_EQ(deskbar.RemoveItem(static_cast<const char*>(nullptr)), B_BAD_VALUE);
}

// A settings service of Xfce that keeps what it is told.
class Xfconf {
public:
    explicit Xfconf(const TestBus& bus, bool obeys = true)
        : fObeys(obeys),
          fService(bus, "org.xfce.Xfconf", {"/org/xfce/Xfconf"}, kXfconf,
                   [this](auto&, auto& method, GVariant* arguments) {
                       return Answer(method, arguments);
                   })
    {
        Keep("/panels/panel-1/position", g_variant_new_string("p=6;x=12;y=13"));
        Keep("/panels/panel-1/mode", g_variant_new_uint32(0));
    }
    ~Xfconf()
    {
        for (auto& [path, value] : fValues)
            g_variant_unref(value);
    }
    void Keep(const std::string& path, GVariant* value)
    {
        std::lock_guard guard(fLock);
        GVariant*& place = fValues[path];
        if (place != nullptr)
            g_variant_unref(place);
        place = g_variant_ref_sink(value);
    }
    TestService& Service() { return fService; }

private:
    TestService::Answer Answer(const std::string& method, GVariant* arguments)
    {
        if (method == "SetProperty") {
            const char* path;
            GVariant* value;
            g_variant_get(arguments, "(&s&sv)", nullptr, &path, &value);
            if (fObeys)
                Keep(path, value);
            g_variant_unref(value);
            return {g_variant_new("()"), ""};
        }
        std::lock_guard guard(fLock);
        GVariantBuilder builder;
        g_variant_builder_init(&builder, G_VARIANT_TYPE("a{sv}"));
        for (auto& [path, value] : fValues)
            g_variant_builder_add(&builder, "{sv}", path.c_str(), value);
        return {g_variant_new("(a{sv})", &builder), ""};
    }

    const bool fObeys;
    std::mutex fLock;
    std::map<std::string, GVariant*> fValues;  // fLock
    TestService fService;
};

TEST_F(DeskbarPanels, XfceIsToldPlaceAndHiding)
{
    TempFolder folder;
    TestBus bus;
    Xfconf xfconf(bus);
    EXPECT_TRUE(BDeskbar().IsRunning());
    SetPosDeskBar(PLINTH_DESKBAR_LEFT_BOTTOM);
    const std::vector<std::string> expected = {
        "GetAllProperties ('xfce4-panel', '/panels/panel-1')",
        "SetProperty ('xfce4-panel', '/panels/panel-1/mode', <uint32 2>)",
        "SetProperty ('xfce4-panel', '/panels/panel-1/position', <'p=8;x=0;y=0'>)",
        "GetAllProperties ('xfce4-panel', '/panels/panel-1')",
    };
    EXPECT_EQ(xfconf.Service().TakeCalls(), expected);
    EXPECT_EQ(BDeskbar().SetAutoHide(true), B_OK);
    const std::vector<std::string> calls = xfconf.Service().TakeCalls();
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[1],
              "SetProperty ('xfce4-panel', '/panels/panel-1/autohide-behavior', <uint32 2>)");
    SetExpandDeskBar(0);
    EXPECT_TRUE(xfconf.Service().TakeCalls().empty());
    EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_LEFT_BOTTOM);
}

TEST_F(DeskbarPanels, WhatTheUserChangesOnXfceIsReadBack)
{
    TempFolder folder;
    TestBus bus;
    Xfconf xfconf(bus);
    EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_TOP);  // the panel is there already
    SetPosDeskBar(PLINTH_DESKBAR_RIGHT_TOP);
    xfconf.Keep("/panels/panel-1/position", g_variant_new_string("p=2;x=1900;y=500"));
    EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_RIGHT_TOP);  // the panel says the same, exactly
    xfconf.Keep("/panels/panel-1/position", g_variant_new_string("p=8;x=5;y=5"));
    EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_LEFT_BOTTOM);
    xfconf.Keep("/panels/panel-1/mode", g_variant_new_uint32(0));
    EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_BOTTOM);
    xfconf.Keep("/panels/panel-1/autohide-behavior", g_variant_new_uint32(2));
    EXPECT_TRUE(BDeskbar().IsAutoHide());
    EXPECT_EQ(BDeskbar().SetAutoRaise(true), B_OK);
    EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_BOTTOM);
    xfconf.Keep("/panels/panel-1/position", g_variant_new_string("somewhere"));
    EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_RIGHT_TOP);  // nothing to go by but what is kept
}

TEST_F(DeskbarPanels, APanelThatDoesNotObeyDoesNotMatter)
{
    TempFolder folder;
    TestBus bus;
    Xfconf xfconf(bus, false);
    for (int32_t place = PLINTH_DESKBAR_TOP; place <= PLINTH_DESKBAR_RIGHT_BOTTOM; place++) {
        SetPosDeskBar(place);
        EXPECT_EQ(GetPosDeskBar(), place);
    }
}

TEST_F(DeskbarPanels, PlasmaRunsAScript)
{
    TempFolder folder;
    TestBus bus;
    std::string answer = "bottom center none\n";
    std::mutex lock;
    TestService plasma(bus, "org.kde.plasmashell", {"/PlasmaShell"}, kPlasma,
                       [&](auto&, auto&, GVariant*) {
                           std::lock_guard guard(lock);
                           return TestService::Answer{g_variant_new("(s)", answer.c_str()), ""};
                       });
    const auto say = [&](const char* text) {
        std::lock_guard guard(lock);
        answer = text;
    };
    EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_BOTTOM);
    plasma.TakeCalls();
    SetPosDeskBar(PLINTH_DESKBAR_RIGHT_BOTTOM);
    const std::vector<std::string> calls = plasma.TakeCalls();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_NE(calls[1].find("p.location = 'right'; p.alignment = 'right';"), std::string::npos);
    EXPECT_EQ(calls[1].find("hiding ="), std::string::npos);
    EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_RIGHT_BOTTOM);  // though the answer stayed the same
    struct Row {
        const char* printed;
        int32_t place;
    };
    for (const Row& row : {Row{"top right autohide", PLINTH_DESKBAR_TOP},
                           Row{"left left none", PLINTH_DESKBAR_LEFT_TOP},
                           Row{"left right none", PLINTH_DESKBAR_LEFT_BOTTOM},
                           Row{"right center none", PLINTH_DESKBAR_RIGHT_TOP},
                           Row{"floating left none", PLINTH_DESKBAR_RIGHT_BOTTOM},
                           Row{"", PLINTH_DESKBAR_RIGHT_BOTTOM}}) {
        say(row.printed);
        EXPECT_EQ(GetPosDeskBar(), row.place) << row.printed;
    }
    say("top right autohide");
    EXPECT_TRUE(BDeskbar().IsAutoHide());
    EXPECT_EQ(BDeskbar().SetAutoHide(false), B_OK);
    const std::vector<std::string> hiding = plasma.TakeCalls();
    ASSERT_FALSE(hiding.empty());
    EXPECT_NE(hiding.back().find("p.hiding = 'none'"), std::string::npos);
}

TEST_F(DeskbarPanels, APanelThatNeverAnswersCostsLittle)
{
    TempFolder folder;
    TestBus bus;
    TestService deaf(bus, "org.kde.plasmashell", {"/PlasmaShell"}, kPlasma,
                     [](auto&, auto&, GVariant*) { return TestService::Answer{}; });
    BPrivate::deskbar_patience().panel = fSaved.panel;
    const bigtime_t before = system_time();
    SetPosDeskBar(PLINTH_DESKBAR_TOP);
    for (int i = 0; i < 20; i++)
        EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_TOP);
    EXPECT_LT(system_time() - before, 20'000'000) << "one wait, and none for each call";
    EXPECT_EQ(deaf.TakeCalls().size(), 1u);
}

TEST_F(DeskbarPanels, AFailingServiceAndABusThatIsNoneAreLeftAlone)
{
    TempFolder folder;
    auto bus = std::make_unique<TestBus>();
    const int error = dup(STDERR_FILENO);
    const int file = open(folder.Put("/noise").c_str(), O_RDWR);
    dup2(file, STDERR_FILENO);
    {
        const TestService::Answer denied = {nullptr, "org.xfce.Xfconf.Error.PermissionDenied"};
        TestService failing(*bus, "org.xfce.Xfconf", {"/org/xfce/Xfconf"}, kXfconf,
                            [&](auto&, auto&, GVariant*) { return denied; });
        SetPosDeskBar(PLINTH_DESKBAR_TOP);
        EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_TOP);
    }
    bus.reset();
    const bigtime_t before = system_time();
    int32_t place = PLINTH_DESKBAR_BOTTOM;
    for (const std::string& address :
         {std::string("autolaunch:"), std::string("nonsense"), "unix:path=" + folder.Path(),
          "unix:path=" + folder.At("/missing"), std::string("tcp:host=127.0.0.1,port=1")}) {
        setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
        SetPosDeskBar(place);
        EXPECT_EQ(GetPosDeskBar(), place) << address;
        EXPECT_FALSE(BDeskbar().IsRunning());
        place = (place + 1) % 6;
    }
    EXPECT_LT(system_time() - before, 20'000'000);
    dup2(error, STDERR_FILENO);
    EXPECT_EQ(read_file(folder.At("/noise")), "");
}

TEST_F(DeskbarPanels, ABusThatAcceptsAndSaysNothingIsGivenUp)
{
    TempFolder folder;
    std::filesystem::create_directories(folder.At(".run"));
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    struct sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    folder.At(".run/bus").copy(address.sun_path, sizeof(address.sun_path) - 1);
    ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    ASSERT_EQ(listen(listener, 8), 0);
    BPrivate::deskbar_patience().panel = fSaved.panel;
    const bigtime_t before = system_time();
    SetPosDeskBar(PLINTH_DESKBAR_TOP);
    EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_TOP);
    EXPECT_LT(system_time() - before, 20'000'000);
    close(listener);
}

// A bus whose clients come as far as being let in.
class SilentBus {
public:
    explicit SilentBus(const std::string& path)
        : fListener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        struct sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof(address.sun_path) - 1);
        bind(fListener, reinterpret_cast<sockaddr*>(&address), sizeof(address));
        listen(fListener, 8);
        fThread = std::thread([this] { Serve(); });
    }
    ~SilentBus()
    {
        shutdown(fListener, SHUT_RDWR);
        fThread.join();
        for (const int client : fLetIn)
            close(client);
        close(fListener);
    }
    size_t CountLetIn() const { return fCount; }

private:
    void Serve()
    {
        int client;
        while ((client = accept(fListener, nullptr, nullptr)) >= 0) {
            fLetIn.push_back(client);
            fCount += LetIn(client);
        }
    }
    static bool LetIn(int client)
    {
        std::string line;
        char c;
        while (read(client, &c, 1) == 1) {
            if (c != '\n') {
                line += c != '\0' ? std::string(1, c) : "";
                continue;
            }
            const std::string answer = line.starts_with("AUTH EXTERNAL")
                                           ? "OK 0123456789abcdef0123456789abcdef\r\n"
                                       : line.starts_with("AUTH") ? "REJECTED EXTERNAL\r\n"
                                                                  : "ERROR\r\n";
            if (line.starts_with("BEGIN"))
                return true;
            [[maybe_unused]] ssize_t written = write(client, answer.data(), answer.size());
            line.clear();
        }
        return false;
    }

    const int fListener;
    std::vector<int> fLetIn;  // the thread, then its joiner
    std::atomic<size_t> fCount{0};
    std::thread fThread;
};

TEST_F(DeskbarPanels, ABusThatLetsInAndThenIsSilentIsGivenUp)
{
    TempFolder folder;
    SilentBus bus(folder.At(".run/bus"));
    BPrivate::deskbar_patience().panel = fSaved.panel;
    const bigtime_t before = system_time();
    SetPosDeskBar(PLINTH_DESKBAR_TOP);
    EXPECT_EQ(GetPosDeskBar(), PLINTH_DESKBAR_TOP);
    EXPECT_LT(system_time() - before, 20'000'000);
    EXPECT_GE(bus.CountLetIn(), 1u);
}
