#include "preferences/qt/unicode_lists.h"

#include "preferences/qt/check_list.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>

namespace glyma::qt {

namespace {

QString countText(const UnicodeBlock& block, std::int64_t enabled) {
    if (block.characterCount == 0)
        return BlockListModel::tr("No font support");
    const QLocale locale;
    return BlockListModel::tr("(%1 of %2)")
        .arg(locale.toString(static_cast<qlonglong>(enabled)),
             locale.toString(static_cast<qlonglong>(block.characterCount)));
}

Qt::CheckState toQt(UnicodeTabModel::CheckState state) {
    switch (state) {
    case UnicodeTabModel::CheckState::on:
        return Qt::Checked;
    case UnicodeTabModel::CheckState::mixed:
        return Qt::PartiallyChecked;
    case UnicodeTabModel::CheckState::off:
        break;
    }
    return Qt::Unchecked;
}

QString useText(const UnicodeChar& record) {
    if (record.usageCount == 0)
        return {};
    const auto uses = CharacterListModel::tr("%1 uses").arg(record.usageCount);
    if (!record.lastUsed)
        return uses;
    const auto when = QDateTime::fromMSecsSinceEpoch(
        std::chrono::duration_cast<Milliseconds>(record.lastUsed->time_since_epoch()).count());
    return uses + QStringLiteral("   ") +
           CharacterListModel::tr("last: %1").arg(QLocale().toString(when, QLocale::ShortFormat));
}

} // namespace

BlockListModel::BlockListModel(UnicodeTabModel& model, QObject* parent)
    : QAbstractListModel(parent)
    , model_(model)
    , rows_(model.shownBlocks()) {
    subscriptions_.push_back(model.shownBlocksChanged.connect([this] {
        beginResetModel();
        rows_ = model_.shownBlocks();
        endResetModel();
    }));
    subscriptions_.push_back(model.valuesChanged.connect([this] {
        if (!rows_.empty())
            Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    }));
}

const UnicodeBlock& BlockListModel::block(const QModelIndex& index) const {
    return model_.blocks().at(rows_.at(static_cast<std::size_t>(index.row())));
}

QModelIndex BlockListModel::indexOf(const std::string& name) const {
    const auto row = std::ranges::find(rows_, name, [this](std::size_t position) -> const std::string& {
        return model_.blocks()[position].name;
    });
    return row == rows_.end() ? QModelIndex() : index(static_cast<int>(row - rows_.begin()));
}

int BlockListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant BlockListModel::data(const QModelIndex& index, int role) const {
    const auto& shown = block(index);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return QString::fromStdString(shown.name);
    case Qt::CheckStateRole:
        return toQt(model_.checkState(shown));
    case RowDelegate::captionRole:
        return countText(shown, model_.enabledCount(shown));
    case Qt::AccessibleTextRole:
        return QString(QString::fromStdString(shown.name) + QLatin1Char(' ') +
                       countText(shown, model_.enabledCount(shown)));
    default:
        return {};
    }
}

bool BlockListModel::setData(const QModelIndex& index, const QVariant&, int role) {
    if (role != Qt::CheckStateRole)
        return false;
    const auto name = block(index).name;
    model_.toggleBlock(name);
    return true;
}

Qt::ItemFlags BlockListModel::flags(const QModelIndex& index) const {
    auto flags = QAbstractListModel::flags(index);
    if (index.isValid() && block(index).characterCount > 0)
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

CharacterListModel::CharacterListModel(UnicodeTabModel& model, QObject* parent)
    : QAbstractListModel(parent)
    , model_(model)
    , rows_(model.shownChars()) {
    subscriptions_.push_back(model.shownCharsChanged.connect([this] {
        beginResetModel();
        rows_ = model_.shownChars();
        endResetModel();
    }));
    subscriptions_.push_back(model.valuesChanged.connect([this] {
        if (!rows_.empty())
            Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    }));
}

const UnicodeChar& CharacterListModel::record(const QModelIndex& index) const {
    return model_.blockChars().at(rows_.at(static_cast<std::size_t>(index.row())));
}

int CharacterListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant CharacterListModel::data(const QModelIndex& index, int role) const {
    const auto& shown = record(index);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return QString::fromStdString(shown.name);
    case Qt::CheckStateRole:
        return shown.isEnabled ? Qt::Checked : Qt::Unchecked;
    case RowDelegate::captionRole:
        return useText(shown);
    case Qt::AccessibleTextRole:
        return QStringList{QString::fromStdString(shown.character), QString::fromStdString(shown.name),
                           useText(shown).simplified()}
            .join(QLatin1Char(' '))
            .trimmed();
    default:
        return {};
    }
}

bool CharacterListModel::setData(const QModelIndex& index, const QVariant&, int role) {
    if (role != Qt::CheckStateRole)
        return false;
    const auto character = record(index).character;
    model_.toggleChar(character);
    return true;
}

Qt::ItemFlags CharacterListModel::flags(const QModelIndex& index) const {
    return QAbstractListModel::flags(index) | Qt::ItemIsUserCheckable;
}

} // namespace glyma::qt
