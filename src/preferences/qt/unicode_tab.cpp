#include "preferences/qt/unicode_tab.h"

#include "charinfo/qt/character_detail_collection.h"
#include "preferences/qt/check_list.h"
#include "preferences/qt/form_parts.h"
#include "preferences/qt/test_field.h"
#include "preferences/qt/unicode_lists.h"
#include "translation/message_text.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QProgressBar>
#include <QStackedWidget>

#include <algorithm>

namespace glyma::qt {

namespace {

// Logical pixels.
constexpr int blocksWidth = 300;
constexpr int detailsWidth = 304;
constexpr int glyphSize = 30;

// The phases of an import, which the catalogue tells in English.
[[maybe_unused]] constexpr const char* phases[] = {
    QT_TRANSLATE_NOOP("glyma::Message", "Importing Blocks.txt"),
    QT_TRANSLATE_NOOP("glyma::Message", "Importing UnicodeData.txt"),
    QT_TRANSLATE_NOOP("glyma::Message", "Checking font coverage"),
    QT_TRANSLATE_NOOP("glyma::Message", "Importing annotations.json"),
    QT_TRANSLATE_NOOP("glyma::Message", "Importing Unikemet.txt"),
    QT_TRANSLATE_NOOP("glyma::Message", "Inserting characters"),
    QT_TRANSLATE_NOOP("glyma::Message", "Inserting Unicode blocks"),
    QT_TRANSLATE_NOOP("glyma::Message", "Finalizing"),
    QT_TRANSLATE_NOOP("glyma::Message", "Restoring user data"),
};

QLineEdit* makeFilter(const QString& placeholder) {
    auto* filter = new QLineEdit;
    filter->setPlaceholderText(placeholder);
    filter->setAccessibleName(placeholder);
    filter->setClearButtonEnabled(true);
    return filter;
}

/// A column of a header, a filter (or null) and what it filters.
QWidget* makeColumn(QLayout* header, QLineEdit* filter, QWidget* content) {
    auto* column = new QWidget;
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins({});
    layout->setSpacing(6);
    layout->addLayout(header);
    if (filter != nullptr)
        layout->addWidget(filter);
    auto* group = new FormGroup;
    group->addWide(content, /*hasMargins=*/false);
    layout->addWidget(group, 1);
    return column;
}

QHBoxLayout* makeHeader(const QString& title, QLabel* note = nullptr) {
    auto* header = new QHBoxLayout;
    header->addWidget(makeSectionHeader(title));
    header->addStretch();
    if (note != nullptr)
        header->addWidget(note, 0, Qt::AlignBottom);
    return header;
}

QLabel* makeMessage(const QString& text) {
    auto* label = makeCaption(text);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

bool isPlainKey(const QEvent* event, Qt::Key key) {
    return event->type() == QEvent::KeyPress && static_cast<const QKeyEvent*>(event)->key() == key &&
           !(static_cast<const QKeyEvent*>(event)->modifiers() & ~Qt::KeypadModifier);
}

} // namespace

UnicodeTab::UnicodeTab(const UnicodeTabServices& services, QWidget* parent)
    : QWidget(parent)
    , services_(services)
    , model_(services.catalogue)
    , glyphs_(services.fonts)
    , blockRows_(new BlockListModel(model_, this))
    , characterRows_(new CharacterListModel(model_, this))
    , pages_(new QStackedWidget) {
    pages_->addWidget(makeColumns());
    pages_->addWidget(makeImportPage());
    auto* layout = makePageLayout(this);
    layout->addWidget(pages_, 1);
    layout->addLayout(makeTestRow());
    connectFocusKeys();

    detailsDue_.setSingleShot(true);
    detailsDue_.setInterval(0);
    connect(&detailsDue_, &QTimer::timeout, this, &UnicodeTab::showDetails);
    // Connected after the lists' own models, so that these know the rows already.
    subscriptions_.push_back(model_.shownBlocksChanged.connect([this] { blocksListed(); }));
    subscriptions_.push_back(model_.shownCharsChanged.connect([this] { charactersListed(); }));
    subscriptions_.push_back(model_.selectionChanged.connect([this] { detailsDue_.start(); }));
    subscriptions_.push_back(model_.valuesChanged.connect([this] { detailsDue_.start(); }));
    subscriptions_.push_back(model_.importChanged.connect([this] { showImport(); }));
    subscriptions_.push_back(services_.preferences.changed.connect([this] { showTrigger(); }));
    charactersListed();
    showDetails();
    showImport();
    showTrigger();
}

UnicodeTab::~UnicodeTab() = default;

QWidget* UnicodeTab::makeColumns() {
    auto* columns = new QWidget;
    auto* layout = new QHBoxLayout(columns);
    layout->setContentsMargins({});
    layout->setSpacing(14);
    layout->addWidget(makeBlocksColumn());
    layout->addWidget(makeCharactersColumn(), 1);
    layout->addWidget(makeDetailsColumn());
    return columns;
}

QWidget* UnicodeTab::makeBlocksColumn() {
    blocks_ = new CheckList(tr("Blocks"), {});
    blocks_->setModel(blockRows_);
    blocks_->setSelectionMode(QAbstractItemView::SingleSelection);
    blocks_->setPlaceholder(tr("No block has this in its name"));
    connect(blocks_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        const auto rows = blocks_->selectionModel()->selectedIndexes();
        if (!isRestoring_ && !rows.isEmpty())
            model_.selectBlock(blockRows_->block(rows.first()).name);
    });
    auto* filter = makeFilter(tr("Filter blocks…"));
    connect(filter, &QLineEdit::textChanged, this,
            [this](const QString& text) { model_.setBlockFilter(text.toStdString()); });
    filter->installEventFilter(this);
    filter->setProperty("list", QVariant::fromValue<QWidget*>(blocks_));
    auto* column = makeColumn(makeHeader(tr("Blocks")), filter, blocks_);
    column->setFixedWidth(blocksWidth);
    return column;
}

QWidget* UnicodeTab::makeCharactersColumn() {
    const auto paintGlyph = [this](QPainter& painter, const QRect& box, const QModelIndex& index,
                                   const QColor& color) {
        glyphs_.draw(painter, box, characterRows_->record(index).character, glyphSize * 0.78, color);
    };
    characters_ = new CheckList(tr("Characters"),
                                {.paintIcon = paintGlyph, .iconSize = glyphSize, .isCaptionBelow = true});
    characters_->setModel(characterRows_);
    characters_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    connect(characters_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &UnicodeTab::takeSelection);
    auto* filter = makeFilter(tr("Filter characters…"));
    connect(filter, &QLineEdit::textChanged, this,
            [this](const QString& text) { model_.setCharFilter(text.toStdString()); });
    filter->installEventFilter(this);
    filter->setProperty("list", QVariant::fromValue<QWidget*>(characters_));
    characterCount_ = makeCaption({});
    characterCount_->setWordWrap(false);
    return makeColumn(makeHeader(tr("Characters"), characterCount_), filter, characters_);
}

QWidget* UnicodeTab::makeDetailsColumn() {
    details_ = new CharacterDetailCollection(glyphs_, /*showsCardChrome=*/false);
    details_->setFocusPolicy(Qt::StrongFocus);
    details_->setAccessibleName(tr("Details"));
    details_->installEventFilter(this);
    noDetails_ = makeMessage(tr("Select one or more characters"));
    detailPages_ = new QStackedWidget;
    detailPages_->addWidget(noDetails_);
    detailPages_->addWidget(details_);
    detailPages_->setContentsMargins(12, 12, 4, 8);
    auto* column = makeColumn(makeHeader(tr("Details")), nullptr, detailPages_);
    column->setFixedWidth(detailsWidth);
    return column;
}

QWidget* UnicodeTab::makeImportPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    importTitle_ = makeSectionHeader({});
    importTitle_->setAlignment(Qt::AlignCenter);
    importStatus_ = makeMessage({});
    auto* bar = new QProgressBar;
    bar->setRange(0, 0);
    bar->setTextVisible(false);
    bar->setFixedWidth(240);
    bar->setAccessibleName(tr("Importing Unicode data…"));
    importBar_ = bar;
    layout->addStretch();
    layout->addWidget(importTitle_);
    layout->addWidget(bar, 0, Qt::AlignHCenter);
    layout->addWidget(importStatus_);
    layout->addStretch();
    return page;
}

