#include "data/resource_text.h"

#include "data/whole_file.h"
#include "unicode/text.h"

#include <fmt/format.h>

#include <optional>

namespace glyma {
namespace {

constexpr std::string_view remedy = "reinstall Glyma or set GLYMA_RESOURCE_DIR";

} // namespace

std::string ResourceText::problem(std::string_view what) const {
    return fmt::format("{} in {} {}: {}", path.filename().string(), path.parent_path().string(), what,
                       remedy);
}

std::expected<ResourceText, std::string> readResource(const ResourceLocator& resources, std::string_view name,
                                                      std::string_view extension) {
    const auto path = resources.find(name, extension);
    if (!path)
        return std::unexpected(
            fmt::format("{}.{} not found in {}: {}", name, extension, resources.folder().string(), remedy));
    ResourceText resource{*path, {}};
    auto text = readWholeFile(*path);
    if (!text)
        return std::unexpected(resource.problem(fmt::format("cannot be read ({})", text.error())));
    resource.text = std::move(*text);
    if (!unicode::isWellFormed(resource.text))
        return std::unexpected(resource.problem("is not UTF-8 text"));
    return resource;
}

} // namespace glyma
