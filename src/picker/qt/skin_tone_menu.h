#pragma once

#include "picker/qt/floating_surface.h"
#include "picker/qt/glyphs.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace glyma::qt {

/// The list of the six skin tones, opened from the picker's header. Unlike an ordinary menu it leaves the
/// keyboard with the application being typed in; while it is open it holds the pointer, so that a click
/// anywhere else closes it. Main thread.
class SkinToneMenu : public FloatingSurface {
    Q_OBJECT

public:
    using OnSelect = std::function<void(const std::optional<std::string>& modifier)>;

    SkinToneMenu(const Appearance& appearance, const CompositorWatch& compositor, Glyphs& glyphs);

    /// \param anchor    what the menu hangs from, logical desktop coordinates; a click on it only closes the
    /// menu. \param onSelect  told the chosen modifier, before onClose. \param onClose   called however the
    /// menu closes.
    void popUp(const QRect& anchor, const std::optional<std::string>& current, OnSelect onSelect,
               std::function<void()> onClose);
    void dismiss();

protected:
    void paintPanel(QPainter& painter) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    std::optional<std::size_t> toneAt(QPoint inWindow) const;
    void choose(std::size_t tone);

    Glyphs& glyphs_;
    std::size_t current_ = 0;
    std::optional<std::size_t> hovered_;
    bool wasMoved_ = false;
    OnSelect onSelect_;
    std::function<void()> onClose_;
};

} // namespace glyma::qt
