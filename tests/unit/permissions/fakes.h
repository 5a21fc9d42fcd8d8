#pragma once

#include "platform/keyboard_grabs.h"
#include "platform/permission.h"
#include "platform/processes.h"

#include <map>
#include <optional>

namespace glyma::test {

class FakeGrabs : public KeyboardGrabWatch {
public:
    std::optional<KeyboardGrab> current() const override { return grab_; }
    Subscription observe(std::function<void()> callback) override {
        return changed_.connect(std::move(callback));
    }
    void check() override { ++checks; }

    void set(std::optional<KeyboardGrab> grab) {
        grab_ = grab;
        changed_.emit();
    }
    int checks = 0;

private:
    std::optional<KeyboardGrab> grab_;
    Signal<> changed_;
};

class FakeProcesses : public Processes {
public:
    static constexpr pid_t ownProcess = 100;

    ProcessFacts facts(pid_t process) const override {
        const auto found = table.find(process);
        return found == table.end() ? ProcessFacts{} : found->second;
    }
    pid_t own() const override { return ownProcess; }

    std::map<pid_t, ProcessFacts> table{{ownProcess, {.exists = true, .name = "glyma"}}};
};

class FakePermission : public PermissionSource {
public:
    explicit FakePermission(bool isGranted) { permission_.isGranted = isGranted; }

    Permission current() const override { return permission_; }
    void check() override { ++checks; }
    void obtain() override { grant(true); }
    Subscription observe(std::function<void()> callback) override {
        return changed_.connect(std::move(callback));
    }

    void grant(bool isGranted) {
        permission_.isGranted = isGranted;
        changed_.emit();
    }
    int checks = 0;

private:
    Permission permission_;
    Signal<> changed_;
};

} // namespace glyma::test
