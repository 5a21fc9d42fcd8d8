#pragma once

#include "catalogue/unicode_data_manager.h"
#include "monitor/keyboard_monitor.h"
#include "picker/emoji_picker_view_model.h"
#include "picker/placement.h"
#include "platform/simulated/desktop.h"
#include "text/text_inserter.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace glyma::scenario {

using namespace std::chrono_literals;

/// A window that is not drawn: remembers where it was put.
class RecordingWindow : public PickerWindow {
public:
    RecordingWindow(EmojiPickerViewModel& model, simulated::Desktop& desktop)
        : model_(model)
        , desktop_(desktop) {}

    void placeAtCaret(const Rect& caret) override;
    void orderFront() override { isShown = true; }
    void showCaretOverlay(const Rect&) override {}
    Rect frame() const override { return frame_; }
    void setFrameOrigin(Point origin) override;
    void hide() override;

    bool isShown = false;
    std::vector<Rect> carets;

private:
    EmojiPickerViewModel& model_;
    simulated::Desktop& desktop_;
    Rect frame_;
};

/// The whole program but for its windows, on a desktop in memory. Its catalogue has a dozen characters unless
/// the real one is asked for, which is imported when catalogue.start() is called. A test fails when a key was
/// consumed that had not been claimed, or the other way round.
class Road : public testing::Test {
protected:
    enum class Characters { few, all };
    explicit Road(Characters characters = Characters::few);
    ~Road() override;
    void SetUp() override;
    void TearDown() override;

    /// Lets everything that was begun come to its end: insertion, paste, clipboard given back.
    void settle() { desktop.advance(2s); }
    /// Types the query and chooses the highlighted entry.
    void choose(const std::string& triggerAndQuery);
    /// What the picker shows: characters, and "special:" names.
    std::vector<std::string> shown() const;
    void exclude(const std::string& identifier);

    std::filesystem::path folder;
    simulated::Desktop desktop;
    DebugConfig debug{desktop.settings};
    Log log{desktop.log, debug};
    UserPreferences preferences{desktop.settings, desktop.loginItem, desktop.installedApplications, log};
    ResourceLocator resources;
    UnicodeDataManager catalogue;
    TextInserter text;
    EmojiPickerViewModel picker{catalogue};
    RecordingWindow window{picker, desktop};
    SharedFlags flags;
    /// What the monitor asks of the character information.
    std::function<void()> showCharacterInfo = [] {};
    std::function<void()> closeCharacterInfo = [] {};
    KeyboardMonitor monitor;
};

} // namespace glyma::scenario
