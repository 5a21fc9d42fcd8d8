#pragma once

#include "picker/qt/appearance.h"
#include "picker/qt/shadow.h"
#include "picker/qt/x11_window.h"

#include <QWidget>

class QPainter;

namespace glyma::qt {

/// A rounded panel that floats above everything and never takes the focus: an override-redirect window whose
/// clicks the window manager does not see. Where a compositor runs it is translucent with a soft shadow, and
/// the native window keeps its size while the panel in it grows and shrinks, so that every change is one
/// paint; elsewhere the window is opaque, of the panel's size and cut to its shape. Main thread.
class FloatingSurface : public QWidget {
public:
    /// Whether it can be given the keyboard. No surface takes it when it is shown or clicked.
    enum class Keyboard { never, onRequest };

    FloatingSurface(const Appearance& appearance, const CompositorWatch& compositor, double radius,
                    Keyboard keyboard = Keyboard::never);

    /// \param panel    where the panel is, logical desktop coordinates.
    /// \param reserve  the largest it may become while shown; contains `panel`.
    void setPanel(const QRect& panel, const QRect& reserve);
    /// The panel, relative to the window.
    QRect panel() const;
    /// Applies the compositor's coming or going, or another appearance.
    void refreshSurface();

protected:
    /// \param painter  with its origin at the panel's top left corner.
    virtual void paintPanel(QPainter& painter) = 0;
    const Theme& theme() const { return appearance_.theme(); }

    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void paintBackground(QPainter& painter);
    void updateShape();

    const Appearance& appearance_;
    const CompositorWatch& compositor_;
    const double radius_;
    QRect panel_;
    QRect reserve_;
    WindowShape shape_;
    Shadow shadow_;
};

} // namespace glyma::qt
