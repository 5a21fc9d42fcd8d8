#include "preferences/qt/exclusions_tab.h"

#include "preferences/qt/check_list.h"
#include "preferences/qt/exclusion_sheets.h"
#include "preferences/qt/form_parts.h"
#include "preferences/qt/named_rows.h"

#include <QHBoxLayout>
#include <QPushButton>

#include <algorithm>

namespace glyma::qt {

namespace {

constexpr int iconSize = 24; // logical pixels

} // namespace

ExclusionsTab::ExclusionsTab(const ExclusionsTabServices& services, QWidget* parent)
    : QWidget(parent)
    , services_(services)
    , apps_(makeAppSection())
    , websites_(makeWebsiteSection()) {
    auto* layout = makePageLayout(this);
    layout->addWidget(makeCaption(tr("Glyma will not activate in the apps and websites listed below.")));
    const auto addSection = [&](const QString& title, Section& section, const QString& addMeaning,
                                const QString& removeMeaning) {
        auto* group = new FormGroup;
        group->addWide(section.list, /*hasMargins=*/false);
        layout->addWidget(makeSectionHeader(title));
        layout->addWidget(group, 1);
        layout->addWidget(makeButtons(section, addMeaning, removeMeaning));
    };
    addSection(tr("Excluded Applications"), apps_, tr("Add excluded application"),
               tr("Remove selected application"));
    addSection(tr("Excluded Websites"), websites_, tr("Add excluded website"), tr("Remove selected website"));
    connect(apps_.add, &QPushButton::clicked, this, &ExclusionsTab::addApp);
    connect(websites_.add, &QPushButton::clicked, this, &ExclusionsTab::addWebsite);
    const auto connectRemoving = [this](const Section& section,
                                        void (*remove)(UserPreferences&, std::string_view)) {
        const auto removeNow = [this, &section, remove] { removeSelected(section, remove); };
        connect(section.remove, &QPushButton::clicked, this, removeNow);
        connect(section.list, &CheckList::removeRequested, this, removeNow);
    };
    connectRemoving(apps_, removeExcludedApp);
    connectRemoving(websites_, removeExcludedWebsite);
    refresh();
    subscription_ = services_.preferences.changed.connect([this] { refresh(); });
}

ExclusionsTab::Section ExclusionsTab::makeAppSection() {
    Section section;
    section.rows =
        new NamedRows([this](const std::string& id,
                             bool isExcluded) { setAppExcluded(services_.preferences, id, isExcluded); },
                      this);
    section.list = new CheckList(
        tr("Excluded Applications"),
        {.paintIcon =
             [this](QPainter& painter, const QRect& box, const QModelIndex& index, const QColor& text) {
                 icons_.paint(painter, box, index.data(NamedRows::iconRole).toString().toStdString(), text);
             },
         .iconSize = iconSize});
    section.list->setPlaceholder(tr("Glyma activates in every application"));
    section.list->setModel(section.rows);
    return section;
}

ExclusionsTab::Section ExclusionsTab::makeWebsiteSection() {
    Section section;
    section.rows = new NamedRows(
        [this](const std::string& domain, bool isExcluded) {
            setWebsiteExcluded(services_.preferences, domain, isExcluded);
        },
        this);
    section.list = new CheckList(tr("Excluded Websites"),
                                 {.paintIcon = [](QPainter& painter, const QRect& box, const QModelIndex&,
                                                  const QColor& text) { paintGlobe(painter, box, text); },
                                  .iconSize = iconSize});
    section.list->setPlaceholder(tr("Glyma activates on every website"));
    section.list->setModel(section.rows);
    return section;
}

QWidget* ExclusionsTab::makeButtons(Section& section, const QString& addMeaning,
                                    const QString& removeMeaning) {
    auto* buttons = new QWidget;
    auto* layout = new QHBoxLayout(buttons);
    layout->setContentsMargins({});
    const auto add = [&](const QString& sign, const QString& meaning) {
        auto* button = makeListButton(sign, meaning);
        layout->addWidget(button);
        return button;
    };
    section.add = add(QStringLiteral("+"), addMeaning);
    section.remove = add(QStringLiteral("−"), removeMeaning);
    section.remove->setEnabled(false);
    layout->addStretch();
    connect(section.list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [&section] { section.remove->setEnabled(section.list->selectionModel()->hasSelection()); });
    return buttons;
}

void ExclusionsTab::refresh() {
    std::vector<NamedRow> rows;
    for (const auto& app : services_.preferences.excludedApps()) {
        const auto installed = services_.applications.find(app.bundleID);
        rows.push_back({.id = app.bundleID,
                        .title = QString::fromStdString(app.name),
                        .icon = installed ? installed->icon : std::string(),
                        .isChecked = app.isExcluded});
    }
    apps_.rows->set(std::move(rows));
    rows.clear();
    for (const auto& website : services_.preferences.excludedWebsites())
        rows.push_back({.id = website.domain,
                        .title = QString::fromStdString(website.domain),
                        .isChecked = website.isExcluded});
    websites_.rows->set(std::move(rows));
    for (const auto* section : {&apps_, &websites_})
        section->remove->setEnabled(section->list->selectionModel()->hasSelection());
}

void ExclusionsTab::addApp() {
    auto* sheet = new ChooseApplicationSheet(
        applicationsToOffer(services_.applications, services_.preferences.excludedApps()),
        [this](const InstalledApplication& application) {
            addExcludedApp(services_.preferences, application);
            selectOnly(apps_, application.identifier);
        },
        this);
    sheet->open();
}

void ExclusionsTab::addWebsite() {
    auto* sheet = new AddWebsiteSheet(
        {services_.pages, services_.scheduler}, services_.preferences.excludedWebsites(),
        [this](const std::string& text) {
            auto added = addExcludedWebsite(services_.preferences, text);
            if (added)
                selectOnly(websites_, *added);
            return added;
        },
        this);
    sheet->open();
}

void ExclusionsTab::removeSelected(const Section& section,
                                   void (*remove)(UserPreferences&, std::string_view)) {
    const auto selected = section.list->selectionModel()->selectedIndexes();
    if (selected.isEmpty())
        return;
    const int row = selected.first().row();
    const auto id = section.rows->at(selected.first()).id;
    remove(services_.preferences, id);
    // The next one, so that the key can be pressed again.
    if (const int count = section.rows->rowCount(); count > 0)
        section.list->setCurrentIndex(section.rows->index(std::min(row, count - 1)));
}

void ExclusionsTab::selectOnly(const Section& section, const std::string& id) {
    section.list->setCurrentIndex(section.rows->indexOf(id));
}

} // namespace glyma::qt
