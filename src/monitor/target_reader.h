#pragma once

#include "platform/scheduler.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace glyma {

/// Asks the target application on a background thread: one that answers slowly, or never, must not hold up
/// the picker. Main thread. Its end waits for the questions being asked; what they answer is dropped.
class TargetReader {
public:
    TargetReader(TaskRunner& tasks, Scheduler& scheduler)
        : tasks_(tasks)
        , scheduler_(scheduler) {}
    ~TargetReader() { gate_->close(); }
    TargetReader(const TargetReader&) = delete;
    TargetReader& operator=(const TargetReader&) = delete;

    /// \param question  called on a background thread; what it refers to must outlive the reader.
    /// \param then      called on the main thread with the answer.
    template<typename Question, typename Then>
    void ask(Question question, Then then) {
        tasks_.run([gate = gate_, &scheduler = scheduler_, question = std::move(question),
                    then = std::move(then)]() mutable {
            if (!gate->enter())
                return;
            scheduler.post([gate, answer = question(), then = std::move(then)]() mutable {
                if (gate->isOpen())
                    then(std::move(answer));
            });
            gate->leave();
        });
    }

private:
    class Gate {
    public:
        bool enter();
        void leave();
        void close();
        bool isOpen();

    private:
        std::mutex mutex_;
        std::condition_variable left_;
        int inside_ = 0;
        bool isOpen_ = true;
    };

    TaskRunner& tasks_;
    Scheduler& scheduler_;
    std::shared_ptr<Gate> gate_ = std::make_shared<Gate>();
};

} // namespace glyma
