#pragma once

#include "picker/qt/floating_surface.h"
#include "picker/qt/glyphs.h"
#include "picker/qt/no_results.h"
#include "picker/qt/picker_header.h"
#include "picker/qt/picker_layout.h"
#include "picker/qt/picker_services.h"
#include "picker/qt/row_painter.h"
#include "platform/subscription.h"

#include <QTimer>

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace glyma::qt {

/// The picker's window: the header with what was typed, and the list of results. Draws what the view model
/// holds, only the rows that are visible, and reports clicks to it. Main thread.
class PickerView : public FloatingSurface {
public:
    PickerView(PickerServices& services, const Appearance& appearance, const CompositorWatch& compositor,
               Glyphs& glyphs);

    /// Draws one of everything off the screen, so that the first real paint finds fonts and glyphs ready.
    void warmUp();

    ListGeometry list() const;
    /// What was typed: the trigger and the query.
    QString echo() const;
    /// The skin tone button, logical desktop coordinates.
    QRect skinToneButton() const;
    RowContent rowContentAt(std::size_t index) const;
    bool isSelected(std::size_t index) const;

    /// The skin tone button was pressed.
    std::function<void()> onSkinToneButton;

protected:
    void changeEvent(QEvent* event) override;
    void paintPanel(QPainter& painter) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void modelChanged();
    void followSelection();
    void setOffset(int offset);
    void tick();
    void updateTimers();

    bool showsPollingDot() const { return services_.debug.showPollingIndicator(); }
    HeaderState headerState() const;
    QueryMatch queryMatch() const;
    bool showsRandomIcon() const;
    void pickRandomIcons();
    void paintList(QPainter& painter);

    PickerServices& services_;
    PickerHeader header_;
    RowPainter rows_;
    NoResultsView noResults_;
    Subscription modelSubscription_;
    Subscription preferencesSubscription_;
    Subscription debugSubscription_;

    int offset_ = 0;
    int wheelRemainder_ = 0;
    std::string shownQuery_;
    bool wasEmpty_ = false;
    std::optional<std::size_t> hoveredRow_;
    std::optional<std::size_t> pressedRow_;
    bool isButtonHovered_ = false;
    std::map<bool, std::string> randomIcons_; ///< by pool
    QTimer randomTimer_;
    QTimer busyTimer_;
    int busyAngle_ = 0;
    bool isBusyShown_ = false;
    QTimer scrollBarTimer_; ///< runs while the scroll bar is shown
};

} // namespace glyma::qt
