#include "preferences/qt/page_bar_accessibility.h"

#include "preferences/qt/page_bar.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleWidget>

#include <algorithm>
#include <map>

namespace glyma::qt {

namespace {

QString withoutMnemonic(QString title) {
    return title.remove(QLatin1Char('&'));
}

class TabInterface : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    TabInterface(PageBar& bar, int index)
        : bar_(bar)
        , index_(index) {}

    bool isValid() const override { return index_ < bar_.count(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&bar_); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void setText(QAccessible::Text, const QString&) override {}
    QAccessible::Role role() const override { return QAccessible::PageTab; }

    QString text(QAccessible::Text kind) const override {
        return isValid() && kind == QAccessible::Name ? withoutMnemonic(bar_.tabText(index_)) : QString();
    }

    QRect rect() const override { return bar_.tabRect(index_).translated(bar_.mapToGlobal(QPoint())); }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.invisible = !bar_.isVisible();
        state.focusable = true;
        state.focused = isCurrent() && bar_.hasFocus();
        state.selectable = true;
        state.selected = isCurrent();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override {
        if (isValid() && name == pressAction())
            bar_.setCurrentIndex(index_);
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    bool isCurrent() const { return bar_.currentIndex() == index_; }

    PageBar& bar_;
    int index_;
};

class BarInterface : public QAccessibleWidget {
public:
    explicit BarInterface(PageBar& bar)
        : QAccessibleWidget(&bar, QAccessible::PageTabList)
        , bar_(bar) {}
    ~BarInterface() override {
        for (const auto& [index, id] : tabs_)
            QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override { return bar_.count(); }
    QAccessibleInterface* focusChild() const override {
        return bar_.hasFocus() ? child(bar_.currentIndex()) : nullptr;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        return child(bar_.tabAt(bar_.mapFromGlobal(QPoint(x, y))));
    }

    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount())
            return nullptr;
        auto [tab, isNew] = tabs_.try_emplace(index, QAccessible::Id{});
        if (isNew)
            tab->second = QAccessible::registerAccessibleInterface(new TabInterface(bar_, index));
        return QAccessible::accessibleInterface(tab->second);
    }

    int indexOfChild(const QAccessibleInterface* wanted) const override {
        const auto found = std::ranges::find_if(
            tabs_, [&](const auto& tab) { return QAccessible::accessibleInterface(tab.second) == wanted; });
        return found == tabs_.end() ? -1 : found->first;
    }

    QAccessible::State state() const override {
        auto state = QAccessibleWidget::state();
        state.focused = false; // the current tab has it
        return state;
    }

private:
    PageBar& bar_;
    mutable std::map<int, QAccessible::Id> tabs_;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* bar = dynamic_cast<PageBar*>(object);
    return bar ? new BarInterface(*bar) : nullptr;
}

} // namespace

void installPageBarAccessibility() {
    [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(makeInterface), true);
}

} // namespace glyma::qt
