#pragma once

#include "monitor/picker_port.h"
#include "picker/qt/appearance.h"
#include "picker/qt/caret_overlay.h"
#include "picker/qt/picker_services.h"
#include "picker/qt/picker_view.h"
#include "picker/qt/skin_tone_menu.h"
#include "picker/qt/x11_window.h"
#include "platform/subscription.h"

#include <QTimer>

namespace glyma::qt {

/// The picker beside the caret of another application. It never takes the focus, so caret, selection and
/// keyboard stay with that application, and still takes clicks. Main thread; needs the QApplication.
class EmojiPickerPanel : public PickerWindow {
public:
    explicit EmojiPickerPanel(PickerServices services);
    ~EmojiPickerPanel() override;
    EmojiPickerPanel(const EmojiPickerPanel&) = delete;
    EmojiPickerPanel& operator=(const EmojiPickerPanel&) = delete;

    /// Creates the native window and lets it paint once beyond the screen's edge: the first show is then as
    /// fast as any.
    void warmUp();

    void placeAtCaret(const Rect& caret) override;
    void orderFront() override;
    void showCaretOverlay(const Rect& caret) override;
    Rect frame() const override { return frame_; }
    /// \param origin  the frame's, for the height it had when it was ordered front.
    void setFrameOrigin(Point origin) override;
    void hide() override;

    bool isVisible() const;
    PickerView& view() { return view_; }
    SkinToneMenu& skinToneMenu() { return skinToneMenu_; }
    const CompositorWatch& compositor() const { return compositor_; }

private:
    void applyFrame();
    void openSkinToneMenu();
    void refreshSurfaces();

    PickerServices services_;
    Appearance appearance_;
    CompositorWatch compositor_;
    Glyphs glyphs_;
    PickerView view_;
    SkinToneMenu skinToneMenu_;
    CaretOverlay overlay_;
    Subscription appearanceSubscription_;
    Subscription compositorSubscription_;
    QTimer warmUpEnd_;
    Rect lastCaretRect_;
    Rect frame_;
    double heightAtShow_ = 0;
    bool isShown_ = false;
};

} // namespace glyma::qt
