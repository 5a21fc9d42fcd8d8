#include "platform/linux/x11/tap_listener.h"

#include "platform/linux/x11/requirements.h"

#include <xkbcommon/xkbcommon-x11.h>

#include <array>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <utility>

namespace glyma::x11 {

namespace {

Descriptor makeEvent() {
    return Descriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
}

Descriptor makeTimer() {
    return Descriptor(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK));
}

timespec milliseconds(long count) {
    return {.tv_sec = count / 1000, .tv_nsec = count % 1000 * 1'000'000};
}

/// How the user has set held keys to repeat; nothing when they do not.
std::optional<itimerspec> readRepeat(const Connection& connection) {
    const auto cookie = xcb_xkb_get_controls(connection.get(), XCB_XKB_ID_USE_CORE_KBD);
    const auto reply = owned(xcb_xkb_get_controls_reply(connection.get(), cookie, nullptr));
    if (!reply || !(reply->enabledControls & XCB_XKB_BOOL_CTRL_REPEAT_KEYS) || reply->repeatInterval == 0)
        return std::nullopt;
    return itimerspec{.it_interval = milliseconds(reply->repeatInterval),
                      .it_value = milliseconds(reply->repeatDelay)};
}

} // namespace

std::expected<std::unique_ptr<TapListener>, std::string>
TapListener::create(const std::string& display, Handlers handlers, KeyboardLink& link) {
    auto connection = Connection::open(display);
    if (!connection)
        return std::unexpected(connection.error());
    if (auto complete = checkRequirements(*connection); !complete)
        return std::unexpected(complete.error());
    std::unique_ptr<TapListener> listener(new TapListener(std::move(*connection), std::move(handlers), link));
    if (auto prepared = listener->prepare(display); !prepared)
        return std::unexpected(prepared.error());
    listener->thread_ = std::thread([raw = listener.get()] { raw->run(); });
    return listener;
}

TapListener::TapListener(Connection connection, Handlers handlers, KeyboardLink& link)
    : connection_(std::move(connection))
    , handlers_(std::move(handlers))
    , link_(link)
    , held_(link, {.hear = [this](const KeyEvent& event) { return deliver(event); },
                   .readEvents = [this] { readEvents(); },
                   .hearLive = [this](const HeldTyping::Event& event) { hearLive(event); },
                   .locks = [this] { return typing_.locks(); }})
    , holdTimer_(makeTimer())
    , repeatTimer_(makeTimer())
    , wake_(makeEvent())
    , stop_(makeEvent()) {}

TapListener::~TapListener() {
    stop_.raise();
    if (thread_.joinable())
        thread_.join();
    link_.detach();
}

std::expected<void, std::string> TapListener::prepare(const std::string& display) {
    xkb_x11_setup_xkb_extension(connection_.get(), XKB_X11_MIN_MAJOR_XKB_VERSION,
                                XKB_X11_MIN_MINOR_XKB_VERSION, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr,
                                nullptr, &xkbEvent_, nullptr);
    selectEvents();
    witness_ = xcb_generate_id(connection_.get());
    xcb_create_window(connection_.get(), 0, witness_, connection_.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    auto map = KeyboardMap::load(connection_);
    if (!map)
        return std::unexpected(map.error());
    map_ = std::move(*map);
    typing_.setMap(*map_);
    held_.setMap(*map_);
    const auto cookie = xcb_xkb_get_state(connection_.get(), XCB_XKB_ID_USE_CORE_KBD);
    if (const auto state = owned(xcb_xkb_get_state_reply(connection_.get(), cookie, nullptr)))
        typing_.update(*state);
    readHeldKeys();
    repeats_ = RepeatStream::open(display);
    if (!repeats_ && handlers_.report)
        handlers_.report("The X server has no RECORD extension: a key held down counts once.");
    if (auto attached = link_.attach(witness_, [this] { wake_.raise(); }); !attached)
        return attached;
    link_.setLayout(typing_.layout());
    return {};
}

void TapListener::readHeldKeys() {
    const auto reply =
        owned(xcb_query_keymap_reply(connection_.get(), xcb_query_keymap(connection_.get()), nullptr));
    constexpr xcb_input_device_id_t unknownDevice = 0;
    for (auto key = map_->firstKey(); reply && key <= map_->lastKey(); ++key)
        if (reply->keys[key / 8] & (1U << (key % 8))) {
            const KeyMove press{static_cast<xcb_keycode_t>(key), true};
            held_.moved(press);
            held_.reachedApplication(press, unknownDevice);
        }
}

void TapListener::selectEvents() {
    const struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } rawKeys{.head = {.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1},
              .mask = XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE};
    xcb_input_xi_select_events(connection_.get(), connection_.root(), 1, &rawKeys.head);

    constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_STATE_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY |
                                     XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY;
    constexpr std::uint16_t mapParts = 0xFF;
    xcb_xkb_select_events(connection_.get(), XCB_XKB_ID_USE_CORE_KBD, events, 0, events, mapParts, mapParts,
                          nullptr);
}

