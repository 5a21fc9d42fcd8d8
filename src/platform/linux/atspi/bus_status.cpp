#include "platform/linux/atspi/bus_status.h"

#include "platform/linux/atspi/object.h"

#include <gio/gio.h>

namespace glyma::atspi {

namespace {

constexpr auto busName = "org.a11y.Bus";
constexpr auto busPath = "/org/a11y/bus";
constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr auto statusInterface = "org.a11y.Status";
constexpr int answerMilliseconds = 1000;

struct VariantRelease {
    void operator()(GVariant* value) const { g_variant_unref(value); }
};
using Variant = std::unique_ptr<GVariant, VariantRelease>;

void note(GError* error, std::string& message) {
    if (!error)
        return;
    if (message.empty())
        message = error->message;
    g_error_free(error);
}

Variant call(GDBusConnection* bus, const char* method, GVariant* arguments, std::string& message) {
    GError* error = nullptr;
    Variant answer(g_dbus_connection_call_sync(bus, busName, busPath, propertiesInterface, method, arguments,
                                               nullptr, G_DBUS_CALL_FLAGS_NONE, answerMilliseconds, nullptr,
                                               &error));
    note(error, message);
    return answer;
}

bool readEnabled(GDBusConnection* bus, BusStatus& status) {
    const auto answer = call(bus, "Get", g_variant_new("(ss)", statusInterface, "IsEnabled"), status.error);
    status.answers = answer != nullptr;
    if (!answer)
        return false;
    GVariant* value = nullptr;
    g_variant_get(answer.get(), "(v)", &value);
    const Variant owned(value);
    return g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(value);
}

} // namespace

BusStatus busStatus(bool enable) {
    BusStatus status;
    GError* error = nullptr;
    const Object<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error));
    note(error, status.error);
    if (!bus)
        return status;
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    status.hasSessionBus = true;
    status.isEnabled = readEnabled(bus.get(), status);
    if (!enable || !status.answers || status.isEnabled)
        return status;
    call(bus.get(), "Set", g_variant_new("(ssv)", statusInterface, "IsEnabled", g_variant_new_boolean(TRUE)),
         status.error);
    status.isEnabled = readEnabled(bus.get(), status);
    return status;
}

} // namespace glyma::atspi
