#include "app/app_delegate.h"

#include "app/update_page.h"

#include <utility>

namespace glyma {

namespace {

constexpr Milliseconds permissionCheckInterval{5000};

} // namespace

AppDelegate::AppDelegate(AppDelegateServices services)
    : services_(std::move(services)) {}

AppDelegate::~AppDelegate() {
    applicationWillTerminate();
}

void AppDelegate::applicationDidFinishLaunching() {
    services_.log.debug("applicationDidFinishLaunching");
    importStarted_ = services_.catalogue.importStarted.connect([this] { handleImportStarted(); });
    importComplete_ =
        services_.catalogue.importComplete.connect([this](const std::string&) { handleImportComplete(); });
    services_.catalogue.start();
    if (services_.log.debugEnabled())
        services_.log.debug("emojis loaded: {}", services_.catalogue.allKeywordedCharacters().size());
    startAtLogin();
    permissionsChanged_ = services_.permissions.changed.connect([this] { followPermissions(); });
    refreshPermissions();
    permissionTimer_ = services_.scheduler.every(permissionCheckInterval, [this] { refreshPermissions(); });
}

void AppDelegate::applicationWillTerminate() {
    permissionTimer_.reset();
    permissionsChanged_.reset();
    if (std::exchange(isMonitorRunning_, false))
        services_.stopMonitor();
}

void AppDelegate::handleImportStarted() {
    isImporting_ = true;
    changed.emit();
}

void AppDelegate::handleImportComplete() {
    isImporting_ = false;
    changed.emit();
}

/// The entry may have been written by a program that was installed elsewhere. Nobody waits for it, and the
/// preferences say why when it cannot be written.
void AppDelegate::startAtLogin() {
    services_.scheduler.post([&preferences = services_.preferences, &loginItem = services_.loginItem] {
        if (preferences.startAtLogin()) [[maybe_unused]]
            const auto ignored = loginItem.enable();
    });
}

void AppDelegate::refreshPermissions() {
    services_.permissions.refresh();
    if (mayRetryMonitor_ && !isMonitorRunning_)
        startMonitor();
    followPermissions();
}

void AppDelegate::followPermissions() {
    if (isSwitchingMonitor_)
        return;
    const bool mayHear = services_.permissions.inputMonitoring().isGranted;
    if (isMonitorRunning_ && !mayHear)
        stopMonitor();
    else if (!isMonitorRunning_ && mayHear && !mayRetryMonitor_)
        startMonitor();
    changed.emit();
}

void AppDelegate::startMonitor() {
    isSwitchingMonitor_ = true;
    const auto started = services_.startMonitor();
    isSwitchingMonitor_ = false;
    isMonitorRunning_ = started.has_value();
    mayRetryMonitor_ = !isMonitorRunning_;
    if (isMonitorRunning_)
        services_.log.debug("permission granted — keyboard monitor running");
    else
        services_.log.debug("KeyboardMonitor.start() failed despite permission probe succeeding");
}

void AppDelegate::stopMonitor() {
    services_.stopMonitor();
    isMonitorRunning_ = false;
    mayRetryMonitor_ = true;
    services_.log.debug("input monitoring revoked — keyboard monitor stopped");
}

void AppDelegate::openUpdatePage() {
    const auto address = updatePageAddress(services_.updateHost, services_.version);
    services_.log.debug("Glyma: [update] opening {}", address);
    services_.openAddress(address);
}

void AppDelegate::deleteContainerAndQuit() {
    mustDeleteContainer_ = true;
    services_.quit();
}

} // namespace glyma
