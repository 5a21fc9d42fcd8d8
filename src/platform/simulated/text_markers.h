#pragma once

#include "platform/accessibility.h"
#include "platform/simulated/text_field.h"

#include <string_view>

namespace glyma::simulated {

/// Positions in a field for applications that do not count: a marker holds an offset, a range of markers a
/// TextRange, which nobody else can see.
TextMarkerRange markersOf(TextRange range);
TextMarker markerAt(std::ptrdiff_t offset);

/// The two functions beside the attributes.
TextMarkerFunctions markerFunctions();

/// Answers a parameterised attribute about markers; `unsupported` for any other.
Accessibility::Result<AttributeValue> askAboutMarkers(const TextField& field, std::string_view name,
                                                      const AttributeValue& parameter);

} // namespace glyma::simulated
