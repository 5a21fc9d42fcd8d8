#include "platform/linux/atspi/session.h"

#include <algorithm>
#include <string>

namespace glyma::atspi {

namespace {

constexpr std::chrono::seconds unresponsiveFor{2};
constexpr std::chrono::seconds statusWait{2};
constexpr Milliseconds prepareInterval{500};

/// atspi_init always connects the bus to the default event loop, which is Qt's; it can be moved only
/// afterwards. Until then nobody else may run that loop.
bool connectLibrary(GMainContext* context) {
    const bool held = g_main_context_acquire(nullptr);
    const int result = atspi_init();
    const bool connected = result == 0 || result == 1; // 1: was connected before
    if (connected) {
        atspi_set_main_context(context);
        atspi_set_timeout(static_cast<gint>(Conversation::callTimeout.count()), 0);
    }
    if (held)
        g_main_context_release(nullptr);
    return connected;
}

} // namespace

AtspiAccessibility::Element::Element(Object<AtspiAccessible> accessible, pid_t elementProcess,
                                     GMainContext* workerContext)
    : kind(Kind::accessible)
    , process(elementProcess)
    , object(accessible.release())
    , context_(g_main_context_ref(workerContext)) {}

AtspiAccessibility::Element::~Element() {
    if (!object)
        return;
    Worker::post(context_, [held = object] { g_object_unref(held); });
    g_main_context_unref(context_);
}

AtspiAccessibility::Session::Session(Options options)
    : options_(std::move(options)) {
    worker_.post([this] { connect(); });
}

AtspiAccessibility::Session::~Session() {
    worker_.post([this] {
        trackerReady_ = false;
        if (bus_)
            dbus_connection_remove_filter(bus_.get(), hear, this);
        tracker_.reset();
    });
}

void AtspiAccessibility::Session::connect() {
    // libatspi warns on standard error about every application that hangs or goes away.
    g_log_set_handler(
        "dbind", G_LOG_LEVEL_WARNING, [](auto...) {}, nullptr);
    auto status = busStatus(options_.enableBus);
    if (status.answers && !connectLibrary(worker_.context())) {
        status.answers = false;
        status.error = "the accessibility bus does not accept connections";
    }
    if (status.answers) {
        activeWindow_.emplace();
        tracker_.emplace([this](pid_t process) { setCurrent(process); });
        trackerReady_ = true;
        bus_.reset(dbus_connection_ref(atspi_get_a11y_bus()));
        dbus_connection_add_filter(bus_.get(), hear, this, nullptr);
    } else {
        lose(status.error);
    }
    statusPromise_.set_value(status);
}

void AtspiAccessibility::Session::lose(const std::string& why) {
    isAbsent_ = true;
    if (options_.warn)
        options_.warn(why);
}

/// The library itself sends this one when the connection has ended.
DBusHandlerResult AtspiAccessibility::Session::hear(DBusConnection*, DBusMessage* message, void* session) {
    if (dbus_message_is_signal(message, DBUS_INTERFACE_LOCAL, "Disconnected"))
        static_cast<Session*>(session)->lose("the accessibility bus has ended");
    return DBUS_HANDLER_RESULT_NOT_YET_HANDLED;
}

BusStatus AtspiAccessibility::Session::status() const {
    if (status_.wait_for(statusWait) == std::future_status::ready)
        return status_.get();
    BusStatus status;
    status.error = "the session bus does not answer";
    return status;
}

bool AtspiAccessibility::Session::isUnresponsive(pid_t process) const {
    const std::scoped_lock lock(mutex_);
    const auto found = unresponsiveUntil_.find(process);
    return found != unresponsiveUntil_.end() && std::chrono::steady_clock::now() < found->second;
}

void AtspiAccessibility::Session::setUnresponsive(pid_t process) {
    const std::scoped_lock lock(mutex_);
    unresponsiveUntil_[process] = std::chrono::steady_clock::now() + unresponsiveFor;
}

void AtspiAccessibility::Session::blameCurrent() {
    if (const auto process = current_.load(); process != 0)
        setUnresponsive(process);
}

void AtspiAccessibility::Session::prepare(pid_t process, int attempts) {
    if (!trackerReady_ || attempts == 0 || isUnresponsive(process))
        return;
    const std::atomic<bool> abandoned = false;
    Conversation ask(abandoned, Conversation::backgroundPatience);
    if (tracker_->focusedElement(process, ask))
        return;
    if (ask.timedOut())
        setUnresponsive(process);
    else
        worker_.postAfter(prepareInterval, [this, process, attempts] { prepare(process, attempts - 1); });
}

pid_t AtspiAccessibility::Session::frontProcess() {
    const auto window = activeWindow_->read();
    return window && window->process > 0 ? window->process : tracker_->lastProcess();
}

std::optional<Rect> AtspiAccessibility::Session::windowFrame(pid_t process) {
    const auto window = activeWindow_->read();
    return window && window->process == process ? std::optional(window->frame) : std::nullopt;
}

std::optional<Point> AtspiAccessibility::Session::windowOrigin(pid_t process, Conversation& ask) {
    const auto window = activeWindow_->read();
    if (!window)
        return std::nullopt;
    Point origin{window->frame.x, window->frame.y};
    // Without a compositor GTK 4 draws a border of its own around the contents, on all sides alike, and does
    // not announce it as it does its shadow.
    const auto application = tracker_->application(process, ask);
    const auto element = application ? tracker_->activeWindow(application.get(), ask) : nullptr;
    const auto get = [](AtspiAccessible* object, GError**) {
        return atspi_accessible_get_component_iface(object);
    };
    const Object<AtspiComponent> component(element ? ask.ask(get, element.get()).value_or(nullptr) : nullptr);
    if (!component)
        return origin;
    const Memory<AtspiPoint> size(ask.ask(atspi_component_get_size, component.get()).value_or(nullptr));
    if (size && size->x > 0 && size->y > 0) {
        origin.x += std::max(0.0, (window->frame.width - size->x) / 2);
        origin.y += std::max(0.0, (window->frame.height - size->y) / 2);
    }
    return origin;
}

TextElement AtspiAccessibility::Session::text(const Element& element, Conversation& ask) {
    return TextElement(
        element.object, element.object ? tracker_->toolkitOf(element.object, ask) : Toolkit(), ask,
        [this, process = element.process, &ask] { return windowOrigin(process, ask); }, element.textMemory);
}

ElementReference AtspiAccessibility::Session::reference(Object<AtspiAccessible> element,
                                                        pid_t process) const {
    return std::make_shared<Element>(std::move(element), process, worker_.context());
}

Accessibility::Result<AttributeValue> AtspiAccessibility::Session::wrapped(Object<AtspiAccessible> element,
                                                                           pid_t process) const {
    if (!element)
        return std::unexpected(AccessibilityError::noValue);
    return reference(std::move(element), process);
}

} // namespace glyma::atspi
