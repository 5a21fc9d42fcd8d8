#include "preferences/qt/named_rows.h"

#include "preferences/qt/check_list.h"

#include <algorithm>

namespace glyma::qt {

NamedRows::NamedRows(std::function<void(const std::string&, bool)> onSwitch, QObject* parent)
    : QAbstractListModel(parent)
    , onSwitch_(std::move(onSwitch)) {}

void NamedRows::set(std::vector<NamedRow> rows) {
    if (rows == rows_)
        return;
    if (std::ranges::equal(rows, rows_, {}, &NamedRow::id, &NamedRow::id)) {
        rows_ = std::move(rows);
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
        return;
    }
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
}

const NamedRow& NamedRows::at(const QModelIndex& index) const {
    return rows_.at(static_cast<std::size_t>(index.row()));
}

QModelIndex NamedRows::indexOf(const std::string& id) const {
    const auto row = std::ranges::find(rows_, id, &NamedRow::id);
    return row == rows_.end() ? QModelIndex() : index(static_cast<int>(row - rows_.begin()));
}

int NamedRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant NamedRows::data(const QModelIndex& index, int role) const {
    const auto& row = at(index);
    switch (role) {
    case Qt::DisplayRole:
        return row.title;
    case Qt::CheckStateRole:
        return row.isChecked ? QVariant(*row.isChecked ? Qt::Checked : Qt::Unchecked) : QVariant();
    case RowDelegate::captionRole:
        return row.caption;
    case iconRole:
        return QString::fromStdString(row.icon);
    case searchRole:
    case Qt::AccessibleTextRole:
        return QString(row.title + QLatin1Char(' ') + row.caption).trimmed();
    default:
        return {};
    }
}

bool NamedRows::setData(const QModelIndex& index, const QVariant&, int role) {
    if (role != Qt::CheckStateRole || !at(index).isChecked)
        return false;
    const auto row = at(index);
    onSwitch_(row.id, !*row.isChecked);
    return true;
}

Qt::ItemFlags NamedRows::flags(const QModelIndex& index) const {
    auto flags = QAbstractListModel::flags(index);
    if (index.isValid() && at(index).isChecked)
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

} // namespace glyma::qt
