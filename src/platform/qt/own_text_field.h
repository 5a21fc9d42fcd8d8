#pragma once

#include "platform/accessibility.h"

#include <functional>

class QLineEdit;

namespace glyma::qt {

/// Answers for the one field of our own windows in which the picker opens, which no bus can be asked about
/// while our main thread waits for the answer; hands everything else on. What the field says it says on the
/// main thread only, `noValue` elsewhere.
class WithOwnTextField : public Accessibility {
public:
    /// \param others     outlives this.
    /// \param isFocused  whether that field, a QLineEdit, has the focus. Any thread.
    WithOwnTextField(Accessibility& others, std::function<bool()> isFocused);

    ElementReference systemWide() override;
    ElementReference application(pid_t process) override;
    Result<AttributeValue> attributeValue(const ElementReference& element, std::string_view name) override;
    Result<AttributeValue> parameterizedValue(const ElementReference& element, std::string_view name,
                                              const AttributeValue& parameter) override;
    Result<void> setAttributeValue(const ElementReference& element, std::string_view name,
                                   const AttributeValue& value) override;
    bool isAttributeSettable(const ElementReference& element, std::string_view name) override;
    Result<ElementReference> elementAtPosition(const ElementReference& root, Point point) override;
    const TextMarkerFunctions& textMarkerFunctions() const override;

private:
    /// Null on other threads and when it has lost the focus.
    QLineEdit* field() const;

    Accessibility& others_;
    std::function<bool()> isFocused_;
    ElementReference own_;
};

} // namespace glyma::qt
