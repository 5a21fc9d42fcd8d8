#pragma once

#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace glyma {

/// Owns one registration (a callback, a timer, a grab): destroying or resetting it ends the registration.
/// A default-constructed one owns nothing. Use it on the thread that made it.
class Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::function<void()> cancel)
        : cancel_(std::move(cancel)) {}
    Subscription(Subscription&& other) noexcept
        : cancel_(std::exchange(other.cancel_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            reset();
            cancel_ = std::exchange(other.cancel_, nullptr);
        }
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { reset(); }

    void reset() {
        if (auto cancel = std::exchange(cancel_, nullptr))
            cancel();
    }
    explicit operator bool() const { return static_cast<bool>(cancel_); }

private:
    std::function<void()> cancel_;
};

/// Tells any number of listeners that something happened. Single-threaded; listeners may connect, disconnect
/// and even destroy the signal's other listeners while it is being emitted. A listener outliving the signal
/// is harmless: its subscription then does nothing.
template<typename... Arguments>
class Signal {
public:
    using Listener = std::function<void(Arguments...)>;

    [[nodiscard]] Subscription connect(Listener listener) const {
        const auto id = listeners_->next++;
        listeners_->byId.emplace(id, std::make_shared<Listener>(std::move(listener)));
        return Subscription([weak = std::weak_ptr(listeners_), id] {
            if (const auto listeners = weak.lock())
                listeners->byId.erase(id);
        });
    }

    void emit(Arguments... arguments) const {
        const auto listeners = listeners_;
        const auto snapshot = listeners->byId;
        for (const auto& [id, listener] : snapshot)
            if (listeners->byId.contains(id))
                (*listener)(arguments...);
    }

private:
    struct Listeners {
        std::map<unsigned long, std::shared_ptr<Listener>> byId;
        unsigned long next = 0;
    };
    std::shared_ptr<Listeners> listeners_ = std::make_shared<Listeners>();
};

} // namespace glyma
