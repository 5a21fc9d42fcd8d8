#pragma once

#include <QPushButton>

namespace glyma::qt {

/// A button without a frame of its own, for cards: a soft ground in the text's colour, stronger under the
/// pointer. With a menu it opens that.
class SoftButton : public QPushButton {
public:
    enum class Ground { always, underPointer };

    explicit SoftButton(const QString& text, Ground ground = Ground::always, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    Ground ground_;
};

} // namespace glyma::qt
