#include "preferences/qt/permissions_tab.h"

#include "preferences/qt/form_parts.h"
#include "preferences/qt/secure_input_text.h"
#include "preferences/qt/symbols.h"
#include "translation/message_text.h"

#include <QHBoxLayout>
#include <QPushButton>

#include <chrono>

namespace glyma::qt {

namespace {

using std::chrono_literals::operator""s;

constexpr auto refreshInterval = 2s;

/// Shows the text as a sentence of its own, as far as there is one.
void showMessage(QLabel& label, const Message& message) {
    auto sentence = textOf(message);
    if (!sentence.isEmpty())
        sentence[0] = sentence[0].toUpper();
    label.setText(sentence);
    label.setVisible(!sentence.isEmpty());
}

QLabel* makeBold(const QString& text) {
    auto* label = new QLabel(text);
    auto font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

/// Steps that people copy from.
QLabel* makeRemedy() {
    auto* remedy = new QLabel;
    remedy->setWordWrap(true);
    remedy->setTextFormat(Qt::PlainText);
    remedy->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return remedy;
}

} // namespace

PermissionsTab::PermissionsTab(Permissions& permissions, QWidget* parent)
    : QWidget(parent)
    , permissions_(permissions) {
    auto* layout = makePageLayout(this);
    layout->addWidget(secureInput_ = makeSecureInputGroup());
    layout->addWidget(
        makePermissionGroup(inputMonitoring_, tr("Input Monitoring"),
                            tr("Required to detect the trigger character while typing in any app."), {}));
    layout->addWidget(
        makePermissionGroup(accessibility_, tr("Accessibility"),
                            tr("Required to read caret position and insert text into other apps."),
                            tr("&Switch Accessibility On")));
    layout->addStretch();
    connect(accessibility_.obtain, &QPushButton::clicked, this,
            [this] { permissions_.obtainAccessibility(); });
    connect(&timer_, &QTimer::timeout, this, [this] { permissions_.refresh(); });
    timer_.setInterval(refreshInterval);
    subscription_ = permissions_.changed.connect([this] { refresh(); });
    refresh();
}

void PermissionsTab::showEvent(QShowEvent*) {
    permissions_.refresh();
    timer_.start();
}

void PermissionsTab::hideEvent(QHideEvent*) {
    timer_.stop();
}

QWidget* PermissionsTab::makeSecureInputGroup() {
    auto* content = new QWidget;
    auto* columns = new QHBoxLayout(content);
    columns->setContentsMargins({});
    columns->setSpacing(14);
    columns->addWidget(new SymbolView(Symbol::warning, 32), 0, Qt::AlignTop);
    auto* column = new QVBoxLayout;
    columns->addLayout(column, 1);
    column->addWidget(makeBold(tr("Keyboard events are blocked")));
    column->addWidget(makeCaption(tr(
        "Secure Input is on, which hides all typing from Glyma — the trigger character can't be detected "
        "until "
        "it's released. It is usually switched on by a password field, an authentication dialog, or Secure "
        "Keyboard in xterm, and it can get stuck when the computer sleeps or locks midway.")));
    holder_ = new QLabel;
    holder_->setWordWrap(true);
    holder_->setTextFormat(Qt::RichText);
    column->addWidget(holder_);
    auto* group = new FormGroup;
    group->addWide(content);
    return group;
}

QWidget* PermissionsTab::makePermissionGroup(Row& row, const QString& name, const QString& purpose,
                                             const QString& obtain) {
    row = {.symbol = new SymbolView(Symbol::notGranted, 20),
           .status = new QLabel,
           .finding = makeCaption({}),
           .remedy = makeRemedy(),
           .obtain = new QPushButton(obtain)};
    row.finding->setTextFormat(Qt::PlainText);
    row.remedy->setAccessibleName(tr("What to do about %1").arg(name));
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins({});
    auto* head = new QHBoxLayout;
    head->addWidget(makeBold(name), 1);
    head->addWidget(row.symbol);
    head->addWidget(row.status);
    column->addLayout(head);
    column->addWidget(makeCaption(purpose));
    column->addWidget(row.finding);
    column->addWidget(row.remedy);
    column->addWidget(row.obtain, 0, Qt::AlignLeading);
    auto* group = new FormGroup;
    group->addWide(content);
    return group;
}

void PermissionsTab::refresh() {
    const auto& secureInput = permissions_.secureInput();
    holder_->setText(holderParagraph(secureInput.holder));
    secureInput_->setVisible(secureInput.isOn);
    show(inputMonitoring_, permissions_.inputMonitoring());
    show(accessibility_, permissions_.accessibility());
}

void PermissionsTab::show(const Row& row, const Permission& permission) {
    row.symbol->setSymbol(permission.isGranted ? Symbol::granted : Symbol::notGranted);
    row.status->setText(permission.isGranted ? tr("Granted") : tr("Not Granted"));
    showMessage(*row.finding, permission.finding);
    showMessage(*row.remedy, permission.remedy);
    row.obtain->setVisible(permission.canBeObtained && !permission.isGranted &&
                           !row.obtain->text().isEmpty());
}

} // namespace glyma::qt
