#pragma once

#include "platform/font_coverage.h"
#include "preferences/log.h"

#include <expected>
#include <memory>
#include <string>

namespace glyma {

/// The font module's: what the installed fonts can draw. Only an import asks; the libraries behind it take
/// longer to load than a search to answer. \param log  outlives the result. \return the coverage, or why
/// there is no module to ask and what to do.
std::expected<std::unique_ptr<FontCoverage>, std::string> loadFontCoverage(Log& log);

extern "C" {
/// The module's entry point. \return to be deleted by the caller; null when the program is of another version
/// than the module.
using GlymaMakeFontCoverage = FontCoverage* (*)(const char* programVersion, Log* log);
}
inline constexpr const char* fontCoverageEntryPoint = "glymaMakeFontCoverage";

} // namespace glyma
