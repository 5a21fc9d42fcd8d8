#pragma once

#include "data/store.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <exception>
#include <type_traits>
#include <unordered_map>

namespace glyma {

/// Whether SQLite says that the database file itself is damaged.
bool isDamage(const std::exception& error);

/// One connection with its settings and the statements it has prepared. Throws as SQLiteCpp does; attempt()
/// is where exceptions end.
class StoreConnection {
public:
    StoreConnection(std::filesystem::path file, int flags);

    const std::filesystem::path& file() const { return file_; }
    SQLite::Database& database() { return database_; }
    /// \param sql  of static storage: it is the statement's key.
    SQLite::Statement& prepared(std::string_view sql);
    void execute(const char* sql) { database_.exec(sql); }
    bool inTransaction() { return sqlite3_get_autocommit(database_.getHandle()) == 0; }

    /// While a Store::Transaction exists. SQLite ends a transaction by itself on some errors (a full disk);
    /// nothing may then be written on its own.
    bool expectsTransaction = false;

    template<typename Work>
    auto attempt(Work&& work) -> Store::Result<std::invoke_result_t<Work>> {
        using Value = std::invoke_result_t<Work>;
        try {
            if constexpr (std::is_void_v<Value>) {
                work();
                return {};
            } else {
                return work();
            }
        } catch (const std::exception& error) {
            noteDamage(error);
            return std::unexpected(file_.string() + ": " + error.what());
        }
    }

private:
    void noteDamage(const std::exception& error) const;

    std::filesystem::path file_;
    SQLite::Database database_;
    std::unordered_map<std::string_view, SQLite::Statement> statements_;
};

/// A prepared statement in use; it is reset when this goes, so that no read outlives its use.
class StoreQuery {
public:
    StoreQuery(StoreConnection& connection, std::string_view sql)
        : statement_(connection.prepared(sql)) {}
    ~StoreQuery();
    StoreQuery(const StoreQuery&) = delete;
    StoreQuery& operator=(const StoreQuery&) = delete;

    /// Binds the parameters from the first on. Texts are not copied: they must live until the statement has
    /// run.
    template<typename... Values>
    StoreQuery& with(const Values&... values) {
        int index = 0;
        (bind(++index, values), ...);
        return *this;
    }

    bool step() { return statement_.executeStep(); }
    /// Makes the statement ready to be bound and run again.
    void reset() { statement_.reset(); }
    /// Runs a statement that returns nothing and resets it.
    void run();

    std::int64_t integer(int column) const { return statement_.getColumn(column).getInt64(); }
    bool flag(int column) const { return integer(column) != 0; }
    /// Valid until the next step.
    std::string_view text(int column) const;
    std::string string(int column) const { return std::string(text(column)); }
    std::optional<Timestamp> time(int column) const;

private:
    void bind(int index, std::int64_t value) { statement_.bind(index, value); }
    void bind(int index, bool value) { statement_.bind(index, value ? 1 : 0); }
    void bind(int index, const std::string& value) { statement_.bindNoCopy(index, value); }
    void bind(int index, std::string_view value) { statement_.bind(index, std::string(value)); }
    void bind(int index, const std::optional<Timestamp>& value);
    void bind(int index, const Timestamp& value) { bind(index, std::optional(value)); }

    SQLite::Statement& statement_;
};

/// Groups writes: a transaction, or a savepoint inside the one that is open. Undone unless committed.
class StoreWriteScope {
public:
    explicit StoreWriteScope(StoreConnection& connection);
    ~StoreWriteScope();
    StoreWriteScope(const StoreWriteScope&) = delete;
    StoreWriteScope& operator=(const StoreWriteScope&) = delete;
    void commit();
    bool isOpen() const { return isOpen_; }

private:
    StoreConnection& connection_;
    bool isNested_;
    bool isOpen_ = true;
};

} // namespace glyma
