#include "platform/linux/x11/keyboard_tap.h"

#include "platform/linux/x11/tap_listener.h"

#include <utility>

namespace glyma::x11 {

namespace {

class Hold : public TypingHold {
public:
    Hold(std::shared_ptr<KeyboardLink> link, HoldNumber number)
        : link_(std::move(link))
        , number_(number) {}
    ~Hold() override { release(); }

    bool isOn() const override { return link_->currentHold() == number_; }
    bool inject(std::span<const KeyChord> chords) override { return link_->inject(chords, number_); }
    void release() final { link_->release(number_); }

private:
    std::shared_ptr<KeyboardLink> link_;
    HoldNumber number_;
};

} // namespace

KeyboardTap::KeyboardTap(TapOptions options)
    : options_(std::move(options))
    , link_(std::make_shared<KeyboardLink>(options_.display, options_.report)) {}

KeyboardTap::~KeyboardTap() {
    stop();
}

void KeyboardTap::setSuppressed(std::function<bool()> isSuppressed) {
    isSuppressed_ = std::move(isSuppressed);
}

std::expected<void, std::string> KeyboardTap::start(Callback callback) {
    stop();
    auto listener = TapListener::create(options_.display,
                                        {.callback = std::move(callback),
                                         .isSuppressed = isSuppressed_,
                                         .connectionLost = options_.connectionLost,
                                         .report = options_.report},
                                        *link_);
    if (!listener)
        return std::unexpected(listener.error());
    listener_ = std::move(*listener);
    return {};
}

void KeyboardTap::stop() {
    listener_.reset();
}

void KeyboardTap::claim(const KeyClaims& claims) {
    link_->claim(claims);
}

std::shared_ptr<TypingHold> KeyboardTap::holdTyping() {
    const auto number = link_->hold();
    return number == 0 ? nullptr : std::make_shared<Hold>(link_, number);
}

} // namespace glyma::x11
