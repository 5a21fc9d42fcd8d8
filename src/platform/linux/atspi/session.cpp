#include "platform/linux/atspi/session.h"

#include <string>

namespace glyma::atspi {

namespace {

constexpr std::chrono::seconds unresponsiveFor{2};
constexpr std::chrono::seconds statusWait{2};

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

AtspiAccessibility::Session::Session(Options options) {
    worker_.post([this, options = std::move(options)] { connect(options); });
}

AtspiAccessibility::Session::~Session() {
    worker_.post([this] {
        trackerReady_ = false;
        tracker_.reset();
    });
}

void AtspiAccessibility::Session::connect(const Options& options) {
    // libatspi warns on standard error about every application that hangs or goes away.
    g_log_set_handler(
        "dbind", G_LOG_LEVEL_WARNING, [](auto...) {}, nullptr);
    auto status = busStatus(options.enableBus);
    if (status.answers) {
        atspi_set_main_context(worker_.context());
        if (const int result = atspi_init(); result != 0 && result != 1) {
            status.answers = false;
            status.error = "the accessibility bus does not accept connections";
        }
    }
    if (status.answers) {
        atspi_set_timeout(static_cast<gint>(Conversation::callTimeout.count()), 0);
        activeWindow_.emplace();
        tracker_.emplace();
        trackerReady_ = true;
    } else {
        isAbsent_ = true;
        if (options.warn)
            options.warn("No accessibility bus: " + status.error);
    }
    statusPromise_.set_value(status);
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

pid_t AtspiAccessibility::Session::frontProcess() {
    const auto window = activeWindow_->read();
    return window && window->process > 0 ? window->process : tracker_->lastProcess();
}

ElementReference AtspiAccessibility::Session::reference(Object<AtspiAccessible> element, pid_t process) {
    if (!element)
        return nullptr;
    return std::make_shared<Element>(std::move(element), process, worker_.context());
}

} // namespace glyma::atspi
