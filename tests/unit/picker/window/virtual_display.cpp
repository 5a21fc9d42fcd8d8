#include "virtual_display.h"

#include <QApplication>
#include <xcb/shape.h>
#include <xcb/xtest.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace glyma {

namespace {

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template<typename Reply>
std::unique_ptr<Reply, Free> owned(Reply* reply) {
    return std::unique_ptr<Reply, Free>(reply);
}

/// Starts a program that writes a line to the descriptor given to it once it is ready.
/// \param arguments  "%" in one of them stands for the descriptor.
/// \return the line.
std::string start(std::vector<std::string> arguments, pid_t& process) {
    int channel[2];
    if (::pipe(channel) != 0)
        return {};
    process = ::fork();
    if (process == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO);
        std::vector<char*> words;
        for (auto& argument : arguments) {
            if (const auto place = argument.find('%'); place != std::string::npos)
                argument.replace(place, 1, std::to_string(channel[1]));
            words.push_back(argument.data());
        }
        words.push_back(nullptr);
        ::execvp(words[0], words.data());
        ::_exit(127);
    }
    ::close(channel[1]);
    std::string line;
    for (char letter = 0; ::read(channel[0], &letter, 1) == 1 && letter != '\n';)
        line += letter;
    ::close(channel[0]);
    return line;
}

void end(pid_t process) {
    ::kill(process, SIGTERM);
    ::waitpid(process, nullptr, 0);
}

} // namespace

VirtualDisplay& VirtualDisplay::shared() {
    static VirtualDisplay display;
    return display;
}

VirtualDisplay::VirtualDisplay() {
    const auto number = start(
        {"Xvfb", "-displayfd", "%", "-screen", "0", "1280x800x24", "-noreset", "-nolisten", "tcp"}, server_);
    ::setenv("DISPLAY", (":" + number).c_str(), 1);
    ::setenv("QT_QPA_PLATFORM", "xcb", 1);
    ::setenv("DBUS_SESSION_BUS_ADDRESS",
             start({"dbus-daemon", "--session", "--nofork", "--print-address=%"}, bus_).c_str(), 1);
    ::unsetenv("QT_SCALE_FACTOR");
    connection_ = xcb_connect(nullptr, nullptr);
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    static int argumentCount = 1;
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    application_ = std::make_unique<QApplication>(argumentCount, arguments);
}

VirtualDisplay::~VirtualDisplay() {
    application_.reset();
    xcb_disconnect(connection_);
    end(server_);
    end(bus_);
}

void VirtualDisplay::sync() {
    owned(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

void VirtualDisplay::fake(std::uint8_t type, std::uint8_t detail, Point point) {
    xcb_test_fake_input(connection_, type, detail, XCB_CURRENT_TIME, root_,
                        static_cast<std::int16_t>(point.x), static_cast<std::int16_t>(point.y), 0);
}

void VirtualDisplay::movePointer(double x, double y) {
    fake(XCB_MOTION_NOTIFY, 0, {x, y});
    sync();
}

void VirtualDisplay::click(Point point) {
    movePointer(point.x, point.y);
    fake(XCB_BUTTON_PRESS, 1);
    fake(XCB_BUTTON_RELEASE, 1);
    sync();
}

void VirtualDisplay::scroll(Point point, int notches) {
    constexpr std::uint8_t down = 5;
    movePointer(point.x, point.y);
    for (int notch = 0; notch < notches; ++notch) {
        fake(XCB_BUTTON_PRESS, down);
        fake(XCB_BUTTON_RELEASE, down);
    }
    sync();
}

void VirtualDisplay::focusNewWindow() {
    if (focused_)
        xcb_destroy_window(connection_, focused_);
    focused_ = xcb_generate_id(connection_);
    xcb_create_window(connection_, 0, focused_, root_, 600, 500, 400, 250, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(connection_, focused_);
    sync();
    xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_PARENT, focused_, XCB_CURRENT_TIME);
    sync();
}

bool VirtualDisplay::hasFocus() {
    const auto reply =
        owned(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    return reply->focus == focused_;
}

void VirtualDisplay::startCompositor() {
    constexpr char name[] = "_NET_WM_CM_S0";
    const auto atom = owned(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, std::strlen(name), name), nullptr));
    compositor_ = xcb_generate_id(connection_);
    xcb_create_window(connection_, 0, compositor_, root_, -10, -10, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(connection_, compositor_, atom->atom, XCB_CURRENT_TIME);
    sync();
}

void VirtualDisplay::endCompositor() {
    if (compositor_)
        xcb_destroy_window(connection_, compositor_);
    compositor_ = 0;
    sync();
}

bool VirtualDisplay::isShown(unsigned window) {
    const auto reply = owned(xcb_get_window_attributes_reply(
        connection_, xcb_get_window_attributes(connection_, window), nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

bool VirtualDisplay::isOverrideRedirect(unsigned window) {
    const auto reply = owned(xcb_get_window_attributes_reply(
        connection_, xcb_get_window_attributes(connection_, window), nullptr));
    return reply && reply->override_redirect;
}

Rect VirtualDisplay::geometry(unsigned window) {
    const auto reply =
        owned(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
    return {double(reply->x), double(reply->y), double(reply->width), double(reply->height)};
}

QRegion VirtualDisplay::region(unsigned window, std::uint8_t kind) {
    const auto reply = owned(xcb_shape_get_rectangles_reply(
        connection_, xcb_shape_get_rectangles(connection_, window, kind), nullptr));
    QRegion region;
    for (int index = 0; index < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++index) {
        const auto& rectangle = xcb_shape_get_rectangles_rectangles(reply.get())[index];
        region += QRect(rectangle.x, rectangle.y, rectangle.width, rectangle.height);
    }
    return region;
}

QRegion VirtualDisplay::visibleRegion(unsigned window) {
    return region(window, XCB_SHAPE_SK_BOUNDING);
}

QRegion VirtualDisplay::inputRegion(unsigned window) {
    return region(window, XCB_SHAPE_SK_INPUT);
}

} // namespace glyma
