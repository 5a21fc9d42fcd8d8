#include "app/desktop/run_desktop.h"

#include "app/command_line.h"
#include "app/container.h"
#include "app/desktop/desktop_program.h"
#include "app/desktop/server_loss.h"
#include "app/desktop/termination_signals.h"
#include "app/terminal.h"
#include "catalogue/store_lifecycle.h"
#include "platform/linux/dbus/session_bus_watch.h"
#include "platform/linux/dbus/single_instance.h"
#include "platform/linux/x11/connection.h"
#include "platform/linux/xdg/files.h"
#include "platform/linux/xdg/journal_log_sink.h"
#include "platform/qt/clipboard_keeper.h"
#include "translation/translations.h"

#include <QApplication>
#include <QTimer>
#include <fmt/format.h>

#include <chrono>
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

/// Qt holds back what comes for the program while it starts, and delivers it when the main loop runs.
constexpr std::chrono::milliseconds timeForCalls{200};

/// The program, once it is there, and whether its start is over.
struct Running {
    std::unique_ptr<DesktopProgram> program;
    bool hasStarted = false;
};

/// What other processes ask of the program.
dbus::SingleInstance::Requests requestsFor(Running& running) {
    const auto withProgram = [&running](const auto& job) {
        return [&running, job](const auto&... arguments) {
            if (running.program)
                job(*running.program, arguments...);
        };
    };
    return {.activate = withProgram([&running](DesktopProgram& program) {
                // Who starts it through the bus asks for this as well, and only wants it to run.
                if (running.hasStarted)
                    program.showPreferences({});
            }),
            .showPreferences = withProgram(
                [](DesktopProgram& program, const std::string& tab) { program.showPreferences(tab); }),
            .showCharacterInfo = withProgram([](DesktopProgram& program, const std::string& text) {
                program.characterInfo().showCharacterInfo(text);
            }),
            .showSelectionInfo = withProgram(
                [](DesktopProgram& program) { program.characterInfo().showCharacterInfoForLastSelection(); }),
            .quit = withProgram([](DesktopProgram& program) { program.end(status::done); }),
            .diagnose = [&running] {
                return running.program ? running.program->diagnosis() : std::string("[]");
            }};
}

int runInstance(Foundation& foundation, Running& running, const std::optional<std::string>& tab) {
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
    running.program = std::make_unique<DesktopProgram>(foundation, std::move(*store));
    auto& program = *running.program;
    const auto say = [&foundation](const char* why) {
        foundation.log.write(fmt::format("Glyma: ⚠️ the program ends — {}", why));
        fail(why);
    };
    const dbus::SessionBusWatch bus([&program, &say] {
        say("the session bus is gone, and with it the session");
        program.end(status::failed);
    });
    program.start();
    if (tab)
        program.showPreferences(*tab);
    QTimer::singleShot(timeForCalls, [&running] { running.hasStarted = true; });
    const int status = [&say] {
        const ServerLoss server([&say] { say("the X server is gone, and with it the session"); });
        return QApplication::exec();
    }();
    const bool mustDelete = program.mustDeleteContainer();
    running.program.reset();
    qt::leaveClipboards(xdg::executablePath(), keepClipboardCommand);
    if (mustDelete)
        for (const auto& file : removeContainer(foundation.folders, foundation.loginItem))
            fail(fmt::format("{} could not be removed; check its permissions and remove it by hand",
                             file.string()));
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
    Running running;
    const TerminationSignals signals([&running] {
        if (running.program)
            running.program->end(status::done);
    });
    dbus::SingleInstance instance(requestsFor(running));
    const auto start = instance.claim();
    if (start == dbus::SingleInstance::Start::alreadyRunning)
        return tellRunning(tab);
    emptyDebugLog();
    xdg::JournalLogSink logSink;
    Foundation foundation(logSink);
    if (start == dbus::SingleInstance::Start::noBus)
        foundation.log.write(
            "Glyma: ⚠️ a second start will not find this one: reaching the session bus failed");
    return runInstance(foundation, running, tab);
}

} // namespace glyma
