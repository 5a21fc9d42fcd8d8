#include "road.h"

namespace glyma::scenario {
namespace {

using simulated::Manner;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Insertion : public Road {
protected:
    void expectClipboardsAsBefore() {
        EXPECT_THAT(desktop.clipboard.contents(),
                    ElementsAre(std::pair(simulated::SimulatedClipboard::textType, "copied before"),
                                std::pair("image/png", "pixels")));
        EXPECT_EQ(desktop.primarySelection.text(), "selected before");
        for (const auto& [content, isMarkedSecret] : desktop.clipboard.history())
            EXPECT_TRUE(isMarkedSecret || content == "copied before") << content;
    }
};

TEST_F(Insertion, ReplacesTheTypedTextInEveryKindOfApplication) {
    struct Case {
        const char* what;
        const char* identifier;
        Manner manner;
    };
    auto hidesSelectedText = simulated::wellBehaved();
    hidesSelectedText.reportsSelectedText = false;
    auto refusesReplacement = simulated::wellBehaved();
    refusesReplacement.setSelectedText = simulated::Response::refuses;
    auto selectsReplacement = simulated::wellBehaved();
    selectsReplacement.setSelectedText = simulated::Response::replaces;
    auto selectsLate = simulated::wellBehaved();
    selectsLate.selectionLag = 30ms;
    const Case cases[] = {
        {"well-behaved", "editor", simulated::wellBehaved()},
        {"tells nothing", "editor", simulated::silent()},
        {"terminal", "org.gnome.Terminal", simulated::terminal()},
        {"terminal of the primary selection", "xterm", simulated::terminal()},
        {"takes the text and does nothing", "editor", simulated::ignoresReplacement()},
        {"has its value set only", "editor", simulated::valueOnly()},
        {"selects late", "editor", selectsLate},
        {"never says what is selected", "editor", hidesSelectedText},
        {"refuses the text", "editor", refusesReplacement},
        {"selects what it was given", "editor", selectsReplacement},
        {"answers slowly", "editor", simulated::slow(60ms)},
        {"answers too slowly", "editor", simulated::slow(400ms)},
        {"acts on keys late", "editor", simulated::lateKeys(12ms)},
    };
    for (const auto& [what, identifier, manner] : cases) {
        SCOPED_TRACE(what);
        auto& application = desktop.open(identifier, manner);
        settle();
        application.setText("a😄 é👩‍🚒 after");
        application.setSelection(
            {static_cast<std::ptrdiff_t>(std::u16string_view(u"a😄 é👩‍🚒").size()), 0});
        choose(":smil");
        EXPECT_EQ(application.text(), "a😄 é👩‍🚒😄 after");
        EXPECT_THAT(application.textWithCaret(), HasSubstr("😄| after"))
            << "the caret, or the end of the selection";
        EXPECT_EQ(application.keysFromUser(), ":smil");
        expectClipboardsAsBefore();
        EXPECT_EQ(desktop.bell.count, 0);
    }
}

// The text layer takes an empty selected text for an application that does not tell what is selected.
TEST_F(Insertion, DeletesTheTypedTextWhereTheSelectionIsOnlyPretended) {
    auto& application = desktop.open("editor", simulated::ignoresSelection());
    settle();
    choose("a:smil");
    EXPECT_EQ(application.text(), "a😄");
    expectClipboardsAsBefore();
}

TEST_F(Insertion, ChoosesWhatIsHighlighted) {
    auto& editor = desktop.open("editor");
    settle();
    desktop.type(":grin");
    ASSERT_GE(shown().size(), 2U);
    const auto second = shown()[1];
    desktop.press(keycode::up);
    desktop.press(keycode::down);
    desktop.press(keycode::keypadEnter);
    settle();
    EXPECT_EQ(editor.text(), second);
    EXPECT_EQ(editor.keysFromUser(), ":grin");
    choose(":grin");
    EXPECT_EQ(editor.text(), second + second) << "what was chosen for a query comes first the next time";
}

TEST_F(Insertion, FormsTheTextOfTheEntry) {
    auto& editor = desktop.open("editor");
    settle();
    const auto chosen = [&](const std::string& typed, std::uint64_t withKeys = 0) {
        editor.setText("");
        desktop.type(typed);
        desktop.press(keycode::returnKey, withKeys);
        settle();
        return editor.text();
    };
    EXPECT_EQ(chosen(":heart"), "❤️");
    EXPECT_EQ(chosen(":heart", modifier::option), "❤") << "text presentation";
    EXPECT_EQ(chosen(":heart"), "❤️") << "Alt is forgotten";
    preferences.setSkinToneModifier("🏽");
    EXPECT_EQ(chosen(":wave"), "👋🏽");
    EXPECT_EQ(chosen(":firefighter"), "👩🏽‍🚒");
    EXPECT_EQ(chosen(":heart"), "❤️");
    preferences.setUserReplacements(
        {{"6F1B6BDE-1F5E-4C5C-8F4B-0D8C0A3A7C11", "Address", {"home"}, "Line 1\nLine 2 👋"}});
    EXPECT_EQ(chosen(":address"), "Line 1\nLine 2 👋🏽");
    const auto random = chosen(":random emoji");
    EXPECT_THAT(random, testing::Not(testing::AnyOf("", ":random emoji", "?")));
    const auto picks = catalogue.randomPickHistory(true);
    ASSERT_EQ(picks.size(), 1U);
    EXPECT_EQ(picks.front().character, random);
}

TEST_F(Insertion, DeletesWhatARepeatedKeyTyped) {
    for (const auto& manner : {simulated::wellBehaved(), simulated::silent()}) {
        auto& application = desktop.open("editor", manner);
        settle();
        application.setText("kept");
        desktop.type(":sm");
        desktop.holdDown(34, 4); // the letter i
        EXPECT_EQ(picker.query(), manner.reportsSelection ? "smiiiii" : "smi");
        EXPECT_EQ(application.text(), "kept:smiiiii");
        if (manner.reportsSelection)
            for (int i = 0; i < 4; ++i)
                desktop.press(keycode::backspace);
        desktop.press(keycode::returnKey);
        settle();
        EXPECT_EQ(application.text(), "kept😄");
    }
}

TEST_F(Insertion, KeepsTheTextWhenTheQueryWasTypedByKeysOfSeveralUnits) {
    for (const auto& manner : {simulated::wellBehaved(), simulated::silent()}) {
        auto& application = desktop.open("editor", manner);
        settle();
        application.setText("a😄");
        preferences.setUserReplacements({{"6F1B6BDE-1F5E-4C5C-8F4B-0D8C0A3A7C11", "Face", {"😄"}, "a face"}});
        desktop.type(":");
        desktop.press(simulated::key::emoji);
        ASSERT_THAT(shown(), Contains("a face"));
        while (shown()[static_cast<std::size_t>(picker.selectedIndex())] != "a face")
            desktop.press(keycode::down);
        desktop.press(keycode::returnKey);
        settle();
        EXPECT_EQ(application.text(), "a😄a face");
    }
}

TEST_F(Insertion, CountsAChoiceEvenIfTheApplicationHangs) {
    auto& editor = desktop.open("editor");
    settle();
    desktop.type(":smil");
    editor.setHung(true);
    desktop.press(keycode::returnKey);
    settle();
    EXPECT_FALSE(window.isShown);
    editor.setHung(false);
    settle();
    EXPECT_EQ(desktop.clipboard.text(), "copied before");
    const auto entries = catalogue.allKeywordedCharacters();
    const auto used = std::ranges::find(entries, "😄", &EmojiEntry::character);
    ASSERT_NE(used, entries.end());
    EXPECT_EQ(used->usageCount, 1);
}

} // namespace
} // namespace glyma::scenario
