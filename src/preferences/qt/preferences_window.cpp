#include "preferences/qt/preferences_window.h"

#include "preferences/qt/page_bar.h"
#include "preferences/qt/window_palette.h"

#include <QApplication>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QStyle>
#include <QVBoxLayout>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>

namespace glyma::qt {

namespace {

using std::chrono_literals::operator""ms;

constexpr const char* selectedTabKey = "glymaSelectedPrefsTab";
constexpr int greatestContentHeight = 800;
constexpr auto resizeTime = 180ms;
/// A window manager that gives the keyboard at all has done so by then.
constexpr auto activationTime = 120ms;

/// The ground of the bar, closed by a line.
class BarGround : public QWidget {
protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(0, height() - 1, width(), 1, lineColor(palette()));
    }
};

QScrollArea* makePageArea() {
    auto* area = new QScrollArea;
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    // Otherwise the page's ground would be the view's: that of lists and fields.
    area->viewport()->setBackgroundRole(QPalette::Window);
    return area;
}

int fittingHeight(const QWidget& content, int width) {
    const auto* layout = content.layout();
    return layout && layout->hasHeightForWidth() ? layout->totalHeightForWidth(width)
                                                 : content.sizeHint().height();
}

/// The size that the frame's decoration leaves of the screen.
QSize roomOnScreen(const QWidget& window) {
    return window.screen()->availableSize() - (window.frameSize() - window.size());
}

} // namespace

PreferencesWindow::PreferencesWindow(PreferencesWindowServices services, std::vector<PreferencesPage> pages)
    : QWidget(nullptr, Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                           Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint)
    , services_(std::move(services))
    , pages_(std::move(pages)) {}

std::string PreferencesWindow::currentPage() const {
    const auto stored = services_.settings.value(selectedTabKey);
    const auto id = stored && stored->is_string() ? stored->get<std::string>() : std::string();
    const auto isShown = [&](const PreferencesPage& page) {
        return page.id == id && (!page.isThere || page.isThere());
    };
    return std::ranges::any_of(pages_, isShown) ? id : pages_.front().id;
}

void PreferencesWindow::show() {
    show(currentPage());
}

void PreferencesWindow::show(const std::string& id) {
    services_.log.debug("Glyma: [prefs] openPreferences tab={} active={}", id, isActiveWindow());
    if (!bar_)
        build();
    select(id);
    if (!isVisible()) {
        fit();
        const auto screen = this->screen()->availableGeometry();
        move(screen.center() - rect().center());
    }
    bringToFront();
}

void PreferencesWindow::build() {
    setWindowTitle(tr("Glyma Settings"));
    appearance_ = std::make_unique<Appearance>();
    applyPalette();
    appearanceSubscription_ = appearance_->changed.connect([this] { applyPalette(); });

    bar_ = new PageBar;
    bar_->setAccessibleName(tr("Pages"));
    stack_ = new QStackedWidget;
    auto* ground = new BarGround;
    auto* groundLayout = new QVBoxLayout(ground);
    groundLayout->setContentsMargins(8, 6, 8, 7);
    groundLayout->addWidget(bar_, 0, Qt::AlignHCenter);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    layout->setSizeConstraint(QLayout::SetNoConstraint);
    layout->addWidget(ground);
    layout->addWidget(stack_, 1);

    connect(bar_, &PageBar::currentChanged, this, &PreferencesWindow::barMovedTo);
    connect(&resizing_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        const auto frame = value.toRect();
        setFixedSize(frame.size());
        setGeometry(frame);
    });
    fitting_.setSingleShot(true);
    connect(&fitting_, &QTimer::timeout, this, &PreferencesWindow::fit);
    activation_.setSingleShot(true);
    connect(&activation_, &QTimer::timeout, this, [this] {
        reportState(isActiveWindow() ? "shown" : "activation not granted; asking the desktop");
        if (!isActiveWindow() && services_.activate)
            services_.activate(winId());
    });
    addShortcuts();
    syncPages();
    debugSubscription_ = services_.debug.changed.connect([this] { syncPages(); });
    bar_->setFocus();
}

void PreferencesWindow::addShortcuts() {
    const auto add = [this](const QKeySequence& keys, auto action) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
    };
    for (const auto& keys : {QKeySequence(Qt::CTRL | Qt::Key_W), QKeySequence(Qt::Key_Escape)})
        add(keys, [this] { close(); });
    for (const auto& keys : {QKeySequence(Qt::CTRL | Qt::Key_Tab), QKeySequence(Qt::CTRL | Qt::Key_PageDown)})
        add(keys, [this] { step(1); });
    for (const auto& keys :
         {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab), QKeySequence(Qt::CTRL | Qt::Key_PageUp)})
        add(keys, [this] { step(-1); });
}

void PreferencesWindow::syncPages() {
    std::size_t position = 0;
    for (const auto& page : pages_) {
        const bool isTab = position < tabs_.size() && tabs_[position].page == &page;
        const bool isThere = !page.isThere || page.isThere();
        if (isThere && !isTab)
            insertTab(position, page);
        else if (!isThere && isTab)
            removeTab(position);
        if (isThere)
            ++position;
    }
}

