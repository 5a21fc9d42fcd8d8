#include "data/character_reader.h"

#include "data/store_connection.h"

namespace glyma {

struct CharacterReader::Implementation {
    explicit Implementation(const std::filesystem::path& file)
        : connection(file, SQLite::OPEN_READONLY | SQLite::OPEN_NOMUTEX) {}

    StoreConnection connection;
};

CharacterReader::CharacterReader(std::unique_ptr<Implementation> implementation)
    : implementation_(std::move(implementation)) {}
CharacterReader::CharacterReader(CharacterReader&&) noexcept = default;
CharacterReader& CharacterReader::operator=(CharacterReader&&) noexcept = default;
CharacterReader::~CharacterReader() = default;

CharacterReader::Result<CharacterReader> CharacterReader::open(const std::filesystem::path& storeFile) {
    try {
        return CharacterReader(std::make_unique<Implementation>(storeFile));
    } catch (const std::exception& error) {
        return std::unexpected(storeFile.string() + ": " + error.what());
    }
}

CharacterReader::Result<std::optional<StoredCharacter>>
CharacterReader::find(std::string_view character) const {
    auto& connection = implementation_->connection;
    return connection.attempt([&]() -> std::optional<StoredCharacter> {
        StoreQuery query(connection,
                         "SELECT name, keywordsRaw, unicodeBlock, usageCount, lastUsed, isEnabled "
                         "FROM UnicodeChar WHERE char = ?");
        if (!query.with(character).step())
            return std::nullopt;
        return StoredCharacter{.name = query.string(0),
                               .keywordsRaw = query.string(1),
                               .unicodeBlock = query.string(2),
                               .usageCount = query.integer(3),
                               .lastUsed = query.time(4),
                               .isEnabled = query.flag(5)};
    });
}

CharacterReader::Result<std::optional<std::string>> CharacterReader::blockOf(char32_t codePoint) const {
    auto& connection = implementation_->connection;
    return connection.attempt([&]() -> std::optional<std::string> {
        StoreQuery query(connection,
                         "SELECT name FROM UnicodeBlock WHERE rangeStart <= ? AND rangeEnd >= ? LIMIT 1");
        const std::int64_t value = codePoint;
        return query.with(value, value).step() ? std::optional(query.string(0)) : std::nullopt;
    });
}

} // namespace glyma
