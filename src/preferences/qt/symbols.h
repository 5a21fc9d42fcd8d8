#pragma once

#include <QWidget>

class QPainter;

namespace glyma::qt {

/// The drawings of the preferences: one colour, made of strokes, sharp at any scale.
enum class Symbol {
    general,
    exclusions,
    library,
    replacements,
    permissions,
    advanced,
    debug,
    granted,
    notGranted,
    warning,
};

/// \param place  logical coordinates; the symbol is drawn in the largest square in its middle.
void drawSymbol(QPainter& painter, Symbol symbol, const QRectF& place, const QColor& color);

/// A symbol as an element of a form. Screen readers skip it: what it says stands beside it.
class SymbolView : public QWidget {
public:
    /// \param size  of its square, logical pixels.
    SymbolView(Symbol symbol, int size, QWidget* parent = nullptr);

    void setSymbol(Symbol symbol);
    QSize sizeHint() const override { return {size_, size_}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor color() const;

    Symbol symbol_;
    const int size_;
};

} // namespace glyma::qt
