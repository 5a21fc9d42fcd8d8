#pragma once

#include <QRect>
#include <QWidget>

namespace glyma::gallery {

/// A desktop with a text editor on it, for the picker to float over. Covers the screen.
class Backdrop : public QWidget {
public:
    /// \param typed  stands before the caret, in the line being written.
    Backdrop(bool isDark, QString typed);

    /// Logical desktop coordinates.
    QRect caret() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintEditor(QPainter& painter, const QRectF& window) const;
    void paintText(QPainter& painter, const QRectF& page) const;
    QFont textFont() const;

    bool isDark_;
    QString typed_;
};

} // namespace glyma::gallery
