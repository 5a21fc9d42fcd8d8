#include "platform/qt/selection_reader.h"

#include <QString>
#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <poll.h>
#include <string_view>
#include <vector>

namespace glyma::qt {

namespace {

using SteadyClock = std::chrono::steady_clock;

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};
template<typename T>
using Owned = std::unique_ptr<T, FreeDeleter>;

/// Targets that are requests to the owner or facts about the transfer, not contents.
constexpr std::array<std::string_view, 7> notContents = {
    "TARGETS", "MULTIPLE", "TIMESTAMP", "SAVE_TARGETS", "DELETE", "INSERT_SELECTION", "INSERT_PROPERTY"};

constexpr unsigned propertyCount = 64;

/// Thirty-two bit words of property data read at once.
constexpr std::uint32_t chunkWords = 1U << 20U;

std::string utf8FromLatin1(std::string_view text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())).toStdString();
}

struct Property {
    std::string data;
    xcb_atom_t type = XCB_ATOM_NONE;
};

} // namespace

struct SelectionReader::Connection {
    xcb_connection_t* xcb = nullptr;
    xcb_window_t window = XCB_NONE;
    xcb_atom_t selection = XCB_ATOM_NONE;
    /// Where the answer to the current request is put. Each request has another one: an owner that comes back
    /// to life answers the requests that were given up, too.
    xcb_atom_t property = XCB_ATOM_NONE;
    unsigned requests = 0;
    xcb_atom_t targets = XCB_ATOM_NONE;
    xcb_atom_t incremental = XCB_ATOM_NONE;
    SteadyClock::time_point end;

    explicit Connection(const std::string& selectionName);
    ~Connection() { xcb_disconnect(xcb); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    xcb_atom_t atom(std::string_view name);
    std::string name(xcb_atom_t atom);
    Property takeProperty();
    std::optional<std::string> convert(xcb_atom_t target, bool& ownerIsSilent);
    std::vector<xcb_atom_t> readTargets();
    std::optional<std::string> readIncrements();
    template<typename Accept>
    Owned<xcb_generic_event_t> waitFor(Accept accept);
};

SelectionReader::Connection::Connection(const std::string& selectionName)
    : xcb(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(xcb))
        return;
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data;
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    window = xcb_generate_id(xcb);
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    selection = atom(selectionName);
    targets = atom("TARGETS");
    incremental = atom("INCR");
}

