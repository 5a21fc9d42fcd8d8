#include "app/desktop/desktop_program.h"

#include "app/command_line.h"
#include "app/permission_diagnosis.h"
#include "app/terminal.h"
#include "catalogue/catalogue_files.h"
#include "platform/linux/dbus/notification.h"
#include "platform/linux/x11/activate_window.h"
#include "platform/linux/x11/key_codes.h"
#include "platform/linux/x11/tray_colors.h"
#include "preferences/qt/preferences_pages.h"

#include <QApplication>
#include <QDesktopServices>
#include <QUrl>
#include <fmt/format.h>

#include <utility>

namespace glyma {

namespace {

std::optional<std::string> identifierOf(const xdg::DesktopEntries& applications,
                                        const x11::WindowIdentity& window) {
    return applications.identifierFor({.applicationId = window.applicationId,
                                       .wmClassInstance = window.wmClassInstance,
                                       .wmClassName = window.wmClassName});
}

/// What the tracker says when a window of ours is in front: Qt names them after the application object.
std::string ownIdentifier(const xdg::DesktopEntries& applications) {
    return applications
        .identifierFor(
            {.applicationId = "net.quillaby.Glyma", .wmClassInstance = "glyma", .wmClassName = "Glyma"})
        .value_or("glyma");
}

constexpr Milliseconds timeForTray{5000};

// What is told in English of applications that cannot be reached, and shown with the permissions.
[[maybe_unused]] constexpr const char* reasons[] = {
    QT_TRANSLATE_NOOP("glyma::Message", "the accessibility bus does not accept connections"),
    QT_TRANSLATE_NOOP("glyma::Message", "the accessibility bus has ended"),
};
constexpr Milliseconds betweenLooksAtInsertion{10};
constexpr int mostLooksAtInsertion = 50;

/// What the program itself takes the keyboard for, besides an insertion.
void closeMenus() {
    while (auto* menu = QApplication::activePopupWidget())
        if (!menu->close())
            return;
}

qt::FontChoice fontChoice(fonts::FontFamilies& families) {
    return {.emojiFamily = QString::fromStdString(families.emojiFontFamily()),
            .familyFor = [&families](std::string_view text) {
                return QString::fromStdString(families.familyFor(text));
            }};
}

/// \param scanCode, keysym  those of Qt's X11 platform: an X key code and a keysym.
qt::PressedKey pressedKey(std::uint32_t scanCode, std::uint32_t keysym) {
    return {.keyCode = x11::codeOfPress(static_cast<xcb_keycode_t>(scanCode), keysym),
            .characters = x11::textOfKeysym(keysym)};
}

} // namespace

DesktopProgram::DesktopProgram(Foundation& foundation, Store store)
    : foundation_(foundation)
    , fontCoverage_(foundation.log)
    , catalogue_({.scheduler = scheduler_,
                  .tasks = tasks_,
                  .clock = foundation.clock,
                  .settings = foundation.settings,
                  .preferences = foundation.preferences,
                  .log = foundation.log,
                  .resources = foundation.resources,
                  .fonts = fontCoverage_},
                 std::move(store))
    , clipboard_(QClipboard::Clipboard)
    , primarySelection_(QClipboard::Selection)
    , accessibility_({.enableBus = true,
                      .warn = [this](const Message& why) { sayUnreachable(why); },
                      .focusMoved =
                          [this] {
                              scheduler_.post([this] {
                                  tap_.checkSuppression();
                                  monitor_.focusMoved();
                              });
                          }})
    , textElements_(accessibility_, [this]() -> bool { return flags_.isTestFieldFocused; })
    , frontApplications_(scheduler_,
                         [&applications = foundation.applications](const x11::WindowIdentity& window) {
                             return identifierOf(applications, window);
                         })
    , grabs_(scheduler_)
    , processes_(foundation.applications)
    , secureInput_({.scheduler = scheduler_,
                    .grabs = grabs_,
                    .processes = processes_,
                    .focusIsPasswordField = [this] { return accessibility_.focusIsPasswordField(); },
                    .focusedProcess = [this] { return frontApplications_.current().process; },
                    .releaseOwnGrabs =
                        [this] {
                            closeMenus();
                            tap_.releaseTyping();
                        }})
    , permissions_(inputMonitoring_, accessibilityBus_, secureInput_)
    , tap_({.display = {},
            .report = [this](std::string_view message) { report(message); },
            .connectionLost =
                [this] {
                    scheduler_.post([this] {
                        inputMonitoring_.setObstacle(Message::tr("the connection to the X server was lost"));
                    });
                }})
    , mouse_(scheduler_)
    , keys_(tap_.link())
    , text_({.scheduler = scheduler_,
             .accessibility = textElements_,
             .clipboard = clipboard_,
             .keys = keys_,
             .frontApplications = frontApplications_,
             .screens = screens_,
             .bell = bell_,
             .preferences = foundation.preferences,
             .log = foundation.log,
             .primarySelection = &primarySelection_})
    , picker_(catalogue_)
    , window_({.model = picker_,
               .preferences = foundation.preferences,
               .debug = foundation.debug,
               .screens = screens_,
               .fonts = fontChoice(fontFamilies_),
               .randomPool = [this](bool isEmoji) -> const std::vector<std::string>& {
                   return isEmoji ? catalogue_.randomEmojiPool() : catalogue_.randomUnicodeDisplayPool();
               },
               .recacheSourceFromApp = [this] { text_.recacheSourceFromApp(); }})
    , characterInfos_(storeFile(foundation.folders.data), foundation.resources)
    , characterInfoPanel_(appearance_, compositor_, fontChoice(fontFamilies_),
                          [this] { characterInfo_.closeCharacterInfo(); })
    , characterInfo_({.infos = characterInfos_,
                      .text = text_,
                      .lastSelection = lastSelection_,
                      .screens = screens_,
                      .bell = bell_,
                      .flags = flags_,
                      .window = characterInfoPanel_,
                      .mouse = mouse_})
    , monitor_({.tap = tap_,
                .mouse = mouse_,
                .scheduler = scheduler_,
                .tasks = tasks_,
                .accessibility = accessibility_,
                .frontApplications = frontApplications_,
                .screens = screens_,
                .text = text_,
                .catalogue = catalogue_,
                .picker = picker_,
                .window = window_,
                .preferences = foundation.preferences,
                .flags = flags_,
                .log = foundation.log,
                .ownIdentifier = ownIdentifier(foundation.applications),
                .showCharacterInfoForSelection = [this] { characterInfo_.showCharacterInfoForSelection(); },
                .closeCharacterInfo = [this] { characterInfo_.closeCharacterInfo(); }})
    , delegate_(delegateServices())
    , tray_(scheduler_,
            {.openPreferences = [this](const std::string& tab) { delegate_.openPreferences(tab); },
             .openUpdatePage = [this] { delegate_.openUpdatePage(); },
             .quit = [this] { delegate_.quit(); }},
            [this] {
                const auto* const connection = inputMonitoring_.connection();
                return connection ? x11::isTrayDark(*connection) : std::nullopt;
            })
    , preferences_({.settings = foundation.settings,
                    .debug = foundation.debug,
                    .log = foundation.log,
                    .activate = [](WId window) { x11::activateWindow(static_cast<xcb_window_t>(window)); }},
                   preferencesPages()) {
    tap_.setSuppressed([this] { return secureInput_.mustNotListen(); });
    grabSubscription_ = grabs_.observe([this] { tap_.checkSuppression(); });
    delegateSubscription_ = delegate_.changed.connect([this] { updateTray(); });
    preferencesSubscription_ = foundation.preferences.changed.connect([this] { updateTray(); });
    // An application that was never asked before takes its time: ask before the user wants anything.
    frontSubscription_ = frontApplications_.observe(
        [this](const FrontApplication& application) { accessibility_.prepare(application.process); });
    importSubscription_ = catalogue_.importComplete.connect([this](const std::string& why) {
        if (!why.empty())
            report(fmt::format("Glyma: ⚠️ nothing can be searched: building the catalogue failed — {}",
                               why));
    });
}

DesktopProgram::~DesktopProgram() {
    delegate_.applicationWillTerminate();
}

AppDelegateServices DesktopProgram::delegateServices() {
    return {.scheduler = scheduler_,
            .log = foundation_.log,
            .preferences = foundation_.preferences,
            .loginItem = foundation_.loginItem,
            .catalogue = catalogue_,
            .permissions = permissions_,
            .startMonitor = [this] { return startMonitor(); },
            .stopMonitor = [this] { monitor_.stop(); },
            .openAddress =
                [](const std::string& address) {
                    QDesktopServices::openUrl(QUrl(QString::fromStdString(address)));
                },
            .showPreferences = [this](const std::string& tab) { showPreferences(tab); },
            .quit = [this] { end(status::done); },
            .updateHost = GLYMA_UPDATE_HOST,
            .version = GLYMA_VERSION};
}

std::vector<qt::PreferencesPage> DesktopProgram::preferencesPages() {
    return qt::makePreferencesPages({.preferences = foundation_.preferences,
                                     .debug = foundation_.debug,
                                     .catalogue = catalogue_,
                                     .permissions = permissions_,
                                     .program = delegate_,
                                     .recorder = {.flags = flags_, .bell = bell_, .identify = pressedKey},
                                     .exclusions = {.preferences = foundation_.preferences,
                                                    .applications = foundation_.applications,
                                                    .pages = accessibility_,
                                                    .scheduler = scheduler_},
                                     .library = {.catalogue = catalogue_,
                                                 .infos = characterInfos_,
                                                 .preferences = foundation_.preferences,
                                                 .flags = flags_,
                                                 .fonts = fontChoice(fontFamilies_)},
                                     .version = QStringLiteral(GLYMA_VERSION)});
}

void DesktopProgram::start() {
    updateTray();
    accessibility_.prepare(frontApplications_.current().process);
    delegate_.applicationDidFinishLaunching();
    if (const auto& hearing = permissions_.inputMonitoring(); !hearing.isGranted)
        say(hearing.finding.english() + ". " + hearing.remedy.english());
    scheduler_.post([this] { window_.warmUp(); });
    // A session may start its tray after us.
    trayCheck_ = scheduler_.after(timeForTray, [this] { sayThatNoTrayIsThere(); });
}

/// Any thread.
void DesktopProgram::sayUnreachable(const Message& why) {
    report(fmt::format(
        "Glyma: ⚠️ text is changed by keys and clipboard only: reaching applications failed — {}",
        why.english()));
    scheduler_.post([this, why] { accessibilityBus_.setObstacle(why); });
}

std::expected<void, std::string> DesktopProgram::startMonitor() {
    auto started = monitor_.start();
    inputMonitoring_.setObstacle(started ? Message() : Message(started.error()));
    if (!started)
        say(started.error());
    return started;
}

/// Once, though it is tried again and again. The log may be the journal, where nobody who starts the program
/// in a terminal looks.
void DesktopProgram::say(const std::string& obstacle) {
    if (std::exchange(said_, obstacle) == obstacle)
        return;
    report(
        fmt::format("Glyma: ⚠️ typing is not heard: starting the keyboard tap failed — {}", obstacle));
    fail(obstacle);
}

void DesktopProgram::showPreferences(const std::string& tab) {
    if (tab.empty())
        preferences_.show();
    else
        preferences_.show(tab);
}

/// Not by QApplication::quit(), which asks every window first and stays when one refuses.
void DesktopProgram::end(int status) {
    if (!text_.isInserting())
        return QApplication::exit(status);
    ending_ = scheduler_.every(betweenLooksAtInsertion, [this, status, looks = 0]() mutable {
        if (!text_.isInserting() || ++looks == mostLooksAtInsertion)
            QApplication::exit(status);
    });
}

std::string DesktopProgram::diagnosis() const {
    return diagnosesAsJson(diagnosePermissions(permissions_.inputMonitoring(), permissions_.accessibility(),
                                               permissions_.secureInput()));
}

void DesktopProgram::sayThatNoTrayIsThere() {
    constexpr auto saidKey = "glymaToldAboutMissingTray";
    if (TrayIcon::isShown() || foundation_.settings.value(saidKey))
        return;
    foundation_.settings.set(saidKey, true);
    dbus::notify(
        QCoreApplication::translate("glyma::DesktopProgram", "Glyma is running"),
        QCoreApplication::translate("glyma::DesktopProgram",
                                    "This desktop has no tray that could show its icon. Start Glyma again to "
                                    "open its preferences."));
}

void DesktopProgram::updateTray() {
    tray_.show({.isImporting = delegate_.isImporting(),
                .permissionsNeeded = delegate_.permissionsNeeded(),
                .secureInputBlocked = delegate_.secureInputBlocked(),
                .menuBarIcon = foundation_.preferences.menuBarIcon(),
                .triggerCharacter = foundation_.preferences.triggerCharacter()});
}

void DesktopProgram::report(std::string_view message) {
    foundation_.log.write(message);
}

} // namespace glyma
