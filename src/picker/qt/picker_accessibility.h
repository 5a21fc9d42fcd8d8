#pragma once

namespace glyma::qt {

/// Teaches Qt's accessibility how to describe the picker: a list whose items are the visible rows, the
/// highlighted one selected, described by what was typed. It never claims the focus, which stays with the
/// application being typed in. Call any number of times.
void installPickerAccessibility();

} // namespace glyma::qt
