#include "bus_client.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <dbus/dbus.h>
#include <memory>

namespace glyma::bench {

namespace {

constexpr const char* serviceName = "net.quillaby.Glyma";
constexpr const char* objectPath = "/net/quillaby/Glyma";

struct Unref {
    void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using Message = std::unique_ptr<DBusMessage, Unref>;

int millisecondsTo(std::chrono::steady_clock::time_point deadline) {
    const auto left = deadline - std::chrono::steady_clock::now();
    return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count());
}

/// The signal that a name has gone from nobody to somebody.
bool tellsOwner(DBusMessage* message) {
    const char *name = "", *before = "", *now = "";
    return dbus_message_is_signal(message, DBUS_INTERFACE_DBUS, "NameOwnerChanged") &&
           dbus_message_get_args(message, nullptr, DBUS_TYPE_STRING, &name, DBUS_TYPE_STRING, &before,
                                 DBUS_TYPE_STRING, &now, DBUS_TYPE_INVALID) &&
           *now != '\0';
}

} // namespace

BusClient::BusClient()
    : connection_(dbus_bus_get_private(DBUS_BUS_SESSION, nullptr)) {
    if (!connection_) {
        std::fprintf(stderr, "bench_window: no session bus\n");
        std::exit(1);
    }
    dbus_connection_set_exit_on_disconnect(connection_, FALSE);
    dbus_bus_add_match(connection_,
                       "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',"
                       "arg0='net.quillaby.Glyma'",
                       nullptr);
    dbus_connection_flush(connection_);
}

BusClient::~BusClient() {
    dbus_connection_close(connection_);
    dbus_connection_unref(connection_);
}

bool BusClient::waitForName(std::chrono::steady_clock::time_point deadline) {
    for (;;) {
        while (const Message message{dbus_connection_pop_message(connection_)})
            if (tellsOwner(message.get()))
                return true;
        if (millisecondsTo(deadline) <= 0 ||
            !dbus_connection_read_write(connection_, millisecondsTo(deadline)))
            return false;
    }
}

bool BusClient::waitForProgram(std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    if (!waitForName(deadline))
        return false;
    const Message call(
        dbus_message_new_method_call(serviceName, objectPath, DBUS_INTERFACE_INTROSPECTABLE, "Introspect"));
    const Message answer(dbus_connection_send_with_reply_and_block(
        connection_, call.get(), std::max(1, millisecondsTo(deadline)), nullptr));
    return answer != nullptr;
}

} // namespace glyma::bench
