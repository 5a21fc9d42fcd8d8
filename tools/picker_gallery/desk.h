#pragma once

#include "catalogue/unicode_data_manager.h"
#include "data/store.h"
#include "picker/emoji_picker_view_model.h"
#include "picker/qt/emoji_picker_panel.h"
#include "platform/linux/fonts/font_families.h"
#include "platform/linux/fonts/fontconfig_coverage.h"
#include "platform/linux/xdg/system_clock.h"
#include "platform/qt/qt_scheduler.h"
#include "platform/qt/qt_screens.h"
#include "platform/simulated/services.h"

#include <QTemporaryDir>

#include <expected>
#include <filesystem>
#include <memory>
#include <string>

namespace glyma::gallery {

/// The picker with all that it needs and nothing of the user's: the whole catalogue in a temporary folder,
/// settings in memory. Needs the QApplication.
class Desk {
public:
    /// Imports the catalogue; blocks for as long as that takes. The error says why it could not.
    static std::expected<std::unique_ptr<Desk>, std::string> make();

    /// What the monitor does when a query begins.
    void open(const std::string& query, const Rect& caret);

    std::filesystem::path storeFile() const;
    const ResourceLocator& resources() const { return resources_; }
    qt::FontChoice fontChoice();

private:
    explicit Desk(Store store);
    bool load();

    simulated::SimulatedLog sink_;
    simulated::SimulatedSettings settings_;
    simulated::SimulatedLoginItem loginItem_;
    simulated::SimulatedInstalledApplications applications_;
    std::unique_ptr<QTemporaryDir> folder_;

public:
    DebugConfig debug{settings_};

private:
    Log log_{sink_, debug};
    fonts::FontconfigCoverage coverage_{log_};
    fonts::FontFamilies families_;

public:
    UserPreferences preferences{settings_, loginItem_, applications_, log_};

private:
    ResourceLocator resources_;
    qt::QtScheduler scheduler_;
    qt::QtTaskRunner tasks_;
    xdg::SystemClock clock_;
    qt::QtScreens screens_;

public:
    UnicodeDataManager catalogue;
    EmojiPickerViewModel model;
    /// How often the picker asked for the target's text element again.
    int recached = 0;
    qt::EmojiPickerPanel panel;
};

/// A font that desktops use, where the virtual display's own default would be a plain one.
void chooseFont();
/// A caret given in logical desktop coordinates of the primary screen, in device pixels.
Rect deviceCaret(const QRect& logical);
/// Lets events happen.
void wait(int milliseconds);

} // namespace glyma::gallery
