#pragma once

#include "preferences/tabs/unicode_tab_model.h"

#include <QAbstractListModel>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace glyma::qt {

/// The blocks that the filter lets through, as a list shows and switches them.
class BlockListModel : public QAbstractListModel {
    Q_OBJECT

public:
    /// \param model  outlives this one.
    explicit BlockListModel(UnicodeTabModel& model, QObject* parent = nullptr);

    const UnicodeBlock& block(const QModelIndex& index) const;
    /// Invalid when it is not shown.
    QModelIndex indexOf(const std::string& name) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    UnicodeTabModel& model_;
    std::vector<std::size_t> rows_;
    std::vector<Subscription> subscriptions_;
};

/// The characters of the selected block that the filter lets through.
class CharacterListModel : public QAbstractListModel {
    Q_OBJECT

public:
    /// \param model  outlives this one.
    explicit CharacterListModel(UnicodeTabModel& model, QObject* parent = nullptr);

    const UnicodeChar& record(const QModelIndex& index) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    UnicodeTabModel& model_;
    std::vector<std::size_t> rows_;
    std::vector<Subscription> subscriptions_;
};

} // namespace glyma::qt
