#pragma once

#include "platform/message.h"

#include <expected>

namespace glyma {

/// Whether the session starts the program. Main thread.
class LoginItem {
public:
    virtual ~LoginItem() = default;
    virtual bool isEnabled() const = 0;
    /// The errors of both are sentences for people: what happened, why, what to do.
    virtual std::expected<void, Message> enable() = 0;
    virtual std::expected<void, Message> disable() = 0;
};

} // namespace glyma
