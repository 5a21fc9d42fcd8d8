#pragma once

#include <string>
#include <string_view>

namespace glyma {

/// The address of the page that tells of newer versions.
/// \param host     the vendor's web site, scheme and host, with or without a slash at its end.
/// \param version  of this program; empty counts as "0".
std::string updatePageAddress(std::string_view host, std::string_view version);

} // namespace glyma
