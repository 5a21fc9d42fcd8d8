#include "platform/linux/xdg/journal_log_sink.h"

#include <fmt/format.h>
#include <systemd/sd-journal.h>

#include <array>
#include <string>
#include <sys/uio.h>
#include <syslog.h>
#include <unistd.h>

namespace glyma::xdg {

JournalLogSink::JournalLogSink()
    : hasJournal_(::access("/run/systemd/journal/socket", W_OK) == 0) {}

void JournalLogSink::write(std::string_view message) {
    std::array<std::string, 5> fields{
        fmt::format("MESSAGE={}", message),
        fmt::format("PRIORITY={}", LOG_NOTICE),
        "SYSLOG_IDENTIFIER=glyma",
        "SUBSYSTEM=net.quillaby.Glyma",
        "CATEGORY=Glyma",
    };
    std::array<iovec, fields.size()> parts;
    for (std::size_t index = 0; index < fields.size(); ++index)
        parts[index] = {fields[index].data(), fields[index].size()};
    if (!hasJournal_ || sd_journal_sendv(parts.data(), static_cast<int>(parts.size())) != 0)
        standardError_.write(message);
}

} // namespace glyma::xdg
