#include "picker/qt/emoji_picker_panel.h"

#include "picker/placement.h"
#include "picker/qt/picker_layout.h"
#include "picker/qt/screen_at.h"

#include <QScreen>

#include <algorithm>
#include <chrono>
#include <utility>

namespace glyma::qt {

namespace {

constexpr std::chrono::milliseconds warmUpDuration{60};
constexpr QRect offScreen(-4000, -4000, 320, 389);

double scaleAt(const Rect& caret) {
    const auto* screen = screenAt(caret.centre());
    return screen ? screen->devicePixelRatio() : 1;
}

} // namespace

EmojiPickerPanel::EmojiPickerPanel(PickerServices services)
    : services_(std::move(services))
    , glyphs_(services_.fonts)
    , view_(services_, appearance_, compositor_, glyphs_)
    , skinToneMenu_(appearance_, compositor_, glyphs_)
    , appearanceSubscription_(appearance_.changed.connect([this] { refreshSurfaces(); }))
    , compositorSubscription_(compositor_.changed.connect([this] { refreshSurfaces(); })) {
    view_.setWindowTitle(QCoreApplication::translate("glyma::qt::EmojiPickerPanel", "Glyma picker"));
    view_.onSkinToneButton = [this] { openSkinToneMenu(); };
    warmUpEnd_.setSingleShot(true);
    QObject::connect(&warmUpEnd_, &QTimer::timeout, [this] { view_.hide(); });
    services_.model.setOnItemsChanged([this] {
        if (isShown_)
            placeAtCaret(lastCaretRect_);
    });
}

EmojiPickerPanel::~EmojiPickerPanel() {
    services_.model.setOnItemsChanged(nullptr);
}

void EmojiPickerPanel::warmUp() {
    if (isShown_)
        return;
    view_.warmUp();
    view_.setPanel(offScreen, offScreen);
    view_.show();
    warmUpEnd_.start(warmUpDuration);
}

void EmojiPickerPanel::placeAtCaret(const Rect& caret) {
    const auto screens = services_.screens.all();
    auto next = pickerFrame(caret, services_.model.items().size(), services_.preferences.visiblePickerRows(),
                            services_.debug.showRankingInfo(), screens);
    if (isShown_ && caret == lastCaretRect_)
        next = keptAbove(frame_, next, caret, scaleAt(caret));
    lastCaretRect_ = caret;
    frame_ = next;
    applyFrame();
}

void EmojiPickerPanel::applyFrame() {
    auto* screen = screenAt(lastCaretRect_.centre());
    if (!screen)
        return;
    const auto panel = logicalRect(frame_, screen->geometry().topLeft(), screen->devicePixelRatio());
    // While the picker is open only the edge away from the caret moves.
    const int tallest = layout::chromeHeight +
                        static_cast<int>(services_.preferences.visiblePickerRows()) * layout::rowHeight;
    auto reserve = panel;
    if (frame_.y < lastCaretRect_.y)
        reserve.setTop(panel.bottom() + 1 - std::max(tallest, panel.height()));
    else
        reserve.setHeight(std::max(tallest, panel.height()));
    view_.setScreen(screen);
    view_.setPanel(panel, reserve.intersected(screen->geometry()).united(panel));
}

void EmojiPickerPanel::orderFront() {
    // The end of a warm-up must not take a picker away that has been opened meanwhile.
    warmUpEnd_.stop();
    isShown_ = true;
    heightAtShow_ = frame_.height;
    if (view_.isVisible())
        view_.hide();
    view_.show();
    view_.raise();
}

void EmojiPickerPanel::showCaretOverlay(const Rect& caret) {
    if (services_.debug.showCaretOverlay())
        overlay_.show(caret);
}

void EmojiPickerPanel::setFrameOrigin(Point origin) {
    const bool isAbove = frame_.y < lastCaretRect_.y;
    const double dx = origin.x - frame_.x;
    const double dy = origin.y - frame_.y + (isAbove ? heightAtShow_ - frame_.height : 0);
    for (auto* rect : {&frame_, &lastCaretRect_}) {
        rect->x += dx;
        rect->y += dy;
    }
    applyFrame();
}

void EmojiPickerPanel::hide() {
    isShown_ = false;
    skinToneMenu_.dismiss();
    view_.hide();
    services_.model.setOnSelection(nullptr);
    services_.model.setOnDismiss(nullptr);
    services_.model.reset();
}

bool EmojiPickerPanel::isVisible() const {
    return isShown_;
}

void EmojiPickerPanel::openSkinToneMenu() {
    skinToneMenu_.popUp(
        view_.skinToneButton(), services_.preferences.skinToneModifier(),
        [this](const std::optional<std::string>& modifier) {
            services_.preferences.setSkinToneModifier(modifier);
        },
        [this] {
            if (services_.recacheSourceFromApp)
                services_.recacheSourceFromApp();
        });
}

void EmojiPickerPanel::refreshSurfaces() {
    view_.refreshSurface();
    skinToneMenu_.refreshSurface();
}

} // namespace glyma::qt
