#pragma once

#include "app/desktop/tray_icon.h"
#include "app/foundation.h"
#include "catalogue/unicode_data_manager.h"
#include "monitor/keyboard_monitor.h"
#include "monitor/shared_flags.h"
#include "picker/emoji_picker_view_model.h"
#include "picker/qt/emoji_picker_panel.h"
#include "platform/linux/atspi/atspi_accessibility.h"
#include "platform/linux/fonts/font_families.h"
#include "platform/linux/fonts/fontconfig_coverage.h"
#include "platform/linux/x11/front_application_tracker.h"
#include "platform/linux/x11/key_injector.h"
#include "platform/linux/x11/keyboard_tap.h"
#include "platform/linux/x11/mouse_monitor.h"
#include "platform/qt/qt_clipboard.h"
#include "platform/qt/qt_scheduler.h"
#include "platform/qt/qt_screens.h"
#include "text/text_inserter.h"

#include <functional>

namespace glyma {

/// Every service of the running program, each made from those above it. Main thread; needs the QApplication.
class DesktopProgram {
public:
    /// \param foundation  outlives the program.
    /// \param store       the catalogue's, open.
    /// \param onQuit      the user wants the program to end.
    DesktopProgram(Foundation& foundation, Store store, std::function<void()> onQuit);
    ~DesktopProgram();
    DesktopProgram(const DesktopProgram&) = delete;
    DesktopProgram& operator=(const DesktopProgram&) = delete;

    /// Loads the catalogue and begins to listen. Where keys cannot be heard the program goes on and says why.
    void start();

private:
    void listen();
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
    x11::FrontApplicationTracker frontApplications_;
    x11::KeyboardTap tap_;
    x11::MouseMonitor mouse_;
    x11::KeyInjector keys_;
    TextInserter text_;

    EmojiPickerViewModel picker_;
    qt::EmojiPickerPanel window_;
    SharedFlags flags_;
    KeyboardMonitor monitor_;
    TrayIcon tray_;
    Subscription importSubscription_;
    Subscription frontSubscription_;
};

} // namespace glyma
