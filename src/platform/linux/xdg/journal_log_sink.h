#pragma once

#include "platform/log_sink.h"

#include <string>

namespace glyma::xdg {

/// The system's journal, with the fields SUBSYSTEM and CATEGORY to filter by; standard error where no journal
/// runs. Speaks the journal's own protocol, because its client library takes longer to load than a search to
/// answer.
class JournalLogSink : public LogSink {
public:
    explicit JournalLogSink(std::string journalSocket = "/run/systemd/journal/socket");
    void write(std::string_view message) override;
    /// false: messages go to standard error.
    bool hasJournal() const { return hasJournal_; }

private:
    bool send(std::string_view entry) const;

    std::string journalSocket_;
    bool hasJournal_;
};

} // namespace glyma::xdg
