#pragma once

#include "platform/clipboard.h"
#include "platform/scheduler.h"

#include <memory>
#include <optional>
#include <string>

namespace glyma::qt {

/// Reads an X11 selection of another client over a connection of its own, so that an owner that hangs costs a
/// fraction of a second; Qt's own reading blocks for five seconds for each type.
class SelectionReader {
public:
    /// How long the owner may take to tell which types it has before it is given up.
    static constexpr Milliseconds silenceAllowed{250};
    /// How long all the data may take after that; types not delivered by then are missing from the answer.
    static constexpr Milliseconds totalAllowed{2000};

    /// \param selection  "CLIPBOARD" or "PRIMARY".
    explicit SelectionReader(std::string selection);
    ~SelectionReader();

    /// False when there is no X server to ask.
    bool works() const;
    /// Every target for which the owner returned data, under its X11 name, in the owner's order. Must not be
    /// called while this process owns the selection and the calling thread serves it.
    ClipboardSnapshot read();
    /// Its text, UTF-8; absent when the owner has none or does not deliver it within `totalAllowed`. The same
    /// holds for the owner.
    std::optional<std::string> readText();

private:
    struct Connection;
    std::string selection_;
    std::unique_ptr<Connection> connection_;
};

} // namespace glyma::qt
