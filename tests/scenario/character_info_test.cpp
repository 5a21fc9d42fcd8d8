#include "charinfo/character_info_presenter.h"
#include "road.h"

namespace glyma::scenario {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RecordingInfoWindow : public CharacterInfoWindow {
public:
    void show(const std::vector<CharacterInfo>& infos, const Rect& place) override {
        names.clear();
        for (const auto& info : infos)
            names.push_back(info.name);
        frame = place;
        isShown = true;
    }
    void hide() override {
        isShown = false;
        keyboard = false;
    }
    bool hasKeyboard() const override { return keyboard; }
    void takeKeyboard() override { keyboard = true; }

    std::vector<std::string> names;
    Rect frame;
    bool isShown = false;
    bool keyboard = false;
};

struct SelectedElsewhere : LastSelection {
    std::optional<std::string> inFrontApplication() override { return isInFront ? anywhere() : std::nullopt; }
    std::optional<std::string> anywhere() override { return text; }
    std::string text = "€";
    bool isInFront = false;
};

class CharacterInfoRoad : public Road {
protected:
    static constexpr std::uint16_t key = 34;
    static constexpr auto chord = modifier::command | modifier::shift;

    void SetUp() override {
        Road::SetUp();
        preferences.setCharacterInfoShortcut(GlobalShortcut{key, chord, "⇧⌘I"});
        showCharacterInfo = [this] { presenter.showCharacterInfoForSelection(); };
        closeCharacterInfo = [this] { presenter.closeCharacterInfo(); };
        editor = &open(simulated::wellBehaved());
    }
    simulated::Application& open(const simulated::Manner& manner) {
        auto& application = desktop.open("org.example.Editor", manner);
        application.setText("a €😀→");
        return application;
    }
    void ask() {
        desktop.press(key, chord);
        settle();
    }

    RecordingInfoWindow panel;
    SelectedElsewhere lastSelection;
    CharacterInfos infos{folder / "Glyma.store", resources};
    CharacterInfoPresenter presenter{
        {infos, text, lastSelection, desktop.screens, desktop.bell, flags, panel, desktop.mouse}};
    simulated::Application* editor = nullptr;
};

TEST_F(CharacterInfoRoad, ShowsWhatIsSelectedAndKeepsItsKeys) {
    editor->setSelection({2, 4});
    ask();
    EXPECT_THAT(panel.names, ElementsAre("EURO SIGN", "grinning face", "RIGHTWARDS ARROW"));
    EXPECT_EQ(panel.frame, (Rect{970, 512, 620, 560}));
    desktop.press(keycode::escape);
    settle();
    EXPECT_FALSE(panel.isShown);
    EXPECT_FALSE(flags.isCharacterInfoShowing);
    EXPECT_THAT(editor->received(), IsEmpty());
    EXPECT_FALSE(desktop.mouse.isWatched());
    desktop.press(keycode::escape);
    EXPECT_EQ(editor->received().size(), 1U);
}

TEST_F(CharacterInfoRoad, RingsWhereNothingIsSelectedAnyMore) {
    lastSelection.isInFront = true;
    ask();
    EXPECT_FALSE(panel.isShown);
    EXPECT_EQ(desktop.bell.count, 1);
    EXPECT_FALSE(flags.isCharacterInfoShowing);
}

TEST_F(CharacterInfoRoad, AsksTheLastSelectionOnlyOfTheApplicationInFront) {
    open(simulated::silent());
    ask();
    EXPECT_FALSE(panel.isShown);
    lastSelection.isInFront = true;
    ask();
    EXPECT_THAT(panel.names, ElementsAre("EURO SIGN"));
}

TEST_F(CharacterInfoRoad, DoesNotOpenWhileTheShortcutIsRecorded) {
    editor->setSelection({2, 1});
    flags.isRecordingShortcut = true;
    ask();
    EXPECT_FALSE(panel.isShown);
    flags.isRecordingShortcut = false;
    ask();
    EXPECT_TRUE(panel.isShown);
}

TEST_F(CharacterInfoRoad, AskedAgainLetsTheKeyboardInOrShowsTheNewSelection) {
    editor->setSelection({2, 1});
    ask();
    editor->setSelection({3, 2});
    ask();
    EXPECT_THAT(panel.names, ElementsAre("grinning face"));
    EXPECT_FALSE(panel.keyboard);
    ask();
    EXPECT_TRUE(panel.keyboard);
    ask();
    EXPECT_TRUE(panel.isShown);
    EXPECT_EQ(desktop.bell.count, 0);
}

TEST_F(CharacterInfoRoad, ClosesByAPressElsewhereOfAnyButtonAndNotByItsRelease) {
    for (const auto event : {MouseEvent::leftDown, MouseEvent::otherDown}) {
        presenter.showCharacterInfo("€");
        for (const auto harmless : {MouseEvent::leftUp, MouseEvent::leftDragged})
            desktop.mouse.deliver(harmless);
        settle();
        EXPECT_TRUE(panel.isShown);
        desktop.mouse.deliver(event);
        settle();
        EXPECT_FALSE(panel.isShown);
        EXPECT_FALSE(desktop.mouse.isWatched());
    }
}

} // namespace
} // namespace glyma::scenario
