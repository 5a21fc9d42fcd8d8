#pragma once

namespace glyma::qt {

/// Teaches Qt's accessibility how to describe the bar of pages: a list of page tabs, the shown one selected.
/// (As Qt 6.4 describes tab bars, the current tab claims the focus wherever that is, and none is selected.)
/// Call any number of times.
void installPageBarAccessibility();

} // namespace glyma::qt
