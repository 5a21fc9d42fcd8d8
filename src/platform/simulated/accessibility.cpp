#include "platform/simulated/accessibility.h"

#include "platform/simulated/text_markers.h"

#include <algorithm>

namespace glyma::simulated {

namespace {

using namespace std::chrono_literals;
using Error = std::unexpected<AccessibilityError>;

const Error unsupported{AccessibilityError::unsupported};
const Error noValue{AccessibilityError::noValue};
const Error failed{AccessibilityError::failed};
const Error timedOut{AccessibilityError::timedOut};

constexpr auto deadline = 150ms;
constexpr auto timeLeftAlone = 2s;
constexpr auto timeLeftAloneAtLeast = 100ms;

enum class Kind { desktop, application, window, webArea, field };

Response responseTo(const Manner& manner, std::string_view name) {
    if (name == attribute::selectedTextRange)
        return manner.setSelection;
    if (name == attribute::selectedText)
        return manner.setSelectedText;
    return name == attribute::value ? manner.setValue : Response::lacks;
}

void replaceSelection(TextField& field, const std::string& text, bool selectsIt) {
    const auto start = field.selection().location;
    field.insert(text);
    if (selectsIt)
        field.setSelection({start, field.selection().location - start});
}

} // namespace

struct SimulatedAccessibility::Element : AccessibilityElement {
    Element(Kind itsKind, pid_t itsProcess, std::size_t itsIndex)
        : kind(itsKind)
        , process(itsProcess)
        , index(itsIndex) {}
    Kind kind;
    pid_t process;
    std::size_t index;
};

SimulatedAccessibility::SimulatedAccessibility(World world, VirtualClock& clock)
    : markerFunctions(simulated::markerFunctions())
    , world_(std::move(world))
    , clock_(clock) {}

const SimulatedAccessibility::Element& SimulatedAccessibility::cast(const ElementReference& element) {
    return static_cast<const Element&>(*element);
}

ElementReference SimulatedAccessibility::systemWide() {
    return std::make_shared<Element>(Kind::desktop, 0, 0);
}

ElementReference SimulatedAccessibility::application(pid_t process) {
    return std::make_shared<Element>(Kind::application, process, 0);
}

ElementReference SimulatedAccessibility::fieldOf(const Application& application, std::size_t index) {
    return std::make_shared<Element>(Kind::field, application.identity().process, index);
}

void SimulatedAccessibility::failFromCall(std::size_t number) {
    const std::lock_guard lock(mutex_);
    failsFrom_ = calls_ + number;
}

void SimulatedAccessibility::stopFailing() {
    const std::lock_guard lock(mutex_);
    failsFrom_ = 0;
}

std::size_t SimulatedAccessibility::callCount() const {
    const std::lock_guard lock(mutex_);
    return calls_;
}

Accessibility::Result<Application*> SimulatedAccessibility::ask(const Element& element) {
    {
        const std::lock_guard lock(mutex_);
        ++calls_;
        if (failsFrom_ > 0 && calls_ >= failsFrom_)
            return failed;
    }
    if (element.kind == Kind::desktop)
        return nullptr;
    const auto application = world_.withProcess(element.process);
    if (!application)
        return failed;
    const auto answerTime = application->isHung() ? 1h : application->manner().answerTime;
    {
        const std::lock_guard lock(mutex_);
        const auto isHeardOf = answerTime <= deadline;
        if (const auto found = leftAloneSince_.find(element.process);
            found != leftAloneSince_.end() &&
            clock_.elapsed() < found->second + (isHeardOf ? timeLeftAloneAtLeast : timeLeftAlone))
            return timedOut;
    }
    if (answerTime > 0ms)
        clock_.sleep(std::min<Milliseconds>(answerTime, deadline));
    if (answerTime <= deadline)
        return application;
    const std::lock_guard lock(mutex_);
    leftAloneSince_[element.process] = clock_.elapsed();
    return timedOut;
}

Accessibility::Result<AttributeValue> SimulatedAccessibility::desktopAttribute(std::string_view name) {
    const auto front = world_.front();
    if (!front || !front->manner().isFocusReported)
        return noValue;
    if (name == attribute::focusedElement)
        return fieldOf(*front, front->focusedField());
    if (name == attribute::focusedApplication)
        return application(front->identity().process);
    return unsupported;
}

Accessibility::Result<AttributeValue> SimulatedAccessibility::applicationAttribute(Application& application,
                                                                                   std::string_view name) {
    if (!application.manner().isFocusReported)
        return noValue;
    if (name == attribute::focusedElement)
        return fieldOf(application, application.focusedField());
    if (name == attribute::focusedWindow)
        return std::make_shared<Element>(Kind::window, application.identity().process, 0);
    return unsupported;
}

Accessibility::Result<AttributeValue> SimulatedAccessibility::fieldAttribute(Application& application,
                                                                             const Element& element,
                                                                             std::string_view name) {
    const auto& manner = application.manner();
    if (manner.lackingAttributes.contains(name))
        return unsupported;
    if (name == attribute::role)
        return manner.role;
    if (name == attribute::parent)
        return std::make_shared<Element>(
            manner.webAddress.empty() || manner.fieldsOutsideThePage.contains(element.index) ? Kind::window
                                                                                             : Kind::webArea,
            element.process, 0);
    return application.withField(element.index, [&](const TextField& field) -> Result<AttributeValue> {
        if (name == attribute::selectedTextRange && manner.reportsSelection)
            return field.selection();
        if (name == attribute::selectedText && manner.setSelectedText != Response::lacks)
            return manner.reportsSelectedText ? field.selectedText() : std::string();
        if (name == attribute::value && manner.setValue != Response::lacks)
            return field.text();
        if (name == attribute::position && manner.reportsBounds)
            return Point{field.frame().x, field.frame().y};
        if (name == attribute::size && manner.reportsBounds)
            return Size{field.frame().width, field.frame().height};
        if (name == attribute::selectedTextMarkerRange && manner.answersMarkers)
            return markersOf(field.selection());
        if (name == attribute::startTextMarker && manner.answersMarkers)
            return markerAt(0);
        return unsupported;
    });
}

Accessibility::Result<AttributeValue>
SimulatedAccessibility::attributeValue(const ElementReference& reference, std::string_view name) {
    const auto& element = cast(reference);
    const auto asked = ask(element);
    if (!asked)
        return std::unexpected(asked.error());
    switch (element.kind) {
    case Kind::desktop:
        return desktopAttribute(name);
    case Kind::application:
        return applicationAttribute(**asked, name);
    case Kind::field:
        return fieldAttribute(**asked, element, name);
    case Kind::window:
        if (name == attribute::focusedElement)
            return fieldOf(**asked, (*asked)->focusedField());
        if (name == attribute::role)
            return "AXWindow";
        if (name == attribute::position)
            return (*asked)->windowOrigin();
        if (name == attribute::page && !(*asked)->manner().webAddress.empty())
            return std::make_shared<Element>(Kind::webArea, element.process, 0);
        return name == attribute::parent || name == attribute::page ? Result<AttributeValue>(noValue)
                                                                    : unsupported;
    case Kind::webArea:
        if (name == attribute::role)
            return "AXWebArea";
        if (name == attribute::url)
            return Address{(*asked)->manner().webAddress};
        if (name == attribute::parent)
            return std::make_shared<Element>(Kind::window, element.process, 0);
    }
    return unsupported;
}

Accessibility::Result<AttributeValue>
SimulatedAccessibility::parameterizedValue(const ElementReference& reference, std::string_view name,
                                           const AttributeValue& parameter) {
    const auto& element = cast(reference);
    const auto asked = ask(element);
    if (!asked)
        return std::unexpected(asked.error());
    if (element.kind != Kind::field)
        return unsupported;
    const auto& manner = (*asked)->manner();
    if (manner.lackingAttributes.contains(name))
        return unsupported;
    return (*asked)->withField(element.index, [&](const TextField& field) -> Result<AttributeValue> {
        const auto range = std::get_if<TextRange>(&parameter);
        if (!range)
            return manner.answersMarkers ? askAboutMarkers(field, name, parameter) : unsupported;
        if (range->location < 0 || range->length < 0 || range->location + range->length > field.length())
            return noValue;
        if (name == attribute::stringForRange && (manner.reportsSelection || manner.answersMarkers))
            return field.substring(*range);
        if (name == attribute::boundsForRange && manner.reportsBounds && !manner.answersMarkers)
            return field.bounds(*range);
        return unsupported;
    });
}

Accessibility::Result<void> SimulatedAccessibility::setOnField(Application& application, std::size_t index,
                                                               std::string_view name,
                                                               const AttributeValue& value) {
    const auto response = responseTo(application.manner(), name);
    if (response == Response::lacks)
        return unsupported;
    if (response == Response::refuses)
        return failed;
    if (response == Response::ignores)
        return {};
    if (name == attribute::selectedTextRange) {
        const auto range = std::get_if<TextRange>(&value);
        if (!range)
            return failed;
        const auto select = [&application, index, range = *range] {
            application.withField(index, [&](TextField& field) { field.setSelection(range); });
        };
        if (application.manner().selectionLag > 0ms)
            clock_.schedule(application.manner().selectionLag, select);
        else
            select();
        return {};
    }
    const auto text = std::get_if<std::string>(&value);
    if (!text)
        return failed;
    application.withField(index, [&](TextField& field) {
        if (name == attribute::value)
            field.setText(*text);
        else
            replaceSelection(field, *text, response == Response::replaces);
    });
    return {};
}

Accessibility::Result<void> SimulatedAccessibility::setAttributeValue(const ElementReference& reference,
                                                                      std::string_view name,
                                                                      const AttributeValue& value) {
    const auto& element = cast(reference);
    const auto asked = ask(element);
    if (!asked)
        return std::unexpected(asked.error());
    if (element.kind != Kind::field)
        return unsupported;
    return setOnField(**asked, element.index, name, value);
}

bool SimulatedAccessibility::isAttributeSettable(const ElementReference& reference, std::string_view name) {
    const auto& element = cast(reference);
    const auto asked = ask(element);
    return asked && element.kind == Kind::field && responseTo((*asked)->manner(), name) != Response::lacks;
}

Accessibility::Result<ElementReference>
SimulatedAccessibility::elementAtPosition(const ElementReference& root, Point point) {
    const auto& element = cast(root);
    const auto asked = ask(element);
    if (!asked)
        return std::unexpected(asked.error());
    for (const auto application : world_.all()) {
        const bool isBelowRoot = element.kind == Kind::desktop || application == *asked;
        if (!isBelowRoot || !application->manner().reportsBounds)
            continue;
        const auto focused = application->focusedField();
        if (application->withField(focused,
                                   [&](const TextField& field) { return field.frame().contains(point); }))
            return fieldOf(*application, focused);
    }
    return noValue;
}

} // namespace glyma::simulated
