#include "data/store_writing.h"

#include "data/store_implementation.h"
#include "data/store_rows.h"
#include "data/store_schema.h"

#include <stdexcept>

namespace glyma {

namespace {

std::int64_t single(StoreConnection& connection, std::string_view sql) {
    StoreQuery query(connection, sql);
    return query.step() ? query.integer(0) : 0;
}

/// Notes were derived from what changes now.
void dropNotes(StoreConnection& connection) {
    StoreQuery(connection, "DELETE FROM StoreNote").run();
}

void putNote(StoreConnection& connection, std::string_view name, std::int64_t value) {
    StoreQuery(connection, "INSERT INTO StoreNote (name, value) VALUES (?, ?) "
                           "ON CONFLICT (name) DO UPDATE SET value = excluded.value")
        .with(name, value)
        .run();
}

void insertRow(StoreQuery& query, const UnicodeChar& record, const DerivedTexts& texts) {
    query
        .with(record.character, record.name, texts.keywords, record.keywordsRaw, record.searchBagOfWords,
              record.unicodeBlock, record.usageCount, record.lastUsed, record.isEnabled, texts.foldedName,
              texts.foldedKeywords)
        .run();
}

/// Fills an empty table in row order and indexes it afterwards.
void fillCharacters(StoreConnection& connection, std::span<const UnicodeChar> characters) {
    const auto rows = orderedRows(characters);
    dropCharacterIndexes(connection);
    {
        StoreQuery query(
            connection,
            "INSERT INTO UnicodeChar (char, name, keywords, keywordsRaw, searchBagOfWords, unicodeBlock, "
            "usageCount, lastUsed, isEnabled, foldedName, foldedKeywords) "
            "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
        for (const auto& row : rows)
            insertRow(query, *row.character, row.texts);
    }
    createCharacterIndexes(connection);
    putNote(connection, orderedRowsNote,
            single(connection, "SELECT count(*) FROM UnicodeChar WHERE keywordsRaw > ''"));
}

void upsertCharacters(StoreConnection& connection, std::span<const UnicodeChar> characters) {
    dropNotes(connection);
    StoreQuery query(
        connection,
        "INSERT INTO UnicodeChar (char, name, keywords, keywordsRaw, searchBagOfWords, unicodeBlock, "
        "usageCount, "
        "lastUsed, isEnabled, foldedName, foldedKeywords) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) "
        "ON CONFLICT (char) DO UPDATE SET name = excluded.name, keywords = excluded.keywords, "
        "keywordsRaw = excluded.keywordsRaw, searchBagOfWords = excluded.searchBagOfWords, "
        "unicodeBlock = excluded.unicodeBlock, usageCount = excluded.usageCount, lastUsed = "
        "excluded.lastUsed, "
        "isEnabled = excluded.isEnabled, foldedName = excluded.foldedName, "
        "foldedKeywords = excluded.foldedKeywords");
    for (const auto& character : characters)
        insertRow(query, character, deriveTexts(character));
}

} // namespace

void dropNotesOnEnabled(StoreConnection& connection) {
    StoreQuery(connection, "DELETE FROM StoreNote WHERE name <> ?").with(orderedRowsNote).run();
}

void upsertTermSelection(StoreConnection& connection, const TermSelection& selection) {
    StoreQuery(
        connection,
        "INSERT INTO TermSelection (id, term, char, count, lastUsed) VALUES (?, ?, ?, ?, ?) "
        "ON CONFLICT (id) DO UPDATE SET term = excluded.term, char = excluded.char, count = excluded.count, "
        "lastUsed = excluded.lastUsed")
        .with(selection.id, selection.term, selection.character, selection.count, selection.lastUsed)
        .run();
}

void updateUsage(StoreConnection& connection, std::string_view character, std::int64_t usageCount,
                 const std::optional<Timestamp>& lastUsed) {
    StoreQuery(connection, "UPDATE UnicodeChar SET usageCount = ?, lastUsed = ? WHERE char = ?")
        .with(usageCount, lastUsed, character)
        .run();
}

void updateBlockEnabled(StoreConnection& connection, std::string_view blockName, bool enabled) {
    StoreQuery(connection, "UPDATE UnicodeBlock SET isEnabled = ? WHERE name = ?")
        .with(enabled, blockName)
        .run();
}

Store::Result<void> Store::insertCharacters(std::span<const UnicodeChar> characters) {
    auto& connection = *implementation_->connection;
    return write(connection, [&] {
        if (single(connection, "SELECT NOT EXISTS (SELECT 1 FROM UnicodeChar)") == 1)
            fillCharacters(connection, characters);
        else
            upsertCharacters(connection, characters);
    });
}

Store::Result<void> Store::removeCatalogue() {
    auto& connection = *implementation_->connection;
    return write(connection, [&] {
        dropNotes(connection);
        StoreQuery(connection, "DELETE FROM UnicodeChar").run();
        StoreQuery(connection, "DELETE FROM UnicodeBlock").run();
    });
}

Store::Result<void> Store::insertBlocks(std::span<const UnicodeBlock> blocks) {
    auto& connection = *implementation_->connection;
    return write(connection, [&] {
        StoreQuery query(
            connection,
            "INSERT INTO UnicodeBlock (name, rangeStart, rangeEnd, characterCount, sampleChars, isEnabled) "
            "VALUES (?, ?, ?, ?, ?, ?) ON CONFLICT (name) DO UPDATE SET "
            "rangeStart = excluded.rangeStart, rangeEnd = excluded.rangeEnd, "
            "characterCount = excluded.characterCount, sampleChars = excluded.sampleChars, "
            "isEnabled = excluded.isEnabled");
        for (const auto& block : blocks)
            query
                .with(block.name, block.rangeStart, block.rangeEnd, block.characterCount, block.sampleChars,
                      block.isEnabled)
                .run();
    });
}

Store::Result<void> Store::insertTermSelections(std::span<const TermSelection> selections) {
    auto& connection = *implementation_->connection;
    return write(connection, [&] {
        for (const auto& selection : selections)
            upsertTermSelection(connection, selection);
    });
}

Store::Result<void> Store::recordUse(const std::optional<UnicodeChar>& character,
                                     const std::optional<TermSelection>& selection) {
    auto& connection = *implementation_->connection;
    return write(connection, [&] {
        if (character)
            updateUsage(connection, character->character, character->usageCount, character->lastUsed);
        if (selection)
            upsertTermSelection(connection, *selection);
    });
}

Store::Result<void> Store::setUsage(std::string_view character, std::int64_t usageCount,
                                    std::optional<Timestamp> lastUsed) {
    auto& connection = *implementation_->connection;
    return write(connection, [&] { updateUsage(connection, character, usageCount, lastUsed); });
}

Store::Result<void> Store::setCharactersEnabled(std::string_view blockName, bool enabled) {
    auto& connection = *implementation_->connection;
    return write(connection, [&] {
        dropNotesOnEnabled(connection);
        StoreQuery(connection, "UPDATE UnicodeChar SET isEnabled = ? WHERE unicodeBlock = ?")
            .with(enabled, blockName)
            .run();
    });
}

Store::Result<void> Store::setCharacterEnabled(std::string_view character, bool enabled) {
    auto& connection = *implementation_->connection;
    return write(connection, [&] {
        dropNotesOnEnabled(connection);
        StoreQuery(connection, "UPDATE UnicodeChar SET isEnabled = ? WHERE char = ?")
            .with(enabled, character)
            .run();
    });
}

Store::Result<void> Store::setBlockEnabled(std::string_view blockName, bool enabled) {
    auto& connection = *implementation_->connection;
    return write(connection, [&] { updateBlockEnabled(connection, blockName, enabled); });
}

struct Store::Transaction::Implementation {
    explicit Implementation(StoreConnection& storeConnection)
        : connection(storeConnection)
        , scope(storeConnection) {
        connection.expectsTransaction = true;
    }
    ~Implementation() {
        if (scope.isOpen())
            connection.expectsTransaction = false;
    }
    void commit() {
        scope.commit();
        connection.expectsTransaction = false;
    }

    StoreConnection& connection;
    StoreWriteScope scope;
};

Store::Transaction::Transaction(std::unique_ptr<Implementation> implementation)
    : implementation_(std::move(implementation)) {}
Store::Transaction::Transaction(Transaction&&) noexcept = default;
Store::Transaction& Store::Transaction::operator=(Transaction&&) noexcept = default;
Store::Transaction::~Transaction() = default;

Store::Result<void> Store::Transaction::commit() {
    return implementation_->connection.attempt([&] { implementation_->commit(); });
}

Store::Result<Store::Transaction> Store::begin() {
    auto& connection = *implementation_->connection;
    return connection.attempt([&] {
        if (connection.expectsTransaction)
            throw std::runtime_error("a transaction is already open");
        return Transaction(std::make_unique<Transaction::Implementation>(connection));
    });
}

} // namespace glyma
