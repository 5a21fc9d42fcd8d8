// What a poll of the text before the caret costs in a real editor, against the bare calls.

#include "platform/linux/atspi/atspi_accessibility.h"
#include "platform/simulated/services.h"
#include "poll/bare_text.h"
#include "preferences/debug_config.h"
#include "preferences/log.h"
#include "text/text_before_cursor.h"
#include "window/processes.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

namespace glyma::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int rounds = 1000;
constexpr double limit = 1.5;

/// An editor with a text to read, in a folder of its own.
struct Editor {
    Editor() {
        std::string pattern = (std::filesystem::temp_directory_path() / "bench_poll.XXXXXX").string();
        folder = mkdtemp(pattern.data());
        setenv("HOME", folder.c_str(), 1);
        setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
        setenv("GDK_BACKEND", "x11", 1);
        std::ofstream(folder / "text.txt") << "some words and then :smile";
        process.emplace(
            std::vector<std::string>{"mousepad", "--disable-server", (folder / "text.txt").string()});
    }
    ~Editor() {
        process.reset();
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    std::filesystem::path folder;
    std::optional<Process> process;
};

template<typename Action>
double microseconds(const Action& action) {
    const auto start = Clock::now();
    action();
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

double quantile(std::vector<double>& times, double part) {
    std::ranges::sort(times);
    return times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))];
}

/// What the monitor does on its background thread at each tick.
std::optional<std::string> poll(Accessibility& accessibility, Log& log) {
    const auto answer = accessibility.attributeValue(accessibility.systemWide(), attribute::focusedElement);
    const auto* element = answer ? std::get_if<ElementReference>(&*answer) : nullptr;
    return element && *element ? TextBeforeCursor(accessibility, log, *element, 1).read() : std::nullopt;
}

int measure() {
    const Session session;
    const Editor editor;
    atspi::AtspiAccessibility accessibility({.enableBus = true, .warn = {}});
    simulated::SimulatedSettings settings;
    simulated::SimulatedLog sink;
    DebugConfig debug(settings);
    Log log(sink, debug);

    std::optional<BareText> bare;
    for (int attempt = 0; attempt < 100 && !(bare && poll(accessibility, log)); ++attempt) {
        std::this_thread::sleep_for(100ms);
        bare = BareText::find();
    }
    if (!bare || poll(accessibility, log) != bare->beforeCaret()) {
        fmt::print(stderr, "bench_poll: the editor's text cannot be read\n");
        return 1;
    }
    std::vector<double> polls, calls;
    for (int round = 0; round < rounds; ++round) {
        polls.push_back(microseconds([&] { poll(accessibility, log); }));
        calls.push_back(microseconds([&] { static_cast<void>(bare->beforeCaret()); }));
    }
    const double ratio = quantile(polls, 0) / quantile(calls, 0);
    fmt::print(
        "poll rounds {}: tick least {:.0f} us, median {:.0f}, 95th percentile {:.0f}; bare calls least "
        "{:.0f} us, median {:.0f}\n",
        rounds, quantile(polls, 0), quantile(polls, 0.5), quantile(polls, 0.95), quantile(calls, 0),
        quantile(calls, 0.5));
    fmt::print("ratio poll_tick_vs_bare_calls {:.2f} {:g} {}\n", ratio, limit,
               ratio <= limit ? "ok" : "FAIL");
    return ratio <= limit ? 0 : 1;
}

} // namespace
} // namespace glyma::bench

int main() {
    return glyma::bench::measure();
}
