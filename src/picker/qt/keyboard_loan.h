#pragma once

#include <cstdint>

class QWidget;

namespace glyma::qt {

/// Gives a window that the window manager does not know the keyboard, and gives it back to the window that
/// had it. Nothing on another platform than X11. Main thread.
class KeyboardLoan {
public:
    /// \param window  shown.
    void take(QWidget& window);
    /// Unless somebody else has taken the keyboard meanwhile. Call it before the window is hidden.
    void giveBack(const QWidget& window);

private:
    std::uint32_t lender_ = 0;
};

} // namespace glyma::qt
