#pragma once

#include "platform/geometry.h"

#include <cstddef>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <variant>
#include <vector>

namespace glyma {

/// Counts UTF-16 code units, the unit of every range that applications exchange with us.
struct TextRange {
    std::ptrdiff_t location = 0;
    std::ptrdiff_t length = 0;
    bool operator==(const TextRange&) const = default;
};

/// Something in an application that answers attributes; each desktop has its own kind.
class AccessibilityElement {
public:
    virtual ~AccessibilityElement() = default;
};
using ElementReference = std::shared_ptr<const AccessibilityElement>;

/// An opaque text position or span of positions of an application that does not count.
struct TextMarker {
    std::shared_ptr<const void> value;
    bool operator==(const TextMarker&) const = default;
};
struct TextMarkerRange {
    std::shared_ptr<const void> value;
    bool operator==(const TextMarkerRange&) const = default;
};
/// An address, as opposed to any other string.
struct Address {
    std::string absoluteString;
    bool operator==(const Address&) const = default;
};

/// What a desktop may have beside the attributes to take ranges of markers apart and put them together. An
/// empty function is one that it has not.
struct TextMarkerFunctions {
    std::function<std::optional<TextMarker>(const TextMarkerRange&)> copyStartMarker;
    std::function<std::optional<TextMarkerRange>(const TextMarker& from, const TextMarker& to)> createRange;
};
/// A value of an attribute. Strings are UTF-8.
using AttributeValue = std::variant<std::string, TextRange, Point, Size, Rect, ElementReference, Address,
                                    TextMarker, TextMarkerRange, std::vector<TextMarker>, std::ptrdiff_t>;

enum class AccessibilityError {
    unsupported, ///< the element has no such attribute
    noValue,     ///< it has, but there is nothing to answer now
    timedOut,    ///< the application did not answer in time
    failed,      ///< everything else: the element is gone, the bus is gone, a wrong argument
};
/// A short fixed word for log lines.
std::string_view describe(AccessibilityError error);

/// Attribute names.
namespace attribute {
inline constexpr std::string_view focusedElement = "AXFocusedUIElement";
inline constexpr std::string_view focusedApplication = "AXFocusedApplication";
inline constexpr std::string_view focusedWindow = "AXFocusedWindow";
inline constexpr std::string_view role = "AXRole";
inline constexpr std::string_view parent = "AXParent";
inline constexpr std::string_view value = "AXValue";
inline constexpr std::string_view selectedText = "AXSelectedText";
inline constexpr std::string_view selectedTextRange = "AXSelectedTextRange";
inline constexpr std::string_view selectedTextMarkerRange = "AXSelectedTextMarkerRange";
inline constexpr std::string_view startTextMarker = "AXStartTextMarker";
inline constexpr std::string_view position = "AXPosition";
inline constexpr std::string_view size = "AXSize";
inline constexpr std::string_view url = "AXURL";
/// Ours. Of a window: the web area it shows; no value when it shows none or its pages cannot be read.
inline constexpr std::string_view page = "AXPage";
// Parameterised:
inline constexpr std::string_view stringForRange = "AXStringForRange";
inline constexpr std::string_view boundsForRange = "AXBoundsForRange";
inline constexpr std::string_view boundsForTextMarkerRange = "AXBoundsForTextMarkerRange";
inline constexpr std::string_view stringForTextMarkerRange = "AXStringForTextMarkerRange";
inline constexpr std::string_view indexForTextMarker = "AXIndexForTextMarker";
inline constexpr std::string_view startTextMarkerForTextMarkerRange = "AXStartTextMarkerForTextMarkerRange";
inline constexpr std::string_view leftLineTextMarkerRangeForTextMarker =
    "AXLeftLineTextMarkerRangeForTextMarker";
inline constexpr std::string_view textMarkerRangeForUnorderedTextMarkers =
    "AXTextMarkerRangeForUnorderedTextMarkers";
} // namespace attribute

/// Reads and changes what other applications show. Every call answers within 150 ms; an application that did
/// not is left alone, and answers `timedOut` at once, until it is heard of again or two seconds have passed.
/// Any thread.
class Accessibility {
public:
    template<typename Value>
    using Result = std::expected<Value, AccessibilityError>;

    virtual ~Accessibility() = default;

    /// The element that stands for the whole desktop.
    virtual ElementReference systemWide() = 0;
    /// The element of a process. It need not exist: its attributes then fail.
    virtual ElementReference application(pid_t process) = 0;
    virtual Result<AttributeValue> attributeValue(const ElementReference& element, std::string_view name) = 0;
    virtual Result<AttributeValue> parameterizedValue(const ElementReference& element, std::string_view name,
                                                      const AttributeValue& parameter) = 0;
    virtual Result<void> setAttributeValue(const ElementReference& element, std::string_view name,
                                           const AttributeValue& value) = 0;
    virtual bool isAttributeSettable(const ElementReference& element, std::string_view name) = 0;
    /// The innermost element at a point of the desktop, below `root` (systemWide: any application's).
    virtual Result<ElementReference> elementAtPosition(const ElementReference& root, Point point) = 0;
    /// The same for the life of the desktop.
    virtual const TextMarkerFunctions& textMarkerFunctions() const;
};

} // namespace glyma
