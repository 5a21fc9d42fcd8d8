#include "charinfo/qt/character_detail_view.h"

#include "charinfo/detail_rows.h"
#include "charinfo/qt/copy_buttons.h"
#include "charinfo/qt/glyph_tile.h"
#include "picker/qt/theme.h"
#include "translation/message_text.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace glyma::qt {

namespace {

// Logical pixels.
constexpr int padding = 14;
constexpr double radius = 10;
constexpr int gap = 12;
constexpr int columnGap = 10;
constexpr int rowGap = 4;

constexpr double nameScale = 1.15;
constexpr double captionOpacity = 0.68;

// The tones' names, which are data everywhere else.
[[maybe_unused]] constexpr const char* toneNames[] = {
    QT_TRANSLATE_NOOP("glyma::Message", "light skin tone"),
    QT_TRANSLATE_NOOP("glyma::Message", "medium-light skin tone"),
    QT_TRANSLATE_NOOP("glyma::Message", "medium skin tone"),
    QT_TRANSLATE_NOOP("glyma::Message", "medium-dark skin tone"),
    QT_TRANSLATE_NOOP("glyma::Message", "dark skin tone"),
};

QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

QGridLayout* twoColumns() {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(columnGap);
    grid->setVerticalSpacing(rowGap);
    grid->setColumnStretch(1, 1);
    return grid;
}

} // namespace

CharacterDetailView::CharacterDetailView(Glyphs& glyphs, const CharacterInfo& info, bool showsChrome,
                                         QWidget* parent)
    : QWidget(parent)
    , showsChrome_(showsChrome) {
    auto* layout = new QVBoxLayout(this);
    const int margin = showsChrome ? padding : 0;
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(gap);
    layout->addLayout(makeHeader(glyphs, info));
    layout->addLayout(makeFacts(info));
    layout->addStretch(1);
    setAccessibleName(QString::fromStdString(info.name));
    dimCaptions();
}

QLayout* CharacterDetailView::makeHeader(Glyphs& glyphs, const CharacterInfo& info) {
    const auto nameText = QString::fromStdString(info.name);
    auto* name = makeText(nameText);
    auto font = name->font();
    font.setWeight(QFont::DemiBold);
    font.setPointSizeF(font.pointSizeF() * nameScale);
    name->setFont(font);
    auto* side = new QVBoxLayout;
    side->setSpacing(8);
    side->addWidget(name);
    side->addStretch();
    auto* buttons = new CopyButtons(info.character, nameText);
    side->addWidget(buttons);
    setFocusProxy(buttons);
    auto* header = new QHBoxLayout;
    header->setSpacing(gap);
    header->addWidget(new GlyphTile(glyphs, std::string(describedPart(info.character))), 0, Qt::AlignTop);
    header->addLayout(side, 1);
    return header;
}

QLayout* CharacterDetailView::makeFacts(const CharacterInfo& info) {
    auto* grid = twoColumns();
    for (const auto& scalar : info.scalars)
        addFact(*grid, scalar.hex, scalar.name);
    if (info.omittedScalars > 0)
        grid->addWidget(makeCaption(tr("and %1 more").arg(info.omittedScalars)), grid->rowCount(), 1);
    grid->setRowMinimumHeight(grid->rowCount(), gap - 2 * rowGap);
    for (const auto& [label, value] : detailRows(info, translated))
        addFact(*grid, label, value);
    return grid;
}

void CharacterDetailView::addFact(QGridLayout& grid, const std::string& label, const std::string& value) {
    const int row = grid.rowCount();
    auto* text = makeText(QString::fromStdString(value));
    auto* caption = makeCaption(QString::fromStdString(label));
    caption->setBuddy(text);
    grid.addWidget(caption, row, 0, Qt::AlignTop);
    grid.addWidget(text, row, 1, Qt::AlignTop);
}

QLabel* CharacterDetailView::makeText(const QString& text) {
    auto* label = new QLabel(text, this);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QLabel* CharacterDetailView::makeCaption(const QString& text) {
    auto* label = new QLabel(text, this);
    label->setTextFormat(Qt::PlainText);
    captions_.append(label);
    return label;
}

void CharacterDetailView::dimCaptions() {
    const auto ground = palette().color(showsChrome_ ? QPalette::Base : QPalette::Window);
    auto colors = palette();
    colors.setColor(QPalette::WindowText,
                    blended(withAlpha(colors.color(QPalette::WindowText), captionOpacity), ground));
    for (auto* caption : captions_)
        caption->setPalette(colors);
}

void CharacterDetailView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange)
        dimCaptions();
    QWidget::changeEvent(event);
}

void CharacterDetailView::paintEvent(QPaintEvent*) {
    if (!showsChrome_)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(palette().color(QPalette::Base));
    painter.setPen(QPen(withAlpha(palette().color(QPalette::WindowText), 0.12), 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

} // namespace glyma::qt
