#include "platform/linux/xdg/journal_log_sink.h"

#include "platform/linux/xdg/file_descriptor.h"

#include <fmt/format.h>

#include <cstdint>
#include <cstdio>
#include <endian.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

namespace glyma::xdg {

namespace {

/// https://systemd.io/JOURNAL_NATIVE_PROTOCOL: a text that may have line breaks is preceded by its length.
std::string journalEntry(std::string_view message) {
    const std::uint64_t size = ::htole64(message.size());
    std::string entry = "MESSAGE\n";
    entry.append(reinterpret_cast<const char*>(&size), sizeof size).append(message);
    return entry + fmt::format("\nPRIORITY={}\nSYSLOG_IDENTIFIER=glyma\nSUBSYSTEM=net.quillaby.Glyma\n"
                               "CATEGORY=Glyma\n",
                               LOG_NOTICE);
}

} // namespace

JournalLogSink::JournalLogSink(std::string journalSocket)
    : journalSocket_(std::move(journalSocket))
    , hasJournal_(::access(journalSocket_.c_str(), W_OK) == 0) {}

void JournalLogSink::write(std::string_view message) {
    if (hasJournal_ && send(journalEntry(message)))
        return;
    const auto line = fmt::format("{}\n", message);
    std::fwrite(line.data(), 1, line.size(), stderr);
}

bool JournalLogSink::send(std::string_view entry) const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    journalSocket_.copy(address.sun_path, sizeof address.sun_path - 1);
    // Not kept: a journal that was started again listens on a new socket of the same name.
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    const auto sent = ::sendto(socket.number(), entry.data(), entry.size(), MSG_NOSIGNAL,
                               reinterpret_cast<const sockaddr*>(&address), sizeof address);
    return sent == static_cast<ssize_t>(entry.size());
}

} // namespace glyma::xdg
