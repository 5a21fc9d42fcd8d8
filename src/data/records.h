#pragma once

#include "platform/scheduler.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace glyma {

/// One character, or emoji sequence, of the catalogue.
struct UnicodeChar {
    std::string character; ///< unique; column `char`
    std::string name;
    std::vector<std::string> keywords;
    std::string keywordsRaw;      ///< keywords joined with ","
    std::string searchBagOfWords; ///< name and keywords joined with spaces, quotes straightened
    std::string unicodeBlock;
    std::int64_t usageCount = 0;
    std::optional<Timestamp> lastUsed;
    bool isEnabled = true;
    bool operator==(const UnicodeChar&) const = default;
};

/// A new record with its derived fields.
UnicodeChar makeUnicodeChar(std::string character, std::string name, std::vector<std::string> keywords,
                            std::string unicodeBlock);

struct UnicodeBlock {
    std::string name; ///< unique
    std::int64_t rangeStart = 0;
    std::int64_t rangeEnd = 0; ///< inclusive
    std::int64_t characterCount = 0;
    std::string sampleChars;
    bool isEnabled = false;
    bool operator==(const UnicodeBlock&) const = default;
};

/// A character the user chose for a term.
struct TermSelection {
    std::string id; ///< unique: term, "|", character
    std::string term;
    std::string character; ///< column `char`
    std::int64_t count = 1;
    Timestamp lastUsed;
    bool operator==(const TermSelection&) const = default;
};

TermSelection makeTermSelection(std::string term, std::string character, Timestamp now);

} // namespace glyma