QLayout* UnicodeTab::makeTestRow() {
    testField_ = new TestField(services_.flags);
    auto* label = new QLabel(tr("&Test Picker"));
    label->setBuddy(testField_);
    auto* row = new QHBoxLayout;
    row->setSpacing(10);
    row->addWidget(label);
    row->addWidget(testField_, 1);
    return row;
}

void UnicodeTab::connectFocusKeys() {
    connect(blocks_, &CheckList::sidewaysPressed, this, [this](Qt::Key key) {
        if (key == Qt::Key_Right)
            characters_->enter(Qt::TabFocusReason);
    });
    connect(characters_, &CheckList::sidewaysPressed, this, [this](Qt::Key key) {
        if (key == Qt::Key_Left)
            blocks_->enter(Qt::BacktabFocusReason);
        else if (detailPages_->currentWidget() == details_)
            details_->setFocus(Qt::TabFocusReason);
    });
}

bool UnicodeTab::eventFilter(QObject* watched, QEvent* event) {
    if (watched == details_ && isPlainKey(event, Qt::Key_Left)) {
        characters_->enter(Qt::BacktabFocusReason);
        return true;
    }
    // From a filter down into what it has found.
    if (auto* list = qobject_cast<CheckList*>(watched->property("list").value<QWidget*>());
        list && isPlainKey(event, Qt::Key_Down)) {
        list->enter(Qt::TabFocusReason);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void UnicodeTab::blocksListed() {
    if (!model_.selectedBlockName())
        return;
    const auto index = blockRows_->indexOf(*model_.selectedBlockName());
    isRestoring_ = true;
    if (index.isValid())
        blocks_->setCurrentIndex(index);
    isRestoring_ = false;
}

void UnicodeTab::charactersListed() {
    const bool hasBlock = model_.selectedBlockName().has_value();
    characters_->setPlaceholder(!hasBlock                     ? tr("Select a block")
                                : model_.blockChars().empty() ? tr("No font support")
                                                              : tr("No character matches the filter"));
    characterCount_->setText(hasBlock ? QLocale().toString(characterRows_->rowCount()) : QString());
    isRestoring_ = true;
    QItemSelection selection;
    for (int row = 0; row < characterRows_->rowCount() && !model_.selectedChars().empty(); ++row)
        if (const auto index = characterRows_->index(row);
            model_.selectedChars().contains(characterRows_->record(index).character))
            selection.select(index, index);
    characters_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    isRestoring_ = false;
}

void UnicodeTab::takeSelection() {
    if (isRestoring_)
        return;
    std::set<std::string> characters;
    for (const auto& index : characters_->selectionModel()->selectedIndexes())
        characters.insert(characterRows_->record(index).character);
    model_.selectChars(std::move(characters));
}

void UnicodeTab::showDetails() {
    std::vector<CharacterInfo> infos;
    for (const auto& character : model_.detailedChars()) {
        auto found = services_.infos.buildInfos(character, 1);
        const auto record = std::ranges::find(model_.blockChars(), character, &UnicodeChar::character);
        for (auto& info : found) {
            // The store may not know yet.
            info.isEnabled = record->isEnabled;
            infos.push_back(std::move(info));
        }
    }
    const auto omitted = model_.selectedOmitted();
    details_->setInfos(infos,
                       omitted == 0 ? std::nullopt : std::optional(tr("%1 more selected").arg(omitted)));
    detailPages_->setCurrentWidget(infos.empty() ? static_cast<QWidget*>(noDetails_) : details_);
}

void UnicodeTab::showImport() {
    const bool hasFailed = !model_.isImporting() && !model_.importFailure().empty();
    importTitle_->setText(hasFailed ? tr("The library is not available") : tr("Importing Unicode data…"));
    importStatus_->setText(textOf(hasFailed ? model_.importFailure() : model_.importStatus()));
    importBar_->setVisible(!hasFailed);
    pages_->setCurrentIndex(model_.isImporting() || hasFailed ? 1 : 0);
}

void UnicodeTab::showTrigger() {
    testField_->setPlaceholderText(
        tr("Type %1 and the beginning of a name")
            .arg(QString::fromStdString(services_.preferences.triggerCharacter())));
}

} // namespace glyma::qt
