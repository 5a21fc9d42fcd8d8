#include "monitor/query_poll.h"

#include "unicode/text.h"

#include <utility>

namespace glyma {

namespace {

constexpr Milliseconds pollInterval{20};
constexpr int tickLimit = 250;
constexpr int stableTicks = 3;

/// It may destroy its owner, and with it the function itself.
void call(std::function<void()> callback) {
    callback();
}

} // namespace

QueryPoll::QueryPoll(Services services, Showing showing, std::string trigger, const TypedText& typed,
                     Callbacks callbacks)
    : services_(services)
    , showing_(showing)
    , trigger_(std::move(trigger))
    , query_(trigger_, typed)
    , callbacks_(std::move(callbacks)) {}

QueryPoll::~QueryPoll() {
    stopQueryPoll();
}

void QueryPoll::typed(std::string_view text) {
    const auto before = query_.query();
    query_.type(text);
    keyFollowed(before);
}

void QueryPoll::deletedLast() {
    const auto before = query_.query();
    query_.deleteLast();
    keyFollowed(before);
}

void QueryPoll::keyFollowed(const std::string& queryBefore) {
    startQueryPoll();
    if (query_.query() != queryBefore)
        callbacks_.changed();
}

void QueryPoll::disturbed() {
    query_.disturb();
    startQueryPoll();
}

void QueryPoll::startQueryPoll() {
    queryPollHasSeenChange_ = false;
    queryPollStableCount_ = 0;
    queryPollTickCount_ = 0;
    if (queryPollTimer_)
        return;
    services_.picker.setIsPolling(true);
    queryPollTimer_ = services_.scheduler.every(pollInterval, [this] { tick(); });
}

void QueryPoll::stopQueryPoll() {
    if (!queryPollTimer_)
        return;
    services_.log.debug("Glyma: [AX poll] stopped after {} ticks", queryPollTickCount_);
    queryPollTimer_.reset();
    queryPollStableCount_ = 0;
    queryPollTickCount_ = 0;
    queryPollHasSeenChange_ = false;
    services_.picker.setIsPolling(false);
}

void QueryPoll::tick() {
    if (services_.state.openShowing() != showing_)
        return stopQueryPoll();
    services_.text.setPollTickCount(++queryPollTickCount_);
    if (queryPollTickCount_ >= tickLimit)
        return stopQueryPoll();
    if (std::exchange(isReading_, true))
        return; // a slow target: the next tick after its answer
    services_.reader.ask([&text = services_.text] { return text.textBeforeCursor(); },
                         [this, weak = std::weak_ptr(alive_),
                          keysHeard = services_.state.keysHeard()](const std::optional<std::string>& text) {
                             if (!weak.expired())
                                 take(queryIn(text, trigger_), keysHeard);
                         });
}

void QueryPoll::take(const QueryReading& reading, std::uint64_t keysHeard) {
    isReading_ = false;
    if (services_.state.openShowing() != showing_)
        return stopQueryPoll();
    switch (query_.take(reading, queryPollTickCount_)) {
    case PolledQuery::Finding::nothing:
        return;
    case PolledQuery::Finding::same:
        return countStable(reading);
    case PolledQuery::Finding::changed:
        queryPollHasSeenChange_ = true;
        queryPollStableCount_ = 0;
        if (services_.log.debugEnabled())
            services_.log.debug("Glyma: [AX poll #{}] query={} scalars={}", queryPollTickCount_,
                                services_.log.redactQuoted(query_.query()),
                                unicode::scalars(query_.query()).size());
        return callbacks_.changed();
    case PolledQuery::Finding::emptied:
        return leave(keysHeard, true);
    case PolledQuery::Finding::lost:
        return leave(keysHeard, false);
    case PolledQuery::Finding::mistrusted:
        return call(callbacks_.mistrusted);
    }
}

/// A reading may have shown the effect of a key before the key itself got here; then no change follows.
void QueryPoll::countStable(const QueryReading& reading) {
    const bool isAtRest =
        queryPollHasSeenChange_ || (!query_.isDisturbed() && query_.accountsForKeys(reading));
    if (!isAtRest || ++queryPollStableCount_ < stableTicks)
        return;
    query_.settle();
    stopQueryPoll();
}

/// A key that was heard after the reading began has restarted the burst, or will: its readings decide.
void QueryPoll::leave(std::uint64_t keysHeard, bool isPending) {
    if (services_.state.leaveUnlessHeard(keysHeard, isPending))
        call(callbacks_.left);
}

} // namespace glyma
