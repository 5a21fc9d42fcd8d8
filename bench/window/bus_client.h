#pragma once

#include <chrono>

struct DBusConnection;

namespace glyma::bench {

/// The session bus as another program of the session sees it.
class BusClient {
public:
    /// From now on it is seen when the program takes its name.
    BusClient();
    ~BusClient();
    BusClient(const BusClient&) = delete;
    BusClient& operator=(const BusClient&) = delete;

    /// Waits until the program's main loop has answered a call. \return false when it has not in that time.
    bool waitForProgram(std::chrono::milliseconds limit);

private:
    bool waitForName(std::chrono::steady_clock::time_point deadline);

    DBusConnection* connection_;
};

} // namespace glyma::bench
