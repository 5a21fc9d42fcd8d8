#pragma once

#include <QAbstractListModel>
#include <QModelIndex>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace glyma::qt {

/// One row that stands for something with an identifier.
struct NamedRow {
    std::string id;
    QString title;
    QString caption = {};
    std::string icon = {};
    std::optional<bool> isChecked = std::nullopt; ///< none: cannot be switched
    bool operator==(const NamedRow&) const = default;
};

/// Such rows for a list. Main thread.
class NamedRows : public QAbstractListModel {
    Q_OBJECT

public:
    static constexpr int searchRole = Qt::UserRole + 1; ///< all texts
    static constexpr int iconRole = Qt::UserRole + 2;

    /// \param onSwitch  told the identifier and the new state; the rows do not change by themselves.
    explicit NamedRows(std::function<void(const std::string& id, bool isChecked)> onSwitch = {},
                       QObject* parent = nullptr);

    /// Views keep their selection when only the states differ.
    void set(std::vector<NamedRow> rows);
    const NamedRow& at(const QModelIndex& index) const;
    QModelIndex indexOf(const std::string& id) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    std::function<void(const std::string&, bool)> onSwitch_;
    std::vector<NamedRow> rows_;
};

} // namespace glyma::qt
