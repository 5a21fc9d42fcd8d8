#include "data/store.h"

#include "data/store_implementation.h"
#include "data/store_rows.h"
#include "data/store_schema.h"
#include "unicode/collation.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace glyma {

namespace {

CharacterRow readRow(const StoreQuery& query) {
    return {.id = query.integer(0),
            .character = query.text(1),
            .name = query.text(2),
            .keywordsRaw = query.text(3),
            .foldedName = query.text(4),
            .foldedKeywords = query.text(5),
            .unicodeBlock = query.text(6),
            .usageCount = query.integer(7),
            .lastUsed = query.time(8)};
}

/// \param stored  the JSON array; its texts joined with "," are keywordsRaw.
std::vector<std::string> readKeywords(std::string_view stored, std::string_view keywordsRaw) {
    // Parsing is most of reading a block, and splitting enough where every comma separates and nothing is
    // escaped.
    constexpr std::size_t brackets = 4, separator = 3; // [""] and ","
    const auto commas = static_cast<std::size_t>(std::ranges::count(keywordsRaw, ','));
    if (stored.find('\\') != stored.npos ||
        stored.size() != brackets + keywordsRaw.size() + commas * (separator - 1))
        return nlohmann::json::parse(stored).get<std::vector<std::string>>();
    std::vector<std::string> keywords;
    keywords.reserve(commas + 1);
    for (std::size_t start = 0; start <= keywordsRaw.size();) {
        const auto end = std::min(keywordsRaw.find(',', start), keywordsRaw.size());
        keywords.emplace_back(keywordsRaw.substr(start, end - start));
        start = end + 1;
    }
    return keywords;
}

UnicodeChar readCharacter(const StoreQuery& query) {
    return {.character = query.string(0),
            .name = query.string(1),
            .keywords = readKeywords(query.text(2), query.text(3)),
            .keywordsRaw = query.string(3),
            .searchBagOfWords = query.string(4),
            .unicodeBlock = query.string(5),
            .usageCount = query.integer(6),
            .lastUsed = query.time(7),
            .isEnabled = query.flag(8)};
}

UnicodeBlock readBlock(const StoreQuery& query) {
    return {.name = query.string(0),
            .rangeStart = query.integer(1),
            .rangeEnd = query.integer(2),
            .characterCount = query.integer(3),
            .sampleChars = query.string(4),
            .isEnabled = query.flag(5)};
}

TermSelection readTermSelection(const StoreQuery& query) {
    return {.id = query.string(0),
            .term = query.string(1),
            .character = query.string(2),
            .count = query.integer(3),
            .lastUsed = query.time(4).value_or(Timestamp{})};
}

template<typename Record>
std::vector<Record> readAll(StoreQuery& query, Record (*read)(const StoreQuery&)) {
    std::vector<Record> records;
    while (query.step())
        records.push_back(read(query));
    return records;
}

template<typename Record>
std::vector<Record> inNameOrder(std::vector<Record> records) {
    std::vector<std::string> names;
    names.reserve(records.size());
    for (const auto& record : records)
        names.push_back(record.name);
    std::vector<Record> result;
    result.reserve(records.size());
    for (const auto index : nameOrder(names))
        result.push_back(std::move(records[index]));
    return result;
}

bool idsFollowNames(StoreConnection& connection) {
    StoreQuery query(connection, "SELECT 1 FROM StoreNote WHERE name = ?");
    return query.with(orderedRowsNote).step();
}

void visitIds(StoreConnection& connection, std::span<const std::int64_t> ids, const Store::Visitor& visitor) {
    StoreQuery query(
        connection,
        "SELECT id, char, name, keywordsRaw, foldedName, foldedKeywords, unicodeBlock, usageCount, "
        "lastUsed FROM UnicodeChar WHERE id = ?");
    for (const auto id : ids) {
        if (query.with(id).step())
            visitor(readRow(query));
        query.reset();
    }
}

/// For a store that was added to after its import.
/// \param sql  gives id and name.
void visitByName(StoreConnection& connection, std::string_view sql, const Store::Visitor& visitor) {
    std::vector<std::int64_t> ids;
    std::vector<std::string> names;
    for (StoreQuery query(connection, sql); query.step();) {
        ids.push_back(query.integer(0));
        names.push_back(query.string(1));
    }
    std::vector<std::int64_t> ordered;
    ordered.reserve(ids.size());
    for (const auto index : nameOrder(names))
        ordered.push_back(ids[index]);
    visitIds(connection, ordered, visitor);
}

} // namespace

