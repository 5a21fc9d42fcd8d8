#pragma once

#include <string_view>

namespace glyma {

/// Where log messages go, with the subsystem and category of the program. Any thread.
class LogSink {
public:
    virtual ~LogSink() = default;
    virtual void write(std::string_view message) = 0;
};

} // namespace glyma
