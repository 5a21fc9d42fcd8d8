#include "preferences/qt/advanced_tab.h"

#include "preferences/qt/form_parts.h"

#include <QMessageBox>
#include <QPushButton>

namespace glyma::qt {

AdvancedTab::AdvancedTab(DebugConfig& debug, ProgramOperations& program, QWidget* parent)
    : QWidget(parent)
    , debug_(debug)
    , program_(program) {
    auto* layout = makePageLayout(this);
    layout->addWidget(makeSectionHeader(tr("Logs")));
    layout->addWidget(makeLogs());
    layout->addWidget(makeSectionHeader(tr("Debug")));
    layout->addWidget(makeDebug());
    layout->addWidget(makeSectionHeader(tr("Data")));
    layout->addWidget(makeData());
    layout->addStretch();
    refresh();
    subscription_ = debug_.changed.connect([this] { refresh(); });
}

QWidget* AdvancedTab::makeLogs() {
    auto* group = new FormGroup;
    add(*group, tr("Debug &logs in the journal"),
        tr("Writes diagnostic messages to the system log (journalctl SUBSYSTEM=net.quillaby.Glyma). Anything "
           "you "
           "type is redacted to x's before it is logged."),
        &DebugConfig::debugLogsEnabled, &DebugConfig::setDebugLogsEnabled);
    add(*group, tr("Include the &text you type"),
        tr("Logs normally replace anything you type with x's. Turn this on only to capture a bug you want to "
           "report "
           "— Glyma switches it back off the next time it starts."),
        &DebugConfig::logUnredacted, &DebugConfig::setLogUnredacted);
    return group;
}

QWidget* AdvancedTab::makeDebug() {
    auto* group = new FormGroup;
    add(*group, tr("Show &caret overlay"),
        tr("Draws colored rectangles over the caret area when the picker appears: red = AX caret rect, blue "
           "= line "
           "top, green = line bottom."),
        &DebugConfig::showCaretOverlay, &DebugConfig::setShowCaretOverlay);
    add(*group, tr("Show ran&king info"),
        tr("Adds a score breakdown row below each emoji's keywords: text, popularity, usage, and "
           "term-learning "
           "contributions."),
        &DebugConfig::showRankingInfo, &DebugConfig::setShowRankingInfo);
    add(*group, tr("Show AX polling &indicator"),
        tr("Shows a green dot in the picker header while AX polling is reading text from the target app."),
        &DebugConfig::showPollingIndicator, &DebugConfig::setShowPollingIndicator);
    add(*group, tr("Show De&bug tab"),
        tr("Adds a Debug tab to this window with the history of the Random Emoji and Random Unicode "
           "insertions."),
        &DebugConfig::showDebugTab, &DebugConfig::setShowDebugTab);
    return group;
}

QWidget* AdvancedTab::makeData() {
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins({});
    auto* button = new QPushButton(tr("Delete App Container and &Quit…"));
    const auto caption =
        tr("Removes the SQLite store, all preferences, and cached data. The app will quit and start "
           "fresh on next launch.");
    button->setAccessibleDescription(caption);
    layout->addWidget(button, 0, Qt::AlignLeading);
    layout->addWidget(makeCaption(caption));
    connect(button, &QPushButton::clicked, this, &AdvancedTab::askToDelete);
    auto* group = new FormGroup;
    group->addWide(content);
    return group;
}

void AdvancedTab::add(FormGroup& group, const QString& label, const QString& caption,
                      bool (DebugConfig::*value)() const, void (DebugConfig::*assign)(bool)) {
    auto* toggle = group.addToggle(label, caption);
    connect(toggle, &QCheckBox::toggled, this, [this, assign](bool isOn) { (debug_.*assign)(isOn); });
    switches_.push_back({toggle, value});
}

void AdvancedTab::refresh() {
    for (const auto& [toggle, value] : switches_)
        showChecked(*toggle, (debug_.*value)());
}

void AdvancedTab::askToDelete() {
    auto* question = new QMessageBox(QMessageBox::Warning, tr("Glyma Settings"),
                                     tr("Delete App Container and Quit?"), QMessageBox::NoButton, this);
    question->setInformativeText(tr("The Unicode database and all preferences (excluded apps, excluded "
                                    "websites, trigger character, etc.) "
                                    "will be deleted. The app will quit and start fresh on next launch."));
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setAttribute(Qt::WA_WindowPropagation);
    question->setWindowModality(Qt::WindowModal);
    const auto* confirm = question->addButton(tr("&Delete and Quit"), QMessageBox::DestructiveRole);
    auto* cancel = question->addButton(QMessageBox::Cancel);
    // Qt's own translations may not be installed.
    cancel->setText(FormGroup::tr("Cancel"));
    question->setDefaultButton(cancel);
    question->setEscapeButton(cancel);
    connect(confirm, &QPushButton::clicked, this, [this] { program_.deleteContainerAndQuit(); });
    question->open();
}

} // namespace glyma::qt
