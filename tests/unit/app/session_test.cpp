// The built program in desktop sessions of the test's own.
#include "../adapters/x11/x11_fixture.h"
#include "../adapters/xdg/temporary_folder.h"
#include "catalogue/command_line_search.h"
#include "process.h"

#include <csignal>

namespace glyma {
namespace {

using testing::HasSubstr;
using x11::testing::Server;

class SessionTest : public testing::Test {
protected:
    std::map<std::string, std::string> environment() const {
        std::map<std::string, std::string> result{
            {"PATH", "/usr/bin:/bin"},        {"LANG", "C.UTF-8"},
            {"HOME", folder.path().string()}, {"XDG_RUNTIME_DIR", folder.path().string()},
            {"DISPLAY", server->display()},   {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"}};
        if (bus)
            result["DBUS_SESSION_BUS_ADDRESS"] = bus->address();
        return result;
    }
    std::unique_ptr<Process> start(std::vector<std::string> words = {}) {
        words.insert(words.begin(), GLYMA_PROGRAM);
        output = folder.path() / ("output" + std::to_string(++runs));
        return std::make_unique<Process>(std::move(words), environment(), output);
    }
    /// Starts the program and returns when it has built its catalogue.
    std::unique_ptr<Process> startProgram() {
        auto program = start();
        const auto built = [&] { return hasCatalogue(store) || !program->isRunning(); };
        for (int attempt = 0; attempt < 5 && !x11::testing::eventually(built); ++attempt) {
        }
        EXPECT_TRUE(program->isRunning()) << xdg::readText(output);
        return program;
    }

    xdg::TemporaryFolder folder;
    std::filesystem::path store = folder.path() / ".local/share/Glyma/Glyma.store";
    std::filesystem::path output;
    std::unique_ptr<Server> server = std::make_unique<Server>();
    std::unique_ptr<SessionBus> bus;
    int runs = 0;
};

TEST_F(SessionTest, EndsInOrderWhenASignalAsksForIt) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        std::filesystem::remove_all(store.parent_path());
        const auto program = startProgram();
        program->signal(signal);
        EXPECT_EQ(program->wait(), 0) << signal;
    }
    EXPECT_TRUE(hasCatalogue(store));
}

TEST_F(SessionTest, ASecondStartFindsTheFirstWhichQuitEnds) {
    bus = std::make_unique<SessionBus>(folder.path());
    const auto first = startProgram();
    EXPECT_EQ(start()->wait(), 0);
    EXPECT_THAT(xdg::readText(output), HasSubstr("running already"));
    EXPECT_TRUE(first->isRunning());
    EXPECT_EQ(start({"import", "--force"})->wait(), 1) << "the program uses the catalogue";
    EXPECT_EQ(start({"search", "smile"})->wait(), 0);

    EXPECT_EQ(start({"quit"})->wait(), 0);
    EXPECT_FALSE(first->isRunning()) << "quit returns when the program has ended";
    EXPECT_EQ(first->wait(), 0);
    EXPECT_EQ(start({"quit"})->wait(), 1);
    EXPECT_THAT(xdg::readText(output), HasSubstr("not running"));
}

TEST_F(SessionTest, WithoutASessionBusItRunsAndStillOnlyOnce) {
    const auto first = startProgram();
    EXPECT_EQ(start()->wait(), 1);
    EXPECT_THAT(xdg::readText(output), HasSubstr("another Glyma"));
    EXPECT_TRUE(first->isRunning());
}

TEST_F(SessionTest, WithoutXTestItSaysSoAndGoesOn) {
    server = std::make_unique<Server>(std::vector<std::string>{"-extension", "XTEST"});
    const auto program = startProgram();
    const auto said = output;
    EXPECT_EQ(start({"doctor"})->wait(), 1);
    EXPECT_THAT(xdg::readText(output), HasSubstr("missing  XTEST"));
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait(), 0);
    EXPECT_THAT(xdg::readText(said), HasSubstr("XTEST"));
}

TEST_F(SessionTest, EndsWhenTheServerIsGone) {
    const auto program = startProgram();
    server->kill();
    EXPECT_TRUE(program->wait().has_value());
    EXPECT_TRUE(hasCatalogue(store));
}

} // namespace
} // namespace glyma
