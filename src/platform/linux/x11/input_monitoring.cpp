#include "platform/linux/x11/input_monitoring.h"

namespace glyma::x11 {

namespace {

Permission refused(Message finding, Message remedy) {
    return {.isGranted = false, .finding = std::move(finding), .remedy = std::move(remedy)};
}

Permission withoutExtension(const char* name, Message finding) {
    return refused(std::move(finding).arg(name),
                   Message::tr("Start the X server without \"-extension %1\", or use a current X.Org server.")
                       .arg(name));
}

} // namespace

Permission inputMonitoring(const Probe& probe) {
    if (!probe.isReachable)
        return refused(
            probe.display.empty() ? Message::tr("there is no X display: DISPLAY is not set")
                                  : Message::tr("the X display %1 does not answer").arg(probe.display),
            Message::tr("Start the program inside a desktop session that runs on X11 or offers Xwayland."));
    if (probe.xinput < neededXInput)
        return refused(Message::tr("the X server speaks XInput %1.%2, and %3.%4 is needed to hear keys")
                           .arg(probe.xinput.major)
                           .arg(probe.xinput.minor)
                           .arg(neededXInput.major)
                           .arg(neededXInput.minor),
                       Message::tr("Use an X server of 2012 or later with its XInputExtension switched on."));
    if (!probe.hasXTest)
        return withoutExtension(
            "XTEST", Message::tr("the X server does not offer the extension %1, without which no typing for "
                                 "the user is possible"));
    if (!probe.hasXkb)
        return withoutExtension(
            "XKEYBOARD", Message::tr("the X server does not offer the extension %1, without which no reading "
                                     "of the keyboard layout is possible"));
    if (probe.isXwayland)
        return {.isGranted = true,
                .finding =
                    Message::tr("keys are heard on %1 in X11 applications only: this is a Wayland session")
                        .arg(probe.display),
                .remedy = Message::tr("Log in to an X11 (Xorg) session to use it everywhere.")};
    return {
        .isGranted = true, .finding = Message::tr("keys are heard on %1").arg(probe.display), .remedy = {}};
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
    if (!offered_.isGranted || obstacle_.isEmpty())
        return offered_;
    return refused(obstacle_,
                   Message::tr("Glyma tries again every five seconds. If this stays, log out and in again."));
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

void InputMonitoring::setObstacle(const Message& obstacle) {
    const auto before = current();
    obstacle_ = obstacle;
    if (current() != before)
        changed_.emit();
}

} // namespace glyma::x11
