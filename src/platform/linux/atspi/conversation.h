#pragma once

#include "platform/linux/atspi/object.h"
#include "platform/scheduler.h"

#include <atomic>
#include <chrono>
#include <optional>

namespace glyma::atspi {

/// The calls that answer one request. libatspi reports neither a time-out nor an application that has gone
/// reliably, so each call is timed; after one that took too long, or once nobody waits any more, no further
/// one is made.
class Conversation {
public:
    /// What libatspi waits for an answer; a little less than what our callers wait for us.
    static constexpr Milliseconds callTimeout{140};

    explicit Conversation(const std::atomic<bool>& abandoned)
        : abandoned_(abandoned) {}

    /// Makes a call that takes a GError** as its last argument.
    /// \return absent when it failed.
    template<typename Function, typename... Arguments>
    auto ask(Function function, Arguments... arguments)
        -> std::optional<decltype(function(arguments..., static_cast<GError**>(nullptr)))> {
        if (timedOut_ || abandoned_)
            return std::nullopt;
        GError* error = nullptr;
        const auto start = std::chrono::steady_clock::now();
        auto answer = function(arguments..., &error);
        timedOut_ = std::chrono::steady_clock::now() - start >= callTimeout - Milliseconds(5);
        if (!error)
            return answer;
        g_error_free(error);
        return std::nullopt;
    }

    bool timedOut() const { return timedOut_; }
    bool isOver() const { return timedOut_ || abandoned_; }

private:
    const std::atomic<bool>& abandoned_;
    bool timedOut_ = false;
};

} // namespace glyma::atspi
