#include "x11_fixture.h"

#include "platform/linux/x11/requirements.h"

#include <fmt/format.h>
#include <xcb/xtest.h>

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace glyma::x11::testing {

Server::Server(std::vector<std::string> arguments) {
    int channel[2];
    if (::pipe(channel) != 0)
        return;
    arguments.insert(arguments.begin(), {"Xvfb", "-displayfd", std::to_string(channel[1]), "-screen", "0",
                                         "800x600x24", "-noreset", "-nolisten", "tcp"});
    process_ = ::fork();
    if (process_ == 0) {
        std::vector<char*> raw;
        for (auto& argument : arguments)
            raw.push_back(argument.data());
        raw.push_back(nullptr);
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO);
        ::execvp(raw[0], raw.data());
        ::_exit(127);
    }
    ::close(channel[1]);
    std::string number;
    for (char character = 0; ::read(channel[0], &character, 1) == 1 && character != '\n';)
        number += character;
    ::close(channel[0]);
    display_ = ":" + number;
}

void Server::kill() {
    if (process_ <= 0)
        return;
    ::kill(process_, SIGKILL);
    ::waitpid(std::exchange(process_, 0), nullptr, 0);
}

void Server::setLayout(const std::string& arguments) const {
    const auto command = fmt::format("setxkbmap -display {} {} 2>/dev/null", display_, arguments);
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
}

User::User(const std::string& display, Device device)
    : connection_(std::move(Connection::open(display).value())) {
    negotiateXInput(connection_);
    negotiateXkb(connection_);
    firstEvent_ = connection_.extension(xcb_input_id)->first_event;
    const auto cookie = xcb_input_xi_query_device(connection_.get(), XCB_INPUT_DEVICE_ALL);
    const auto reply = owned(xcb_input_xi_query_device_reply(connection_.get(), cookie, nullptr));
    auto devices = xcb_input_xi_query_device_infos_iterator(reply.get());
    for (; devices.rem > 0; xcb_input_xi_device_info_next(&devices)) {
        const std::string name(xcb_input_xi_device_info_name(devices.data), devices.data->name_len);
        const bool isXtest = name.find("XTEST") != std::string::npos;
        if (devices.data->type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD &&
            isXtest == (device == Device::xtest))
            device_ = static_cast<std::uint8_t>(devices.data->deviceid);
    }
}

void User::move(xcb_keycode_t key, bool isPress) {
    const auto type = static_cast<std::uint8_t>(
        firstEvent_ + (isPress ? XCB_INPUT_DEVICE_KEY_PRESS : XCB_INPUT_DEVICE_KEY_RELEASE));
    xcb_test_fake_input(connection_.get(), type, key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, device_);
    if (!isBuffering)
        connection_.flush();
}

void User::tap(xcb_keycode_t key) {
    press(key);
    release(key);
}

void User::tapWith(xcb_keycode_t modifier, xcb_keycode_t key) {
    press(modifier);
    tap(key);
    release(modifier);
}

void User::lockModifiers(std::uint8_t mask) {
    xcb_xkb_latch_lock_state(connection_.get(), XCB_XKB_ID_USE_CORE_KBD, 0xFF, mask, 0, 0, 0, 0, 0);
    sync();
}

void User::lockLayout(std::uint8_t layout) {
    xcb_xkb_latch_lock_state(connection_.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, layout, 0, 0, 0);
    sync();
}

std::uint8_t User::modifiers() const {
    const auto cookie = xcb_xkb_get_state(connection_.get(), XCB_XKB_ID_USE_CORE_KBD);
    return owned(xcb_xkb_get_state_reply(connection_.get(), cookie, nullptr))->mods;
}

void User::sync() const {
    (void)connection_.focus();
}

