#pragma once

#include "platform/log_sink.h"

namespace glyma::xdg {

/// Standard error, a line a message: the log of a command, and of the program where no journal runs.
class StandardErrorLogSink : public LogSink {
public:
    void write(std::string_view message) override;
};

} // namespace glyma::xdg
