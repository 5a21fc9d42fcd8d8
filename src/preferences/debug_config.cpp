#include "preferences/debug_config.h"

#include <nlohmann/json.hpp>

namespace glyma {

namespace {

constexpr const char* caretOverlayKey = "debug.showCaretOverlay";
constexpr const char* rankingInfoKey = "debug.showRankingInfo";
constexpr const char* pollingIndicatorKey = "debug.showPollingIndicator";
constexpr const char* logsEnabledKey = "debug.debugLogsEnabled";
constexpr const char* debugTabKey = "debug.showDebugTab";

bool storedSwitch(const SettingsStore& store, const char* key) {
    const auto value = store.value(key);
    return value && value->is_boolean() && value->get<bool>();
}

} // namespace

DebugConfig::DebugConfig(SettingsStore& store)
    : store_(store)
    , showCaretOverlay_(storedSwitch(store, caretOverlayKey))
    , showRankingInfo_(storedSwitch(store, rankingInfoKey))
    , showPollingIndicator_(storedSwitch(store, pollingIndicatorKey))
    , debugLogsEnabled_(storedSwitch(store, logsEnabledKey))
    , showDebugTab_(storedSwitch(store, debugTabKey)) {}

void DebugConfig::setShowCaretOverlay(bool value) {
    store(caretOverlayKey, showCaretOverlay_, value);
}

void DebugConfig::setShowRankingInfo(bool value) {
    store(rankingInfoKey, showRankingInfo_, value);
}

void DebugConfig::setShowPollingIndicator(bool value) {
    store(pollingIndicatorKey, showPollingIndicator_, value);
}

void DebugConfig::setDebugLogsEnabled(bool value) {
    store(logsEnabledKey, debugLogsEnabled_, value);
    if (!value)
        assign(logUnredacted_, false);
}

void DebugConfig::setLogUnredacted(bool value) {
    assign(logUnredacted_, value);
}

void DebugConfig::setShowDebugTab(bool value) {
    store(debugTabKey, showDebugTab_, value);
}

void DebugConfig::store(const char* key, std::atomic<bool>& field, bool value) {
    store_.set(key, value);
    assign(field, value);
}

void DebugConfig::assign(std::atomic<bool>& field, bool value) {
    if (field.exchange(value) != value)
        changed.emit();
}

} // namespace glyma
