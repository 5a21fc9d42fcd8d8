#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <expected>
#include <memory>
#include <string>
#include <string_view>

namespace glyma::x11 {

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};
/// A reply, an event or an error: xcb hands them over as malloc'ed memory.
template<typename Value>
using Owned = std::unique_ptr<Value, FreeMemory>;

template<typename Value>
Owned<Value> owned(Value* value) {
    return Owned<Value>(value);
}

/// A connection to the X server. Requests may be made from any thread; who waits for events on `descriptor()`
/// must be woken by hand when another thread waited for a reply, because that thread may have read the events
/// as well.
class Connection {
public:
    /// \param display  as in DISPLAY; empty means the value of DISPLAY.
    static std::expected<Connection, std::string> open(const std::string& display);

    xcb_connection_t* get() const { return connection_.get(); }
    xcb_window_t root() const { return screen_->root; }
    const xcb_screen_t& screen() const { return *screen_; }
    int screenNumber() const { return screenNumber_; }
    int descriptor() const { return xcb_get_file_descriptor(get()); }
    /// Whether the server is gone. It stays so.
    bool isBroken() const { return xcb_connection_has_error(get()) != 0; }
    void flush() const { xcb_flush(get()); }

    /// The extension's opcodes, or null when the server lacks it.
    const xcb_query_extension_reply_t* extension(xcb_extension_t& id) const;
    /// XCB_ATOM_NONE when the server is gone.
    xcb_atom_t atom(std::string_view name) const;
    /// The window that has the focus; one of the XCB_INPUT_FOCUS constants when no real window has it.
    xcb_window_t focus() const;
    /// The next event, or null when none is there. Errors of unchecked requests are skipped: windows of other
    /// programs vanish at any time.
    Owned<xcb_generic_event_t> pollEvent() const;

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };
    explicit Connection(xcb_connection_t* connection, int screenNumber);

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    const xcb_screen_t* screen_ = nullptr;
    int screenNumber_ = 0;
};

/// While it lives the server serves this connection alone: waiting for an answer on another one never ends.
class ServerGrab {
public:
    explicit ServerGrab(const Connection& connection)
        : connection_(connection) {
        xcb_grab_server(connection_.get());
    }
    ~ServerGrab() {
        xcb_ungrab_server(connection_.get());
        connection_.flush();
    }
    ServerGrab(const ServerGrab&) = delete;
    ServerGrab& operator=(const ServerGrab&) = delete;

private:
    const Connection& connection_;
};

} // namespace glyma::x11
