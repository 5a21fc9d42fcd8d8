#pragma once

#include "catalogue/unicode_data_manager.h"
#include "monitor/picker_port.h"
#include "monitor/shared_flags.h"
#include "platform/accessibility.h"
#include "platform/front_application.h"
#include "platform/keyboard_tap.h"
#include "platform/mouse_monitor.h"
#include "platform/scheduler.h"
#include "platform/screens.h"
#include "preferences/log.h"
#include "preferences/user_preferences.h"
#include "text/text_inserter.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace glyma {

struct MonitorServices {
    KeyboardTap& tap;
    MouseMonitor& mouse;
    Scheduler& scheduler;
    TaskRunner& tasks;
    Accessibility& accessibility;
    FrontApplicationTracker& frontApplications;
    Screens& screens;
    TextInserter& text;
    UnicodeDataManager& catalogue;
    PickerModel& picker;
    PickerWindow& window;
    const UserPreferences& preferences;
    SharedFlags& flags;
    Log& log;
    /// Identifier of the program itself, as FrontApplication::identifier would give it.
    std::string ownIdentifier;
    std::function<void()> showCharacterInfoForSelection;
    std::function<void()> closeCharacterInfo;
};

/// The spine of the program: sees every key, recognises the trigger and the query after it, opens the picker
/// at the caret, keeps its query in step with the typing or with the target's text, forwards the navigation
/// keys and acts on the choice.
///
/// Threads: the tap thread runs the callback and hands everything else to the main thread. The values that
/// both need are in MonitorState, behind one lock held for one short step at a time; every change of them
/// that alters which keys would be consumed announces the new claims to the tap in the same step, so claim()
/// must not wait for the callback.
class KeyboardMonitor {
public:
    explicit KeyboardMonitor(MonitorServices services);
    ~KeyboardMonitor();
    KeyboardMonitor(const KeyboardMonitor&) = delete;
    KeyboardMonitor& operator=(const KeyboardMonitor&) = delete;

    /// Installs the tap. The error says why it could not be and what to do.
    std::expected<void, std::string> start();
    void stop();

    /// Another element may have the focus now. Main thread.
    void focusMoved();

    bool isPanelVisible() const;
    bool isPendingTrigger() const;

private:
    struct Implementation;
    std::shared_ptr<Implementation> implementation_;
};

} // namespace glyma
