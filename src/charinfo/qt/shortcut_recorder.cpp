#include "charinfo/qt/shortcut_recorder.h"

#include "charinfo/shortcut_text.h"
#include "translation/message_text.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

#include <algorithm>
#include <utility>

namespace glyma::qt {

namespace {

std::uint64_t flagsOf(Qt::KeyboardModifiers held) {
    std::uint64_t flags = 0;
    if (held & Qt::ShiftModifier)
        flags |= modifier::shift;
    if (held & Qt::ControlModifier)
        flags |= modifier::control;
    if (held & Qt::AltModifier)
        flags |= modifier::option;
    if (held & Qt::MetaModifier)
        flags |= modifier::command;
    return flags;
}

// The names of keys in spokenText().
[[maybe_unused]] constexpr const char* keyNames[] = {
    QT_TRANSLATE_NOOP("glyma::Message", "Control"), QT_TRANSLATE_NOOP("glyma::Message", "Alt"),
    QT_TRANSLATE_NOOP("glyma::Message", "Shift"),   QT_TRANSLATE_NOOP("glyma::Message", "Super"),
    QT_TRANSLATE_NOOP("glyma::Message", "Return"),  QT_TRANSLATE_NOOP("glyma::Message", "Tab"),
    QT_TRANSLATE_NOOP("glyma::Message", "Space"),   QT_TRANSLATE_NOOP("glyma::Message", "Backspace"),
    QT_TRANSLATE_NOOP("glyma::Message", "Enter"),   QT_TRANSLATE_NOOP("glyma::Message", "Home"),
    QT_TRANSLATE_NOOP("glyma::Message", "Page Up"), QT_TRANSLATE_NOOP("glyma::Message", "Delete"),
    QT_TRANSLATE_NOOP("glyma::Message", "End"),     QT_TRANSLATE_NOOP("glyma::Message", "Page Down"),
    QT_TRANSLATE_NOOP("glyma::Message", "Left"),    QT_TRANSLATE_NOOP("glyma::Message", "Right"),
    QT_TRANSLATE_NOOP("glyma::Message", "Down"),    QT_TRANSLATE_NOOP("glyma::Message", "Up"),
};

/// The one key that is shown by its name. What is stored stays English.
QString shownText(const GlobalShortcut& shortcut) {
    auto text = QString::fromStdString(shortcut.display);
    const QLatin1String space("Space");
    if (text.endsWith(space))
        text.replace(text.size() - space.size(), space.size(), textOf(Message(space.data())));
    return text;
}

bool isModifier(int key) {
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
    case Qt::Key_Mode_switch:
        return true;
    default:
        return false;
    }
}

} // namespace

ShortcutRecorder::ShortcutRecorder(ShortcutRecorderServices services, QWidget* parent)
    : QWidget(parent)
    , services_(std::move(services))
    , button_(new QPushButton)
    , removeButton_(new QToolButton) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(button_);
    layout->addWidget(removeButton_);
    // Wide enough for whatever it comes to show, so that it does not jump.
    const auto metrics = button_->fontMetrics();
    const int widest = std::max(metrics.horizontalAdvance(tr("Record Shortcut")),
                                metrics.horizontalAdvance(tr("Type shortcut…")));
    button_->setMinimumWidth(widest + 32);
    button_->setAutoDefault(false);
    button_->installEventFilter(this);
    removeButton_->setAutoRaise(true);
    removeButton_->setFocusPolicy(Qt::TabFocus);
    removeButton_->setIcon(style()->standardIcon(QStyle::SP_LineEditClearButton));
    removeButton_->setToolTip(tr("Remove shortcut"));
    removeButton_->setAccessibleName(tr("Remove shortcut"));
    setFocusProxy(button_);
    connect(button_, &QPushButton::clicked, this, [this] { startRecording(); });
    connect(removeButton_, &QToolButton::clicked, this, [this] { choose(std::nullopt); });
    showState();
}

ShortcutRecorder::~ShortcutRecorder() {
    stopRecording();
}

void ShortcutRecorder::setShortcut(const std::optional<GlobalShortcut>& shortcut) {
    shortcut_ = shortcut;
    showState();
}

void ShortcutRecorder::startRecording() {
    isRecording_ = true;
    services_.flags.isRecordingShortcut = true;
    button_->setFocus(Qt::OtherFocusReason);
    showState();
}

void ShortcutRecorder::stopRecording() {
    if (!std::exchange(isRecording_, false))
        return;
    services_.flags.isRecordingShortcut = false;
    showState();
}

void ShortcutRecorder::choose(const std::optional<GlobalShortcut>& shortcut) {
    const bool differs = shortcut != shortcut_;
    shortcut_ = shortcut;
    // The key must not open anything on its way out: the flag falls after the setting has changed.
    if (differs)
        shortcutChanged.emit(shortcut_);
    stopRecording();
    showState();
}

bool ShortcutRecorder::eventFilter(QObject* watched, QEvent* event) {
    if (!isRecording_)
        return QWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        event->accept();
        return true;
    case QEvent::KeyPress:
        take(static_cast<QKeyEvent&>(*event));
        return true;
    case QEvent::KeyRelease:
        return true;
    case QEvent::FocusOut:
        stopRecording();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void ShortcutRecorder::hideEvent(QHideEvent* event) {
    stopRecording();
    QWidget::hideEvent(event);
}

void ShortcutRecorder::take(const QKeyEvent& event) {
    if (isModifier(event.key()) || event.isAutoRepeat())
        return;
    const auto key = services_.identify(event.nativeScanCode(), event.nativeVirtualKey());
    if (key.keyCode == keycode::backspace)
        return choose(std::nullopt);
    if (key.keyCode == keycode::escape)
        return stopRecording();
    const auto flags = flagsOf(event.modifiers());
    // A key without a code of its own could not be told from the others without one.
    if (!(flags & modifier::controlOptionOrCommand) || key.keyCode == keycode::unknown)
        return services_.bell.ring();
    choose(GlobalShortcut{.keyCode = key.keyCode,
                          .modifierRawValue = flags,
                          .display = displayText(key.keyCode, flags, key.characters)});
}

void ShortcutRecorder::showState() {
    const auto name = isRecording_ ? tr("Type shortcut…")
                      : shortcut_  ? shownText(*shortcut_)
                                   : tr("Record Shortcut");
    button_->setText(name);
    button_->setDown(isRecording_);
    button_->setAccessibleName(
        shortcut_ && !isRecording_
            ? tr("Shortcut: %1").arg(QString::fromStdString(spokenText(*shortcut_, translated)))
            : name);
    button_->setAccessibleDescription(
        tr("Press it, then the keys. Escape keeps the shortcut, Backspace removes it."));
    removeButton_->setVisible(shortcut_.has_value() && !isRecording_);
}

} // namespace glyma::qt
