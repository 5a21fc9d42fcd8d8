#include "monitor/choice_reading.h"

#include <utility>

namespace glyma {

namespace {

constexpr Milliseconds longestWait{100};
constexpr Milliseconds furtherWaitForLateKeys{600};
constexpr Milliseconds betweenReadings{10};

} // namespace

ChoiceReading::ChoiceReading(Scheduler& scheduler, TargetReader& reader, TextInserter& text,
                             std::string trigger, PolledQuery query,
                             std::function<void(const std::optional<Deletion>&)> then)
    : scheduler_(scheduler)
    , reader_(reader)
    , text_(text)
    , trigger_(std::move(trigger))
    , query_(std::move(query))
    , then_(std::move(then))
    , deadline_(scheduler.after(longestWait, [this] { giveUp(); })) {
    read();
}

void ChoiceReading::read() {
    reader_.ask([&text = text_] { return text.textBeforeCursor(); },
                [this, weak = std::weak_ptr(alive_)](const std::optional<std::string>& text) {
                    if (!weak.expired() && !isDone())
                        take(queryIn(text, trigger_));
                });
}

void ChoiceReading::take(const QueryReading& reading) {
    last_ = reading;
    if (query_.certainlyAccountsForKeys(reading))
        finish();
    else
        nextReading_ = scheduler_.after(betweenReadings, [this] { read(); });
}

void ChoiceReading::giveUp() {
    if (query_.mayBeLate(last_))
        deadline_ = scheduler_.after(furtherWaitForLateKeys, [this] { finish(); });
    else
        finish();
}

void ChoiceReading::finish() {
    nextReading_.reset();
    deadline_.reset();
    if (const auto then = std::exchange(then_, nullptr))
        then(query_.deletion(last_));
}

} // namespace glyma
