#include "app/desktop/desktop_diagnosis.h"

#include "app/permission_diagnosis.h"
#include "platform/linux/dbus/accessibility_bus.h"
#include "platform/linux/dbus/single_instance.h"
#include "platform/linux/x11/connection.h"
#include "platform/linux/x11/input_monitoring.h"
#include "platform/linux/x11/probe.h"

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusConnectionInterface>
#include <fmt/format.h>

namespace glyma {

namespace {

using State = Diagnosis::State;

Diagnosis diagnoseServer(const x11::Probe& probe) {
    if (!probe.isReachable)
        return {.name = "X server",
                .state = State::missing,
                .why = probe.display.empty() ? "DISPLAY is not set"
                                             : fmt::format("{} does not answer", probe.display),
                .mend = "Start the program inside a desktop session that runs on X11 or offers Xwayland."};
    if (probe.isXwayland)
        return {.name = "X server",
                .state = State::limited,
                .why = fmt::format("{} is Xwayland: only X11 applications are heard", probe.display),
                .mend = "Log in to an X11 session to use it everywhere."};
    return {.name = "X server", .state = State::ok, .why = probe.display, .mend = {}};
}

/// \param what  what the extension is for.
Diagnosis diagnoseExtension(const char* name, bool isThere, State otherwise, const char* what) {
    if (isThere)
        return {.name = name, .state = State::ok, .why = what, .mend = {}};
    return {.name = name,
            .state = otherwise,
            .why = fmt::format("the X server does not offer it: no {}", what),
            .mend = fmt::format(
                "Start the X server without \"-extension {}\", or use a current X.Org server.", name)};
}

std::vector<Diagnosis> diagnoseExtensions(const x11::Probe& probe) {
    const bool hasXInput = probe.xinput >= x11::neededXInput;
    return {
        {.name = "XInput",
         .state = hasXInput ? State::ok : State::missing,
         .why = fmt::format("version {}.{}; {}.{} is needed to hear keys", probe.xinput.major,
                            probe.xinput.minor, x11::neededXInput.major, x11::neededXInput.minor),
         .mend = hasXInput ? "" : "Use an X server of 2012 or later with its XInputExtension switched on."},
        diagnoseExtension("XTEST", probe.hasXTest, State::missing, "typing for the user"),
        diagnoseExtension("XKEYBOARD", probe.hasXkb, State::missing, "reading of the keyboard layout"),
        diagnoseExtension("RECORD", probe.hasRecord, State::limited, "counting of keys that are held down"),
    };
}

Diagnosis diagnoseWindowManager(const x11::Probe& probe) {
    if (!probe.windowManager.empty())
        return {.name = "window manager", .state = State::ok, .why = probe.windowManager, .mend = {}};
    return {.name = "window manager",
            .state = State::limited,
            .why = "none says that it runs: the application in front is taken from the keyboard focus",
            .mend = "Start a window manager that announces the active window, as those of all desktops do."};
}

Diagnosis diagnoseCompositor(const x11::Probe& probe) {
    return {.name = "compositor",
            .state = State::ok,
            .why = probe.hasCompositor ? "runs; the picker is translucent"
                                       : "does not run; the picker is opaque",
            .mend = {}};
}

/// As the running program sees them, which knows more; without one, as it would see them.
std::vector<Diagnosis> permissions(const x11::Probe& probe) {
    auto said = diagnosesFromJson(dbus::diagnosisOfRunning().value_or(""));
    return !said.empty() ? said
                         : diagnosePermissions(x11::inputMonitoring(probe), dbus::AccessibilityBus::read(),
                                               std::nullopt);
}

Diagnosis diagnoseSessionBus(const QDBusConnection& bus) {
    if (bus.isConnected())
        return {.name = "session bus", .state = State::ok, .why = "answers", .mend = {}};
    return {.name = "session bus",
            .state = State::limited,
            .why = "there is none: a second start does not find the first, and there is no accessibility",
            .mend = "Start the desktop session through dbus-run-session, or install dbus-user-session."};
}

bool hasStatusNotifierHost(const QDBusConnection& bus) {
    return bus.isConnected() &&
           bus.interface()->isServiceRegistered(QStringLiteral("org.kde.StatusNotifierWatcher"));
}

/// https://specifications.freedesktop.org/systemtray-spec: the tray owns a selection of the screen.
bool hasEmbeddingTray(const x11::Connection& connection) {
    const auto atom = connection.atom(fmt::format("_NET_SYSTEM_TRAY_S{}", connection.screenNumber()));
    const auto reply = x11::owned(xcb_get_selection_owner_reply(
        connection.get(), xcb_get_selection_owner(connection.get(), atom), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

Diagnosis diagnoseTray(const QDBusConnection& bus) {
    const auto connection = x11::Connection::open({});
    if (hasStatusNotifierHost(bus) || (connection && hasEmbeddingTray(*connection)))
        return {.name = "tray", .state = State::ok, .why = "the desktop has one", .mend = {}};
    return {.name = "tray",
            .state = State::limited,
            .why = "the desktop has none, so the program's icon does not show",
            .mend = "Start the program again to open its preferences; \"glyma quit\" ends it. On GNOME the "
                    "extension AppIndicator adds a tray."};
}

} // namespace

std::vector<Diagnosis> diagnoseDesktop() {
    const auto probe = x11::probe();
    auto diagnoses = permissions(probe);
    diagnoses.push_back(diagnoseServer(probe));
    if (probe.isReachable) {
        for (auto& diagnosis : diagnoseExtensions(probe))
            diagnoses.push_back(std::move(diagnosis));
        diagnoses.push_back(diagnoseWindowManager(probe));
        diagnoses.push_back(diagnoseCompositor(probe));
    }
    const auto bus = QDBusConnection::sessionBus();
    diagnoses.push_back(diagnoseSessionBus(bus));
    if (probe.isReachable)
        diagnoses.push_back(diagnoseTray(bus));
    return diagnoses;
}

} // namespace glyma
