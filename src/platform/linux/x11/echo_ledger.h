#pragma once

#include <xcb/xproto.h>

#include <algorithm>
#include <cstdint>
#include <deque>
#include <mutex>
#include <vector>

namespace glyma::x11 {

/// A key that we move ourselves.
struct KeyMove {
    xcb_keycode_t key = 0;
    bool isPress = false;
    bool operator==(const KeyMove&) const = default;
};

/// Tells our own keys from the user's. Both come back from the server alike, so that whoever moves keys
/// announces them first and brackets them with two marks that the server delivers to the tap in the same
/// stream as the keys: only between its marks a batch can be mistaken for typing, and a key that never came
/// cannot hide a later one. Any thread.
class EchoLedger {
public:
    using Batch = std::uint32_t;

    /// Before the keys are sent.
    Batch announce(std::vector<KeyMove> moves) {
        const std::scoped_lock lock(mutex_);
        batches_.push_back({.number = ++last_, .isOpen = false, .moves = std::move(moves)});
        return last_;
    }

    /// The batch's first mark has come by.
    void open(Batch number) {
        const std::scoped_lock lock(mutex_);
        for (auto& batch : batches_)
            batch.isOpen = batch.isOpen || batch.number == number;
    }

    /// The batch's second mark has come by.
    void close(Batch number) {
        const std::scoped_lock lock(mutex_);
        std::erase_if(batches_, [&](const Entry& batch) { return batch.number <= number; });
    }

    /// Whether this key is one of ours; it then counts as seen.
    bool take(KeyMove move) {
        const std::scoped_lock lock(mutex_);
        for (auto& batch : batches_) {
            if (!batch.isOpen)
                continue;
            const auto found = std::find(batch.moves.begin(), batch.moves.end(), move);
            if (found == batch.moves.end())
                continue;
            batch.moves.erase(found);
            return true;
        }
        return false;
    }

    /// Whether keys of ours may come by now.
    bool isOpen() const {
        const std::scoped_lock lock(mutex_);
        return std::ranges::any_of(batches_, &Entry::isOpen);
    }

    /// Forgets everything: a new tap sees a new stream.
    void clear() {
        const std::scoped_lock lock(mutex_);
        batches_.clear();
    }

private:
    struct Entry {
        Batch number = 0;
        bool isOpen = false;
        std::vector<KeyMove> moves;
    };
    mutable std::mutex mutex_;
    std::deque<Entry> batches_;
    Batch last_ = 0;
};

} // namespace glyma::x11
