#pragma once

#include "monitor/polled_query.h"
#include "monitor/target_reader.h"
#include "platform/scheduler.h"
#include "text/text_inserter.h"

#include <functional>
#include <memory>
#include <optional>

namespace glyma {

/// Reads the text once more when an entry has been chosen, until it shows the effect of every key or 0.1 s
/// have passed, or 0.7 s when the text looks as if the keys were merely late: a fast typist chooses before
/// the last letter has been read. Main thread, which never waits.
class ChoiceReading {
public:
    /// \param then  told what to delete, absent when that is not certain; once.
    ChoiceReading(Scheduler& scheduler, TargetReader& reader, TextInserter& text, std::string trigger,
                  PolledQuery query, std::function<void(const std::optional<Deletion>&)> then);
    ~ChoiceReading() = default;
    ChoiceReading(const ChoiceReading&) = delete;
    ChoiceReading& operator=(const ChoiceReading&) = delete;

    bool isDone() const { return !then_; }

private:
    void read();
    void take(const QueryReading& reading);
    void giveUp();
    void finish();

    Scheduler& scheduler_;
    TargetReader& reader_;
    TextInserter& text_;
    const std::string trigger_;
    const PolledQuery query_;
    std::function<void(const std::optional<Deletion>&)> then_;
    QueryReading last_;
    Subscription deadline_;
    Subscription nextReading_;
    std::shared_ptr<int> alive_ = std::make_shared<int>();
};

} // namespace glyma
