#include "monitor/polled_query.h"

#include <algorithm>
#include <utility>

namespace glyma {

namespace {

/// How long a target may take to apply a key before its text is believed against the keys: 0.1 s.
constexpr int ticksForKeysToArrive = 5;

/// How much in front of a trigger tells it from others, in bytes.
constexpr std::size_t anchorLength = 12;

std::string tail(const std::string& text) {
    return text.substr(text.size() - std::min(text.size(), anchorLength));
}

} // namespace

PolledQuery::PolledQuery(std::string trigger, TypedText typed)
    : trigger_(std::move(trigger))
    , query_(typed.query())
    , typed_(std::move(typed)) {}

void PolledQuery::type(std::string_view text) {
    if (!text.empty() && ahead_.starts_with(text)) {
        ahead_.erase(0, text.size());
        return;
    }
    ahead_.clear();
    earlier_.push_back(readingAsTyped().query);
    typed_.type(text, false);
    followKeys();
}

void PolledQuery::deleteLast() {
    ahead_.clear();
    earlier_.push_back(readingAsTyped().query);
    typed_.deleteLast();
    followKeys();
}

void PolledQuery::followKeys() {
    isBehind_ = true;
    if (auto expected = readingAsTyped(); expected.holdsQuery() && !isDisturbed_)
        query_ = std::move(expected.query);
}

void PolledQuery::disturb() {
    ahead_.clear();
    isDisturbed_ = wasDisturbed_ = true;
}

void PolledQuery::settle() {
    ahead_.clear();
    isDisturbed_ = false;
    keysHaveArrived();
}

void PolledQuery::keysHaveArrived() {
    hasArrived_ = true;
    isBehind_ = false;
    earlier_.clear();
}

QueryReading PolledQuery::readingAsTyped() const {
    return queryIn(trigger_ + typed_.query(), trigger_);
}

bool PolledQuery::accountsForKeys(const QueryReading& reading) const {
    return reading.outcome == QueryReading::Outcome::query && reading.query == readingAsTyped().query;
}

bool PolledQuery::certainlyAccountsForKeys(const QueryReading& reading) const {
    return accountsForKeys(reading) && !isEarlier(reading);
}

bool PolledQuery::isEarlier(const QueryReading& reading) const {
    const auto typed = readingAsTyped();
    return std::ranges::find(earlier_, reading.query) != earlier_.end() ||
           (!hasArrived_ && !reading.query.starts_with(typed.query));
}

bool PolledQuery::mayBeLate(const QueryReading& reading) const {
    return reading.outcome == QueryReading::Outcome::query && !isDisturbed_ && !accountsForKeys(reading) &&
           isEarlier(reading);
}

/// Whether the last trigger is one that stood there before ours, which has gone.
bool PolledQuery::hasLostItsTrigger(const QueryReading& reading) const {
    return reading.outcome == QueryReading::Outcome::query &&
           (reading.before + reading.query).find(anchor_) == std::string::npos;
}

bool PolledQuery::isFromBeforeTheKeys(const QueryReading& reading) const {
    return isBehind_ && (!reading.holdsQuery() || isEarlier(reading));
}

void PolledQuery::restartFrom(const std::string& query) {
    typed_ = TypedText(query);
    keysHaveArrived();
}

PolledQuery::Finding PolledQuery::take(const QueryReading& reading, int tick) {
    if (reading.outcome == QueryReading::Outcome::unavailable)
        return Finding::nothing;
    wasRead_ = wasRead_ || reading.holdsQuery();
    if (accountsForKeys(reading)) {
        // Deleting brings a text back: it may still be the one from before.
        if (!isEarlier(reading))
            keysHaveArrived();
        anchor_ = tail(reading.before);
    } else if (tick <= ticksForKeysToArrive && isFromBeforeTheKeys(reading)) {
        return Finding::nothing;
    }
    if (hasLostItsTrigger(reading))
        return Finding::lost;
    if (reading.holdsQuery()) {
        if (!accountsForKeys(reading)) {
            const auto typed = readingAsTyped().query;
            if (!isDisturbed_ && reading.query.starts_with(typed))
                ahead_ = reading.query.substr(typed.size());
            restartFrom(reading.query);
        }
        return std::exchange(query_, reading.query) == reading.query ? Finding::same : Finding::changed;
    }
    // Some applications have an element with a caret for each key they draw elsewhere: always empty.
    if (reading.isTextEmpty && !wasRead_ && !wasDisturbed_)
        return Finding::mistrusted;
    return reading.outcome == QueryReading::Outcome::query ? Finding::emptied : Finding::lost;
}

std::optional<Deletion> PolledQuery::deletion(const QueryReading& reading) const {
    const auto of = [this](const std::string& query) { return deletionOf(trigger_, query, 0, false); };
    switch (reading.outcome) {
    case QueryReading::Outcome::noQuery:
        break;
    case QueryReading::Outcome::query:
        if (hasLostItsTrigger(reading))
            break;
        // The trigger typed twice: the second one is the query until something follows it.
        return of(accountsForKeys(reading) && reading.query.empty() ? typed_.query() : reading.query);
    case QueryReading::Outcome::unavailable:
        if (!isDisturbed_)
            return of(readingAsTyped().query);
        break;
    }
    return std::nullopt;
}

} // namespace glyma
