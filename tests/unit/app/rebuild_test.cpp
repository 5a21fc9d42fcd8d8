// What the user taught survives a change of the reference files, whatever ends the program meanwhile.
#include "../adapters/xdg/temporary_folder.h"
#include "app/foundation.h"
#include "catalogue/catalogue_files.h"
#include "catalogue/import_pipeline.h"
#include "catalogue/store_lifecycle.h"
#include "platform/linux/fonts/fontconfig_coverage.h"
#include "platform/simulated/services.h"
#include "process.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace glyma {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto addedCharacter = "\U0001F64F";

/// A part of the shipped reference files that is imported quickly.
void writeResources(const fs::path& folder) {
    const fs::path whole = GLYMA_SOURCE_DIR "/resources";
    std::istringstream lines(xdg::readText(whole / "UnicodeData.txt"));
    std::string characters;
    for (std::string line; std::getline(lines, line);) {
        const auto codepoint = std::stoul(line, nullptr, 16);
        if (codepoint < 0x500 || (codepoint >= 0x2190 && codepoint < 0x2200) ||
            (codepoint >= 0x1F600 && codepoint < 0x1F64F))
            characters += line + "\n";
    }
    xdg::writeText(folder / "UnicodeData.txt", characters);
    xdg::writeText(folder / "Blocks.txt", xdg::readText(whole / "Blocks.txt"));
    xdg::writeText(folder / "annotations.json", R"({"annotations":{"annotations":{
        "😀":{"tts":["grinning face"],"default":["face","grin"]}}}})");
    xdg::writeText(folder / "Unikemet.txt", "");
    xdg::writeText(folder / "emoji-popularity.json", "[]");
}

void teach(const fs::path& file) {
    SQLite::Database store(file.string(), SQLite::OPEN_READWRITE);
    store.exec("UPDATE UnicodeChar SET usageCount = 3, lastUsed = 812345678.125 WHERE char = '😀';"
               "UPDATE UnicodeChar SET usageCount = 1 WHERE char = 'é';"
               "INSERT INTO TermSelection VALUES ('a/b|😀', 'a/b', '😀', 2, 800000000.5);"
               "INSERT INTO TermSelection VALUES ('€|→', '€', '→', 9, 1);"
               "UPDATE UnicodeChar SET isEnabled = 0 WHERE unicodeBlock = 'Arrows' OR char = '😂';"
               "UPDATE UnicodeBlock SET isEnabled = 0 WHERE name = 'Arrows';"
               "UPDATE UnicodeChar SET isEnabled = 1 WHERE unicodeBlock = 'Cyrillic';"
               "UPDATE UnicodeBlock SET isEnabled = 1 WHERE name IN ('Cyrillic', 'Ogham')");
}

/// Everything that can be taught, one row a line.
std::string taughtIn(const fs::path& file) {
    SQLite::Database store(file.string());
    std::string text;
    for (const auto* sql : {"SELECT char, isEnabled, usageCount, lastUsed FROM UnicodeChar WHERE char <> "
                            "'\U0001F64F' ORDER BY char",
                            "SELECT name, isEnabled FROM UnicodeBlock ORDER BY name",
                            "SELECT id, term, char, count, lastUsed FROM TermSelection ORDER BY id"}) {
        for (SQLite::Statement query(store, sql); query.executeStep(); text += '\n')
            for (int column = 0; column < query.getColumnCount(); ++column)
                text += query.getColumn(column).getString() + "|";
    }
    return text;
}

class RebuildTest : public testing::Test {
protected:
    RebuildTest() {
        writeResources(resources);
        EXPECT_EQ(run({"import"}), 0);
        teach(data / "Glyma.store");
        taught = taughtIn(data / "Glyma.store");
        fs::rename(data, original / "data");
        fs::rename(config, original / "config");
        xdg::writeText(resources / "UnicodeData.txt",
                       xdg::readText(resources / "UnicodeData.txt") +
                           "1F64F;PERSON WITH FOLDED HANDS;So;0;ON;;;;;N;;;;;\n");
    }

    /// The folders as the last start before the change left them.
    void begin() const {
        fs::remove_all(data);
        fs::remove_all(config);
        fs::copy(original / "data", data, fs::copy_options::recursive);
        fs::copy(original / "config", config, fs::copy_options::recursive);
    }
    std::unique_ptr<Process> start(std::vector<std::string> words) const {
        words.insert(words.begin(), GLYMA_PROGRAM);
        const std::map<std::string, std::string> environment{{"PATH", "/usr/bin:/bin"},
                                                             {"HOME", folder.path()},
                                                             {"LANG", "C.UTF-8"},
                                                             {"XDG_CACHE_HOME", folder.path() / "cache"},
                                                             {"GLYMA_DATA_DIR", data},
                                                             {"GLYMA_CONFIG_DIR", config},
                                                             {"GLYMA_RESOURCE_DIR", resources}};
        return std::make_unique<Process>(std::move(words), environment, folder.path() / "output");
    }
    std::optional<int> run(std::vector<std::string> words) const {
        return start(std::move(words))->wait(30s);
    }

    /// The next start must end with the new catalogue and everything that was taught.
    void expectRebuilt(const std::string& context) const {
        ASSERT_EQ(run({"import"}), 0) << context << xdg::readText(folder.path() / "output");
        const auto file = data / "Glyma.store";
        ASSERT_EQ(taughtIn(file), taught) << context;
        SQLite::Database store(file.string());
        EXPECT_EQ(SQLite::Statement(
                      store, fmt::format("SELECT 1 FROM UnicodeChar WHERE char = '{}'", addedCharacter))
                      .executeStep(),
                  true)
            << context;
        EXPECT_EQ(store.execAndGet("PRAGMA integrity_check").getString(), "ok") << context;
        EXPECT_THAT(userDataBackups(data), testing::Not(IsEmpty())) << context;
    }

