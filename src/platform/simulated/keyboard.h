#pragma once

#include "platform/key_event.h"
#include "platform/simulated/keyboard_layout.h"

#include <cstdint>
#include <optional>
#include <set>

namespace glyma::simulated {

enum class ModifierKey { shift, control, option, command, altGr };

/// The bit of a modifier key, 0 for AltGr.
std::uint64_t flagOf(ModifierKey key);

/// The state of a keyboard: which modifiers are held, which locks are on, which dead key waits; turns keys
/// into events.
class Keyboard {
public:
    void setLayout(const KeyboardLayout& layout) { layout_ = &layout; }
    const KeyboardLayout& layout() const { return *layout_; }

    void setHeld(ModifierKey key, bool held);
    bool isHeld(ModifierKey key) const { return held_.contains(key); }
    const std::set<ModifierKey>& held() const { return held_; }
    void setCapsLock(bool on) { capsLock_ = on; }
    void setNumLock(bool on) { numLock_ = on; }

    std::uint64_t flags() const;
    /// The event of a press, composing included.
    KeyEvent press(std::uint16_t keyCode, bool isAutorepeat);
    KeyEvent flagsChanged() const;

private:
    std::string textOf(std::uint16_t keyCode);

    const KeyboardLayout* layout_ = &KeyboardLayout::us();
    std::set<ModifierKey> held_;
    bool capsLock_ = false;
    bool numLock_ = true;
    std::optional<char32_t> waitingDeadKey_;
};

} // namespace glyma::simulated
