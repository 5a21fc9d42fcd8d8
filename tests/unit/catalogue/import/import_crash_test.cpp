#include "import_fixture.h"

#include <chrono>
#include <csignal>
#include <functional>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace glyma {
namespace {

using namespace std::chrono_literals;

class ImportCrash : public ImportTest {
protected:
    ImportCrash() {
        debug.setDebugLogsEnabled(false);
        // Large enough for a log of many pages, small enough to be imported many times.
        const std::filesystem::path whole = GLYMA_SOURCE_DIR "/resources";
        files.replace("Blocks.txt", bytesOf(whole / "Blocks.txt"));
        files.replace("UnicodeData.txt", bytesOf(whole / "UnicodeData.txt").substr(0, 300'000));
    }

    ImportSummary importWhole() {
        auto store = *lifecycle().makeContainer();
        return *ImportPipeline{resources, fonts, log, {}}.run(store);
    }

    /// Starts the program's first start in a process of its own.
    pid_t start(const std::function<void(std::string_view)>& progress) {
        const auto child = fork();
        if (child != 0)
            return child;
        auto store = lifecycle().makeContainer();
        if (store)
            (void)ImportPipeline{resources, fonts, log, progress}.run(*store);
        _exit(0);
    }

    /// What the next start finds must be an empty or a whole store, and it must end with a whole one.
    void expectRecovery(const ImportSummary& whole) {
        {
            auto store = lifecycle().makeContainer();
            ASSERT_TRUE(store) << store.error();
            const auto count = need(store->characterCount());
            EXPECT_TRUE(count == 0 || count == whole.characters) << count;
            EXPECT_EQ(std::ssize(need(store->blocks())), count == 0 ? 0 : whole.blocks);
            if (count == 0) {
                EXPECT_EQ((ImportPipeline{resources, fonts, log, {}}.run(*store)), whole);
            }
        }
        SQLite::Database database(storeFile().string());
        EXPECT_EQ(database.execAndGet("PRAGMA integrity_check").getString(), "ok");
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            EXPECT_THAT(entry.path().filename().string(),
                        testing::AnyOf(testing::StartsWith("Glyma.store"), // the child's settings end with it
                                       "user-data-backup-2024-05-01T120000.json"));
        EXPECT_FALSE(std::filesystem::exists(Store::damageMark(storeFile())));
    }

    void forget() {
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            std::filesystem::remove_all(entry.path());
        settings.remove("glymaDataFingerprint");
    }
};

TEST_F(ImportCrash, KilledAtAnyPhaseItStartsOver) {
    const auto whole = importWhole();
    for (auto fatal = 1; fatal <= 9; ++fatal) {
        forget();
        auto count = 0;
        const auto child = start([&](std::string_view) {
            if (++count == fatal)
                std::raise(SIGKILL);
        });
        auto status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "phase " << fatal;
        expectRecovery(whole);
    }
}

TEST_F(ImportCrash, KilledAtAnyMomentItStartsOver) {
    const auto began = std::chrono::steady_clock::now();
    const auto whole = importWhole();
    const auto duration = std::chrono::steady_clock::now() - began;
    constexpr int moments = 12;
    for (auto moment = 1; moment <= moments; ++moment) {
        forget();
        const auto child = start({});
        std::this_thread::sleep_for(duration * moment / moments);
        kill(child, SIGKILL);
        auto status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        expectRecovery(whole);
    }
}

} // namespace
} // namespace glyma
