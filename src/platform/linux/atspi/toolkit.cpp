#include "platform/linux/atspi/toolkit.h"

#include "unicode/text.h"

#include <algorithm>

namespace glyma::atspi {

namespace {

std::ptrdiff_t scalarCount(std::string_view text) {
    return std::ranges::count_if(text, [](unsigned char byte) { return (byte & 0xC0U) != 0x80U; });
}

std::ptrdiff_t utf16Length(std::string_view text) {
    return static_cast<std::ptrdiff_t>(unicode::utf16Length(text));
}

} // namespace

Toolkit toolkitNamed(std::string_view name, std::string_view version) {
    Toolkit toolkit;
    if (name == "gtk" || name == "GTK" || name == "GAIL") {
        toolkit.edits = true;
        // The AT-SPI bridge of GTK 4 forgets the reply to AddSelection (gtkatspitext.c) and refuses to say
        // where a window is on the screen (gtkatspicomponent.c).
        if (version.starts_with("4")) {
            toolkit.answersAddSelection = false;
            toolkit.knowsScreenCoordinates = false;
        }
    } else if (name == "Qt") {
        toolkit.offsets = Toolkit::OffsetUnit::utf16;
        toolkit.insertLength = Toolkit::LengthUnit::utf16;
        toolkit.edits = true;
    } else if (name == "VCL") { // LibreOffice
        toolkit.offsets = Toolkit::OffsetUnit::utf16;
        toolkit.edits = true;
    } else if (name == "Gecko") {
        toolkit.offsets = Toolkit::OffsetUnit::utf16;
        toolkit.padsAstralCharacters = true;
        toolkit.selectsOnly = true;
        toolkit.selectsLate = true;
        toolkit.nestsText = true;
    } else if (name == "Chromium" || name == "WebKitGTK" || name == "WebKitGtk") {
        toolkit.nestsText = true;
    }
    return toolkit;
}

std::string plainText(const Toolkit& toolkit, std::string text) {
    if (!toolkit.padsAstralCharacters)
        return text;
    // Four bytes of UTF-8 (first byte F0 or above) and then U+FEFF (EF BB BF).
    constexpr std::string_view padding = "\xEF\xBB\xBF";
    for (std::size_t at = text.find(padding); at != std::string::npos; at = text.find(padding, at)) {
        if (at >= 4 && static_cast<unsigned char>(text[at - 4]) >= 0xF0)
            text.erase(at, padding.size());
        else
            at += padding.size();
    }
    return text;
}

std::ptrdiff_t utf16Offset(const Toolkit& toolkit, std::ptrdiff_t offset, std::string_view before) {
    return toolkit.offsets == Toolkit::OffsetUnit::utf16 ? offset : utf16Length(before);
}

std::ptrdiff_t toolkitOffset(const Toolkit& toolkit, std::ptrdiff_t utf16, std::string_view text) {
    if (toolkit.offsets == Toolkit::OffsetUnit::utf16)
        return utf16;
    return scalarCount(text.substr(
        0, unicode::utf8Offset(text, static_cast<std::size_t>(std::max<std::ptrdiff_t>(utf16, 0)))));
}

std::ptrdiff_t offsetLength(const Toolkit& toolkit, std::string_view text) {
    return toolkit.offsets == Toolkit::OffsetUnit::utf16 ? utf16Length(text) : scalarCount(text);
}

std::ptrdiff_t insertLength(const Toolkit& toolkit, std::string_view text) {
    return toolkit.insertLength == Toolkit::LengthUnit::utf16 ? utf16Length(text)
                                                              : static_cast<std::ptrdiff_t>(text.size());
}

} // namespace glyma::atspi
