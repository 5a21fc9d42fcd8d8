#include "monitor/target_reader.h"

namespace glyma {

bool TargetReader::Gate::enter() {
    const std::lock_guard lock(mutex_);
    if (isOpen_)
        ++inside_;
    return isOpen_;
}

void TargetReader::Gate::leave() {
    const std::lock_guard lock(mutex_);
    --inside_;
    left_.notify_all();
}

void TargetReader::Gate::close() {
    std::unique_lock lock(mutex_);
    isOpen_ = false;
    left_.wait(lock, [this] { return inside_ == 0; });
}

bool TargetReader::Gate::isOpen() {
    const std::lock_guard lock(mutex_);
    return isOpen_;
}

} // namespace glyma
