#pragma once

#include "platform/linux/x11/connection.h"

#include <expected>
#include <string>

namespace glyma::x11 {

/// An extension's version, 0.0 when the server lacks it.
struct Version {
    int major = 0;
    int minor = 0;
    auto operator<=>(const Version&) const = default;
};

inline constexpr Version neededXInput{2, 2};

/// Tells the server that this client speaks XInput 2.2, and asks what it speaks.
Version negotiateXInput(const Connection& connection);
bool hasXTest(const Connection& connection);
bool negotiateXkb(const Connection& connection);

/// Whether keys can be heard and typed here; the error says what is missing and what the user can do.
std::expected<void, std::string> checkRequirements(const Connection& connection);

} // namespace glyma::x11
