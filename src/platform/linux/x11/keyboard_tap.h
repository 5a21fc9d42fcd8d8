#pragma once

#include "platform/keyboard_tap.h"
#include "platform/linux/x11/keyboard_link.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace glyma::x11 {

class TapListener;

struct TapOptions {
    /// As in DISPLAY; empty: its value.
    std::string display;
    /// Sentences for the log; called on any thread.
    std::function<void(std::string_view)> report;
    /// The server is gone; called on the tap thread, which then ends.
    std::function<void()> connectionLost;
};

/// Hears every key of the session through the server's raw events, which come before (and whether or not) any
/// application gets the key, and makes text of them itself. Repeats of a held key, which are not raw events,
/// come from the RECORD extension. Never takes a key by the callback's verdict: what is consumed is claimed
/// ahead.
class KeyboardTap : public glyma::KeyboardTap {
public:
    explicit KeyboardTap(TapOptions options = {});
    ~KeyboardTap() override;

    /// While the function answers true nothing is handed to the callback and nothing is claimed. Called on
    /// the tap thread at every key and when woken; to be set before start().
    void setSuppressed(std::function<bool()> isSuppressed);
    /// Its answer may be another one now: so that what is claimed is right already when the next key comes.
    /// Any thread.
    void checkSuppression() { link_->wakeTap(); }

    std::expected<void, std::string> start(Callback callback) override;
    void stop() override;
    void enable() override {}
    void claim(const KeyClaims& claims) override;
    std::shared_ptr<TypingHold> holdTyping() override;

    /// Ends the hold of typing that is on, whoever wanted it. Any thread.
    void releaseTyping() { link_->release(link_->currentHold()); }

    /// For the injector.
    const std::shared_ptr<KeyboardLink>& link() const { return link_; }

private:
    TapOptions options_;
    std::shared_ptr<KeyboardLink> link_;
    std::function<bool()> isSuppressed_;
    std::unique_ptr<TapListener> listener_;
};

} // namespace glyma::x11
