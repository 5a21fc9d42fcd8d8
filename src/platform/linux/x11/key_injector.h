#pragma once

#include "platform/key_injector.h"
#include "platform/linux/x11/keyboard_link.h"

#include <memory>
#include <utility>

namespace glyma::x11 {

/// Types by XTEST, all chords in one batch between which nothing of the user's can come.
class KeyInjector : public glyma::KeyInjector {
public:
    /// \param link  the tap's, so that it does not take what is typed here for the user's.
    explicit KeyInjector(std::shared_ptr<KeyboardLink> link)
        : link_(std::move(link)) {}

    bool inject(std::span<const KeyChord> chords) override { return link_->inject(chords); }

private:
    std::shared_ptr<KeyboardLink> link_;
};

} // namespace glyma::x11
