#include "server/qt/ReaderSwitch.h"

#include <gio/gio.h>

#include <utility>

#include "support/HostBus.h"
#include "support/Held.h"

namespace server {

using BPrivate::Held;
using BPrivate::HeldObject;

static const char* const kService = "org.a11y.Bus";
static const char* const kPath = "/org/a11y/bus";
static const char* const kStatus = "org.a11y.Status";
static const char* const kBus = "org.a11y.Bus";
static const char* const kProperties = "org.freedesktop.DBus.Properties";

static const bigtime_t kBusPatience_us = 1'000'000;  // of each of its answers

bool bus_is_silent()
{
    using BPrivate::HostBus;
    return HostBus(HostBus::Kind::Session, kBusPatience_us).Status() == B_TIMED_OUT;
}

class ReaderSwitch::Watch {
public:
    Watch(const std::string& address, Switched switched);
    ~Watch();
    Watch(const Watch&) = delete;

private:
    static void _Connected(GObject* source, GAsyncResult* result, void* data);
    static void _Came(GDBusConnection* bus, const char* name, const char* owner, void* data);
    static void _Went(GDBusConnection* bus, const char* name, void* data);
    static void _Changed(GDBusConnection* bus, const char* sender, const char* path,
                         const char* interface, const char* signal, GVariant* arguments,
                         void* data);
    static void _Answered(GObject* source, GAsyncResult* result, void* data);
    static void _Addressed(GObject* source, GAsyncResult* result, void* data);
    void _Ask();
    void _Call(const char* interface, const char* method, GVariant* arguments,
               const char* reply_type, GAsyncReadyCallback answered);
    void _Tell(bool on, const std::string& address = "");

    const Switched fSwitched;
    const HeldObject<GCancellable> fEnd{g_cancellable_new()};
    HeldObject<GDBusConnection> fBus;
    unsigned fSubscription = 0, fNameWatch = 0;
    bool fOn = false;
    bool fCame = false;  // the service, since it was asked last
};

ReaderSwitch::Watch::Watch(const std::string& address, Switched switched)
    : fSwitched(std::move(switched))
{
    const int flags = G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                      G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION;
    g_dbus_connection_new_for_address(address.c_str(), static_cast<GDBusConnectionFlags>(flags),
                                      nullptr, fEnd.get(), _Connected, this);
}

ReaderSwitch::Watch::~Watch()
{
    g_cancellable_cancel(fEnd.get());
    if (fBus != nullptr) {
        g_bus_unwatch_name(fNameWatch);
        g_dbus_connection_signal_unsubscribe(fBus.get(), fSubscription);
    }
}

void ReaderSwitch::Watch::_Connected(GObject*, GAsyncResult* result, void* data)
{
    GDBusConnection* const bus = g_dbus_connection_new_for_address_finish(result, nullptr);
    if (bus == nullptr)
        return;  // the watch may be gone
    auto* const self = static_cast<Watch*>(data);
    self->fBus.reset(bus);
    g_dbus_connection_set_exit_on_close(bus, false);
    self->fSubscription = g_dbus_connection_signal_subscribe(
        bus, kService, kProperties, "PropertiesChanged", kPath, kStatus, G_DBUS_SIGNAL_FLAGS_NONE,
        _Changed, self, nullptr);
    self->fNameWatch = g_bus_watch_name_on_connection(bus, kService, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                                      _Came, _Went, self, nullptr);
}

void ReaderSwitch::Watch::_Came(GDBusConnection*, const char*, const char*, void* data)
{
    auto* const self = static_cast<Watch*>(data);
    self->fCame = true;
    self->_Ask();
}

void ReaderSwitch::Watch::_Went(GDBusConnection*, const char*, void* data)
{
    static_cast<Watch*>(data)->_Tell(false);
}

void ReaderSwitch::Watch::_Changed(GDBusConnection*, const char*, const char*, const char*,
                                   const char*, GVariant*, void* data)
{
    static_cast<Watch*>(data)->_Ask();
}

void ReaderSwitch::Watch::_Call(const char* interface, const char* method, GVariant* arguments,
                                const char* reply_type, GAsyncReadyCallback answered)
{
    g_dbus_connection_call(fBus.get(), kService, kPath, interface, method, arguments,
                           G_VARIANT_TYPE(reply_type), G_DBUS_CALL_FLAGS_NO_AUTO_START, -1,
                           fEnd.get(), answered, this);
}

// One of two values says it, and the signal has only what has changed: both are asked for.
void ReaderSwitch::Watch::_Ask()
{
    _Call(kProperties, "GetAll", g_variant_new("(s)", kStatus), "(a{sv})", _Answered);
}

// Null if the call failed; of one that was given up the watch is gone.
static Held<GVariant> end_call(GObject* source, GAsyncResult* result)
{
    return Held<GVariant>(
        g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
}

void ReaderSwitch::Watch::_Answered(GObject* source, GAsyncResult* result, void* data)
{
    const Held<GVariant> answer = end_call(source, result);
    if (answer == nullptr)
        return;
    const Held<GVariant> values(g_variant_get_child_value(answer.get(), 0));
    gboolean enabled = false, read = false;
    g_variant_lookup(values.get(), "IsEnabled", "b", &enabled);
    g_variant_lookup(values.get(), "ScreenReaderEnabled", "b", &read);
    auto* const self = static_cast<Watch*>(data);
    const bool came = std::exchange(self->fCame, false);
    if ((enabled || read) && !came)
        self->_Call(kBus, "GetAddress", nullptr, "(s)", _Addressed);
    else
        self->_Tell(enabled || read);
}

void ReaderSwitch::Watch::_Addressed(GObject* source, GAsyncResult* result, void* data)
{
    const Held<GVariant> answer = end_call(source, result);
    if (answer == nullptr)
        return;
    const char* address;
    g_variant_get(answer.get(), "(&s)", &address);
    static_cast<Watch*>(data)->_Tell(true, address);
}

void ReaderSwitch::Watch::_Tell(bool on, const std::string& address)
{
    if (std::exchange(fOn, on) != on)
        fSwitched(on, address);
}

ReaderSwitch::ReaderSwitch(Switched switched)
{
    const std::string address = BPrivate::session_bus_address();
    if (!address.empty())
        fWatch = std::make_unique<Watch>(address, std::move(switched));
}

ReaderSwitch::~ReaderSwitch() = default;

}  // namespace server
