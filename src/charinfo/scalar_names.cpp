#include "charinfo/scalar_names.h"

#include "data/resource_text.h"
#include "data/scan.h"
#include "unicode/properties.h"

#include <fmt/format.h>

namespace glyma {

namespace {

constexpr std::string_view unnamed = "UNNAMED CHARACTER";

/// The line that tells of the code point: its own, or the last one of the range that it lies in.
/// https://www.unicode.org/reports/tr44/#Code_Point_Ranges
std::string_view lineOf(std::string_view list, std::int64_t codePoint) {
    while (!list.empty()) {
        const auto line = scan::takeField(list, '\n');
        if (const auto value = scan::hexadecimal(line.substr(0, line.find(';')));
            value && *value >= codePoint)
            return *value == codePoint || line.find(", Last>") != line.npos ? line : std::string_view();
    }
    return {};
}

} // namespace

std::string ScalarNames::nameOf(char32_t scalar) {
    auto name = unicode::scalarName(scalar);
    if (name.empty() && !unicode::isAssigned(scalar))
        name = listedName(scalar);
    return name.empty() ? std::string(unnamed) : name;
}

std::string ScalarNames::listedName(char32_t scalar) {
    if (!list_) {
        auto resource = readResource(resources_, "UnicodeData", "txt");
        list_ = resource ? std::move(resource->text) : std::string();
    }
    auto line = lineOf(*list_, scalar);
    scan::takeField(line, ';');
    const auto name = scan::takeField(line, ';');
    if (name.starts_with("<CJK Ideograph"))
        return fmt::format("CJK UNIFIED IDEOGRAPH-{:X}", static_cast<std::uint32_t>(scalar));
    return name.starts_with('<') ? std::string() : std::string(name);
}

} // namespace glyma
