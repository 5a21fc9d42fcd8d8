#pragma once

#include "platform/installed_applications.h"
#include "platform/key_event.h"
#include "platform/login_item.h"
#include "platform/settings_store.h"
#include "platform/subscription.h"
#include "preferences/log.h"
#include "preferences/records.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// A choice the preferences offer.
struct TriggerOption {
    std::string_view label;
    std::string_view value;
};
struct MenuBarIconOption {
    std::string_view value;
    std::string_view label;
    std::string_view symbol; ///< empty: shows the trigger character
};

/// The settings, each stored the moment it is assigned. Getters copy and may be called from any thread;
/// setters and `changed` belong to the main thread. Stored values that do not decode fall back to the default
/// and stay as they are until the setting is assigned.
class UserPreferences {
public:
    UserPreferences(SettingsStore& store, LoginItem& loginItem, const InstalledApplications& applications,
                    Log& log);

    std::string triggerCharacter() const;
    std::vector<UserReplacement> userReplacements() const;
    std::string menuBarIcon() const;
    bool useFuzzySearch() const;
    std::vector<ExcludedApp> excludedApps() const;
    std::vector<ExcludedWebsite> excludedWebsites() const;
    std::optional<GlobalShortcut> characterInfoShortcut() const;
    bool randomUnicodeIncludesEmoji() const;
    std::int64_t visiblePickerRows() const;
    bool startAtLogin() const;
    std::optional<std::string> skinToneModifier() const;
    /// Paste chords by application identifier, for those that do not paste with Ctrl+V. The user's entries
    /// (key `pasteChords`, an object of identifier to "Ctrl+Shift+V" or "Shift+Insert" or "Ctrl+V") come
    /// before ours.
    KeyChord pasteChord(std::string_view applicationIdentifier) const;
    /// Whether the application's web sites can be excluded. The user's entries (key `browsers`, an object of
    /// identifier to true or false) come before ours.
    bool isBrowser(std::string_view applicationIdentifier) const;

    void setTriggerCharacter(const std::string& value);
    void setUserReplacements(const std::vector<UserReplacement>& value);
    void setMenuBarIcon(const std::string& value);
    void setUseFuzzySearch(bool value);
    void setExcludedApps(const std::vector<ExcludedApp>& value);
    void setExcludedWebsites(const std::vector<ExcludedWebsite>& value);
    void setCharacterInfoShortcut(const std::optional<GlobalShortcut>& value);
    void setRandomUnicodeIncludesEmoji(bool value);
    void setVisiblePickerRows(std::int64_t value);
    /// Ends up mirroring what the session really does. The error says, in sentences, why that is not what was
    /// asked for and what to do.
    std::expected<void, Message> setStartAtLogin(bool value);
    void setSkinToneModifier(const std::optional<std::string>& value);

    /// Some setting differs from before.
    Signal<> changed;
    /// userReplacements was assigned, also with an equal value.
    Signal<> userReplacementsAssigned;

    static std::span<const TriggerOption> triggerOptions();
    static std::span<const MenuBarIconOption> menuBarIconOptions();

private:
    struct Values {
        std::string triggerCharacter;
        std::vector<UserReplacement> userReplacements;
        std::string menuBarIcon;
        bool useFuzzySearch = false;
        std::vector<ExcludedApp> excludedApps;
        std::vector<ExcludedWebsite> excludedWebsites;
        std::optional<GlobalShortcut> characterInfoShortcut;
        bool randomUnicodeIncludesEmoji = true;
        std::int64_t visiblePickerRows = 0;
        bool startAtLogin = false;
        std::optional<std::string> skinToneModifier;
        std::map<std::string, KeyChord, std::less<>> pasteChords;
        std::map<std::string, bool, std::less<>> browsers;
    };

    static Values load(const SettingsStore& store, const LoginItem& loginItem,
                       const InstalledApplications& applications);
    template<typename Value>
    Value get(Value Values::*field) const;
    template<typename Value>
    void assign(Value Values::*field, const Value& value);
    template<typename Value>
    void assignAndStore(Value Values::*field, const char* key, const Value& value, nlohmann::json stored);
    std::expected<void, Message> toggleLoginItem(bool value);

    SettingsStore& store_;
    LoginItem& loginItem_;
    Log& log_;
    mutable std::mutex mutex_;
    Values values_;
};

} // namespace glyma
