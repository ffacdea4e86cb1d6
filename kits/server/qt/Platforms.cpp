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

#include <cstdlib>
#include <cstring>
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
