#include "picker/qt/picker_accessibility.h"

#include "picker/qt/picker_view.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include <algorithm>
#include <map>
#include <memory>

namespace glyma::qt {

namespace {

class RowInterface : public QAccessibleInterface {
public:
    RowInterface(PickerView& view, std::size_t index)
        : view_(view)
        , index_(index) {}

    bool isValid() const override { return index_ < view_.list().itemCount; }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&view_); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void setText(QAccessible::Text, const QString&) override {}
    QAccessible::Role role() const override { return QAccessible::ListItem; }

    QString text(QAccessible::Text kind) const override {
        if (!isValid())
            return {};
        const auto content = view_.rowContentAt(index_);
        if (kind == QAccessible::Description)
            return QString::fromStdString(content.detail.empty() ? content.keyword : content.detail);
        QString name = QString::fromStdString(content.icon) + QLatin1Char(' ');
        for (const auto& run : content.name)
            name += QString::fromUtf8(run.text.data(), static_cast<qsizetype>(run.text.size()));
        return kind == QAccessible::Name ? name : QString();
    }

    QRect rect() const override {
        return view_.list().row(index_).translated(view_.panel().topLeft() + view_.geometry().topLeft());
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.selectable = true;
        state.selected = view_.isSelected(index_);
        state.invisible = !view_.isVisible();
        state.offscreen = index_ < view_.list().firstVisible() || index_ >= view_.list().endVisible();
        return state;
    }

private:
    PickerView& view_;
    std::size_t index_;
};

class ListInterface : public QAccessibleWidget {
public:
    explicit ListInterface(PickerView& view)
        : QAccessibleWidget(&view, QAccessible::List)
        , view_(view) {}
    ~ListInterface() override {
        for (const auto& [index, id] : rows_)
            QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override { return static_cast<int>(view_.list().itemCount); }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Description ? view_.echo() : QAccessibleWidget::text(kind);
    }

    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount())
            return nullptr;
        auto [row, isNew] = rows_.try_emplace(index, QAccessible::Id{});
        if (isNew)
            row->second = QAccessible::registerAccessibleInterface(
                new RowInterface(view_, static_cast<std::size_t>(index)));
        return QAccessible::accessibleInterface(row->second);
    }

    QAccessibleInterface* childAt(int x, int y) const override {
        const auto row =
            view_.list().rowAt(QPoint(x, y) - view_.geometry().topLeft() - view_.panel().topLeft());
        return row ? child(static_cast<int>(*row)) : nullptr;
    }

    int indexOfChild(const QAccessibleInterface* wanted) const override {
        const auto found = std::ranges::find_if(
            rows_, [&](const auto& row) { return QAccessible::accessibleInterface(row.second) == wanted; });
        return found == rows_.end() ? -1 : found->first;
    }

private:
    PickerView& view_;
    mutable std::map<int, QAccessible::Id> rows_;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* view = dynamic_cast<PickerView*>(object);
    return view ? new ListInterface(*view) : nullptr;
}

} // namespace

void installPickerAccessibility() {
    QAccessible::installFactory(makeInterface);
}

} // namespace glyma::qt
