#include "preferences/paste_chords.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

namespace glyma {

namespace {

constexpr KeyChord controlV{keycode::v, modifier::control};
constexpr KeyChord controlShiftV{keycode::v, modifier::control | modifier::shift};
constexpr KeyChord shiftInsert{keycode::insert, modifier::shift};

/// Terminals hand Ctrl+V to the program that runs in them.
constexpr std::array<std::string_view, 23> pasteWithControlShiftV{
    "Alacritty",
    "com.gexperts.Tilix",
    "com.mitchellh.ghostty",
    "cool-retro-term",
    "deepin-terminal",
    "foot",
    "footclient",
    "guake",
    "kitty",
    "lxterminal",
    "mate-terminal",
    "org.codeberg.dnkl.foot",
    "org.gnome.Console",
    "org.gnome.Ptyxis",
    "org.gnome.Terminal",
    "org.kde.konsole",
    "org.kde.yakuake",
    "qterminal",
    "sakura",
    "st",
    "terminator",
    "terminology",
    "xfce4-terminal",
};

/// xterm and rxvt have no key for the clipboard (theirs pastes the primary selection); Emacs and the Vims
/// give Ctrl+V another meaning.
constexpr std::array<std::string_view, 11> pasteWithShiftInsert{
    "debian-uxterm", "debian-xterm", "emacs", "emacs-term", "emacsclient", "gvim",
    "nvim-qt",       "rxvt-unicode", "urxvt", "uxterm",     "xterm",
};

char lowerCaseAscii(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

} // namespace

std::optional<KeyChord> parsePasteChord(std::string_view text) {
    std::string chord;
    std::ranges::transform(text, std::back_inserter(chord), lowerCaseAscii);
    if (chord == "ctrl+v")
        return controlV;
    if (chord == "ctrl+shift+v")
        return controlShiftV;
    if (chord == "shift+insert")
        return shiftInsert;
    return std::nullopt;
}

PasteChords parsePasteChords(const nlohmann::json& value) {
    PasteChords chords;
    if (!value.is_object())
        return chords;
    for (const auto& [identifier, text] : value.items())
        if (const auto chord =
                text.is_string() ? parsePasteChord(text.get_ref<const std::string&>()) : std::nullopt)
            chords.emplace(identifier, *chord);
    return chords;
}

KeyChord defaultPasteChord(std::string_view identifier) {
    if (std::ranges::find(pasteWithShiftInsert, identifier) != pasteWithShiftInsert.end())
        return shiftInsert;
    if (std::ranges::find(pasteWithControlShiftV, identifier) != pasteWithControlShiftV.end())
        return controlShiftV;
    return controlV;
}

} // namespace glyma
