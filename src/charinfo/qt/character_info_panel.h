#pragma once

#include "charinfo/character_info_port.h"
#include "charinfo/qt/character_detail_collection.h"
#include "picker/qt/appearance.h"
#include "picker/qt/floating_surface.h"
#include "picker/qt/glyphs.h"
#include "picker/qt/keyboard_loan.h"
#include "picker/qt/x11_window.h"

#include <QWidget>

#include <functional>

namespace glyma::qt {

class SoftButton;

/// The cards of the characters of a text, floating above the applications. It gets the keyboard only by a
/// click into it, or when it is told to take it. Main thread.
class CharacterInfoPanel : public FloatingSurface, public CharacterInfoWindow {
    Q_OBJECT

public:
    /// \param appearance, compositor  outlive the panel.
    /// \param onClose                 the user wants it closed: Escape, Ctrl+W, the button.
    CharacterInfoPanel(Appearance& appearance, CompositorWatch& compositor, FontChoice fonts,
                       std::function<void()> onClose);

    void show(const std::vector<CharacterInfo>& infos, const Rect& frame) override;
    void hide() override;
    bool hasKeyboard() const override;
    void takeKeyboard() override;

protected:
    void paintPanel(QPainter& painter) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void applyTheme();
    void layOut();

    Glyphs glyphs_;
    std::function<void()> onClose_;
    KeyboardLoan keyboard_;
    SoftButton* closeButton_;
    CharacterDetailCollection* cards_;
    Subscription appearanceSubscription_;
    Subscription compositorSubscription_;
};

} // namespace glyma::qt
