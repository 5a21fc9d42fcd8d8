#include "permissions/permissions.h"

#include <tuple>
#include <utility>

namespace glyma {

Permissions::Permissions(PermissionSource& inputMonitoring, PermissionSource& accessibility,
                         SecureInputChecker& secureInput)
    : inputMonitoringSource_(inputMonitoring)
    , accessibilitySource_(accessibility)
    , checker_(secureInput)
    , inputMonitoring_(inputMonitoring.current())
    , accessibility_(accessibility.current())
    , secureInput_(diagnose())
    , inputMonitoringSubscription_(inputMonitoring.observe([this] { read(); }))
    , accessibilitySubscription_(accessibility.observe([this] { read(); }))
    , secureInputSubscription_(secureInput.changed.connect([this] { read(); })) {}

void Permissions::refresh() {
    inputMonitoringSource_.check();
    accessibilitySource_.check();
    read();
}

/// A grab of our own is given back rather than shown; the holder is shown only where that fails.
SecureInput Permissions::diagnose() {
    auto found = checker_.diagnose();
    if (found.holder && found.holder->kind == Holder::Kind::attributedToSelf &&
        checker_.releaseIfHeldBySelf())
        return {};
    return found;
}

void Permissions::read() {
    // What is read may change meanwhile, and say so.
    if (isReading_)
        return;
    isReading_ = true;
    const auto before = std::tie(inputMonitoring_, accessibility_, secureInput_);
    auto inputMonitoring = inputMonitoringSource_.current();
    auto accessibility = accessibilitySource_.current();
    auto secureInput = diagnose();
    isReading_ = false;
    if (before == std::tie(inputMonitoring, accessibility, secureInput))
        return;
    inputMonitoring_ = std::move(inputMonitoring);
    accessibility_ = std::move(accessibility);
    secureInput_ = std::move(secureInput);
    changed.emit();
}

} // namespace glyma
