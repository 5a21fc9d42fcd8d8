// What the library tab costs the main thread, over the whole catalogue with every character in it.

#include "platform/simulated/services.h"
#include "platform/simulated/virtual_clock.h"
#include "preferences/tabs/unicode_tab_model.h"
#include "sample_store.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace glyma::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int rounds = 200;
/// The block with the most characters.
constexpr auto largestBlock = "Egyptian Hieroglyphs Extended-A";

class Times {
public:
    template<typename Work>
    void measure(Work&& work) {
        const auto start = Clock::now();
        work();
        all_.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    double minimum() const { return *std::ranges::min_element(all_); }
    double percentile95() {
        const auto place = all_.begin() + static_cast<std::ptrdiff_t>(all_.size() * 95 / 100);
        std::ranges::nth_element(all_, place);
        return *place;
    }

private:
    std::vector<double> all_;
};

/// Background work that runs when it is told to, so that the main thread's part can be told apart.
class HeldTasks : public TaskRunner {
public:
    void run(std::function<void()> job) override { jobs_.push_back(std::move(job)); }
    void runAll() {
        for (const auto& job : std::exchange(jobs_, {}))
            job();
    }

private:
    std::vector<std::function<void()>> jobs_;
};

void ratio(const char* name, double value, double limit) {
    fmt::print("ratio {} {:.2f} {} {}\n", name, value, limit, value <= limit ? "ok" : "FAIL");
}

void sanity(const char* name, Times& times, double limit) {
    const auto value = times.percentile95();
    fmt::print("sanity {} {:.3f} {} {}\n", name, value, limit, value <= limit ? "ok" : "FAIL");
}

class LibraryBench {
public:
    LibraryBench(const std::filesystem::path& file, const std::filesystem::path& resources)
        : locator_(resources)
        , manager_({clock_, tasks_, clock_, settings_, preferences_, log_, locator_, fonts_, 1},
                   makeSampleStore(file, resources))
        , database_(file.string(), SQLite::OPEN_READWRITE, 5000) {
        manager_.start();
        tasks_.runAll();
        clock_.advance(1s);
    }

    void run() {
        UnicodeTabModel model(manager_);
        model.selectBlock(largestBlock);
        for (const auto& record : model.blockChars())
            text_ += record.name + '\n' + record.character + '\n' + record.keywordsRaw + '\n';
        fmt::print("{} blocks; {} characters and {} bytes of text in the largest\n", model.blocks().size(),
                   model.blockChars().size(), text_.size());
        for (int round = 0; round < rounds; ++round)
            measure(model, round);
        ratio("library_filter_vs_memmem", filter_.minimum() / scan_.minimum(), 2.5);
        ratio("library_select_block_vs_select", select_.minimum() / rows_.minimum(), 2.5);
        ratio("library_switch_block_vs_update", (toggle_.minimum() + adopt_.minimum()) / update_.minimum(),
              0.2);
        sanity("library_filter_ms_p95", filter_, 2);
        sanity("library_select_block_ms_p95", select_, 16);
        sanity("library_switch_block_ms_p95", toggle_, 2);
        sanity("library_follow_switch_ms_p95", adopt_, 16);
    }

private:
    void measure(UnicodeTabModel& model, int round) {
        model.selectBlock("Arrows");
        select_.measure([&] { model.selectBlock(largestBlock); });
        rows_.measure([&] { readRows(); });
        // Another text each round, as it is typed.
        const std::string typed =
            std::string("bird standing").substr(0, 2 + static_cast<std::size_t>(round) % 12);
        model.setCharFilter("b"); // the first letter readies the texts
        filter_.measure([&] { model.setCharFilter(typed); });
        scan_.measure([&] { scan(typed); });
        model.setCharFilter("");
        toggle_.measure([&] { model.toggleBlock(largestBlock); });
        tasks_.runAll();
        adopt_.measure([&] { clock_.advance(1ms); });
        tasks_.runAll();
        clock_.advance(1ms);
        update_.measure([&] { update(round % 2); });
        update(round % 2 == 0 ? 1 : 0);
    }

    void readRows() {
        SQLite::Statement query(database_, "SELECT char, name, keywords, keywordsRaw, searchBagOfWords, "
                                           "unicodeBlock, usageCount, lastUsed, isEnabled FROM UnicodeChar "
                                           "WHERE unicodeBlock = ? ORDER BY id");
        query.bind(1, largestBlock);
        while (query.executeStep())
            for (int column = 0; column < 5; ++column)
                bytes_ += query.getColumn(column).getString().size();
    }

    void scan(const std::string& needle) {
        const char* place = text_.data();
        const char* const end = place + text_.size();
        while (const auto* found = static_cast<const char*>(
                   memmem(place, static_cast<std::size_t>(end - place), needle.data(), needle.size()))) {
            ++bytes_;
            place = found + 1;
        }
    }

    void update(int enabled) {
        SQLite::Statement query(database_, "UPDATE UnicodeChar SET isEnabled = ? WHERE unicodeBlock = ?");
        query.bind(1, enabled);
        query.bind(2, largestBlock);
        query.exec();
    }

    simulated::VirtualClock clock_;
    HeldTasks tasks_;
    simulated::SimulatedSettings settings_;
    simulated::SimulatedLog sink_;
    simulated::SimulatedLoginItem loginItem_;
    simulated::SimulatedInstalledApplications applications_;
    simulated::SimulatedFonts fonts_;
    DebugConfig debug_{settings_};
    Log log_{sink_, debug_};
    UserPreferences preferences_{settings_, loginItem_, applications_, log_};
    ResourceLocator locator_;
    UnicodeDataManager manager_;
    SQLite::Database database_;
    std::string text_;
    std::size_t bytes_ = 0;
    Times select_, rows_, filter_, scan_, toggle_, adopt_, update_;
};

} // namespace
} // namespace glyma::bench

int main() {
    std::string folder = "/tmp/glyma-bench-XXXXXX";
    if (mkdtemp(folder.data()) == nullptr)
        return 1;
    glyma::bench::LibraryBench(std::filesystem::path(folder) / "Glyma.store", GLYMA_SOURCE_DIR "/resources")
        .run();
    std::filesystem::remove_all(folder);
}
