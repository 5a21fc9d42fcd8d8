#include "road.h"

#include "data/records.h"
#include "data/store.h"

#include <algorithm>
#include <cstdlib>

namespace glyma::scenario {

namespace {

std::filesystem::path temporaryFolder() {
    auto name = (std::filesystem::temp_directory_path() / "glyma-road-XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw std::runtime_error("no temporary folder");
    return name;
}

std::vector<UnicodeChar> fewCharacters() {
    constexpr auto* faces = "Emoticons";
    return {
        makeUnicodeChar("😄", "grinning face with smiling eyes", {"smile", "happy", "grin"}, faces),
        makeUnicodeChar("😀", "grinning face", {"grin", "happy"}, faces),
        makeUnicodeChar("😢", "crying face", {"sad", "tear"}, faces),
        makeUnicodeChar("😂", "face with tears of joy", {"joy", "laugh"}, faces),
        makeUnicodeChar("❤️", "red heart", {"heart", "love"}, "Dingbats"),
        makeUnicodeChar("☀️", "sun", {"sunny", "bright"}, "Miscellaneous Symbols"),
        makeUnicodeChar("👋", "waving hand", {"wave", "hello"}, faces),
        makeUnicodeChar("👩‍🚒", "woman firefighter", {"fire", "truck"}, faces),
        makeUnicodeChar("👨‍👩‍👧‍👦", "family: man, woman, girl, boy", {"family"}, faces),
        makeUnicodeChar("€", "EURO SIGN", {"money", "währung"}, "Currency Symbols"),
        makeUnicodeChar("→", "RIGHTWARDS ARROW", {"arrow"}, "Arrows"),
        makeUnicodeChar("Ж", "CYRILLIC CAPITAL LETTER ZHE", {"жук"}, "Cyrillic"),
    };
}

Store emptyStore(const std::filesystem::path& folder) {
    auto store = Store::open(folder / "Glyma.store");
    if (!store)
        throw std::runtime_error(store.error());
    return *std::move(store);
}

Store filledStore(const std::filesystem::path& folder) {
    auto store = emptyStore(folder);
    const auto rows = fewCharacters();
    std::vector<UnicodeBlock> blocks;
    for (const auto& row : rows)
        if (std::ranges::find(blocks, row.unicodeBlock, &UnicodeBlock::name) == blocks.end())
            blocks.push_back({row.unicodeBlock, 0, 0, 1, "", true});
    if (const auto done = store.insertBlocks(blocks); !done)
        throw std::runtime_error(done.error());
    if (const auto done = store.insertCharacters(rows); !done)
        throw std::runtime_error(done.error());
    return store;
}

} // namespace

void RecordingWindow::placeAtCaret(const Rect& caret) {
    carets.push_back(caret);
    frame_ = pickerFrame(caret, model_.itemCount(), 7, false, desktop_.screens.screens);
}

void RecordingWindow::setFrameOrigin(Point origin) {
    frame_.x = origin.x;
    frame_.y = origin.y;
}

void RecordingWindow::hide() {
    isShown = false;
    model_.setOnSelection(nullptr);
    model_.setOnDismiss(nullptr);
    model_.reset();
}

Road::Road(Characters characters)
    : folder(temporaryFolder())
    , resources(characters == Characters::all ? std::filesystem::path(GLYMA_SOURCE_DIR) / "resources"
                                              : folder)
    , catalogue({desktop.clock, desktop.clock, desktop.clock, desktop.settings, preferences, log, resources,
                 desktop.fonts},
                characters == Characters::all ? emptyStore(folder) : filledStore(folder))
    , text({desktop.clock, desktop.accessibility, desktop.clipboard, desktop, desktop, desktop.screens,
            desktop.bell, preferences, log, &desktop.primarySelection})
    , monitor({desktop.tap, desktop.mouse, desktop.clock, desktop.clock, desktop.accessibility, desktop,
               desktop.screens, text, catalogue, picker, window, preferences, flags, log, "glyma",
               [this] { showCharacterInfo(); }, [this] { closeCharacterInfo(); }}) {
    if (characters == Characters::few)
        catalogue.start();
}

Road::~Road() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

void Road::SetUp() {
    ASSERT_TRUE(monitor.start());
    preferences.setExcludedApps({});
    desktop.clipboard.set(
        {{simulated::SimulatedClipboard::textType, "copied before"}, {"image/png", "pixels"}});
    desktop.primarySelection.setText("selected before");
}

void Road::TearDown() {
    EXPECT_THAT(desktop.faults(), testing::IsEmpty());
}

void Road::choose(const std::string& triggerAndQuery) {
    desktop.type(triggerAndQuery);
    desktop.press(keycode::returnKey);
    settle();
}

std::vector<std::string> Road::shown() const {
    std::vector<std::string> characters;
    for (const auto& item : picker.items())
        if (const auto entry = std::get_if<EmojiEntry>(&item))
            characters.push_back(entry->character);
        else
            characters.push_back("special:" + std::get<SpecialEntry>(item).id);
    return characters;
}

void Road::exclude(const std::string& identifier) {
    preferences.setExcludedApps({{identifier, identifier, true}});
}

} // namespace glyma::scenario
