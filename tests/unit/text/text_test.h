#pragma once

#include "platform/simulated/desktop.h"
#include "preferences/debug_config.h"
#include "preferences/log.h"
#include "preferences/user_preferences.h"
#include "text/text_inserter.h"
#include "unicode/text.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace glyma {

using namespace std::chrono_literals;

/// The accessibility of the simulated desktop, except for what a test answers itself.
class InterceptedAccessibility : public Accessibility {
public:
    explicit InterceptedAccessibility(Accessibility& behind)
        : behind_(behind) {}

    /// Absent lets the question through.
    std::function<std::optional<Result<AttributeValue>>(const ElementReference&, std::string_view)> onRead;
    std::function<std::optional<Result<void>>(std::string_view, const AttributeValue&)> onSet;
    std::function<std::optional<Result<ElementReference>>(const ElementReference&)> onHitTest;
    bool tellsTextOfRanges = true;

    ElementReference systemWide() override { return desktop; }
    ElementReference application(pid_t process) override { return behind_.application(process); }
    Result<AttributeValue> attributeValue(const ElementReference& element, std::string_view name) override {
        if (onRead)
            if (auto answer = onRead(element, name))
                return *answer;
        return behind_.attributeValue(element, name);
    }
    Result<AttributeValue> parameterizedValue(const ElementReference& element, std::string_view name,
                                              const AttributeValue& parameter) override {
        if (!tellsTextOfRanges && name == attribute::stringForRange)
            return std::unexpected(AccessibilityError::unsupported);
        return behind_.parameterizedValue(element, name, parameter);
    }
    Result<void> setAttributeValue(const ElementReference& element, std::string_view name,
                                   const AttributeValue& value) override {
        if (onSet)
            if (auto answer = onSet(name, value))
                return *answer;
        return behind_.setAttributeValue(element, name, value);
    }
    bool isAttributeSettable(const ElementReference& element, std::string_view name) override {
        return behind_.isAttributeSettable(element, name);
    }
    Result<ElementReference> elementAtPosition(const ElementReference& root, Point point) override {
        if (onHitTest)
            if (auto answer = onHitTest(root))
                return *answer;
        return behind_.elementAtPosition(root, point);
    }

    const TextMarkerFunctions& textMarkerFunctions() const override { return behind_.textMarkerFunctions(); }

private:
    Accessibility& behind_;

public:
    const ElementReference desktop = behind_.systemWide();
};

inline simulated::Manner mannerWith(const std::function<void(simulated::Manner&)>& change) {
    simulated::Manner manner;
    change(manner);
    return manner;
}

/// A text inserter on a desktop in memory.
class TextTest : public testing::Test {
protected:
    TextTest() {
        config.setDebugLogsEnabled(true);
        makeInserter();
    }

    void makeInserter() {
        inserter = std::make_unique<TextInserter>(
            TextServices{desktop.clock, accessibility, desktop.clipboard, desktop, desktop, desktop.screens,
                         desktop.bell, preferences, log, &desktop.primarySelection});
    }

    /// \param content  with "|" at the caret.
    simulated::Application& open(const std::string& content, const simulated::Manner& manner = {},
                                 const std::string& identifier = "org.example.Editor") {
        auto& application = desktop.open(identifier, manner);
        const auto caret = content.find('|');
        application.setText(content.substr(0, caret) + content.substr(caret + 1));
        const auto location = static_cast<std::ptrdiff_t>(unicode::utf16Length(content.substr(0, caret)));
        application.setSelection({location, 0});
        return application;
    }

    std::vector<std::string> loggedLines() const { return desktop.log.lines(); }

    simulated::Desktop desktop;
    InterceptedAccessibility accessibility{desktop.accessibility};
    DebugConfig config{desktop.settings};
    Log log{desktop.log, config};
    UserPreferences preferences{desktop.settings, desktop.loginItem, desktop.installedApplications, log};
    std::unique_ptr<TextInserter> inserter;
};

} // namespace glyma
