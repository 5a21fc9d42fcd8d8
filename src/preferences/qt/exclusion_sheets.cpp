#include "preferences/qt/exclusion_sheets.h"

#include "preferences/qt/check_list.h"
#include "preferences/qt/form_parts.h"
#include "preferences/qt/named_rows.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSortFilterProxyModel>

#include <algorithm>

namespace glyma::qt {

namespace {

// Logical pixels.
constexpr int applicationIconSize = 28;
constexpr int sheetWidth = 420;

void prepare(QDialog& sheet, const QString& title) {
    sheet.setWindowTitle(title);
    sheet.setWindowModality(Qt::WindowModal);
    sheet.setAttribute(Qt::WA_DeleteOnClose);
    sheet.setAttribute(Qt::WA_WindowPropagation);
}

QString describe(DomainProblem problem, const QString& text) {
    switch (problem) {
    case DomainProblem::empty:
        return AddWebsiteSheet::tr("Type a domain, for example example.com.");
    case DomainProblem::listedAlready:
        return AddWebsiteSheet::tr("This website is in the list already.");
    case DomainProblem::notADomain:
        break;
    }
    const auto shown = text.simplified();
    return AddWebsiteSheet::tr("“%1” is not a domain. Type one like example.com, or paste a page's address.")
        .arg(shown.size() > 60 ? shown.left(60) + QChar(0x2026) : shown);
}

} // namespace

ChooseApplicationSheet::ChooseApplicationSheet(std::vector<InstalledApplication> applications,
                                               std::function<void(const InstalledApplication&)> onAdd,
                                               QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::Sheet)
    , applications_(std::move(applications))
    , onAdd_(std::move(onAdd))
    , rows_(new NamedRows({}, this))
    , shown_(new QSortFilterProxyModel(this)) {
    const auto title = tr("Choose an app to exclude from Glyma");
    prepare(*this, title);
    std::vector<NamedRow> rows;
    for (const auto& application : applications_)
        rows.push_back({.id = application.identifier,
                        .title = QString::fromStdString(application.name),
                        .caption = QString::fromStdString(application.identifier),
                        .icon = application.icon});
    rows_->set(std::move(rows));
    shown_->setSourceModel(rows_);
    shown_->setFilterRole(NamedRows::searchRole);
    shown_->setFilterCaseSensitivity(Qt::CaseInsensitive);

    list_ = new CheckList(
        tr("Applications"),
        {.paintIcon =
             [this](QPainter& painter, const QRect& box, const QModelIndex& index, const QColor& text) {
                 icons_.paint(painter, box, index.data(NamedRows::iconRole).toString().toStdString(), text);
             },
         .iconSize = applicationIconSize,
         .isCaptionBelow = true});
    list_->setModel(shown_);
    list_->setSelectionMode(QAbstractItemView::SingleSelection);
    list_->setPlaceholder(applications_.empty() ? tr("All installed applications are in the list already")
                                                : tr("No application has this in its name"));
    auto* search = new QLineEdit;
    search->setPlaceholderText(tr("Search applications…"));
    search->setAccessibleName(search->placeholderText());
    search->setClearButtonEnabled(true);
    search->installEventFilter(this);
    connect(search, &QLineEdit::textChanged, this, &ChooseApplicationSheet::filter);
    connect(list_, &CheckList::doubleClicked, this, &ChooseApplicationSheet::accept);
    connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { add_->setEnabled(list_->selectionModel()->hasSelection()); });

    auto* group = new FormGroup;
    group->addWide(list_, /*hasMargins=*/false);
    auto* layout = makePageLayout(this);
    layout->addWidget(makeSectionHeader(title));
    layout->addWidget(search);
    layout->addWidget(group, 1);
    add_ = addSheetButtons(*this, *layout, tr("&Add"));
    filter({});
    resize(sheetWidth, 460);
}

void ChooseApplicationSheet::filter(const QString& text) {
    shown_->setFilterFixedString(text.trimmed());
    list_->setCurrentIndex(shown_->index(0, 0));
    add_->setEnabled(list_->selectionModel()->hasSelection());
}

