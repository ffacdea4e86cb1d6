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
    return "unix:path=" + take_text(g_dbus_address_escape_value(socket.c_str()));
}

static std::string system_address()
{
    return take_text(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
}

namespace {

// A connection being made. The host's library would wait without limit.
struct Attempt {
    const Held<GMainContext> context{g_main_context_new()};
    const HeldObject<GCancellable> cancellable{g_cancellable_new()};
    HeldObject<GDBusConnection> connection;
    Held<GError> error;
    bool over = false;

    Attempt() { g_main_context_push_thread_default(context.get()); }
    ~Attempt() { g_main_context_pop_thread_default(context.get()); }
};

}  // namespace

static void end_attempt(GObject*, GAsyncResult* result, void* data)
{
    auto* attempt = static_cast<Attempt*>(data);
    GError* error = nullptr;
    attempt->connection.reset(g_dbus_connection_new_for_address_finish(result, &error));
    attempt->error.reset(error);
    attempt->over = true;
}

static gboolean cancel_attempt(void* cancellable)
{
    g_cancellable_cancel(static_cast<GCancellable*>(cancellable));
    return G_SOURCE_REMOVE;
}

static HeldObject<GDBusConnection> connect_to(const std::string& address, int timeout_ms,
                                              Held<GError>* error)
{
    Attempt attempt;
    const Held<GSource> timer(g_timeout_source_new(timeout_ms));
    g_source_set_callback(timer.get(), cancel_attempt, attempt.cancellable.get(), nullptr);
    g_source_attach(timer.get(), attempt.context.get());
    // Not as a connection to a bus: GDBus would greet that itself, and wait for the answer as long
    // as it likes.
    g_dbus_connection_new_for_address(address.c_str(),
                                      G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT, nullptr,
                                      attempt.cancellable.get(), end_attempt, &attempt);
    while (!attempt.over)
        g_main_context_iteration(attempt.context.get(), true);
    g_source_destroy(timer.get());
    *error = std::move(attempt.error);
    return std::move(attempt.connection);
}

static const HostBus::Object kBus = {"org.freedesktop.DBus", "/org/freedesktop/DBus",
                                     "org.freedesktop.DBus"};

HostBus::HostBus(Kind kind, bigtime_t timeout_us) : fTimeoutMs(static_cast<int>(timeout_us / 1000))
{
    const std::string address = kind == Kind::Session ? session_bus_address() : system_address();
    if (address.empty())
        return;
    Held<GError> error;
    fConnection = connect_to(address, fTimeoutMs, &error);
    if (fConnection == nullptr) {
        _Fail(error.get());
        return;
    }
    g_dbus_connection_set_exit_on_close(fConnection.get(), false);
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
    g_dbus_connection_close_sync(fConnection.get(), nullptr, nullptr);
    fConnection = nullptr;
}

void HostBus::_Fail(const GError* error)
{
    fStatus = B_ERROR;
    if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ||
        g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
        fStatus = B_TIMED_OUT;
    else if (!g_dbus_error_is_remote_error(error) ||
             g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) ||
             g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER))
        fStatus = B_ENTRY_NOT_FOUND;
    fErrorName = take_text(g_dbus_error_get_remote_error(error));
}

Held<GVariant> HostBus::Call(const Object& object, const char* method, GVariant* arguments,
                             const char* reply_type)
{
    const Held<GVariant> kept(
        g_variant_ref_sink(arguments != nullptr ? arguments : g_variant_new("()")));
    if (fConnection == nullptr)
        return nullptr;
    GError* error = nullptr;
    Held<GVariant> reply(g_dbus_connection_call_sync(
        fConnection.get(), object.service, object.path, object.interface, method, kept.get(),
        G_VARIANT_TYPE(reply_type), G_DBUS_CALL_FLAGS_NO_AUTO_START, fTimeoutMs, nullptr, &error));
    const Held<GError> failure(error);
    if (reply == nullptr)
        _Fail(failure.get());
    else
        fStatus = B_OK;
    return reply;
}

bool HostBus::Runs(const char* service)
{
    const Held<GVariant> reply = Call(kBus, "NameHasOwner", g_variant_new("(s)", service), "(b)");
    gboolean owned = false;
    if (reply != nullptr)
        g_variant_get(reply.get(), "(b)", &owned);
    return owned;
}

}  // namespace BPrivate
