#pragma once

#include "platform/linux/x11/probe.h"
#include "platform/permission.h"

#include <optional>
#include <string>

namespace glyma::x11 {

/// Whether keys can be heard and typed on such a display, and what to do where they cannot.
Permission inputMonitoring(const Probe& probe);

/// The permission to hear keys: the server has what that takes, and the tap runs or could be started. Main
/// thread.
class InputMonitoring : public PermissionSource {
public:
    /// \param display  empty: the value of DISPLAY.
    explicit InputMonitoring(std::string display = {});

    Permission current() const override;
    /// Asks the server only when the connection to it had to be opened again.
    void check() override;
    /// The user's part: programs cannot change the server.
    void obtain() override {}
    [[nodiscard]] Subscription observe(std::function<void()> callback) override;

    /// One that is open, for other questions; null when the server does not answer.
    const Connection* connection() const { return connection_ ? &*connection_ : nullptr; }
    /// What keeps the tap from running although the server has everything, in sentences; empty: nothing.
    void setObstacle(const Message& obstacle);

private:
    void probe();

    const std::string display_;
    std::optional<Connection> connection_;
    Permission offered_;
    Message obstacle_;
    Signal<> changed_;
};

} // namespace glyma::x11
