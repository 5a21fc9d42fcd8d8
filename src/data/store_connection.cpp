#include "data/store_connection.h"

#include "data/json_date.h"

#include <fstream>
#include <stdexcept>

namespace glyma {

namespace {

constexpr int busyTimeoutMilliseconds = 5000;

} // namespace

bool isDamage(const std::exception& error) {
    const auto* const reported = dynamic_cast<const SQLite::Exception*>(&error);
    if (reported == nullptr)
        return false;
    const auto code = reported->getErrorCode() & 0xFF;
    return code == SQLITE_CORRUPT || code == SQLITE_NOTADB;
}

StoreConnection::StoreConnection(std::filesystem::path file, int flags)
    : file_(std::move(file))
    , database_(file_.string(), flags, busyTimeoutMilliseconds) {}

SQLite::Statement& StoreConnection::prepared(std::string_view sql) {
    auto found = statements_.find(sql);
    if (found == statements_.end())
        found = statements_.emplace(sql, SQLite::Statement(database_, std::string(sql))).first;
    return found->second;
}

void StoreConnection::noteDamage(const std::exception& error) const {
    if (isDamage(error))
        std::ofstream(Store::damageMark(file_)) << error.what() << '\n';
}

StoreQuery::~StoreQuery() {
    statement_.tryReset();
}

void StoreQuery::run() {
    statement_.exec();
    statement_.reset();
}

std::string_view StoreQuery::text(int column) const {
    const auto value = statement_.getColumn(column);
    const auto* const start = static_cast<const char*>(value.getBlob());
    return start == nullptr ? std::string_view() : std::string_view(start, value.getBytes());
}

std::optional<Timestamp> StoreQuery::time(int column) const {
    const auto value = statement_.getColumn(column);
    if (value.isNull())
        return std::nullopt;
    return fromJsonDate(value.getDouble());
}

void StoreQuery::bind(int index, const std::optional<Timestamp>& value) {
    if (value)
        statement_.bind(index, toJsonDate(*value));
    else
        statement_.bind(index);
}

StoreWriteScope::StoreWriteScope(StoreConnection& connection)
    : connection_(connection)
    , isNested_(connection.expectsTransaction) {
    if (isNested_ && !connection.inTransaction())
        throw std::runtime_error("the transaction was rolled back after an earlier error");
    connection_.execute(isNested_ ? "SAVEPOINT store" : "BEGIN IMMEDIATE");
}

StoreWriteScope::~StoreWriteScope() {
    if (!isOpen_ || !connection_.inTransaction())
        return;
    auto* const handle = connection_.database().getHandle();
    sqlite3_exec(handle, isNested_ ? "ROLLBACK TO store; RELEASE store" : "ROLLBACK", nullptr, nullptr,
                 nullptr);
}

void StoreWriteScope::commit() {
    connection_.execute(isNested_ ? "RELEASE store" : "COMMIT");
    isOpen_ = false;
}

} // namespace glyma
