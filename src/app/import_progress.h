#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace glyma {

/// How far the import is, as "[####      ] 4/9 Importing annotations.json".
/// \param phase  from 1.
/// \param columns  the terminal's; the line never fills the last one.
std::string progressLine(std::size_t phase, std::size_t phases, std::string_view text, std::size_t columns);

/// Tells the phases of an import: a bar that is redrawn in place on a terminal, else one line a phase.
class ImportProgress {
public:
    enum class Manner {
        barOnly, ///< nothing where there is no terminal
        linesToo,
    };
    ImportProgress(std::FILE* stream, Manner manner);
    ImportProgress(const ImportProgress&) = delete;
    ImportProgress& operator=(const ImportProgress&) = delete;
    /// Leaves an empty line where the bar was.
    ~ImportProgress();

    void show(std::string_view phaseText);

private:
    void write(const std::string& text);

    std::FILE* stream_;
    bool isTerminal_;
    bool showsLines_;
    std::size_t phase_ = 0;
};

} // namespace glyma
