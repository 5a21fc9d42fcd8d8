#pragma once

#include "platform/scheduler.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace glyma {

/// Dates in stored JSON, and in the store, are seconds since 2001-01-01T00:00:00Z.
inline constexpr Timestamp jsonReferenceDate{std::chrono::seconds{978307200}};

/// Exact to about a tenth of a microsecond in this century; what fromJsonDate() gave comes back unchanged.
inline double toJsonDate(Timestamp timestamp) {
    // Nanoseconds since 2001 do not fit into a double: whole seconds and the rest are converted apart.
    const auto elapsed = timestamp - jsonReferenceDate;
    const auto whole = std::chrono::floor<std::chrono::seconds>(elapsed);
    return static_cast<double>(whole.count()) + std::chrono::duration<double>(elapsed - whole).count();
}

/// \param seconds  a date that the clock cannot hold becomes the nearest that it can, no number the reference
/// date.
inline Timestamp fromJsonDate(double seconds) {
    constexpr double limit =
        8e9; // two and a half centuries; the clock's nanoseconds reach 292 years from 1970
    if (std::isnan(seconds))
        return jsonReferenceDate;
    const auto clamped = std::clamp(seconds, -limit, limit);
    const auto whole = std::floor(clamped);
    return jsonReferenceDate + std::chrono::seconds(static_cast<long long>(whole)) +
           std::chrono::round<Timestamp::duration>(std::chrono::duration<double>(clamped - whole));
}

} // namespace glyma
