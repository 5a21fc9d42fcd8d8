#include "platform/linux/x11/grab_watch.h"

#include "platform/linux/x11/client_process.h"
#include "platform/linux/x11/window_reader.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <poll.h>
#include <sys/eventfd.h>

namespace glyma::x11 {

namespace {

using namespace std::chrono_literals;

/// How often a grab is looked at again: it ends unannounced when its window goes.
constexpr auto firstLook = 100ms;
constexpr auto longestPause = 1600ms;

} // namespace

GrabWatch::GrabWatch(Scheduler& scheduler, const std::string& display)
    : scheduler_(scheduler)
    , display_(display)
    , wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , stop_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    connect();
    look();
    thread_ = std::thread([this] { run(); });
}

GrabWatch::~GrabWatch() {
    stop_.raise();
    if (thread_.joinable())
        thread_.join();
}

std::optional<KeyboardGrab> GrabWatch::current() const {
    const std::scoped_lock lock(mutex_);
    return current_;
}

Subscription GrabWatch::observe(std::function<void()> callback) {
    return changed_->connect(std::move(callback));
}

void GrabWatch::check() {
    const std::scoped_lock lock(looking_);
    look();
    // Nothing else tells the end of a grab that was not asked for, nor that the server answers again.
    if (current() || !isWhole())
        wake_.raise();
}

void GrabWatch::run() {
    auto pause = firstLook;
    while (!stop_.clear()) {
        {
            const std::scoped_lock lock(looking_);
            const bool isNew = readRequests() || wake_.clear();
            pause = isNew ? firstLook : std::min(pause * 2, longestPause);
            look();
            if (!isWhole()) {
                connect();
                look();
            }
        }
        wait(current() ? pause : -1ms);
    }
}

void GrabWatch::connect() {
    requests_.reset();
    connection_.reset();
    auto connection = Connection::open(display_);
    if (!connection)
        return;
    connection_ = std::move(*connection);
    witness_ = xcb_generate_id(connection_->get());
    xcb_create_window(connection_->get(), 0, witness_, connection_->root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    // Each of our own questions would otherwise be a reason for the next.
    requests_ = GrabRequests::open(display_, witness_);
    // Whoever had the keyboard may have lost it unheard meanwhile, to somebody else.
    if (claim_ && !isViewable(claim_->window))
        claim_.reset();
}

bool GrabWatch::isWhole() const {
    return connection_ && !connection_->isBroken() && !(requests_ && requests_->isBroken());
}

bool GrabWatch::readRequests() {
    return requests_ && requests_->drain([this](const GrabRequest& request) { handle(request); });
}

void GrabWatch::wait(std::chrono::milliseconds limit) const {
    constexpr short onlyWhenLost = 0;
    std::array descriptors{pollfd{connection_ ? connection_->descriptor() : -1, onlyWhenLost, 0},
                           pollfd{requests_ ? requests_->descriptor() : -1, POLLIN, 0},
                           pollfd{wake_.get(), POLLIN, 0}, pollfd{stop_.get(), POLLIN, 0}};
    ::poll(descriptors.data(), descriptors.size(), static_cast<int>(limit.count()));
}

void GrabWatch::handle(const GrabRequest& request) {
    const bool isClaimant = claim_ && claim_->client == request.client;
    if (request.kind != GrabRequest::Kind::grab) {
        if (isClaimant)
            claim_.reset();
        return;
    }
    // Whoever has the keyboard keeps it, unless the window is gone for which it has it.
    if (claim_ && !isClaimant && isViewable(claim_->window))
        return;
    claim_ = Claim{.client = request.client,
                   .window = request.window,
                   .process = clientProcess(*connection_, request.client)};
}

/// A connection that turns out to be lost says nothing, so that what was known stands.
void GrabWatch::look() {
    const bool isGrabbed = isGrabbedByOthers();
    if (connection_ && connection_->isBroken())
        return;
    // The request came before the grab, though not always before our question.
    if (isGrabbed && !claim_)
        readRequests();
    if (!isGrabbed) {
        claim_.reset();
        return set(std::nullopt);
    }
    set(claim_ ? KeyboardGrab{.process = claim_->process, .isMenu = hasMenuOpen(claim_->client)}
               : KeyboardGrab{});
}

/// Asks for the keyboard on a window that is not shown, which is refused either way, for a reason that tells.
bool GrabWatch::isGrabbedByOthers() const {
    if (!connection_)
        return false;
    const auto cookie = xcb_grab_keyboard(connection_->get(), 0, witness_, XCB_CURRENT_TIME,
                                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const auto reply = owned(xcb_grab_keyboard_reply(connection_->get(), cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

bool GrabWatch::isViewable(xcb_window_t window) const {
    const auto cookie = xcb_get_window_attributes(connection_->get(), window);
    const auto reply = owned(xcb_get_window_attributes_reply(connection_->get(), cookie, nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

/// A menu's grab may be on another window of its application, so that all are looked at.
bool GrabWatch::hasMenuOpen(std::uint32_t client) const {
    const auto tree = owned(xcb_query_tree_reply(
        connection_->get(), xcb_query_tree(connection_->get(), connection_->root()), nullptr));
    if (!tree)
        return false;
    const auto ownBits = ~xcb_get_setup(connection_->get())->resource_id_mask;
    const WindowReader windows(*connection_);
    const std::span children(xcb_query_tree_children(tree.get()),
                             static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
    return std::ranges::any_of(children, [&](xcb_window_t window) {
        return (window & ownBits) == client && isViewable(window) && windows.isMenu(window);
    });
}

void GrabWatch::set(std::optional<KeyboardGrab> grab) {
    {
        const std::scoped_lock lock(mutex_);
        if (current_ == grab)
            return;
        current_ = grab;
    }
    scheduler_.post([changed = std::weak_ptr(changed_)] {
        if (const auto signal = changed.lock())
            signal->emit();
    });
}

} // namespace glyma::x11
