#pragma once

#include "platform/keyboard_grabs.h"
#include "platform/linux/x11/connection.h"
#include "platform/linux/x11/descriptor.h"
#include "platform/linux/x11/grab_requests.h"
#include "platform/scheduler.h"

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace glyma::x11 {

/// Watches over the keyboard: the RECORD extension tells who asks for it, the server whether somebody has it.
/// Sleeps while nobody grabs anything. A grab that is not asked for (by a key that a window manager has
/// reserved) is noticed only by check(), and has no process. A lost connection is opened again at once, and
/// at every check() for as long as that fails.
class GrabWatch : public KeyboardGrabWatch {
public:
    /// \param scheduler  its jobs run on the main thread; outlives the watch.
    /// \param display    empty: the value of DISPLAY. While it cannot be opened nobody grabs anything.
    explicit GrabWatch(Scheduler& scheduler, const std::string& display = {});
    ~GrabWatch() override;

    std::optional<KeyboardGrab> current() const override;
    [[nodiscard]] Subscription observe(std::function<void()> callback) override;
    void check() override;

private:
    /// The client that has the keyboard, as far as requests tell.
    struct Claim {
        std::uint32_t client = 0;
        xcb_window_t window = XCB_WINDOW_NONE;
        pid_t process = 0;
    };

    void run();
    void connect();
    bool isWhole() const;
    bool readRequests();
    void wait(std::chrono::milliseconds limit) const;
    void handle(const GrabRequest& request);
    void look();
    bool isGrabbedByOthers() const;
    bool isViewable(xcb_window_t window) const;
    bool hasMenuOpen(std::uint32_t client) const;
    void set(std::optional<KeyboardGrab> grab);

    Scheduler& scheduler_;
    const std::string display_;
    std::shared_ptr<Signal<>> changed_ = std::make_shared<Signal<>>();

    /// Held for a whole look at the server. Guards what follows; the watch's own thread alone connects.
    std::mutex looking_;
    std::optional<Connection> connection_;
    xcb_window_t witness_ = XCB_WINDOW_NONE;
    /// Absent where the server does not record.
    std::optional<GrabRequests> requests_;
    std::optional<Claim> claim_;

    mutable std::mutex mutex_;
    std::optional<KeyboardGrab> current_;

    Descriptor wake_;
    Descriptor stop_;
    std::thread thread_;
};

} // namespace glyma::x11
