#include "preferences/qt/general_tab.h"

#include "preferences/qt/choice_box.h"
#include "preferences/qt/form_parts.h"
#include "preferences/typed_fields.h"
#include "translation/message_text.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>

#include <array>

namespace glyma::qt {

namespace {

QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// The labels of the settings model's tables, for the translation.
[[maybe_unused]] constexpr std::array tableLabels{
    QT_TRANSLATE_NOOP("glyma::qt::GeneralTab", "Colon"),
    QT_TRANSLATE_NOOP("glyma::qt::GeneralTab", "Plus"),
    QT_TRANSLATE_NOOP("glyma::qt::GeneralTab", "Slash"),
    QT_TRANSLATE_NOOP("glyma::qt::GeneralTab", "Tilde"),
    QT_TRANSLATE_NOOP("glyma::qt::GeneralTab", "Trigger character"),
    QT_TRANSLATE_NOOP("glyma::qt::GeneralTab", "Smiling face"),
    QT_TRANSLATE_NOOP("glyma::qt::GeneralTab", "Sparkles"),
    QT_TRANSLATE_NOOP("glyma::qt::GeneralTab", "Keyboard"),
    QT_TRANSLATE_NOOP("glyma::qt::GeneralTab", "Command key"),
    QT_TRANSLATE_NOOP("glyma::qt::GeneralTab", "Magic wand"),
};

struct SkinToneChoice {
    const char* label;
    const char8_t* modifier; ///< empty: none
};
constexpr std::array skinToneChoices{
    SkinToneChoice{QT_TRANSLATE_NOOP("glyma::qt::GeneralTab", "Default"), u8""},
    SkinToneChoice{QT_TRANSLATE_NOOP("glyma::qt::GeneralTab", "Light"), u8"\U0001F3FB"},
    SkinToneChoice{QT_TRANSLATE_NOOP("glyma::qt::GeneralTab", "Medium-light"), u8"\U0001F3FC"},
    SkinToneChoice{QT_TRANSLATE_NOOP("glyma::qt::GeneralTab", "Medium"), u8"\U0001F3FD"},
    SkinToneChoice{QT_TRANSLATE_NOOP("glyma::qt::GeneralTab", "Medium-dark"), u8"\U0001F3FE"},
    SkinToneChoice{QT_TRANSLATE_NOOP("glyma::qt::GeneralTab", "Dark"), u8"\U0001F3FF"},
};

} // namespace

GeneralTab::GeneralTab(Services services, QWidget* parent)
    : QWidget(parent)
    , services_(std::move(services)) {
    auto* layout = makePageLayout(this);
    layout->addWidget(makeStartGroup());
    layout->addWidget(startProblem_);
    layout->addWidget(makeSectionHeader(tr("Picker")));
    layout->addWidget(makePickerGroup());
    layout->addWidget(makeSectionHeader(tr("Character Info")));
    layout->addWidget(makeCharacterInfoGroup());
    layout->addSpacing(8);
    layout->addWidget(makeRandomGroup());
    layout->addSpacing(8);
    layout->addWidget(makeVersionGroup());
    layout->addStretch();
    refresh();
    preferencesSubscription_ = services_.preferences.changed.connect([this] { refresh(); });
}

QWidget* GeneralTab::makeStartGroup() {
    auto* group = new FormGroup;
    startAtLogin_ = group->addToggle(tr("&Start Glyma at login"));
    connect(startAtLogin_, &QCheckBox::toggled, this, &GeneralTab::setStartAtLogin);
    startProblem_ = makeProblem();
    return group;
}

QWidget* GeneralTab::makePickerGroup() {
    auto& preferences = services_.preferences;
    auto* group = new FormGroup;

    trigger_ = new ChoiceBox;
    for (const auto& [label, value] : UserPreferences::triggerOptions())
        trigger_->addChoice(QStringLiteral("%1  %2").arg(tr(std::string(label).c_str()), fromUtf8(value)),
                            fromUtf8(value));
    connect(trigger_, &ChoiceBox::valueChosen, this,
            [&preferences](const QString& value) { preferences.setTriggerCharacter(value.toStdString()); });
    group->addRow(tr("&Trigger character"), trigger_);

    icon_ = new ChoiceBox;
    for (const auto& option : UserPreferences::menuBarIconOptions())
        icon_->addChoice(tr(std::string(option.label).c_str()), fromUtf8(option.value));
    connect(icon_, &ChoiceBox::valueChosen, this,
            [&preferences](const QString& value) { preferences.setMenuBarIcon(value.toStdString()); });
    group->addRow(tr("Tray &icon"), icon_);

    skinTone_ = new ChoiceBox;
    for (const auto& [label, modifier] : skinToneChoices)
        skinTone_->addChoice(tr(label), QString::fromUtf8(modifier));
    connect(skinTone_, &ChoiceBox::valueChosen, this, [&preferences](const QString& value) {
        preferences.setSkinToneModifier(value.isEmpty() ? std::nullopt : std::optional(value.toStdString()));
    });
    group->addRow(tr("S&kin tone"), skinTone_);

    rows_ = new QLineEdit;
    rows_->setAlignment(Qt::AlignRight);
    rows_->setFixedWidth(rows_->fontMetrics().horizontalAdvance(QStringLiteral("000000")) + 16);
    connect(rows_, &QLineEdit::editingFinished, this, &GeneralTab::commitRows);
    group->addRow(tr("&Visible rows"), rows_);
    rows_->setAccessibleDescription(tr("A number from %1 to %2").arg(leastPickerRows).arg(mostPickerRows));
    rows_->setToolTip(rows_->accessibleDescription());

    fuzzy_ = group->addToggle(tr("Use &fuzzy search"));
    connect(fuzzy_, &QCheckBox::toggled, this,
            [&preferences](bool value) { preferences.setUseFuzzySearch(value); });
    return group;
}

QWidget* GeneralTab::makeCharacterInfoGroup() {
    auto* group = new FormGroup;
    shortcut_ = new ShortcutRecorder(services_.recorder);
    shortcutSubscription_ = shortcut_->shortcutChanged.connect(
        [&preferences = services_.preferences](const std::optional<GlobalShortcut>& shortcut) {
            preferences.setCharacterInfoShortcut(shortcut);
        });
    group->addRow(tr("S&hortcut"), shortcut_,
                  tr("Shows details for the text selected in any app. Also available in the menu of Glyma's "
                     "launcher."));
    return group;
}

QWidget* GeneralTab::makeRandomGroup() {
    auto* group = new FormGroup;
    randomIncludesEmoji_ =
        group->addToggle(tr("Random &Unicode includes emoji"),
                         tr("Turn off to keep the Random Unicode action to non-emoji characters."));
    connect(randomIncludesEmoji_, &QCheckBox::toggled, this,
            [&preferences = services_.preferences](bool value) {
                preferences.setRandomUnicodeIncludesEmoji(value);
            });
    return group;
}

QWidget* GeneralTab::makeVersionGroup() {
    auto* group = new FormGroup;
    auto* check = new QPushButton(tr("&Check for Updates…"));
    connect(check, &QPushButton::clicked, this, [this] { services_.program.openUpdatePage(); });
    group->addRow(tr("Version %1").arg(services_.version), check);
    check->setAccessibleName({});
    return group;
}

void GeneralTab::refresh() {
    const auto& preferences = services_.preferences;
    showChecked(*startAtLogin_, preferences.startAtLogin());
    trigger_->showValue(fromUtf8(preferences.triggerCharacter()));
    icon_->showValue(fromUtf8(preferences.menuBarIcon()));
    skinTone_->showValue(fromUtf8(preferences.skinToneModifier().value_or("")));
    if (!rows_->hasFocus())
        rows_->setText(QString::number(preferences.visiblePickerRows()));
    showChecked(*fuzzy_, preferences.useFuzzySearch());
    shortcut_->setShortcut(preferences.characterInfoShortcut());
    showChecked(*randomIncludesEmoji_, preferences.randomUnicodeIncludesEmoji());
}

void GeneralTab::setStartAtLogin(bool value) {
    const auto done = services_.preferences.setStartAtLogin(value);
    showProblem(*startProblem_, done ? QString() : textOf(done.error()));
    refresh();
}

void GeneralTab::commitRows() {
    if (const auto rows = parseVisibleRows(rows_->text().toStdString()))
        services_.preferences.setVisiblePickerRows(*rows);
    else
        rows_->setText(QString::number(services_.preferences.visiblePickerRows()));
}

} // namespace glyma::qt
