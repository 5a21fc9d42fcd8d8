#pragma once

#include "platform/simulated/virtual_clock.h"
#include "platform/typing_hold.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <span>

namespace glyma::simulated {

/// The keys that wait while typing is held. Any thread.
class TypingHolds : public std::enable_shared_from_this<TypingHolds> {
public:
    struct Desktop {
        /// Shows the event to the tap and, if it passes, to the application.
        std::function<void(const KeyEvent&)> deliver;
        std::function<bool(std::span<const KeyChord>)> inject;
    };
    TypingHolds(VirtualClock& clock, Desktop desktop)
        : clock_(clock)
        , desktop_(std::move(desktop)) {}

    /// \return null when it is refused.
    std::shared_ptr<TypingHold> hold();
    /// Keeps the event when typing is held, but for repeats, which are lost then.
    /// \return false when the event is to be delivered now.
    bool keep(const KeyEvent& event);
    bool isHolding() const;
    void setRefused(bool isRefused);

private:
    using Number = std::uint64_t;
    class Hold;
    bool isOn(Number number) const;
    void release(Number number);
    void deliverWaiting();

    VirtualClock& clock_;
    Desktop desktop_;
    mutable std::mutex mutex_;
    std::deque<KeyEvent> waiting_;
    Number last_ = 0;
    Number current_ = 0; ///< 0: none
    bool isDelivering_ = false;
    bool isRefused_ = false;
};

} // namespace glyma::simulated
