#include "preferences/qt/check_list.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace glyma::qt {

namespace {

constexpr int margin = 10;
constexpr int gap = 8;
constexpr int checkBoxWidth = 18;
constexpr int linePadding = 6;

bool isCheckable(const QModelIndex& index) {
    return index.flags() & Qt::ItemIsUserCheckable;
}

QFont captionFont(QFont font) {
    font.setPointSizeF(font.pointSizeF() * 0.88);
    return font;
}

void drawLine(QPainter& painter, const QRect& place, Qt::Alignment alignment, const QString& text) {
    const auto flags = QStyle::visualAlignment(painter.layoutDirection(), alignment);
    painter.drawText(place, static_cast<int>(flags | Qt::AlignVCenter) | Qt::TextSingleLine, text);
}

/// Drawn here because the style's own box can hardly be seen on the dark ground of a group.
void paintCheckBox(QPainter& painter, const QStyleOptionViewItem& option, const QRect& place,
                   const QModelIndex& index) {
    const bool isSelected = option.state & QStyle::State_Selected;
    const auto color = [&](QPalette::ColorRole role) { return option.palette.color(role); };
    const auto full = color(isSelected ? QPalette::HighlightedText : QPalette::Highlight);
    const auto mark = color(isSelected ? QPalette::Highlight : QPalette::HighlightedText);
    const auto outline = color(isSelected ? QPalette::HighlightedText : QPalette::PlaceholderText);
    const auto state = index.data(Qt::CheckStateRole).toInt();
    const auto box = QRectF(place).adjusted(1.5, 1.5, -1.5, -1.5);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isCheckable(index))
        painter.setOpacity(0.35);
    painter.setPen(state == Qt::Unchecked ? outline : full);
    painter.setBrush(state == Qt::Unchecked ? QBrush() : QBrush(full));
    painter.drawRoundedRect(box, 4, 4);
    painter.setPen(QPen(mark, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    const auto at = [&](double x, double y) {
        return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
    };
    if (state == Qt::Checked)
        painter.drawPolyline(QPolygonF{at(0.24, 0.53), at(0.43, 0.72), at(0.77, 0.31)});
    else if (state == Qt::PartiallyChecked)
        painter.drawLine(at(0.27, 0.5), at(0.73, 0.5));
    painter.restore();
}

} // namespace

RowDelegate::RowDelegate(RowLook look, QObject* parent)
    : QStyledItemDelegate(parent)
    , look_(std::move(look)) {}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    int text = option.fontMetrics.height();
    if (look_.isCaptionBelow)
        text += QFontMetrics(captionFont(option.font)).height();
    return {100, std::max(text, look_.iconSize) + 2 * linePadding};
}

QRect RowDelegate::checkBoxZone(const QRect& row, const QModelIndex& index) {
    if (!isCheckable(index))
        return {};
    return QRect(row.topLeft(), QSize(margin + checkBoxWidth + gap / 2, row.height()));
}

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
    auto ground = option;
    initStyleOption(&ground, index);
    ground.text.clear();
    ground.features.setFlag(QStyleOptionViewItem::HasCheckIndicator, false);
    option.widget->style()->drawControl(QStyle::CE_ItemViewItem, &ground, painter, option.widget);

    painter->save();
    painter->setLayoutDirection(option.direction);
    const auto mirrored = [&](const QRect& rect) {
        return QStyle::visualRect(option.direction, option.rect, rect);
    };
    auto place = option.rect.adjusted(margin, 0, -margin, 0);
    if (index.data(Qt::CheckStateRole).isValid()) {
        const QRect box(place.left(), place.center().y() - checkBoxWidth / 2 + 1, checkBoxWidth,
                        checkBoxWidth);
        paintCheckBox(*painter, option, mirrored(box), index);
        place.setLeft(box.right() + 1 + gap);
    }
    const bool isSelected = option.state & QStyle::State_Selected;
    if (look_.paintIcon) {
        const QRect box(place.left(), place.center().y() - look_.iconSize / 2, look_.iconSize,
                        look_.iconSize);
        look_.paintIcon(*painter, mirrored(box), index,
                        option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
        place.setLeft(box.right() + 1 + gap);
    }
    paintTexts(*painter, option, mirrored(place), index);
    painter->restore();
}

