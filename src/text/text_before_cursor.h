#pragma once

#include "platform/accessibility.h"
#include "preferences/log.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace glyma {

/// Reads what stands before the caret of one element. Applications expose their text in very different ways,
/// so five strategies are tried in a fixed order; each gives up at its first failed call. Nothing is changed
/// in the application.
class TextBeforeCursor {
public:
    /// \param tick  number of the poll, for the log.
    TextBeforeCursor(Accessibility& accessibility, Log& log, ElementReference element, int tick);

    /// Ends at the caret (at the start of the selection when there is one); begins anywhere. UTF-8. Absent
    /// when no strategy succeeded.
    std::optional<std::string> read() const;

private:
    template<typename Value>
    using Result = Accessibility::Result<Value>;
    template<typename Value>
    Result<Value> attribute(std::string_view name) const;
    template<typename Value>
    Result<Value> parameterized(std::string_view name, const AttributeValue& parameter) const;

    std::optional<std::string> viaStringForRange() const;
    std::optional<std::string> viaValue() const;
    std::optional<std::string> viaMarkerIndex() const;
    std::optional<std::string> viaLineMarker() const;
    std::optional<std::string> viaFullMarkerRange() const;

    std::optional<TextRange> selectedRange(std::string_view strategy) const;
    std::optional<std::string> readStringForRange(std::ptrdiff_t caretIndex) const;
    std::optional<TextMarker> startMarker(const TextMarkerRange& range) const;
    std::optional<TextMarkerRange> markerRange(const TextMarker& from, const TextMarker& to) const;

    Accessibility& accessibility_;
    Log& log_;
    ElementReference element_;
    int tick_;
};

} // namespace glyma