void TapListener::run() {
    while (true) {
        while (drain()) {
        }
        if (stop_.clear())
            return endHold();
        if (connection_.isBroken()) {
            if (handlers_.connectionLost)
                handlers_.connectionLost();
            return;
        }
        wait();
    }
}

bool TapListener::drain() {
    bool isAnything = false;
    if (wake_.clear())
        (void)isSilent();
    // Repeats first: what ends them is in the other stream.
    if (repeats_)
        isAnything = repeats_->drain([this](xcb_keycode_t key) { handleServerRepeat(key); });
    while (const auto event = connection_.pollEvent()) {
        isAnything = true;
        handle(*event);
    }
    isAnything = handleSwallowed() || isAnything;
    if (repeatTimer_.clear())
        handleOwnRepeat();
    watchHold();
    deliverHeld();
    // Asking the server fetches waiting events too, which poll() then does not see.
    const bool isAsking = isMapStale_ || isStateStale_;
    if (isMapStale_)
        reloadMap();
    if (isStateStale_)
        readStateWhenIdle();
    return isAnything || isAsking;
}

void TapListener::wait() {
    std::array descriptors{pollfd{connection_.descriptor(), POLLIN, 0},
                           pollfd{link_.descriptor(), POLLIN, 0},
                           pollfd{repeats_ ? repeats_->descriptor() : -1, POLLIN, 0},
                           pollfd{repeatTimer_.get(), POLLIN, 0},
                           pollfd{holdTimer_.get(), POLLIN, 0},
                           pollfd{wake_.get(), POLLIN, 0},
                           pollfd{stop_.get(), POLLIN, 0}};
    ::poll(descriptors.data(), descriptors.size(), -1);
}

void TapListener::handle(const xcb_generic_event_t& event) {
    const auto type = event.response_type & 0x7F;
    if (type == XCB_GE_GENERIC)
        handleRaw(reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event));
    else if (type == xkbEvent_)
        handleKeyboard(event);
    else if (type == XCB_CLIENT_MESSAGE)
        handleMark(readMark(reinterpret_cast<const xcb_client_message_event_t&>(event)));
}

void TapListener::handleRaw(const xcb_input_raw_key_press_event_t& event) {
    const auto key = static_cast<xcb_keycode_t>(event.detail);
    const bool isPress = event.event_type == XCB_INPUT_RAW_KEY_PRESS;
    lastEcho_.reset();
    if (link_.echoes().take({key, isPress})) {
        lastEcho_ = KeyMove{key, isPress};
        return;
    }
    held_.moved({key, isPress});
    if (!isPress && repeating_ && repeating_->key == key)
        stopRepeating();
    if (isPress && isMapStale_)
        reloadMap();
    HeldTyping::Event moved{.move = {{key, isPress}, event.time},
                            .device = link_.deviceFor(event.sourceid),
                            .locks = typing_.locks(),
                            .heard = std::nullopt,
                            .mayBeOurs = link_.echoes().isOpen(),
                            .wasKept = false,
                            .hasReachedApplication = false};
    if (isPress && !map_->shifts(key)) {
        stopRepeating();
        moved.heard = typing_.press(key, false);
    }
    if (link_.isHolding())
        held_.keep(std::move(moved));
    else
        hearLive(moved);
}

void TapListener::hearLive(const HeldTyping::Event& event) {
    link_.setHeard(event.move);
    auto heard = event.heard;
    if (heard)
        heard->hasReachedApplication = link_.hasSlipped(*heard, event.move);
    if (!heard || deliver(*heard) == Verdict::pass)
        held_.reachedApplication(event.move.key, event.device);
}

void TapListener::handleKeyboard(const xcb_generic_event_t& event) {
    switch (event.pad0) { // the xkbType of every event of this extension
    case XCB_XKB_STATE_NOTIFY:
        handleState(reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event));
        break;
    case XCB_XKB_MAP_NOTIFY:
    case XCB_XKB_NEW_KEYBOARD_NOTIFY:
        isMapStale_ = true;
        break;
    default:
        break;
    }
}

void TapListener::handleState(const xcb_xkb_state_notify_event_t& event) {
    const auto before = typing_.flags();
    typing_.update(event);
    link_.setLayout(typing_.layout());
    const KeyMove cause{event.keycode, event.eventType == XCB_KEY_PRESS};
    if (typing_.flags() == before || lastEcho_ == cause)
        return;
    KeyEvent changed{.type = KeyEvent::Type::flagsChanged,
                     .keyCode = map_->code(event.keycode, typing_.modifiers(), typing_.layout()),
                     .flags = typing_.flags(),
                     .isAutorepeat = false,
                     .text = {}};
    if (link_.isHolding())
        held_.keep({.move = {},
                    .device = 0,
                    .locks = {},
                    .heard = std::move(changed),
                    .mayBeOurs = false,
                    .wasKept = false,
                    .hasReachedApplication = false});
    else
        deliver(changed);
}

