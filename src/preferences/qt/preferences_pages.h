#pragma once

#include "catalogue/unicode_data_manager.h"
#include "charinfo/qt/shortcut_recorder.h"
#include "permissions/permissions.h"
#include "preferences/debug_config.h"
#include "preferences/program_operations.h"
#include "preferences/qt/exclusions_tab.h"
#include "preferences/qt/preferences_window.h"
#include "preferences/qt/unicode_tab.h"
#include "preferences/user_preferences.h"

#include <functional>
#include <vector>

namespace glyma::qt {

/// What the pages of the preferences show and change. Everything referred to outlives the window.
struct PreferencesPagesServices {
    UserPreferences& preferences;
    DebugConfig& debug;
    UnicodeDataManager& catalogue;
    Permissions& permissions;
    ProgramOperations& program;
    ShortcutRecorderServices recorder;
    ExclusionsTabServices exclusions;
    UnicodeTabServices library;
    QString version;
};

/// The pages in their order.
std::vector<PreferencesPage> makePreferencesPages(const PreferencesPagesServices& services);

} // namespace glyma::qt
