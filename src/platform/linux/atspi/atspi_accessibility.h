#pragma once

#include "platform/accessibility.h"
#include "platform/linux/atspi/bus_status.h"
#include "platform/message.h"
#include "platform/open_pages.h"
#include "platform/scheduler.h"

#include <functional>
#include <memory>
#include <string_view>

namespace glyma::atspi {

class Conversation;

/// Text elements of the applications on the accessibility bus. Any thread may ask; one thread of its own
/// talks to the bus. Without a bus everything answers `failed` at once.
class AtspiAccessibility : public Accessibility, public OpenPages {
public:
    struct Options {
        /// Switches the bus on for the session when it is off.
        bool enableBus = true;
        /// Told, on a thread of ours, that there is no bus, or none any more, and why: no full stop.
        std::function<void(const Message&)> warn;
        /// Told, on that thread, that another element has the focus now. Must not wait.
        std::function<void()> focusMoved = {};
    };

    /// Returns at once; the bus is connected on the way.
    explicit AtspiAccessibility(Options options);
    ~AtspiAccessibility() override;

    ElementReference systemWide() override;
    ElementReference application(pid_t process) override;
    Result<AttributeValue> attributeValue(const ElementReference& element, std::string_view name) override;
    Result<AttributeValue> parameterizedValue(const ElementReference& element, std::string_view name,
                                              const AttributeValue& parameter) override;
    Result<void> setAttributeValue(const ElementReference& element, std::string_view name,
                                   const AttributeValue& value) override;
    bool isAttributeSettable(const ElementReference& element, std::string_view name) override;
    Result<ElementReference> elementAtPosition(const ElementReference& root, Point point) override;

    void find(std::function<void(std::vector<std::string> addresses)> onFound) override;

    /// Whether the element that has the focus hides what is typed. Never waits.
    bool focusIsPasswordField() const;
    /// Looks for the focus of an application that has come to the front, so that the first question finds it
    /// known: a toolkit that tells nothing when it starts costs up to 100 ms. Returns at once.
    void prepare(pid_t process);
    /// What was found at the start, for those who ask why nothing works. Waits until that is known, at most
    /// two seconds.
    BusStatus status() const;

private:
    class Session;
    class Element;
    template<typename Value, typename Job>
    Result<Value> request(const ElementReference& element, Job job);
    // Worker thread
    static Result<AttributeValue> applicationAttribute(Session& session, const Element& element,
                                                       pid_t process, std::string_view name,
                                                       Conversation& ask);
    static Result<AttributeValue> windowAttribute(Session& session, pid_t process, std::string_view name,
                                                  Conversation& ask);
    static Result<AttributeValue> elementAttribute(Session& session, const Element& element,
                                                   std::string_view name, Conversation& ask);

    std::shared_ptr<Session> session_;
};

} // namespace glyma::atspi
