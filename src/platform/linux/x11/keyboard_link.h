#pragma once

#include "platform/linux/x11/echo_ledger.h"
#include "platform/linux/x11/fake_keys.h"
#include "platform/linux/x11/injection.h"
#include "platform/linux/x11/keyboard_grabs.h"
#include "platform/linux/x11/keyboard_map.h"

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glyma::x11 {

/// The one connection that takes keys from applications and types for the user, with what both need to know:
/// only the client that holds a key can let it go before it types. The tap and the injector share it. Any
/// thread.
class KeyboardLink {
public:
    /// \param display  empty: the value of DISPLAY.
    /// \param report   sentences for the log; called on any thread.
    KeyboardLink(std::string display, std::function<void(std::string_view)> report);

    /// A tap begins to listen.
    /// \param witness  its window for the marks of EchoLedger.
    /// \param wake     makes its thread call handleEvents().
    std::expected<void, std::string> attach(xcb_window_t witness, std::function<void()> wake);
    /// It ends: everything claimed is given back.
    void detach();

    /// See KeyboardTap::claim.
    void claim(const KeyClaims& claims);
    /// While silent nothing is claimed.
    void setSilent(bool isSilent);
    void setLayout(xkb_layout_index_t layout);
    /// The server's keyboard has changed.
    void reloadMap();
    /// Whether the claims cover a press of this key now.
    bool consumes(xcb_keycode_t key, ModifierMask modifiers) const;

    /// Deals with what the server sent. To be called when `descriptor()` is readable and when woken. Tap
    /// thread. \return the keys that were kept from the application. They count as released from then on, for
    /// the
    ///         application and the server: so that they hold nothing else back, do not repeat, and are never
    ///         seen to be released.
    std::vector<SwallowedKey> handleEvents();
    int descriptor() const;

    /// See KeyInjector::inject.
    bool inject(std::span<const KeyChord> chords);
    /// The keys that the batch has pressed again because the user held them.
    std::vector<HeldKey> restoredBy(EchoLedger::Batch batch);
    /// Releases a key on a keyboard of the user.
    void release(xcb_keycode_t key, xcb_input_device_id_t device);

    EchoLedger& echoes() { return echoes_; }

private:
    std::expected<void, std::string> open();
    bool isOpen() const { return connection_ && !connection_->isBroken(); }
    void apply();
    std::vector<SwallowedKey> swallow();
    void drop(const SwallowedKey& swallowed);
    bool isMovable(xcb_input_device_id_t device);
    void wake() const;

    const std::string display_;
    const std::function<void(std::string_view)> report_;
    EchoLedger echoes_;

    mutable std::mutex mutex_;
    std::optional<Connection> connection_;
    std::optional<KeyboardMap> map_;
    std::optional<KeyboardGrabs> grabs_;
    std::function<void()> wake_;
    xcb_window_t witness_ = XCB_WINDOW_NONE;
    KeyClaims claims_;
    bool isSilent_ = false;
    xkb_layout_index_t layout_ = 0;
    struct CachedList {
        KeyClaims claims;
        xkb_layout_index_t layout;
        GrabList list;
    };
    std::vector<CachedList> lists_;
    std::vector<SwallowedKey> swallowed_;
    std::map<xcb_input_device_id_t, bool> movable_;
    EchoLedger::Batch restoringBatch_ = 0;
    std::vector<HeldKey> restored_;
};

} // namespace glyma::x11
