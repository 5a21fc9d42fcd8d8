#include "preferences/qt/preferences_pages.h"

#include "preferences/qt/advanced_tab.h"
#include "preferences/qt/debug_tab.h"
#include "preferences/qt/general_tab.h"
#include "preferences/qt/permissions_tab.h"
#include "preferences/qt/replacements_tab.h"

#include <QCoreApplication>

namespace glyma::qt {

namespace {

struct Titles {
    Q_DECLARE_TR_FUNCTIONS(glyma::qt::PreferencesPages)
};

} // namespace

std::vector<PreferencesPage> makePreferencesPages(const PreferencesPagesServices& services) {
    return {
        {.id = "general",
         .title = Titles::tr("&General"),
         .symbol = Symbol::general,
         .make =
             [services] {
                 return new GeneralTab({.preferences = services.preferences,
                                        .program = services.program,
                                        .recorder = services.recorder,
                                        .version = services.version});
             }},
        {.id = "exclusions",
         .title = Titles::tr("&Exclusions"),
         .symbol = Symbol::exclusions,
         .height = 500,
         .make = [services] { return new ExclusionsTab(services.exclusions); }},
        {.id = "unicode",
         .title = Titles::tr("&Library"),
         .symbol = Symbol::library,
         .width = 960,
         .height = 550,
         .make = [services] { return new UnicodeTab(services.library); }},
        {.id = "replacements",
         .title = Titles::tr("&Replacements"),
         .symbol = Symbol::replacements,
         .make = [services] { return new ReplacementsTab(services.preferences); }},
        {.id = "permissions",
         .title = Titles::tr("&Permissions"),
         .symbol = Symbol::permissions,
         .make = [services] { return new PermissionsTab(services.permissions); }},
        {.id = "advanced",
         .title = Titles::tr("&Advanced"),
         .symbol = Symbol::advanced,
         .make = [services] { return new AdvancedTab(services.debug, services.program); }},
        {.id = "debug",
         .title = Titles::tr("&Debug"),
         .symbol = Symbol::debug,
         .make = [services] { return new DebugTab(services.catalogue); },
         .isThere = [services] { return services.debug.showDebugTab(); }},
    };
}

} // namespace glyma::qt
