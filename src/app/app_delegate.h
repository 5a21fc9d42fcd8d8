#pragma once

#include "catalogue/unicode_data_manager.h"
#include "permissions/permissions.h"
#include "platform/login_item.h"
#include "platform/scheduler.h"
#include "preferences/log.h"
#include "preferences/program_operations.h"
#include "preferences/user_preferences.h"

#include <expected>
#include <functional>
#include <optional>
#include <string>

namespace glyma {

/// What the delegate makes others do.
struct AppDelegateServices {
    Scheduler& scheduler;
    Log& log;
    const UserPreferences& preferences;
    LoginItem& loginItem;
    UnicodeDataManager& catalogue;
    Permissions& permissions;
    /// The error says why keys cannot be heard and what to do; it also turns up in the permissions.
    std::function<std::expected<void, std::string>()> startMonitor;
    std::function<void()> stopMonitor;
    /// In the user's browser.
    std::function<void(const std::string& address)> openAddress;
    /// \param tab  the page; empty: the one shown last.
    std::function<void(const std::string& tab)> showPreferences;
    std::function<void()> quit;
    /// Scheme and host of the vendor's web site, and the program's version.
    std::string updateHost;
    std::string version;
};

/// Starts and ends what the program consists of, and keeps it in step with what the desktop permits: the
/// keyboard monitor runs exactly while keys may be heard. What the tray shows is read here. Main thread.
class AppDelegate : public ProgramOperations {
public:
    explicit AppDelegate(AppDelegateServices services);
    ~AppDelegate() override;
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    void applicationDidFinishLaunching();
    void applicationWillTerminate();

    bool isImporting() const { return isImporting_; }
    bool permissionsNeeded() const { return services_.permissions.permissionsNeeded(); }
    bool secureInputBlocked() const { return services_.permissions.secureInput().isOn; }
    std::optional<Holder> secureInputHolder() const { return services_.permissions.secureInput().holder; }
    bool isMonitorRunning() const { return isMonitorRunning_; }
    /// Whether the data are to be removed once everything has ended.
    bool mustDeleteContainer() const { return mustDeleteContainer_; }
    /// One of the above is different.
    Signal<> changed;

    void openPreferences(const std::string& tab) { services_.showPreferences(tab); }
    void openUpdatePage() override;
    void deleteContainerAndQuit() override;
    void quit() override { services_.quit(); }

private:
    void handleImportStarted();
    void handleImportComplete();
    void startAtLogin();
    void refreshPermissions();
    void followPermissions();
    void startMonitor();
    void stopMonitor();

    AppDelegateServices services_;
    bool isImporting_ = false;
    bool isMonitorRunning_ = false;
    /// It failed to start, or was stopped, and the next check is to try again.
    bool mayRetryMonitor_ = false;
    bool isSwitchingMonitor_ = false;
    bool mustDeleteContainer_ = false;
    Subscription importStarted_;
    Subscription importComplete_;
    Subscription permissionsChanged_;
    Subscription permissionTimer_;
};

} // namespace glyma
