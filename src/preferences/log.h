#pragma once

#include "platform/log_sink.h"
#include "preferences/debug_config.h"

#include <fmt/format.h>

#include <string>
#include <string_view>
#include <utility>

namespace glyma {

/// Hides what was typed but keeps its shape: letters become "X" or "x", numbers "0"; white space and ASCII
/// punctuation and symbols stay; everything else becomes U+2022. One character for each grapheme cluster.
std::string redacted(std::string_view text);

/// The program's log. Any thread.
class Log {
public:
    Log(LogSink& sink, const DebugConfig& config)
        : sink_(sink)
        , config_(config) {}

    /// Writes the message always.
    void write(std::string_view message) { sink_.write(message); }

    bool debugEnabled() const { return config_.debugLogsEnabled(); }
    /// Builds and writes the message only while debug logging is on.
    template<typename... Arguments>
    void debug(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
        if (debugEnabled())
            sink_.write(fmt::format(format, std::forward<Arguments>(arguments)...));
    }

    /// The form in which typed text may appear in a message. Call it only for a message that will be written.
    std::string redact(std::string_view text) const;
    /// redact, in double quotes with escapes.
    std::string redactQuoted(std::string_view text) const;

private:
    LogSink& sink_;
    const DebugConfig& config_;
};

} // namespace glyma
