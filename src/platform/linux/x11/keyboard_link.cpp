#include "platform/linux/x11/keyboard_link.h"

#include "platform/linux/x11/injection.h"
#include "platform/linux/x11/xkb_protocol.h"

#include <xkbcommon/xkbcommon-x11.h>

#include <algorithm>
#include <utility>

namespace glyma::x11 {

namespace {

constexpr std::size_t mostGrabbed = 32;

/// Whether a key takes effect later than its raw event, or not at all: as an aid for hands that tremble.
bool delaysKeys(const Connection& connection) {
    const auto cookie = xcb_xkb_get_controls(connection.get(), XCB_XKB_ID_USE_CORE_KBD);
    const auto reply = owned(xcb_xkb_get_controls_reply(connection.get(), cookie, nullptr));
    return reply && (reply->enabledControls & (XCB_XKB_BOOL_CTRL_SLOW_KEYS | XCB_XKB_BOOL_CTRL_BOUNCE_KEYS));
}

} // namespace

KeyboardLink::KeyboardLink(std::string display, std::function<void(std::string_view)> report)
    : display_(std::move(display))
    , report_(std::move(report)) {}

std::expected<void, std::string> KeyboardLink::open() {
    if (isOpen())
        return {};
    grabs_.reset();
    hold_.reset();
    isHolding_ = false;
    auto connection = Connection::open(display_);
    if (!connection)
        return std::unexpected(connection.error());
    connection_ = std::move(*connection);
    // Each client says which protocol it speaks before its first request.
    owned(xcb_input_xi_query_version_reply(connection_->get(),
                                           xcb_input_xi_query_version(connection_->get(), 2, 2), nullptr));
    xkb_x11_setup_xkb_extension(connection_->get(), XKB_X11_MIN_MAJOR_XKB_VERSION,
                                XKB_X11_MIN_MINOR_XKB_VERSION, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr,
                                nullptr, nullptr, nullptr);
    auto map = KeyboardMap::load(*connection_);
    if (!map)
        return std::unexpected(map.error());
    map_ = std::move(*map);
    lists_.clear();
    movable_.clear();
    layout_ = readLayout(*connection_);
    grabs_.emplace(*connection_, report_);
    hold_.emplace(*connection_, readKeyboards(*connection_).masters,
                  map_->meaninglessKey().value_or(static_cast<xcb_keycode_t>(map_->lastKey())));
    return {};
}

std::expected<void, std::string> KeyboardLink::attach(xcb_window_t witness, std::function<void()> wake) {
    const std::scoped_lock lock(mutex_);
    if (auto opened = open(); !opened)
        return opened;
    echoes_.clear();
    toDrop_.clear();
    swallowed_.clear();
    restored_.clear();
    isSilent_ = false;
    witness_ = witness;
    wake_ = std::move(wake);
    apply();
    return {};
}

void KeyboardLink::detach() {
    const std::scoped_lock lock(mutex_);
    witness_ = XCB_WINDOW_NONE;
    wake_ = nullptr;
    claims_ = {};
    currentHold_ = 0;
    if (isOpen()) {
        if (isHolding_.exchange(false))
            hold_->end();
        apply();
        for (const auto& swallowed : swallow())
            drop(swallowed);
    }
    echoes_.clear();
}

void KeyboardLink::claim(const KeyClaims& claims) {
    const std::scoped_lock lock(mutex_);
    if (claims == claims_)
        return;
    claims_ = claims;
    apply();
    wake();
}

void KeyboardLink::setSilent(bool isSilent) {
    const std::scoped_lock lock(mutex_);
    if (std::exchange(isSilent_, isSilent) == isSilent)
        return;
    apply();
}

void KeyboardLink::setLayout(xkb_layout_index_t layout) {
    const std::scoped_lock lock(mutex_);
    if (std::exchange(layout_, layout) == layout)
        return;
    apply();
}

void KeyboardLink::reloadMap() {
    const std::scoped_lock lock(mutex_);
    if (!isOpen())
        return;
    if (auto map = KeyboardMap::load(*connection_)) {
        map_ = std::move(*map);
        lists_.clear();
        apply();
    }
}

bool KeyboardLink::consumes(xcb_keycode_t key, ModifierMask modifiers) const {
    const std::scoped_lock lock(mutex_);
    return grabs_ && grabs_->holds(key, modifiers);
}

void KeyboardLink::apply() {
    if (!isOpen() || !grabs_)
        return;
    auto claims = isSilent_ ? KeyClaims{} : claims_;
    grabs_->hold(listOf(claims));
    // The picker's keys are claimed while somebody types: their list is ready by then.
    claims.pickerKeys = true;
    (void)listOf(claims);
}

const GrabList& KeyboardLink::listOf(const KeyClaims& claims) {
    auto cached = std::ranges::find_if(
        lists_, [&](const CachedList& each) { return each.claims == claims && each.layout == layout_; });
    if (cached == lists_.end()) {
        lists_.push_back({claims, layout_, grabList(claims, *map_, layout_)});
        cached = std::prev(lists_.end());
    }
    return cached->list;
}

std::vector<SwallowedKey> KeyboardLink::handleEvents() {
    const std::scoped_lock lock(mutex_);
    if (!isOpen() || !grabs_)
        return {};
    for (const auto& swallowed : std::exchange(toDrop_, {}))
        drop(swallowed);
    return std::exchange(swallowed_, {});
}

int KeyboardLink::descriptor() const {
    const std::scoped_lock lock(mutex_);
    return connection_ ? connection_->descriptor() : -1;
}

bool KeyboardLink::hasSwallowed() {
    const std::scoped_lock lock(mutex_);
    if (!isOpen() || !grabs_)
        return false;
    readEvents();
    return !toDrop_.empty();
}

void KeyboardLink::readEvents() {
    while (const auto event = connection_->pollEvent()) {
        if (isHolding_ && !isHeard(*event) && hold_->keep(*event))
            continue;
        if (const auto swallowed = grabs_->handle(*event)) {
            toDrop_.push_back(*swallowed);
            grabbed_.push_back({{swallowed->key, true}, swallowed->time});
            if (grabbed_.size() > mostGrabbed)
                grabbed_.pop_front();
        }
    }
}

void KeyboardLink::wakeTap() const {
    const std::scoped_lock lock(mutex_);
    wake();
}

/// The server makes the raw event of a press and the event of its grab in one go. While silent nothing is
/// grabbed, and the tap may learn from this very press that it need not be silent any more.
bool KeyboardLink::hasSlipped(const KeyEvent& event, const TimedMove& press) {
    const std::scoped_lock lock(mutex_);
    if (!isOpen() || isHolding_ || !isClaimed(claims_, event.keyCode, event.flags))
        return false;
    (void)connection_->focus();
    readEvents();
    return !hasGrabbed(press) && !delaysKeys(*connection_);
}

bool KeyboardLink::hasGrabbed(const TimedMove& press) {
    return std::ranges::find(grabbed_, press) != grabbed_.end();
}

std::vector<SwallowedKey> KeyboardLink::swallow() {
    readEvents();
    return std::exchange(toDrop_, {});
}

/// Whether it is the press that the callback is being asked about: not to be delivered later.
bool KeyboardLink::isHeard(const xcb_generic_event_t& event) const {
    if (!heard_ || (event.response_type & 0x7F) != XCB_GE_GENERIC)
        return false;
    const auto& key = reinterpret_cast<const xcb_input_key_press_event_t&>(event);
    return key.event_type == XCB_INPUT_KEY_PRESS && key.detail == heard_->key.key && key.time == heard_->time;
}

/// A grab lasts until its key is released, and every other key pressed meanwhile would be lost. Releasing it
/// on its own keyboard at once ends the grab; the user's own release is then none to the server. A key that
/// came too soon is pressed again for the application; one that shifts or locks must not be, its effect is in
/// the server's state.
void KeyboardLink::drop(const SwallowedKey& swallowed) {
    if (swallowed.isBystander && map_->shifts(swallowed.key))
        return;
    if (!isMovable(swallowed.source)) {
        if (isHolding_)
            return;
        xcb_input_xi_ungrab_device(connection_->get(), swallowed.time, swallowed.master);
        connection_->flush();
        return;
    }
    FakeKeys keys;
    keys.release(swallowed.key, swallowed.source);
    if (swallowed.isBystander)
        keys.press(swallowed.key, swallowed.source);
    else if (map_->flags(swallowed.modifiers) & (modifier::option | modifier::command))
        disguise(keys, *map_); // the application saw the modifier and must not take it for a bare one
    keys.write(*connection_, echoes_, witness_);
    connection_->flush();
    if (!swallowed.isBystander)
        swallowed_.push_back(swallowed);
}

/// Whether the server lets us move keys on this keyboard; tried once, with the release of a key that is up.
bool KeyboardLink::isMovable(xcb_input_device_id_t device) {
    const auto known = movable_.find(device);
    if (known != movable_.end())
        return known->second;
    const bool isMovable =
        FakeKeys::canMove(*connection_, device, map_->meaninglessKey().value_or(map_->lastKey()));
    return movable_[device] = isMovable;
}

bool KeyboardLink::inject(std::span<const KeyChord> chords) {
    const std::scoped_lock lock(mutex_);
    return open() && injectNow(chords);
}

bool KeyboardLink::inject(std::span<const KeyChord> chords, HoldNumber hold) {
    const std::scoped_lock lock(mutex_);
    return hold != 0 && currentHold_ == hold && isOpen() && injectNow(chords);
}

/// Past a hold chord by chord, with the pauses in between: within a batch our own keys can be mistaken for
/// the user's, who goes on typing.
bool KeyboardLink::injectNow(std::span<const KeyChord> chords) {
    if (!isHolding_)
        return injectBatch(chords);
    bool isComplete = true;
    for (std::size_t index = 0; index < chords.size(); ++index) {
        if (index > 0 && chords[index].keyCode == chords[index - 1].keyCode)
            hold_->pause(FakeKeys::betweenPresses);
        isComplete = injectBatch(chords.subspan(index, 1)) && isComplete;
    }
    return isComplete;
}

bool KeyboardLink::injectBatch(std::span<const KeyChord> chords) {
    for (const auto& swallowed : swallow())
        drop(swallowed);
    const bool isComplete = moveKeys([&](const std::vector<HeldKey>& down) {
        return planInjection(chords, down, *map_, readLayout(*connection_));
    });
    (void)connection_->focus(); // its answer comes when all keys have been moved
    wake();
    return isComplete && isOpen();
}

/// Past a hold nobody else is served from looking at the keys to the last mark: a Shift that another client
/// presses or lets go for the user in between (a keyboard on the screen, a remote desktop) would change what
/// is typed, or stay down.
bool KeyboardLink::moveKeys(const std::function<Injection(const std::vector<HeldKey>& down)>& plan) {
    const auto keyboards = readKeyboards(*connection_);
    std::optional<ServerGrab> alone;
    if (isHolding_)
        alone.emplace(*connection_);
    auto planned = plan(readHeldKeys(*connection_, keyboards));
    restoringBatch_ = planned.keys.write(*connection_, echoes_, witness_, &*hold_);
    restored_ = std::move(planned.restored);
    return planned.isComplete;
}

std::vector<HeldKey> KeyboardLink::restoredBy(EchoLedger::Batch batch) {
    const std::scoped_lock lock(mutex_);
    return batch == restoringBatch_ ? std::exchange(restored_, {}) : std::vector<HeldKey>{};
}

HoldNumber KeyboardLink::hold() {
    const std::scoped_lock lock(mutex_);
    if (!isOpen() || !hold_ || witness_ == XCB_WINDOW_NONE || isSilent_)
        return 0;
    if (!isHolding_) {
        isHolding_ = true; // first: what the tap hears from now on may be kept
        const auto known = grabs_->window();
        if (!hold_->begin(known != XCB_WINDOW_NONE ? known : grabs_->windowForKeys())) {
            isHolding_ = false;
            return 0;
        }
        for (const auto& swallowed : swallow())
            if (swallowed.isBystander)
                hold_->keep({{swallowed.key, true}, swallowed.time});
            else
                drop(swallowed);
        grabs_->forgetActiveGrab();
    }
    currentHold_ = ++lastHold_;
    wake();
    return currentHold_;
}

HoldNumber KeyboardLink::currentHold() const {
    const std::scoped_lock lock(mutex_);
    return currentHold_;
}

void KeyboardLink::release(HoldNumber hold) {
    const std::scoped_lock lock(mutex_);
    if (hold == 0 || currentHold_ != hold)
        return;
    currentHold_ = 0;
    wake();
}

void KeyboardLink::setHeard(const TimedMove& press) {
    const std::scoped_lock lock(mutex_);
    heard_ = press;
}

std::vector<TimedMove> KeyboardLink::takeKept() {
    const std::scoped_lock lock(mutex_);
    if (!isOpen())
        return {};
    (void)connection_->focus();
    for (const auto& swallowed : swallow())
        drop(swallowed);
    return hold_->takeKept();
}

void KeyboardLink::replay(const std::function<Injection(const std::vector<HeldKey>& down)>& plan) {
    const std::scoped_lock lock(mutex_);
    if (!isOpen())
        return;
    moveKeys([&](std::vector<HeldKey> down) {
        for (auto& each : down)
            if (!isMovable(each.device))
                each.device = FakeKeys::ownDevice;
        return plan(down);
    });
    connection_->flush();
}

void KeyboardLink::pause() {
    const std::scoped_lock lock(mutex_);
    if (!isOpen())
        return;
    hold_->pause(FakeKeys::betweenPresses);
    (void)connection_->focus();
}

xcb_input_device_id_t KeyboardLink::deviceFor(xcb_input_device_id_t keyboard) {
    const std::scoped_lock lock(mutex_);
    return keyboard != FakeKeys::ownDevice && isOpen() && isMovable(keyboard) ? keyboard
                                                                              : FakeKeys::ownDevice;
}

void KeyboardLink::freeze() {
    const std::scoped_lock lock(mutex_);
    if (isOpen())
        hold_->freeze();
}

void KeyboardLink::thaw() {
    const std::scoped_lock lock(mutex_);
    if (isOpen())
        hold_->thaw();
}

void KeyboardLink::endHold() {
    const std::scoped_lock lock(mutex_);
    if (isOpen())
        hold_->end();
    isHolding_ = false;
}

void KeyboardLink::release(xcb_keycode_t key, xcb_input_device_id_t device) {
    const std::scoped_lock lock(mutex_);
    FakeKeys keys;
    keys.release(key, device);
    keys.write(*connection_, echoes_, witness_);
    connection_->flush();
}

void KeyboardLink::wake() const {
    if (wake_)
        wake_();
}

} // namespace glyma::x11
