#pragma once

#include "data/resources.h"
#include "preferences/log.h"

#include <expected>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace glyma {

/// Reads the descriptions of the Egyptian hieroglyphs, whose Unicode names carry only sign numbers, and makes
/// search keywords of them.
class UniKemetImporter {
public:
    struct HieroglyphInfo {
        std::string description;
        std::string function;
        bool operator==(const HieroglyphInfo&) const = default;
    };
    /// By code point as written after "U+" in the file.
    using Descriptions = std::unordered_map<std::string, HieroglyphInfo>;

    UniKemetImporter(const ResourceLocator& resources, Log& log)
        : resources_(resources)
        , log_(log) {}

    std::expected<Descriptions, std::string> load() const;
    static Descriptions parse(std::string_view text);

    /// Distinct words of at least two characters: those of the function, then those of the description.
    static std::vector<std::string> keywords(const HieroglyphInfo& info);
    static std::vector<std::string> functionKeywords(std::string_view function);
    static std::vector<std::string> descriptionKeywords(std::string_view description);

private:
    const ResourceLocator& resources_;
    Log& log_;
};

} // namespace glyma
