#include "permissions/secure_input.h"

#include <fmt/format.h>

#include <utility>

namespace glyma {

namespace {

/// Menus that do not say so, and the program's own grab during an insertion, are over by then.
constexpr Milliseconds lastingAfter{2000};

Holder::Kind kindOf(pid_t process, const ProcessFacts& facts, pid_t own) {
    if (!facts.exists)
        return Holder::Kind::stale;
    if (process == own)
        return Holder::Kind::attributedToSelf;
    return facts.isForeign || facts.isLocker ? Holder::Kind::system : Holder::Kind::running;
}

} // namespace

std::optional<Holder> holderOf(pid_t process, const Processes& processes) {
    if (process <= 0)
        return std::nullopt;
    auto facts = processes.facts(process);
    return Holder{.kind = kindOf(process, facts, processes.own()),
                  .process = process,
                  .name = facts.name.empty() ? fmt::format("process {}", process) : std::move(facts.name)};
}

SecureInputChecker::SecureInputChecker(Services services)
    : services_(std::move(services))
    , grabSubscription_(services_.grabs.observe([this] { grabChanged(); })) {
    grabChanged();
}

void SecureInputChecker::grabChanged() {
    const auto grab = services_.grabs.current();
    if (grab == heard_)
        return;
    heard_ = grab;
    waiting_.reset();
    hasLasted_ = false;
    if (grab && !grab->isMenu)
        waiting_ = services_.scheduler.after(lastingAfter, [this] {
            hasLasted_ = true;
            changed.emit();
        });
    changed.emit();
}

SecureInput SecureInputChecker::diagnose() {
    services_.grabs.check();
    grabChanged();
    const bool isGrabbed = hasLasted_;
    if (!isGrabbed && !services_.focusIsPasswordField())
        return {};
    const auto process = isGrabbed && heard_->process != 0 ? heard_->process : services_.focusedProcess();
    return {.isOn = true, .holder = holderOf(process, services_.processes)};
}

bool SecureInputChecker::releaseIfHeldBySelf() {
    services_.releaseOwnGrabs();
    return !diagnose().isOn;
}

bool SecureInputChecker::mustNotListen() const {
    if (services_.focusIsPasswordField())
        return true;
    const auto grab = services_.grabs.current();
    if (!grab || grab->process == services_.processes.own())
        return false;
    return grab->process != 0 || hasLasted_;
}

} // namespace glyma
