#pragma once

#include <string>

namespace glyma::atspi {

/// The state of the accessibility bus of the session.
struct BusStatus {
    bool hasSessionBus = false;
    /// Something answers for org.a11y.Bus; where it does not, the package at-spi2-core is missing.
    bool answers = false;
    /// Applications are told to offer their elements.
    bool isEnabled = false;
    /// What went wrong first, in the words of the bus; empty when nothing did.
    std::string error;
    bool operator==(const BusStatus&) const = default;
};

/// Asks the session bus, for at most a second. Any thread.
/// \param enable  switch the bus on when it is off.
BusStatus busStatus(bool enable);

} // namespace glyma::atspi
