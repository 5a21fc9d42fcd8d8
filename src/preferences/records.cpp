#include "preferences/records.h"

namespace glyma {

bool GlobalShortcut::matches(std::uint16_t otherKeyCode, std::uint64_t flags) const {
    constexpr auto compared = modifier::controlOptionOrCommand | modifier::shift;
    return keyCode == otherKeyCode && (modifierRawValue & compared) == (flags & compared);
}

} // namespace glyma
