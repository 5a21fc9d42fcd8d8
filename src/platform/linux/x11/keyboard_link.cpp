#include "platform/linux/x11/keyboard_link.h"

#include "platform/linux/x11/injection.h"
#include "platform/linux/x11/xkb_protocol.h"

#include <xkbcommon/xkbcommon-x11.h>

#include <algorithm>
#include <utility>

namespace glyma::x11 {

KeyboardLink::KeyboardLink(std::string display, std::function<void(std::string_view)> report)
    : display_(std::move(display))
    , report_(std::move(report)) {}

std::expected<void, std::string> KeyboardLink::open() {
    if (isOpen())
        return {};
    grabs_.reset();
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
    return {};
}

std::expected<void, std::string> KeyboardLink::attach(xcb_window_t witness, std::function<void()> wake) {
    const std::scoped_lock lock(mutex_);
    if (auto opened = open(); !opened)
        return opened;
    echoes_.clear();
    swallowed_.clear();
    restored_.clear();
    isSilent_ = false;
    witness_ = witness;
    wake_ = std::move(wake);
    return {};
}

void KeyboardLink::detach() {
    const std::scoped_lock lock(mutex_);
    witness_ = XCB_WINDOW_NONE;
    wake_ = nullptr;
    claims_ = {};
    if (isOpen()) {
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
    const auto claims = isSilent_ ? KeyClaims{} : claims_;
    auto cached = std::ranges::find_if(
        lists_, [&](const CachedList& each) { return each.claims == claims && each.layout == layout_; });
    if (cached == lists_.end()) {
        lists_.push_back({claims, layout_, grabList(claims, *map_, layout_)});
        cached = std::prev(lists_.end());
    }
    grabs_->hold(cached->list);
}

std::vector<SwallowedKey> KeyboardLink::handleEvents() {
    const std::scoped_lock lock(mutex_);
    if (!isOpen() || !grabs_)
        return {};
    for (const auto& swallowed : swallow())
        drop(swallowed);
    return std::exchange(swallowed_, {});
}

int KeyboardLink::descriptor() const {
    const std::scoped_lock lock(mutex_);
    return connection_ ? connection_->descriptor() : -1;
}

std::vector<SwallowedKey> KeyboardLink::swallow() {
    std::vector<SwallowedKey> keys;
    while (const auto event = connection_->pollEvent())
        if (const auto swallowed = grabs_->handle(*event))
            keys.push_back(*swallowed);
    return keys;
}

/// A grab lasts until its key is released, and every other key pressed meanwhile would be lost. Releasing it
/// on its own keyboard at once ends the grab; the user's own release is then none to the server. A key that
/// came too soon is pressed again for the application; one that shifts or locks must not be, its effect is in
/// the server's state.
void KeyboardLink::drop(const SwallowedKey& swallowed) {
    if (swallowed.isBystander && map_->shifts(swallowed.key))
        return;
    if (!isMovable(swallowed.source)) {
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
    if (!open())
        return false;
    const auto keyboards = readKeyboards(*connection_);
    const auto held = readHeldKeys(*connection_, keyboards);
    for (const auto& swallowed : swallow())
        drop(swallowed);
    auto plan = planInjection(chords, held, *map_, readLayout(*connection_));
    restoringBatch_ = plan.keys.write(*connection_, echoes_, witness_, keyboards.masters);
    restored_ = std::move(plan.restored);
    (void)connection_->focus(); // its answer comes when all keys have been moved
    wake();
    return plan.isComplete && isOpen();
}

std::vector<HeldKey> KeyboardLink::restoredBy(EchoLedger::Batch batch) {
    const std::scoped_lock lock(mutex_);
    return batch == restoringBatch_ ? std::exchange(restored_, {}) : std::vector<HeldKey>{};
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
