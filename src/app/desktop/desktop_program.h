#pragma once

#include "app/app_delegate.h"
#include "app/desktop/primary_selection.h"
#include "app/desktop/tray_icon.h"
#include "app/foundation.h"
#include "catalogue/unicode_data_manager.h"
#include "charinfo/character_info_presenter.h"
#include "charinfo/qt/character_info_panel.h"
#include "monitor/keyboard_monitor.h"
#include "monitor/shared_flags.h"
#include "permissions/permissions.h"
#include "permissions/secure_input.h"
#include "picker/emoji_picker_view_model.h"
#include "picker/qt/emoji_picker_panel.h"
#include "platform/linux/atspi/atspi_accessibility.h"
#include "platform/linux/dbus/accessibility_bus.h"
#include "platform/linux/fonts/font_families.h"
#include "platform/linux/fonts/fontconfig_coverage.h"
#include "platform/linux/x11/front_application_tracker.h"
#include "platform/linux/x11/grab_watch.h"
#include "platform/linux/x11/input_monitoring.h"
#include "platform/linux/x11/key_injector.h"
#include "platform/linux/x11/keyboard_tap.h"
#include "platform/linux/x11/mouse_monitor.h"
#include "platform/linux/xdg/proc_processes.h"
#include "platform/qt/own_text_field.h"
#include "platform/qt/qt_clipboard.h"
#include "platform/qt/qt_scheduler.h"
#include "platform/qt/qt_screens.h"
#include "preferences/qt/preferences_window.h"
#include "text/text_inserter.h"

namespace glyma {

/// Every service of the running program, each made from those above it. Main thread; needs the QApplication.
class DesktopProgram {
public:
    /// \param foundation  outlives the program.
    /// \param store       the catalogue's, open.
    DesktopProgram(Foundation& foundation, Store store);
    ~DesktopProgram();
    DesktopProgram(const DesktopProgram&) = delete;
    DesktopProgram& operator=(const DesktopProgram&) = delete;

    /// Loads the catalogue and begins to listen. Where keys cannot be heard the program goes on and says why.
    void start();
    /// \param tab  the page; empty: the one shown last.
    void showPreferences(const std::string& tab);
    CharacterInfoPresenter& characterInfo() { return characterInfo_; }
    /// Ends the main loop with this exit status, once the text that is being inserted stands, at the latest
    /// in half a second.
    void end(int status);
    /// What `glyma doctor` is to say of the permissions, as JSON.
    std::string diagnosis() const;
    /// The user wants the data gone once the program has ended.
    bool mustDeleteContainer() const { return delegate_.mustDeleteContainer(); }

private:
    AppDelegateServices delegateServices();
    std::vector<qt::PreferencesPage> preferencesPages();
    std::expected<void, std::string> startMonitor();
    void say(const std::string& obstacle);
    void sayUnreachable(const Message& why);
    void sayThatNoTrayIsThere();
    void updateTray();
    void report(std::string_view message);

    Foundation& foundation_;
    qt::QtScheduler scheduler_;
    fonts::FontconfigCoverage fontCoverage_;
    fonts::FontFamilies fontFamilies_;
    qt::QtTaskRunner tasks_;
    UnicodeDataManager catalogue_;

    qt::QtScreens screens_;
    qt::QtBell bell_;
    qt::QtClipboard clipboard_;
    qt::QtClipboard primarySelection_;
    atspi::AtspiAccessibility accessibility_;
    qt::WithOwnTextField textElements_;
    x11::FrontApplicationTracker frontApplications_;
    x11::GrabWatch grabs_;
    xdg::ProcProcesses processes_;
    SecureInputChecker secureInput_;
    x11::InputMonitoring inputMonitoring_;
    dbus::AccessibilityBus accessibilityBus_;
    Permissions permissions_;
    x11::KeyboardTap tap_;
    x11::MouseMonitor mouse_;
    x11::KeyInjector keys_;
    TextInserter text_;

    EmojiPickerViewModel picker_;
    qt::EmojiPickerPanel window_;
    SharedFlags flags_;
    CharacterInfos characterInfos_;
    PrimarySelection lastSelection_;
    qt::Appearance appearance_;
    qt::CompositorWatch compositor_;
    qt::CharacterInfoPanel characterInfoPanel_;
    CharacterInfoPresenter characterInfo_;
    KeyboardMonitor monitor_;
    AppDelegate delegate_;
    TrayIcon tray_;
    qt::PreferencesWindow preferences_;
    std::string said_;
    Subscription importSubscription_;
    Subscription frontSubscription_;
    Subscription grabSubscription_;
    Subscription delegateSubscription_;
    Subscription preferencesSubscription_;
    Subscription trayCheck_;
    Subscription ending_;
};

} // namespace glyma