    xdg::TemporaryFolder folder;
    fs::path resources = folder.path() / "resources";
    fs::path data = folder.path() / "data/Glyma";
    fs::path config = folder.path() / "config/glyma";
    fs::path original = [this] {
        fs::create_directories(folder.path() / "original");
        return folder.path() / "original";
    }();
    std::string taught;
};

TEST_F(RebuildTest, WritesOneBackupAndLeavesNothingElse) {
    begin();
    ASSERT_EQ(run({"import"}), 0);
    EXPECT_THAT(userDataBackups(data), SizeIs(1));
    EXPECT_THAT(catalogueFiles(data), SizeIs(2)) << "the store and the backup";
    expectRebuilt("");
    ASSERT_EQ(run({"import", "--force"}), 0);
    expectRebuilt("forced");
    EXPECT_THAT(userDataBackups(data), SizeIs(1)) << "the data have not changed again";
}

TEST_F(RebuildTest, KilledAtAnyMomentItLosesNothing) {
    constexpr int moments = 50;
    std::chrono::steady_clock::duration shortest = 30s;
    for (auto runs = 0; runs < 3; ++runs) {
        begin();
        const auto began = std::chrono::steady_clock::now();
        expectRebuilt("unharmed");
        shortest = std::min(shortest, std::chrono::steady_clock::now() - began);
    }
    auto killed = 0;
    for (auto moment = 1; moment <= moments; ++moment) {
        begin();
        {
            const auto victim = start({"import"});
            std::this_thread::sleep_for(shortest * moment / moments);
            victim->signal(SIGKILL);
            const auto wasKilled = victim->wait() == 128 + SIGKILL;
            killed += wasKilled;
            if (!wasKilled && moment < moments * 9 / 10) // the machine was busier when the duration was taken
                shortest = shortest * 9 / 10;
        }
        const auto context = fmt::format("killed at moment {}: ", moment);
        if (moment % 2 == 0) {
            EXPECT_EQ(run({"search", "grin"}), 0) << context;
            EXPECT_THAT(xdg::readText(folder.path() / "output"), testing::HasSubstr("\U0001F600")) << context;
        }
        expectRebuilt(context);
        if (HasFatalFailure())
            return;
    }
    EXPECT_GT(killed, moments / 2) << "the moments must lie within the rebuild";
}

/// Ends the process, as abruptly as a power cut does, when it writes its nth line.
class FatalLog : public LogSink {
public:
    explicit FatalLog(int line)
        : left_(line) {}
    void write(std::string_view) override {
        if (--left_ == 0)
            std::raise(SIGKILL);
    }

private:
    int left_;
};

/// The same steps as the program's, with an end that is known to lie between two of them.
TEST_F(RebuildTest, KilledBetweenAnyTwoStepsItLosesNothing) {
    auto reachedEnd = false;
    for (auto line = 1; !reachedEnd; ++line) {
        begin();
        const auto child = fork();
        if (child == 0) {
            FatalLog sink(line);
            xdg::JsonSettingsStore settings(config, sink);
            DebugConfig debug(settings);
            debug.setDebugLogsEnabled(true);
            Log log(sink, debug);
            const xdg::SystemClock clock;
            const ResourceLocator locator(resources);
            fonts::FontconfigCoverage fonts(log); // what the program's own imports find
            auto store = StoreLifecycle(data, locator, settings, clock, log).makeContainer();
            const auto progress = [&](std::string_view phase) { sink.write(phase); };
            if (store)
                (void)ImportPipeline{locator, fonts, log, progress}.run(*store);
            _exit(0);
        }
        auto status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        reachedEnd = WIFEXITED(status);
        if (!reachedEnd)
            expectRebuilt(fmt::format("killed at line {}: ", line));
        if (HasFatalFailure())
            return;
        ASSERT_TRUE(reachedEnd || line < 100);
        ASSERT_TRUE(!reachedEnd || line > 15) << "steps were skipped";
    }
}

TEST_F(RebuildTest, AProcessThatWaitedForTheLockSeesWhatTheOtherHasDone) {
    begin();
    ::setenv("GLYMA_DATA_DIR", data.c_str(), 1);
    ::setenv("GLYMA_CONFIG_DIR", config.c_str(), 1);
    ::setenv("GLYMA_RESOURCE_DIR", resources.c_str(), 1);
    simulated::SimulatedLog sink;
    Foundation waiting(sink);
    expectRebuilt("the other process");
    const auto lock = waiting.lockCatalogue();
    ASSERT_TRUE(lock);
    const auto store =
        StoreLifecycle(waiting.folders.data, waiting.resources, waiting.settings, waiting.clock, waiting.log)
            .makeContainer();
    ASSERT_TRUE(store);
    EXPECT_GT(store->characterCount().value(), 0) << "rebuilt a second time";
    EXPECT_THAT(userDataBackups(data), SizeIs(1));
    for (const auto* name : {"GLYMA_DATA_DIR", "GLYMA_CONFIG_DIR", "GLYMA_RESOURCE_DIR"})
        ::unsetenv(name);
}

} // namespace
} // namespace glyma
