#include "platform/simulated/desktop.h"

#include "unicode/text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace glyma::simulated {

using namespace std::chrono_literals;

namespace {

constexpr std::array modifierKeys = {ModifierKey::shift, ModifierKey::control, ModifierKey::option,
                                     ModifierKey::command};

// What an application gets to see of an injected key.
KeyEvent injectedEvent(const KeyChord& chord) {
    KeyEvent event{KeyEvent::Type::keyDown, chord.keyCode, chord.flags, false, {}};
    if (chord.keyCode == keycode::backspace)
        event.text = "\b";
    return event;
}

} // namespace

Desktop::Desktop()
    : accessibility({[this] { return front(); },
                     [this](pid_t process) -> Application* {
                         const std::lock_guard lock(mutex_);
                         for (const auto& application : applications_)
                             if (application->identity().process == process)
                                 return application.get();
                         return nullptr;
                     },
                     [this] {
                         const std::lock_guard lock(mutex_);
                         std::vector<Application*> all;
                         for (const auto& application : applications_)
                             all.push_back(application.get());
                         return all;
                     }},
                    clock)
    , typingHolds_(std::make_shared<TypingHolds>(
          clock, TypingHolds::Desktop{[this](const KeyEvent& event) { deliver(event); },
                                      [this](std::span<const KeyChord> chords) { return inject(chords); }})) {
    tap.hold = [this] { return typingHolds_->hold(); };
}

Desktop::~Desktop() = default;

Application* Desktop::front() const {
    const std::lock_guard lock(mutex_);
    return front_;
}

Application& Desktop::open(const std::string& identifier, const Manner& manner) {
    const FrontApplication identity{identifier.empty() ? std::nullopt : std::optional(identifier),
                                    nextProcess_++};
    auto application = std::make_unique<Application>(identity, manner, clock, clipboard, primarySelection);
    auto& opened = *application;
    {
        const std::lock_guard lock(mutex_);
        applications_.push_back(std::move(application));
    }
    activate(opened);
    return opened;
}

void Desktop::activate(Application& application) {
    {
        const std::lock_guard lock(mutex_);
        front_ = &application;
    }
    tellFrontApplication();
}

void Desktop::activateNothing() {
    {
        const std::lock_guard lock(mutex_);
        front_ = nullptr;
    }
    tellFrontApplication();
}

void Desktop::close(Application& application) {
    {
        const std::lock_guard lock(mutex_);
        const auto found = std::ranges::find(applications_, &application, &std::unique_ptr<Application>::get);
        closed_.push_back(std::move(*found));
        applications_.erase(found);
        front_ = applications_.empty() ? nullptr : applications_.back().get();
    }
    tellFrontApplication();
}

void Desktop::tellFrontApplication() {
    clock.post([this, identity = current()] { activated_.emit(identity); });
}

FrontApplication Desktop::current() {
    const auto application = front();
    return application ? application->identity() : FrontApplication{};
}

Subscription Desktop::observe(std::function<void(const FrontApplication&)> callback) {
    return activated_.connect(std::move(callback));
}

void Desktop::hold(ModifierKey key) {
    keyboard.setHeld(key, true);
    if (flagOf(key))
        happen(keyboard.flagsChanged());
}

void Desktop::letGo(ModifierKey key) {
    keyboard.setHeld(key, false);
    if (flagOf(key))
        happen(keyboard.flagsChanged());
}

void Desktop::click(Application& application, std::ptrdiff_t caret) {
    mouse.deliver(MouseEvent::leftDown);
    application.setSelection({caret, 0});
    advance(keyInterval);
    mouse.deliver(MouseEvent::leftUp);
    advance(keyInterval);
}

void Desktop::drag(Application& application, Point by, int steps) {
    mouse.deliver(MouseEvent::leftDown);
    for (int step = 0; step < steps; ++step) {
        application.moveWindow({by.x / steps, by.y / steps});
        mouse.deliver(MouseEvent::leftDragged);
        advance(10ms);
    }
    mouse.deliver(MouseEvent::leftUp);
    advance(keyInterval);
}

