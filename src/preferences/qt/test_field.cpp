#include "preferences/qt/test_field.h"

namespace glyma::qt {

TestField::TestField(SharedFlags& flags, QWidget* parent)
    : QLineEdit(parent)
    , flags_(flags) {}

TestField::~TestField() {
    flags_.isTestFieldFocused = false;
}

void TestField::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    flags_.isTestFieldFocused = true;
}

void TestField::focusOutEvent(QFocusEvent* event) {
    flags_.isTestFieldFocused = false;
    QLineEdit::focusOutEvent(event);
}

} // namespace glyma::qt
