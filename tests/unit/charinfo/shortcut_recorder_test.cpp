#include "charinfo/qt/shortcut_recorder.h"
#include "platform/simulated/services.h"
#include "qt_fixture.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QToolButton>

namespace glyma::qt {
namespace {

constexpr std::uint32_t letterI = 34;
constexpr std::uint32_t mediaKey = 1000;
const GlobalShortcut present{31, modifier::control, "⌃O"};

class ShortcutRecorderTest : public QtTest {
protected:
    ShortcutRecorderTest() {
        recorder.setShortcut(present);
        recorder.show();
        button->click();
    }

    void press(int key, Qt::KeyboardModifiers held, std::uint32_t scanCode, const QString& text = {}) {
        for (const auto type : {QEvent::ShortcutOverride, QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, held, scanCode, scanCode, 0, text);
            QCoreApplication::sendEvent(button, &event);
        }
    }

    SharedFlags flags;
    simulated::SimulatedBell bell;
    ShortcutRecorder recorder{
        {flags, bell, [](std::uint32_t code, std::uint32_t) {
             return code == mediaKey ? PressedKey{} : PressedKey{static_cast<std::uint16_t>(code), "i"};
         }}};
    int changes = 0;
    Subscription changed = recorder.shortcutChanged.connect([this](const auto&) { ++changes; });
    QPushButton* button = recorder.findChild<QPushButton*>();
};

TEST_F(ShortcutRecorderTest, TakesTheNextKeyWithAModifier) {
    EXPECT_TRUE(flags.isRecordingShortcut);
    EXPECT_EQ(button->text(), QStringLiteral("Type shortcut…"));
    press(Qt::Key_Shift, Qt::ShiftModifier, 56);
    EXPECT_TRUE(recorder.isRecording()) << "a modifier alone is the beginning of a shortcut";
    press(Qt::Key_I, Qt::MetaModifier | Qt::ShiftModifier, letterI, QStringLiteral("I"));
    EXPECT_EQ(recorder.shortcut(), (GlobalShortcut{34, modifier::command | modifier::shift, "⇧⌘I"}));
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(flags.isRecordingShortcut);
    EXPECT_EQ(button->text(), QStringLiteral("⇧⌘I"));
    EXPECT_EQ(button->accessibleName(), QStringLiteral("Shortcut: Shift+Super+I"));
}

TEST_F(ShortcutRecorderTest, RefusesWhatCouldNotServe) {
    press(Qt::Key_F5, Qt::NoModifier, 96);
    press(Qt::Key_I, Qt::ShiftModifier, letterI, QStringLiteral("I"));
    press(Qt::Key_VolumeUp, Qt::ControlModifier, mediaKey);
    EXPECT_EQ(bell.count, 3);
    EXPECT_TRUE(recorder.isRecording());
    EXPECT_EQ(recorder.shortcut(), present);
}

TEST_F(ShortcutRecorderTest, EscapeKeepsAndBackspaceRemoves) {
    press(Qt::Key_Escape, Qt::NoModifier, keycode::escape);
    EXPECT_FALSE(flags.isRecordingShortcut);
    EXPECT_EQ(recorder.shortcut(), present);
    EXPECT_EQ(changes, 0);
    button->click();
    press(Qt::Key_Backspace, Qt::NoModifier, keycode::backspace);
    EXPECT_EQ(recorder.shortcut(), std::nullopt);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(button->text(), QStringLiteral("Record Shortcut"));
    EXPECT_FALSE(recorder.findChild<QToolButton*>()->isVisible());
}

TEST_F(ShortcutRecorderTest, NothingElseGetsAKeyMeanwhile) {
    press(Qt::Key_Tab, Qt::NoModifier, 48);
    press(Qt::Key_Space, Qt::NoModifier, 49);
    EXPECT_TRUE(recorder.isRecording());
    recorder.hide();
    EXPECT_FALSE(flags.isRecordingShortcut) << "a window that is closed records no longer";
}

TEST_F(ShortcutRecorderTest, TheFlagFallsWhenTheRecorderGoes) {
    {
        ShortcutRecorder other({flags, bell, {}});
        other.show();
        other.findChild<QPushButton*>()->click();
        recorder.hide();
        EXPECT_FALSE(recorder.isRecording());
        flags.isRecordingShortcut = true;
    }
    EXPECT_FALSE(flags.isRecordingShortcut);
}

} // namespace
} // namespace glyma::qt
