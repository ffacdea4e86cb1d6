// Connects to the host's message buses, and gives up in time.

#include "support/HostBus.h"

#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <utility>

namespace BPrivate {

std::string session_bus_address()
{
    const char* address = getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address != nullptr && address[0] != '\0')
        return strncmp(address, "autolaunch:", 11) == 0 ? "" : address;
    const char* folder = getenv("XDG_RUNTIME_DIR");
    const std::string socket = folder != nullptr ? std::string(folder) + "/bus" : "";
    if (socket.empty() || access(socket.c_str(), F_OK) != 0)
        return "";
    char* escaped = g_dbus_address_escape_value(socket.c_str());
    const std::string result = std::string("unix:path=") + escaped;
    g_free(escaped);
    return result;
}

static std::string system_address()
{
    char* address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
    const std::string result = address != nullptr ? address : "";
    g_free(address);
    return result;
}

namespace {

// A connection being made. The host's library would wait without limit.
struct Attempt {
    GMainContext* context = g_main_context_new();
    GCancellable* cancellable = g_cancellable_new();
    GDBusConnection* connection = nullptr;
    GError* error = nullptr;
    bool over = false;

    Attempt() { g_main_context_push_thread_default(context); }
    ~Attempt()
    {
        g_main_context_pop_thread_default(context);
        g_object_unref(cancellable);
        g_main_context_unref(context);
    }
};

}  // namespace

static void end_attempt(GObject*, GAsyncResult* result, void* data)
{
    auto* attempt = static_cast<Attempt*>(data);
    attempt->connection = g_dbus_connection_new_for_address_finish(result, &attempt->error);
    attempt->over = true;
}

static gboolean cancel_attempt(void* cancellable)
{
    g_cancellable_cancel(static_cast<GCancellable*>(cancellable));
    return G_SOURCE_REMOVE;
}

static GDBusConnection* connect_to(const std::string& address, int timeout_ms, GError** error)
{
    Attempt attempt;
    GSource* timer = g_timeout_source_new(timeout_ms);
    g_source_set_callback(timer, cancel_attempt, attempt.cancellable, nullptr);
    g_source_attach(timer, attempt.context);
    // Not as a connection to a bus: GDBus would greet that itself, and wait for the answer as long
    // as it likes.
    g_dbus_connection_new_for_address(address.c_str(),
                                      G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT, nullptr,
                                      attempt.cancellable, end_attempt, &attempt);
    while (!attempt.over)
        g_main_context_iteration(attempt.context, true);
    g_source_destroy(timer);
    g_source_unref(timer);
    *error = attempt.error;
    return attempt.connection;
}

static const HostBus::Object kBus = {"org.freedesktop.DBus", "/org/freedesktop/DBus",
                                     "org.freedesktop.DBus"};

HostBus::HostBus(Kind kind, bigtime_t timeout_us) : fTimeoutMs(static_cast<int>(timeout_us / 1000))
{
    const std::string address = kind == Kind::Session ? session_bus_address() : system_address();
    if (address.empty())
        return;
    GError* error = nullptr;
    fConnection = connect_to(address, fTimeoutMs, &error);
    if (fConnection == nullptr) {
        _Fail(error);
        return;
    }
    g_dbus_connection_set_exit_on_close(fConnection, false);
    if (Call(kBus, "Hello", nullptr, "(s)") == nullptr) {
        _Close();
        return;
    }
    fStatus = B_OK;
}

HostBus::~HostBus() { _Close(); }

void HostBus::_Close()
{
    if (fConnection == nullptr)
        return;
    g_dbus_connection_close_sync(fConnection, nullptr, nullptr);
    g_object_unref(std::exchange(fConnection, nullptr));
}

// Takes the error.
void HostBus::_Fail(GError* error)
{
    fStatus = B_ERROR;
    fErrorName.clear();
    if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ||
        g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
        fStatus = B_TIMED_OUT;
    else if (!g_dbus_error_is_remote_error(error) ||
             g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) ||
             g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER))
        fStatus = B_ENTRY_NOT_FOUND;
    if (char* name = g_dbus_error_get_remote_error(error)) {
        fErrorName = name;
        g_free(name);
    }
    g_error_free(error);
}

Variant HostBus::Call(const Object& object, const char* method, GVariant* arguments,
                      const char* reply_type)
{
    const Variant kept(g_variant_ref_sink(arguments != nullptr ? arguments : g_variant_new("()")));
    if (fConnection == nullptr)
        return nullptr;
    GError* error = nullptr;
    GVariant* reply = g_dbus_connection_call_sync(
        fConnection, object.service, object.path, object.interface, method, kept.get(),
        G_VARIANT_TYPE(reply_type), G_DBUS_CALL_FLAGS_NO_AUTO_START, fTimeoutMs, nullptr, &error);
    if (reply == nullptr)
        _Fail(error);
    else
        fStatus = B_OK;
    return Variant(reply);
}

bool HostBus::Runs(const char* service)
{
    const Variant reply = Call(kBus, "NameHasOwner", g_variant_new("(s)", service), "(b)");
    gboolean owned = false;
    if (reply != nullptr)
        g_variant_get(reply.get(), "(b)", &owned);
    return owned;
}

}  // namespace BPrivate
