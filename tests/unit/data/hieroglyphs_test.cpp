#include "data/unikemet_importer.h"
#include "resource_folder.h"
#include "unicode/properties.h"
#include "unicode/text.h"

#include <gtest/gtest.h>
#include <unicode/regex.h>

#include <algorithm>
#include <random>

namespace glyma {
namespace {

using Words = std::vector<std::string>;

TEST(Hieroglyphs, AreReadFromTheirTwoProperties) {
    const auto descriptions = UniKemetImporter::parse("# U+13000\tkEH_Desc\tcomment\n"
                                                      "U+13000\tkEH_Cat\tA-01-001\n"
                                                      "U+13000\tkEH_Desc\tSeated man\r\n"
                                                      "U+13001\tkEH_Func\tLogogram\t(tab kept)\n"
                                                      "U+13001\tkEH_Desc\tfirst\n"
                                                      "U+13001\tkEH_Desc\tsecond\n"
                                                      "U+13002\tkEH_Desc\n"
                                                      "13003\tkEH_Desc\tno prefix\n"
                                                      "U+13004\tkEH_Desc\t\n"
                                                      "U+13005 kEH_Desc spaces\n");
    EXPECT_EQ(descriptions, (UniKemetImporter::Descriptions{{"13000", {"Seated man", ""}},
                                                            {"13001", {"second", "Logogram\t(tab kept)"}},
                                                            {"13004", {"", ""}}}));
}

TEST(Hieroglyphs, FunctionGivesItsClassThenItsMeanings) {
    const std::vector<std::pair<const char*, Words>> cases = {
        {"", {}},
        {"Logogram/Classifier (man)", {"logogram", "classifier", "man"}},
        {"Logogram/classifier/phono-repeater bull", {"logogram", "classifier", "phono-repeater", "bull"}},
        {"Logogram//Classifier man", {"logogram", "classifier", "man"}},
        {"logogram (man)", {"man", "logogram"}}, // only a capital begins the classification
        {"Classifiers", {"classifier", "s"}},    // cut as a prefix
        {"Phonemogram (A1)", {"phonemogram"}},
        {"Phonemogram (G7A, D52)", {"phonemogram", "g7a", "d52"}}, // not one code alone
        {"Logogram (to go)", {"logogram", "go"}},
        {"Logogram (to judge, to separate)", {"logogram", "judge", "to separate"}},
        {"Logogram (to to go)", {"logogram", "to go"}},
        {"Logogram (To go)", {"logogram", "to go"}},
        {"Logogram (to be noble)", {"logogram", "be noble"}}, // a gloss is not split at spaces
        {"Logogram (the, of)", {"logogram"}},
        {"Classifier sailing/rowing, the boat", {"classifier", "sailing", "rowing", "boat"}},
        {"Classifier fore(gloss)ground", {"classifier", "gloss", "foreground"}},
        {"Classifier ()( x)", {"classifier", "x", "()"}},
        {"Classifier (open", {"classifier", "(open"}},
        {"Logogram (a (nested) one)", {"logogram", "a (nested", "one)"}},
    };
    for (const auto& [function, words] : cases)
        EXPECT_EQ(UniKemetImporter::functionKeywords(function), words) << function;
}

TEST(Hieroglyphs, DescriptionGivesItsSpeciesThenItsWords) {
    const std::vector<std::pair<const char*, Words>> cases = {
        {"", {}},
        {"A cobra (Naja haje), facing left (T11).", {"naja", "haje", "cobra", "facing"}},
        {"Beard (naja haje) (Naja Haje) (Naja) (Naja haje x)", {"beard"}},
        {"(Canis the)", {"canis", "the"}}, // species words are not filtered
        {"Half-circle, Š-sign; 45 degrees", {"half", "circle", "š", "sign", "45", "degrees"}},
        {"Two ḥtp\u0331 signs", {"ḥtp\u0331", "signs"}},
    };
    for (const auto& [description, words] : cases)
        EXPECT_EQ(UniKemetImporter::descriptionKeywords(description), words) << description;
}

TEST(Hieroglyphs, KeywordsAreDistinctAndOfTwoCharacters) {
    EXPECT_EQ(UniKemetImporter::keywords({.description = "Seated man with hand to mouth (Homo sapiens)",
                                          .function = "Logogram/Classifier (man)"}),
              (Words{"logogram", "classifier", "man", "homo", "sapiens", "seated", "hand", "mouth"}));
    EXPECT_EQ(UniKemetImporter::keywords({.description = "s ẖ e\u0301 x y ab", .function = ""}),
              (Words{"ab"}));
}

/// The same rules over the regular expressions that the reader matches by hand.
class Reference {
public:
    Words functionKeywords(const std::string& function) {
        Words words;
        auto text = function;
        if (takeClass(text, words, false)) {
            while (text.starts_with('/')) {
                text.erase(0, 1);
                takeClass(text, words, true);
            }
        }
        const auto rest = takeGlosses(text, [&](std::string inner) {
            if (matches(R"(^[A-Z]\d+[A-Z]?$)", inner))
                return;
            if (inner.starts_with("to "))
                inner.erase(0, 3);
            add(words, split("[,/]", inner), stopWords_);
        });
        add(words, split(R"([,/\s\p{White_Space}])", rest), stopWords_);
        return words;
    }
    Words descriptionKeywords(const std::string& description) {
        Words words;
        const auto rest = takeGlosses(description, [&](const std::string& inner) {
            if (matches("^[A-Z][a-z]+ [a-z]+$", inner))
                add(words, split(" ", inner), "^$");
        });
        add(words, split(R"([^\p{L}\p{M}\p{N}])", rest), stopWords_ + "|" + directionWords_);
        return words;
    }

private:
    using Text = icu::UnicodeString;
    const std::string stopWords_ = "^(a|an|the|on|in|of|at|to|with|from|for|by|into|over|under|above|below|"
                                   "between|through|towards|toward|"
                                   "against|upon|and|or|but|nor|its|his|her|their|it|this|that|which|is|are|"
                                   "was|were|be|being|been|one|two|"
                                   "three|four)$";
    const std::string directionWords_ = "^(right|left|front|behind|back|forward|forwards|backward|backwards|"
                                        "inwards|outwards|downwards|upwards|"
                                        "horizontal|horizontally|vertical|vertically|angling|angled)$";

