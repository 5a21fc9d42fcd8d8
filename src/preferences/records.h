#pragma once

#include "platform/key_event.h"

#include <cstdint>
#include <string>
#include <vector>

namespace glyma {

/// A snippet of the user: found by its name and keywords, inserts its text.
struct UserReplacement {
    std::string id; ///< UUID, canonical upper-case form
    std::string name;
    std::vector<std::string> keywords;
    std::string text;
    bool operator==(const UserReplacement&) const = default;
};

struct ExcludedApp {
    std::string bundleID; ///< desktop-entry id
    std::string name;
    bool isExcluded = true;
    bool operator==(const ExcludedApp&) const = default;
};

struct ExcludedWebsite {
    std::string domain;
    bool isExcluded = true;
    bool operator==(const ExcludedWebsite&) const = default;
};

struct GlobalShortcut {
    std::uint16_t keyCode = keycode::unknown;
    std::uint64_t modifierRawValue = 0;
    std::string display;
    bool operator==(const GlobalShortcut&) const = default;

    /// Compares the key and Control, Option, Command and Shift; ignores all other flags.
    bool matches(std::uint16_t otherKeyCode, std::uint64_t flags) const;
};

} // namespace glyma
