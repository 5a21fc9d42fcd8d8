#include "data/search_reader.h"

#include "data/store_connection.h"

#include <fmt/format.h>

#include <random>

namespace glyma {

namespace {

// A note, because the store drops its notes when the characters that they were made from change.
constexpr std::string_view stampNote = "searchStamp";

} // namespace

struct SearchReader::Implementation {
    explicit Implementation(const std::filesystem::path& file)
        : connection(file, SQLite::OPEN_READONLY | SQLite::OPEN_NOMUTEX) {}

    Result<bool> finds(std::string_view sql) {
        return connection.attempt([&] { return StoreQuery(connection, sql).step(); });
    }

    StoreConnection connection;
};

SearchReader::SearchReader(std::unique_ptr<Implementation> implementation)
    : implementation_(std::move(implementation)) {}
SearchReader::SearchReader(SearchReader&&) noexcept = default;
SearchReader& SearchReader::operator=(SearchReader&&) noexcept = default;
SearchReader::~SearchReader() = default;

SearchReader::Result<SearchReader> SearchReader::open(const std::filesystem::path& file) {
    try {
        return SearchReader(std::make_unique<Implementation>(file));
    } catch (const std::exception& error) {
        return std::unexpected(file.string() + ": " + error.what());
    }
}

SearchReader::Result<bool> SearchReader::hasCharacters() const {
    return implementation_->finds("SELECT 1 FROM UnicodeChar LIMIT 1");
}

SearchReader::Result<bool> SearchReader::hasEnabledBlock() const {
    return implementation_->finds("SELECT 1 FROM UnicodeBlock WHERE isEnabled = 1 LIMIT 1");
}

SearchReader::Result<std::optional<std::string>> SearchReader::searchStamp() const {
    auto& connection = implementation_->connection;
    return connection.attempt([&]() -> std::optional<std::string> {
        StoreQuery query(connection, "SELECT value FROM StoreNote WHERE name = ?");
        return query.with(stampNote).step() ? std::optional(query.string(0)) : std::nullopt;
    });
}

SearchReader::Result<void> SearchReader::visitUses(
    const std::function<void(std::string_view, std::int64_t, std::optional<Timestamp>)>& visitor) const {
    auto& connection = implementation_->connection;
    return connection.attempt([&] {
        StoreQuery query(connection, "SELECT char, usageCount, lastUsed FROM UnicodeChar "
                                     "INDEXED BY UnicodeChar_used WHERE usageCount > 0 AND isEnabled = 1");
        while (query.step())
            visitor(query.text(0), query.integer(1), query.time(2));
    });
}

SearchReader::Result<std::vector<TermSelection>> SearchReader::termSelections(std::string_view prefix) const {
    auto& connection = implementation_->connection;
    return connection.attempt([&] {
        // The id begins with the term and is the only indexed column; no UTF-8 text follows the byte 0xFF.
        const auto end = std::string(prefix) + '\xFF';
        StoreQuery query(connection, "SELECT id, term, char, count, lastUsed FROM TermSelection "
                                     "WHERE id >= ? AND id < ? ORDER BY rowid");
        query.with(prefix, end);
        std::vector<TermSelection> selections;
        while (query.step())
            if (query.text(1).starts_with(prefix))
                selections.push_back({query.string(0), query.string(1), query.string(2), query.integer(3),
                                      query.time(4).value_or(Timestamp{})});
        return selections;
    });
}

std::expected<std::string, std::string> renewSearchStamp(const std::filesystem::path& storeFile) {
    std::random_device random;
    const auto stamp = fmt::format("{:08x}{:08x}", random(), random());
    try {
        StoreConnection connection(storeFile, SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX);
        StoreWriteScope scope(connection);
        StoreQuery(connection, "INSERT INTO StoreNote (name, value) VALUES (?, ?) "
                               "ON CONFLICT (name) DO UPDATE SET value = excluded.value")
            .with(stampNote, stamp)
            .run();
        scope.commit();
    } catch (const std::exception& error) {
        return std::unexpected(storeFile.string() + ": " + error.what());
    }
    return stamp;
}

} // namespace glyma
