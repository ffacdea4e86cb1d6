// Looks whether a screen answers before Qt is started, as Qt looks for one.

#include "server/qt/Platforms.h"

#include <QByteArray>
#include <QDir>
#include <QGuiApplication>
#include <QLibraryInfo>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>

namespace server {

// The variable's value, "" where there is none.
static std::string variable(const char* name)
{
    const char* value = getenv(name);
    return value != nullptr ? value : "";
}

static bool x_answers()
{
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool answers = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return answers;
}

// Qt brings its support of Wayland in a package of its own.
static bool has_wayland_plugin()
{
    QStringList folders = qEnvironmentVariable("QT_PLUGIN_PATH").split(QDir::listSeparator());
    folders += QLibraryInfo::path(QLibraryInfo::PluginsPath);
    for (const QString& folder : folders) {
        const QDir platforms(folder + QLatin1String("/platforms"));
        if (!folder.isEmpty() &&
            !platforms.entryList({QStringLiteral("libqwayland*.so")}, QDir::Files).isEmpty())
            return true;
    }
    return false;
}

static bool wayland_answers()
{
    if (!variable("WAYLAND_SOCKET").empty())
        return true;  // a connection that was opened for us
    std::string path = variable("WAYLAND_DISPLAY");
    if (path.empty())
        return false;
    if (path[0] != '/')
        path = variable("XDG_RUNTIME_DIR") + "/" + path;
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof(address.sun_path))
        return false;
    memcpy(address.sun_path, path.c_str(), path.size());
    const int connection = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool answers =
        connection >= 0 &&
        connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0;
    if (connection >= 0)
        close(connection);
    return answers;
}

// A line of the X server's resources: "" if it has none of that name.
static std::string x_resource(const std::string& name)
{
    const uint32_t kMost = 1 << 16;  // words
    int number = 0;
    xcb_connection_t* connection = xcb_connect(nullptr, &number);
    std::string all, value;
    xcb_screen_iterator_t screen = {};
    if (xcb_connection_has_error(connection) == 0)
        screen = xcb_setup_roots_iterator(xcb_get_setup(connection));
    if (screen.rem > 0) {
        const auto cookie = xcb_get_property(connection, 0, screen.data->root,
                                             XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 0, kMost);
        if (xcb_get_property_reply_t* reply = xcb_get_property_reply(connection, cookie, nullptr)) {
            all.assign(static_cast<const char*>(xcb_get_property_value(reply)),
                       size_t(xcb_get_property_value_length(reply)));
            free(reply);
        }
    }
    xcb_disconnect(connection);
    std::istringstream lines(all);
    for (std::string line; std::getline(lines, line);) {
        if (line.compare(0, name.size() + 1, name + ":") == 0)
            value = line.substr(name.size() + 1);
    }
    return value;
}

// Qt's own variables for it.
static bool has_scale_of_qt()
{
    for (const char* name : {"QT_ENABLE_HIGHDPI_SCALING", "QT_SCALE_FACTOR",
                             "QT_SCREEN_SCALE_FACTORS", "QT_USE_PHYSICAL_DPI"}) {
        if (getenv(name) != nullptr)
            return true;
    }
    return false;
}

double font_resolution_scale()
{
    const std::string platform = variable("QT_QPA_PLATFORM");
    const bool is_x = platform.empty() ? !(wayland_answers() && has_wayland_plugin())
                                       : platform.compare(0, 3, "xcb") == 0;
    if (!is_x || has_scale_of_qt())
        return 1;
    const double kUsual = 96, dots = strtod(x_resource("Xft.dpi").c_str(), nullptr);
    const double scale = std::floor(dots / kUsual * 4 + 0.5) / 4;
    return scale > 1 && scale < 32 ? scale : 1;
}

bool can_reach_display()
{
    const std::string platform = variable("QT_QPA_PLATFORM");
    const bool is_open = platform.empty();
    const bool may_be_x = is_open || platform.find("xcb") != std::string::npos;
    const bool may_be_wayland = is_open || platform.find("wayland") != std::string::npos;
    if (!may_be_x && !may_be_wayland)
        return true;  // one without a screen, of the user's own choice
    return (may_be_x && x_answers()) ||
           (may_be_wayland && wayland_answers() && has_wayland_plugin());
}

bool hides_places()
{
    static const bool hides = QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    return hides;
}

}  // namespace server
