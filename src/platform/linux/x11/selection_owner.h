#pragma once

#include "platform/linux/x11/window_reader.h"

#include <optional>
#include <string>

namespace glyma::x11 {

/// Who has a selection. One thread.
class SelectionOwner {
public:
    /// \param selection  "PRIMARY" or "CLIPBOARD".
    /// \param display    empty: the value of DISPLAY. When it cannot be opened nobody has the selection.
    explicit SelectionOwner(std::string selection, const std::string& display = {});

    /// Whether it is the application whose window is active.
    bool isInFront() const;

private:
    struct Server {
        explicit Server(Connection opened)
            : connection(std::move(opened))
            , windows(connection) {}
        Connection connection;
        WindowReader windows;
    };

    std::string selection_;
    std::unique_ptr<Server> server_;
};

} // namespace glyma::x11
