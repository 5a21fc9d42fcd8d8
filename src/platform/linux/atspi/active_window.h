#pragma once

#include "platform/geometry.h"

#include <memory>
#include <optional>
#include <sys/types.h>

namespace glyma::atspi {

/// The top level window that has the focus, as the window manager tells. One thread.
class ActiveWindow {
public:
    struct State {
        /// 0 when the window does not tell.
        pid_t process = 0;
        /// What the application regards as its window: without the invisible border in which GTK draws its
        /// shadow.
        Rect frame;
        bool operator==(const State&) const = default;
    };

    ActiveWindow();
    ~ActiveWindow();

    /// Read afresh; absent when no window is active or there is no X server.
    std::optional<State> read();

private:
    struct Connection;
    std::unique_ptr<Connection> connection_;
};

} // namespace glyma::atspi
