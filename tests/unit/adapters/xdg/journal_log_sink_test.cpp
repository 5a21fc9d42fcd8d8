#include "platform/linux/xdg/file_descriptor.h"
#include "platform/linux/xdg/journal_log_sink.h"
#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/un.h>

namespace glyma::xdg {
namespace {

/// Listens as the journal does.
class Journal {
public:
    explicit Journal(const std::string& place) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        place.copy(address.sun_path, sizeof address.sun_path - 1);
        ::bind(socket_.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
    }
    std::string receive() {
        std::string entry(4096, '\0');
        const auto size = ::recv(socket_.number(), entry.data(), entry.size(), MSG_DONTWAIT);
        entry.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
        return entry;
    }

private:
    FileDescriptor socket_{::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
};

TEST(JournalLogSink, AMessageIsOneEntryWhateverItHolds) {
    const TemporaryFolder folder;
    const auto place = (folder.path() / "socket").string();
    Journal journal(place);
    JournalLogSink sink(place);
    ASSERT_TRUE(sink.hasJournal());
    sink.write("two\nPRIORITY=0\n");
    using namespace std::string_literals;
    EXPECT_EQ(journal.receive(), "MESSAGE\n\x0F\0\0\0\0\0\0\0two\nPRIORITY=0\n\n"
                                 "PRIORITY=5\nSYSLOG_IDENTIFIER=glyma\n"
                                 "SUBSYSTEM=net.quillaby.Glyma\nCATEGORY=Glyma\n"s);
    EXPECT_EQ(journal.receive(), "");
}

TEST(JournalLogSink, WhatTheJournalDoesNotTakeGoesToStandardError) {
    const TemporaryFolder folder;
    JournalLogSink absent((folder.path() / "socket").string());
    EXPECT_FALSE(absent.hasJournal());
    testing::internal::CaptureStderr();
    absent.write("nobody listens");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "nobody listens\n");

    writeText(folder.path() / "socket", "");
    JournalLogSink refused((folder.path() / "socket").string());
    testing::internal::CaptureStderr();
    refused.write("not a socket");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "not a socket\n");
}

} // namespace
} // namespace glyma::xdg
