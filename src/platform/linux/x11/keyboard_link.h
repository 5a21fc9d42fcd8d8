#pragma once

#include "platform/linux/x11/echo_ledger.h"
#include "platform/linux/x11/fake_keys.h"
#include "platform/linux/x11/injection.h"
#include "platform/linux/x11/keyboard_grabs.h"
#include "platform/linux/x11/keyboard_hold.h"
#include "platform/linux/x11/keyboard_map.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glyma::x11 {

/// Numbers the holds of typing, from 1; 0 is none.
using HoldNumber = std::uint64_t;

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
    /// While silent nothing is kept from applications.
    void setSilent(bool isSilent);
    /// Has the tap look around on its own thread.
    void wakeTap() const;
    void setLayout(xkb_layout_index_t layout);
    /// The server's keyboard has changed.
    void reloadMap();
    /// Whether the claims cover a press of this key now.
    bool consumes(xcb_keycode_t key, ModifierMask modifiers) const;

    /// Whether this press of the user's, heard while typing is not held, has not been kept from the
    /// application although it is claimed by now. One round trip where it is claimed. Tap thread.
    bool hasSlipped(const KeyEvent& event, const TimedMove& press);

    /// Reads what the server sent. To be called when `descriptor()` is readable and when woken. Tap thread.
    /// \return whether handleEvents() is to let a key go.
    bool hasSwallowed();
    /// Deals with what hasSwallowed() has read.
    /// \return the keys that were kept from the application. They count as released from then on, for the
    ///         application and the server: so that they hold nothing else back, do not repeat, and are never
    ///         seen to be released.
    std::vector<SwallowedKey> handleEvents();
    int descriptor() const;

    /// See KeyInjector::inject.
    bool inject(std::span<const KeyChord> chords);
    // Holding typing
    /// Begins a hold, or takes over the one that is on. \return 0 when it cannot be had.
    HoldNumber hold();
    /// The hold that nobody has released, 0 when there is none.
    HoldNumber currentHold() const;
    void release(HoldNumber hold);
    /// As inject(), if this is still the hold; otherwise nothing is typed and the answer is false.
    bool inject(std::span<const KeyChord> chords, HoldNumber hold);
    /// Whether keys are kept from applications, also while they are being delivered after the release.
    bool isHolding() const { return isHolding_; }

    // Holding typing, for the tap thread
    /// The press that the callback is asked about.
    void setHeard(const TimedMove& press);
    /// What has been kept from applications since the last call, at least everything the tap has heard of
    /// before the call.
    std::vector<TimedMove> takeKept();
    /// Moves keys of the user past the hold.
    /// \param plan  makes the moves from the keys that are down, on devices as deviceFor() gives them. Nobody
    ///              else is served meanwhile: it must not wait for the server.
    void replay(const std::function<Injection(const std::vector<HeldKey>& down)>& plan);
    /// Lets pass what has to pass between two presses of one key.
    void pause();
    /// The device on which a key of this keyboard can be moved.
    xcb_input_device_id_t deviceFor(xcb_input_device_id_t keyboard);
    /// See KeyboardHold.
    void freeze();
    void thaw();
    void endHold();

    /// The keys that the batch has pressed again because the user held them.
    std::vector<HeldKey> restoredBy(EchoLedger::Batch batch);
    /// Releases a key on a keyboard of the user.
    void release(xcb_keycode_t key, xcb_input_device_id_t device);

    EchoLedger& echoes() { return echoes_; }

private:
    std::expected<void, std::string> open();
    bool isOpen() const { return connection_ && !connection_->isBroken(); }
    void apply();
    const GrabList& listOf(const KeyClaims& claims);
    void readEvents();
    std::vector<SwallowedKey> swallow();
    bool hasGrabbed(const TimedMove& press);
    bool isHeard(const xcb_generic_event_t& event) const;
    bool injectNow(std::span<const KeyChord> chords);
    bool injectBatch(std::span<const KeyChord> chords);
    bool moveKeys(const std::function<Injection(const std::vector<HeldKey>& down)>& plan);
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
    std::optional<KeyboardHold> hold_;
    std::atomic<bool> isHolding_ = false;
    HoldNumber lastHold_ = 0;
    HoldNumber currentHold_ = 0;
    std::optional<TimedMove> heard_;
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
    std::vector<SwallowedKey> toDrop_;
    /// The last presses that our passive grabs have kept.
    std::deque<TimedMove> grabbed_;
    std::vector<SwallowedKey> swallowed_;
    std::map<xcb_input_device_id_t, bool> movable_;
    EchoLedger::Batch restoringBatch_ = 0;
    std::vector<HeldKey> restored_;
};

} // namespace glyma::x11
