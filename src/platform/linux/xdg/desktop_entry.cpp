#include "platform/linux/xdg/desktop_entry.h"

#include "platform/linux/xdg/files.h"

namespace glyma::xdg {

namespace {

constexpr std::size_t sizeLimit = 1024 * 1024;

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

char unescaped(char letter) {
    switch (letter) {
    case 's':
        return ' ';
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case 'r':
        return '\r';
    default:
        return letter;
    }
}

std::string unescapedValue(std::string_view value) {
    std::string result;
    for (std::size_t index = 0; index < value.size(); ++index) {
        const bool isEscape = value[index] == '\\' && index + 1 < value.size();
        result += isEscape ? unescaped(value[++index]) : value[index];
    }
    return result;
}

void assignField(DesktopEntry& entry, std::string_view key, std::string_view value) {
    if (key == "Type")
        entry.type = value;
    else if (key == "Name")
        entry.name = unescapedValue(value);
    else if (key == "Exec")
        entry.exec = unescapedValue(value);
    else if (key == "TryExec")
        entry.tryExec = unescapedValue(value);
    else if (key == "StartupWMClass")
        entry.startupWindowClass = unescapedValue(value);
    else if (key == "Hidden")
        entry.isHidden = value == "true";
    else if (key == "NoDisplay")
        entry.isShown = value != "true";
    else if (key == "X-GNOME-Autostart-enabled")
        entry.isAutostartEnabled = value != "false";
}

} // namespace

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text) {
    std::optional<DesktopEntry> entry;
    while (!text.empty()) {
        const auto end = text.find('\n');
        const auto line = trimmed(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        if (line.starts_with('[')) {
            if (entry)
                break; // the groups of the entry's actions follow
            if (line == "[Desktop Entry]")
                entry.emplace();
        } else if (const auto equals = line.find('=');
                   entry && !line.starts_with('#') && equals != line.npos) {
            assignField(*entry, trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
        }
    }
    return entry;
}

std::optional<DesktopEntry> readDesktopEntry(const std::filesystem::path& file) {
    const auto text = readFile(file, sizeLimit);
    return text ? parseDesktopEntry(*text) : std::nullopt;
}

std::string quotedForExec(std::string_view path) {
    // Two layers, as the desktop entry specification asks: the argument in double quotes, in which four
    // characters take a backslash, and the whole as a string value, in which each backslash is doubled again.
    std::string quoted = "\"";
    for (const char letter : path) {
        if (letter == '\\')
            quoted += R"(\\\\)";
        else if (letter == '"' || letter == '`' || letter == '$')
            (quoted += R"(\\)") += letter;
        else if (letter == '%')
            quoted += "%%";
        else if (letter == '\n')
            quoted += R"(\n)";
        else
            quoted += letter;
    }
    return quoted + '"';
}

} // namespace glyma::xdg
