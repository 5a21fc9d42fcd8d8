#include "platform/simulated/typing_holds.h"

#include <utility>

namespace glyma::simulated {

class TypingHolds::Hold : public TypingHold {
public:
    Hold(std::weak_ptr<TypingHolds> holds, Number number)
        : holds_(std::move(holds))
        , number_(number) {}
    ~Hold() override { release(); }

    bool isOn() const override {
        const auto holds = holds_.lock();
        return holds && holds->isOn(number_);
    }
    bool inject(std::span<const KeyChord> chords) override {
        const auto holds = holds_.lock();
        return holds && holds->isOn(number_) && holds->desktop_.inject(chords);
    }
    void release() final {
        if (const auto holds = holds_.lock())
            holds->release(number_);
    }

private:
    std::weak_ptr<TypingHolds> holds_;
    Number number_;
};

std::shared_ptr<TypingHold> TypingHolds::hold() {
    Number number = 0;
    {
        const std::lock_guard lock(mutex_);
        if (isRefused_)
            return nullptr;
        number = current_ = ++last_;
    }
    clock_.schedule(longestTypingHold, [weak = weak_from_this(), number] {
        if (const auto holds = weak.lock())
            holds->release(number);
    });
    return std::make_shared<Hold>(weak_from_this(), number);
}

bool TypingHolds::keep(const KeyEvent& event) {
    const std::lock_guard lock(mutex_);
    if (current_ == 0 && !isDelivering_)
        return false;
    if (!event.isAutorepeat)
        waiting_.push_back(event);
    return true;
}

bool TypingHolds::isOn(Number number) const {
    const std::lock_guard lock(mutex_);
    return current_ == number;
}

bool TypingHolds::isHolding() const {
    const std::lock_guard lock(mutex_);
    return current_ != 0;
}

void TypingHolds::setRefused(bool isRefused) {
    const std::lock_guard lock(mutex_);
    isRefused_ = isRefused;
}

void TypingHolds::release(Number number) {
    {
        const std::lock_guard lock(mutex_);
        if (current_ != number)
            return;
        current_ = 0;
        if (std::exchange(isDelivering_, true))
            return;
    }
    deliverWaiting();
}

void TypingHolds::deliverWaiting() {
    while (true) {
        KeyEvent event;
        {
            const std::lock_guard lock(mutex_);
            if (current_ != 0 || waiting_.empty()) {
                isDelivering_ = false;
                return;
            }
            event = std::move(waiting_.front());
            waiting_.pop_front();
        }
        desktop_.deliver(event);
    }
}

} // namespace glyma::simulated
