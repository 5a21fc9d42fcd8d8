#pragma once

#include "preferences/qt/symbols.h"

#include <QTabBar>

#include <vector>

namespace glyma::qt {

/// The row of pages over the preferences: each a symbol above its title. A tab bar to the keyboard and to
/// screen readers.
class PageBar : public QTabBar {
public:
    explicit PageBar(QWidget* parent = nullptr);

    /// \param title  may have a mnemonic.
    void insertPage(int index, Symbol symbol, const QString& title);
    void removePage(int index);

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    void paintTab(QPainter& painter, int index);

    std::vector<Symbol> symbols_;
    int hovered_ = -1;
};

} // namespace glyma::qt
