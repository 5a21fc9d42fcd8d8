#pragma once

#include <atspi/atspi.h>

#include <dbus/dbus.h>
#include <functional>
#include <memory>

namespace glyma::atspi {

/// One question to an application that nobody waits for, to learn when it answers at all: one that is
/// starting or busy is heard of as soon as it is ready, and costs nothing until then. Worker thread.
class Greeting {
public:
    /// \param application  its own element, the root of its tree.
    /// \param onEnd        told whether it has answered, or can no longer be expected to; at most once, and
    ///                     not after the greeting's end. May destroy the greeting.
    Greeting(AtspiAccessible* application, std::function<void(bool hasAnswered)> onEnd);
    ~Greeting();
    Greeting(const Greeting&) = delete;
    Greeting& operator=(const Greeting&) = delete;

private:
    static void onReply(DBusPendingCall* pending, void* self);

    std::function<void(bool)> onEnd_;
    DBusPendingCall* pending_ = nullptr;
};

} // namespace glyma::atspi
