#include "app/font_coverage_loader.h"

#include "app/module_loader.h"

namespace glyma {

std::expected<std::unique_ptr<FontCoverage>, std::string> loadFontCoverage(Log& log) {
    const auto entryPoint = loadModule("fonts", fontCoverageEntryPoint);
    if (!entryPoint)
        return std::unexpected(entryPoint.error());
    std::unique_ptr<FontCoverage> coverage(
        reinterpret_cast<GlymaMakeFontCoverage>(*entryPoint)(GLYMA_VERSION, &log));
    if (!coverage)
        return std::unexpected("the program and its fonts part are of different versions; install both again");
    return coverage;
}

} // namespace glyma
