#pragma once

#include <expected>
#include <string>

namespace glyma {

/// Whether the session starts the program. Main thread.
class LoginItem {
public:
    virtual ~LoginItem() = default;
    virtual bool isEnabled() const = 0;
    /// The errors of both are sentences for people: what happened, why, what to do.
    virtual std::expected<void, std::string> enable() = 0;
    virtual std::expected<void, std::string> disable() = 0;
};

} // namespace glyma
