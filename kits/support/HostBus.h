#ifndef SUPPORT_HOST_BUS_H
#define SUPPORT_HOST_BUS_H

// Calls to services of the host on its message buses. Only services that run are called: none is
// started, and neither is a bus.

#include <gio/gio.h>

#include <string>

#include <SupportDefs.h>
#include "support/Held.h"

namespace [[gnu::visibility("hidden")]] BPrivate {

// Where the user's bus listens, "" for none. An address that would have to start one is none.
std::string session_bus_address();

// A connection of its own to a bus, for one thread at a time.
class HostBus {
public:
    enum class Kind { Session, System };

    // Connects, greets the bus and waits for its answer; `timeout_us` holds for each of these and
    // for each call.
    HostBus(Kind kind, bigtime_t timeout_us);
    ~HostBus();
    HostBus(const HostBus&) = delete;

    bool IsConnected() const { return fConnection != nullptr; }
    bool Runs(const char* service);

    // An object of a service and an interface of it.
    struct Object {
        const char* service;
        const char* path;
        const char* interface;
    };
    // Calls a method; takes `arguments`, a tuple or null. Null on failure, see Status().
    Held<GVariant> Call(const Object& object, const char* method, GVariant* arguments,
                        const char* reply_type);

    // Why the last call failed: B_ENTRY_NOT_FOUND without bus or service, B_TIMED_OUT, or
    // B_ERROR for what the service itself says, and then by what name.
    status_t Status() const { return fStatus; }
    const std::string& ErrorName() const { return fErrorName; }

private:
    void _Fail(const GError* error);
    void _Close();

    const int fTimeoutMs;
    HeldObject<GDBusConnection> fConnection;
    status_t fStatus = B_ENTRY_NOT_FOUND;
    std::string fErrorName;
};

}  // namespace BPrivate

#endif  // SUPPORT_HOST_BUS_H