Store::Result<Store> Store::open(const std::filesystem::path& file) {
    try {
        return Store(std::make_unique<Implementation>(openStoreConnection(file)));
    } catch (const std::exception& error) {
        return std::unexpected(file.string() + ": " + error.what());
    }
}

std::filesystem::path Store::damageMark(const std::filesystem::path& file) {
    return file.string() + "-damage";
}

bool Store::isUnusable(const std::filesystem::path& file) {
    try {
        openStoreConnection(file);
        return false;
    } catch (const UnusableStore&) {
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

Store::Store(std::unique_ptr<Implementation> implementation)
    : implementation_(std::move(implementation)) {}
Store::Store(Store&&) noexcept = default;
Store& Store::operator=(Store&&) noexcept = default;
Store::~Store() = default;

const std::filesystem::path& Store::file() const {
    return implementation_->connection->file();
}

Store::Result<std::int64_t> Store::characterCount() const {
    auto& connection = *implementation_->connection;
    return connection.attempt([&] {
        StoreQuery query(connection, "SELECT count(*) FROM UnicodeChar");
        query.step();
        return query.integer(0);
    });
}

Store::Result<void> Store::visitKeyworded(const Visitor& visitor) const {
    auto& connection = *implementation_->connection;
    return connection.attempt([&] {
        if (!idsFollowNames(connection))
            return visitByName(
                connection,
                "SELECT id, name FROM UnicodeChar WHERE isEnabled = 1 AND keywordsRaw > '' ORDER BY id",
                visitor);
        // The unary plus keeps SQLite from an index: the wanted rows lie together at the start of the table.
        StoreQuery query(
            connection,
            "SELECT id, char, name, keywordsRaw, foldedName, foldedKeywords, unicodeBlock, usageCount, "
            "lastUsed FROM UnicodeChar WHERE id <= (SELECT value FROM StoreNote WHERE name = ?) "
            "AND +isEnabled = 1 AND +keywordsRaw > '' ORDER BY id");
        query.with(orderedRowsNote);
        while (query.step())
            visitor(readRow(query));
    });
}

Store::Result<void> Store::visitUsedWithoutKeywords(const Visitor& visitor) const {
    auto& connection = *implementation_->connection;
    return connection.attempt([&] {
        visitByName(connection,
                    "SELECT id, name FROM UnicodeChar INDEXED BY UnicodeChar_used "
                    "WHERE usageCount > 0 AND isEnabled = 1 AND keywordsRaw = '' ORDER BY id",
                    visitor);
    });
}

Store::Result<void> Store::visitWithoutKeywords(const Visitor& visitor) const {
    auto& connection = *implementation_->connection;
    return connection.attempt([&] {
        if (!idsFollowNames(connection))
            return visitByName(
                connection,
                "SELECT id, name FROM UnicodeChar WHERE isEnabled = 1 AND keywordsRaw = '' ORDER BY id",
                visitor);
        StoreQuery query(connection, "SELECT id, char, foldedName, usageCount FROM UnicodeChar "
                                     "WHERE isEnabled = 1 AND keywordsRaw = '' ORDER BY id");
        CharacterRow row;
        while (query.step()) {
            row.id = query.integer(0);
            row.character = query.text(1);
            row.foldedName = query.text(2);
            row.usageCount = query.integer(3);
            visitor(row);
        }
    });
}

Store::Result<void> Store::visitRows(std::span<const std::int64_t> ids, const Visitor& visitor) const {
    auto& connection = *implementation_->connection;
    return connection.attempt([&] { visitIds(connection, ids, visitor); });
}

Store::Result<std::optional<UnicodeChar>> Store::character(std::string_view character) const {
    auto& connection = *implementation_->connection;
    return connection.attempt([&]() -> std::optional<UnicodeChar> {
        StoreQuery query(connection,
                         "SELECT char, name, keywords, keywordsRaw, searchBagOfWords, unicodeBlock, "
                         "usageCount, lastUsed, isEnabled FROM UnicodeChar WHERE char = ?");
        if (!query.with(character).step())
            return std::nullopt;
        return readCharacter(query);
    });
}

Store::Result<std::vector<std::pair<std::string, std::string>>> Store::enabledCharactersAndBlocks() const {
    auto& connection = *implementation_->connection;
    return connection.attempt([&] {
        std::vector<std::pair<std::string, std::string>> pairs;
        for (StoreQuery query(connection, "SELECT char, unicodeBlock FROM UnicodeChar WHERE +isEnabled = 1");
             query.step();)
            pairs.emplace_back(query.string(0), query.string(1));
        return pairs;
    });
}

Store::Result<std::vector<UnicodeChar>> Store::charactersInBlock(std::string_view blockName) const {
    auto& connection = *implementation_->connection;
    return connection.attempt([&] {
        StoreQuery query(
            connection,
            "SELECT char, name, keywords, keywordsRaw, searchBagOfWords, unicodeBlock, usageCount, "
            "lastUsed, isEnabled FROM UnicodeChar WHERE unicodeBlock = ? ORDER BY id");
        auto records = readAll(query.with(blockName), readCharacter);
        if (!idsFollowNames(connection))
            return inNameOrder(std::move(records));
        // In two runs, those with keywords first.
        const auto plain = std::ranges::partition_point(
            records, [](const UnicodeChar& record) { return !record.keywordsRaw.empty(); });
        const unicode::Collator collator;
        std::ranges::inplace_merge(
            records, plain,
            [&](const std::string& left, const std::string& right) { return collator.less(left, right); },
            &UnicodeChar::name);
        return records;
    });
}

Store::Result<std::vector<UnicodeChar>> Store::usedCharacters() const {
    auto& connection = *implementation_->connection;
    return connection.attempt([&] {
        StoreQuery query(
            connection,
            "SELECT char, name, keywords, keywordsRaw, searchBagOfWords, unicodeBlock, usageCount, "
            "lastUsed, isEnabled FROM UnicodeChar WHERE usageCount > 0 ORDER BY id");
        return inNameOrder(readAll(query, readCharacter));
    });
}

Store::Result<std::vector<UnicodeBlock>> Store::blocks() const {
    auto& connection = *implementation_->connection;
    return connection.attempt([&] {
        StoreQuery query(connection,
                         "SELECT name, rangeStart, rangeEnd, characterCount, sampleChars, isEnabled "
                         "FROM UnicodeBlock ORDER BY rowid");
        return inNameOrder(readAll(query, readBlock));
    });
}

Store::Result<std::set<std::string, std::less<>>> Store::enabledBlockNames() const {
    auto& connection = *implementation_->connection;
    return connection.attempt([&] {
        std::set<std::string, std::less<>> names;
        for (StoreQuery query(connection, "SELECT name FROM UnicodeBlock WHERE isEnabled = 1"); query.step();)
            names.insert(query.string(0));
        return names;
    });
}

Store::Result<std::map<std::string, std::int64_t>> Store::enabledCounts() const {
    auto& connection = *implementation_->connection;
    return connection.attempt([&] {
        std::map<std::string, std::int64_t> counts;
        for (StoreQuery query(connection, "SELECT unicodeBlock, count(*) FROM UnicodeChar "
                                          "WHERE +isEnabled = 1 GROUP BY unicodeBlock");
             query.step();)
            counts.emplace(query.string(0), query.integer(1));
        return counts;
    });
}

Store::Result<std::vector<TermSelection>> Store::termSelections() const {
    auto& connection = *implementation_->connection;
    return connection.attempt([&] {
        StoreQuery query(connection,
                         "SELECT id, term, char, count, lastUsed FROM TermSelection ORDER BY rowid");
        return readAll(query, readTermSelection);
    });
}

Store::Result<std::optional<TermSelection>> Store::termSelection(std::string_view id) const {
    auto& connection = *implementation_->connection;
    return connection.attempt([&]() -> std::optional<TermSelection> {
        StoreQuery query(connection,
                         "SELECT id, term, char, count, lastUsed FROM TermSelection WHERE id = ?");
        if (!query.with(id).step())
            return std::nullopt;
        return readTermSelection(query);
    });
}

} // namespace glyma
