#include "text_test.h"

#include <fmt/format.h>

namespace glyma {
namespace {

using simulated::Manner;
using testing::Contains;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

class TextBeforeCursorTest : public TextTest {
protected:
    TextBeforeCursorTest() { config.setLogUnredacted(true); }

    /// \param lacking  what the application does not answer.
    std::optional<std::string> read(const std::string& content, std::set<std::string, std::less<>> lacking,
                                    bool answersMarkers = true) {
        open(content, mannerWith([&](Manner& manner) {
                 manner.answersMarkers = answersMarkers;
                 manner.lackingAttributes = std::move(lacking);
             }));
        return inserter->textBeforeCursor();
    }
    void answer(std::string_view name, const Accessibility::Result<AttributeValue>& value) {
        accessibility.onRead = [name = std::string(name), value](const auto&, std::string_view asked) {
            return asked == name ? std::optional(value) : std::nullopt;
        };
    }
    void forgetMarkerFunctions() { desktop.accessibility.markerFunctions = {}; }

    static constexpr auto range = "AXSelectedTextRange";
    static constexpr auto string = "AXStringForRange";
    static constexpr auto index = "AXIndexForTextMarker";
    static constexpr auto line = "AXLeftLineTextMarkerRangeForTextMarker";
    static constexpr auto start = "AXStartTextMarkerForTextMarkerRange";
    static constexpr auto unordered = "AXTextMarkerRangeForUnorderedTextMarkers";
};

TEST_F(TextBeforeCursorTest, EachStrategyStepsInForThoseBeforeIt) {
    const std::string text = "one 😀\ntwo :smi|le";
    struct Case {
        std::set<std::string, std::less<>> lacking;
        std::string_view winner;
        std::string_view expected;
    };
    inserter->setPollTickCount(7);
    for (const auto& [lacking, winner, expected] : {
             Case{{}, "1 (StringForRange) succeeded [tick #7]", "one 😀\ntwo :smi"},
             {{string}, "2 (kAXValue) succeeded [tick #7]", "one 😀\ntwo :smi"},
             {{range}, "3 (MarkerIndex) succeeded [tick #7]", "one 😀\ntwo :smi"},
             {{string, "AXValue"}, "4 (LineMarker) succeeded", "two :smi"},
             {{range, index}, "4 (LineMarker) succeeded", "two :smi"},
             {{range, index, line}, "5 (FullMarkerRange) succeeded", "one 😀\ntwo :smi"},
         }) {
        SCOPED_TRACE(winner);
        EXPECT_EQ(read(text, lacking), expected);
        EXPECT_THAT(loggedLines(), Contains(HasSubstr(fmt::format("Strategy {}: \"", winner))));
    }
    EXPECT_EQ(read(text, {range, index, line, "AXStartTextMarker"}), std::nullopt);
    EXPECT_THAT(loggedLines(), Contains("All strategies failed"));
    EXPECT_EQ(read(text, {range}, false), std::nullopt) << "an application that tells nothing";
}

TEST_F(TextBeforeCursorTest, MarkerRangesAreTakenApartByTheDesktopsFunctionsWhereTheElementDoesNot) {
    const std::string text = "one\ntwo|";
    EXPECT_EQ(read(text, {range, start}), "one\ntwo");
    EXPECT_EQ(read(text, {range, index, start, unordered}), "two");
    EXPECT_THAT(loggedLines(), IsSupersetOf({"Param attr failed, trying AXTextMarkerRangeCopyStartMarker",
                                             "Param attr failed, trying AXTextMarkerRangeCreate"}));
    forgetMarkerFunctions();
    EXPECT_EQ(read(text, {range, start}), std::nullopt);
    EXPECT_EQ(read(text, {range, index, unordered}), std::nullopt);
    EXPECT_THAT(loggedLines(),
                IsSupersetOf({"AXTextMarkerRangeCopyStartMarker not available",
                              "S3: could not extract start marker", "S4: could not extract start marker",
                              "S5: could not extract caret marker", "AXTextMarkerRangeCreate not available",
                              "S4: could not create marker range (lineStart → caret)",
                              "S5: could not create marker range (docStart → caret)"}));
}

TEST_F(TextBeforeCursorTest, OnlyTheFirstStrategiesKeepToAHundredUnits) {
    const auto text = std::string(50, 'a') + std::string(100, 'b') + "|c";
    EXPECT_EQ(read(text, {}), std::string(100, 'b'));
    EXPECT_EQ(read(text, {range}), std::string(100, 'b'));
    EXPECT_EQ(read(text, {string}), std::string(50, 'a') + std::string(100, 'b'));
    // 100 units back is the middle of a pair.
    EXPECT_THAT(read("x😀" + std::string(99, 'b') + "|", {}),
                testing::Optional(HasSubstr(std::string(99, 'b'))));
}

TEST_F(TextBeforeCursorTest, NothingBeforeTheCaretIsATextTooExceptForAMarkersIndex) {
    EXPECT_EQ(read("|abc", {}), "");
    EXPECT_EQ(read("|abc", {range}), "");
    EXPECT_THAT(loggedLines(), IsSupersetOf({"S3: caretIndex invalid or 0 (raw: 0)",
                                             "Strategy 4 (LineMarker) succeeded: \"\""}));
}

TEST_F(TextBeforeCursorTest, EndsWhereTheSelectionBegins) {
    auto& editor = open(":smile|");
    editor.setSelection({4, 2}); // a completion that the application offers
    EXPECT_EQ(inserter->textBeforeCursor(), ":smi");
}

TEST_F(TextBeforeCursorTest, WrongOffsetsAreNotBelieved) {
    open("a:smi|");
    answer(range, TextRange{1000, 0});
    EXPECT_EQ(inserter->textBeforeCursor(), "a:smi") << "the whole value, no range of it";
    answer(range, TextRange{-3, 0});
    EXPECT_EQ(inserter->textBeforeCursor(), std::nullopt);
    answer(range, std::string("5"));
    EXPECT_EQ(inserter->textBeforeCursor(), std::nullopt);
    EXPECT_THAT(loggedLines(),
                IsSupersetOf({"S1: AXValueGetValue cfRange failed", "S2: AXValueGetValue cfRange failed"}));
    answer(range, std::unexpected(AccessibilityError::timedOut));
    EXPECT_EQ(inserter->textBeforeCursor(), std::nullopt);
    EXPECT_THAT(loggedLines(), Contains("S1: kAXSelectedTextRangeAttribute failed (timed out)"));
}

TEST_F(TextBeforeCursorTest, AHungApplicationCostsOneDeadline) {
    auto& editor = open("a:smi|");
    editor.setHung(true);
    const auto before = desktop.clock.elapsed();
    EXPECT_EQ(inserter->textBeforeCursor(), std::nullopt);
    EXPECT_LE(desktop.clock.elapsed() - before, 150ms);
}

TEST_F(TextBeforeCursorTest, TheLogShowsTheEndRedacted) {
    config.setLogUnredacted(false);
    open("secret" + std::string(26, '-') + " A1 |");
    ASSERT_TRUE(inserter->textBeforeCursor());
    EXPECT_THAT(loggedLines(), Contains("Strategy 1 (StringForRange) succeeded [tick #0]: \"" +
                                        std::string(26, '-') + " X0 \""));
    EXPECT_THAT(loggedLines(), Not(Contains(HasSubstr("A1"))));
}

} // namespace
} // namespace glyma
