#include "platform/simulated/text_markers.h"

#include <algorithm>

namespace glyma::simulated {

namespace {

using Answer = Accessibility::Result<AttributeValue>;
const std::unexpected unsupported{AccessibilityError::unsupported};

TextRange rangeOf(const TextMarkerRange& markers) {
    return *static_cast<const TextRange*>(markers.value.get());
}

std::ptrdiff_t offsetOf(const TextMarker& marker) {
    return *static_cast<const std::ptrdiff_t*>(marker.value.get());
}

TextMarkerRange between(const TextMarker& one, const TextMarker& other) {
    const auto [first, last] = std::minmax({offsetOf(one), offsetOf(other)});
    return markersOf({first, last - first});
}

TextRange lineAround(const TextField& field, std::ptrdiff_t offset) {
    TextField reader = field;
    reader.setSelection({offset, 0});
    reader.moveToLineStart();
    const auto start = reader.selection().location;
    reader.moveToLineEnd();
    return {start, reader.selection().location - start};
}

Answer askAboutRange(const TextField& field, std::string_view name, TextRange range) {
    if (name == attribute::boundsForTextMarkerRange)
        return field.bounds({range.location, std::max<std::ptrdiff_t>(range.length, 1)});
    if (name == attribute::stringForTextMarkerRange)
        return field.substring(range);
    if (name == attribute::startTextMarkerForTextMarkerRange)
        return markerAt(range.location);
    return unsupported;
}

Answer askAboutMarker(const TextField& field, std::string_view name, std::ptrdiff_t offset) {
    if (name == attribute::indexForTextMarker)
        return offset;
    if (name == attribute::leftLineTextMarkerRangeForTextMarker)
        return markersOf(lineAround(field, offset));
    return unsupported;
}

} // namespace

TextMarkerRange markersOf(TextRange range) {
    return {std::make_shared<TextRange>(range)};
}

TextMarker markerAt(std::ptrdiff_t offset) {
    return {std::make_shared<std::ptrdiff_t>(offset)};
}

TextMarkerFunctions markerFunctions() {
    return {
        .copyStartMarker = [](const TextMarkerRange& markers) { return markerAt(rangeOf(markers).location); },
        .createRange = [](const TextMarker& from, const TextMarker& to) { return between(from, to); }};
}

Answer askAboutMarkers(const TextField& field, std::string_view name, const AttributeValue& parameter) {
    if (const auto* range = std::get_if<TextMarkerRange>(&parameter))
        return askAboutRange(field, name, rangeOf(*range));
    if (const auto* marker = std::get_if<TextMarker>(&parameter))
        return askAboutMarker(field, name, offsetOf(*marker));
    const auto* both = std::get_if<std::vector<TextMarker>>(&parameter);
    if (both && both->size() == 2 && name == attribute::textMarkerRangeForUnorderedTextMarkers)
        return between(both->front(), both->back());
    return unsupported;
}

} // namespace glyma::simulated
