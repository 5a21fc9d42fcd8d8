#pragma once

#include <cstdint>
#include <unistd.h>
#include <utility>

namespace glyma::x11 {

/// Owns a file descriptor of the kind that counts (eventfd, timerfd).
class Descriptor {
public:
    explicit Descriptor(int descriptor = -1)
        : descriptor_(descriptor) {}
    Descriptor(Descriptor&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~Descriptor() {
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }

    int get() const { return descriptor_; }
    /// Makes an eventfd readable.
    void raise() const {
        const std::uint64_t one = 1;
        [[maybe_unused]] const auto written = ::write(descriptor_, &one, sizeof one);
    }
    /// \return whether it was readable; it no longer is.
    bool clear() const {
        std::uint64_t count = 0;
        return ::read(descriptor_, &count, sizeof count) == sizeof count;
    }

private:
    int descriptor_;
};

} // namespace glyma::x11
