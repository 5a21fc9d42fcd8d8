#include "platform/qt/own_text_field.h"

#include "platform/qt/qt_screens.h"

#include <QApplication>
#include <QLineEdit>
#include <QScreen>
#include <QThread>

#include <algorithm>

namespace glyma::qt {

namespace {

class OwnElement : public AccessibilityElement {};

constexpr auto noValue = std::unexpected(AccessibilityError::noValue);
constexpr auto unsupported = std::unexpected(AccessibilityError::unsupported);

std::string utf8(const QString& text) {
    return text.toStdString();
}

TextRange selectionOf(const QLineEdit& field) {
    if (field.hasSelectedText())
        return {field.selectionStart(), field.selectionLength()};
    return {field.cursorPosition(), 0};
}

Rect onDesktop(const QLineEdit& field, const QRect& place) {
    const auto* screen = field.screen();
    return deviceRect(QRect(field.mapToGlobal(place.topLeft()), place.size()), screen->geometry().topLeft(),
                      screen->devicePixelRatio());
}

/// The caret, whatever the range: the only place in a text that the widget tells.
Rect caretOf(const QLineEdit& field) {
    return onDesktop(field, field.inputMethodQuery(Qt::ImCursorRectangle).toRect());
}

bool isSelection(std::string_view name) {
    return name == attribute::selectedText || name == attribute::selectedTextRange;
}

} // namespace

WithOwnTextField::WithOwnTextField(Accessibility& others, std::function<bool()> isFocused)
    : others_(others)
    , isFocused_(std::move(isFocused))
    , own_(std::make_shared<OwnElement>()) {}

QLineEdit* WithOwnTextField::field() const {
    const bool isMain = QThread::currentThread() == qApp->thread();
    return isMain && isFocused_() ? qobject_cast<QLineEdit*>(QApplication::focusWidget()) : nullptr;
}

ElementReference WithOwnTextField::systemWide() {
    return others_.systemWide();
}

ElementReference WithOwnTextField::application(pid_t process) {
    return others_.application(process);
}

const TextMarkerFunctions& WithOwnTextField::textMarkerFunctions() const {
    return others_.textMarkerFunctions();
}

Accessibility::Result<AttributeValue> WithOwnTextField::attributeValue(const ElementReference& element,
                                                                       std::string_view name) {
    if (name == attribute::focusedElement && isFocused_())
        return own_;
    if (element != own_)
        return others_.attributeValue(element, name);
    if (name == attribute::role)
        return std::string("AXTextField");
    const auto* field = this->field();
    if (field == nullptr)
        return noValue;
    const auto frame = onDesktop(*field, field->rect());
    if (name == attribute::value)
        return utf8(field->text());
    if (name == attribute::selectedTextRange)
        return selectionOf(*field);
    if (name == attribute::selectedText)
        return utf8(field->selectedText());
    if (name == attribute::position)
        return Point{frame.x, frame.y};
    if (name == attribute::size)
        return Size{frame.width, frame.height};
    return unsupported;
}

Accessibility::Result<AttributeValue> WithOwnTextField::parameterizedValue(const ElementReference& element,
                                                                           std::string_view name,
                                                                           const AttributeValue& parameter) {
    if (element != own_)
        return others_.parameterizedValue(element, name, parameter);
    const auto* field = this->field();
    const auto* range = std::get_if<TextRange>(&parameter);
    if (field == nullptr || range == nullptr)
        return noValue;
    if (name == attribute::stringForRange)
        return utf8(field->text().mid(range->location, range->length));
    if (name == attribute::boundsForRange)
        return caretOf(*field);
    return unsupported;
}

Accessibility::Result<void> WithOwnTextField::setAttributeValue(const ElementReference& element,
                                                                std::string_view name,
                                                                const AttributeValue& value) {
    if (element != own_)
        return others_.setAttributeValue(element, name, value);
    auto* field = this->field();
    if (field == nullptr)
        return noValue;
    const auto* range = std::get_if<TextRange>(&value);
    const auto* text = std::get_if<std::string>(&value);
    if (name == attribute::selectedTextRange && range != nullptr)
        field->setSelection(static_cast<int>(range->location), static_cast<int>(range->length));
    else if (name == attribute::selectedText && text != nullptr)
        field->insert(QString::fromStdString(*text));
    else
        return unsupported;
    return {};
}

bool WithOwnTextField::isAttributeSettable(const ElementReference& element, std::string_view name) {
    return element == own_ ? isSelection(name) : others_.isAttributeSettable(element, name);
}

Accessibility::Result<ElementReference> WithOwnTextField::elementAtPosition(const ElementReference& root,
                                                                            Point point) {
    return others_.elementAtPosition(root, point);
}

} // namespace glyma::qt
