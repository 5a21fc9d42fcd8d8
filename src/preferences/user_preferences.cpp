#include "preferences/user_preferences.h"

#include "preferences/browsers.h"
#include "preferences/default_exclusions.h"
#include "preferences/default_replacements.h"
#include "preferences/paste_chords.h"
#include "preferences/records_json.h"
#include "unicode/properties.h"
#include "unicode/text.h"

#include <nlohmann/json.hpp>

#include <array>

namespace glyma {

using nlohmann::json;

namespace {

namespace key {
constexpr const char* triggerCharacter = "triggerCharacter";
constexpr const char* userReplacements = "userReplacements";
constexpr const char* menuBarIcon = "menuBarIcon";
constexpr const char* useFuzzySearch = "useFuzzySearch";
constexpr const char* excludedApps = "excludedApps";
constexpr const char* excludedWebsites = "excludedWebsites";
constexpr const char* characterInfoShortcut = "characterInfoShortcut";
constexpr const char* randomUnicodeIncludesEmoji = "randomUnicodeIncludesEmoji";
constexpr const char* visiblePickerRows = "visiblePickerRows";
constexpr const char* skinToneModifier = "skinToneModifier";
constexpr const char* pasteChords = "pasteChords";
constexpr const char* browsers = "browsers";
} // namespace key

constexpr std::string_view defaultTrigger = ":";
constexpr std::string_view defaultMenuBarIcon = "trigger";
constexpr std::int64_t defaultVisiblePickerRows = 7;

std::optional<std::string> storedString(const SettingsStore& store, const char* name) {
    const auto value = store.value(name);
    return value && value->is_string() ? std::optional(value->get<std::string>()) : std::nullopt;
}

bool storedBool(const SettingsStore& store, const char* name, bool otherwise) {
    const auto value = store.value(name);
    return value && value->is_boolean() ? value->get<bool>() : otherwise;
}

std::string storedTrigger(const SettingsStore& store) {
    const auto text = storedString(store, key::triggerCharacter).value_or("");
    return std::string(text.empty() ? defaultTrigger : unicode::firstGraphemes(text, 1));
}

std::int64_t storedVisibleRows(const SettingsStore& store) {
    const auto value = store.value(key::visiblePickerRows);
    if (!value || !value->is_number_integer())
        return defaultVisiblePickerRows;
    // A number beyond the signed range comes out negative.
    const auto rows = value->get<std::int64_t>();
    return rows > 0 ? rows : defaultVisiblePickerRows;
}

/// Anything but a skin tone would be inserted behind every person and hand.
std::optional<std::string> storedSkinTone(const SettingsStore& store) {
    const auto text = storedString(store, key::skinToneModifier).value_or("");
    const auto first = unicode::firstScalar(text);
    return unicode::isSkinToneModifier(first) ? std::optional(unicode::fromScalar(first)) : std::nullopt;
}

template<typename Record>
std::optional<std::vector<Record>> storedList(const SettingsStore& store, const char* name) {
    const auto value = store.value(name);
    return value ? decodeList<Record>(*value) : std::nullopt;
}

std::optional<GlobalShortcut> storedShortcut(const SettingsStore& store) {
    const auto value = store.value(key::characterInfoShortcut);
    return value ? decode<GlobalShortcut>(*value) : std::nullopt;
}

} // namespace

UserPreferences::UserPreferences(SettingsStore& store, LoginItem& loginItem,
                                 const InstalledApplications& applications, Log& log)
    : store_(store)
    , loginItem_(loginItem)
    , log_(log)
    , values_(load(store, loginItem, applications)) {}

UserPreferences::Values UserPreferences::load(const SettingsStore& store, const LoginItem& loginItem,
                                              const InstalledApplications& applications) {
    auto replacements = storedList<UserReplacement>(store, key::userReplacements);
    auto apps = storedList<ExcludedApp>(store, key::excludedApps);
    auto websites = storedList<ExcludedWebsite>(store, key::excludedWebsites);
    return {
        .triggerCharacter = storedTrigger(store),
        .userReplacements = replacements ? std::move(*replacements) : defaultReplacements(),
        .menuBarIcon = storedString(store, key::menuBarIcon).value_or(std::string(defaultMenuBarIcon)),
        .useFuzzySearch = storedBool(store, key::useFuzzySearch, false),
        .excludedApps = apps ? std::move(*apps) : defaultExcludedApps(applications),
        .excludedWebsites = websites ? std::move(*websites) : defaultExcludedWebsites(),
        .characterInfoShortcut = storedShortcut(store),
        .randomUnicodeIncludesEmoji = storedBool(store, key::randomUnicodeIncludesEmoji, true),
        .visiblePickerRows = storedVisibleRows(store),
        .startAtLogin = loginItem.isEnabled(),
        .skinToneModifier = storedSkinTone(store),
        .pasteChords = parsePasteChords(store.value(key::pasteChords).value_or(json())),
        .browsers = parseBrowsers(store.value(key::browsers).value_or(json())),
    };
}

template<typename Value>
Value UserPreferences::get(Value Values::*field) const {
    const std::lock_guard lock(mutex_);
    return values_.*field;
}

template<typename Value>
void UserPreferences::assign(Value Values::*field, const Value& value) {
    bool differs = false;
    {
        const std::lock_guard lock(mutex_);
        differs = values_.*field != value;
        values_.*field = value;
    }
    if (differs)
        changed.emit();
}

/// \param stored  null removes the key.
template<typename Value>
void UserPreferences::assignAndStore(Value Values::*field, const char* key, const Value& value, json stored) {
    if (stored.is_null())
        store_.remove(key);
    else
        store_.set(key, std::move(stored));
    assign(field, value);
}

std::string UserPreferences::triggerCharacter() const {
    return get(&Values::triggerCharacter);
}

std::vector<UserReplacement> UserPreferences::userReplacements() const {
    return get(&Values::userReplacements);
}

std::string UserPreferences::menuBarIcon() const {
    return get(&Values::menuBarIcon);
}

bool UserPreferences::useFuzzySearch() const {
    return get(&Values::useFuzzySearch);
}

std::vector<ExcludedApp> UserPreferences::excludedApps() const {
    return get(&Values::excludedApps);
}

std::vector<ExcludedWebsite> UserPreferences::excludedWebsites() const {
    return get(&Values::excludedWebsites);
}

std::optional<GlobalShortcut> UserPreferences::characterInfoShortcut() const {
    return get(&Values::characterInfoShortcut);
}

bool UserPreferences::randomUnicodeIncludesEmoji() const {
    return get(&Values::randomUnicodeIncludesEmoji);
}

std::int64_t UserPreferences::visiblePickerRows() const {
    return get(&Values::visiblePickerRows);
}

bool UserPreferences::startAtLogin() const {
    return get(&Values::startAtLogin);
}

std::optional<std::string> UserPreferences::skinToneModifier() const {
    return get(&Values::skinToneModifier);
}

KeyChord UserPreferences::pasteChord(std::string_view applicationIdentifier) const {
    const std::lock_guard lock(mutex_);
    const auto place = values_.pasteChords.find(applicationIdentifier);
    return place != values_.pasteChords.end() ? place->second : defaultPasteChord(applicationIdentifier);
}

bool UserPreferences::isBrowser(std::string_view applicationIdentifier) const {
    const std::scoped_lock lock(mutex_);
    const auto place = values_.browsers.find(applicationIdentifier);
    return place != values_.browsers.end() ? place->second : isKnownBrowser(applicationIdentifier);
}

void UserPreferences::setTriggerCharacter(const std::string& value) {
    assignAndStore(&Values::triggerCharacter, key::triggerCharacter, value, value);
}

void UserPreferences::setUserReplacements(const std::vector<UserReplacement>& value) {
    assignAndStore(&Values::userReplacements, key::userReplacements, value, encodeList(value));
    userReplacementsAssigned.emit();
}

void UserPreferences::setMenuBarIcon(const std::string& value) {
    assignAndStore(&Values::menuBarIcon, key::menuBarIcon, value, value);
}

void UserPreferences::setUseFuzzySearch(bool value) {
    assignAndStore(&Values::useFuzzySearch, key::useFuzzySearch, value, value);
}

void UserPreferences::setExcludedApps(const std::vector<ExcludedApp>& value) {
    assignAndStore(&Values::excludedApps, key::excludedApps, value, encodeList(value));
}

void UserPreferences::setExcludedWebsites(const std::vector<ExcludedWebsite>& value) {
    assignAndStore(&Values::excludedWebsites, key::excludedWebsites, value, encodeList(value));
}

void UserPreferences::setCharacterInfoShortcut(const std::optional<GlobalShortcut>& value) {
    assignAndStore(&Values::characterInfoShortcut, key::characterInfoShortcut, value,
                   value ? encode(*value) : json());
}

void UserPreferences::setRandomUnicodeIncludesEmoji(bool value) {
    assignAndStore(&Values::randomUnicodeIncludesEmoji, key::randomUnicodeIncludesEmoji, value, value);
}

void UserPreferences::setVisiblePickerRows(std::int64_t value) {
    assignAndStore(&Values::visiblePickerRows, key::visiblePickerRows, value, value);
}

std::expected<void, Message> UserPreferences::setStartAtLogin(bool value) {
    assign(&Values::startAtLogin, value);
    const auto toggled = toggleLoginItem(value);
    if (toggled)
        return {};
    // One more turn, to bring the session to what it says; a second failure ends it.
    assign(&Values::startAtLogin, loginItem_.isEnabled());
    [[maybe_unused]] const auto resynchronised = toggleLoginItem(startAtLogin());
    assign(&Values::startAtLogin, loginItem_.isEnabled());
    return toggled;
}

std::expected<void, Message> UserPreferences::toggleLoginItem(bool value) {
    auto toggled = value ? loginItem_.enable() : loginItem_.disable();
    if (!toggled)
        log_.debug("Glyma: login item toggle failed — {}", toggled.error().english());
    return toggled;
}

void UserPreferences::setSkinToneModifier(const std::optional<std::string>& value) {
    assignAndStore(&Values::skinToneModifier, key::skinToneModifier, value, value ? json(*value) : json());
}

std::span<const TriggerOption> UserPreferences::triggerOptions() {
    static constexpr std::array options{
        TriggerOption{"Colon", ":"},
        TriggerOption{"Plus", "+"},
        TriggerOption{"Slash", "/"},
        TriggerOption{"Tilde", "~"},
    };
    return options;
}

std::span<const MenuBarIconOption> UserPreferences::menuBarIconOptions() {
    static constexpr std::array options{
        MenuBarIconOption{"trigger", "Trigger character", ""},
        MenuBarIconOption{"face.smiling", "Smiling face", "face.smiling"},
        MenuBarIconOption{"sparkles", "Sparkles", "sparkles"},
        MenuBarIconOption{"keyboard", "Keyboard", "keyboard"},
        MenuBarIconOption{"command", "Command key", "command"},
        MenuBarIconOption{"wand.and.stars", "Magic wand", "wand.and.stars"},
    };
    return options;
}

} // namespace glyma