void TapListener::handleMark(EchoMark mark) {
    if (!mark.isEnd) {
        link_.echoes().open(mark.batch);
        return;
    }
    link_.echoes().close(mark.batch);
    // What the user has let go while it was being pressed again for him must not stay down.
    for (const auto& [key, device] : link_.restoredBy(mark.batch))
        if (!held_.isDown(key) && device != 0)
            link_.release(key, device);
}

void TapListener::handleServerRepeat(xcb_keycode_t key) {
    if (!held_.isDown(key) || map_->shifts(key) || link_.isHolding())
        return;
    deliver(typing_.press(key, true));
}

bool TapListener::handleSwallowed() {
    // The callback must know the key before it is let go: it may want to hold what follows.
    if (link_.hasSwallowed())
        readEvents();
    const auto swallowed = link_.handleEvents();
    // Nor would it be known to be down, where another thread has let it go.
    if (!swallowed.empty())
        readEvents();
    for (const auto& each : swallowed) {
        if (!held_.isDown(each.key) || !link_.consumes(each.key, each.modifiers))
            continue;
        if (const auto repeat = readRepeat(connection_)) {
            repeating_ = each;
            ::timerfd_settime(repeatTimer_.get(), 0, &*repeat, nullptr);
        }
    }
    return !swallowed.empty();
}

void TapListener::handleOwnRepeat() {
    if (repeating_ && !link_.isHolding() && held_.isDown(repeating_->key) &&
        link_.consumes(repeating_->key, typing_.modifiers()))
        deliver(typing_.press(repeating_->key, true));
    else
        stopRepeating();
}

void TapListener::stopRepeating() {
    if (!repeating_)
        return;
    repeating_.reset();
    const itimerspec never{};
    ::timerfd_settime(repeatTimer_.get(), 0, &never, nullptr);
}

void TapListener::reloadMap() {
    isMapStale_ = false;
    auto map = KeyboardMap::load(connection_);
    if (!map)
        return;
    map_ = std::move(*map);
    typing_.setMap(*map_);
    held_.setMap(*map_);
    link_.reloadMap();
    isStateStale_ = true;
}

/// A new map may come with another state and no event about it. The answer counts only when no older events
/// wait.
void TapListener::readStateWhenIdle() {
    const auto cookie = xcb_xkb_get_state(connection_.get(), XCB_XKB_ID_USE_CORE_KBD);
    const auto state = owned(xcb_xkb_get_state_reply(connection_.get(), cookie, nullptr));
    if (const auto waiting = owned(xcb_poll_for_queued_event(connection_.get()))) {
        if (waiting->response_type != 0)
            handle(*waiting);
        return;
    }
    isStateStale_ = false;
    if (!state)
        return;
    typing_.update(*state);
    link_.setLayout(typing_.layout());
}

bool TapListener::isSilent() {
    const bool isSilent = handlers_.isSuppressed && handlers_.isSuppressed();
    link_.setSilent(isSilent);
    return isSilent;
}

Verdict TapListener::deliver(const KeyEvent& event) {
    if (isSilent() || !handlers_.callback)
        return Verdict::pass;
    return handlers_.callback(event);
}

/// All that the server has sent up to now.
void TapListener::readEvents() {
    (void)connection_.focus();
    while (const auto event = connection_.pollEvent())
        handle(*event);
    if (repeats_)
        repeats_->drain([this](xcb_keycode_t key) { handleServerRepeat(key); });
}

void TapListener::watchHold() {
    // What is to be deleted is no longer what stands before the caret.
    if (link_.currentHold() != 0 && held_.hasLeaked())
        link_.release(link_.currentHold());
    const auto current = link_.currentHold();
    if (holdTimer_.clear() && watched_ == current)
        link_.release(watched_);
    if (std::exchange(watched_, current) == current)
        return;
    const itimerspec limit{.it_interval = {},
                           .it_value = milliseconds(current == 0 ? 0 : longestTypingHold.count())};
    ::timerfd_settime(holdTimer_.get(), 0, &limit, nullptr);
}

void TapListener::deliverHeld() {
    if (!link_.isHolding())
        held_.giveUp();
    else if (link_.currentHold() == 0)
        held_.deliver();
    else
        return;
    watchHold();
}

void TapListener::endHold() {
    handlers_.callback = nullptr;
    link_.release(link_.currentHold());
    deliverHeld();
}

} // namespace glyma::x11