void RowDelegate::paintTexts(QPainter& painter, const QStyleOptionViewItem& option, QRect place,
                             const QModelIndex& index) const {
    const bool isSelected = option.state & QStyle::State_Selected;
    const auto setColor = [&](QPalette::ColorRole role) {
        painter.setPen(option.palette.color(isSelected ? QPalette::HighlightedText : role));
    };
    const auto title = index.data().toString();
    const auto caption = index.data(captionRole).toString();
    const auto smaller = captionFont(option.font);
    const QFontMetrics metrics(option.font), smallMetrics(smaller);
    auto captionPlace = place;
    if (!caption.isEmpty() && look_.isCaptionBelow) {
        const int height = metrics.height() + smallMetrics.height();
        place = QRect(place.left(), place.center().y() - height / 2, place.width(), metrics.height());
        captionPlace = QRect(place.left(), place.bottom() + 1, place.width(), smallMetrics.height());
    } else if (!caption.isEmpty()) {
        const int width = std::min(smallMetrics.horizontalAdvance(caption) + 1, place.width() * 2 / 3);
        const int rest = place.width() - width - gap;
        captionPlace = QStyle::visualRect(
            option.direction, place, QRect(place.left() + rest + gap, place.top(), width, place.height()));
        place = QStyle::visualRect(option.direction, place,
                                   QRect(place.left(), place.top(), rest, place.height()));
    }
    painter.setFont(option.font);
    setColor(QPalette::Text);
    drawLine(painter, place, Qt::AlignLeading, metrics.elidedText(title, Qt::ElideRight, place.width()));
    painter.setFont(smaller);
    setColor(QPalette::PlaceholderText);
    drawLine(painter, captionPlace, look_.isCaptionBelow ? Qt::AlignLeading : Qt::AlignTrailing,
             smallMetrics.elidedText(caption, Qt::ElideRight, captionPlace.width()));
}

bool RowDelegate::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                              const QModelIndex& index) {
    if (!isCheckable(index))
        return false;
    const auto isOnCheckBox = [&] {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        return mouse->button() == Qt::LeftButton &&
               checkBoxZone(option.rect, index).contains(mouse->position().toPoint());
    };
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return isOnCheckBox();
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
        return isOnCheckBox() && (event->type() == QEvent::MouseButtonDblClick ||
                                  model->setData(index, {}, Qt::CheckStateRole));
    case QEvent::KeyPress: {
        const auto key = static_cast<QKeyEvent*>(event)->key();
        return (key == Qt::Key_Space || key == Qt::Key_Select) &&
               model->setData(index, {}, Qt::CheckStateRole);
    }
    default:
        return false;
    }
}

CheckList::CheckList(const QString& name, RowLook look, QWidget* parent)
    : QListView(parent) {
    setItemDelegate(new RowDelegate(std::move(look), this));
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setUniformItemSizes(true);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    setAccessibleName(name);
}

QSize CheckList::sizeHint() const {
    // As little as makes sense: the pages have a fixed height, of which it takes its share.
    return {160, 4 * fontMetrics().height()};
}

void CheckList::setPlaceholder(const QString& text) {
    placeholder_ = text;
    viewport()->update();
}

QItemSelectionModel::SelectionFlags CheckList::selectionCommand(const QModelIndex& index,
                                                                const QEvent* event) const {
    const bool isMouse =
        event && (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease ||
                  event->type() == QEvent::MouseMove);
    if (isMouse && index.isValid()) {
        const auto place = static_cast<const QMouseEvent*>(event)->position().toPoint();
        if (RowDelegate::checkBoxZone(visualRect(index), index).contains(place))
            return QItemSelectionModel::NoUpdate;
    }
    return QListView::selectionCommand(index, event);
}

void CheckList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QListView::currentChanged(current, previous);
    Q_EMIT currentMoved(current);
}

void CheckList::dataChanged(const QModelIndex& first, const QModelIndex& last, const QList<int>& roles) {
    QListView::dataChanged(first, last, roles);
    if (!QAccessible::isActive() || !currentIndex().isValid())
        return;
    // Who has just pressed space wants to hear what it did.
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(this, changed);
    event.setChild(currentIndex().row());
    QAccessible::updateAccessibility(&event);
}

void CheckList::keyPressEvent(QKeyEvent* event) {
    const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
    if (isPlain && (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right))
        Q_EMIT sidewaysPressed(static_cast<Qt::Key>(event->key()));
    else if (isPlain && (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace))
        Q_EMIT removeRequested();
    else
        QListView::keyPressEvent(event);
}

void CheckList::enter(Qt::FocusReason reason) {
    setFocus(reason);
    if (!selectionModel()->hasSelection())
        selectionModel()->setCurrentIndex(currentIndex().isValid() ? currentIndex() : model()->index(0, 0),
                                          QItemSelectionModel::ClearAndSelect);
}

void CheckList::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (model() && model()->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(16, 16, -16, -16),
                     static_cast<int>(Qt::AlignCenter) | Qt::TextWordWrap, placeholder_);
}

} // namespace glyma::qt
