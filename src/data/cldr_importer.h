#pragma once

#include "data/resources.h"
#include "preferences/log.h"

#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// Reads CLDR's emoji annotations: a name and search keywords for each character or sequence.
class CLDRImporter {
public:
    struct CharData {
        std::string character; ///< in emoji presentation
        std::string name;
        std::vector<std::string> keywords; ///< may be empty
        bool operator==(const CharData&) const = default;
    };

    CLDRImporter(const ResourceLocator& resources, Log& log)
        : resources_(resources)
        , log_(log) {}

    /// In the file's order. All or nothing: an error says which file and why.
    std::expected<std::vector<CharData>, std::string> load() const;
    static std::expected<std::vector<CharData>, std::string> parse(std::string_view json);

private:
    const ResourceLocator& resources_;
    Log& log_;
};

} // namespace glyma
