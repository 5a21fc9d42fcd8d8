#pragma once

#include <string>
#include <vector>

namespace glyma::atspi {

/// The addresses of the web pages that applications on the bus show, without those inside other pages. An
/// application that cannot be asked for its documents or does not answer is left out; so are those that were
/// not reached within two seconds. Worker thread.
std::vector<std::string> pageAddresses();

} // namespace glyma::atspi
