#pragma once

#include "platform/subscription.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>

namespace glyma {

/// The application whose window is active.
struct FrontApplication {
    /// Desktop-entry id (or the closest the desktop knows), absent when it has none.
    std::optional<std::string> identifier;
    /// 0 when unknown.
    pid_t process = 0;
    /// Tells its windows apart; 0 when unknown.
    std::uint64_t window = 0;
    bool operator==(const FrontApplication&) const = default;
};

/// Knows which application is in front. Main thread.
class FrontApplicationTracker {
public:
    virtual ~FrontApplicationTracker() = default;

    /// Read afresh.
    virtual FrontApplication current() = 0;
    /// Called on the main thread after another application, or another of its windows, has come to the front.
    [[nodiscard]] virtual Subscription observe(std::function<void(const FrontApplication&)> callback) = 0;
};

} // namespace glyma
