#include "platform/linux/atspi/session.h"

#include <algorithm>
#include <string>

namespace glyma::atspi {

namespace {

constexpr std::chrono::seconds unresponsiveFor{2};
constexpr std::chrono::seconds statusWait{2};
/// A burst of questions that depend on each other is over by then.
constexpr Milliseconds leftAloneAtLeast{100};
/// A starting application shows its window before it is on the bus, and before what is in it. One that has no
/// focus is not to be searched all the time.
constexpr Milliseconds shortestGreetingInterval{200};
constexpr Milliseconds longestGreetingInterval{1600};
constexpr std::chrono::seconds preparationTime{10};
constexpr std::chrono::seconds shortPreparationTime{1};

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
        greetings_.clear();
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
        status.error = Message::tr("the accessibility bus does not accept connections").english();
    }
    if (status.answers) {
        activeWindow_.emplace();
        tracker_.emplace([this](pid_t process) { setCurrent(process); },
                         options_.focusMoved ? options_.focusMoved : [] {});
        trackerReady_ = true;
        bus_.reset(dbus_connection_ref(atspi_get_a11y_bus()));
        dbus_connection_add_filter(bus_.get(), hear, this, nullptr);
    } else {
        lose(status.error);
    }
    statusPromise_.set_value(status);
}

void AtspiAccessibility::Session::lose(const Message& why) {
    isAbsent_ = true;
    if (options_.warn)
        options_.warn(why);
}

/// The library itself sends this one when the connection has ended.
DBusHandlerResult AtspiAccessibility::Session::hear(DBusConnection*, DBusMessage* message, void* session) {
    if (dbus_message_is_signal(message, DBUS_INTERFACE_LOCAL, "Disconnected"))
        static_cast<Session*>(session)->lose(Message::tr("the accessibility bus has ended"));
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
    worker_.post([this, process] { greetLater(process); });
}

void AtspiAccessibility::Session::setResponsive(pid_t process) {
    const std::scoped_lock lock(mutex_);
    unresponsiveUntil_.erase(process);
}

void AtspiAccessibility::Session::blameCurrent() {
    if (const auto process = current_.load(); process != 0)
        setUnresponsive(process);
}

void AtspiAccessibility::Session::prepare(pid_t process) {
    prepareFor(process, preparationTime);
}

void AtspiAccessibility::Session::prepareAgain(pid_t process) {
    if (!isPreparing(process))
        prepareFor(process, shortPreparationTime);
}

void AtspiAccessibility::Session::prepareFor(pid_t process, std::chrono::seconds time) {
    prepared_ = process;
    preparationEnd_ = std::chrono::steady_clock::now() + time;
    greetingInterval_ = shortestGreetingInterval;
    worker_.post([this, process] { greet(process); });
}

bool AtspiAccessibility::Session::isPreparing(pid_t process) const {
    return prepared_ == process && std::chrono::steady_clock::now() < preparationEnd_;
}

/// Asks nothing that has to be waited for before the application has answered something.
void AtspiAccessibility::Session::greet(pid_t process) {
    if (!trackerReady_ || greetings_.contains(process) || (!isPreparing(process) && !isUnresponsive(process)))
        return;
    Conversation ask(worker_.isAwaited(), Conversation::backgroundPatience);
    tracker_->searchAgain(process);
    const auto application = tracker_->application(process, ask);
    if (!application) {
        if (!ask.isOver())
            setResponsive(process); // there is nobody to wait for
        return greetLater(process);
    }
    // Not from inside the bus's own work: what follows waits for answers itself.
    greetings_.try_emplace(process, application.get(), [this, process](bool hasAnswered) {
        worker_.post([this, process, hasAnswered] { greeted(process, hasAnswered); });
    });
}

void AtspiAccessibility::Session::greeted(pid_t process, bool hasAnswered) {
    greetings_.erase(process);
    if (hasAnswered)
        heardFrom(process);
    else
        greetLater(process);
}

void AtspiAccessibility::Session::greetLater(pid_t process) {
    if (!waitingToGreet_.insert(process).second)
        return;
    auto delay = leftAloneAtLeast;
    if (isPreparing(process)) {
        delay = greetingInterval_;
        greetingInterval_ = std::min(greetingInterval_ * 2, longestGreetingInterval);
    }
    worker_.postAfter(delay, [this, process] {
        waitingToGreet_.erase(process);
        greet(process);
    });
}

void AtspiAccessibility::Session::heardFrom(pid_t process) {
    setResponsive(process);
    if (!isPreparing(process))
        return;
    Conversation ask(worker_.isAwaited(), Conversation::backgroundPatience);
    setCurrent(process);
    const auto found = tracker_->focusedElement(process, ask);
    setCurrent(0);
    if (found)
        prepared_ = 0;
    else if (ask.timedOut())
        setUnresponsive(process);
    else
        greetLater(process);
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
