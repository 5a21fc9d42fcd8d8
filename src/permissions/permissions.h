#pragma once

#include "permissions/secure_input.h"
#include "platform/permission.h"

namespace glyma {

/// What the desktop lets the program do, as the tray, the preferences and `glyma doctor` say it. Main thread.
class Permissions {
public:
    Permissions(PermissionSource& inputMonitoring, PermissionSource& accessibility,
                SecureInputChecker& secureInput);

    /// Hearing keys and typing.
    const Permission& inputMonitoring() const { return inputMonitoring_; }
    /// Reading the caret and the text around it.
    const Permission& accessibility() const { return accessibility_; }
    const SecureInput& secureInput() const { return secureInput_; }
    /// Something is missing.
    bool permissionsNeeded() const { return !inputMonitoring_.isGranted || !accessibility_.isGranted; }

    /// Switches accessibility on for the session; `changed` tells when it is.
    void obtainAccessibility() { accessibilitySource_.obtain(); }
    /// Looks again: no new connections, no waiting.
    void refresh();

    Signal<> changed;

private:
    void read();
    SecureInput diagnose();

    PermissionSource& inputMonitoringSource_;
    PermissionSource& accessibilitySource_;
    SecureInputChecker& checker_;
    Permission inputMonitoring_;
    Permission accessibility_;
    SecureInput secureInput_;
    bool isReading_ = false;
    Subscription inputMonitoringSubscription_;
    Subscription accessibilitySubscription_;
    Subscription secureInputSubscription_;
};

} // namespace glyma
