#pragma once

#include "platform/settings_store.h"
#include "platform/subscription.h"

#include <atomic>

namespace glyma {

/// The switches that turn on diagnostic drawing in the picker and diagnostic messages in the log.
/// Read from any thread; written on the main thread, where `changed` is emitted for a value that differs.
class DebugConfig {
public:
    explicit DebugConfig(SettingsStore& store);

    bool showCaretOverlay() const { return showCaretOverlay_; }
    bool showRankingInfo() const { return showRankingInfo_; }
    bool showPollingIndicator() const { return showPollingIndicator_; }
    bool debugLogsEnabled() const { return debugLogsEnabled_; }
    /// Never stored: off at every start.
    bool logUnredacted() const { return logUnredacted_; }
    bool showDebugTab() const { return showDebugTab_; }

    void setShowCaretOverlay(bool value);
    void setShowRankingInfo(bool value);
    void setShowPollingIndicator(bool value);
    /// Off also turns logUnredacted off.
    void setDebugLogsEnabled(bool value);
    void setLogUnredacted(bool value);
    void setShowDebugTab(bool value);

    Signal<> changed;

private:
    void store(const char* key, std::atomic<bool>& field, bool value);
    void assign(std::atomic<bool>& field, bool value);

    SettingsStore& store_;
    std::atomic<bool> showCaretOverlay_;
    std::atomic<bool> showRankingInfo_;
    std::atomic<bool> showPollingIndicator_;
    std::atomic<bool> debugLogsEnabled_;
    std::atomic<bool> logUnredacted_ = false;
    std::atomic<bool> showDebugTab_;
};

} // namespace glyma
