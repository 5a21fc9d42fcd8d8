#include "app/desktop/desktop_diagnosis.h"
#include "app/desktop/run_desktop.h"
#include "app/desktop_request.h"
#include "app/terminal.h"
#include "platform/linux/dbus/single_instance.h"
#include "platform/qt/clipboard_keeper.h"
#include "platform/qt/selection_reader.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <cstring>

namespace glyma {

namespace {

int quit(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const auto ended = dbus::quitRunning();
    return ended ? 0 : fail(ended.error());
}

bool isShownByRunning(const GlymaDesktopRequest& request) {
    int argc = request.argc;
    const QCoreApplication application(argc, request.argv);
    return dbus::showRunningPreferences(request.tab).has_value();
}

int showPreferences(const GlymaDesktopRequest& request) {
    return isShownByRunning(request) ? 0 : runDesktop(request.argc, request.argv, request.tab);
}

int readSelection(const GlymaDesktopRequest& request) {
    qt::SelectionReader reader("PRIMARY");
    if (!reader.works())
        return fail("there is no X server to ask for the selection: DISPLAY is not set or does not answer");
    if (const auto text = reader.readText())
        request.receive(request.context, text->data(), text->size());
    return 0;
}

int showInfo(const GlymaDesktopRequest& request) {
    int argc = request.argc;
    const QCoreApplication application(argc, request.argv);
    const auto shown = dbus::showInfoInRunning(request.text);
    return shown ? 0 : fail(shown.error());
}

int keepClipboard(const GlymaDesktopRequest& request) {
    qputenv("QT_QPA_PLATFORM", "xcb");
    int argc = request.argc;
    const QGuiApplication application(argc, request.argv);
    return qt::keepClipboards();
}

int diagnose(const GlymaDesktopRequest& request) {
    int argc = request.argc;
    const QCoreApplication application(argc, request.argv);
    for (const auto& [name, state, why, mend] : diagnoseDesktop())
        request.report(request.context, name.c_str(), static_cast<int>(state), why.c_str(), mend.c_str());
    return 0;
}

} // namespace

} // namespace glyma

extern "C" __attribute__((visibility("default"))) int glymaDesktopMain(const GlymaDesktopRequest* request) {
    if (std::strcmp(request->version, GLYMA_VERSION) != 0)
        return glyma::fail("the program and its desktop part are of different versions; install both again");
    switch (request->task) {
    case glymaDesktopQuit:
        return glyma::quit(request->argc, request->argv);
    case glymaDesktopDiagnose:
        return glyma::diagnose(*request);
    case glymaDesktopPreferences:
        return glyma::showPreferences(*request);
    case glymaDesktopSelection:
        return glyma::readSelection(*request);
    case glymaDesktopShowInfo:
        return glyma::showInfo(*request);
    case glymaDesktopKeepClipboard:
        return glyma::keepClipboard(*request);
    case glymaDesktopRun:
        break;
    }
    return glyma::runDesktop(request->argc, request->argv, std::nullopt);
}
