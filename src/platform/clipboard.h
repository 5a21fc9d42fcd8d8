#pragma once

#include <string>
#include <utility>
#include <vector>

namespace glyma {

/// Everything the clipboard held, to be put back: (type, data) in the owner's order.
using ClipboardSnapshot = std::vector<std::pair<std::string, std::string>>;

/// The general clipboard, or another one like it. Main thread.
class Clipboard {
public:
    virtual ~Clipboard() = default;

    /// All types for which the owner returned data.
    virtual ClipboardSnapshot snapshot() = 0;
    /// Replaces the contents by a text (UTF-8) that is there for a moment only, marked so that clipboard
    /// managers do not keep it.
    virtual void setTransientText(const std::string& text) = 0;
    /// Whether anybody has asked for the transient text since it was put there.
    virtual bool isTransientTextTaken() const = 0;
    /// Replaces our transient text by what was saved (an empty snapshot leaves an empty clipboard). Does
    /// nothing when somebody else has put something there since.
    virtual void restore(const ClipboardSnapshot& snapshot) = 0;
};

} // namespace glyma
