#include "data/resource_text.h"

#include "unicode/text.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <optional>
#include <system_error>

namespace glyma {
namespace {

constexpr std::string_view remedy = "reinstall Glyma or set GLYMA_RESOURCE_DIR";

std::expected<std::string, std::string> readFile(const std::filesystem::path& path) {
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    if (!file || error)
        return std::unexpected(std::string(std::strerror(error ? error.value() : errno)));
    std::string text(size, '\0');
    file.read(text.data(), static_cast<std::streamsize>(size));
    if (file.bad() || static_cast<std::uintmax_t>(file.gcount()) != size)
        return std::unexpected(std::string("it ended before its size"));
    return text;
}

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
    auto text = readFile(*path);
    if (!text)
        return std::unexpected(resource.problem(fmt::format("cannot be read ({})", text.error())));
    resource.text = std::move(*text);
    if (!unicode::isWellFormed(resource.text))
        return std::unexpected(resource.problem("is not UTF-8 text"));
    return resource;
}

} // namespace glyma
