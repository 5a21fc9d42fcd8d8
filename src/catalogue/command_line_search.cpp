#include "catalogue/command_line_search.h"

#include "catalogue/catalogue_texts.h"
#include "catalogue/personal_entries.h"
#include "catalogue/ranking.h"
#include "catalogue/section_builder.h"
#include "data/search_reader.h"

#include <algorithm>

namespace glyma {

namespace {

template<typename Value>
using Result = std::expected<Value, std::string>;

Result<CatalogueTexts> loadTexts(const CommandLineCatalogue& catalogue, const SearchReader& reader) {
    const auto stamp = reader.searchStamp();
    if (!stamp)
        return std::unexpected(stamp.error());
    if (*stamp)
        if (auto texts = textsOfImage(catalogue.storeFile, **stamp, catalogue.resources))
            return *std::move(texts);
    return readTextsAndWriteImage(catalogue.storeFile, loadPopularity(catalogue.resources, nullptr),
                                  catalogue.resources);
}

/// A used character of the rest as an entry of the index.
EmojiEntry personalEntry(const SearchSection& rest, const EntryUse& use) {
    CharacterRow row;
    row.character = rest.character(use.entry);
    row.name = rest.name(use.entry);
    row.unicodeBlock = rest.blockName(use.entry);
    row.usageCount = use.count;
    row.lastUsed = use.lastUsed;
    return usedEntry(row);
}

Result<CatalogueIndex> buildIndex(const CommandLineCatalogue& catalogue, const SearchReader& reader) {
    const auto texts = loadTexts(catalogue, reader);
    if (!texts)
        return std::unexpected(texts.error());
    UseByEntry use;
    UseByEntry usedRest; // ordered by number, and so by name
    const auto visited = reader.visitUses(
        [&](std::string_view character, std::int64_t count, std::optional<Timestamp> lastUsed) {
            if (const auto entry = texts->keyworded->find(character))
                use.set({*entry, count, lastUsed});
            else if (const auto restEntry = texts->rest->find(character))
                usedRest.set({*restEntry, count, lastUsed});
        });
    if (!visited)
        return std::unexpected(visited.error());

    std::vector<EmojiEntry> personal;
    for (const auto& used : usedRest.all())
        personal.push_back(personalEntry(*texts->rest, used));
    std::ranges::move(specialEntries(), std::back_inserter(personal));
    const auto isIndexed = [&](std::string_view text) {
        return texts->keyworded->find(text) ||
               std::ranges::find(personal, text, &EmojiEntry::character) != personal.end();
    };
    std::ranges::move(
        replacementEntries(catalogue.replacements, loadReplacementUsage(catalogue.settings), isIndexed),
        std::back_inserter(personal));
    addUse(use, personal, texts->keyworded->size());
    return CatalogueIndex(texts->keyworded, sectionOf(personal), texts->rest, texts->popularityTotal, use);
}

Result<LearnedTerms> learnedTerms(const SearchReader& reader, const QueryTerms& query) {
    const auto selections = reader.termSelections(query.folded());
    if (!selections)
        return std::unexpected(selections.error());
    LearnedTerms terms;
    for (const auto& selection : *selections)
        terms.set(selection.term, selection.character, {selection.count, selection.lastUsed});
    return terms;
}

CommandLineRow makeRow(const CatalogueIndex& index, const RankedEntry& ranked) {
    const auto keywords = index.keywords(ranked.entry);
    return {std::string(index.character(ranked.entry)),
            std::string(index.name(ranked.entry)),
            {keywords.begin(), keywords.end()},
            std::string(index.blockName(ranked.entry)),
            ranked.info()};
}

} // namespace

std::expected<std::vector<CommandLineRow>, std::string>
searchFromCommandLine(const CommandLineCatalogue& catalogue, const CommandLineQuery& line) {
    const QueryTerms query(line.text);
    std::error_code error;
    if (query.empty() || !std::filesystem::exists(catalogue.storeFile, error))
        return {};
    const auto reader = SearchReader::open(catalogue.storeFile);
    if (!reader)
        return std::unexpected(reader.error());
    const auto index = buildIndex(catalogue, *reader);
    if (!index)
        return std::unexpected(index.error());
    const auto terms = learnedTerms(*reader, query);
    if (!terms)
        return std::unexpected(terms.error());
    const auto hasBlocks = reader->hasEnabledBlock();
    if (!hasBlocks)
        return std::unexpected(hasBlocks.error());

    const auto rest = *hasBlocks ? matchRest(index->rest(), query, line.fuzzy) : std::vector<TextMatch>{};
    const auto ranked = rank(*index, matchIndexed(*index, query, line.fuzzy), rest,
                             terms->bonuses(query.folded(), catalogue.now), catalogue.now);
    const auto count = std::min(line.limit.value_or(ranked.size()), ranked.size());
    std::vector<CommandLineRow> rows;
    rows.reserve(count);
    for (const auto& entry : std::span(ranked).first(count))
        rows.push_back(makeRow(*index, entry));
    return rows;
}

bool hasCatalogue(const std::filesystem::path& storeFile) {
    const auto reader = SearchReader::open(storeFile);
    return reader && reader->hasCharacters().value_or(false);
}

} // namespace glyma
