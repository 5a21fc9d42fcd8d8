// Asks the accessibility adapter what a test tells it to: one JSON array [command, arguments...] a line on
// standard input, one JSON object a line on standard output, with the time that the call took.

#include "platform/linux/atspi/atspi_accessibility.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <cstdio>
#include <iostream>
#include <string>

namespace {

using nlohmann::json;
using namespace glyma;

json describeValue(const AttributeValue& value) {
    return std::visit(
        [](const auto& content) -> json {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_same_v<Content, std::string> || std::is_same_v<Content, std::ptrdiff_t>)
                return content;
            else if constexpr (std::is_same_v<Content, TextRange>)
                return {content.location, content.length};
            else if constexpr (std::is_same_v<Content, Point>)
                return {content.x, content.y};
            else if constexpr (std::is_same_v<Content, Size>)
                return {content.width, content.height};
            else if constexpr (std::is_same_v<Content, Rect>)
                return {content.x, content.y, content.width, content.height};
            else if constexpr (std::is_same_v<Content, Address>)
                return content.absoluteString;
            else
                return "element";
        },
        value);
}

class Probe {
public:
    Probe()
        : accessibility_({.enableBus = true,
                          .warn = [](const auto& message) { std::cerr << message.english() << '\n'; }}) {}

    json answer(const json& command) {
        const auto name = command.at(0).get<std::string>();
        if (name == "status") {
            const auto status = accessibility_.status();
            return {{"value", {status.hasSessionBus, status.answers, status.isEnabled}},
                    {"error", status.error}};
        }
        if (name == "password")
            return {{"value", accessibility_.focusIsPasswordField()}};
        if (name == "focus")
            return focus(accessibility_.systemWide(), attribute::focusedElement);
        if (name == "focusOf")
            return focus(accessibility_.application(command.at(1).get<pid_t>()), attribute::focusedElement);
        if (name == "window")
            return focusedWindow();
        if (name == "page")
            return focus(element_, attribute::page);
        if (name == "parent")
            return focus(element_, attribute::parent);
        if (name == "at")
            return hit({command.at(1).get<double>(), command.at(2).get<double>()});
        if (name == "get")
            return result(accessibility_.attributeValue(element_, command.at(1).get<std::string>()));
        if (name == "ask")
            return result(accessibility_.parameterizedValue(
                element_, command.at(1).get<std::string>(),
                TextRange{command.at(2).get<std::ptrdiff_t>(), command.at(3).get<std::ptrdiff_t>()}));
        if (name == "select")
            return result(accessibility_.setAttributeValue(
                element_, attribute::selectedTextRange,
                TextRange{command.at(1).get<std::ptrdiff_t>(), command.at(2).get<std::ptrdiff_t>()}));
        if (name == "set")
            return result(accessibility_.setAttributeValue(element_, command.at(1).get<std::string>(),
                                                           command.at(2).get<std::string>()));
        if (name == "settable")
            return {
                {"value", accessibility_.isAttributeSettable(element_, command.at(1).get<std::string>())}};
        return {{"error", "unknown command"}};
    }

private:
    json focus(const ElementReference& of, std::string_view name) {
        const auto found = accessibility_.attributeValue(of, name);
        if (found)
            element_ = std::get<ElementReference>(*found);
        return result(found);
    }

    json focusedWindow() {
        const auto application = focus(accessibility_.systemWide(), attribute::focusedApplication);
        return application.contains("error") ? application : focus(element_, attribute::focusedWindow);
    }

    json hit(Point point) {
        const auto found = accessibility_.elementAtPosition(accessibility_.systemWide(), point);
        if (found)
            element_ = *found;
        return found ? json{{"value", "element"}} : json{{"error", describe(found.error())}};
    }

    static json result(const Accessibility::Result<AttributeValue>& found) {
        return found ? json{{"value", describeValue(*found)}} : json{{"error", describe(found.error())}};
    }
    static json result(const Accessibility::Result<void>& done) {
        return done ? json{{"value", true}} : json{{"error", describe(done.error())}};
    }

    atspi::AtspiAccessibility accessibility_;
    ElementReference element_;
};

} // namespace

int main() {
    Probe probe;
    for (std::string line; std::getline(std::cin, line);) {
        const auto start = std::chrono::steady_clock::now();
        auto answer = probe.answer(json::parse(line));
        answer["ms"] =
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
        std::cout << answer.dump() << std::endl;
    }
    return std::cout ? 0 : 1;
}
