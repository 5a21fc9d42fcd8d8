#include "preferences/qt/snippet_list.h"

#include "preferences/typed_fields.h"

#include <QAbstractListModel>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>

namespace glyma::qt {

namespace {

constexpr int keywordsRole = Qt::UserRole;
constexpr int textRole = Qt::UserRole + 1;
constexpr int margin = 10;
constexpr int between = 3;

/// Two lines: the name and the keywords, the text under them.
class SnippetDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
        return {100, 2 * option.fontMetrics.height() + between + 14};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        auto ground = option;
        initStyleOption(&ground, index);
        ground.text.clear();
        const auto* style = option.widget->style();
        style->drawControl(QStyle::CE_ItemViewItem, &ground, painter, option.widget);

        const bool isSelected = option.state & QStyle::State_Selected;
        const auto color = [&](QPalette::ColorRole role) {
            return option.palette.color(isSelected ? QPalette::HighlightedText : role);
        };
        painter->save();
        painter->setLayoutDirection(option.direction);
        const auto place = option.rect.adjusted(margin, 7, -margin, -7);
        const int lineHeight = option.fontMetrics.height();
        const QRect first(place.left(), place.top(), place.width(), lineHeight);
        const QRect second(place.left(), place.top() + lineHeight + between, place.width(), lineHeight);

        auto bold = option.font;
        bold.setBold(true);
        const QFontMetrics boldMetrics(bold);
        const auto name =
            boldMetrics.elidedText(index.data().toString(), Qt::ElideRight, place.width() * 2 / 3);
        painter->setFont(bold);
        painter->setPen(color(QPalette::Text));
        drawLine(*painter, first, Qt::AlignLeading, name);

        painter->setFont(option.font);
        painter->setPen(color(QPalette::PlaceholderText));
        const int rest = place.width() - boldMetrics.horizontalAdvance(name) - 16;
        const auto keywords =
            option.fontMetrics.elidedText(index.data(keywordsRole).toString(), Qt::ElideRight, rest);
        drawLine(*painter, first, Qt::AlignTrailing, keywords);

        painter->setPen(color(QPalette::Text));
        drawLine(
            *painter, second, Qt::AlignLeading,
            option.fontMetrics.elidedText(index.data(textRole).toString(), Qt::ElideRight, place.width()));
        painter->restore();
    }

private:
    static void drawLine(QPainter& painter, const QRect& place, Qt::Alignment alignment,
                         const QString& text) {
        const auto flags = QStyle::visualAlignment(painter.layoutDirection(), alignment);
        painter.drawText(place, static_cast<int>(flags | Qt::AlignVCenter) | Qt::TextSingleLine, text);
    }
};

} // namespace

class SnippetList::Model : public QAbstractListModel {
public:
    void set(const std::vector<UserReplacement>& snippets) {
        beginResetModel();
        snippets_ = snippets;
        endResetModel();
    }

    const std::vector<UserReplacement>& snippets() const { return snippets_; }
    const UserReplacement& at(const QModelIndex& index) const {
        return snippets_.at(static_cast<std::size_t>(index.row()));
    }

    int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(snippets_.size());
    }

    QVariant data(const QModelIndex& index, int role) const override {
        const auto& snippet = at(index);
        switch (role) {
        case Qt::DisplayRole:
            return snippet.name.empty() ? SnippetList::tr("Untitled") : QString::fromStdString(snippet.name);
        case textRole:
            return snippet.text.empty() ? SnippetList::tr("No text")
                                        : QString::fromStdString(snippet.text).simplified();
        case keywordsRole:
            return QString::fromStdString(joinKeywords(snippet.keywords));
        case Qt::AccessibleTextRole:
            return QStringList{data(index, Qt::DisplayRole).toString(), data(index, textRole).toString(),
                               data(index, keywordsRole).toString()}
                .join(QStringLiteral(", "));
        default:
            return {};
        }
    }

private:
    std::vector<UserReplacement> snippets_;
};

SnippetList::SnippetList(QWidget* parent)
    : QListView(parent)
    , model_(std::make_unique<Model>()) {
    setModel(model_.get());
    setItemDelegate(new SnippetDelegate(this));
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setUniformItemSizes(true);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    setAccessibleName(tr("Replacements"));
    connect(this, &QListView::doubleClicked, this,
            [this](const QModelIndex& index) { Q_EMIT editRequested(model_->at(index)); });
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &SnippetList::selectionMoved);
}

SnippetList::~SnippetList() {
    setModel(nullptr);
}

void SnippetList::setSnippets(const std::vector<UserReplacement>& snippets) {
    if (snippets == model_->snippets())
        return;
    const auto selected = selectedIdentifiers();
    model_->set(snippets);
    select(selected);
    Q_EMIT selectionMoved();
}

std::set<std::string> SnippetList::selectedIdentifiers() const {
    std::set<std::string> identifiers;
    for (const auto& index : selectionModel()->selectedIndexes())
        identifiers.insert(model_->at(index).id);
    return identifiers;
}

void SnippetList::selectOnly(const std::string& identifier) {
    selectionModel()->clear();
    select({identifier});
}

void SnippetList::select(const std::set<std::string>& identifiers) {
    for (int row = 0; row < model_->rowCount({}); ++row) {
        const auto index = model_->index(row);
        if (!identifiers.contains(model_->at(index).id))
            continue;
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::Select);
        scrollTo(index);
    }
}

void SnippetList::keyPressEvent(QKeyEvent* event) {
    const auto key = event->key();
    if (key == Qt::Key_Delete || key == Qt::Key_Backspace)
        Q_EMIT removeRequested();
    else if ((key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_F2) && currentIndex().isValid())
        Q_EMIT editRequested(model_->at(currentIndex()));
    else
        QListView::keyPressEvent(event);
}

void SnippetList::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (!model_->snippets().empty())
        return;
    QPainter painter(viewport());
    const auto area = viewport()->rect();
    const auto text = [&](const QRect& place, Qt::Alignment alignment, QPalette::ColorRole role,
                          const QString& line) {
        painter.setPen(palette().color(role));
        painter.drawText(place.adjusted(20, 0, -20, 0),
                         static_cast<int>(alignment | Qt::AlignHCenter) | Qt::TextWordWrap, line);
    };
    text(area.adjusted(0, 0, 0, -area.height() / 2 - 2), Qt::AlignBottom, QPalette::Text,
         tr("No replacements"));
    text(area.adjusted(0, area.height() / 2 + 2, 0, 0), Qt::AlignTop, QPalette::PlaceholderText,
         tr("Click + to add a custom text snippet."));
}

} // namespace glyma::qt
