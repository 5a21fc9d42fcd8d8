#pragma once

#include "platform/front_application.h"
#include "platform/linux/x11/descriptor.h"
#include "platform/linux/x11/window_reader.h"
#include "platform/scheduler.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace glyma::x11 {

/// The desktop-entry id of a window's application. Called on the main thread and on the tracker's.
using DesktopEntryOfWindow = std::function<std::optional<std::string>(const WindowIdentity&)>;

/// Follows the window manager's active window; without a window manager, the window that has the focus.
class FrontApplicationTracker : public glyma::FrontApplicationTracker {
public:
    /// \param scheduler        its jobs run on the main thread; must outlive the tracker.
    /// \param desktopEntryOf   when it knows none, what the window says of itself stands for it.
    /// \param display          empty: the value of DISPLAY. When it cannot be opened nothing is ever in
    /// front.
    FrontApplicationTracker(Scheduler& scheduler, DesktopEntryOfWindow desktopEntryOf,
                            const std::string& display = {});
    ~FrontApplicationTracker() override;

    FrontApplication current() override;
    [[nodiscard]] Subscription observe(std::function<void(const FrontApplication&)> callback) override;

private:
    class Watcher;
    struct Reader;
    using Changed = Signal<const FrontApplication&>;

    std::unique_ptr<Reader> reader_;
    /// Shared with posted jobs, which may run after the tracker is gone.
    std::shared_ptr<Changed> changed_;
    std::unique_ptr<Watcher> watcher_;
};

} // namespace glyma::x11