bool ChooseApplicationSheet::eventFilter(QObject* watched, QEvent* event) {
    // Up and Down move in the list while the search has the keyboard.
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Up || key->key() == Qt::Key_Down || key->key() == Qt::Key_PageUp ||
            key->key() == Qt::Key_PageDown) {
            QCoreApplication::sendEvent(list_, event);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void ChooseApplicationSheet::accept() {
    const auto selected = list_->selectionModel()->selectedIndexes();
    if (selected.isEmpty())
        return;
    const auto& id = rows_->at(shown_->mapToSource(selected.first())).id;
    onAdd_(*std::ranges::find(applications_, id, &InstalledApplication::identifier));
    QDialog::accept();
}

AddWebsiteSheet::AddWebsiteSheet(const OfferedHosts& source, std::vector<ExcludedWebsite> listed, Add add,
                                 QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::Sheet)
    , add_(std::move(add))
    , choiceCaption_(new QLabel(tr("Choose a domain from open browser tabs:")))
    , choice_(new QComboBox)
    , fieldCaption_(new QLabel(tr("Enter a domain to exclude from Glyma:")))
    , field_(new QLineEdit)
    , problem_(makeProblem()) {
    const auto title = tr("Add Excluded Website");
    prepare(*this, title);
    field_->setPlaceholderText(QStringLiteral("example.com"));
    choiceCaption_->setBuddy(choice_);
    fieldCaption_->setBuddy(field_);
    connect(field_, &QLineEdit::textEdited, this, [this] { showProblem(*problem_, {}); });
    connect(choice_, &QComboBox::currentIndexChanged, this, &AddWebsiteSheet::showFields);

    auto* layout = makePageLayout(this);
    layout->addWidget(makeSectionHeader(title));
    for (auto* widget : {static_cast<QWidget*>(choiceCaption_), static_cast<QWidget*>(choice_),
                         static_cast<QWidget*>(fieldCaption_), static_cast<QWidget*>(field_),
                         static_cast<QWidget*>(problem_)})
        layout->addWidget(widget);
    layout->addStretch();
    addSheetButtons(*this, *layout, tr("&Add"));
    showFields();
    resize(sheetWidth, sizeHint().height());

    source.pages.find([this, life = std::weak_ptr(alive_), listed = std::move(listed),
                       &scheduler = source.scheduler](const std::vector<std::string>& addresses) {
        scheduler.post([this, life, hosts = hostsToOffer(addresses, listed)] {
            if (life.lock())
                offer(hosts);
        });
    });
}

void AddWebsiteSheet::offer(const std::vector<std::string>& hosts) {
    if (hosts.empty())
        return;
    for (const auto& host : hosts)
        choice_->addItem(QString::fromStdString(host));
    choice_->addItem(tr("Other…"));
    // Who has begun to type goes on typing.
    const bool isTyping = !field_->text().isEmpty();
    choice_->setCurrentIndex(isTyping ? choice_->count() - 1 : 0);
    showFields();
    if (!isTyping)
        choice_->setFocus();
}

void AddWebsiteSheet::showFields() {
    const bool hasChoice = choice_->count() > 0;
    const bool isOther = !hasChoice || choice_->currentIndex() == choice_->count() - 1;
    choiceCaption_->setVisible(hasChoice);
    choice_->setVisible(hasChoice);
    fieldCaption_->setVisible(isOther);
    field_->setVisible(isOther);
    showProblem(*problem_, {});
    adjustSize();
}

void AddWebsiteSheet::accept() {
    const auto text = field_->isVisible() ? field_->text() : choice_->currentText();
    if (const auto added = add_(text.toStdString()); !added) {
        showProblem(*problem_, describe(added.error(), text));
        field_->setFocus();
        field_->selectAll();
        adjustSize();
        return;
    }
    QDialog::accept();
}

} // namespace glyma::qt
