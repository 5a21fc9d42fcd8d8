#include "catalogue/personal_entries.h"

#include "unicode/text.h"

namespace glyma {

namespace {

EmojiEntry indexedEntry(std::string character, std::string name, std::vector<std::string> keywords) {
    EmojiEntry entry;
    entry.character = std::move(character);
    entry.foldedName = unicode::fold(name);
    entry.name = std::move(name);
    for (const auto& keyword : keywords)
        entry.foldedKeywords.push_back(unicode::fold(keyword));
    entry.keywords = std::move(keywords);
    entry.isCached = true;
    return entry;
}

std::vector<std::string> splitAtCommas(std::string_view text) {
    std::vector<std::string> pieces;
    if (text.empty())
        return pieces;
    for (auto comma = text.find(','); comma != std::string_view::npos; comma = text.find(',')) {
        pieces.emplace_back(text.substr(0, comma));
        text.remove_prefix(comma + 1);
    }
    pieces.emplace_back(text);
    return pieces;
}

EmojiEntry specialEntry(std::string_view id, std::string name, std::vector<std::string> keywords) {
    auto entry =
        indexedEntry(std::string(specialPrefix) + std::string(id), std::move(name), std::move(keywords));
    entry.popularityRank = 0; // the full bonus, always
    return entry;
}

} // namespace

EmojiEntry usedEntry(const CharacterRow& row) {
    auto entry = indexedEntry(std::string(row.character), std::string(row.name), {});
    entry.unicodeBlock = row.unicodeBlock;
    entry.usageCount = row.usageCount;
    entry.lastUsed = row.lastUsed;
    return entry;
}

EmojiEntry usedEntry(const UnicodeChar& record) {
    auto entry = indexedEntry(record.character, record.name, splitAtCommas(record.keywordsRaw));
    entry.unicodeBlock = record.unicodeBlock;
    entry.usageCount = record.usageCount;
    entry.lastUsed = record.lastUsed;
    return entry;
}

std::vector<EmojiEntry> specialEntries() {
    return {specialEntry("random-emoji", "Random Emoji", {"random", "emoji", "surprise", "lucky"}),
            specialEntry("random-unicode", "Random Unicode", {"random", "unicode", "surprise", "lucky"})};
}

std::vector<EmojiEntry> replacementEntries(std::span<const UserReplacement> replacements,
                                           const ReplacementUsage& usage,
                                           const std::function<bool(std::string_view)>& isIndexed) {
    std::vector<EmojiEntry> entries;
    for (const auto& replacement : replacements) {
        if (replacement.text.empty() || isIndexed(replacement.text))
            continue;
        auto keywords = replacement.keywords.empty() ? std::vector{replacement.name} : replacement.keywords;
        auto entry = indexedEntry(replacement.text, replacement.name, std::move(keywords));
        entry.unicodeBlock = userReplacementsBlock;
        if (const auto used = usage.find(replacement.text); used != usage.end()) {
            entry.usageCount = used->second.count;
            entry.lastUsed = used->second.lastUsed;
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

void addUse(UseByEntry& use, std::span<const EmojiEntry> entries, std::uint32_t firstNumber) {
    for (const auto& entry : entries) {
        if (entry.usageCount != 0 || entry.lastUsed)
            use.set({firstNumber, entry.usageCount, entry.lastUsed});
        ++firstNumber;
    }
}

} // namespace glyma
