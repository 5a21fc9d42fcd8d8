#include "catalogue/popularity.h"

#include "catalogue/search_section.h"
#include "unicode/text.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <fstream>

namespace glyma {

namespace {

constexpr std::string_view fileName = "emoji-popularity";
constexpr std::string_view fileExtension = "json";

} // namespace

std::uint32_t Popularity::rankOf(std::string_view character) const {
    const auto found = ranks.find(unicode::withoutVariationSelector16(character));
    return found == ranks.end() ? noRank : found->second;
}

Popularity loadPopularity(const ResourceLocator& resources, Log* log) {
    Popularity popularity;
    const auto file = resources.find(fileName, fileExtension);
    if (!file) {
        if (log != nullptr)
            log->debug("Glyma: ⚠️ failed to load emoji-popularity.json");
        return popularity;
    }
    try {
        std::ifstream stream(*file, std::ios::binary);
        const auto characters = nlohmann::json::parse(stream).get<std::vector<std::string>>();
        for (const auto& character : characters)
            popularity.ranks[unicode::withoutVariationSelector16(character)] =
                static_cast<std::uint32_t>(popularity.total++);
    } catch (const std::exception& error) {
        if (log != nullptr)
            log->debug("Glyma: ⚠️ reading emoji-popularity.json failed — {}", error.what());
        return {};
    }
    if (log != nullptr)
        log->debug("Glyma: loaded {} popularity ranks", popularity.ranks.size());
    return popularity;
}

std::string popularityFingerprint(const ResourceLocator& resources) {
    const auto file = resources.find(fileName, fileExtension);
    std::error_code error;
    if (!file)
        return "none";
    const auto size = std::filesystem::file_size(*file, error);
    return fmt::format("{}:{}", size,
                       std::filesystem::last_write_time(*file, error).time_since_epoch().count());
}

} // namespace glyma
