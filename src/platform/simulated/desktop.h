#pragma once

#include "platform/front_application.h"
#include "platform/key_injector.h"
#include "platform/simulated/accessibility.h"
#include "platform/simulated/application.h"
#include "platform/simulated/clipboard.h"
#include "platform/simulated/keyboard.h"
#include "platform/simulated/keyboard_tap.h"
#include "platform/simulated/mouse_monitor.h"
#include "platform/simulated/services.h"
#include "platform/simulated/typing_holds.h"
#include "platform/simulated/virtual_clock.h"

#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glyma::simulated {

/// A whole desktop in memory: applications with text fields, a keyboard, a clipboard, screens and time that
/// only advance() and the typing move. Scenarios type into it and look at the text that results:
///
///     Desktop desktop;
///     auto& editor = desktop.open("org.gnome.TextEditor");
///     desktop.type(":smile");
///     desktop.press(keycode::returnKey);
///     desktop.advance(1s);
///     EXPECT_EQ(editor.text(), "😄");
///     EXPECT_EQ(desktop.faults(), std::vector<std::string>());
///
/// A key is shown to the tap first and then, unless consumed, reaches the application in front; while typing
/// is held it waits for both.
class Desktop : public FrontApplicationTracker, public KeyInjector {
public:
    Desktop();
    ~Desktop() override;
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    // The facilities, as adapters
    VirtualClock clock;
    SimulatedTap tap;
    SimulatedMouse mouse{clock};
    SimulatedClipboard clipboard;
    SimulatedClipboard primarySelection;
    SimulatedAccessibility accessibility;
    SimulatedScreens screens;
    SimulatedBell bell;
    SimulatedSettings settings;
    SimulatedLog log;
    SimulatedLoginItem loginItem;
    SimulatedInstalledApplications installedApplications;
    SimulatedFonts fonts;
    Keyboard keyboard;

    void advance(VirtualClock::Duration duration) { clock.advance(duration); }

    // Applications
    /// Opens an application and brings it to the front. No identifier: pass an empty one.
    Application& open(const std::string& identifier, const Manner& manner = {});
    /// Brings it to the front; the program hears of it on the main queue.
    void activate(Application& application);
    /// Nothing is in front.
    void activateNothing();
    /// Ends it; the next one opened, if any, comes to the front.
    void close(Application& application);

    // The user's hands. Each press takes `keyInterval`.
    VirtualClock::Duration keyInterval{15'000};
    /// Types characters as the keyboard layout has them, with Shift, AltGr and dead keys; "\n" is Return.
    void type(std::string_view text);
    /// Presses and lets go of one key, with these modifiers held (`modifier` bits).
    void press(std::uint16_t keyCode, std::uint64_t flags = 0);
    /// Holds a key down until it has repeated so often.
    void holdDown(std::uint16_t keyCode, int repeats);
    /// One repeat of a key that is held down.
    void repeat(std::uint16_t keyCode);
    void hold(ModifierKey key);
    void letGo(ModifierKey key);
    /// While the tap is late it hears nothing: what is not claimed by then reaches the application first, as
    /// on a busy machine. It hears all of it when it is late no longer.
    void setTapLate(bool isLate);
    /// Clicks into the focused text of an application, at a caret position; it must be in front.
    void click(Application& application, std::ptrdiff_t caret);
    /// Drags an application's window by its title, in steps of 10 ms.
    void drag(Application& application, Point by, int steps);
    /// Keys that the tap consumed, readable as Application::keysFromUser().
    std::vector<std::uint16_t> consumedKeys() const { return consumed_; }

    // As adapters
    FrontApplication current() override;
    [[nodiscard]] Subscription observe(std::function<void(const FrontApplication&)> callback) override;
    bool inject(std::span<const KeyChord> chords) override;
    /// The Nth chord injected from now on (0 is the next) cannot be posted.
    void failInjectionOf(int number) { failingInjection_ = number; }

    bool isTypingHeld() const { return typingHolds_->isHolding(); }
    /// Somebody else has the keyboard: it cannot be held.
    void refuseTypingHolds(bool isRefused) { typingHolds_->setRefused(isRefused); }

    /// What must not happen in any scenario: verdicts that were not announced, characters no key types.
    std::vector<std::string> faults() const;

private:
    Application* front() const;
    void strike(std::uint16_t keyCode, bool isAutorepeat);
    void happen(const KeyEvent& event);
    void happenUnheard(KeyEvent event);
    void deliver(const KeyEvent& event);
    void strike(const Stroke& stroke);
    void tellFrontApplication();

    mutable std::mutex mutex_;
    std::vector<std::unique_ptr<Application>> applications_;
    std::vector<std::unique_ptr<Application>>
        closed_; ///< the clock may still hold what they were about to do
    Application* front_ = nullptr;
    Signal<const FrontApplication&> activated_;
    std::vector<std::uint16_t> consumed_;
    std::vector<std::string> faults_;
    pid_t nextProcess_ = 4001;
    int failingInjection_ = -1;
    bool isTapLate_ = false;
    std::vector<KeyEvent> unheard_;
    std::shared_ptr<TypingHolds> typingHolds_;
};

} // namespace glyma::simulated
