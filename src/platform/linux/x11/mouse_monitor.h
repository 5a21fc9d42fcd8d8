#pragma once

#include "platform/linux/x11/connection.h"
#include "platform/linux/x11/descriptor.h"
#include "platform/mouse_monitor.h"
#include "platform/scheduler.h"

#include <memory>
#include <string>
#include <thread>

namespace glyma::x11 {

/// Hears raw button events of the whole display, and raw motion while the left button is down; both are
/// selected only while somebody observes, so that a moving pointer wakes nobody otherwise. Raw events come
/// whoever holds the pointer, a window manager that drags a window included.
class MouseMonitor : public glyma::MouseMonitor {
public:
    /// \param scheduler  its jobs run on the main thread; must outlive the monitor.
    /// \param display    empty: the value of DISPLAY. When it cannot be opened nothing is ever heard.
    explicit MouseMonitor(Scheduler& scheduler, const std::string& display = {});
    ~MouseMonitor() override;

    [[nodiscard]] Subscription observe(std::function<void(MouseEvent)> callback) override;

private:
    class Listener;
    using Happened = Signal<MouseEvent>;

    /// Shared with posted jobs, which may run after the monitor is gone.
    std::shared_ptr<Happened> happened_ = std::make_shared<Happened>();
    std::shared_ptr<Listener> listener_;
};

} // namespace glyma::x11
