#include "platform/linux/x11/input_monitoring.h"

#include <fmt/format.h>

namespace glyma::x11 {

namespace {

Permission refused(std::string finding, std::string remedy) {
    return {.isGranted = false, .finding = std::move(finding), .remedy = std::move(remedy)};
}

Permission withoutExtension(const char* name, const char* purpose) {
    return refused(
        fmt::format("the X server does not offer the extension {}, without which no {} is possible", name,
                    purpose),
        fmt::format("Start the X server without \"-extension {}\", or use a current X.Org server.", name));
}

} // namespace

Permission inputMonitoring(const Probe& probe) {
    if (!probe.isReachable)
        return refused(probe.display.empty() ? "there is no X display: DISPLAY is not set"
                                             : fmt::format("the X display {} does not answer", probe.display),
                       "Start the program inside a desktop session that runs on X11 or offers Xwayland.");
    if (probe.xinput < neededXInput)
        return refused(fmt::format("the X server speaks XInput {}.{}, and {}.{} is needed to hear keys",
                                   probe.xinput.major, probe.xinput.minor, neededXInput.major,
                                   neededXInput.minor),
                       "Use an X server of 2012 or later with its XInputExtension switched on.");
    if (!probe.hasXTest)
        return withoutExtension("XTEST", "typing for the user");
    if (!probe.hasXkb)
        return withoutExtension("XKEYBOARD", "reading of the keyboard layout");
    if (probe.isXwayland)
        return {.isGranted = true,
                .finding =
                    fmt::format("keys are heard on {} in X11 applications only: this is a Wayland session",
                                probe.display),
                .remedy = "Log in to an X11 (Xorg) session to use it everywhere."};
    return {.isGranted = true, .finding = fmt::format("keys are heard on {}", probe.display), .remedy = {}};
}

InputMonitoring::InputMonitoring(std::string display)
    : display_(std::move(display)) {
    probe();
}

void InputMonitoring::probe() {
    connection_.reset();
    if (auto connection = Connection::open(display_))
        connection_ = std::move(*connection);
    offered_ = inputMonitoring(connection_ ? x11::probe(*connection_, display_) : x11::unreachable(display_));
}

Permission InputMonitoring::current() const {
    if (!offered_.isGranted || obstacle_.empty())
        return offered_;
    return refused(obstacle_, "Glyma tries again every five seconds. If this stays, log out and in again.");
}

void InputMonitoring::check() {
    // A connection is known to be broken once it was read from.
    while (connection_ && connection_->pollEvent()) {
    }
    if (connection_ && !connection_->isBroken())
        return;
    const auto before = current();
    probe();
    if (current() != before)
        changed_.emit();
}

Subscription InputMonitoring::observe(std::function<void()> callback) {
    return changed_.connect(std::move(callback));
}

void InputMonitoring::setObstacle(const std::string& obstacle) {
    const auto before = current();
    obstacle_ = obstacle;
    if (current() != before)
        changed_.emit();
}

} // namespace glyma::x11