void Desktop::strike(std::uint16_t keyCode, bool isAutorepeat) {
    happen(keyboard.press(keyCode, isAutorepeat));
}

void Desktop::setTapLate(bool isLate) {
    isTapLate_ = isLate;
    if (isLate)
        return;
    for (const auto& event : std::exchange(unheard_, {}))
        happen(event);
}

void Desktop::happenUnheard(KeyEvent event) {
    const auto application = front();
    if (application && event.type == KeyEvent::Type::keyDown && !tap.keeps(event)) {
        application->receive({event, false});
        event.hasReachedApplication = true;
    }
    unheard_.push_back(std::move(event));
}

void Desktop::happen(const KeyEvent& event) {
    if (isTapLate_)
        return happenUnheard(event);
    if (!typingHolds_->keep(event))
        deliver(event);
}

void Desktop::deliver(const KeyEvent& event) {
    const auto verdict = tap.deliver(event);
    if (event.type != KeyEvent::Type::keyDown)
        return;
    if (verdict == Verdict::consume)
        consumed_.push_back(event.keyCode);
    else if (const auto application = front(); application && !event.hasReachedApplication)
        application->receive({event, false});
}

void Desktop::press(std::uint16_t keyCode, std::uint64_t flags) {
    std::vector<ModifierKey> added;
    for (const auto key : modifierKeys)
        if ((flags & flagOf(key)) && !keyboard.isHeld(key))
            added.push_back(key);
    for (const auto key : added)
        hold(key);
    strike(keyCode, false);
    for (const auto key : added)
        letGo(key);
    advance(keyInterval);
}

void Desktop::holdDown(std::uint16_t keyCode, int repeats) {
    strike(keyCode, false);
    for (int i = 0; i < repeats; ++i) {
        advance(i == 0 ? 500ms : 30ms);
        strike(keyCode, true);
    }
    advance(keyInterval);
}

void Desktop::repeat(std::uint16_t keyCode) {
    strike(keyCode, true);
    advance(keyInterval);
}

void Desktop::strike(const Stroke& stroke) {
    // Caps Lock turns the Shift level of letters round; a typist who sees the screen does the same.
    bool shift = stroke.shift;
    if (keyboard.flags() & modifier::capsLock) {
        const auto other = strokeOf(keyboard.layout(), stroke.keyCode, !shift, stroke.altGr);
        const auto own = unicode::fromScalar(stroke.character);
        const auto turned = other ? unicode::fromScalar(other->character) : own;
        if (own != turned && unicode::lowercased(own) == unicode::lowercased(turned))
            shift = !shift;
    }
    if (stroke.altGr)
        hold(ModifierKey::altGr);
    press(stroke.keyCode, shift ? modifier::shift : 0);
    if (stroke.altGr)
        letGo(ModifierKey::altGr);
}

void Desktop::type(std::string_view text) {
    for (const auto character : unicode::scalars(text)) {
        const auto& layout = keyboard.layout();
        if (character == U'\n') {
            press(keycode::returnKey);
        } else if (const auto stroke = strokeFor(layout, character)) {
            strike(*stroke);
        } else if (const auto parts = decompose(character); parts && strokeFor(layout, parts->first, true)) {
            strike(*strokeFor(layout, parts->first, true));
            strike(*strokeFor(layout, parts->second));
        } else {
            faults_.push_back("no key of the layout types " + unicode::fromScalar(character));
        }
    }
}

bool Desktop::inject(std::span<const KeyChord> chords) {
    bool allPosted = true;
    for (const auto& chord : chords) {
        if (failingInjection_ >= 0 && failingInjection_-- == 0)
            allPosted = false;
        else if (const auto application = front())
            application->receive({injectedEvent(chord), true});
    }
    return allPosted;
}

std::vector<std::string> Desktop::faults() const {
    auto all = faults_;
    std::ranges::copy(tap.disagreements(), std::back_inserter(all));
    return all;
}

} // namespace glyma::simulated
