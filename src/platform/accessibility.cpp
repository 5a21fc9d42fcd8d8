#include "platform/accessibility.h"

namespace glyma {

std::string_view describe(AccessibilityError error) {
    switch (error) {
    case AccessibilityError::unsupported:
        return "unsupported";
    case AccessibilityError::noValue:
        return "no value";
    case AccessibilityError::timedOut:
        return "timed out";
    case AccessibilityError::failed:
        break;
    }
    return "failed";
}

const TextMarkerFunctions& Accessibility::textMarkerFunctions() const {
    static const TextMarkerFunctions none;
    return none;
}

} // namespace glyma
