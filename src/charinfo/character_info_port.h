#pragma once

#include "charinfo/character_info.h"
#include "platform/geometry.h"

#include <optional>
#include <string>
#include <vector>

namespace glyma {

/// The window with a card for each character, seen from the presenter. Main thread.
class CharacterInfoWindow {
public:
    virtual ~CharacterInfoWindow() = default;

    /// Shows these in the frame, above everything, without taking the keyboard.
    virtual void show(const std::vector<CharacterInfo>& infos, const Rect& frame) = 0;
    virtual void hide() = 0;
    /// Whether keys go to this window, after a click into it or takeKeyboard().
    virtual bool hasKeyboard() const = 0;
    virtual void takeKeyboard() = 0;
};

/// What the user selected last, on a desktop that remembers that. Main thread.
class LastSelection {
public:
    virtual ~LastSelection() = default;

    /// Its text, UTF-8, if the application in front is where it was selected.
    virtual std::optional<std::string> inFrontApplication() = 0;
    /// Its text, wherever it was selected.
    virtual std::optional<std::string> anywhere() = 0;
};

} // namespace glyma
