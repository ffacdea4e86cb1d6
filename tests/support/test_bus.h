#ifndef TESTS_SUPPORT_TEST_BUS_H
#define TESTS_SUPPORT_TEST_BUS_H

// A message bus of the test's own, and services on it whose every call is written down.

#include <gio/gio.h>

#include <functional>
#include <initializer_list>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <cstdlib>

// The bus ends with the object; `variable` of the environment tells where it is.
class TestBus {
public:
    explicit TestBus(const char* variable = "DBUS_SESSION_BUS_ADDRESS")
        : fBus(g_test_dbus_new(G_TEST_DBUS_NONE))
    {
        const char* session = getenv("DBUS_SESSION_BUS_ADDRESS");
        const std::string former = session != nullptr ? session : "";
        g_test_dbus_up(fBus);
        fAddress = g_test_dbus_get_bus_address(fBus);
        if (former.empty())
            unsetenv("DBUS_SESSION_BUS_ADDRESS");
        else
            setenv("DBUS_SESSION_BUS_ADDRESS", former.c_str(), 1);
        setenv(variable, fAddress.c_str(), 1);
    }
    ~TestBus()
    {
        g_test_dbus_stop(fBus);
        g_object_unref(fBus);
    }
    TestBus(const TestBus&) = delete;
    const std::string& Address() const { return fAddress; }

private:
    GTestDBus* fBus;
    std::string fAddress;
};

// A service that answers on a thread of its own. Its answers are made by a function: null for none
// at all, or an error's name.
class TestService {
public:
    struct Answer {
        GVariant* reply = nullptr;
        std::string error;
    };
    // The path, the method, and the arguments.
    using Method = std::function<Answer(const std::string&, const std::string&, GVariant*)>;

    TestService(const TestBus& bus, const char* name, std::initializer_list<const char*> paths,
                const char* interface_xml, Method method)
        : fMethod(std::move(method))
    {
        fConnection = g_dbus_connection_new_for_address_sync(
            bus.Address().c_str(),
            GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                 G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr);
        fNode = g_dbus_node_info_new_for_xml(interface_xml, nullptr);
        g_main_context_push_thread_default(fContext);
        static const GDBusInterfaceVTable kTable = {answer, nullptr, nullptr, {}};
        for (const char* path : paths)
            g_dbus_connection_register_object(fConnection, path, fNode->interfaces[0], &kTable,
                                              this, nullptr, nullptr);
        g_main_context_pop_thread_default(fContext);
        fThread = std::thread([this] { g_main_loop_run(fLoop); });
        GVariant* reply = g_dbus_connection_call_sync(
            fConnection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
            "RequestName", g_variant_new("(su)", name, 4), nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
            nullptr, nullptr);
        g_variant_unref(reply);
    }
    ~TestService()
    {
        g_main_loop_quit(fLoop);
        fThread.join();
        g_dbus_connection_close_sync(fConnection, nullptr, nullptr);
        g_object_unref(fConnection);
        for (GDBusMethodInvocation* unanswered : fUnanswered)
            g_object_unref(unanswered);
        g_dbus_node_info_unref(fNode);
        g_main_loop_unref(fLoop);
        g_main_context_unref(fContext);
    }
    TestService(const TestService&) = delete;

    // "Method ('first', 2)", in the order of the calls; forgets them.
    std::vector<std::string> TakeCalls()
    {
        std::lock_guard guard(fLock);
        return std::exchange(fCalls, {});
    }

private:
    static void answer(GDBusConnection*, const char*, const char* path, const char*,
                       const char* method, GVariant* arguments, GDBusMethodInvocation* invocation,
                       void* data)
    {
        auto* self = static_cast<TestService*>(data);
        char* text = g_variant_print(arguments, false);
        {
            std::lock_guard guard(self->fLock);
            self->fCalls.push_back(std::string(method) + " " + text);
        }
        g_free(text);
        const Answer result = self->fMethod(path, method, arguments);
        if (result.reply != nullptr)
            g_dbus_method_invocation_return_value(invocation, result.reply);
        else if (!result.error.empty())
            g_dbus_method_invocation_return_dbus_error(invocation, result.error.c_str(), "no");
        else
            self->fUnanswered.push_back(invocation);
    }

    const Method fMethod;
    GMainContext* const fContext = g_main_context_new();
    GMainLoop* const fLoop = g_main_loop_new(fContext, false);
    GDBusConnection* fConnection;
    GDBusNodeInfo* fNode;
    std::vector<GDBusMethodInvocation*> fUnanswered;  // the service's thread
    std::mutex fLock;
    std::vector<std::string> fCalls;  // fLock
    std::thread fThread;
};

#endif  // TESTS_SUPPORT_TEST_BUS_H
