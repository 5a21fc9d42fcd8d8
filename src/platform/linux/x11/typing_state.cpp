#include "platform/linux/x11/typing_state.h"

#include <array>

namespace glyma::x11 {

namespace {

/// setlocale's order; the process itself may never have called it.
const char* localeOfEnvironment() {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"})
        if (const char* value = std::getenv(name); value && *value)
            return value;
    return "C";
}

std::string textOf(xkb_state* state, xkb_keycode_t key) {
    std::array<char, 64> buffer{};
    const int length = xkb_state_key_get_utf8(state, key, buffer.data(), buffer.size());
    return length > 0 && static_cast<std::size_t>(length) < buffer.size()
               ? std::string(buffer.data(), static_cast<std::size_t>(length))
               : std::string();
}

} // namespace

TypingState::TypingState()
    : context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS)) {
    for (const char* locale : {localeOfEnvironment(), "en_US.UTF-8"})
        if (!table_)
            table_.reset(
                xkb_compose_table_new_from_locale(context_.get(), locale, XKB_COMPOSE_COMPILE_NO_FLAGS));
    if (table_)
        composing_.reset(xkb_compose_state_new(table_.get(), XKB_COMPOSE_STATE_NO_FLAGS));
}

void TypingState::setMap(const KeyboardMap& map) {
    map_ = &map;
    state_.reset(xkb_state_new(map.keymap()));
    apply(components_);
}

void TypingState::apply(const Components& components) {
    components_ = components;
    xkb_state_update_mask(state_.get(), components.base, components.latched, components.locked,
                          components.baseLayout, components.latchedLayout, components.lockedLayout);
}

// The base and latched groups are signed on the wire; the conversion keeps their bits, as xkbcommon expects.
void TypingState::update(const xcb_xkb_state_notify_event_t& event) {
    apply({event.baseMods, event.latchedMods, event.lockedMods,
           static_cast<xkb_layout_index_t>(event.baseGroup),
           static_cast<xkb_layout_index_t>(event.latchedGroup), event.lockedGroup});
}

void TypingState::update(const xcb_xkb_get_state_reply_t& reply) {
    apply({reply.baseMods, reply.latchedMods, reply.lockedMods,
           static_cast<xkb_layout_index_t>(reply.baseGroup),
           static_cast<xkb_layout_index_t>(reply.latchedGroup), reply.lockedGroup});
}

KeyEvent TypingState::press(xkb_keycode_t key, bool isAutorepeat) {
    return {.type = KeyEvent::Type::keyDown,
            .keyCode = map_->code(key, modifiers(), layout()),
            .flags = flags(),
            .isAutorepeat = isAutorepeat,
            .text = compose(key)};
}

std::string TypingState::compose(xkb_keycode_t key) {
    const auto keysym = xkb_state_key_get_one_sym(state_.get(), key);
    if (!composing_ || xkb_compose_state_feed(composing_.get(), keysym) == XKB_COMPOSE_FEED_IGNORED)
        return textOf(state_.get(), key);
    switch (xkb_compose_state_get_status(composing_.get())) {
    case XKB_COMPOSE_COMPOSING:
        return {};
    case XKB_COMPOSE_COMPOSED: {
        std::array<char, 256> buffer{};
        xkb_compose_state_get_utf8(composing_.get(), buffer.data(), buffer.size());
        xkb_compose_state_reset(composing_.get());
        return buffer.data();
    }
    case XKB_COMPOSE_CANCELLED:
        xkb_compose_state_reset(composing_.get());
        break;
    case XKB_COMPOSE_NOTHING:
        break;
    }
    return textOf(state_.get(), key);
}

ModifierMask TypingState::modifiers() const {
    return static_cast<ModifierMask>(xkb_state_serialize_mods(state_.get(), XKB_STATE_MODS_EFFECTIVE));
}

xkb_layout_index_t TypingState::layout() const {
    return xkb_state_serialize_layout(state_.get(), XKB_STATE_LAYOUT_EFFECTIVE);
}

} // namespace glyma::x11
