#pragma once

#include "monitor/shared_flags.h"

#include <QLineEdit>

namespace glyma::qt {

/// The one field of our own windows in which the picker opens, so that the user can try it.
class TestField : public QLineEdit {
    Q_OBJECT

public:
    /// \param flags  outlives the field.
    explicit TestField(SharedFlags& flags, QWidget* parent = nullptr);
    ~TestField() override;

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    SharedFlags& flags_;
};

} // namespace glyma::qt
