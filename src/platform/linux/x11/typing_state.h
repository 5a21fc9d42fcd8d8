#pragma once

#include "platform/linux/x11/keyboard_map.h"
#include "platform/linux/x11/xkb_protocol.h"

#include <xkbcommon/xkbcommon-compose.h>

namespace glyma::x11 {

/// What stays on without a key being held: Caps Lock and the like, and the layout chosen.
struct Locks {
    ModifierMask modifiers = 0;
    xkb_layout_index_t layout = 0;
    bool operator==(const Locks&) const = default;
};

/// What the next key will type: layout, modifiers and a half-composed character. Tap thread.
class TypingState {
public:
    /// Sequences of dead keys and of Compose come from the table of the locale that the environment names.
    TypingState();

    /// Takes a map over (the map must outlive its use). The modifiers and what is being composed stay.
    void setMap(const KeyboardMap& map);
    void update(const xcb_xkb_state_notify_event_t& event);
    void update(const xcb_xkb_get_state_reply_t& reply);

    /// The event of pressing this key now. Feeds the composition: call it once a press.
    KeyEvent press(xkb_keycode_t key, bool isAutorepeat);

    ModifierMask modifiers() const;
    std::uint64_t flags() const { return map_->flags(modifiers()); }
    xkb_layout_index_t layout() const;
    Locks locks() const { return {static_cast<ModifierMask>(components_.locked), components_.lockedLayout}; }

private:
    struct UnreferenceCompose {
        void operator()(xkb_compose_table* table) const { xkb_compose_table_unref(table); }
        void operator()(xkb_compose_state* state) const { xkb_compose_state_unref(state); }
    };
    struct Components {
        xkb_mod_mask_t base = 0, latched = 0, locked = 0;
        xkb_layout_index_t baseLayout = 0, latchedLayout = 0, lockedLayout = 0;
    };
    void apply(const Components& components);
    std::string compose(xkb_keycode_t key);

    Context context_;
    std::unique_ptr<xkb_compose_table, UnreferenceCompose> table_;
    std::unique_ptr<xkb_compose_state, UnreferenceCompose> composing_;
    const KeyboardMap* map_ = nullptr;
    State state_;
    Components components_;
};

} // namespace glyma::x11
