#include "preferences/qt/replacements_tab.h"

#include "preferences/qt/edit_replacement_sheet.h"
#include "preferences/qt/form_parts.h"
#include "preferences/qt/snippet_list.h"
#include "preferences/typed_fields.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace glyma::qt {

namespace {

constexpr int listHeight = 380;

} // namespace

ReplacementsTab::ReplacementsTab(UserPreferences& preferences, QWidget* parent)
    : QWidget(parent)
    , preferences_(preferences)
    , list_(new SnippetList) {
    list_->setMinimumHeight(listHeight);
    auto* group = new FormGroup;
    group->addWide(list_, /*hasMargins=*/false);
    auto* layout = makePageLayout(this);
    layout->addWidget(
        makeCaption(tr("Type the trigger character followed by a keyword to insert one of these snippets.")));
    layout->addWidget(group, 1);
    layout->addWidget(makeButtons());

    connect(list_, &SnippetList::editRequested, this, &ReplacementsTab::edit);
    connect(list_, &SnippetList::removeRequested, this, &ReplacementsTab::removeSelected);
    connect(list_, &SnippetList::selectionMoved, this,
            [this] { remove_->setEnabled(!list_->selectedIdentifiers().empty()); });
    list_->setSnippets(preferences_.userReplacements());
    subscription_ =
        preferences_.changed.connect([this] { list_->setSnippets(preferences_.userReplacements()); });
}

QWidget* ReplacementsTab::makeButtons() {
    auto* buttons = new QWidget;
    auto* layout = new QHBoxLayout(buttons);
    layout->setContentsMargins({});
    const auto add = [&](const QString& sign, const QString& meaning) {
        auto* button = makeListButton(sign, meaning);
        layout->addWidget(button);
        return button;
    };
    connect(add(QStringLiteral("+"), tr("Add replacement")), &QPushButton::clicked, this,
            [this] { edit({.id = makeIdentifier_(), .name = {}, .keywords = {}, .text = {}}); });
    remove_ = add(QStringLiteral("−"), tr("Remove selected replacements"));
    remove_->setEnabled(false);
    connect(remove_, &QPushButton::clicked, this, &ReplacementsTab::removeSelected);
    layout->addStretch();
    return buttons;
}

void ReplacementsTab::edit(const UserReplacement& snippet) {
    auto* sheet = new EditReplacementSheet(
        snippet,
        [this](const UserReplacement& draft) {
            preferences_.setUserReplacements(withSaved(preferences_.userReplacements(), draft));
            list_->selectOnly(draft.id);
        },
        this);
    sheet->open();
}

void ReplacementsTab::removeSelected() {
    if (const auto selected = list_->selectedIdentifiers(); !selected.empty())
        preferences_.setUserReplacements(without(preferences_.userReplacements(), selected));
}

} // namespace glyma::qt
