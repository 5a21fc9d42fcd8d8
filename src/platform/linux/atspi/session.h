#pragma once

#include "platform/linux/atspi/active_window.h"
#include "platform/linux/atspi/atspi_accessibility.h"
#include "platform/linux/atspi/conversation.h"
#include "platform/linux/atspi/focus_tracker.h"
#include "platform/linux/atspi/greeting.h"
#include "platform/linux/atspi/object.h"
#include "platform/linux/atspi/text_element.h"
#include "platform/linux/atspi/worker.h"

#include <atspi/atspi.h>

#include <atomic>
#include <chrono>
#include <dbus/dbus.h>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace glyma::atspi {

/// An element of an application, the application as such, its window in front, or the whole desktop.
class AtspiAccessibility::Element : public AccessibilityElement {
public:
    enum class Kind { desktop, application, window, accessible };

    explicit Element(Kind elementKind, pid_t elementProcess = 0)
        : kind(elementKind)
        , process(elementProcess) {}
    /// \param workerContext  where the object is released.
    Element(Object<AtspiAccessible> accessible, pid_t process, GMainContext* workerContext);
    ~Element() override;
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;

    const Kind kind;
    const pid_t process;
    AtspiAccessible* const object = nullptr;
    /// The last selection asked for was not made, so that nothing may be inserted in its stead.
    mutable std::atomic<bool> refusedSelection = false;
    mutable TextMemory textMemory; ///< worker thread

private:
    GMainContext* const context_ = nullptr;
};

/// The connection to the bus and everything that lives on the worker thread.
class AtspiAccessibility::Session {
public:
    explicit Session(Options options);
    ~Session();

    // Any thread
    bool isAbsent() const { return isAbsent_; }
    bool isUnresponsive(pid_t process) const;
    bool isPasswordField() const { return tracker_ && trackerReady_ && tracker_->isPasswordField(); }
    /// It is left alone until it is heard of again or a time has passed.
    void setUnresponsive(pid_t process);
    /// Somebody has waited in vain for the application that is being asked now.
    void blameCurrent();
    BusStatus status() const;
    const Worker& worker() const { return worker_; }

    // Worker thread
    void setCurrent(pid_t process) { current_ = process; }
    /// Looks for the focus of a process that has come to the front until it is known, for at most as long as
    /// applications take to start; the next one takes its turn.
    void prepare(pid_t process);
    /// Looks for it once more, some time later.
    void prepareAgain(pid_t process);
    FocusTracker& tracker() { return *tracker_; }
    /// Where the active window is, if it belongs to this process: asked of the X server, which knows while
    /// the window is dragged and whatever the application does, for every toolkit.
    std::optional<Rect> windowFrame(pid_t process);
    /// Where the contents of the active window begin on the desktop.
    std::optional<Point> windowOrigin(pid_t process, Conversation& ask);
    TextElement text(const Element& element, Conversation& ask);
    /// The process in front; 0 when it is not known.
    pid_t frontProcess();
    ElementReference reference(Object<AtspiAccessible> element, pid_t process) const;
    Result<AttributeValue> wrapped(Object<AtspiAccessible> element, pid_t process) const;

private:
    void connect();
    void lose(const Message& why);
    static DBusHandlerResult hear(DBusConnection* bus, DBusMessage* message, void* session);

    struct Disconnect {
        void operator()(DBusConnection* bus) const { dbus_connection_unref(bus); }
    };

    // Worker thread
    void prepareFor(pid_t process, std::chrono::seconds time);
    bool isPreparing(pid_t process) const;
    void greet(pid_t process);
    void greetLater(pid_t process);
    void greeted(pid_t process, bool hasAnswered);
    void heardFrom(pid_t process);
    void setResponsive(pid_t process);

    const Options options_;

    std::atomic<bool> isAbsent_ = false;
    std::atomic<bool> trackerReady_ = false;
    std::promise<BusStatus> statusPromise_;
    std::shared_future<BusStatus> status_ = statusPromise_.get_future().share();
    std::atomic<pid_t> current_ = 0;
    mutable std::mutex mutex_;
    std::map<pid_t, std::chrono::steady_clock::time_point> unresponsiveUntil_;
    std::optional<ActiveWindow> activeWindow_;
    /// The library's; it would open another one when this one has ended.
    std::unique_ptr<DBusConnection, Disconnect> bus_;
    std::optional<FocusTracker> tracker_;
    /// Whose focus is being looked for, and until when.
    pid_t prepared_ = 0;
    std::chrono::steady_clock::time_point preparationEnd_;
    Milliseconds greetingInterval_{};
    std::set<pid_t> waitingToGreet_;
    std::map<pid_t, Greeting> greetings_;
    /// Last, so that it ends before what its jobs use.
    Worker worker_;
};

} // namespace glyma::atspi
