#pragma once

#include "platform/scheduler.h"

#include <cstdint>
#include <expected>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace glyma {

/// What the user taught the program, in the form that outlives the catalogue's store: a JSON document. Dates
/// are seconds since 2001-01-01T00:00:00Z.
struct UserDataBackup {
    static constexpr std::int64_t currentVersion = 1;

    struct CharUsage {
        std::int64_t count = 0;
        std::optional<Timestamp> lastUsed;
        bool operator==(const CharUsage&) const = default;
    };
    struct TermSelectionRecord {
        std::string term;
        std::string character; ///< member "char"
        std::int64_t count = 0;
        Timestamp lastUsed;
        bool operator==(const TermSelectionRecord&) const = default;
    };
    struct AllEnabled {
        bool operator==(const AllEnabled&) const = default;
    };
    struct AllDisabled {
        bool operator==(const AllDisabled&) const = default;
    };
    struct Partial {
        std::vector<std::string> enabledChars; ///< all others of the block are off
        bool operator==(const Partial&) const = default;
    };
    using BlockState = std::variant<AllEnabled, AllDisabled, Partial>;

    std::int64_t version = currentVersion;
    Timestamp exportDate;
    std::map<std::string, CharUsage, std::less<>> charUsage; ///< by character
    std::vector<TermSelectionRecord> termSelections;
    std::map<std::string, BlockState, std::less<>> blockStates; ///< by block name
    bool operator==(const UserDataBackup&) const = default;
};

/// Why a document is no backup.
struct BackupRejection {
    std::string
        path; ///< the offending value: member names and positions joined with "/"; empty: the document
    std::string message;
    bool operator==(const BackupRejection&) const = default;

    /// "charUsage/x/count: expected an integer"
    std::string text() const;
};

/// One line of JSON in UTF-8, with "/" written as "\/". Ill-formed text is mended with U+FFFD.
std::string encode(const UserDataBackup& backup);
/// A document of any version is taken as long as it has the members of this one; members that are not known
/// are ignored. All of it or nothing.
std::expected<UserDataBackup, BackupRejection> decodeUserDataBackup(std::string_view bytes);

/// "user-data-backup-2025-03-14T093015.json", in UTC.
std::string backupFileName(Timestamp time);

} // namespace glyma
