#pragma once

#include "monitor/choice_reading.h"
#include "monitor/keyboard_monitor.h"
#include "monitor/monitor_state.h"
#include "monitor/query_poll.h"
#include "monitor/target_reader.h"
#include "monitor/target_window.h"
#include "text/delayed_jobs.h"

#include <vector>

namespace glyma {

/// The monitor's parts: what the tap thread does and the picker's opening and closing (keyboard_monitor.cpp),
/// the query while the picker is open (monitor_query.cpp), the choice (monitor_choice.cpp).
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
    void permit(TriggerNumber trigger, const FrontApplication& front);
    void showPanel(Showing showing, const TypedText& typed);
    void fillPicker(Showing showing);
    void setTyped(const TypedText& typed);
    void setQuery(const TypedText& typed);
    void searchQueryBuffer();
    void handleTypedCharacter(bool isAutorepeat, const std::string& text, const TypedText& typed);
    void handleBackspace(const TypedText& typed);
    void poll(Showing showing, const TypedText& typed);
    void queryRead();
    void followKeysInstead(Showing showing);
    void hearMouse(MouseEvent event);
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
    std::string queryBuffer;
    std::ptrdiff_t keystrokeCount = 0;
    /// While the query is followed in the target's text.
    std::optional<QueryPoll> queryPoll;
    TargetReader reader;
    TargetWindow targetWindow;
    DelayedJobs delayed;
    std::vector<std::unique_ptr<ChoiceReading>> choices;
    Subscription globalMouseMonitor;
    std::shared_ptr<TypingHold> choiceHold; ///< of the key that is choosing now
    Subscription activation;
    Subscription preferencesChanged;
    Subscription flagsChanged;
};

} // namespace glyma
