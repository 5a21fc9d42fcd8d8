#pragma once

#include "platform/log_sink.h"

namespace glyma::xdg {

/// The system's journal, with the fields SUBSYSTEM and CATEGORY to filter by; standard error where no journal
/// runs.
class JournalLogSink : public LogSink {
public:
    JournalLogSink();
    void write(std::string_view message) override;
    /// false: messages go to standard error.
    bool hasJournal() const { return hasJournal_; }

private:
    bool hasJournal_;
};

} // namespace glyma::xdg
