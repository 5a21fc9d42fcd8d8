#pragma once

#include "platform/keyboard_grabs.h"
#include "platform/processes.h"
#include "platform/scheduler.h"

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>

namespace glyma {

/// Who holds Secure Input.
struct Holder {
    enum class Kind {
        running,          ///< an ordinary application: the user can switch to it or quit it
        system,           ///< the screen locker, or a process of another user
        stale,            ///< has ended, and what it held is still recorded
        attributedToSelf, ///< the program itself
    };
    Kind kind = Kind::running;
    pid_t process = 0;
    /// What people call it, or "process " and its number; UTF-8.
    std::string name;
    bool operator==(const Holder&) const = default;
};

struct SecureInput {
    /// Typing is kept from the program.
    bool isOn = false;
    /// Absent also when Secure Input is on and nobody says who holds it.
    std::optional<Holder> holder;
    bool operator==(const SecureInput&) const = default;
};

/// What to say of a process that holds Secure Input; nothing for process 0.
std::optional<Holder> holderOf(pid_t process, const Processes& processes);

/// Knows whether typing is meant to stay secret: another process has all keys sent to itself for longer than
/// one would type into it by accident, or the focus is in a password field. Main thread but where said
/// otherwise.
class SecureInputChecker {
public:
    struct Services {
        Scheduler& scheduler;
        KeyboardGrabWatch& grabs;
        const Processes& processes;
        /// Any thread; never waits.
        std::function<bool()> focusIsPasswordField;
        /// The process of the window that has the focus, 0 when unknown. Main thread.
        std::function<pid_t()> focusedProcess;
        /// Gives back whatever the program itself has grabbed. Main thread.
        std::function<void()> releaseOwnGrabs;
    };

    explicit SecureInputChecker(Services services);

    /// Looks at once.
    SecureInput diagnose();
    /// \return whether Secure Input is off afterwards.
    bool releaseIfHeldBySelf();
    /// Whether a key that is typed now is none of the program's business. So are those of a menu and of a
    /// grab that has only begun, which `diagnose` does not tell of. Any thread; never waits.
    bool mustNotListen() const;

    /// `diagnose` may answer something else now.
    Signal<> changed;

private:
    void grabChanged();

    Services services_;
    std::optional<KeyboardGrab> heard_;
    /// What was heard of is no menu and has stood for a while.
    std::atomic<bool> hasLasted_ = false;
    Subscription waiting_;
    Subscription grabSubscription_;
};

} // namespace glyma
