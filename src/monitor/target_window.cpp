#include "monitor/target_window.h"

#include <utility>

namespace glyma {

std::optional<Point> focusedWindowOrigin(Accessibility& accessibility) {
    auto element = accessibility.systemWide();
    for (const auto name : {attribute::focusedApplication, attribute::focusedWindow}) {
        const auto answer = accessibility.attributeValue(element, name);
        const auto* found = answer ? std::get_if<ElementReference>(&*answer) : nullptr;
        if (!found || !*found)
            return std::nullopt;
        element = *found;
    }
    const auto answer = accessibility.attributeValue(element, attribute::position);
    const auto* origin = answer ? std::get_if<Point>(&*answer) : nullptr;
    return origin ? std::optional(*origin) : std::nullopt;
}

void TargetWindow::remember() {
    forget();
    shown_ = std::make_shared<int>();
    const auto frame = picker_.frame();
    panelOriginAtShow_ = Point{frame.x, frame.y};
    read();
}

void TargetWindow::forget() {
    shown_.reset();
    panelOriginAtShow_.reset();
    windowOriginAtShow_.reset();
    isReading_ = readsAgain_ = commits_ = false;
}

void TargetWindow::followTargetWindow(bool commit) {
    if (!shown_)
        return;
    commits_ = commits_ || commit;
    if (isReading_)
        readsAgain_ = true;
    else if (windowOriginAtShow_)
        read();
}

/// Pointers move more often than an application answers: one question at a time, and one more after it.
void TargetWindow::read() {
    isReading_ = true;
    reader_.ask([&accessibility = accessibility_] { return focusedWindowOrigin(accessibility); },
                [this, weak = std::weak_ptr(shown_)](std::optional<Point> origin) {
                    if (weak.expired())
                        return;
                    isReading_ = false;
                    if (origin)
                        moveTo(*origin);
                    if (std::exchange(readsAgain_, false))
                        read();
                    else
                        commits_ = false;
                });
}

void TargetWindow::moveTo(Point windowOrigin) {
    if (!windowOriginAtShow_) {
        windowOriginAtShow_ = windowOrigin;
        return;
    }
    const Point panelOrigin{panelOriginAtShow_->x + windowOrigin.x - windowOriginAtShow_->x,
                            panelOriginAtShow_->y + windowOrigin.y - windowOriginAtShow_->y};
    picker_.setFrameOrigin(panelOrigin);
    if (commits_ && !readsAgain_) {
        panelOriginAtShow_ = panelOrigin;
        windowOriginAtShow_ = windowOrigin;
    }
}

} // namespace glyma
