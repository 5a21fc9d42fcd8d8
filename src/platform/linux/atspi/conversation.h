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

    /// How long a search may take whose outcome somebody waits for, and one that nobody waits for.
    static constexpr Milliseconds patience{100};
    static constexpr Milliseconds backgroundPatience{600};

    explicit Conversation(const std::atomic<bool>& abandoned, Milliseconds searchTime = patience)
        : abandoned_(abandoned)
        , searchEnd_(std::chrono::steady_clock::now() + searchTime) {}

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
    /// Whether a search has to stop; remembers that it had to.
    bool searchMustEnd() {
        hasGivenUp_ = hasGivenUp_ || std::chrono::steady_clock::now() > searchEnd_;
        return hasGivenUp_ || isOver();
    }
    bool hasGivenUp() const { return hasGivenUp_; }
    bool isOver() const { return timedOut_ || abandoned_; }

private:
    const std::atomic<bool>& abandoned_;
    std::chrono::steady_clock::time_point searchEnd_;
    bool timedOut_ = false;
    bool hasGivenUp_ = false;
};

} // namespace glyma::atspi
