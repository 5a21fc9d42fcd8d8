#include "platform/linux/xdg/standard_error_log_sink.h"

#include <fmt/format.h>

#include <cstdio>

namespace glyma::xdg {

void StandardErrorLogSink::write(std::string_view message) {
    // One call, so that the lines of several threads do not mix.
    const auto line = fmt::format("{}\n", message);
    std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace glyma::xdg
