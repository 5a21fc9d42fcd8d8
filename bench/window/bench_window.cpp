// Time from the start to the first heard key and from a key to the painted picker, and what the idle program
// takes, on a virtual display of its own.
//   bench_window [GLYMA]     without the program: the picker's window alone
// Prints one line a figure: `sanity|ratio NAME VALUE LIMIT ok|FAIL`. Needs Xvfb, dbus-daemon and openbox.

#include "bus_client.h"
#include "processes.h"
#include "x_client.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <vector>

namespace {

using namespace glyma::bench;
using namespace std::chrono_literals;

constexpr int shows = 60;
constexpr int starts = 25;
constexpr double paintLimit = 16;  // ms
constexpr double startLimit = 150; // ms
constexpr double memoryLimit = 20; // MB
// A check each five seconds sleeps twice: until its time, and for the X server's answer.
constexpr double wakeUpLimit = 0.45; // a second
constexpr double idleLimit = 10;     // ms of a processor
constexpr auto startTime = 4s;
/// After this nothing that a start brings is still to come: five seconds on, the tray is looked for.
constexpr auto settlingTime = 8s;
constexpr auto idleTime = 60s;

// Codes of the evdev rules, layout "us", with which Xvfb starts.
namespace key {
constexpr std::uint8_t escape = 9, i = 31, s = 39, l = 46, semicolon = 47, shift = 50, m = 58;
}

struct Samples {
    std::vector<double> milliseconds;

    void add(std::chrono::microseconds value) {
        milliseconds.push_back(static_cast<double>(value.count()) / 1000);
    }
    double quantile(double part) const {
        auto sorted = milliseconds;
        std::ranges::sort(sorted);
        return sorted[std::min(sorted.size() - 1,
                               static_cast<std::size_t>(part * static_cast<double>(sorted.size())))];
    }
};

struct Timings {
    double first = 0;
    Samples show;
    Samples keystroke;
    int missed = 0;
};

bool report(const char* kind, const char* name, double value, double limit) {
    const bool isGood = value <= limit;
    fmt::print("{} {} {:.2f} {:g} {}\n", kind, name, value, limit, isGood ? "ok" : "FAIL");
    return isGood;
}

/// Types the trigger, which must paint nothing.
void typeTrigger(XClient& client) {
    client.press(key::shift);
    client.tap(key::semicolon);
    client.release(key::shift);
    std::this_thread::sleep_for(40ms);
    client.settle();
}

std::optional<std::chrono::microseconds> timeKey(XClient& client, std::uint8_t code) {
    const auto start = Clock::now();
    client.press(code);
    const auto time = client.timeToPainted(start);
    client.release(code);
    client.settle();
    return time;
}

Timings measure(XClient& client) {
    Timings timings;
    for (int round = 0; round <= shows; ++round) {
        typeTrigger(client);
        const auto shown = timeKey(client, key::s);
        if (!shown || !client.isPickerShown()) {
            ++timings.missed;
        } else if (round == 0) {
            timings.first = static_cast<double>(shown->count()) / 1000;
        } else {
            timings.show.add(*shown);
        }
        for (const auto code : {key::m, key::i, key::l})
            if (const auto painted = timeKey(client, code))
                timings.keystroke.add(*painted);
        client.tap(key::escape);
        std::this_thread::sleep_for(30ms);
        client.settle();
    }
    return timings;
}

bool reportTimings(const Timings& timings) {
    if (timings.missed > 0 || timings.show.milliseconds.empty() || timings.keystroke.milliseconds.empty()) {
        fmt::print("sanity key_to_painted_ms_p95 missed:{} {:g} FAIL\n", timings.missed, paintLimit);
        return false;
    }
    fmt::print("window shows {}, keystrokes {}: first show {:.2f} ms; show median {:.2f}, least {:.2f}; "
               "keystroke median "
               "{:.2f}, least {:.2f}\n",
               timings.show.milliseconds.size(), timings.keystroke.milliseconds.size(), timings.first,
               timings.show.quantile(0.5), timings.show.quantile(0), timings.keystroke.quantile(0.5),
               timings.keystroke.quantile(0));
    const bool showsInTime =
        report("sanity", "key_to_painted_ms_p95", timings.show.quantile(0.95), paintLimit);
    return report("sanity", "keystroke_repaint_ms_p95", timings.keystroke.quantile(0.95), paintLimit) &&
           showsInTime;
}

/// A folder for the program's data and settings, removed with the object.
struct Home {
    Home() {
        std::string pattern = (std::filesystem::temp_directory_path() / "bench_window.XXXXXX").string();
        folder = mkdtemp(pattern.data());
        for (const auto* name : {"GLYMA_DATA_DIR", "GLYMA_CONFIG_DIR", "XDG_RUNTIME_DIR"})
            setenv(name, folder.c_str(), 1);
        setenv("GLYMA_RESOURCE_DIR", GLYMA_SOURCE_DIR "/resources", 1);
    }
    ~Home() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    std::filesystem::path folder;
};

bool measureWindowAlone(const std::filesystem::path& programs) {
    Process subject({(programs / "bench_window_panel").string()}, 3);
    if (subject.readLine() != "ready") {
        fmt::print(stderr, "bench_window: bench_window_panel did not start\n");
        return false;
    }
    XClient client;
    client.settle();
    return reportTimings(measure(client));
}

/// Types at once, as somebody would who has waited for the program.
bool hearsTyping(XClient& client) {
    typeTrigger(client);
    const bool isShown = timeKey(client, key::s) && client.isPickerShown();
    client.tap(key::escape);
    client.settle();
    return isShown;
}

/// From the start of the process until its main loop answers a call, which it does once the tap listens.
bool measureStarts(const std::string& program) {
    XClient client;
    client.openTarget();
    Samples times;
    for (int round = 0; round < starts; ++round) {
        BusClient bus;
        const auto start = Clock::now();
        const Process process({program});
        const bool answers = bus.waitForProgram(5s);
        times.add(std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start));
        if (!answers || !hearsTyping(client)) {
            fmt::print("sanity start_to_tap_ready_ms_p95 missed {:g} FAIL\n", startLimit);
            return false;
        }
    }
    fmt::print("window starts {}: median {:.2f} ms, least {:.2f}\n", starts, times.quantile(0.5),
               times.quantile(0));
    return report("sanity", "start_to_tap_ready_ms_p95", times.quantile(0.95), startLimit);
}