xcb_atom_t SelectionReader::Connection::atom(std::string_view text) {
    const auto cookie = xcb_intern_atom(xcb, 0, static_cast<std::uint16_t>(text.size()), text.data());
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(xcb, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

std::string SelectionReader::Connection::name(xcb_atom_t value) {
    const Owned<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(xcb, xcb_get_atom_name(xcb, value), nullptr));
    if (!reply)
        return {};
    return {xcb_get_atom_name_name(reply.get()),
            static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

/// Reads and deletes the transfer property; deleting it is what tells the owner to go on.
Property SelectionReader::Connection::takeProperty() {
    Property result;
    for (std::uint32_t offset = 0;; offset += chunkWords) {
        const auto cookie =
            xcb_get_property(xcb, 1, window, property, XCB_GET_PROPERTY_TYPE_ANY, offset, chunkWords);
        const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb, cookie, nullptr));
        if (!reply)
            return result;
        result.type = reply->type;
        result.data.append(static_cast<const char*>(xcb_get_property_value(reply.get())),
                           static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
        // The server deletes the property only with the piece that reaches its end.
        if (reply->bytes_after == 0)
            return result;
    }
}

/// The next accepted event, or null when none came in time.
template<typename Accept>
Owned<xcb_generic_event_t> SelectionReader::Connection::waitFor(Accept accept) {
    xcb_flush(xcb);
    for (;;) {
        while (Owned<xcb_generic_event_t> event{xcb_poll_for_event(xcb)})
            if (accept(*event))
                return event;
        const auto left = std::chrono::ceil<Milliseconds>(end - SteadyClock::now());
        if (left.count() <= 0 || xcb_connection_has_error(xcb))
            return nullptr;
        pollfd descriptor{xcb_get_file_descriptor(xcb), POLLIN, 0};
        poll(&descriptor, 1, static_cast<int>(left.count()));
    }
}

std::optional<std::string> SelectionReader::Connection::convert(xcb_atom_t target, bool& ownerIsSilent) {
    property = atom("GLYMA_TRANSFER_" + std::to_string(requests++ % propertyCount));
    xcb_delete_property(xcb, window, property);
    xcb_convert_selection(xcb, window, selection, target, property, XCB_CURRENT_TIME);
    const auto event = waitFor([&](const xcb_generic_event_t& candidate) {
        const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(candidate);
        return (candidate.response_type & 0x7F) == XCB_SELECTION_NOTIFY && answer.target == target &&
               (answer.property == property || answer.property == XCB_ATOM_NONE);
    });
    ownerIsSilent = !event;
    if (!event || reinterpret_cast<const xcb_selection_notify_event_t&>(*event).property == XCB_ATOM_NONE)
        return std::nullopt;
    auto content = takeProperty();
    if (content.type == incremental)
        return readIncrements();
    return std::move(content.data);
}

/// Nothing when the owner is silent. Sets the time that the contents may take.
std::vector<xcb_atom_t> SelectionReader::Connection::readTargets() {
    bool ownerIsSilent = false;
    end = SteadyClock::now() + silenceAllowed;
    const auto list = convert(targets, ownerIsSilent);
    if (!list)
        return {};
    // One that answers is alive; it may need longer to turn a large picture into a file.
    end = SteadyClock::now() + totalAllowed;
    std::vector<xcb_atom_t> result(list->size() / sizeof(xcb_atom_t));
    std::memcpy(result.data(), list->data(), result.size() * sizeof(xcb_atom_t));
    return result;
}

/// The pieces of a value too large for one property, up to the empty piece that ends it.
std::optional<std::string> SelectionReader::Connection::readIncrements() {
    std::string result;
    for (;;) {
        const auto event = waitFor([&](const xcb_generic_event_t& candidate) {
            const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(candidate);
            return (candidate.response_type & 0x7F) == XCB_PROPERTY_NOTIFY && change.atom == property &&
                   change.state == XCB_PROPERTY_NEW_VALUE;
        });
        if (!event)
            return std::nullopt;
        const auto piece = takeProperty();
        if (piece.data.empty())
            return result;
        result += piece.data;
    }
}

SelectionReader::SelectionReader(std::string selection)
    : selection_(std::move(selection))
    , connection_(std::make_unique<Connection>(selection_)) {}

SelectionReader::~SelectionReader() = default;

bool SelectionReader::works() const {
    return !xcb_connection_has_error(connection_->xcb);
}

ClipboardSnapshot SelectionReader::read() {
    auto& connection = *connection_;
    bool ownerIsSilent = false;
    ClipboardSnapshot result;
    for (const auto target : connection.readTargets()) {
        auto name = connection.name(target);
        if (name.empty() || std::ranges::count(notContents, name) > 0)
            continue;
        if (auto data = connection.convert(target, ownerIsSilent))
            result.emplace_back(std::move(name), std::move(*data));
        if (ownerIsSilent)
            break;
    }
    return result;
}

std::optional<std::string> SelectionReader::readText() {
    auto& connection = *connection_;
    const auto targets = connection.readTargets();
    const auto has = [&](std::string_view target) {
        return std::ranges::count(targets, connection.atom(target)) > 0;
    };
    bool ownerIsSilent = false;
    if (has("UTF8_STRING"))
        return connection.convert(connection.atom("UTF8_STRING"), ownerIsSilent);
    const auto latin = has("STRING") ? connection.convert(XCB_ATOM_STRING, ownerIsSilent) : std::nullopt;
    return latin ? std::optional(utf8FromLatin1(*latin)) : std::nullopt;
}

} // namespace glyma::qt
