#include "data/unikemet_importer.h"

#include "data/resource_text.h"
#include "data/scan.h"
#include "unicode/ascii.h"
#include "unicode/text.h"

#include <algorithm>
#include <array>

namespace glyma {
namespace {

using namespace std::string_view_literals;
using Words = std::vector<std::string>;

constexpr std::array classificationWords = {"Classifier"sv, "Logogram"sv, "Phonemogram"sv,
                                            "Phono-repeater"sv};

constexpr std::array stopWords = {
    "a"sv,     "above"sv, "against"sv, "an"sv,      "and"sv,   "are"sv,    "at"sv,      "be"sv,
    "been"sv,  "being"sv, "below"sv,   "between"sv, "but"sv,   "by"sv,     "for"sv,     "four"sv,
    "from"sv,  "her"sv,   "his"sv,     "in"sv,      "into"sv,  "is"sv,     "it"sv,      "its"sv,
    "nor"sv,   "of"sv,    "on"sv,      "one"sv,     "or"sv,    "over"sv,   "that"sv,    "the"sv,
    "their"sv, "this"sv,  "three"sv,   "through"sv, "to"sv,    "toward"sv, "towards"sv, "two"sv,
    "under"sv, "upon"sv,  "was"sv,     "were"sv,    "which"sv, "with"sv,
};

constexpr std::array directionWords = {
    "angled"sv,   "angling"sv,  "back"sv,    "backward"sv,   "backwards"sv,    "behind"sv,  "downwards"sv,
    "forward"sv,  "forwards"sv, "front"sv,   "horizontal"sv, "horizontally"sv, "inwards"sv, "left"sv,
    "outwards"sv, "right"sv,    "upwards"sv, "vertical"sv,   "vertically"sv,
};

// Looked up by binary search.
static_assert(std::ranges::is_sorted(stopWords));
static_assert(std::ranges::is_sorted(directionWords));

bool isStopWord(std::string_view word) {
    return std::ranges::binary_search(stopWords, word);
}

bool isDirectionWord(std::string_view word) {
    return std::ranges::binary_search(directionWords, word);
}

/// Calls `visit` with the trimmed content of each gloss, which is what \(([^)]+)\) matches, and returns the
/// text without the glosses.
template<typename Visit>
std::string takeGlosses(std::string_view text, Visit&& visit) {
    std::string rest;
    std::size_t copied = 0;
    for (auto open = text.find('('); open != text.npos; open = text.find('(', open)) {
        const auto close = text.find(')', open);
        if (close == text.npos)
            break;
        ++open;
        if (close == open) // "()" is no gloss
            continue;
        visit(scan::trimmed(text.substr(open, close - open)));
        rest += text.substr(copied, open - 1 - copied);
        copied = open = close + 1;
    }
    rest += text.substr(copied);
    return rest;
}

/// A sign code such as "A1" or "G7A": ^[A-Z]\d+[A-Z]?$
bool isSignCode(std::string_view text) {
    if (text.size() < 2 || !unicode::isAsciiUpper(text.front()))
        return false;
    text.remove_prefix(1);
    if (unicode::isAsciiUpper(text.back()))
        text.remove_suffix(1);
    return !text.empty() && std::ranges::all_of(unicode::scalars(text), unicode::isDecimalDigit);
}

/// A species name such as "Homo sapiens": ^[A-Z][a-z]+ [a-z]+$
bool isBinomial(std::string_view text) {
    if (text.empty() || !unicode::isAsciiUpper(text.front()))
        return false;
    text.remove_prefix(1);
    const auto genus = scan::takeField(text, ' ');
    const auto isLowerWord = [](std::string_view word) {
        return !word.empty() && std::ranges::all_of(word, unicode::isAsciiLower);
    };
    return isLowerWord(genus) && isLowerWord(text);
}

bool startsWithIgnoringCase(std::string_view text, std::string_view word) {
    return text.size() >= word.size() && std::ranges::equal(text.substr(0, word.size()), word, {},
                                                            unicode::asciiLower, unicode::asciiLower);
}

/// Cuts the classification words off the text: "Logogram/Classifier man" leaves "man".
std::string_view takeClassification(std::string_view text, Words& words) {
    const auto take = [&](auto&& isPrefix) {
        const auto found = std::ranges::find_if(classificationWords, isPrefix);
        if (found == classificationWords.end())
            return false;
        words.push_back(unicode::lowercased(*found));
        text.remove_prefix(found->size());
        return true;
    };
    if (!take([&](std::string_view word) { return text.starts_with(word); }))
        return text;
    while (text.starts_with('/')) {
        text.remove_prefix(1);
        take([&](std::string_view word) { return startsWithIgnoringCase(text, word); });
    }
    return scan::trimmed(text);
}

void appendUnlessStopWord(Words& words, std::string_view text) {
    auto word = unicode::lowercased(scan::trimmed(text));
    if (!word.empty() && !isStopWord(word))
        words.push_back(std::move(word));
}

void appendFunctionGloss(Words& words, std::string_view gloss) {
    if (isSignCode(gloss))
        return;
    if (gloss.starts_with("to ")) // verbs are found without it
        gloss.remove_prefix(3);
    scan::forEachPiece(gloss, ",/", [&](std::string_view piece) { appendUnlessStopWord(words, piece); });
}

bool separatesFunctionWords(char32_t scalar) {
    return scalar == U',' || scalar == U'/' || unicode::isWhiteSpace(scalar);
}

} // namespace

Words UniKemetImporter::functionKeywords(std::string_view function) {
    Words words;
    const auto meaning = takeClassification(function, words);
    const auto rest =
        takeGlosses(meaning, [&](std::string_view gloss) { appendFunctionGloss(words, gloss); });
    scan::forEachRun(rest, std::not_fn(separatesFunctionWords),
                     [&](std::string_view piece) { appendUnlessStopWord(words, piece); });
    return words;
}

Words UniKemetImporter::descriptionKeywords(std::string_view description) {
    Words words;
    const auto rest = takeGlosses(description, [&](std::string_view gloss) {
        if (isBinomial(gloss))
            scan::forEachPiece(gloss, " ", [&](auto part) { words.push_back(unicode::lowercased(part)); });
    });
    scan::forEachRun(rest, unicode::isWordScalar, [&](std::string_view piece) {
        auto word = unicode::lowercased(piece);
        if (!isStopWord(word) && !isDirectionWord(word))
            words.push_back(std::move(word));
    });
    return words;
}

Words UniKemetImporter::keywords(const HieroglyphInfo& info) {
    Words result;
    const auto keep = [&](Words words) {
        for (auto& word : words) {
            if (unicode::graphemeCount(word) >= 2 && std::ranges::find(result, word) == result.end())
                result.push_back(std::move(word));
        }
    };
    keep(functionKeywords(info.function));
    keep(descriptionKeywords(info.description));
    return result;
}

UniKemetImporter::Descriptions UniKemetImporter::parse(std::string_view text) {
    Descriptions descriptions;
    scan::forEachLine(text, [&](std::string_view line) {
        if (!line.starts_with("U+") || std::ranges::count(line, '\t') < 2)
            return;
        const auto codepoint = scan::takeField(line, '\t').substr(2);
        const auto property = scan::takeField(line, '\t');
        if (property == "kEH_Desc")
            descriptions[std::string(codepoint)].description = line;
        else if (property == "kEH_Func")
            descriptions[std::string(codepoint)].function = line;
    });
    return descriptions;
}

std::expected<UniKemetImporter::Descriptions, std::string> UniKemetImporter::load() const {
    const auto file = readResource(resources_, "Unikemet", "txt");
    if (!file)
        return std::unexpected(file.error());
    auto descriptions = parse(file->text);
    log_.debug("Glyma: parsed {} hieroglyph descriptions from Unikemet.txt", descriptions.size());
    return descriptions;
}

} // namespace glyma
