#include "picker/qt/picker_view.h"

#include "picker/qt/picker_accessibility.h"

#include <QMouseEvent>
#include <QPainter>
#include <QRandomGenerator>
#include <QWheelEvent>

#include <algorithm>
#include <chrono>
#include <utility>

namespace glyma::qt {

namespace {

constexpr std::chrono::milliseconds randomInterval{150};
/// A search takes a few milliseconds; the sign of a long one must not flash up at every key.
constexpr std::chrono::milliseconds busyDelay{100};
constexpr std::chrono::milliseconds busyInterval{40};
constexpr int busyStep = 24;
constexpr int wheelNotch = 120;
constexpr std::chrono::milliseconds scrollBarDuration{900};
constexpr double scrollBarWidth = 4;
constexpr double shortestScrollBar = 24;

QString qString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void paintScrollBar(QPainter& painter, const ListGeometry& list, const Theme& theme) {
    if (list.maximumOffset() == 0)
        return;
    const double track = list.viewportHeight();
    const double content = track + list.maximumOffset();
    const double length = std::max(shortestScrollBar, track * track / content);
    const double top = layout::listTop + (track - length) * list.offset / list.maximumOffset();
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.scrollBar);
    painter.drawRoundedRect(QRectF(list.panel.width() - scrollBarWidth - 3, top, scrollBarWidth, length),
                            scrollBarWidth / 2, scrollBarWidth / 2);
}

} // namespace

PickerView::PickerView(PickerServices& services, const Appearance& appearance,
                       const CompositorWatch& compositor, Glyphs& glyphs)
    : FloatingSurface(appearance, compositor, layout::panelRadius)
    , services_(services)
    , header_(glyphs)
    , rows_(glyphs)
    , noResults_(glyphs)
    , modelSubscription_(services.model.changed.connect([this] { modelChanged(); }))
    , preferencesSubscription_(services.preferences.changed.connect([this] { update(); }))
    , debugSubscription_(services.debug.changed.connect([this] { update(); })) {
    setMouseTracking(true);
    installPickerAccessibility();
    setAccessibleName(QStringLiteral("Glyma"));
    randomTimer_.setInterval(randomInterval);
    connect(&randomTimer_, &QTimer::timeout, this, [this] {
        pickRandomIcons();
        update();
    });
    scrollBarTimer_.setSingleShot(true);
    scrollBarTimer_.setInterval(scrollBarDuration);
    connect(&scrollBarTimer_, &QTimer::timeout, this, [this] { update(); });
    connect(&busyTimer_, &QTimer::timeout, this, [this] { tick(); });
}

void PickerView::changeEvent(QEvent* event) {
    FloatingSurface::changeEvent(event);
    if (event->type() != QEvent::ApplicationFontChange && event->type() != QEvent::FontChange)
        return;
    header_.refreshFonts();
    rows_.refreshFonts();
    update();
}

ListGeometry PickerView::list() const {
    return {services_.model.items().size(), panel().size(), offset_};
}

QRect PickerView::skinToneButton() const {
    return PickerHeader::skinToneButton(panel().width(), showsPollingDot())
        .translated(panel().topLeft() + geometry().topLeft());
}

QueryMatch PickerView::queryMatch() const {
    return {services_.model.query(), services_.preferences.useFuzzySearch()};
}

RowContent PickerView::rowContentAt(std::size_t index) const {
    const auto& item = services_.model.items()[index];
    auto content = rowContent(item, queryMatch(),
                              {services_.preferences.skinToneModifier(), services_.model.isAltHeld(),
                               services_.debug.showRankingInfo()});
    if (const auto pool = randomPoolOf(item))
        if (const auto icon = randomIcons_.find(*pool); icon != randomIcons_.end())
            content.icon = icon->second;
    return content;
}

bool PickerView::isSelected(std::size_t index) const {
    return static_cast<std::ptrdiff_t>(index) == services_.model.selectedIndex();
}

// What the model says.

void PickerView::modelChanged() {
    const auto& model = services_.model;
    if (std::exchange(shownQuery_, model.query()) != model.query()) {
        offset_ = 0;
        pickRandomIcons();
    }
    const bool isEmpty = model.items().empty();
    if (!std::exchange(wasEmpty_, isEmpty) && isEmpty)
        noResults_.appear();
    if (!isVisible())
        return;
    offset_ = std::clamp(offset_, 0, list().maximumOffset());
    followSelection();
    updateTimers();
    update();
}

void PickerView::followSelection() {
    auto& model = services_.model;
    if (!model.needsScrollToSelection())
        return;
    if (model.selectedIndex() >= 0 &&
        model.selectedIndex() < static_cast<std::ptrdiff_t>(model.items().size()))
        setOffset(list().offsetShowing(static_cast<std::size_t>(model.selectedIndex())));
    model.setNeedsScrollToSelection(false);
}

void PickerView::setOffset(int offset) {
    offset = std::clamp(offset, 0, list().maximumOffset());
    if (std::exchange(offset_, offset) == offset)
        return;
    scrollBarTimer_.start();
    updateTimers();
    update();
}

// What moves by itself.

void PickerView::updateTimers() {
    if (!isVisible() || !showsRandomIcon()) {
        randomTimer_.stop();
    } else if (!randomTimer_.isActive()) {
        pickRandomIcons();
        randomTimer_.start();
    }

    if (!isVisible() || !services_.model.isSearching()) {
        busyTimer_.stop();
        isBusyShown_ = false;
    } else if (!busyTimer_.isActive()) {
        busyTimer_.start(busyDelay);
    }
}

