#pragma once

#include "picker/emoji_picker_view_model.h"
#include "picker/qt/glyphs.h"
#include "platform/screens.h"
#include "preferences/debug_config.h"
#include "preferences/user_preferences.h"

#include <functional>
#include <string>
#include <vector>

namespace glyma::qt {

/// What the picker's window shows and acts on. Everything referred to outlives the window.
struct PickerServices {
    EmojiPickerViewModel& model;
    UserPreferences& preferences;
    DebugConfig& debug;
    Screens& screens;
    FontChoice fonts;
    /// The characters that the icon of a random entry runs through.
    std::function<const std::vector<std::string>&(bool isEmoji)> randomPool;
    /// Finds the target's text element again, after a click into our window.
    std::function<void()> recacheSourceFromApp;
};

} // namespace glyma::qt
