#include "platform/linux/atspi/atspi_accessibility.h"

#include "platform/linux/atspi/page_search.h"
#include "platform/linux/atspi/roles.h"
#include "platform/linux/atspi/session.h"
#include "platform/linux/atspi/text_element.h"

#include <string>
#include <unistd.h>
#include <utility>

namespace glyma::atspi {

namespace {

constexpr Milliseconds deadline{150};
constexpr int descentLimit = 30;
constexpr int climbLimit = 200;

constexpr auto failure(AccessibilityError error) {
    return std::unexpected(error);
}

template<typename Value>
Accessibility::Result<AttributeValue> asAttribute(Accessibility::Result<Value> result) {
    if (!result)
        return std::unexpected(result.error());
    return AttributeValue(std::move(*result));
}

std::string_view roleOf(AtspiAccessible* object, Conversation& ask) {
    const auto role = ask.ask(atspi_accessible_get_role, object).value_or(ATSPI_ROLE_INVALID);
    if (const auto plain = portRole(role, false, false); plain == "AXWebArea")
        return plain; // whatever its states
    const auto states = [](AtspiAccessible* element, GError**) {
        return atspi_accessible_get_state_set(element);
    };
    const Object<AtspiStateSet> set(ask.ask(states, object).value_or(nullptr));
    const auto has = [&](AtspiStateType state) { return set && atspi_state_set_contains(set.get(), state); };
    return portRole(role, has(ATSPI_STATE_EDITABLE), !has(ATSPI_STATE_SINGLE_LINE));
}

Accessibility::Result<AttributeValue> documentAddress(AtspiAccessible* object, Conversation& ask) {
    const auto get = [](AtspiAccessible* element, GError**) {
        return atspi_accessible_get_document_iface(element);
    };
    const Object<AtspiDocument> document(ask.ask(get, object).value_or(nullptr));
    if (!document)
        return failure(AccessibilityError::unsupported);
    // Gecko calls it by the first name, Chromium and WebKitGTK by the second.
    for (std::string name : {"DocURL", "URI"}) {
        const Memory<char> address(
            ask.ask(atspi_document_get_document_attribute_value, document.get(), name.data())
                .value_or(nullptr));
        if (address && *address)
            return Address{address.get()};
    }
    return failure(AccessibilityError::noValue);
}

/// Passes over the boxes that only arrange others: a page nests dozens of them (each <div> is one in Firefox
/// and Chromium), and nobody who climbs is looking for them.
Object<AtspiAccessible> parentOf(AtspiAccessible* object, Conversation& ask) {
    auto element = share(object);
    for (int climbed = 0; climbed < climbLimit; ++climbed) {
        element.reset(ask.ask(atspi_accessible_get_parent, element.get()).value_or(nullptr));
        if (!element)
            return nullptr;
        const auto role = ask.ask(atspi_accessible_get_role, element.get());
        if (!role || role == ATSPI_ROLE_DESKTOP_FRAME)
            return nullptr;
        if (role != ATSPI_ROLE_SECTION && role != ATSPI_ROLE_PANEL && role != ATSPI_ROLE_FILLER)
            break;
    }
    return element;
}

Object<AtspiAccessible> childAtPoint(AtspiAccessible* object, int x, int y, AtspiCoordType type,
                                     Conversation& ask) {
    const auto get = [](AtspiAccessible* element, GError**) {
        return atspi_accessible_get_component_iface(element);
    };
    const Object<AtspiComponent> component(ask.ask(get, object).value_or(nullptr));
    if (!component)
        return nullptr;
    return Object<AtspiAccessible>(
        ask.ask(atspi_component_get_accessible_at_point, component.get(), x, y, type).value_or(nullptr));
}

} // namespace

AtspiAccessibility::AtspiAccessibility(Options options)
    : session_(std::make_shared<Session>(std::move(options))) {}

AtspiAccessibility::~AtspiAccessibility() = default;

ElementReference AtspiAccessibility::systemWide() {
    return std::make_shared<Element>(Element::Kind::desktop);
}

ElementReference AtspiAccessibility::application(pid_t process) {
    return std::make_shared<Element>(Element::Kind::application, process);
}

bool AtspiAccessibility::focusIsPasswordField() const {
    return session_->isPasswordField();
}

void AtspiAccessibility::prepare(pid_t process) {
    if (process > 0 && process != getpid() && !session_->isAbsent())
        session_->worker().post([session = session_.get(), process] { session->prepare(process); });
}

void AtspiAccessibility::find(std::function<void(std::vector<std::string>)> onFound) {
    session_->worker().post([session = session_.get(), onFound = std::move(onFound)] {
        onFound(session->isAbsent() ? std::vector<std::string>() : pageAddresses());
    });
}

BusStatus AtspiAccessibility::status() const {
    return session_->status();
}

/// Runs job(session, element, process, ask) on the worker; the process is that of the element, or the one in
/// front for the element of the desktop.
template<typename Value, typename Job>
Accessibility::Result<Value> AtspiAccessibility::request(const ElementReference& reference, Job job) {
    const auto element = std::dynamic_pointer_cast<const Element>(reference);
    if (!element || session_->isAbsent() || element->process == getpid())
        return failure(AccessibilityError::failed);
    if (session_->isUnresponsive(element->process))
        return failure(AccessibilityError::timedOut);
    const auto answer = session_->worker().call<Result<Value>>(
        deadline,
        [session = session_.get(), element, job](const std::atomic<bool>& abandoned) -> Result<Value> {
            if (session->isAbsent())
                return failure(AccessibilityError::failed);
            const auto process =
                element->kind == Element::Kind::desktop ? session->frontProcess() : element->process;
            if (process == getpid())
                return failure(AccessibilityError::noValue);
            if (session->isUnresponsive(process))
                return failure(AccessibilityError::timedOut);
            Conversation ask(abandoned);
            session->setCurrent(process);
            Result<Value> result = job(*session, *element, process, ask);
            session->setCurrent(0);
            if (!ask.isOver())
                return result;
            session->setUnresponsive(process);
            return failure(AccessibilityError::timedOut);
        });
    if (answer)
        return *answer;
    session_->blameCurrent();
    return failure(AccessibilityError::timedOut);
}

Accessibility::Result<AttributeValue> AtspiAccessibility::attributeValue(const ElementReference& reference,
                                                                         std::string_view name) {
    return request<AttributeValue>(reference,
                                   [name = std::string(name)](Session& session, const Element& element,
                                                              pid_t process, Conversation& ask) {
                                       if (name == attribute::focusedElement) {
                                           auto found = session.tracker().focusedElement(process, ask);
                                           if (ask.hasGivenUp()) // the next question may find it known
                                               session.prepareAgain(process);
                                           return session.wrapped(std::move(found), process);
                                       }
                                       if (element.kind == Element::Kind::accessible)
                                           return elementAttribute(session, element, name, ask);
                                       if (element.kind == Element::Kind::window)
                                           return windowAttribute(session, process, name, ask);
                                       return applicationAttribute(session, element, process, name, ask);
                                   });
}

Accessibility::Result<AttributeValue>
AtspiAccessibility::applicationAttribute(Session& session, const Element& element, pid_t process,
                                         std::string_view name, Conversation& ask) {
    // A window has a place also when its application tells nothing.
    const bool hasWindow = session.windowFrame(process).has_value();
    if (name == attribute::focusedWindow && hasWindow)
        return ElementReference(std::make_shared<Element>(Element::Kind::window, process));
    const auto application = hasWindow ? nullptr : session.tracker().application(process, ask);
    if (!hasWindow && !application)
        return failure(AccessibilityError::noValue);
    if (name == attribute::focusedApplication && element.kind == Element::Kind::desktop)
        return ElementReference(std::make_shared<Element>(Element::Kind::application, process));
    if (name == attribute::focusedWindow)
        return session.wrapped(session.tracker().activeWindow(application.get(), ask), process);
    if (name == attribute::role && element.kind == Element::Kind::application)
        return std::string("AXApplication");
    return failure(AccessibilityError::unsupported);
}

Accessibility::Result<AttributeValue> AtspiAccessibility::windowAttribute(Session& session, pid_t process,
                                                                          std::string_view name,
                                                                          Conversation& ask) {
    if (name == attribute::role)
        return std::string("AXWindow");
    if (name == attribute::page)
        return session.wrapped(session.tracker().page(process, ask), process);
    if (name != attribute::position && name != attribute::size)
        return failure(AccessibilityError::unsupported);
    const auto frame = session.windowFrame(process);
    if (!frame)
        return failure(AccessibilityError::noValue);
    if (name == attribute::position)
        return Point{frame->x, frame->y};
    return Size{frame->width, frame->height};
}

Accessibility::Result<AttributeValue> AtspiAccessibility::elementAttribute(Session& session,
                                                                           const Element& element,
                                                                           std::string_view name,
                                                                           Conversation& ask) {
    if (name == attribute::role)
        return std::string(roleOf(element.object, ask));
    if (name == attribute::parent)
        return session.wrapped(parentOf(element.object, ask), element.process);
    if (name == attribute::url)
        return documentAddress(element.object, ask);

    auto text = session.text(element, ask);
    if (name == attribute::position || name == attribute::size) {
        const auto extents = text.extents();
        if (!extents)
            return failure(extents.error());
        if (name == attribute::position)
            return Point{extents->x, extents->y};
        return Size{extents->width, extents->height};
    }
    if (!text.hasText())
        return failure(AccessibilityError::unsupported);
    if (name == attribute::selectedTextRange)
        return asAttribute(text.selectedRange());
    if (name == attribute::selectedText)
        return asAttribute(text.selectedText());
    if (name == attribute::value)
        return asAttribute(text.value());
    return failure(AccessibilityError::unsupported);
}

Accessibility::Result<AttributeValue>
AtspiAccessibility::parameterizedValue(const ElementReference& reference, std::string_view name,
                                       const AttributeValue& parameter) {
    const auto* range = std::get_if<TextRange>(&parameter);
    const bool wantsBounds = name == attribute::boundsForRange;
    if (!range || (!wantsBounds && name != attribute::stringForRange))
        return failure(AccessibilityError::unsupported);
    return request<AttributeValue>(
        reference,
        [range = *range, wantsBounds](Session& session, const Element& element, pid_t,
                                      Conversation& ask) -> Result<AttributeValue> {
            auto text = session.text(element, ask);
            if (!text.hasText())
                return failure(AccessibilityError::unsupported);
            if (wantsBounds)
                return asAttribute(text.bounds(range));
            return asAttribute(text.string(range));
        });
}

Accessibility::Result<void> AtspiAccessibility::setAttributeValue(const ElementReference& reference,
                                                                  std::string_view name,
                                                                  const AttributeValue& value) {
    return request<void>(reference,
                         [name = std::string(name), value](Session& session, const Element& element, pid_t,
                                                           Conversation& ask) -> Result<void> {
                             auto text = session.text(element, ask);
                             if (!text.hasText())
                                 return failure(AccessibilityError::unsupported);
                             const auto* range = std::get_if<TextRange>(&value);
                             const auto* string = std::get_if<std::string>(&value);
                             if (range && name == attribute::selectedTextRange) {
                                 element.refusedSelection =
                                     true; // also when nobody waits for the outcome any more
                                 const auto selected = text.select(*range);
                                 element.refusedSelection = !selected;
                                 return selected;
                             }
                             if (string && name == attribute::selectedText && !element.refusedSelection)
                                 return text.replaceSelection(*string);
                             if (string && name == attribute::value)
                                 return text.setValue(*string);
                             return failure(AccessibilityError::failed);
                         });
}

bool AtspiAccessibility::isAttributeSettable(const ElementReference& reference, std::string_view name) {
    const auto answer = request<bool>(
        reference,
        [name = std::string(name)](Session& session, const Element& element, pid_t,
                                   Conversation& ask) -> Result<bool> {
            auto text = session.text(element, ask);
            if (!text.hasText())
                return false;
            if (name == attribute::selectedTextRange)
                return true;
            // What can be selected but not edited is offered all the same: the selection is the better half
            // of the work, and when the setting fails the caller pastes over it.
            if (name == attribute::selectedText)
                return (text.toolkit().edits || text.toolkit().selectsOnly) && text.isEditable();
            return name == attribute::value && text.toolkit().edits && text.isEditable();
        });
    return answer.value_or(false);
}

Accessibility::Result<ElementReference> AtspiAccessibility::elementAtPosition(const ElementReference& root,
                                                                              Point point) {
    return request<ElementReference>(
        root,
        [point](Session& session, const Element& element, pid_t process,
                Conversation& ask) -> Result<ElementReference> {
            auto& tracker = session.tracker();
            auto found = share(element.object);
            if (!found)
                if (const auto application = tracker.application(process, ask))
                    found = tracker.activeWindow(application.get(), ask);
            if (!found)
                return failure(AccessibilityError::noValue);
            const bool onScreen = tracker.toolkitOf(found.get(), ask).knowsScreenCoordinates;
            const auto origin = onScreen ? std::optional(Point{}) : session.windowOrigin(process, ask);
            if (!origin)
                return failure(AccessibilityError::noValue);
            const auto type = onScreen ? ATSPI_COORD_TYPE_SCREEN : ATSPI_COORD_TYPE_WINDOW;
            for (int depth = 0; depth < descentLimit; ++depth) {
                auto child = childAtPoint(found.get(), static_cast<int>(point.x - origin->x),
                                          static_cast<int>(point.y - origin->y), type, ask);
                if (!child || child.get() == found.get())
                    break;
                found = std::move(child);
            }
            return session.reference(std::move(found), process);
        });
}

} // namespace glyma::atspi
