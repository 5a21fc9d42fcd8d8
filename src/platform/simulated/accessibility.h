#pragma once

#include "platform/accessibility.h"
#include "platform/simulated/application.h"
#include "platform/simulated/virtual_clock.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace glyma::simulated {

/// Answers for the applications of the desktop, each in its manner. Elements: the desktop, an application,
/// its window, the web area in it when it has one, its text fields.
class SimulatedAccessibility : public Accessibility {
public:
    /// What the elements are found in.
    struct World {
        std::function<Application*()> front;
        std::function<Application*(pid_t)> withProcess;
        std::function<std::vector<Application*>()> all;
    };
    SimulatedAccessibility(World world, VirtualClock& clock);

    ElementReference systemWide() override;
    ElementReference application(pid_t process) override;
    Result<AttributeValue> attributeValue(const ElementReference& element, std::string_view name) override;
    Result<AttributeValue> parameterizedValue(const ElementReference& element, std::string_view name,
                                              const AttributeValue& parameter) override;
    Result<void> setAttributeValue(const ElementReference& element, std::string_view name,
                                   const AttributeValue& value) override;
    bool isAttributeSettable(const ElementReference& element, std::string_view name) override;
    Result<ElementReference> elementAtPosition(const ElementReference& root, Point point) override;
    const TextMarkerFunctions& textMarkerFunctions() const override { return markerFunctions; }

    /// Empty one to have a desktop without it.
    TextMarkerFunctions markerFunctions;

    /// Element of one of an application's fields, as if it had been asked for.
    static ElementReference fieldOf(const Application& application, std::size_t index);
    /// From now on the Nth call (1 is the next one) and all after it fail.
    void failFromCall(std::size_t number);
    void stopFailing();
    std::size_t callCount() const;

private:
    struct Element;
    static const Element& cast(const ElementReference& element);
    /// Counts the call, lets the time of the answer pass; an error when there will be none.
    Result<Application*> ask(const Element& element);

    Result<AttributeValue> desktopAttribute(std::string_view name);
    Result<AttributeValue> applicationAttribute(Application& application, std::string_view name);
    Result<AttributeValue> fieldAttribute(Application& application, const Element& element,
                                          std::string_view name);
    Result<void> setOnField(Application& application, std::size_t index, std::string_view name,
                            const AttributeValue& value);

    World world_;
    VirtualClock& clock_;
    mutable std::mutex mutex_;
    std::size_t calls_ = 0;
    std::size_t failsFrom_ = 0;
    std::map<pid_t, VirtualClock::Duration> leftAloneSince_;
};

} // namespace glyma::simulated
