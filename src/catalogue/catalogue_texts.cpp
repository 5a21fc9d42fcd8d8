#include "catalogue/catalogue_texts.h"

#include "catalogue/section_builder.h"
#include "data/search_reader.h"

namespace glyma {

namespace {

std::string keyOf(const std::string& stamp, const ResourceLocator& resources) {
    return stamp + "|" + popularityFingerprint(resources);
}

/// No piece is dropped, an empty text has none.
void splitAtCommas(std::string_view text, std::vector<std::string_view>& pieces) {
    pieces.clear();
    if (text.empty())
        return;
    for (auto comma = text.find(','); comma != std::string_view::npos; comma = text.find(',')) {
        pieces.push_back(text.substr(0, comma));
        text.remove_prefix(comma + 1);
    }
    pieces.push_back(text);
}

/// Turns rows into entries without copying a text more than once.
class RowBuilder {
public:
    void add(const CharacterRow& row, std::uint32_t rank) {
        splitAtCommas(row.keywordsRaw, keywords_);
        splitAtCommas(row.foldedKeywords, foldedKeywords_);
        foldedKeywords_.resize(keywords_.size());
        builder_.add(
            {row.character, row.name, keywords_, row.foldedName, foldedKeywords_, row.unicodeBlock, rank});
    }
    std::shared_ptr<const SearchSection> build(bool withLetterScores) {
        return builder_.build(withLetterScores);
    }

private:
    SectionBuilder builder_;
    std::vector<std::string_view> keywords_;
    std::vector<std::string_view> foldedKeywords_;
};

} // namespace

std::filesystem::path imageLocation(const std::filesystem::path& storeFile) {
    return std::filesystem::path(storeFile).replace_extension("search-image");
}

std::optional<CatalogueTexts> textsOfImage(const std::filesystem::path& storeFile, const std::string& stamp,
                                           const ResourceLocator& resources) {
    return mapImage(imageLocation(storeFile), keyOf(stamp, resources));
}

std::expected<std::shared_ptr<const SearchSection>, std::string> readKeyworded(const Store& store,
                                                                               const Popularity& popularity) {
    RowBuilder rows;
    const auto visited = store.visitKeyworded(
        [&](const CharacterRow& row) { rows.add(row, popularity.rankOf(row.character)); });
    if (!visited)
        return std::unexpected(visited.error());
    return rows.build(true);
}

std::expected<std::shared_ptr<const SearchSection>, std::string> readRest(const Store& store) {
    std::vector<std::int64_t> ids;
    if (auto visited = store.visitWithoutKeywords([&](const CharacterRow& row) { ids.push_back(row.id); });
        !visited)
        return std::unexpected(visited.error());
    RowBuilder rows;
    if (auto visited = store.visitRows(ids, [&](const CharacterRow& row) { rows.add(row, noRank); });
        !visited)
        return std::unexpected(visited.error());
    return rows.build(false);
}

std::expected<CatalogueTexts, std::string> readTextsAndWriteImage(const std::filesystem::path& storeFile,
                                                                  const Popularity& popularity,
                                                                  const ResourceLocator& resources) {
    // Before the rows are read: a change that comes between takes the stamp away, and with it the image.
    const auto stamp = renewSearchStamp(storeFile);
    const auto store = Store::open(storeFile);
    if (!store)
        return std::unexpected(store.error());
    auto keyworded = readKeyworded(*store, popularity);
    if (!keyworded)
        return std::unexpected(keyworded.error());
    auto rest = readRest(*store);
    if (!rest)
        return std::unexpected(rest.error());
    CatalogueTexts texts{*std::move(keyworded), *std::move(rest), popularity.total};
    if (stamp)
        writeImage(imageLocation(storeFile), keyOf(*stamp, resources), texts);
    return texts;
}

} // namespace glyma
