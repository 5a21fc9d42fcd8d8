#pragma once

#include "platform/scheduler.h"

#include <chrono>

namespace glyma {

/// Dates in stored JSON are seconds since 2001-01-01T00:00:00Z.
inline constexpr Timestamp jsonReferenceDate{std::chrono::seconds{978307200}};

inline double toJsonDate(Timestamp timestamp) {
    return std::chrono::duration<double>(timestamp - jsonReferenceDate).count();
}
inline Timestamp fromJsonDate(double seconds) {
    return jsonReferenceDate +
           std::chrono::duration_cast<Timestamp::duration>(std::chrono::duration<double>(seconds));
}

} // namespace glyma
