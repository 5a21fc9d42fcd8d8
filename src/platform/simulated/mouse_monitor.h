#pragma once

#include "platform/mouse_monitor.h"
#include "platform/scheduler.h"

namespace glyma::simulated {

/// The pointer's buttons; told on the main queue.
class SimulatedMouse : public MouseMonitor {
public:
    explicit SimulatedMouse(Scheduler& scheduler)
        : scheduler_(scheduler) {}

    [[nodiscard]] Subscription observe(std::function<void(MouseEvent)> callback) override {
        ++watchers_;
        auto connection = std::make_shared<Subscription>(happened_.connect(std::move(callback)));
        return Subscription([this, connection] {
            --watchers_;
            connection->reset();
        });
    }

    void deliver(MouseEvent event) {
        scheduler_.post([this, event] { happened_.emit(event); });
    }
    bool isWatched() const { return watchers_ > 0; }

private:
    Scheduler& scheduler_;
    Signal<MouseEvent> happened_;
    int watchers_ = 0;
};

} // namespace glyma::simulated