    static std::string utf8(const Text& text) {
        std::string result;
        return text.toUTF8String(result);
    }
    static std::unique_ptr<icu::RegexMatcher> matcher(const std::string& pattern) {
        auto status = U_ZERO_ERROR;
        return std::make_unique<icu::RegexMatcher>(Text::fromUTF8(pattern), 0, status);
    }
    static bool matches(const std::string& pattern, const std::string& text) {
        const auto input = Text::fromUTF8(text);
        return matcher(pattern)->reset(input).find();
    }
    static std::string trim(const std::string& text) {
        const auto input = Text::fromUTF8(text);
        auto status = U_ZERO_ERROR;
        return utf8(matcher(R"(^\p{White_Space}+|\p{White_Space}+$)")->reset(input).replaceAll("", status));
    }
    static Words split(const std::string& separators, const std::string& text) {
        const auto input = Text::fromUTF8(text);
        auto status = U_ZERO_ERROR;
        const auto separated = matcher(separators)->reset(input).replaceAll("\n", status);
        Words words;
        for (std::int32_t start = 0, end = 0; end >= 0 && start <= separated.length(); start = end + 1) {
            end = separated.indexOf(u'\n', start);
            words.push_back(utf8(separated.tempSubStringBetween(start, end < 0 ? separated.length() : end)));
        }
        return words;
    }
    static void add(Words& words, const Words& pieces, const std::string& dropped) {
        for (const auto& piece : pieces) {
            const auto word = unicode::lowercased(trim(piece));
            if (!word.empty() && !matches(dropped, word))
                words.push_back(word);
        }
    }
    static bool takeClass(std::string& text, Words& words, bool ignoringCase) {
        for (const std::string word : {"Classifier", "Logogram", "Phonemogram", "Phono-repeater"}) {
            const auto start = text.substr(0, word.size());
            if (start != word && !(ignoringCase && unicode::lowercased(start) == unicode::lowercased(word)))
                continue;
            words.push_back(unicode::lowercased(word));
            text.erase(0, word.size());
            return true;
        }
        return false;
    }
    template<typename Visit>
    static std::string takeGlosses(const std::string& text, Visit&& visit) {
        const auto input = Text::fromUTF8(text);
        const auto glosses = matcher(R"(\(([^)]+)\))");
        glosses->reset(input);
        auto status = U_ZERO_ERROR;
        while (glosses->find())
            visit(trim(utf8(glosses->group(1, status))));
        glosses->reset();
        return utf8(glosses->replaceAll("", status));
    }
};

TEST(Hieroglyphs, TextsAreMatchedAsTheExpressionsWould) {
    Reference reference;
    const auto expectSame = [&](const std::string& text) {
        EXPECT_EQ(UniKemetImporter::functionKeywords(text), reference.functionKeywords(text)) << text;
        EXPECT_EQ(UniKemetImporter::descriptionKeywords(text), reference.descriptionKeywords(text)) << text;
    };
    const std::vector<std::string> pieces = {
        "(",        "(",          ")",  ")",      " ",      " ",      "/",         ",",   "to ",
        "A",        "b",          "cd", "1",      "٣",      "G7A",    "Naja haje", "the", "left",
        "Logogram", "classifier", "é",  "\u00A0", "\u2003", "\u0331", "'",         "😀",   "-"};
    std::mt19937 random(1);
    for (int round = 0; round < 1500; ++round) {
        std::string text = random() % 4 ? "" : "Phonemogram";
        for (auto count = random() % 12; count > 0; --count)
            text += pieces[random() % pieces.size()];
        expectSame(text);
    }
}

TEST(Hieroglyphs, ShippedFileIsReadToTheEnd) {
    test::RecordingLog log;
    const auto descriptions = UniKemetImporter(test::shippedFiles, log.log).load();
    ASSERT_TRUE(descriptions) << descriptions.error();
    EXPECT_EQ(descriptions->size(), 4445u);
    Reference reference;
    int index = 0;
    for (const auto& [codepoint, info] : *descriptions) {
        for (const auto& word : UniKemetImporter::keywords(info)) {
            EXPECT_EQ(word.find(','), word.npos) << codepoint << ": keywords are stored joined with commas";
            EXPECT_GE(unicode::graphemeCount(word), 2u) << codepoint;
        }
        if (++index % 20 != 0)
            continue;
        EXPECT_EQ(UniKemetImporter::functionKeywords(info.function),
                  reference.functionKeywords(info.function));
        EXPECT_EQ(UniKemetImporter::descriptionKeywords(info.description),
                  reference.descriptionKeywords(info.description));
    }
}

} // namespace
} // namespace glyma
