#pragma once

#include "platform/message.h"
#include "platform/subscription.h"

#include <functional>

namespace glyma {

/// Something that the desktop must let the program do, and whether it does here.
struct Permission {
    bool isGranted = false;
    /// What was found, for people; no full stop.
    Message finding;
    /// What the user can do, in sentences; empty when nothing need be done. May be there with a permission
    /// that is granted but reaches less far than it could.
    Message remedy;
    /// The program can obtain it by itself: PermissionSource::obtain().
    bool canBeObtained = false;
    bool operator==(const Permission&) const = default;
};

/// Follows one permission. Main thread; nothing here waits.
class PermissionSource {
public:
    virtual ~PermissionSource() = default;

    /// As last known.
    virtual Permission current() const = 0;
    /// Looks again, over connections that are open already; what is new is announced.
    virtual void check() = 0;
    /// Tries to obtain it; the outcome is announced.
    virtual void obtain() = 0;
    /// Called after `current()` has changed.
    [[nodiscard]] virtual Subscription observe(std::function<void()> callback) = 0;
};

} // namespace glyma