bool measureIdleness(const Process& process) {
    const auto sleepsBefore = process.sleeps();
    const auto timeBefore = process.processorTime();
    std::this_thread::sleep_for(idleTime);
    const auto wakeUps = static_cast<double>(process.sleeps() - sleepsBefore);
    const std::chrono::duration<double, std::milli> computed = process.processorTime() - timeBefore;
    const bool sleeps = report("sanity", "idle_wakeups_per_s",
                               wakeUps / std::chrono::duration<double>(idleTime).count(), wakeUpLimit);
    return report("sanity", "idle_cpu_ms_per_minute", computed.count(), idleLimit) && sleeps;
}

std::optional<double> idleMemory(const std::vector<std::string>& command) {
    Process process(command);
    std::this_thread::sleep_for(startTime);
    return process.isRunning() ? process.memory() : std::nullopt;
}

bool measureMemory(const std::filesystem::path& programs, const std::string& program) {
    const auto minimal = idleMemory({(programs / "minimal_tray").string()});
    const auto idle = idleMemory({program});
    if (!minimal || !idle) {
        fmt::print(stderr, "bench_window: {} did not keep running\n", !idle ? program : "minimal_tray");
        return false;
    }
    fmt::print("window idle_pss_mb {:.1f}, minimal tray program {:.1f}\n", *idle, *minimal);
    return report("ratio", "idle_pss_minus_minimal_mb", *idle - *minimal, memoryLimit);
}

bool measureProgram(const std::filesystem::path& programs, const std::string& program) {
    // The first start imports the catalogue; what is measured is an ordinary one.
    idleMemory({program});
    bool isGood = measureStarts(program);
    isGood = measureMemory(programs, program) && isGood;

    const Process running({program});
    std::this_thread::sleep_for(settlingTime);
    isGood = measureIdleness(running) && isGood;
    XClient client;
    client.openTarget();
    return reportTimings(measure(client)) && isGood;
}

} // namespace

int main(int argc, char** argv) {
    const auto programs = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const Home home;
    const Session session;
    return (argc > 1 ? measureProgram(programs, argv[1]) : measureWindowAlone(programs)) ? 0 : 1;
}
