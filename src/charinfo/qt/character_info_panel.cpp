#include "charinfo/qt/character_info_panel.h"

#include "charinfo/qt/soft_button.h"
#include "picker/qt/picker_layout.h"
#include "picker/qt/screen_at.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QWindow>

#include <utility>

namespace glyma::qt {

namespace {

// Logical pixels.
constexpr double radius = 12;
constexpr int margin = 10;
constexpr int headerHeight = 38;
constexpr int closeButtonSize = 24;

QPalette paletteOf(const Theme& theme) {
    auto palette = QApplication::palette();
    const auto ground = theme.opaquePanel;
    const auto card = theme.isDark ? blended(QColor(255, 255, 255, 14), ground) : QColor(Qt::white);
    const auto button = theme.isDark ? blended(QColor(255, 255, 255, 34), ground) : QColor(246, 246, 248);
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        palette.setColor(group, QPalette::Window, ground);
        palette.setColor(group, QPalette::Base, card);
        palette.setColor(group, QPalette::Button, button);
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            palette.setColor(group, role, theme.text.primary);
        palette.setColor(group, QPalette::PlaceholderText, theme.text.secondary);
        palette.setColor(group, QPalette::Highlight, theme.accent);
        palette.setColor(group, QPalette::HighlightedText, Qt::white);
    }
    return palette;
}

QString scrollBarStyle(const QColor& handle) {
    return QStringLiteral("QScrollBar:vertical { background: transparent; width: 10px; margin: 0 }"
                          "QScrollBar::handle:vertical { background: %1; border-radius: 3px; margin: 0 2px;"
                          " min-height: 32px }"
                          "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0 }"
                          "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: none }")
        .arg(handle.name(QColor::HexArgb));
}

} // namespace

CharacterInfoPanel::CharacterInfoPanel(Appearance& appearance, CompositorWatch& compositor, FontChoice fonts,
                                       std::function<void()> onClose)
    : FloatingSurface(appearance, compositor, radius, Keyboard::onRequest)
    , glyphs_(std::move(fonts))
    , onClose_(std::move(onClose))
    , closeButton_(new SoftButton(QStringLiteral("✕"), SoftButton::Ground::underPointer, this))
    , cards_(new CharacterDetailCollection(glyphs_, /*showsCardChrome=*/true, this))
    , appearanceSubscription_(appearance.changed.connect([this] { applyTheme(); }))
    , compositorSubscription_(compositor.changed.connect([this] { refreshSurface(); })) {
    setWindowTitle(tr("Character Info"));
    setAccessibleName(tr("Character Info"));
    closeButton_->setAccessibleName(tr("Close"));
    closeButton_->setToolTip(tr("Close"));
    closeButton_->resize(closeButtonSize, closeButtonSize);
    connect(closeButton_, &SoftButton::clicked, this, [this] { onClose_(); });
    applyTheme();
}

void CharacterInfoPanel::show(const std::vector<CharacterInfo>& infos, const Rect& frame) {
    auto* screen = screenAt(frame.centre());
    if (!screen)
        return;
    const auto footnote =
        infos.size() == shownCharacters
            ? std::optional(tr("Showing the first %1 distinct characters.").arg(shownCharacters))
            : std::nullopt;
    const auto place = logicalRect(frame, screen->geometry().topLeft(), screen->devicePixelRatio());
    setScreen(screen);
    setPanel(place, place);
    layOut();
    cards_->setInfos(infos, footnote);
    QWidget::show();
    windowHandle()->installEventFilter(this);
    raise();
}

void CharacterInfoPanel::hide() {
    keyboard_.giveBack(*this);
    QWidget::hide();
}

bool CharacterInfoPanel::hasKeyboard() const {
    return isVisible() && isActiveWindow();
}

void CharacterInfoPanel::takeKeyboard() {
    keyboard_.take(*this);
    cards_->focusFirst();
}

/// Presses that a child takes, too.
bool CharacterInfoPanel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress && !hasKeyboard() &&
        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton)
        keyboard_.take(*this);
    return FloatingSurface::eventFilter(watched, event);
}

void CharacterInfoPanel::keyPressEvent(QKeyEvent* event) {
    const bool isCloseChord = event->key() == Qt::Key_W && event->modifiers() == Qt::ControlModifier;
    if (event->key() == Qt::Key_Escape || isCloseChord)
        return onClose_();
    FloatingSurface::keyPressEvent(event);
}

void CharacterInfoPanel::resizeEvent(QResizeEvent* event) {
    FloatingSurface::resizeEvent(event);
    layOut();
}

void CharacterInfoPanel::layOut() {
    const auto area = panel();
    constexpr int inset = (headerHeight - closeButtonSize) / 2;
    closeButton_->move(area.right() + 1 - inset - closeButtonSize, area.top() + inset);
    cards_->setGeometry(area.adjusted(margin, headerHeight, -margin, -margin));
}

void CharacterInfoPanel::applyTheme() {
    setPalette(paletteOf(theme()));
    cards_->verticalScrollBar()->setStyleSheet(scrollBarStyle(theme().scrollBar));
    refreshSurface();
}

void CharacterInfoPanel::paintPanel(QPainter& painter) {
    // There is much to read and nothing behind it that would have to be followed.
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme().opaquePanel);
    painter.drawRoundedRect(QRectF(QPointF(), panel().size()).adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5,
                            radius - 0.5);
    auto font = this->font();
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(theme().text.secondary);
    painter.drawText(QRectF(0, 0, panel().width(), headerHeight), Qt::AlignCenter, windowTitle());
}

} // namespace glyma::qt
