#include "catalogue/search_section.h"

#include "catalogue/section_builder.h"

#include <algorithm>

namespace glyma {

std::vector<std::string_view> fieldsOf(std::string_view text) {
    std::vector<std::string_view> fields;
    while (!text.empty()) {
        const auto end = std::min(text.find(fieldEnd), text.size());
        fields.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return fields;
}

SearchSection::SearchSection()
    : SearchSection(*SectionBuilder().build()) {}

SearchSection::SearchSection(const SectionArrays& arrays, std::shared_ptr<const void> owner)
    : arrays_(arrays)
    , owner_(std::move(owner))
    , blockNames_(fieldsOf({arrays.blockNames.data(), arrays.blockNames.size()})) {}

std::string_view SearchSection::shownField(std::uint32_t entry, int index) const {
    const auto begin = arrays_.shownStart[entry];
    std::string_view all(arrays_.shown.data() + begin, arrays_.shownStart[entry + 1] - begin);
    for (; index > 0; --index)
        all.remove_prefix(all.find(fieldEnd) + 1);
    return all.substr(0, all.find(fieldEnd));
}

std::string_view SearchSection::character(std::uint32_t entry) const {
    return shownField(entry, 0);
}

std::string_view SearchSection::name(std::uint32_t entry) const {
    return shownField(entry, 1);
}

std::vector<std::string_view> SearchSection::keywords(std::uint32_t entry) const {
    const auto begin = arrays_.shownStart[entry];
    auto fields = fieldsOf({arrays_.shown.data() + begin, arrays_.shownStart[entry + 1] - begin});
    fields.erase(fields.begin(), fields.begin() + std::min<std::ptrdiff_t>(2, std::ssize(fields)));
    return fields;
}

std::string_view SearchSection::blockName(std::uint32_t entry) const {
    return blockNames_[arrays_.block[entry]];
}

std::span<const std::uint32_t> SearchSection::findAll(std::string_view character) const {
    const auto found = std::ranges::equal_range(arrays_.byCharacter, character, {},
                                                [&](std::uint32_t entry) { return this->character(entry); });
    return {found.begin(), found.end()};
}

std::optional<std::uint32_t> SearchSection::find(std::string_view character) const {
    const auto found = findAll(character);
    return found.empty() ? std::nullopt : std::optional(found.front());
}

} // namespace glyma
