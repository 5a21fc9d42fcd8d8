#pragma once

#include "platform/keyboard_tap.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace glyma::simulated {

/// Hands each key to the callback and checks that the verdict is what had been announced by claim().
class SimulatedTap : public KeyboardTap {
public:
    std::expected<void, std::string> start(Callback callback) override;
    void stop() override;
    void enable() override;
    void claim(const KeyClaims& claims) override;
    std::shared_ptr<TypingHold> holdTyping() override;

    /// What the tap says to one event. Any one thread; pass when it is stopped or disabled.
    Verdict deliver(const KeyEvent& event);
    /// The desktop disables the tap; it tells the callback with the next key, which it does not show it.
    void disableByTimeout();
    bool isRunning() const;
    KeyClaims claims() const;
    /// Whether this press would be kept from the application now, whatever the callback says later.
    bool keeps(const KeyEvent& event) const;
    /// Keys where verdict and claim disagreed.
    std::vector<std::string> disagreements() const;

    /// What holdTyping() answers: the desktop's keys.
    std::function<std::shared_ptr<TypingHold>()> hold;
    std::string refusal; ///< not empty: start() fails and this is why

private:
    mutable std::mutex mutex_;
    Callback callback_;
    KeyClaims claims_;
    bool isDisabled_ = false;
    std::optional<std::uint16_t> consumedKey_; ///< what grabs a key keeps its repeats too, until it is let go
    std::thread::id delivering_;
    bool isOvertaken_ = false; ///< another thread claimed while a key was being delivered
    std::vector<std::string> disagreements_;
};

} // namespace glyma::simulated
