#include "platform/linux/x11/mouse_monitor.h"

#include "platform/linux/x11/requirements.h"
#include "platform/linux/x11/window_reader.h"

#include <xcb/xinput.h>

#include <array>
#include <atomic>
#include <optional>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace glyma::x11 {

namespace {

constexpr std::uint32_t leftButton = 1;
/// Turning the wheel counts as buttons 4 to 7.
constexpr std::uint32_t firstWheelButton = 4;
constexpr std::uint32_t lastWheelButton = 7;

} // namespace

class MouseMonitor::Listener {
public:
    Listener(Connection connection, Scheduler& scheduler, std::weak_ptr<Happened> happened)
        : connection_(std::move(connection))
        , windows_(connection_)
        , scheduler_(scheduler)
        , happened_(std::move(happened))
        , stop_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
        thread_ = std::thread([this] { run(); });
    }
    ~Listener() {
        stop_.raise();
        thread_.join();
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    // Main thread
    void observeMore() {
        if (++observers_ == 1)
            select(false);
    }
    void observeLess() {
        if (--observers_ == 0)
            select(false);
    }

private:
    void select(bool withMotion) const {
        std::uint32_t mask = 0;
        if (observers_ > 0)
            mask = XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE;
        if (observers_ > 0 && withMotion)
            mask |= XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
        const struct {
            xcb_input_event_mask_t head;
            std::uint32_t mask;
        } events{.head = {.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1}, .mask = mask};
        xcb_input_xi_select_events(connection_.get(), connection_.root(), 1, &events.head);
        connection_.flush();
    }

    void run() {
        while (!connection_.isBroken()) {
            bool isAnything = false;
            while (const auto event = connection_.pollEvent()) {
                isAnything = true;
                handle(*event);
            }
            if (isAnything)
                continue; // asking the server fetches waiting events too, which poll() does not see
            std::array descriptors{pollfd{connection_.descriptor(), POLLIN, 0},
                                   pollfd{stop_.get(), POLLIN, 0}};
            ::poll(descriptors.data(), descriptors.size(), -1);
            if (stop_.clear())
                return;
        }
    }

    void handle(const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7F) != XCB_GE_GENERIC)
            return;
        const auto& raw = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
        switch (raw.event_type) {
        case XCB_INPUT_RAW_BUTTON_PRESS:
            return press(raw.detail);
        case XCB_INPUT_RAW_BUTTON_RELEASE:
            return release(raw.detail);
        case XCB_INPUT_RAW_MOTION:
            return isLeftDown_ ? tell(MouseEvent::leftDragged) : void();
        default:
            return;
        }
    }

    void press(std::uint32_t button) {
        if ((button >= firstWheelButton && button <= lastWheelButton) || isOverOurWindow())
            return;
        if (button != leftButton)
            return tell(MouseEvent::otherDown);
        isLeftDown_ = true;
        select(true);
        tell(MouseEvent::leftDown);
    }

    void release(std::uint32_t button) {
        if (button != leftButton || !std::exchange(isLeftDown_, false))
            return;
        select(false);
        tell(MouseEvent::leftUp);
    }

    /// The innermost window counts: those that a window manager has framed belong to it from outside.
    bool isOverOurWindow() const {
        auto window = connection_.root();
        while (true) {
            const auto cookie = xcb_query_pointer(connection_.get(), window);
            const auto reply = owned(xcb_query_pointer_reply(connection_.get(), cookie, nullptr));
            if (!reply || reply->child == XCB_WINDOW_NONE)
                break;
            window = reply->child;
        }
        return window != connection_.root() && windows_.process(window) == ::getpid();
    }

    void tell(MouseEvent event) const {
        scheduler_.post([weak = happened_, event] {
            if (const auto happened = weak.lock())
                happened->emit(event);
        });
    }

    Connection connection_;
    WindowReader windows_;
    Scheduler& scheduler_;
    std::weak_ptr<Happened> happened_;
    std::atomic<int> observers_ = 0;
    bool isLeftDown_ = false; ///< since a press that was told
    Descriptor stop_;
    std::thread thread_;
};

MouseMonitor::MouseMonitor(Scheduler& scheduler, const std::string& display) {
    auto connection = Connection::open(display);
    if (connection && negotiateXInput(*connection) >= neededXInput)
        listener_ = std::make_shared<Listener>(std::move(*connection), scheduler, happened_);
}

MouseMonitor::~MouseMonitor() = default;

Subscription MouseMonitor::observe(std::function<void(MouseEvent)> callback) {
    if (!listener_)
        return {};
    listener_->observeMore();
    const auto connection = std::make_shared<Subscription>(happened_->connect(std::move(callback)));
    return Subscription([connection, weak = std::weak_ptr(listener_)] {
        connection->reset();
        if (const auto listener = weak.lock())
            listener->observeLess();
    });
}

} // namespace glyma::x11
