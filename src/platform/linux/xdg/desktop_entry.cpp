#include "platform/linux/xdg/desktop_entry.h"

#include "platform/linux/xdg/files.h"

#include <algorithm>

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
    else if (key == "Icon")
        entry.icon = unescapedValue(value);
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
    else if (key == "Terminal")
        entry.needsTerminal = value == "true";
    else if (key == "X-GNOME-Autostart-enabled")
        entry.isAutostartEnabled = value != "false";
}

/// The place of the language that a key like "Name[de]" is for; absent for other keys and languages.
std::optional<std::size_t> languageOfName(std::string_view key, std::span<const std::string> languages) {
    constexpr std::string_view opening = "Name[";
    if (!key.starts_with(opening) || !key.ends_with(']'))
        return std::nullopt;
    const auto language = key.substr(opening.size(), key.size() - opening.size() - 1);
    const auto found = std::ranges::find(languages, language);
    return found == languages.end() ? std::nullopt
                                    : std::optional(static_cast<std::size_t>(found - languages.begin()));
}

} // namespace

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, std::span<const std::string> languages) {
    std::optional<DesktopEntry> entry;
    auto bestLanguage = languages.size();
    std::string translatedName;
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
            const auto key = trimmed(line.substr(0, equals));
            const auto value = trimmed(line.substr(equals + 1));
            assignField(*entry, key, value);
            if (const auto language = languageOfName(key, languages); language && *language < bestLanguage) {
                bestLanguage = *language;
                translatedName = unescapedValue(value);
            }
        }
    }
    if (entry && !translatedName.empty())
        entry->name = translatedName;
    return entry;
}

std::optional<DesktopEntry> readDesktopEntry(const std::filesystem::path& file,
                                             std::span<const std::string> languages) {
    const auto text = readFile(file, sizeLimit);
    return text ? parseDesktopEntry(*text, languages) : std::nullopt;
}

std::vector<std::string> languagesOf(std::string_view locale) {
    const auto at = locale.find('@');
    const auto modifier = at == locale.npos ? std::string() : std::string(locale.substr(at));
    const auto territory = locale.substr(0, locale.find_first_of(".@"));
    const auto language = territory.substr(0, territory.find('_'));
    std::vector<std::string> languages;
    for (const auto base : {territory, language})
        for (const auto& end : {modifier, std::string()})
            if (auto key = std::string(base) + end;
                !base.empty() && std::ranges::find(languages, key) == languages.end())
                languages.push_back(std::move(key));
    return languages;
}

std::string programOf(std::string_view exec) {
    const bool isQuoted = exec.starts_with('"');
    if (isQuoted)
        exec.remove_prefix(1);
    std::string word;
    for (std::size_t index = 0; index < exec.size(); ++index) {
        if (exec[index] == (isQuoted ? '"' : ' '))
            break;
        if (isQuoted && exec[index] == '\\' && index + 1 < exec.size())
            ++index;
        word += exec[index];
    }
    return word.substr(word.rfind('/') + 1);
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
