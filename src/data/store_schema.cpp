#include "data/store_schema.h"

#include <fmt/format.h>

#include <array>
#include <fstream>

namespace glyma {

namespace {

// "Glym": what file(1) and other programs can tell the file by.
constexpr std::int64_t applicationId = 0x476C796D;
// Two digits each for minor and patch.
constexpr std::int64_t schemaVersion = 1'00'00;

// keywords is a JSON array. lastUsed counts seconds since 2001-01-01T00:00:00Z, as dates in the program's
// JSON do. StoreNote holds what was derived from the other tables to answer faster.
constexpr const char* createTables = R"sql(
CREATE TABLE UnicodeChar (
    id INTEGER PRIMARY KEY,
    char TEXT NOT NULL,
    name TEXT NOT NULL,
    keywords TEXT NOT NULL,
    keywordsRaw TEXT NOT NULL,
    searchBagOfWords TEXT NOT NULL,
    unicodeBlock TEXT NOT NULL,
    usageCount INTEGER NOT NULL DEFAULT 0,
    lastUsed REAL,
    isEnabled INTEGER NOT NULL DEFAULT 1,
    foldedName TEXT NOT NULL,
    foldedKeywords TEXT NOT NULL
);
CREATE TABLE UnicodeBlock (
    name TEXT NOT NULL UNIQUE,
    rangeStart INTEGER NOT NULL,
    rangeEnd INTEGER NOT NULL,
    characterCount INTEGER NOT NULL,
    sampleChars TEXT NOT NULL,
    isEnabled INTEGER NOT NULL
);
CREATE INDEX UnicodeBlock_isEnabled ON UnicodeBlock (isEnabled);
CREATE TABLE TermSelection (
    id TEXT NOT NULL UNIQUE,
    term TEXT NOT NULL,
    char TEXT NOT NULL,
    count INTEGER NOT NULL,
    lastUsed REAL NOT NULL
);
CREATE TABLE StoreNote (
    name TEXT NOT NULL UNIQUE,
    value NOT NULL
);
)sql";

constexpr const char* createIndexes = R"sql(
CREATE UNIQUE INDEX UnicodeChar_char ON UnicodeChar (char);
CREATE INDEX UnicodeChar_isEnabled_keywordsRaw ON UnicodeChar (isEnabled, keywordsRaw);
CREATE INDEX UnicodeChar_unicodeBlock ON UnicodeChar (unicodeBlock);
CREATE INDEX UnicodeChar_used ON UnicodeChar (usageCount) WHERE usageCount > 0;
)sql";

constexpr const char* dropIndexes = R"sql(
DROP INDEX UnicodeChar_char;
DROP INDEX UnicodeChar_isEnabled_keywordsRaw;
DROP INDEX UnicodeChar_unicodeBlock;
DROP INDEX UnicodeChar_used;
)sql";

// Naming every column makes SQLite check that each is there, without reading a row.
constexpr std::array<const char*, 4> columnChecks{
    "SELECT id, char, name, keywords, keywordsRaw, searchBagOfWords, unicodeBlock, usageCount, lastUsed, "
    "isEnabled, "
    "foldedName, foldedKeywords FROM UnicodeChar INDEXED BY UnicodeChar_char ORDER BY char DESC LIMIT 1",
    "SELECT name, rangeStart, rangeEnd, characterCount, sampleChars, isEnabled FROM UnicodeBlock LIMIT 1",
    "SELECT id, term, char, count, lastUsed FROM TermSelection LIMIT 1",
    "SELECT name, value FROM StoreNote LIMIT 1",
};

// What the user typed is in it.
constexpr auto ownerOnly = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;

constexpr std::string_view magic("SQLite format 3\0", 16);
constexpr std::size_t headerSize = 100;

/// The first bytes of a file, as many of a database's header as there are.
std::string readHeader(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw std::runtime_error("cannot be read");
    std::string header(headerSize, '\0');
    stream.read(header.data(), headerSize);
    header.resize(static_cast<std::size_t>(stream.gcount()));
    return header;
}

enum class Kind { absent, empty, database };

/// Without SQLite, which would write to some of the files that it then finds unusable.
Kind look(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        return Kind::absent;
    if (!std::filesystem::is_regular_file(file, error))
        throw UnusableStore("not a regular file");
    if (std::filesystem::exists(Store::damageMark(file), error))
        throw UnusableStore("was found damaged while it was in use");
    const auto header = readHeader(file);
    if (header.empty())
        return Kind::empty;
    if (header.size() < headerSize || !header.starts_with(magic))
        throw UnusableStore("file is not a database");
    return Kind::database;
}

std::int64_t single(StoreConnection& connection, const char* sql) {
    return connection.database().execAndGet(sql).getInt64();
}

void create(StoreConnection& connection) {
    connection.execute("PRAGMA journal_mode = WAL");
    StoreWriteScope scope(connection);
    // Another process may have created them while this one waited for the lock.
    if (single(connection, "SELECT count(*) FROM sqlite_master") == 0) {
        connection.execute(createTables);
        createCharacterIndexes(connection);
        connection.execute(fmt::format("PRAGMA application_id = {}", applicationId).c_str());
        connection.execute(fmt::format("PRAGMA user_version = {}", schemaVersion).c_str());
    }
    scope.commit();
}

/// A table, column or index that a check names is not there.
bool isSchemaFault(const SQLite::Exception& error) {
    return error.getErrorCode() == SQLITE_ERROR;
}

void check(StoreConnection& connection) {
    if (single(connection, "PRAGMA application_id") != applicationId)
        throw UnusableStore("a database of another program");
    const auto version = single(connection, "PRAGMA user_version");
    if (version != schemaVersion)
        throw UnusableStore(fmt::format("a store of schema version {}.{}.{}, not {}", version / 10000,
                                        version / 100 % 100, version % 100, Store::currentSchemaVersion));
    for (const auto* sql : columnChecks)
        SQLite::Statement(connection.database(), sql).executeStep();
}

} // namespace

std::unique_ptr<StoreConnection> openStoreConnection(const std::filesystem::path& file) {
    const auto kind = look(file);
    try {
        auto connection = std::make_unique<StoreConnection>(
            file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_NOMUTEX);
        if (kind == Kind::absent)
            std::filesystem::permissions(file, ownerOnly);
        if (kind != Kind::database || single(*connection, "SELECT count(*) FROM sqlite_master") == 0)
            create(*connection);
        check(*connection);
        // With a write-ahead log this can lose the last changes when power fails, never the store.
        connection->execute("PRAGMA synchronous = NORMAL");
        return connection;
    } catch (const SQLite::Exception& error) {
        if (isDamage(error) || isSchemaFault(error))
            throw UnusableStore(error.what());
        throw;
    }
}

bool Store::isStore(const std::filesystem::path& file) {
    constexpr std::size_t applicationIdOffset = 68; // https://www.sqlite.org/fileformat.html#application_id
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        return false;
    try {
        const auto header = readHeader(file);
        return header.starts_with(magic) &&
               std::string_view(header).substr(applicationIdOffset).starts_with("Glym");
    } catch (const std::exception&) {
        return false;
    }
}

void createCharacterIndexes(StoreConnection& connection) {
    connection.execute(createIndexes);
}

void dropCharacterIndexes(StoreConnection& connection) {
    connection.execute(dropIndexes);
}

} // namespace glyma
