#pragma once

#include "monitor/shared_flags.h"
#include "platform/screens.h"
#include "platform/subscription.h"
#include "preferences/records.h"

#include <QWidget>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

class QKeyEvent;
class QPushButton;
class QToolButton;

namespace glyma::qt {

/// A key as the tap would name it.
struct PressedKey {
    std::uint16_t keyCode = keycode::unknown;
    std::string characters; ///< what it types without Control, Option and Command, UTF-8
};

/// Everything referred to outlives the recorder.
struct ShortcutRecorderServices {
    SharedFlags& flags; ///< isRecordingShortcut is true while it records
    Bell& bell;
    /// \param scanCode, virtualKey  QKeyEvent::nativeScanCode() and nativeVirtualKey().
    std::function<PressedKey(std::uint32_t scanCode, std::uint32_t virtualKey)> identify;
};

/// A button that shows a keyboard shortcut and, when it is pressed, takes the next key with at least one of
/// Control, Alt and Super as the new one; Escape keeps the old one and Backspace removes it. A second button
/// removes it, too. Nothing outside this widget gets a key while it records. Main thread.
class ShortcutRecorder : public QWidget {
    Q_OBJECT

public:
    explicit ShortcutRecorder(ShortcutRecorderServices services, QWidget* parent = nullptr);
    ~ShortcutRecorder() override;

    const std::optional<GlobalShortcut>& shortcut() const { return shortcut_; }
    /// Does not emit.
    void setShortcut(const std::optional<GlobalShortcut>& shortcut);
    bool isRecording() const { return isRecording_; }

    /// The user has chosen another one, or none.
    Signal<const std::optional<GlobalShortcut>&> shortcutChanged;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void startRecording();
    void stopRecording();
    void take(const QKeyEvent& event);
    void choose(const std::optional<GlobalShortcut>& shortcut);
    void showState();

    ShortcutRecorderServices services_;
    std::optional<GlobalShortcut> shortcut_;
    bool isRecording_ = false;
    QPushButton* button_;
    QToolButton* removeButton_;
};

} // namespace glyma::qt
