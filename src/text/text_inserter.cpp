#include "text/text_inserter.h"

#include "text/page_address.h"
#include "text/text_before_cursor.h"

#include <algorithm>
#include <utility>

namespace glyma {

namespace {

constexpr int hitTestDepth = 15;
constexpr int webAreaDepth = 20;
/// The picker is put under a rectangle of this height when only the element's place is known.
constexpr double assumedLineHeight = 20;
constexpr double assumedInset = 4;

template<typename Value>
std::optional<Value> valueAs(const Accessibility::Result<AttributeValue>& result) {
    if (!result)
        return std::nullopt;
    const auto* value = std::get_if<Value>(&*result);
    return value ? std::optional(*value) : std::nullopt;
}

} // namespace

TextInserter::TextInserter(TextServices services)
    : services_(services)
    , clipboardLoan_(services.clipboard, services.scheduler)
    , jobs_(services.scheduler) {
    if (services_.primarySelection)
        primaryLoan_.emplace(*services_.primarySelection, services_.scheduler);
}

TextInserter::~TextInserter() = default;

void TextInserter::setSourceAppPID(pid_t process) {
    const std::scoped_lock lock(mutex_);
    sourceAppPID_ = process;
}

pid_t TextInserter::sourceAppPID() const {
    const std::scoped_lock lock(mutex_);
    return sourceAppPID_;
}

void TextInserter::forgetSourceElement() {
    const std::scoped_lock lock(mutex_);
    cachedSourceElement_.reset();
}

ElementReference TextInserter::cachedSourceElement() const {
    const std::scoped_lock lock(mutex_);
    return cachedSourceElement_;
}

bool TextInserter::isSourceFocused() const {
    const std::scoped_lock lock(mutex_);
    return found_ == Found::asFocus;
}

void TextInserter::cache(ElementReference element, std::string_view logMessage, Found found) {
    {
        const std::scoped_lock lock(mutex_);
        cachedSourceElement_ = std::move(element);
        found_ = found;
    }
    if (!logMessage.empty())
        services_.log.debug("{}", logMessage);
}

Accessibility::Result<ElementReference> TextInserter::elementAttribute(const ElementReference& element,
                                                                       std::string_view name) const {
    const auto answer = services_.accessibility.attributeValue(element, name);
    if (!answer)
        return std::unexpected(answer.error());
    const auto* found = std::get_if<ElementReference>(&*answer);
    if (!found || !*found)
        return std::unexpected(AccessibilityError::noValue);
    return *found;
}

void TextInserter::cacheSourceFocusedElement() {
    auto& log = services_.log;
    const auto systemWide = services_.accessibility.systemWide();
    if (const auto element = elementAttribute(systemWide, attribute::focusedElement))
        return cache(*element, "Cached source element (system-wide)");

    auto application = elementAttribute(systemWide, attribute::focusedApplication);
    if (!application) {
        const auto process = sourceAppPID();
        if (process == 0)
            return log.debug("cacheSourceFocusedElement: no app available (no PID)");
        log.debug("kAXFocusedApplicationAttribute failed, using PID {}", process);
        application = services_.accessibility.application(process);
    }
    if (const auto element = elementAttribute(*application, attribute::focusedElement))
        return cache(*element, "Cached source element (app → focused)");

    if (const auto window = elementAttribute(*application, attribute::focusedWindow); !window)
        log.debug("kAXFocusedWindowAttribute failed");
    else if (const auto element = elementAttribute(*window, attribute::focusedElement))
        return cache(*element, "Cached source element (window → focused)");
    else
        log.debug("Focused window found but its kAXFocusedUIElement failed");

    auto hit = hitTestElement(*application);
    if (!hit)
        hit = hitTestElement(systemWide);
    if (hit)
        cache(std::move(hit), {}, Found::atPointer);
    else
        log.debug("cacheSourceFocusedElement: all approaches failed");
}

void TextInserter::recacheSourceFromApp() {
    const auto process = sourceAppPID();
    if (process == 0)
        return services_.log.debug("recacheSourceFromApp: no PID");
    const auto application = services_.accessibility.application(process);
    if (const auto element = elementAttribute(application, attribute::focusedElement))
        return cache(*element, "Re-cached source element (app → focused)");
    if (const auto window = elementAttribute(application, attribute::focusedWindow))
        if (const auto element = elementAttribute(*window, attribute::focusedElement))
            return cache(*element, "Re-cached source element (window → focused)");
    if (auto hit = hitTestElement(application))
        cache(std::move(hit), {}, Found::atPointer);
    else
        services_.log.debug("recacheSourceFromApp: all approaches failed");
}

/// The text element under the pointer, the best substitute for the caret when no focus query answers.
ElementReference TextInserter::hitTestElement(const ElementReference& root) const {
    auto& log = services_.log;
    const auto hit = services_.accessibility.elementAtPosition(root, services_.screens.pointerLocation());
    if (!hit || !*hit) {
        log.debug("hit-test failed ({})", describe(hit ? AccessibilityError::noValue : hit.error()));
        return nullptr;
    }
    auto element = *hit;
    for (int examined = 0; examined < hitTestDepth; ++examined) {
        const auto role =
            valueAs<std::string>(services_.accessibility.attributeValue(element, attribute::role));
        if (role == "AXTextArea" || role == "AXTextField") {
            log.debug("Cached source element (hit-test → {})", *role);
            return element;
        }
        const auto parent = elementAttribute(element, attribute::parent);
        if (!parent)
            break;
        element = *parent;
    }
    log.debug("Cached source element (hit-test, raw element)");
    return *hit;
}

ElementReference TextInserter::focusedElement() const {
    auto& accessibility = services_.accessibility;
    const auto focused = elementAttribute(accessibility.systemWide(), attribute::focusedElement);
    if (focused)
        return *focused;
    if (const auto process = sourceAppPID(); process != 0) {
        services_.log.debug("System-wide failed ({}), trying source app PID {}", describe(focused.error()),
                            process);
        const auto inSource = elementAttribute(accessibility.application(process), attribute::focusedElement);
        if (inSource)
            return *inSource;
        services_.log.debug("Source app focused element also failed ({})", describe(inSource.error()));
    }
    auto cached = cachedSourceElement();
    if (cached)
        services_.log.debug("Using cached source element");
    return cached;
}

bool TextInserter::focusedElementReportsSelection() const {
    const auto element = focusedElement();
    return element &&
           valueAs<TextRange>(services_.accessibility.attributeValue(element, attribute::selectedTextRange));
}

std::optional<Rect> TextInserter::boundsForParameter(const ElementReference& element, std::string_view name,
                                                     const AttributeValue& parameter) const {
    auto bounds = valueAs<Rect>(services_.accessibility.parameterizedValue(element, name, parameter));
    if (!bounds || bounds->height <= 0)
        return std::nullopt;
    bounds->width = std::max(bounds->width, 1.0);
    return bounds;
}

std::optional<Rect> TextInserter::caretBounds() const {
    auto& accessibility = services_.accessibility;
    const auto element = focusedElement();
    if (!element)
        return std::nullopt;

    const auto range =
        valueAs<TextRange>(accessibility.attributeValue(element, attribute::selectedTextRange));
    if (range && range->location >= 1)
        if (const auto bounds =
                boundsForParameter(element, attribute::boundsForRange, TextRange{range->location - 1, 1}))
            return bounds;

    const auto markers =
        valueAs<TextMarkerRange>(accessibility.attributeValue(element, attribute::selectedTextMarkerRange));
    if (markers)
        if (const auto bounds = boundsForParameter(element, attribute::boundsForTextMarkerRange, *markers))
            return bounds;

    const auto position = valueAs<Point>(accessibility.attributeValue(element, attribute::position));
    const auto size = valueAs<Size>(accessibility.attributeValue(element, attribute::size));
    if (position && size && size->height > 0)
        return Rect{position->x + assumedInset, position->y + assumedInset, 1, assumedLineHeight};
    return std::nullopt;
}

std::optional<std::string> TextInserter::selectedText() const {
    auto& accessibility = services_.accessibility;
    const auto element = focusedElement();
    if (!element) {
        services_.log.debug("selectedText: focused element not found");
        return std::nullopt;
    }
    auto text = valueAs<std::string>(accessibility.attributeValue(element, attribute::selectedText));
    if (text && !text->empty())
        return text;
    const auto markers =
        valueAs<TextMarkerRange>(accessibility.attributeValue(element, attribute::selectedTextMarkerRange));
    if (!markers)
        return std::nullopt;
    text = valueAs<std::string>(
        accessibility.parameterizedValue(element, attribute::stringForTextMarkerRange, *markers));
    return text && !text->empty() ? text : std::nullopt;
}

std::optional<std::string> TextInserter::textBeforeCursor() const {
    const auto element = focusedElement();
    if (!element) {
        services_.log.debug("textBeforeCursor: focused element not found");
        return std::nullopt;
    }
    return TextBeforeCursor(services_.accessibility, services_.log, element, pollTickCount_).read();
}

FocusedPage TextInserter::focusedPage() const {
    auto& accessibility = services_.accessibility;
    const auto source = cachedSourceElement();
    auto element = Accessibility::Result<ElementReference>(source);
    for (int examined = 0; element && *element && examined < webAreaDepth; ++examined) {
        const auto role = accessibility.attributeValue(*element, attribute::role);
        if (!role && role.error() == AccessibilityError::timedOut)
            return {FocusedPage::Place::unanswered, {}};
        if (valueAs<std::string>(role) == "AXWebArea") {
            const auto url = accessibility.attributeValue(*element, attribute::url);
            if (!url && url.error() == AccessibilityError::timedOut)
                return {FocusedPage::Place::unanswered, {}};
            const auto address = valueAs<Address>(url);
            return {FocusedPage::Place::inside,
                    pageHostOf(address ? address->absoluteString : valueAs<std::string>(url).value_or(""))};
        }
        element = elementAttribute(*element, attribute::parent);
    }
    if (!element && element.error() == AccessibilityError::timedOut)
        return {FocusedPage::Place::unanswered, {}};

    auto page = elementAttribute(accessibility.systemWide(), attribute::focusedApplication);
    for (const auto name : {attribute::focusedWindow, attribute::page})
        if (page)
            page = elementAttribute(*page, name);
    if (!page && page.error() != AccessibilityError::timedOut)
        return {FocusedPage::Place::unreadable, {}};
    // What is under the pointer need not have the focus.
    const bool isKnown = page && source && isSourceFocused();
    return {isKnown ? FocusedPage::Place::outside : FocusedPage::Place::unanswered, {}};
}

} // namespace glyma
