#pragma once

#include "monitor/choice_reading.h"
#include "monitor/keyboard_monitor.h"
#include "monitor/monitor_state.h"
#include "monitor/query_poll.h"
#include "monitor/target_reader.h"
#include "monitor/target_window.h"
#include "text/delayed_jobs.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace glyma {

/// The monitor's parts: what the tap thread does and the picker's opening and closing (keyboard_monitor.cpp),
/// where it may open at all (monitor_permission.cpp), the query while it is open (monitor_query.cpp), the
/// choice (monitor_choice.cpp).
struct KeyboardMonitor::Implementation : std::enable_shared_from_this<KeyboardMonitor::Implementation>,
                                         MonitorServices {
    explicit Implementation(MonitorServices services)
        : MonitorServices(std::move(services))
        , state(tap, ownIdentifier)
        , reader(tasks, scheduler)
        , targetWindow(accessibility, reader, window)
        , delayed(scheduler) {}

    // Tap thread
    Verdict hear(const KeyEvent& event);
    void hearModifiers(const KeyEvent& event);
    void perform(const Heard& heard, const KeyEvent& event);
    void rememberSource(TriggerNumber trigger);
    void logFirstCharacter(const KeyEvent& event, bool isVisible);

    // Any thread
    void post(std::function<void(Implementation&)> action);
    void postFor(Showing showing, std::function<void(Implementation&)> action);

    // Main thread
    struct TriggerQuestion {
        TriggerNumber trigger = 0;
        FrontApplication front; ///< where it was typed
        int attempts = 0;
    };
    bool hasLeft(const FrontApplication& front) const;
    void permit(TriggerQuestion question, std::optional<bool> isExcluded);
    void askAgain(TriggerQuestion question);
    void refuse(TriggerNumber trigger, bool hasLeft);
    void run(std::function<void(Implementation&)> action);
    void runWhatWaits();
    void focusMoved();
    void closeOutsidePages(Showing showing, bool isSecondLook);
    void showPanel(Showing showing, TriggerNumber trigger, const TypedText& typed);
    void showAt(const Rect& caret);
    void fillPicker(Showing showing);
    void setTyped(const TypedText& typed);
    void setQuery(const TypedText& typed);
    void searchQueryBuffer();
    void handleTypedCharacter(bool isAutorepeat, const std::string& text, const TypedText& typed);
    void handleBackspace(const TypedText& typed);
    void poll(Showing showing, const TypedText& typed);
    void pollWhenFound(Showing showing, std::size_t attempt);
    void queryRead();
    void followKeysInstead(Showing showing);
    void hearMouse(MouseEvent event);
    void keepFollowing();
    void followOnceMore();
    void recheckAfterClick();
    void judgeClick(const QueryReading& reading, std::uint64_t keysHeard);
    void chooseOrDismiss(std::shared_ptr<TypingHold> hold);
    void dismissPanel();
    void close(Showing showing);
    void didSelect(const PickerItem& item);
    void insertWhenRead(const std::string& inserted, const PolledQuery& chosen,
                        std::shared_ptr<TypingHold> hold);
    std::string textFor(const PickerItem& item, const std::string& query, bool isAltHeld);
    void appSwitch(const FrontApplication& application);
    void readSettings();

    MonitorState state;

    // Main thread
    bool isStarted = false;
    Showing shown = 0;             ///< 0: none
    Showing cancelled = 0;         ///< this one and those before it are not to be shown any more
    bool isTriggerRefused = false; ///< the last one typed may not open the picker
    /// It is not known yet whether it may; what the tap hands over meanwhile waits.
    bool isWaitingForAnswer = false;
    std::vector<std::function<void(Implementation&)>> waiting;
    TypedText typedKeys; ///< as far as they have been handed over
    std::string queryBuffer;
    std::ptrdiff_t keystrokeCount = 0;
    /// While the query is followed in the target's text.
    std::optional<QueryPoll> queryPoll;
    TargetReader reader;
    TargetWindow targetWindow;
    DelayedJobs delayed;
    int followsLeft = 0; ///< looks at a window that may still move
    std::vector<std::unique_ptr<ChoiceReading>> choices;
    Subscription globalMouseMonitor;
    std::shared_ptr<TypingHold> choiceHold; ///< of the key that is choosing now
    Subscription activation;
    Subscription preferencesChanged;
    Subscription flagsChanged;
};

} // namespace glyma
