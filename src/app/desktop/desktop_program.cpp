#include "app/desktop/desktop_program.h"

#include "app/terminal.h"

#include <fmt/format.h>

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

qt::FontChoice fontChoice(fonts::FontFamilies& families) {
    return {.emojiFamily = QString::fromStdString(families.emojiFontFamily()),
            .familyFor = [&families](std::string_view text) {
                return QString::fromStdString(families.familyFor(text));
            }};
}

} // namespace

DesktopProgram::DesktopProgram(Foundation& foundation, Store store, std::function<void()> onQuit)
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
    , accessibility_({.enableBus = true, .warn = [this](std::string_view why) { report(why); }})
    , frontApplications_(scheduler_,
                         [&applications = foundation.applications](const x11::WindowIdentity& window) {
                             return identifierOf(applications, window);
                         })
    , tap_({.display = {},
            .report = [this](std::string_view message) { report(message); },
            .connectionLost = {}})
    , mouse_(scheduler_)
    , keys_(tap_.link())
    , text_({.scheduler = scheduler_,
             .accessibility = accessibility_,
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
                .showCharacterInfoForSelection = [] {},
                .closeCharacterInfo = [] {}})
    , tray_(std::move(onQuit)) {
    tap_.setSuppressed([this] { return accessibility_.focusIsPasswordField(); });
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
    monitor_.stop();
}

void DesktopProgram::start() {
    catalogue_.start();
    accessibility_.prepare(frontApplications_.current().process);
    listen();
    scheduler_.post([this] { window_.warmUp(); });
}

void DesktopProgram::listen() {
    const auto started = monitor_.start();
    if (started)
        return;
    tray_.setProblem(QString::fromStdString(started.error()));
    report(fmt::format("Glyma: ⚠️ typing is not heard: starting the keyboard tap failed — {}",
                       started.error()));
    // The log may be the journal, where nobody who starts the program in a terminal looks.
    fail(started.error());
}

void DesktopProgram::report(std::string_view message) {
    foundation_.log.write(message);
}

} // namespace glyma
