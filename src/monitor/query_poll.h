#pragma once

#include "monitor/monitor_state.h"
#include "monitor/picker_port.h"
#include "monitor/polled_query.h"
#include "monitor/target_reader.h"
#include "preferences/log.h"
#include "text/text_inserter.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace glyma {

/// Follows the query of one showing of the picker in the target's text, by short bursts of readings after
/// each key that may have changed it; between the bursts nothing runs. Main thread; the readings happen
/// elsewhere. Destroying it ends everything, which any of its callbacks may do.
class QueryPoll {
public:
    struct Services {
        Scheduler& scheduler;
        TextInserter& text;
        TargetReader& reader;
        MonitorState& state;
        PickerModel& picker;
        Log& log;
    };
    struct Callbacks {
        /// query() is another one.
        std::function<void()> changed;
        /// The shared state has been left; the picker is to be closed.
        std::function<void()> left;
        /// The text cannot be relied on; the keys are to be followed instead.
        std::function<void()> mistrusted;
    };

    QueryPoll(Services services, Showing showing, std::string trigger, const TypedText& typed,
              Callbacks callbacks);
    ~QueryPoll();
    QueryPoll(const QueryPoll&) = delete;
    QueryPoll& operator=(const QueryPoll&) = delete;

    const PolledQuery& query() const { return query_; }

    // Each starts a burst, or makes the running one count afresh.
    void typed(std::string_view text);
    void deletedLast();
    void disturbed();

private:
    void keyFollowed(const std::string& queryBefore);
    void startQueryPoll();
    void stopQueryPoll();
    void tick();
    void take(const QueryReading& reading, std::uint64_t keysHeard);
    void countStable(const QueryReading& reading);
    void leave(std::uint64_t keysHeard, bool isPending);

    Services services_;
    const Showing showing_;
    const std::string trigger_;
    PolledQuery query_;
    Callbacks callbacks_;

    Subscription queryPollTimer_;
    int queryPollStableCount_ = 0;
    int queryPollTickCount_ = 0;
    bool queryPollHasSeenChange_ = false;
    bool isReading_ = false;
    std::shared_ptr<int> alive_ = std::make_shared<int>();
};

} // namespace glyma
