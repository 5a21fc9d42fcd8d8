#pragma once

#include "platform/key_event.h"
#include "platform/linux/x11/connection.h"
#include "platform/linux/x11/keyboard_tap.h"
#include "platform/linux/x11/xkb_protocol.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/xinput.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace glyma::x11::testing {

/// Keys of a PC keyboard by their X key codes.
namespace pc {
inline constexpr xcb_keycode_t escape = 9, one = 10, minus = 20, equal = 21, backspace = 22, tab = 23, q = 24,
                               e = 26, returnKey = 36, control = 37, a = 38, s = 39, d = 40, f = 41,
                               shift = 50, x = 53, v = 55, alt = 64, space = 65, capsLock = 66, numLock = 77,
                               keypad8 = 80, keypadEnter = 104, altGr = 108, home = 110, up = 111, left = 113,
                               down = 116, f11 = 95, super = 133;
}

/// An X server of its own.
class Server {
public:
    explicit Server(std::vector<std::string> arguments = {});
    ~Server() { kill(); }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    const std::string& display() const { return display_; }
    void kill();
    /// Runs setxkbmap.
    void setLayout(const std::string& arguments) const;

private:
    pid_t process_ = 0;
    std::string display_;
};

/// Somebody at a keyboard.
class User {
public:
    enum class Device {
        own,   ///< the server's own keyboard, as somebody's hands move it
        xtest, ///< the one that programs type on, ours among them
    };
    explicit User(const std::string& display, Device device = Device::own);
    void press(xcb_keycode_t key) { move(key, true); }
    void release(xcb_keycode_t key) { move(key, false); }
    void tap(xcb_keycode_t key);
    void tapWith(xcb_keycode_t modifier, xcb_keycode_t key);
    void lockModifiers(std::uint8_t mask);
    void lockLayout(std::uint8_t layout);
    /// The modifiers in effect now.
    std::uint8_t modifiers() const;
    /// Returns when the server has done everything asked for.
    void sync() const;
    /// Sends what is buffered: the keys moved since then come at the same instant.
    void flush() const { connection_.flush(); }
    bool isBuffering = false;
    const Connection& connection() const { return connection_; }

private:
    void move(xcb_keycode_t key, bool isPress);
    Connection connection_;
    std::uint8_t device_ = 0;
    std::uint8_t firstEvent_ = 0;
};

/// An application's window that writes down what it gets: "+39" and "-39" for keys (with "/state" when there
/// is one), "focus out" and "focus in" for a focus that really moves.
class Target {
public:
    explicit Target(const std::string& display);
    void takeFocus();
    void destroy();
    xcb_window_t window() const { return window_; }
    const Connection& connection() const { return connection_; }
    /// Everything up to now.
    std::vector<std::string> record();
    /// As record(), without states.
    std::vector<std::string> keys();
    /// Counts the repeats of a held key instead of writing them down.
    bool countsRepeats = false;
    int repeats = 0;

private:
    Connection connection_;
    xcb_window_t window_ = 0;
};

/// What the tap's callback was given.
class Heard {
public:
    glyma::KeyboardTap::Callback callback();
    /// The next event; an empty one (unknown key) when none comes within two seconds.
    KeyEvent next();
    /// The next key press.
    KeyEvent nextKey();
    bool isEmpty();
    std::size_t count();
    void clear();
    /// Called in the callback first.
    std::function<void(const KeyEvent&)> react;
    /// The callback's answer; pass when there is none.
    std::function<Verdict(const KeyEvent&)> decide;

private:
    std::mutex mutex_;
    std::condition_variable more_;
    std::deque<KeyEvent> events_;
};

/// A server, a focused window, a user and a running tap.
class X11Test : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    /// Returns when the tap has heard everything up to now.
    void settle();
    /// settle(), then what the window got.
    std::vector<std::string> targetKeys();

    std::unique_ptr<Server> server;
    std::unique_ptr<User> user;
    std::unique_ptr<Target> target;
    std::vector<std::string> reports;
    Heard heard;
    std::unique_ptr<KeyboardTap> tap;
};

/// Waits up to two seconds.
template<typename Condition>
bool eventually(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace glyma::x11::testing
