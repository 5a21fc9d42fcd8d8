#include "app/info_command.h"

#include "app/catalogue_commands.h"
#include "app/info_output.h"
#include "app/terminal.h"
#include "catalogue/catalogue_files.h"
#include "charinfo/character_infos.h"

#include <fmt/format.h>

#include <array>
#include <cstdio>
#include <unistd.h>

namespace glyma {

namespace {

constexpr std::size_t longestInput = std::size_t{64} << 20U;

} // namespace

std::expected<std::string, int> textOf(const InfoCommand& command) {
    if (command.text)
        return *command.text;
    if (::isatty(STDIN_FILENO) != 0) {
        fail("which text? Give it as an argument, through standard input or with --selection");
        return std::unexpected(status::wrongUse);
    }
    std::string text;
    std::array<char, 65536> buffer;
    while (const auto count = std::fread(buffer.data(), 1, buffer.size(), stdin)) {
        text.append(buffer.data(), count);
        if (text.size() > longestInput)
            return std::unexpected(fail("the text on standard input is longer than 64 MiB"));
    }
    return text;
}

int runInfo(const InfoCommand& command, const std::string& text, Foundation& foundation) {
    if (const int ready = ensureCatalogue(foundation); ready != status::done)
        return ready;
    CharacterInfos source(storeFile(foundation.folders.data), foundation.resources);
    const auto infos = source.buildInfos(text, command.limit);
    if (command.json)
        return print(characterInfosAsJson(infos));
    if (infos.empty())
        return fail("the text holds no character that can be described");
    auto output = characterInfosAsText(infos);
    if (infos.size() == command.limit)
        output += fmt::format("\nShowing the first {} distinct characters.\n", command.limit);
    return print(output);
}

} // namespace glyma