void PreferencesWindow::insertTab(std::size_t position, const PreferencesPage& page) {
    const QSignalBlocker blocker(bar_);
    const auto index = static_cast<int>(position);
    auto* area = makePageArea();
    tabs_.insert(tabs_.begin() + index, {&page, area});
    stack_->insertWidget(index, area);
    bar_->insertPage(index, page.symbol, page.title);
}

void PreferencesWindow::removeTab(std::size_t position) {
    if (currentPage() == tabs_[position].page->id || bar_->currentIndex() == static_cast<int>(position))
        select(tabs_[position > 0 ? position - 1 : 1].page->id);
    const QSignalBlocker blocker(bar_);
    bar_->removePage(static_cast<int>(position));
    stack_->removeWidget(tabs_[position].area);
    // Its switch may be what is being handled.
    tabs_[position].area->deleteLater();
    tabs_.erase(tabs_.begin() + static_cast<std::ptrdiff_t>(position));
}

void PreferencesWindow::select(const std::string& id) {
    const int index = static_cast<int>(indexOf(id).value_or(0));
    if (bar_->currentIndex() == index)
        barMovedTo(index);
    else
        bar_->setCurrentIndex(index);
}

void PreferencesWindow::barMovedTo(int index) {
    const auto& tab = tabs_.at(static_cast<std::size_t>(index));
    if (!tab.area->widget()) {
        auto* content = tab.page->make();
        content->setAutoFillBackground(false);
        content->installEventFilter(this);
        tab.area->setWidget(content);
    }
    stack_->setCurrentWidget(tab.area);
    services_.settings.set(selectedTabKey, tab.page->id);
    if (isVisible())
        fit();
}

void PreferencesWindow::step(int by) {
    const int count = bar_->count();
    bar_->setCurrentIndex((bar_->currentIndex() + by + count) % count);
}

std::optional<std::size_t> PreferencesWindow::indexOf(const std::string& id) const {
    const auto place = std::ranges::find(tabs_, id, [](const Tab& tab) { return tab.page->id; });
    return place != tabs_.end() ? std::optional(static_cast<std::size_t>(place - tabs_.begin()))
                                : std::nullopt;
}

bool PreferencesWindow::eventFilter(QObject* watched, QEvent* event) {
    // Something came or went in the page.
    if (event->type() == QEvent::LayoutRequest && isVisible())
        fitting_.start(0);
    return QWidget::eventFilter(watched, event);
}

QSize PreferencesWindow::fittingSize() const {
    const auto& [page, area] = tabs_.at(static_cast<std::size_t>(bar_->currentIndex()));
    const auto* ground = bar_->parentWidget();
    const int width = std::max(page->width, ground->sizeHint().width());
    const int content = page->height.value_or(fittingHeight(*area->widget(), width));
    if (content > greatestContentHeight)
        services_.log.debug("Glyma: [prefs] the {} tab needs {}pt, clamped to {}pt — it will scroll",
                            page->id, content, greatestContentHeight);
    const QSize wanted(width, ground->sizeHint().height() + std::min(content, greatestContentHeight));
    return wanted.boundedTo(roomOnScreen(*this));
}

void PreferencesWindow::fit() {
    const auto size = fittingSize();
    // Beside a scroll bar lines wrap earlier, and an area that had one while it was too small may keep it for
    // that.
    auto& area = *tabs_.at(static_cast<std::size_t>(bar_->currentIndex())).area;
    const int room = size.height() - bar_->parentWidget()->sizeHint().height();
    area.setVerticalScrollBarPolicy(
        fittingHeight(*area.widget(), size.width()) <= room ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
    const auto from = geometry();
    resizing_.stop();
    if (from.size() == size)
        return;
    const int time = style()->styleHint(QStyle::SH_Widget_Animation_Duration) > 0 ? resizeTime.count() : 0;
    if (!isVisible() || time == 0) {
        setFixedSize(size);
        return;
    }
    QRect to(from.topLeft(), size);
    to.moveLeft(from.left() - (size.width() - from.width()) / 2);
    resizing_.setDuration(time);
    resizing_.setEasingCurve(QEasingCurve::InOutQuad);
    resizing_.setStartValue(from);
    resizing_.setEndValue(to);
    resizing_.start();
}

void PreferencesWindow::bringToFront() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    QWidget::show();
    raise();
    activateWindow();
    activation_.start(activationTime);
}

void PreferencesWindow::reportState(std::string_view event) {
    services_.log.debug("Glyma: [prefs] {}: active={} visible={} screen={}", event, isActiveWindow(),
                        isVisible(), screen()->name().toStdString());
}

void PreferencesWindow::applyPalette() {
    setPalette(windowPalette(appearance_->theme(), QApplication::palette()));
}

} // namespace glyma::qt
