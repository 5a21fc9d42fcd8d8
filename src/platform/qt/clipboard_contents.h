#pragma once

#include "platform/clipboard.h"

#include <QMimeData>

#include <memory>

namespace glyma::qt {

ClipboardSnapshot contentsOf(const QMimeData& data);
/// The contents as Qt can offer them again.
std::unique_ptr<QMimeData> offered(const ClipboardSnapshot& snapshot);

} // namespace glyma::qt
