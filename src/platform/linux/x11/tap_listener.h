#pragma once

#include "platform/keyboard_tap.h"
#include "platform/linux/x11/descriptor.h"
#include "platform/linux/x11/held_typing.h"
#include "platform/linux/x11/keyboard_link.h"
#include "platform/linux/x11/repeat_stream.h"
#include "platform/linux/x11/typing_state.h"

#include <xcb/xinput.h>

#include <functional>
#include <memory>
#include <optional>
#include <thread>

namespace glyma::x11 {

/// A running tap: its connections and its thread. Everything but creation and destruction happens on that
/// thread.
class TapListener {
public:
    struct Handlers {
        glyma::KeyboardTap::Callback callback;
        std::function<bool()> isSuppressed;
        std::function<void()> connectionLost;
        std::function<void(std::string_view)> report;
    };

    /// The error says what the server lacks and what to do.
    static std::expected<std::unique_ptr<TapListener>, std::string>
    create(const std::string& display, Handlers handlers, KeyboardLink& link);
    ~TapListener();
    TapListener(const TapListener&) = delete;
    TapListener& operator=(const TapListener&) = delete;

private:
    TapListener(Connection connection, Handlers handlers, KeyboardLink& link);
    std::expected<void, std::string> prepare(const std::string& display);
    void selectEvents();
    void readHeldKeys();

    void run();
    bool drain();
    void wait();
    void handle(const xcb_generic_event_t& event);
    void handleRaw(const xcb_input_raw_key_press_event_t& event);
    void handleKeyboard(const xcb_generic_event_t& event);
    void handleState(const xcb_xkb_state_notify_event_t& event);
    void handleMark(EchoMark mark);
    void handleServerRepeat(xcb_keycode_t key);
    void handleOwnRepeat();
    bool handleSwallowed();
    void reloadMap();
    void readStateWhenIdle();
    void hearLive(const HeldTyping::Event& event);
    Verdict deliver(const KeyEvent& event);
    void readEvents();
    void watchHold();
    void deliverHeld();
    void endHold();
    bool isSilent();
    void stopRepeating();

    Connection connection_;
    Handlers handlers_;
    KeyboardLink& link_;
    std::uint8_t xkbEvent_ = 0;
    xcb_window_t witness_ = XCB_WINDOW_NONE;
    std::optional<RepeatStream> repeats_;
    std::optional<KeyboardMap> map_;
    TypingState typing_;
    HeldTyping held_;
    /// Which hold the timer is for.
    HoldNumber watched_ = 0;
    Descriptor holdTimer_;
    std::optional<KeyMove> lastEcho_;
    bool isMapStale_ = false;
    bool isStateStale_ = false;
    /// A consumed key that is still held: to the server it is up, so its repeats are ours to make.
    std::optional<SwallowedKey> repeating_;
    Descriptor repeatTimer_;
    Descriptor wake_;
    Descriptor stop_;
    std::thread thread_;
};

} // namespace glyma::x11
