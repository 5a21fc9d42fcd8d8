#pragma once

#include <QComboBox>

namespace glyma::qt {

/// A drop-down list of labels, each standing for a stored value. The wheel scrolls the page under it unless
/// it has the focus.
class ChoiceBox : public QComboBox {
    Q_OBJECT

public:
    explicit ChoiceBox(QWidget* parent = nullptr);

    void addChoice(const QString& label, const QString& value);
    /// Shows the choice of the value, or the value itself where none stands for it. Does not emit.
    void showValue(const QString& value);

Q_SIGNALS:
    /// The user chose.
    void valueChosen(const QString& value);

protected:
    void wheelEvent(QWheelEvent* event) override;
};

} // namespace glyma::qt
