#include "platform/linux/atspi/greeting.h"

#include <utility>

namespace glyma::atspi {

namespace {

constexpr int patienceMilliseconds = 30'000;

struct MessageRelease {
    void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using Message = std::unique_ptr<DBusMessage, MessageRelease>;

} // namespace

Greeting::Greeting(AtspiAccessible* application, std::function<void(bool)> onEnd)
    : onEnd_(std::move(onEnd)) {
    const auto* object = reinterpret_cast<const AtspiObject*>(application);
    // Not the application's own connection, which libatspi may have opened to it: nobody waits for what comes
    // in there on its own.
    auto* const bus = atspi_get_a11y_bus();
    if (!bus || !object->app || !object->app->bus_name)
        return;
    const Message question(dbus_message_new_method_call(object->app->bus_name, object->path,
                                                        "org.a11y.atspi.Accessible", "GetRole"));
    dbus_connection_send_with_reply(bus, question.get(), &pending_, patienceMilliseconds);
    if (pending_)
        dbus_pending_call_set_notify(pending_, onReply, this, nullptr);
}

Greeting::~Greeting() {
    if (!pending_)
        return;
    if (!dbus_pending_call_get_completed(pending_))
        dbus_pending_call_cancel(pending_);
    dbus_pending_call_unref(pending_);
}

void Greeting::onReply(DBusPendingCall* pending, void* self) {
    const Message reply(dbus_pending_call_steal_reply(pending));
    const auto onEnd = std::move(static_cast<Greeting*>(self)->onEnd_);
    onEnd(reply && dbus_message_get_type(reply.get()) == DBUS_MESSAGE_TYPE_METHOD_RETURN);
}

} // namespace glyma::atspi
