#include "text/text_before_cursor.h"

#include "unicode/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

namespace glyma {

namespace {

/// Covers every trigger and query that anybody types; UTF-16 units.
constexpr std::ptrdiff_t longestRange = 100;
constexpr std::size_t loggedCharacters = 30;

template<typename Value>
Accessibility::Result<Value> valueAs(Accessibility::Result<AttributeValue> answer) {
    if (!answer)
        return std::unexpected(answer.error());
    auto* value = std::get_if<Value>(&*answer);
    if (!value)
        return std::unexpected(AccessibilityError::noValue);
    return std::move(*value);
}

std::string rawIndex(const AttributeValue& value) {
    const auto* number = std::get_if<std::ptrdiff_t>(&value);
    return number ? fmt::format("{}", *number) : "not a number";
}

} // namespace

TextBeforeCursor::TextBeforeCursor(Accessibility& accessibility, Log& log, ElementReference element, int tick)
    : accessibility_(accessibility)
    , log_(log)
    , element_(std::move(element))
    , tick_(tick) {}

template<typename Value>
Accessibility::Result<Value> TextBeforeCursor::attribute(std::string_view name) const {
    return valueAs<Value>(accessibility_.attributeValue(element_, name));
}

template<typename Value>
Accessibility::Result<Value> TextBeforeCursor::parameterized(std::string_view name,
                                                             const AttributeValue& parameter) const {
    return valueAs<Value>(accessibility_.parameterizedValue(element_, name, parameter));
}

std::optional<std::string> TextBeforeCursor::read() const {
    struct Strategy {
        std::string_view name;
        bool logsTick;
        std::optional<std::string> (TextBeforeCursor::*read)() const;
    };
    static constexpr std::array strategies{
        Strategy{"1 (StringForRange)", true, &TextBeforeCursor::viaStringForRange},
        Strategy{"2 (kAXValue)", true, &TextBeforeCursor::viaValue},
        Strategy{"3 (MarkerIndex)", true, &TextBeforeCursor::viaMarkerIndex},
        Strategy{"4 (LineMarker)", false, &TextBeforeCursor::viaLineMarker},
        Strategy{"5 (FullMarkerRange)", false, &TextBeforeCursor::viaFullMarkerRange},
    };
    for (const auto& strategy : strategies) {
        auto text = (this->*strategy.read)();
        if (!text)
            continue;
        if (log_.debugEnabled())
            log_.debug("Strategy {} succeeded{}: {}", strategy.name,
                       strategy.logsTick ? fmt::format(" [tick #{}]", tick_) : std::string(),
                       log_.redactQuoted(unicode::lastGraphemes(*text, loggedCharacters)));
        return text;
    }
    log_.debug("All strategies failed");
    return std::nullopt;
}

std::optional<TextRange> TextBeforeCursor::selectedRange(std::string_view strategy) const {
    const auto answer = accessibility_.attributeValue(element_, attribute::selectedTextRange);
    if (!answer) {
        log_.debug("{}: kAXSelectedTextRangeAttribute failed ({})", strategy, describe(answer.error()));
        return std::nullopt;
    }
    const auto* range = std::get_if<TextRange>(&*answer);
    if (!range) {
        log_.debug("{}: AXValueGetValue cfRange failed", strategy);
        return std::nullopt;
    }
    return *range;
}

std::optional<std::string> TextBeforeCursor::readStringForRange(std::ptrdiff_t caretIndex) const {
    if (caretIndex < 0)
        return std::nullopt;
    const auto length = std::min(caretIndex, longestRange);
    auto text = parameterized<std::string>(attribute::stringForRange, TextRange{caretIndex - length, length});
    return text ? std::optional(std::move(*text)) : std::nullopt;
}

std::optional<std::string> TextBeforeCursor::viaStringForRange() const {
    const auto range = selectedRange("S1");
    return range ? readStringForRange(range->location) : std::nullopt;
}

std::optional<std::string> TextBeforeCursor::viaValue() const {
    const auto range = selectedRange("S2");
    if (!range || range->location < 0)
        return std::nullopt;
    const auto value = attribute<std::string>(attribute::value);
    if (!value) {
        log_.debug("S2: kAXValueAttribute failed ({})", describe(value.error()));
        return std::nullopt;
    }
    return std::string(unicode::utf16Substring(*value, 0, static_cast<std::size_t>(range->location)));
}

std::optional<std::string> TextBeforeCursor::viaMarkerIndex() const {
    const auto selection = attribute<TextMarkerRange>(attribute::selectedTextMarkerRange);
    if (!selection) {
        log_.debug("S3: AXSelectedTextMarkerRange failed ({})", describe(selection.error()));
        return std::nullopt;
    }
    const auto caretMarker = startMarker(*selection);
    if (!caretMarker) {
        log_.debug("S3: could not extract start marker");
        return std::nullopt;
    }
    const auto answer =
        accessibility_.parameterizedValue(element_, attribute::indexForTextMarker, *caretMarker);
    if (!answer) {
        log_.debug("S3: AXIndexForTextMarker failed ({})", describe(answer.error()));
        return std::nullopt;
    }
    // Web content also answers 0 when it does not know.
    const auto* index = std::get_if<std::ptrdiff_t>(&*answer);
    if (!index || *index < 1) {
        log_.debug("S3: caretIndex invalid or 0 (raw: {})", rawIndex(*answer));
        return std::nullopt;
    }
    log_.debug("S3: caretIndex = {}", *index);
    auto text = readStringForRange(*index);
    if (!text)
        log_.debug("S3: readStringForRange failed");
    return text;
}

std::optional<std::string> TextBeforeCursor::viaLineMarker() const {
    const auto selection = attribute<TextMarkerRange>(attribute::selectedTextMarkerRange);
    if (!selection) {
        log_.debug("S4: AXSelectedTextMarkerRange failed");
        return std::nullopt;
    }
    const auto caretMarker = startMarker(*selection);
    if (!caretMarker) {
        log_.debug("S4: could not extract start marker");
        return std::nullopt;
    }
    const auto line =
        parameterized<TextMarkerRange>(attribute::leftLineTextMarkerRangeForTextMarker, *caretMarker);
    if (!line) {
        log_.debug("S4: AXLeftLineTextMarkerRangeForTextMarker failed ({})", describe(line.error()));
        return std::nullopt;
    }
    const auto lineStart = startMarker(*line);
    if (!lineStart) {
        log_.debug("S4: could not extract line start marker");
        return std::nullopt;
    }
    const auto range = markerRange(*lineStart, *caretMarker);
    if (!range) {
        log_.debug("S4: could not create marker range (lineStart → caret)");
        return std::nullopt;
    }
    auto text = parameterized<std::string>(attribute::stringForTextMarkerRange, *range);
    if (!text) {
        log_.debug("S4: AXStringForTextMarkerRange failed ({})", describe(text.error()));
        return std::nullopt;
    }
    return std::move(*text);
}

std::optional<std::string> TextBeforeCursor::viaFullMarkerRange() const {
    const auto documentStart = attribute<TextMarker>(attribute::startTextMarker);
    if (!documentStart) {
        log_.debug("S5: AXStartTextMarker failed ({})", describe(documentStart.error()));
        return std::nullopt;
    }
    const auto selection = attribute<TextMarkerRange>(attribute::selectedTextMarkerRange);
    if (!selection) {
        log_.debug("S5: AXSelectedTextMarkerRange failed");
        return std::nullopt;
    }
    const auto caretMarker = startMarker(*selection);
    if (!caretMarker) {
        log_.debug("S5: could not extract caret marker");
        return std::nullopt;
    }
    const auto range = markerRange(*documentStart, *caretMarker);
    if (!range) {
        log_.debug("S5: could not create marker range (docStart → caret)");
        return std::nullopt;
    }
    auto text = parameterized<std::string>(attribute::stringForTextMarkerRange, *range);
    if (!text) {
        log_.debug("S5: AXStringForTextMarkerRange failed ({})", describe(text.error()));
        return std::nullopt;
    }
    return std::move(*text);
}

std::optional<TextMarker> TextBeforeCursor::startMarker(const TextMarkerRange& range) const {
    if (auto marker = parameterized<TextMarker>(attribute::startTextMarkerForTextMarkerRange, range))
        return std::move(*marker);
    log_.debug("Param attr failed, trying AXTextMarkerRangeCopyStartMarker");
    const auto& copyStartMarker = accessibility_.textMarkerFunctions().copyStartMarker;
    if (copyStartMarker)
        return copyStartMarker(range);
    log_.debug("AXTextMarkerRangeCopyStartMarker not available");
    return std::nullopt;
}

std::optional<TextMarkerRange> TextBeforeCursor::markerRange(const TextMarker& from,
                                                             const TextMarker& to) const {
    if (auto range = parameterized<TextMarkerRange>(attribute::textMarkerRangeForUnorderedTextMarkers,
                                                    std::vector{from, to}))
        return std::move(*range);
    log_.debug("Param attr failed, trying AXTextMarkerRangeCreate");
    const auto& createRange = accessibility_.textMarkerFunctions().createRange;
    if (createRange)
        return createRange(from, to);
    log_.debug("AXTextMarkerRangeCreate not available");
    return std::nullopt;
}

} // namespace glyma
