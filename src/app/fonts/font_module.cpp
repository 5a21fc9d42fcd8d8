#include "platform/linux/fonts/fontconfig_coverage.h"

#include <string_view>

extern "C" __attribute__((visibility("default"))) glyma::FontCoverage*
glymaMakeFontCoverage(const char* programVersion, glyma::Log* log) {
    if (std::string_view(programVersion) != GLYMA_VERSION)
        return nullptr;
    return new glyma::fonts::FontconfigCoverage(*log);
}
