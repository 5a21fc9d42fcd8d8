#pragma once

#include <functional>

namespace glyma {

/// Where the X server is lost, Qt and Xlib call exit() on the main thread, in the middle of whatever it does
/// (QXcbConnection::processXcbEvents, XSetIOErrorHandler): what the program consists of would still be there,
/// with threads that use it, while the libraries take themselves down. As long as this object is there, such
/// an end is an end at once instead. Nothing is lost by it: settings and store are whole after every write,
/// and what was grabbed has gone with the server. One instance; main thread.
class ServerLoss {
public:
    /// \param say  tells the user why the program ends.
    explicit ServerLoss(std::function<void()> say);
    ~ServerLoss();
    ServerLoss(const ServerLoss&) = delete;
    ServerLoss& operator=(const ServerLoss&) = delete;
};

} // namespace glyma
