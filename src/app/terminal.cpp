#include "app/terminal.h"

#include "app/command_line.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <sys/ioctl.h>
#include <unistd.h>

namespace glyma {

std::optional<std::size_t> terminalWidth(std::FILE* stream) {
    if (::isatty(::fileno(stream)) == 0)
        return std::nullopt;
    winsize size{};
    const bool known = ::ioctl(::fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : 80;
}

int print(std::string_view text) {
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    if (!written || std::fflush(stdout) != 0)
        return fail(fmt::format("cannot write the output: {}", std::strerror(errno)));
    return status::done;
}

int fail(std::string_view message) {
    const auto line = fmt::format("glyma: {}\n", message);
    std::fwrite(line.data(), 1, line.size(), stderr);
    return status::failed;
}

} // namespace glyma
