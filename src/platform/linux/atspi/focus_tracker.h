#pragma once

#include "platform/linux/atspi/conversation.h"
#include "platform/linux/atspi/object.h"
#include "platform/linux/atspi/toolkit.h"

#include <atspi/atspi.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

namespace glyma::atspi {

/// Knows which element has the focus in each application, from the events they send, and looks for it in one
/// application where no event has told. Worker thread, but for isPasswordField.
class FocusTracker {
public:
    /// Subscribes to the events; the bus must be connected.
    /// \param willAsk    told the process that an event makes us ask, and 0 when that is over.
    /// \param focusMoved  told that an element says it has the focus now.
    FocusTracker(std::function<void(pid_t)> willAsk, std::function<void()> focusMoved);
    ~FocusTracker();
    FocusTracker(const FocusTracker&) = delete;
    FocusTracker& operator=(const FocusTracker&) = delete;

    /// The innermost text (or other element) with the focus; null when there is none or the application is
    /// not on the bus.
    Object<AtspiAccessible> focusedElement(pid_t process, Conversation& ask);
    /// The process that had the focus last among those that tell; 0 when none has.
    pid_t lastProcess() const { return lastProcess_; }
    /// The application's own element, or null. Who finds it missing again and again in a row is not made to
    /// wait for the same search each time.
    Object<AtspiAccessible> application(pid_t process, Conversation& ask);
    /// The application may have come by now.
    void searchAgain(pid_t process) { absent_.erase(process); }
    Object<AtspiAccessible> activeWindow(AtspiAccessible* application, Conversation& ask);
    /// A web page that the active window shows; null when there is none or it cannot be read.
    Object<AtspiAccessible> page(pid_t process, Conversation& ask);
    pid_t processOf(AtspiAccessible* element, Conversation& ask);
    /// Asked once for each application.
    const Toolkit& toolkitOf(AtspiAccessible* element, Conversation& ask);

    /// Whether the element that has the focus hides what is typed. Any thread.
    bool isPasswordField() const { return isPasswordField_; }

private:
    static void onEvent(AtspiEvent* received, void* self);
    void focusGained(AtspiAccessible* element, pid_t process, Conversation& ask);
    void focusLost(AtspiAccessible* element, pid_t process);
    void windowChanged(bool activated, pid_t process, Conversation& ask);
    Object<AtspiAccessible> search(AtspiAccessible* application, Conversation& ask);
    Object<AtspiAccessible> innermostText(Object<AtspiAccessible> element, Conversation& ask);

    std::function<void(pid_t)> willAsk_;
    std::function<void()> focusMoved_;
    std::vector<Object<AtspiEventListener>> listeners_;
    std::map<pid_t, Object<AtspiAccessible>> focused_;
    std::map<pid_t, Object<AtspiAccessible>> applications_;
    std::map<std::string, pid_t, std::less<>> processes_;
    std::map<std::string, Toolkit, std::less<>> toolkits_;
    /// When the processes that have no application on the bus were last looked for.
    std::map<pid_t, std::chrono::steady_clock::time_point> absent_;
    pid_t lastProcess_ = 0;
    pid_t passwordProcess_ = 0;
    std::atomic<bool> isPasswordField_ = false;
};

} // namespace glyma::atspi
