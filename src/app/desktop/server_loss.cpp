#include "app/desktop/server_loss.h"

#include "app/command_line.h"

#include <cstdlib>
#include <unistd.h>
#include <utility>

namespace glyma {

namespace {

/// Never destroyed, so that it can be asked during exit().
std::function<void()>& farewell() {
    static auto* const function = new std::function<void()>;
    return *function;
}

void endAtOnce() {
    const auto say = std::exchange(farewell(), nullptr);
    if (!say)
        return;
    say();
    ::_exit(status::failed);
}

} // namespace

ServerLoss::ServerLoss(std::function<void()> say) {
    farewell() = std::move(say);
    // Functions run in the order opposite to that of their registration.
    std::atexit(endAtOnce);
}

ServerLoss::~ServerLoss() {
    farewell() = nullptr;
}

} // namespace glyma
