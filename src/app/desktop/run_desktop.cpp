#include "app/desktop/run_desktop.h"

#include "app/command_line.h"
#include "app/container.h"
#include "app/desktop/desktop_program.h"
#include "app/desktop/termination_signals.h"
#include "app/terminal.h"
#include "catalogue/store_lifecycle.h"
#include "platform/linux/dbus/single_instance.h"
#include "platform/linux/x11/connection.h"
#include "platform/linux/xdg/files.h"
#include "platform/linux/xdg/journal_log_sink.h"
#include "translation/translations.h"

#include <QApplication>
#include <fmt/format.h>

#include <memory>

namespace glyma {

namespace {

int tellRunning(const std::optional<std::string>& tab) {
    const auto told = tab ? dbus::showRunningPreferences(*tab) : dbus::activateRunning();
    if (!told)
        return fail(told.error());
    fail("Glyma is running already");
    return status::done;
}

void prepareApplication() {
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setApplicationName(QStringLiteral("glyma"));
    QApplication::setApplicationVersion(QStringLiteral(GLYMA_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("net.quillaby.Glyma"));
    QApplication::setWindowIcon(programIcon());
}

/// Whoever asks for help finds here what this run has to say.
void emptyDebugLog() {
    [[maybe_unused]] const auto ignored = xdg::makeEmptyFile("/tmp/glyma_debug.log", 0600);
}

/// What other processes ask of the program, which is there while the main loop runs.
dbus::SingleInstance::Requests requestsFor(std::unique_ptr<DesktopProgram>& program) {
    return {.activate =
                [&program] {
                    if (program)
                        program->showPreferences({});
                },
            .showPreferences =
                [&program](const std::string& tab) {
                    if (program)
                        program->showPreferences(tab);
                },
            .showCharacterInfo =
                [&program](const std::string& text) {
                    if (program)
                        program->characterInfo().showCharacterInfo(text);
                },
            .showSelectionInfo =
                [&program] {
                    if (program)
                        program->characterInfo().showCharacterInfoForLastSelection();
                },
            .quit = [] { QApplication::quit(); },
            .diagnose = [&program] { return program ? program->diagnosis() : std::string("[]"); }};
}

int runInstance(Foundation& foundation, std::unique_ptr<DesktopProgram>& program,
                const std::optional<std::string>& tab) {
    const auto lock = foundation.lockCatalogue();
    if (!lock && lock.error() == xdg::InstanceLock::Failure::held)
        return fail(
            fmt::format("another Glyma, or an import, uses the folder {}; try again when it has ended",
                        foundation.folders.data.string()));
    StoreLifecycle lifecycle(foundation.folders.data, foundation.resources, foundation.settings,
                             foundation.clock, foundation.log);
    auto store = lifecycle.makeContainer();
    if (!store)
        return fail(store.error());
    program = std::make_unique<DesktopProgram>(foundation, std::move(*store), [] { QApplication::quit(); });
    program->start();
    if (tab)
        program->showPreferences(*tab);
    const int status = QApplication::exec();
    const bool mustDelete = program->mustDeleteContainer();
    program.reset();
    if (mustDelete)
        removeContainer(foundation.folders);
    return status;
}

} // namespace

int runDesktop(int argc, char** argv, const std::optional<std::string>& tab) {
    // Also in a Wayland session: keys and windows of other applications are reached through X.
    qputenv("QT_QPA_PLATFORM", "xcb");
    // libatspi connects its bus to the default GLib loop before it can be moved to the accessibility thread's
    // (atspi_init, atspi_set_main_context). Were Qt running that loop meanwhile, libdbus would abort the
    // process.
    qputenv("QT_NO_GLIB", "1");
    // Qt ends the process without a word to us where there is no display.
    if (const auto display = x11::Connection::open({}); !display)
        return fail(display.error());
    const QApplication application(argc, argv);
    prepareApplication();
    const Translations translations;
    const TerminationSignals signals([] { QApplication::quit(); });
    std::unique_ptr<DesktopProgram> program;
    dbus::SingleInstance instance(requestsFor(program));
    const auto start = instance.claim();
    if (start == dbus::SingleInstance::Start::alreadyRunning)
        return tellRunning(tab);
    emptyDebugLog();
    xdg::JournalLogSink logSink;
    Foundation foundation(logSink);
    if (start == dbus::SingleInstance::Start::noBus)
        foundation.log.write(
            "Glyma: ⚠️ a second start will not find this one: reaching the session bus failed");
    return runInstance(foundation, program, tab);
}

} // namespace glyma
