#include "charinfo/qt/copy_buttons.h"

#include "charinfo/character_info.h"
#include "charinfo/qt/soft_button.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QMenu>

#include <algorithm>
#include <chrono>
#include <utility>

namespace glyma::qt {

namespace {

constexpr std::chrono::milliseconds copiedDuration{1500};

} // namespace

CopyButtons::CopyButtons(std::string character, const QString& name, QWidget* parent)
    : QWidget(parent)
    , character_(std::move(character))
    , button_(new SoftButton(tr("Copied")))
    , menuButton_(new SoftButton(QStringLiteral("⋯")))
    , menu_(new QMenu(this)) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(button_);
    layout->addWidget(menuButton_);
    layout->addStretch();
    button_->setAccessibleDescription(name);
    // The two texts take turns: the button keeps its place.
    const int widest = button_->sizeHint().width();
    button_->setText(tr("Copy"));
    button_->setMinimumWidth(std::max(widest, button_->sizeHint().width()));
    setFocusProxy(button_);
    addMenu(name);
    justCopied_.setSingleShot(true);
    connect(&justCopied_, &QTimer::timeout, this, [this] { showState(); });
    connect(button_, &SoftButton::clicked, this, [this] { copy(character_); });
}

void CopyButtons::addMenu(const QString& name) {
    using Form = std::string (*)(std::string_view);
    const std::pair<QString, Form> forms[] = {{tr("Copy as UTF-8 Bytes"), utf8Bytes},
                                              {tr("Copy as HTML Entity"), htmlEntities},
                                              {tr("Copy as Code Point"), codePoints}};
    for (const auto& [text, form] : forms)
        connect(menu_->addAction(text), &QAction::triggered, this,
                [this, form = form] { copy(form(describedPart(character_))); });
    // A window does not inherit the colours of the one that it belongs to.
    connect(menu_, &QMenu::aboutToShow, this, [this] { menu_->setPalette(palette()); });
    menuButton_->setMenu(menu_);
    menuButton_->setAccessibleName(tr("Copy as"));
    menuButton_->setAccessibleDescription(name);
    menuButton_->setToolTip(tr("Copy as"));
}

void CopyButtons::copy(const std::string& text) {
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
    justCopied_.start(copiedDuration);
    showState();
}

void CopyButtons::showState() {
    button_->setText(justCopied() ? tr("Copied") : tr("Copy"));
}

} // namespace glyma::qt
