#pragma once

#include "platform/linux/xdg/standard_error_log_sink.h"

namespace glyma::xdg {

/// The system's journal, with the fields SUBSYSTEM and CATEGORY to filter by; standard error where no journal
/// runs. In a library of its own: loading the journal's takes longer than a search takes to answer.
class JournalLogSink : public LogSink {
public:
    JournalLogSink();
    void write(std::string_view message) override;

private:
    bool hasJournal_;
    StandardErrorLogSink standardError_;
};

} // namespace glyma::xdg