void PickerView::tick() {
    isBusyShown_ = true;
    busyAngle_ = (busyAngle_ + busyStep) % 360;
    busyTimer_.setInterval(busyInterval);
    update(PickerHeader::progress(panel().width(), showsPollingDot()).translated(panel().topLeft()));
}

bool PickerView::showsRandomIcon() const {
    const auto geometry = list();
    for (auto index = geometry.firstVisible(); index < geometry.endVisible(); ++index)
        if (randomPoolOf(services_.model.items()[index]))
            return true;
    return false;
}

void PickerView::pickRandomIcons() {
    if (!services_.randomPool || !showsRandomIcon())
        return;
    for (const bool isEmoji : {true, false}) {
        const auto& pool = services_.randomPool(isEmoji);
        if (!pool.empty())
            randomIcons_[isEmoji] =
                pool[QRandomGenerator::global()->bounded(static_cast<quint32>(pool.size()))];
    }
}

void PickerView::showEvent(QShowEvent* event) {
    FloatingSurface::showEvent(event);
    offset_ = 0;
    hoveredRow_.reset();
    isButtonHovered_ = false;
    scrollBarTimer_.stop();
    if (services_.model.items().empty())
        noResults_.appear();
    followSelection();
    updateTimers();
}

void PickerView::hideEvent(QHideEvent* event) {
    updateTimers();
    pressedRow_.reset();
    FloatingSurface::hideEvent(event);
}

// Drawing.

QString PickerView::echo() const {
    return qString(services_.model.trigger() + services_.model.query());
}

HeaderState PickerView::headerState() const {
    const auto& model = services_.model;
    HeaderState state;
    state.echo = echo();
    state.skinToneModifier = services_.preferences.skinToneModifier();
    state.isBusy = isBusyShown_;
    state.busyAngle = busyAngle_;
    state.isButtonHovered = isButtonHovered_;
    if (showsPollingDot())
        state.pollingDot = model.isKeystrokeMode() ? QColor(0, 122, 255)
                           : model.isPolling()     ? QColor(40, 205, 65)
                                                   : QColor(255, 59, 48);
    return state;
}

void PickerView::paintPanel(QPainter& painter) {
    header_.paint(painter, panel().width(), headerState(), theme());
    if (services_.model.items().empty())
        noResults_.paint(painter,
                         QRectF(0, layout::listTop, panel().width(), panel().height() - layout::chromeHeight),
                         theme());
    else
        paintList(painter);
}

void PickerView::paintList(QPainter& painter) {
    const auto geometry = list();
    painter.save();
    painter.setClipRect(geometry.viewport(), Qt::IntersectClip);
    for (auto index = geometry.firstVisible(); index < geometry.endVisible(); ++index)
        rows_.paint(painter, geometry.row(index), rowContentAt(index),
                    {isSelected(index), hoveredRow_ == index}, theme());
    painter.restore();
    if (scrollBarTimer_.isActive())
        paintScrollBar(painter, geometry, theme());
}

void PickerView::warmUp() {
    QPixmap canvas(QSize(320, 101) * devicePixelRatioF());
    canvas.setDevicePixelRatio(devicePixelRatioF());
    QPainter painter(&canvas);
    RowContent sample;
    sample.icon = "😀";
    sample.name = {{"smiling", true}, {" face", false}};
    sample.keyword = "… happy";
    sample.detail = "text";
    sample.ranking = "text:0";
    rows_.paint(painter, QRectF(4, 49, 312, 48), sample, {}, theme());
    HeaderState header;
    header.echo = ":smile";
    header_.paint(painter, 320, header, theme());
    noResults_.appear();
    noResults_.paint(painter, QRectF(0, 49, 320, 48), theme());
}

// The pointer.

void PickerView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const auto point = event->pos() - panel().topLeft();
    if (PickerHeader::skinToneButton(panel().width(), showsPollingDot()).contains(point)) {
        if (onSkinToneButton)
            onSkinToneButton();
        return;
    }
    pressedRow_ = list().rowAt(point);
}

void PickerView::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

void PickerView::mouseReleaseEvent(QMouseEvent* event) {
    const auto pressed = std::exchange(pressedRow_, std::nullopt);
    if (event->button() != Qt::LeftButton || !pressed ||
        list().rowAt(event->pos() - panel().topLeft()) != pressed)
        return;
    // The choice closes the picker, which empties the list: the callee keeps a copy of its own.
    const auto item = services_.model.items()[*pressed];
    services_.model.clickRow(static_cast<std::ptrdiff_t>(*pressed), item);
}

void PickerView::mouseMoveEvent(QMouseEvent* event) {
    const auto point = event->pos() - panel().topLeft();
    const auto row = list().rowAt(point);
    const bool isOverButton =
        PickerHeader::skinToneButton(panel().width(), showsPollingDot()).contains(point);
    const bool rowDiffers = std::exchange(hoveredRow_, row) != row;
    if (std::exchange(isButtonHovered_, isOverButton) != isOverButton || rowDiffers)
        update();
}

void PickerView::leaveEvent(QEvent* event) {
    hoveredRow_.reset();
    isButtonHovered_ = false;
    update();
    FloatingSurface::leaveEvent(event);
}

void PickerView::wheelEvent(QWheelEvent* event) {
    event->accept();
    hoveredRow_.reset();
    if (!event->pixelDelta().isNull()) {
        setOffset(offset_ - event->pixelDelta().y());
        return;
    }
    wheelRemainder_ += event->angleDelta().y();
    const int notches = wheelRemainder_ / wheelNotch;
    wheelRemainder_ -= notches * wheelNotch;
    setOffset(offset_ - notches * layout::rowHeight);
}

} // namespace glyma::qt
