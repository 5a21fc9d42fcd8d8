#pragma once

#include "platform/font_coverage.h"
#include "platform/installed_applications.h"
#include "platform/log_sink.h"
#include "platform/login_item.h"
#include "platform/open_pages.h"
#include "platform/screens.h"
#include "platform/settings_store.h"

#include <nlohmann/json.hpp>

#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

/// The smaller facilities of the desktop in memory.
namespace glyma::simulated {

class SimulatedScreens : public Screens {
public:
    std::vector<Screen> all() override { return screens; }
    Point pointerLocation() override { return pointer; }

    std::vector<Screen> screens{{{0, 0, 1920, 1080}, {0, 30, 1920, 1050}, 1}};
    Point pointer{960, 540};
};

class SimulatedBell : public Bell {
public:
    void ring() override { ++count; }
    int count = 0;
};

/// Remembers every line.
class SimulatedLog : public LogSink {
public:
    void write(std::string_view message) override {
        const std::lock_guard lock(mutex_);
        lines_.emplace_back(message);
    }
    std::vector<std::string> lines() const {
        const std::lock_guard lock(mutex_);
        return lines_;
    }
    void clear() {
        const std::lock_guard lock(mutex_);
        lines_.clear();
    }

private:
    mutable std::mutex mutex_;
    std::vector<std::string> lines_;
};

/// Settings that last as long as the desktop.
class SimulatedSettings : public SettingsStore {
public:
    std::optional<nlohmann::json> value(std::string_view key) const override {
        const std::lock_guard lock(mutex_);
        const auto found = values_.find(key);
        return found == values_.end() ? std::nullopt : std::optional(found->second);
    }
    void set(std::string_view key, nlohmann::json value) override {
        const std::lock_guard lock(mutex_);
        values_.insert_or_assign(std::string(key), std::move(value));
    }
    void remove(std::string_view key) override {
        const std::lock_guard lock(mutex_);
        if (const auto found = values_.find(key); found != values_.end())
            values_.erase(found);
    }

private:
    mutable std::mutex mutex_;
    std::map<std::string, nlohmann::json, std::less<>> values_;
};

/// A session that starts programs, or says why it does not.
class SimulatedLoginItem : public LoginItem {
public:
    bool isEnabled() const override { return enabled; }
    std::expected<void, Message> enable() override { return change(true); }
    std::expected<void, Message> disable() override { return change(false); }

    bool enabled = false;
    Message refusal; ///< not empty: nothing changes and this is why

private:
    std::expected<void, Message> change(bool value) {
        if (!refusal.isEmpty())
            return std::unexpected(refusal);
        enabled = value;
        return {};
    }
};

class SimulatedInstalledApplications : public InstalledApplications {
public:
    bool isInstalled(std::string_view identifier) const override { return identifiers.contains(identifier); }
    std::optional<InstalledApplication> find(std::string_view identifier) const override {
        if (!isInstalled(identifier))
            return std::nullopt;
        const auto details = known.find(identifier);
        return details != known.end()
                   ? details->second
                   : InstalledApplication{std::string(identifier), std::string(identifier), ""};
    }
    std::vector<InstalledApplication> withWindows() const override {
        std::vector<InstalledApplication> applications;
        for (const auto& identifier : identifiers)
            applications.push_back(*find(identifier));
        return applications;
    }
    std::set<std::string, std::less<>> identifiers;
    /// How those present themselves; one that is not here by its identifier.
    std::map<std::string, InstalledApplication, std::less<>> known;
};

/// Browsers that tell their pages at once.
class SimulatedOpenPages : public OpenPages {
public:
    void find(std::function<void(std::vector<std::string>)> onFound) override { onFound(addresses); }
    std::vector<std::string> addresses;
};

/// Fonts that draw everything but what is named here.
class SimulatedFonts : public FontCoverage {
public:
    bool canDraw(std::string_view text) override { return !missing.contains(text); }
    std::set<std::string, std::less<>> missing;
};

} // namespace glyma::simulated
