#include "preferences/qt/choice_box.h"

#include <QSignalBlocker>
#include <QWheelEvent>

namespace glyma::qt {

ChoiceBox::ChoiceBox(QWidget* parent)
    : QComboBox(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
    // `activated` comes while arrow keys run through the open list, too; this one only with another choice.
    connect(this, &QComboBox::currentIndexChanged, this,
            [this](int index) { Q_EMIT valueChosen(itemData(index).toString()); });
}

void ChoiceBox::addChoice(const QString& label, const QString& value) {
    const QSignalBlocker blocker(this);
    addItem(label, value);
}

void ChoiceBox::showValue(const QString& value) {
    const QSignalBlocker blocker(this);
    if (findData(value) < 0)
        addItem(value, value);
    setCurrentIndex(findData(value));
}

void ChoiceBox::wheelEvent(QWheelEvent* event) {
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}

} // namespace glyma::qt
