#include "road.h"

#include <atomic>
#include <random>
#include <thread>

namespace glyma::scenario {
namespace {

/// The tap on a thread of its own, as on a real desktop, typing at random while the main thread works.
class Threads : public Road {};

TEST_F(Threads, KeysAndMainThreadAtOnce) {
    auto& editor = desktop.open("editor");
    auto& other = desktop.open("other");
    settle();
    const KeyEvent keys[] = {
        {KeyEvent::Type::keyDown, keycode::unknown, 0, false, ":"},
        {KeyEvent::Type::keyDown, keycode::unknown, 0, false, "s"},
        {KeyEvent::Type::keyDown, keycode::unknown, 0, false, "m"},
        {KeyEvent::Type::keyDown, keycode::backspace, 0, false, "\b"},
        {KeyEvent::Type::keyDown, keycode::down, 0, false, ""},
        {KeyEvent::Type::keyDown, keycode::escape, 0, false, ""},
        {KeyEvent::Type::keyDown, keycode::returnKey, 0, false, "\r"},
        {KeyEvent::Type::flagsChanged, keycode::unknown, modifier::option, false, ""},
    };
    std::atomic<bool> isDone = false;
    std::jthread tapThread([&] {
        std::mt19937 random(1);
        for (int i = 0; i < 3000; ++i)
            desktop.tap.deliver(keys[random() % std::size(keys)]);
        isDone = true;
    });
    for (int round = 0; !isDone; ++round) {
        desktop.advance(1ms);
        if (round % 20 == 0)
            desktop.activate(round % 40 == 0 ? editor : other);
        flags.isCharacterInfoShowing = round % 7 == 0;
        preferences.setTriggerCharacter(round % 50 == 0 ? "~" : ":");
    }
    tapThread.join();
    settle();
    EXPECT_EQ(window.isShown, monitor.isPanelVisible());
    EXPECT_EQ(desktop.tap.claims().pickerKeys, monitor.isPanelVisible());
}

} // namespace
} // namespace glyma::scenario
