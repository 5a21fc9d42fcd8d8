#pragma once

#include "platform/linux/x11/connection.h"

#include <sys/types.h>

namespace glyma::x11 {

/// The process of the client that owns a resource (a window, or the client's resource base), by the server's
/// word (X-Resource extension); 0 when unknown, as with clients on other machines.
pid_t clientProcess(const Connection& connection, std::uint32_t resource);

} // namespace glyma::x11
