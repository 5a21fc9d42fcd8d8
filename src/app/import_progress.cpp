#include "app/import_progress.h"

#include "app/terminal.h"

#include <fmt/format.h>

#include <algorithm>

namespace glyma {

namespace {

constexpr std::size_t importPhases = 9;
constexpr std::size_t barColumns = 30;
constexpr std::string_view backAndClear = "\r\x1b[K";

} // namespace

std::string progressLine(std::size_t phase, std::size_t phases, std::string_view text, std::size_t columns) {
    const auto done = phases == 0 ? barColumns : barColumns * std::min(phase, phases) / phases;
    auto line = fmt::format("[{:#<{}}{:{}}] {}/{} {}", "", done, "", barColumns - done, phase, phases, text);
    if (line.size() >= columns)
        line.resize(columns == 0 ? 0 : columns - 1);
    return line;
}

ImportProgress::ImportProgress(std::FILE* stream, Manner manner)
    : stream_(stream)
    , isTerminal_(terminalWidth(stream).has_value())
    , showsLines_(!isTerminal_ && manner == Manner::linesToo) {}

ImportProgress::~ImportProgress() {
    if (isTerminal_ && phase_ > 0)
        write(std::string(backAndClear));
}

void ImportProgress::show(std::string_view phaseText) {
    ++phase_;
    if (isTerminal_)
        write(std::string(backAndClear) +
              progressLine(phase_, importPhases, phaseText, terminalWidth(stream_).value_or(80)));
    else if (showsLines_)
        write(fmt::format("{}/{} {}\n", phase_, importPhases, phaseText));
}

void ImportProgress::write(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stream_);
    std::fflush(stream_);
}

} // namespace glyma
