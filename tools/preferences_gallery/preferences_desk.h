#pragma once

#include "platform/linux/fonts/font_families.h"
#include "platform/simulated/services.h"
#include "platform/simulated/virtual_clock.h"
#include "preferences/qt/preferences_pages.h"

#include <QTemporaryDir>

#include <filesystem>
#include <memory>
#include <string>

namespace glyma::gallery {

/// A permission that is as it is told to be.
class SetPermission : public PermissionSource {
public:
    Permission current() const override { return permission; }
    void check() override { ++checks; }
    void obtain() override { set({.isGranted = true, .finding = "on", .remedy = {}}); }
    Subscription observe(std::function<void()> callback) override {
        return changed_.connect(std::move(callback));
    }

    void set(const Permission& value) {
        permission = value;
        changed_.emit();
    }

    Permission permission;
    int checks = 0;

private:
    Signal<> changed_;
};

class NoGrabs : public KeyboardGrabWatch {
public:
    std::optional<KeyboardGrab> current() const override { return std::nullopt; }
    Subscription observe(std::function<void()>) override { return {}; }
    void check() override {}
};

/// One process that has the focus, and what is known of it.
class OneProcess : public Processes {
public:
    ProcessFacts facts(pid_t) const override { return holder; }
    pid_t own() const override { return ownProcess; }

    ProcessFacts holder;
    pid_t ownProcess = 1;
};

class RecordedProgram : public ProgramOperations {
public:
    void openUpdatePage() override { ++updatePages; }
    void deleteContainerAndQuit() override { ++deletions; }
    void quit() override {}

    int updatePages = 0;
    int deletions = 0;
};

/// The preferences window with all that it needs and nothing of the user's. Needs the QApplication.
class PreferencesDesk {
public:
    explicit PreferencesDesk(std::shared_ptr<simulated::SimulatedSettings> stored = {});

    /// A process has the keys to itself, or (0) the focus is in a password field and nobody knows whose.
    void holdSecureInput(pid_t process, const ProcessFacts& facts);

    /// Imports the whole catalogue, as far as the installed fonts draw it.
    bool fillLibrary(const std::filesystem::path& referenceFiles);

    std::shared_ptr<simulated::SimulatedSettings> settings;
    simulated::SimulatedLoginItem loginItem;
    simulated::SimulatedInstalledApplications applications;
    simulated::SimulatedLog logged;
    simulated::SimulatedBell bell;
    simulated::SimulatedOpenPages pages;
    simulated::SimulatedFonts fonts;
    simulated::VirtualClock clock;
    DebugConfig debug;
    Log log;
    UserPreferences preferences;

    SetPermission inputMonitoring;
    SetPermission accessibility;
    OneProcess processes;
    RecordedProgram program;
    SharedFlags flags;

    std::filesystem::path storeFile() const;

private:
    qt::FontChoice fontChoice();

    NoGrabs grabs_;
    bool isSecret_ = false;
    pid_t focusedProcess_ = 0;
    SecureInputChecker secureInput_;
    QTemporaryDir folder_;
    ResourceLocator resources_;
    fonts::FontFamilies families_;
    CharacterInfos infos_;

public:
    Permissions permissions;
    UnicodeDataManager catalogue;
    qt::PreferencesWindow window;
};

} // namespace glyma::gallery
