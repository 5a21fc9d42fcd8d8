#include "preferences/qt/debug_tab.h"

#include "preferences/qt/form_parts.h"
#include "unicode/text.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <fmt/format.h>

#include <ranges>

namespace glyma::qt {

namespace {

constexpr int listHeight = 150;

} // namespace

QString codePoints(const std::string& text) {
    QStringList codes;
    for (const char32_t scalar : unicode::scalars(text))
        codes.append(QString::fromStdString(fmt::format("U+{:04X}", static_cast<std::uint32_t>(scalar))));
    return codes.join(QLatin1Char(' '));
}

DebugTab::DebugTab(UnicodeDataManager& catalogue, QWidget* parent)
    : QWidget(parent)
    , catalogue_(catalogue) {
    auto* layout = makePageLayout(this);
    layout->addWidget(
        makeCaption(tr("Characters inserted by the Random Emoji and Random Unicode entries, newest first.")));
    layout->addWidget(makeSection(emoji_, tr("Random Emoji")));
    layout->addWidget(makeSection(unicode_, tr("Random Unicode")));
    const auto fillBoth = [this] {
        fill(emoji_);
        fill(unicode_);
    };
    fillBoth();
    subscription_ = catalogue_.randomPickHistoryDidChange.connect(fillBoth);
}

QWidget* DebugTab::makeSection(History& history, const QString& heading) {
    history.count = makeCaption({});
    history.count->setWordWrap(false);
    history.clear = new QPushButton(tr("Clear"));
    history.clear->setAccessibleName(tr("Clear %1").arg(heading));
    connect(history.clear, &QPushButton::clicked, this,
            [this, isEmoji = history.isEmoji] { catalogue_.clearRandomPickHistory(isEmoji); });
    history.list = new QListWidget;
    history.list->setFixedHeight(listHeight);
    history.list->setFrameShape(QFrame::NoFrame);
    history.list->viewport()->setAutoFillBackground(false);
    history.list->setUniformItemSizes(true);
    history.list->setAccessibleName(heading);
    auto larger = history.list->font();
    larger.setPointSizeF(larger.pointSizeF() * 1.25);
    history.list->setFont(larger);

    auto* section = new QWidget;
    auto* column = new QVBoxLayout(section);
    column->setContentsMargins({});
    auto* head = new QHBoxLayout;
    head->addWidget(makeSectionHeader(heading));
    head->addWidget(history.count, 1, Qt::AlignBottom);
    head->addWidget(history.clear);
    column->addLayout(head);
    auto* group = new FormGroup;
    group->addWide(history.list);
    column->addWidget(group);
    return section;
}

void DebugTab::fill(const History& history) {
    const auto picks = catalogue_.randomPickHistory(history.isEmoji);
    const auto count = picks.size();
    history.count->setText(count == 1 ? tr("1 pick") : tr("%1 picks").arg(count));
    history.clear->setEnabled(count > 0);
    history.list->clear();
    for (const auto& pick : picks | std::views::reverse)
        history.list->addItem(QStringLiteral("%1   %2").arg(QString::fromStdString(pick.character),
                                                            codePoints(pick.character)));
    if (picks.empty()) {
        auto* nothing = new QListWidgetItem(tr("No picks recorded yet."), history.list);
        nothing->setFlags(Qt::NoItemFlags);
    }
}

} // namespace glyma::qt
