#pragma once

#include <QListView>
#include <QStyledItemDelegate>

#include <functional>

namespace glyma::qt {

/// How the rows of a list look.
struct RowLook {
    /// Draws what stands before the title. Empty: nothing does.
    std::function<void(QPainter& painter, const QRect& box, const QModelIndex& index, const QColor& text)>
        paintIcon;
    int iconSize = 0; ///< logical pixels
    bool isCaptionBelow = false;
};

/// Rows of a check box, an icon, a title and a quieter caption, of which the model gives what it has.
class RowDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    static constexpr int captionRole = Qt::UserRole;

    explicit RowDelegate(RowLook look, QObject* parent = nullptr);

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    /// Where a click toggles; empty for a row without a check box.
    static QRect checkBoxZone(const QRect& row, const QModelIndex& index);

protected:
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

private:
    void paintTexts(QPainter& painter, const QStyleOptionViewItem& option, QRect place,
                    const QModelIndex& index) const;

    RowLook look_;
};

/// A list whose rows can be switched: by a click on the check box, which leaves the selection alone, or by
/// space. Letters look for a row that begins with them. Its model is told of switching by setData() with
/// Qt::CheckStateRole, whatever the value.
class CheckList : public QListView {
    Q_OBJECT

public:
    /// \param name  for screen readers.
    CheckList(const QString& name, RowLook look, QWidget* parent = nullptr);

    /// What an empty list says.
    void setPlaceholder(const QString& text);
    QSize sizeHint() const override;
    /// Takes the keyboard, and selects a row where none is: what follows from it shows at once.
    void enter(Qt::FocusReason reason);

Q_SIGNALS:
    /// The left or right arrow key was pressed, which a list of one column has no use for.
    void sidewaysPressed(Qt::Key key);
    void removeRequested();
    void currentMoved(const QModelIndex& current);

protected:
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void dataChanged(const QModelIndex& first, const QModelIndex& last, const QList<int>& roles) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString placeholder_;
};

} // namespace glyma::qt
