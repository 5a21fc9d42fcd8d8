#include "platform/linux/x11/front_application_tracker.h"

#include <array>
#include <poll.h>
#include <sys/eventfd.h>
#include <utility>

namespace glyma::x11 {

/// A connection with what is needed to say who is in front. One thread.
struct FrontApplicationTracker::Reader {
    Reader(Connection opened, DesktopEntryOfWindow entryOf)
        : connection(std::move(opened))
        , windows(connection)
        , desktopEntryOf(std::move(entryOf)) {}

    FrontApplication read() const { return describe(windows.activeWindow()); }

    FrontApplication describe(xcb_window_t window) const {
        // The server still knows the client of a window that has gone.
        if (window == XCB_WINDOW_NONE || !windows.exists(window))
            return {};
        const auto identity = windows.identity(window);
        FrontApplication front{.identifier = desktopEntryOf ? desktopEntryOf(identity) : std::nullopt,
                               .process = windows.process(window),
                               .window = window};
        for (const auto* said : {&identity.applicationId, &identity.wmClassName, &identity.wmClassInstance})
            if (!front.identifier && !said->empty())
                front.identifier = *said;
        return front;
    }

    static std::unique_ptr<Reader> open(const std::string& display, DesktopEntryOfWindow entryOf) {
        auto connection = Connection::open(display);
        return connection ? std::make_unique<Reader>(std::move(*connection), std::move(entryOf)) : nullptr;
    }

    Connection connection;
    WindowReader windows;
    DesktopEntryOfWindow desktopEntryOf;
};

class FrontApplicationTracker::Watcher {
public:
    Watcher(std::unique_ptr<Reader> reader, Scheduler& scheduler, std::weak_ptr<Changed> changed)
        : reader_(std::move(reader))
        , scheduler_(scheduler)
        , changed_(std::move(changed))
        , stop_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
        watchRoot();
        last_ = reader_->read();
        thread_ = std::thread([this] { run(); });
    }
    ~Watcher() {
        stop_.raise();
        thread_.join();
    }
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

private:
    const Connection& connection() const { return reader_->connection; }

    void select(xcb_window_t window, std::uint32_t events) const {
        xcb_change_window_attributes(connection().get(), window, XCB_CW_EVENT_MASK, &events);
    }

    /// Without a window manager only the windows themselves tell that the focus comes or goes.
    void watchRoot() const {
        select(connection().root(), XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
        const auto cookie = xcb_query_tree(connection().get(), connection().root());
        const auto tree = owned(xcb_query_tree_reply(connection().get(), cookie, nullptr));
        for (int index = 0; tree && index < xcb_query_tree_children_length(tree.get()); ++index)
            select(xcb_query_tree_children(tree.get())[index], XCB_EVENT_MASK_FOCUS_CHANGE);
    }

    void run() {
        while (!connection().isBroken()) {
            bool mayHaveChanged = false;
            while (const auto event = connection().pollEvent())
                mayHaveChanged = handle(*event) || mayHaveChanged;
            if (mayHaveChanged) {
                look(); // its replies bring waiting events in, which poll() does not see
                continue;
            }
            std::array descriptors{pollfd{connection().descriptor(), POLLIN, 0},
                                   pollfd{stop_.get(), POLLIN, 0}};
            ::poll(descriptors.data(), descriptors.size(), -1);
            if (stop_.clear())
                return;
        }
    }

    bool handle(const xcb_generic_event_t& event) const {
        switch (event.response_type & 0x7F) {
        case XCB_PROPERTY_NOTIFY:
            return reinterpret_cast<const xcb_property_notify_event_t&>(event).atom ==
                   reader_->windows.activeWindowAtom();
        case XCB_CREATE_NOTIFY:
            select(reinterpret_cast<const xcb_create_notify_event_t&>(event).window,
                   XCB_EVENT_MASK_FOCUS_CHANGE);
            return true;
        case XCB_FOCUS_IN:
        case XCB_FOCUS_OUT: {
            const auto mode = reinterpret_cast<const xcb_focus_in_event_t&>(event).mode;
            return mode == XCB_NOTIFY_MODE_NORMAL || mode == XCB_NOTIFY_MODE_WHILE_GRABBED;
        }
        default:
            return false;
        }
    }

    void look() {
        auto front = reader_->read();
        if (front == last_)
            return;
        last_ = std::move(front);
        scheduler_.post([changed = changed_, now = last_] {
            if (const auto signal = changed.lock())
                signal->emit(now);
        });
    }

    std::unique_ptr<Reader> reader_;
    Scheduler& scheduler_;
    std::weak_ptr<Changed> changed_;
    FrontApplication last_;
    Descriptor stop_;
    std::thread thread_;
};

FrontApplicationTracker::FrontApplicationTracker(Scheduler& scheduler, DesktopEntryOfWindow desktopEntryOf,
                                                 const std::string& display)
    : reader_(Reader::open(display, desktopEntryOf))
    , changed_(std::make_shared<Changed>()) {
    if (auto reader = Reader::open(display, std::move(desktopEntryOf)))
        watcher_ = std::make_unique<Watcher>(std::move(reader), scheduler, changed_);
}

FrontApplicationTracker::~FrontApplicationTracker() = default;

FrontApplication FrontApplicationTracker::current() {
    return reader_ ? reader_->read() : FrontApplication{};
}

Subscription FrontApplicationTracker::observe(std::function<void(const FrontApplication&)> callback) {
    return changed_->connect(std::move(callback));
}

} // namespace glyma::x11
