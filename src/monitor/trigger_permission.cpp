#include "monitor/trigger_permission.h"

#include <algorithm>

namespace glyma {

void TriggerPermission::take(const KeyChord& key) {
    if (asked_ > answered_)
        taken_.push_back({asked_, key});
}

void TriggerPermission::allow(TriggerNumber trigger) {
    answered_ = std::max(answered_, trigger);
    std::erase_if(taken_, [trigger](const Taken& taken) { return taken.trigger <= trigger; });
}

std::vector<KeyChord> TriggerPermission::refuse(TriggerNumber trigger) {
    std::vector<KeyChord> keys;
    for (const auto& taken : taken_)
        if (taken.trigger == trigger)
            keys.push_back(taken.key);
    allow(trigger);
    return keys;
}

} // namespace glyma
