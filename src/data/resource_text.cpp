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
    std::string text;
    std::size_t length = 0;
    while (file && !error) {
        text.resize(length == 0 ? size + 1 : length * 2); // one byte more tells the end in one go
        file.read(text.data() + length, static_cast<std::streamsize>(text.size() - length));
        length += static_cast<std::size_t>(file.gcount());
    }
    if (!file.eof() || file.bad())
        return std::unexpected(std::string(std::strerror(error ? error.value() : errno)));
    text.resize(length);
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
