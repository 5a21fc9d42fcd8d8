// Shows one state of the preferences window and saves a picture of it. See tools/screenshots.sh.

#include "catalogue/random_picks.h"
#include "platform/linux/xdg/desktop_entries.h"
#include "preferences/qt/advanced_tab.h"
#include "preferences/qt/exclusion_sheets.h"
#include "preferences/qt/exclusions_tab.h"
#include "preferences/qt/general_tab.h"
#include "preferences/qt/replacements_tab.h"
#include "preferences/qt/snippet_list.h"
#include "preferences/qt/unicode_tab.h"
#include "preferences_desk.h"
#include "translation/translations.h"

#include <QApplication>
#include <QCheckBox>
#include <QCommandLineParser>
#include <QDialog>
#include <QEventLoop>
#include <QFontDatabase>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QScreen>
#include <QTimer>

#include <cstdio>
#include <map>

namespace {

using namespace glyma;
using gallery::PreferencesDesk;
using namespace qt;

/// For the window manager, the animation and the first paint.
constexpr int settleMilliseconds = 500;

void wait() {
    QEventLoop loop;
    QTimer::singleShot(settleMilliseconds, &loop, [&] { loop.quit(); });
    loop.exec();
}

/// A font that desktops use, where the virtual display's own default would be a plain one.
void chooseFont() {
    for (const auto* family : {"Inter", "Cantarell", "Noto Sans"})
        if (QFontDatabase::hasFamily(QLatin1String(family))) {
            QApplication::setFont(QFont(QLatin1String(family), 10));
            return;
        }
}

template<typename Widget>
Widget* shown(const PreferencesDesk& desk, const QString& name) {
    for (auto* widget : desk.window.findChildren<Widget*>())
        if (widget->isVisible() && (widget->accessibleName() == name || widget->property("text") == name))
            return widget;
    return nullptr;
}

void press(const PreferencesDesk& desk, const QString& name) {
    if (auto* button = shown<QPushButton>(desk, name))
        button->click();
}

void withoutPermissions(PreferencesDesk& desk) {
    desk.inputMonitoring.set(
        {.isGranted = false,
         .finding = Message::tr("the X server does not offer the extension %1, without which "
                                "no typing for the user is possible")
                        .arg("XTEST"),
         .remedy = Message::tr("Start the X server without \"-extension %1\", or use a "
                               "current X.Org server.")
                       .arg("XTEST")});
    desk.accessibility.set({.isGranted = false,
                            .finding = Message::tr("the accessibility bus is switched off"),
                            .remedy = {},
                            .canBeObtained = true});
}

void record(PreferencesDesk& desk) {
    desk.debug.setShowDebugTab(true);
    RandomPickHistory emoji(*desk.settings, true);
    for (const auto* character : {"🚀", "👍🏽", "🥨", "🦊", "🌻"})
        emoji.record(character, Timestamp());
    RandomPickHistory(*desk.settings, false).record("ʬ", Timestamp());
}

void installApplications(PreferencesDesk& desk) {
    std::vector<ExcludedApp> excluded;
    for (const auto& application : xdg::DesktopEntries({"/usr/share"}, "/usr/bin").withWindows()) {
        desk.applications.identifiers.insert(application.identifier);
        desk.applications.known.emplace(application.identifier, application);
        if (excluded.size() < 3)
            excluded.push_back({application.identifier, application.name, excluded.size() != 1});
    }
    excluded.push_back({"com.slack.Slack", "Slack"});
    desk.preferences.setExcludedApps(excluded);
}

void fillLibrary(PreferencesDesk& desk) {
    if (!desk.fillLibrary(GLYMA_SOURCE_DIR "/resources"))
        std::fputs("preferences_gallery: the catalogue could not be imported\n", stderr);
}

void selectBlock(PreferencesDesk& desk, const QString& name) {
    auto* list = shown<QListView>(desk, UnicodeTab::tr("Blocks"));
    const auto found = list->model()->match(list->model()->index(0, 0), Qt::DisplayRole, name);
    list->setCurrentIndex(found.value(0));
}

void filterCharacters(PreferencesDesk& desk, const QString& text) {
    shown<QLineEdit>(desk, UnicodeTab::tr("Filter characters…"))->setText(text);
}

void selectArrows(PreferencesDesk& desk) {
    desk.catalogue.recordUsage("←", "left");
    selectBlock(desk, QStringLiteral("Arrows"));
    auto* list = shown<QListView>(desk, UnicodeTab::tr("Characters"));
    const auto arrow =
        list->model()->match(list->model()->index(0, 0), Qt::DisplayRole, QStringLiteral("left arrow"));
    list->setCurrentIndex(arrow.value(0));
    list->setFocus();
    list->model()->setData(list->model()->index(1, 0), {}, Qt::CheckStateRole);
}

struct Scene {
    const char* page;
    std::function<void(PreferencesDesk&)> before = [](PreferencesDesk&) {};
    std::function<void(PreferencesDesk&)> after = [](PreferencesDesk&) {};
};

Scene secureInput(pid_t process, const ProcessFacts& facts) {
    return {"permissions", [=](PreferencesDesk& desk) { desk.holdSecureInput(process, facts); }};
}

const std::map<QString, Scene> scenes = {
    {QStringLiteral("general"), {"general"}},
    {QStringLiteral("general-refused"),
     {"general",
      [](PreferencesDesk& desk) {
          desk.loginItem.refusal = Message::tr(
              "Glyma cannot be started at login: it does not know where it is installed. Install it again.");
      },
      [](PreferencesDesk& desk) {
          shown<QCheckBox>(desk, GeneralTab::tr("&Start Glyma at login").remove(u'&'))->click();
      }}},
    {QStringLiteral("exclusions"), {"exclusions", installApplications}},
    {QStringLiteral("exclusions-none"),
     {"exclusions",
      [](PreferencesDesk& desk) {
          desk.preferences.setExcludedApps({});
          desk.preferences.setExcludedWebsites({});
      }}},
    {QStringLiteral("exclusions-application"),
     {"exclusions", installApplications,
      [](PreferencesDesk& desk) { press(desk, ExclusionsTab::tr("Add excluded application")); }}},
    {QStringLiteral("exclusions-website"),
     {"exclusions",
      [](PreferencesDesk& desk) {
          desk.pages.addresses = {"https://docs.example.org/start", "https://chat.example.com/"};
      },
      [](PreferencesDesk& desk) {
          press(desk, ExclusionsTab::tr("Add excluded website"));
          desk.clock.advance(std::chrono::seconds(1));
      }}},
    {QStringLiteral("exclusions-website-refused"),
     {"exclusions", [](PreferencesDesk&) {},
      [](PreferencesDesk& desk) {
          press(desk, ExclusionsTab::tr("Add excluded website"));
          desk.window.findChild<QDialog*>()->findChild<QLineEdit*>()->setText(QStringLiteral("not a domain"));
          press(desk, AddWebsiteSheet::tr("&Add"));
      }}},
    {QStringLiteral("library"), {"unicode", fillLibrary, selectArrows}},
    {QStringLiteral("library-emoji"),
     {"unicode", fillLibrary,
      [](PreferencesDesk& desk) {
          selectBlock(desk, QStringLiteral("Emoticons"));
          filterCharacters(desk, QStringLiteral("cat"));
          shown<QListView>(desk, UnicodeTab::tr("Characters"))->selectAll();
      }}},
    {QStringLiteral("library-nothing"),
     {"unicode", fillLibrary,
      [](PreferencesDesk& desk) {
          selectBlock(desk, QStringLiteral("Arrows"));
          filterCharacters(desk, QStringLiteral("qwxz"));
      }}},
    {QStringLiteral("library-importing"), {"unicode", [](PreferencesDesk& desk) { desk.catalogue.start(); }}},
    {QStringLiteral("library-failed"),
     {"unicode", [](PreferencesDesk& desk) { desk.catalogue.start(); },
      [](PreferencesDesk& desk) { desk.clock.advance(std::chrono::seconds(1)); }}},
    {QStringLiteral("replacements"),
     {"replacements", [](PreferencesDesk&) {},
      [](PreferencesDesk& desk) {
          auto* list = shown<QListView>(desk, SnippetList::tr("Replacements"));
          list->setCurrentIndex(list->model()->index(1, 0));
      }}},
    {QStringLiteral("replacements-none"),
     {"replacements", [](PreferencesDesk& desk) { desk.preferences.setUserReplacements({}); }}},
    {QStringLiteral("replacement-new"),
     {"replacements", [](PreferencesDesk&) {},
      [](PreferencesDesk& desk) { press(desk, ReplacementsTab::tr("Add replacement")); }}},
    {QStringLiteral("permissions"), {"permissions"}},
    {QStringLiteral("permissions-missing"), {"permissions", withoutPermissions}},
    {QStringLiteral("secure-input-unknown"), secureInput(0, {})},
    {QStringLiteral("secure-input-running"), secureInput(4711, {.exists = true, .name = "xterm"})},
    {QStringLiteral("secure-input-system"),
     secureInput(4711, {.exists = true, .isLocker = true, .name = "xscreensaver"})},
    {QStringLiteral("secure-input-stale"), secureInput(4711, {})},
    {QStringLiteral("secure-input-self"), secureInput(1, {.exists = true, .name = "Glyma"})},
    {QStringLiteral("advanced"), {"advanced"}},
    {QStringLiteral("advanced-delete"),
     {"advanced", [](PreferencesDesk&) {},
      [](PreferencesDesk& desk) { press(desk, AdvancedTab::tr("Delete App Container and &Quit…")); }}},
    {QStringLiteral("debug"), {"debug", record}},
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const Translations translations;
    chooseFont();
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions(
        {{QStringLiteral("scene"), QString(), QStringLiteral("name"), QStringLiteral("general")},
         {QStringLiteral("output"), QString(), QStringLiteral("file"), QStringLiteral("preferences.png")}});
    parser.process(application);
    const auto found = scenes.find(parser.value(QStringLiteral("scene")));
    if (found == scenes.end()) {
        std::fputs("preferences_gallery: no such scene; there are", stderr);
        for (const auto& [name, scene] : scenes)
            std::fprintf(stderr, " %s", qPrintable(name));
        std::fputc('\n', stderr);
        return 2;
    }
    const auto& [page, before, after] = found->second;
    PreferencesDesk desk;
    before(desk);
    desk.window.show(page);
    wait();
    after(desk);
    wait();
    const auto place = desk.window.frameGeometry();
    const auto picture =
        QGuiApplication::primaryScreen()->grabWindow(0, place.x(), place.y(), place.width(), place.height());
    return picture.save(parser.value(QStringLiteral("output"))) ? 0 : 1;
}
