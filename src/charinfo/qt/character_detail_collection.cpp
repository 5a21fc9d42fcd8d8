#include "charinfo/qt/character_detail_collection.h"

#include "charinfo/qt/character_detail_view.h"

#include <QGridLayout>
#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace glyma::qt {

namespace {

// Logical pixels.
constexpr int gap = 10;
constexpr int narrowestCard = 260;

} // namespace

CharacterDetailCollection::CharacterDetailCollection(Glyphs& glyphs, bool showsCardChrome, QWidget* parent)
    : QScrollArea(parent)
    , glyphs_(glyphs)
    , showsCardChrome_(showsCardChrome)
    , content_(new QWidget)
    , grid_(new QGridLayout)
    , footnote_(new QLabel) {
    auto* layout = new QVBoxLayout(content_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(gap);
    grid_->setSpacing(gap);
    layout->addLayout(grid_, 1);
    layout->addWidget(footnote_);
    footnote_->setAlignment(Qt::AlignHCenter);
    footnote_->setForegroundRole(QPalette::PlaceholderText);
    setWidget(content_);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The window's ground shows through.
    viewport()->setAutoFillBackground(false);
    content_->setAutoFillBackground(false);
}

void CharacterDetailCollection::setInfos(const std::vector<CharacterInfo>& infos,
                                         const std::optional<QString>& footnote) {
    for (auto* card : cards_)
        delete card;
    cards_.clear();
    for (const auto& info : infos)
        cards_.push_back(new CharacterDetailView(glyphs_, info, showsCardChrome_, content_));
    footnote_->setText(footnote.value_or(QString()));
    footnote_->setVisible(footnote.has_value());
    columns_ = 0;
    arrange();
    verticalScrollBar()->setValue(0);
}

void CharacterDetailCollection::focusFirst() {
    if (!cards_.empty())
        cards_.front()->setFocus(Qt::TabFocusReason);
}

void CharacterDetailCollection::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    arrange();
}

void CharacterDetailCollection::arrange() {
    const int fitting = std::max(1, (viewport()->width() + gap) / (narrowestCard + gap));
    const int columns = std::min(fitting, std::max(1, static_cast<int>(cards_.size())));
    if (columns == columns_)
        return;
    for (int column = 0; column < columns_; ++column)
        grid_->setColumnStretch(column, 0);
    columns_ = columns;
    for (int column = 0; column < columns; ++column)
        grid_->setColumnStretch(column, 1);
    for (std::size_t index = 0; index < cards_.size(); ++index) {
        const int at = static_cast<int>(index);
        grid_->addWidget(cards_[index], at / columns, at % columns);
        cards_[index]->show();
    }
}

} // namespace glyma::qt