Target::Target(const std::string& display)
    : connection_(std::move(Connection::open(display).value())) {
    window_ = xcb_generate_id(connection_.get());
    const std::uint32_t events =
        XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_FOCUS_CHANGE;
    xcb_create_window(connection_.get(), 0, window_, connection_.root(), 0, 0, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    xcb_map_window(connection_.get(), window_);
    takeFocus();
    record();
}

void Target::takeFocus() {
    xcb_set_input_focus(connection_.get(), XCB_INPUT_FOCUS_PARENT, window_, XCB_CURRENT_TIME);
    (void)connection_.focus();
}

void Target::destroy() {
    xcb_destroy_window(connection_.get(), window_);
    (void)connection_.focus();
}

std::vector<std::string> Target::record() {
    (void)connection_.focus();
    std::vector<std::string> lines;
    xcb_timestamp_t releasedAt = 0;
    while (const auto event = connection_.pollEvent()) {
        const auto type = event->response_type & 0x7F;
        const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(*event);
        const auto& focus = reinterpret_cast<const xcb_focus_in_event_t&>(*event);
        const std::string state = key.state ? fmt::format("/{:x}", key.state) : "";
        if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
            // A repeat reaches a plain client as a release and a press of the same instant.
            if (countsRepeats && type == XCB_KEY_PRESS && !lines.empty() &&
                lines.back() == fmt::format("-{}{}", key.detail, state) && releasedAt == key.time) {
                lines.pop_back();
                ++repeats;
                continue;
            }
            releasedAt = type == XCB_KEY_RELEASE ? key.time : 0;
            lines.push_back(fmt::format("{}{}{}", type == XCB_KEY_PRESS ? '+' : '-', key.detail, state));
        } else if ((type == XCB_FOCUS_IN || type == XCB_FOCUS_OUT) && focus.mode == XCB_NOTIFY_MODE_NORMAL) {
            lines.emplace_back(type == XCB_FOCUS_IN ? "focus in" : "focus out");
        }
    }
    return lines;
}

std::vector<std::string> Target::keys() {
    auto lines = record();
    for (auto& line : lines)
        line = line.substr(0, line.find('/'));
    return lines;
}

glyma::KeyboardTap::Callback Heard::callback() {
    return [this](const KeyEvent& event) {
        if (react)
            react(event);
        const auto verdict = decide ? decide(event) : Verdict::pass;
        const std::scoped_lock lock(mutex_);
        events_.push_back(event);
        more_.notify_all();
        return verdict;
    };
}

KeyEvent Heard::next() {
    std::unique_lock lock(mutex_);
    if (!more_.wait_for(lock, std::chrono::seconds(2), [&] { return !events_.empty(); }))
        return {};
    auto event = events_.front();
    events_.pop_front();
    return event;
}

KeyEvent Heard::nextKey() {
    auto event = next();
    while (event.type != KeyEvent::Type::keyDown)
        event = next();
    return event;
}

bool Heard::isEmpty() {
    return count() == 0;
}

std::size_t Heard::count() {
    const std::scoped_lock lock(mutex_);
    return events_.size();
}

void Heard::clear() {
    const std::scoped_lock lock(mutex_);
    events_.clear();
}

void X11Test::SetUp() {
    server = std::make_unique<Server>();
    user = std::make_unique<User>(server->display());
    target = std::make_unique<Target>(server->display());
    tap = std::make_unique<KeyboardTap>(
        TapOptions{.display = server->display(),
                   .report = [this](std::string_view text) { reports.emplace_back(text); },
                   .connectionLost = {}});
    const auto started = tap->start(heard.callback());
    ASSERT_TRUE(started) << started.error();
}

void X11Test::TearDown() {
    tap.reset();
    target.reset();
    user.reset();
}

void X11Test::settle() {
    user->sync();
    heard.clear();
    user->tap(pc::f11);
    constexpr std::uint16_t f11Code = 103;
    while (true) {
        const auto event = heard.next();
        ASSERT_NE(event, KeyEvent{});
        if (event.keyCode == f11Code)
            break;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(3)); // what the tap does about it afterwards
}

std::vector<std::string> X11Test::targetKeys() {
    settle();
    auto keys = target->keys();
    std::erase(keys, fmt::format("+{}", pc::f11));
    std::erase(keys, fmt::format("-{}", pc::f11));
    return keys;
}

} // namespace glyma::x11::testing
