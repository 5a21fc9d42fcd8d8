#pragma once

#include <QCheckBox>

namespace glyma::qt {

/// A check box drawn as a switch. Everything but its looks is the check box's: space, screen readers,
/// signals.
class ToggleSwitch : public QCheckBox {
public:
    explicit ToggleSwitch(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool hitButton(const QPoint& place) const override { return rect().contains(place); }
    void paintEvent(QPaintEvent* event) override;
};

} // namespace glyma::qt
