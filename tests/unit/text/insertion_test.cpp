#include "text/insertion_plan.h"
#include "text_test.h"

namespace glyma {
namespace {

using simulated::Manner;
using simulated::Response;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class InsertionTest : public TextTest {
protected:
    void insert(const std::string& text, std::ptrdiff_t deleteCount,
                const std::optional<std::string>& expected) {
        inserter->insert(text, deleteCount, expected);
        desktop.advance(2s);
    }
};

TEST_F(InsertionTest, LeavesTheRightTextWhateverTheApplicationDoes) {
    struct Case {
        std::string name;
        Manner manner;
        bool usesKeys;
    };
    const std::vector<Case> cases = {
        {"well behaved", {}, false},
        {"tells nothing", simulated::silent(), true},
        {"has no selected text",
         mannerWith([](simulated::Manner& m) { m.setSelectedText = Response::lacks; }), false},
        {"neither selected text nor value can be set", mannerWith([](simulated::Manner& m) {
             m.setSelectedText = Response::lacks;
             m.setValue = Response::lacks;
         }),
         true},
        {"refuses the value", mannerWith([](simulated::Manner& m) {
             m.setSelectedText = Response::lacks;
             m.setValue = Response::refuses;
         }),
         true},
        {"does not tell its selected text",
         mannerWith([](simulated::Manner& m) { m.reportsSelectedText = false; }), false},
        {"ignores the new text", simulated::ignoresReplacement(), true},
        {"refuses the new text",
         mannerWith([](simulated::Manner& m) { m.setSelectedText = Response::refuses; }), true},
        {"selects what was inserted",
         mannerWith([](simulated::Manner& m) { m.setSelectedText = Response::replaces; }), false},
        {"selects late", mannerWith([](simulated::Manner& m) { m.selectionLag = 50ms; }), false},
        {"refuses the selection and the text", mannerWith([](simulated::Manner& m) {
             m.setSelection = Response::refuses;
             m.setSelectedText = Response::refuses;
         }),
         true},
        {"slow", simulated::slow(100ms), false},
        {"too slow", simulated::slow(200ms), true},
    };
    for (const auto& [name, manner, usesKeys] : cases) {
        SCOPED_TRACE(name);
        desktop.clipboard.setText("the user's");
        auto& editor = open("👨‍👩‍👧 x :ab| y😀", manner);
        insert("😄", 3, ":ab");
        EXPECT_EQ(editor.text(), "👨‍👩‍👧 x 😄 y😀");
        EXPECT_EQ(editor.keysInjected().empty(), !usesKeys) << editor.keysInjected();
        EXPECT_EQ(desktop.clipboard.text(), "the user's");
        EXPECT_EQ(desktop.bell.count, 0);
        desktop.close(editor);
    }
}

TEST_F(InsertionTest, PutsTheCaretBehindTheText) {
    for (const auto& manner :
         {Manner{}, simulated::valueOnly(), simulated::silent(), simulated::ignoresReplacement()}) {
        auto& editor = open("a :ab| b", manner);
        insert("😄é", 3, ":ab");
        EXPECT_EQ(editor.textWithCaret(), "a 😄é| b");
        desktop.close(editor);
    }
}

TEST_F(InsertionTest, SurvivesAccessibilityThatFailsFromAnyCallOn) {
    for (std::size_t call = 1; call <= 14; ++call) {
        SCOPED_TRACE(call);
        auto& editor = open("a :ab| b");
        desktop.accessibility.failFromCall(call);
        insert("😄", 3, ":ab");
        desktop.accessibility.stopFailing();
        EXPECT_EQ(editor.text(), "a 😄 b");
        desktop.close(editor);
    }
}

TEST_F(InsertionTest, InsertsWithoutDeletingWhereOnlySelectingFails) {
    auto& editor =
        open("a :ab| b", mannerWith([](simulated::Manner& m) { m.setSelection = Response::refuses; }));
    insert("😄", 3, ":ab");
    EXPECT_EQ(editor.text(), "a :ab😄 b");
}

TEST_F(InsertionTest, DeletesNothingWhenNothingWasTyped) {
    auto& editor = open("ab| c");
    insert("😄", 0, std::nullopt);
    EXPECT_EQ(editor.textWithCaret(), "ab😄| c");
    EXPECT_THAT(editor.keysInjected(), IsEmpty());
}

TEST_F(InsertionTest, CountsCharactersOfSeveralUnitsWhenItKnowsThem) {
    for (const auto& [typed, characters] : std::vector<std::pair<std::string, int>>{
             {":😀", 2}, {":e\u0301", 2}, {":👨‍👩‍👧", 2}, {":ab", 3}}) {
        SCOPED_TRACE(typed);
        auto& editor = open("x" + typed + "| y");
        insert("🙂", characters, typed);
        EXPECT_EQ(editor.textWithCaret(), "x🙂| y");
        desktop.close(editor);
    }
}

TEST_F(InsertionTest, UsesTheKeyboardWhenTheCaretStandsTooFarLeft) {
    auto& editor = open(":a| b");
    inserter->insert("x", 3, std::nullopt);
    desktop.advance(50ms + 59ms);
    EXPECT_EQ(editor.keysInjected(), "<BackSpace><BackSpace><BackSpace>");
    desktop.advance(1ms);
    EXPECT_EQ(editor.keysInjected(), "<BackSpace><BackSpace><BackSpace><Control+V>");
    EXPECT_THAT(loggedLines(),
                Contains("insertViaAccessibility: caretLocation (2) < deleteCount (3); delegating to "
                         "clipboard path"));
    EXPECT_THAT(loggedLines(), Contains("insertViaClipboard: scheduling paste after 0.060s"));
}

TEST_F(InsertionTest, DeletesWithTheKeyboardWhatIsNotTheExpectedText) {
    auto& editor = open("a xyz| b");
    accessibility.tellsTextOfRanges = false;
    insert("😄", 3, ":ab");
    EXPECT_EQ(editor.text(), "a 😄 b");
    EXPECT_THAT(loggedLines(),
                Contains("insertViaAX: selection is not the intended text (expected \":xx\")"));
    EXPECT_THAT(loggedLines(), Contains("insertViaAX: selection unusable; collapsing and using clipboard"));
    EXPECT_EQ(desktop.bell.count, 0);
}

TEST_F(InsertionTest, WaitsForTypedTextThatIsStillArriving) {
    auto& editor = open("👨‍👩‍👧 [|] b", simulated::lateKeys(90ms));
    desktop.type(":ab");
    insert("😄", 3, ":ab");
    EXPECT_EQ(editor.text(), "👨‍👩‍👧 [😄] b");
    EXPECT_THAT(editor.keysInjected(), IsEmpty());
}

TEST_F(InsertionTest, NeitherDeletesNorInsertsTwiceWhatAnApplicationDidWithoutSayingSo) {
    // A request to change something is carried out, and its answer is lost.
    for (const auto lost : {attribute::selectedTextRange, attribute::selectedText}) {
        auto& editor = open("👨‍👩‍👧 [:ab|] b");
        auto& behind = desktop.accessibility;
        const auto element = std::get<ElementReference>(
            *behind.attributeValue(behind.systemWide(), attribute::focusedElement));
        int answersLost = 0;
        accessibility.onSet =
            [&, lost](std::string_view name,
                      const AttributeValue& value) -> std::optional<Accessibility::Result<void>> {
            if (name != lost || answersLost++ > 0)
                return std::nullopt;
            EXPECT_TRUE(behind.setAttributeValue(element, name, value));
            return std::unexpected(AccessibilityError::timedOut);
        };
        inserter->insert("😄", 3, ":ab");
        desktop.advance(5s);
        EXPECT_EQ(editor.text(), "👨‍👩‍👧 [😄] b") << lost;
    }
}

TEST_F(InsertionTest, InsertsThroughTheClipboardWhatAnApplicationNeverDid) {
    auto& editor = open("a :ab| b");
    accessibility.onSet = [](std::string_view,
                             const AttributeValue&) -> std::optional<Accessibility::Result<void>> {
        return std::unexpected(AccessibilityError::timedOut);
    };
    inserter->insert("😄", 3, ":ab");
    desktop.advance(5s);
    EXPECT_EQ(editor.text(), "a 😄 b");
}

TEST_F(InsertionTest, NeverSelectsInATextThatIsNotTheTypedOne) {
    auto& editor = open("a xyz| b");
    bool hasSelected = false;
    accessibility.onSet = [&](std::string_view name, const AttributeValue&) {
        hasSelected = hasSelected || name == attribute::selectedTextRange;
        return std::optional<Accessibility::Result<void>>();
    };
    insert("😄", 3, ":ab");
    EXPECT_FALSE(hasSelected);
    EXPECT_EQ(editor.keysInjected(), "<BackSpace><BackSpace><BackSpace><Control+V>");
}

TEST_F(InsertionTest, LeavesUnknownTextAloneWhenItStaysSelected) {
    auto& editor = open("a xyz| b");
    accessibility.tellsTextOfRanges = false;
    accessibility.onSet = [](std::string_view name,
                             const AttributeValue& value) -> std::optional<Accessibility::Result<void>> {
        const auto* range = std::get_if<TextRange>(&value);
        if (name == attribute::selectedTextRange && range->length == 0)
            return Accessibility::Result<void>{};
        return std::nullopt;
    };
    insert("😄", 3, ":ab");
    EXPECT_EQ(editor.text(), "a xyz b");
    EXPECT_THAT(editor.keysInjected(), IsEmpty());
    EXPECT_EQ(desktop.bell.count, 1);
    EXPECT_THAT(desktop.clipboard.history(), IsEmpty());
}

TEST_F(InsertionTest, TellsTheSelectionByItsLengthWhenTheTextIsNotKnown) {
    auto& editor = open("a :ab| b");
    insert("😄", 3, std::nullopt);
    EXPECT_EQ(editor.text(), "a 😄 b");
    EXPECT_THAT(editor.keysInjected(), IsEmpty());

    accessibility.onRead = [](const auto&,
                              std::string_view name) -> std::optional<Accessibility::Result<AttributeValue>> {
        if (name == attribute::selectedText)
            return AttributeValue(std::string("much more than three"));
        return std::nullopt;
    };
    auto& other = open("a :ab| b");
    insert("😄", 3, std::nullopt);
    EXPECT_EQ(other.text(), "a 😄 b");
    EXPECT_EQ(other.keysInjected(), "<BackSpace><BackSpace><BackSpace><Control+V>");
}

TEST_F(InsertionTest, LogsNothingThatWasTyped) {
    open("secret :ab| b", simulated::ignoresReplacement());
    insert("hello", 3, ":ab");
    open("secret :ab| b", simulated::silent());
    insert("hello", 3, ":ab");
    for (const auto& line : loggedLines()) {
        EXPECT_THAT(line, Not(HasSubstr("ab\"")));
        EXPECT_THAT(line, Not(HasSubstr("hello")));
        EXPECT_THAT(line, Not(HasSubstr("et :")));
    }
    EXPECT_THAT(loggedLines(), Contains("insert: deleteCharsBefore=3, text=\"xxxxx\" (5 chars, 5 UTF-16)"));
    EXPECT_THAT(loggedLines(), Contains("insertViaAX: post-Set selection = \":xx\" at {7, 3}"));
}

TEST_F(InsertionTest, PastesIntoTerminalsWithTheirOwnChord) {
    desktop.settings.set("pasteChords", {{"org.example.Terminal", "Shift+Insert"}});
    UserPreferences withTerminal(desktop.settings, desktop.loginItem, desktop.installedApplications, log);
    TextInserter terminalInserter({desktop.clock, accessibility, desktop.clipboard, desktop, desktop,
                                   desktop.screens, desktop.bell, withTerminal, log,
                                   &desktop.primarySelection});
    desktop.clipboard.setText("copied");
    desktop.primarySelection.setText("marked");
    auto& terminal = open("$ :ab|", simulated::terminal(), "org.example.Terminal");
    terminalInserter.insert("😄", 3, ":ab");
    desktop.advance(2s);
    EXPECT_EQ(terminal.text(), "$ 😄");
    EXPECT_EQ(desktop.clipboard.text(), "copied");
    EXPECT_EQ(desktop.primarySelection.text(), "marked");

    // Elsewhere the primary selection must not be touched: it is what is selected.
    const auto before = desktop.primarySelection.history().size();
    auto& editor = open("x :ab|", simulated::silent());
    terminalInserter.insert("😄", 3, ":ab");
    desktop.advance(2s);
    EXPECT_EQ(editor.text(), "x 😄");
    EXPECT_EQ(desktop.primarySelection.history().size(), before);
}

class ClipboardTest : public InsertionTest {};

TEST_F(ClipboardTest, StaysWithAnApplicationThatHasNotPastedYet) {
    desktop.clipboard.setText("copied");
    auto& editor = open("x :ab|", mannerWith([](simulated::Manner& m) {
                            m = simulated::silent();
                            m.pasteLag = 1200ms;
                        }));
    insert("😄", 3, ":ab");
    EXPECT_EQ(editor.text(), "x 😄");
    EXPECT_EQ(desktop.clipboard.text(), "copied");
}

TEST_F(ClipboardTest, HoldsTheTextMarkedForHalfASecond) {
    desktop.clipboard.set({{"text/html", "<b>x</b>"}, {"image/png", std::string("\x89PNG\0\r\n", 7)}});
    const auto before = desktop.clipboard.contents();
    open("x :ab|", simulated::silent());
    inserter->insert("😄", 3, ":ab");
    desktop.advance(50ms + 60ms + 499ms);
    EXPECT_EQ(desktop.clipboard.history().back(), (simulated::SimulatedClipboard::Entry{"😄", true}));
    desktop.advance(1ms);
    EXPECT_EQ(desktop.clipboard.contents(), before);
}

TEST_F(ClipboardTest, KeepsTheUsersContentsThroughTwoInsertionsInARow) {
    desktop.clipboard.setText("the user's");
    auto& editor = open("x :ab|", simulated::silent());
    inserter->insert("1", 3, ":ab");
    desktop.advance(250ms);
    inserter->insert("2", 0, "");
    desktop.advance(2s);
    EXPECT_EQ(editor.text(), "x 12");
    EXPECT_EQ(desktop.clipboard.text(), "the user's");

    // The first loan ends while the second insertion still sends its backspaces.
    inserter->insert("3", 0, "");
    desktop.advance(400ms);
    inserter->insert("4", 30, std::nullopt);
    desktop.advance(3s);
    EXPECT_EQ(desktop.clipboard.text(), "the user's");
}

TEST_F(ClipboardTest, LeavesWhatSomebodyElseHasPutThereMeanwhile) {
    desktop.clipboard.setText("old");
    open("x :ab|", simulated::silent());
    inserter->insert("1", 3, ":ab");
    desktop.advance(300ms);
    desktop.clipboard.setText("new");
    desktop.advance(2s);
    EXPECT_EQ(desktop.clipboard.text(), "new");

    inserter->insert("2", 0, "");
    desktop.advance(100ms);
    desktop.clipboard.setText("newer");
    inserter->insert("3", 0, "");
    desktop.advance(2s);
    EXPECT_EQ(desktop.clipboard.text(), "newer");
}

TEST_F(ClipboardTest, IsGivenBackWhenTheProgramEnds) {
    desktop.clipboard.setText("the user's");
    open("x :ab|", simulated::silent());
    for (const auto moment : {20ms, 80ms, 150ms}) {
        inserter->insert("1", 3, ":ab");
        desktop.advance(moment);
        inserter.reset();
        EXPECT_EQ(desktop.clipboard.text(), "the user's");
        desktop.advance(1s);
        makeInserter();
    }
}

TEST(InsertionPlanTest, DistrustsASelectionThatIsTooShort) {
    using insertion::judge;
    using insertion::Selection;
    EXPECT_EQ(judge("", ":ab", 3, 2), Selection::unusable);
    EXPECT_EQ(judge(":ab", ":ab", 3, 2), Selection::unusable);
    EXPECT_EQ(judge("", std::nullopt, 3, 2), Selection::unusable);
    EXPECT_EQ(judge("ab", std::nullopt, 3, 2), Selection::wrong);
    EXPECT_EQ(judge("xyz", ":ab", 3, 3), Selection::mismatched);
    EXPECT_EQ(judge("😀x", std::nullopt, 3, 3), Selection::good);
}

TEST(InsertionPlanTest, ReplacesUnitsInAValue) {
    EXPECT_EQ(insertion::replaced("a😀:xb", {3, 2}, "é"), "a😀éb");
    EXPECT_EQ(insertion::replaced("ab", {2, 0}, "c"), "abc");
    EXPECT_EQ(insertion::replaced("ab", {1, 2}, "c"), std::nullopt);
}

} // namespace
} // namespace glyma
