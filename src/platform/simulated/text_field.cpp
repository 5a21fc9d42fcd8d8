#include "platform/simulated/text_field.h"

#include "unicode/text.h"

#include <algorithm>

namespace glyma::simulated {

namespace {

std::ptrdiff_t units(std::string_view text) {
    return static_cast<std::ptrdiff_t>(unicode::utf16Length(text));
}

} // namespace

std::ptrdiff_t TextField::length() const {
    return units(text_);
}

void TextField::setText(std::string_view text) {
    text_ = text;
    selection_ = {length(), 0};
}

void TextField::setSelection(TextRange range) {
    const auto location = std::clamp<std::ptrdiff_t>(range.location, 0, length());
    selection_ = {location, std::clamp<std::ptrdiff_t>(range.length, 0, length() - location)};
}

std::string TextField::substring(TextRange range) const {
    return std::string(unicode::utf16Substring(text_, static_cast<std::size_t>(range.location),
                                               static_cast<std::size_t>(range.length)));
}

std::string TextField::selectedText() const {
    return substring(selection_);
}

std::string TextField::before() const {
    return substring({0, selection_.location});
}

std::string TextField::after() const {
    const auto end = selection_.location + selection_.length;
    return substring({end, length() - end});
}

std::string TextField::textWithCaret() const {
    const std::string selected = selection_.length > 0 ? selectedText() + "|" : "";
    return before() + "|" + selected + after();
}

void TextField::insert(std::string_view text) {
    const auto start = before();
    text_ = start + std::string(text) + after();
    selection_ = {units(start) + units(text), 0};
}

void TextField::deleteBackwards(bool wholeCharacters) {
    if (selection_.length > 0) {
        insert("");
        return;
    }
    const auto start = before();
    const auto scalars = unicode::scalars(start);
    if (scalars.empty())
        return;
    const auto kept = wholeCharacters
                          ? std::string(unicode::withoutLastGrapheme(start))
                          : unicode::fromScalars(std::u32string_view(scalars).substr(0, scalars.size() - 1));
    text_ = kept + after();
    selection_ = {units(kept), 0};
}

void TextField::deleteForwards() {
    if (selection_.length == 0)
        selection_.length = units(unicode::firstGraphemes(after(), 1));
    insert("");
}

void TextField::moveCaret(std::ptrdiff_t characters) {
    const auto start = before();
    const auto end = after();
    auto location = selection_.location;
    if (characters > 0)
        location +=
            selection_.length + units(unicode::firstGraphemes(end, static_cast<std::size_t>(characters)));
    else
        location -= units(unicode::lastGraphemes(start, static_cast<std::size_t>(-characters)));
    setSelection({location, 0});
}

void TextField::moveToLineStart() {
    const auto start = before();
    const auto lineFeed = start.rfind('\n');
    setSelection({lineFeed == std::string::npos ? 0 : units(start.substr(0, lineFeed + 1)), 0});
}

void TextField::moveToLineEnd() {
    const auto end = after();
    setSelection({selection_.location + selection_.length + units(end.substr(0, end.find('\n'))), 0});
}

Rect TextField::bounds(TextRange range) const {
    const auto start = substring({0, range.location});
    const auto line = std::ranges::count(start, '\n');
    const auto lineFeed = start.rfind('\n');
    const auto column = units(lineFeed == std::string::npos ? start : start.substr(lineFeed + 1));
    return {frame_.x + static_cast<double>(column) * 8, frame_.y + static_cast<double>(line) * 18,
            static_cast<double>(range.length) * 8, 18};
}

} // namespace glyma::simulated
