#pragma once

#include "platform/clipboard.h"

#include <mutex>
#include <string>
#include <vector>

namespace glyma::simulated {

/// A selection of several types, the clipboard or the primary one. Remembers every text that was on it.
class SimulatedClipboard : public Clipboard {
public:
    static constexpr const char* textType = "text/plain;charset=utf-8";
    static constexpr const char* secretHint = "x-kde-passwordManagerHint";

    ClipboardSnapshot snapshot() override;
    void setTransientText(const std::string& text) override;
    bool isTransientTextTaken() const override;
    void restore(const ClipboardSnapshot& snapshot) override;

    /// The user, or another program, copies.
    void set(ClipboardSnapshot contents);
    void setText(const std::string& text) { set({{textType, text}}); }
    ClipboardSnapshot contents() const;
    /// "" when there is none.
    std::string text() const;
    /// An application pastes: the text, which counts as taken.
    std::string take();
    /// Every text it held, oldest first, and whether it was marked as a secret.
    struct Entry {
        std::string text;
        bool isMarkedSecret = false;
        bool operator==(const Entry&) const = default;
    };
    std::vector<Entry> history() const;

private:
    void replace(ClipboardSnapshot contents, bool isOurs);

    mutable std::mutex mutex_;
    ClipboardSnapshot contents_;
    bool isOurs_ = false; ///< what is there is the transient text
    bool isTaken_ = false;
    std::vector<Entry> history_;
};

} // namespace glyma::simulated
