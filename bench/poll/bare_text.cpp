#include "poll/bare_text.h"

#include <algorithm>
#include <dbus/dbus.h>
#include <memory>
#include <vector>

namespace glyma::bench {

namespace {

constexpr const char* accessibleInterface = "org.a11y.atspi.Accessible";
constexpr const char* textInterface = "org.a11y.atspi.Text";
constexpr int patience = 1000;
constexpr int deepest = 20;

struct Unref {
    void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using Message = std::unique_ptr<DBusMessage, Unref>;

template<typename... Arguments>
Message call(DBusConnection* connection, const std::string& name, const std::string& path,
             const char* interface, const char* method, Arguments... arguments) {
    const Message request(dbus_message_new_method_call(name.c_str(), path.c_str(), interface, method));
    if constexpr (sizeof...(arguments) > 0)
        dbus_message_append_args(request.get(), arguments..., DBUS_TYPE_INVALID);
    return Message(dbus_connection_send_with_reply_and_block(connection, request.get(), patience, nullptr));
}

Message property(DBusConnection* connection, const std::string& name, const std::string& path,
                 const char* interface, const char* what) {
    return call(connection, name, path, DBUS_INTERFACE_PROPERTIES, "Get", DBUS_TYPE_STRING, &interface,
                DBUS_TYPE_STRING, &what);
}

/// The first value of an answer, out of its variant.
template<typename Value>
std::optional<Value> first(const Message& message, int type) {
    DBusMessageIter iterator;
    if (!message || !dbus_message_iter_init(message.get(), &iterator))
        return std::nullopt;
    DBusMessageIter inner;
    if (dbus_message_iter_get_arg_type(&iterator) == DBUS_TYPE_VARIANT) {
        dbus_message_iter_recurse(&iterator, &inner);
        iterator = inner;
    }
    if (dbus_message_iter_get_arg_type(&iterator) != type)
        return std::nullopt;
    Value value{};
    dbus_message_iter_get_basic(&iterator, &value);
    return value;
}

/// The accessibility bus, which is one of its own.
DBusConnection* connect() {
    auto* const session = dbus_bus_get_private(DBUS_BUS_SESSION, nullptr);
    if (!session)
        return nullptr;
    const auto answer = call(session, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress");
    const auto address = first<const char*>(answer, DBUS_TYPE_STRING);
    auto* const connection = address ? dbus_connection_open_private(*address, nullptr) : nullptr;
    dbus_connection_close(session);
    dbus_connection_unref(session);
    if (!connection || !dbus_bus_register(connection, nullptr))
        return nullptr;
    dbus_connection_set_exit_on_disconnect(connection, FALSE);
    return connection;
}

} // namespace

std::optional<BareText::Node> BareText::search(DBusConnection* connection, const Node& from, int depth) {
    const auto role = first<const char*>(
        call(connection, from.name, from.path, accessibleInterface, "GetRoleName"), DBUS_TYPE_STRING);
    if (role && std::string(*role) == "text")
        return from;
    const auto answer = call(connection, from.name, from.path, accessibleInterface, "GetChildren");
    DBusMessageIter children;
    if (depth == deepest || !answer || !dbus_message_iter_init(answer.get(), &children))
        return std::nullopt;
    DBusMessageIter child;
    for (dbus_message_iter_recurse(&children, &child);
         dbus_message_iter_get_arg_type(&child) == DBUS_TYPE_STRUCT; dbus_message_iter_next(&child)) {
        DBusMessageIter parts;
        dbus_message_iter_recurse(&child, &parts);
        const char *name = "", *path = "";
        dbus_message_iter_get_basic(&parts, &name);
        dbus_message_iter_next(&parts);
        dbus_message_iter_get_basic(&parts, &path);
        if (auto found = search(connection, {name, path}, depth + 1))
            return found;
    }
    return std::nullopt;
}

std::optional<BareText> BareText::find() {
    auto* const connection = connect();
    if (!connection)
        return std::nullopt;
    const Node root{"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"};
    auto node = search(connection, root, 0);
    return node ? std::optional(BareText(connection, *std::move(node))) : std::nullopt;
}

std::optional<std::string> BareText::beforeCaret() const {
    const auto selections = first<dbus_int32_t>(
        call(connection_, node_.name, node_.path, textInterface, "GetNSelections"), DBUS_TYPE_INT32);
    const auto caret = first<dbus_int32_t>(
        property(connection_, node_.name, node_.path, textInterface, "CaretOffset"), DBUS_TYPE_INT32);
    if (!selections || !caret)
        return std::nullopt;
    const dbus_int32_t start = std::max(*caret - 100, 0);
    const dbus_int32_t end = *caret;
    const auto answer = call(connection_, node_.name, node_.path, textInterface, "GetText", DBUS_TYPE_INT32,
                             &start, DBUS_TYPE_INT32, &end);
    const auto text = first<const char*>(answer, DBUS_TYPE_STRING);
    return text ? std::optional<std::string>(*text) : std::nullopt;
}

} // namespace glyma::bench
