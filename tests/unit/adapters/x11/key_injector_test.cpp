#include "platform/linux/x11/key_injector.h"
#include "x11_fixture.h"

#include <thread>

namespace glyma::x11::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr KeyChord backspace{keycode::backspace, 0};
constexpr KeyChord paste{keycode::v, modifier::control};

class InjectorTest : public X11Test {
protected:
    void SetUp() override {
        X11Test::SetUp();
        injector = std::make_unique<KeyInjector>(tap->link());
    }
    std::unique_ptr<KeyInjector> injector;
};

TEST_F(InjectorTest, typesChordsUnheard) {
    EXPECT_TRUE(injector->inject(std::vector{backspace, backspace, paste}));
    user->sync();
    EXPECT_THAT(target->record(), ElementsAre("+22", "-22", "+22", "-22", "+37", "+55/4", "-55/4", "-37/4"));
    user->tap(pc::v);
    const auto typed = heard.next();
    EXPECT_EQ(typed.text, "v") << "the user's own, and nothing before it";
    EXPECT_EQ(typed.flags, 0U);
    EXPECT_FALSE(injector->inject(std::vector{KeyChord{keycode::unknown, 0}}));
}

TEST_F(InjectorTest, liftsWhatTheUserHoldsAndRestoresIt) {
    user->press(pc::shift);
    user->press(pc::alt);
    settle();
    target->record();
    heard.clear();
    EXPECT_TRUE(injector->inject(std::vector{backspace, paste}));
    user->sync();
    const auto lines = target->record();
    const std::vector<std::string> middle = {"+22", "-22", "+37", "+55/4", "-55/4", "-37/4"};
    EXPECT_NE(std::ranges::search(lines, middle).begin(), lines.end()) << ::testing::PrintToString(lines);
    EXPECT_EQ(user->modifiers(), XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_1);
    user->release(pc::alt);
    user->release(pc::shift);
    settle();
    EXPECT_EQ(user->modifiers(), 0) << "nothing sticks";
    EXPECT_TRUE(heard.isEmpty());
}

// An Alt or Super that goes down and up alone opens a menu or an overview.
TEST_F(InjectorTest, noBareAltReachesTheApplication) {
    for (const auto& [key, isInjecting] : {std::pair(pc::alt, true), {pc::super, true}, {pc::alt, false}}) {
        heard.clear();
        tap->claim({.pickerKeys = true, .escape = false, .shortcut = {}});
        user->press(key);
        user->tap(pc::returnKey);
        user->sync();
        std::vector<std::string> lines;
        const auto isDisguised = [&] {
            std::ranges::copy(target->keys(), std::back_inserter(lines));
            return std::ranges::count_if(lines, [](const std::string& line) { return line == "-248"; }) > 0;
        };
        if (key == pc::alt) { // Super+Return is not claimed
            EXPECT_TRUE(eventually(isDisguised));
        }
        if (isInjecting) {
            EXPECT_TRUE(injector->inject(std::vector{backspace}));
        }
        user->release(key);
        user->sync();
        std::string last;
        std::ranges::copy(target->keys(), std::back_inserter(lines));
        for (const auto& line : lines) {
            EXPECT_FALSE(line == "-" + std::to_string(key) && last == "+" + std::to_string(key));
            last = line;
        }
        EXPECT_EQ(last, "-" + std::to_string(key));
        tap->claim({});
    }
}

TEST_F(InjectorTest, reachesTheApplicationAlthoughAConsumedKeyIsHeld) {
    tap->claim({.pickerKeys = true, .escape = false, .shortcut = {}});
    heard.react = [&](const KeyEvent& event) {
        if (event.keyCode == keycode::returnKey)
            tap->claim({});
    };
    for (int round = 0; round < 20; ++round) {
        tap->claim({.pickerKeys = true, .escape = false, .shortcut = {}});
        user->press(pc::returnKey);
        ASSERT_EQ(heard.nextKey().keyCode, keycode::returnKey);
        EXPECT_TRUE(injector->inject(std::vector{backspace}));
        user->release(pc::returnKey);
        ASSERT_THAT(targetKeys(), ElementsAre("+22", "-22"));
    }
}

// The server ignores the press of a key that is down.
TEST_F(InjectorTest, typesAKeyThatTheUserStillHolds) {
    user->press(pc::v);
    user->sync();
    EXPECT_TRUE(injector->inject(std::vector{paste}));
    user->release(pc::v);
    user->sync();
    EXPECT_THAT(target->record(), ElementsAre("+55", "-55", "+37", "+55/4", "-55/4", "-37/4"));
}

TEST_F(InjectorTest, findsKeysInEveryLayout) {
    server->setLayout("us,ru");
    user->lockLayout(1);
    settle();
    target->record();
    injector->inject(std::vector{paste});
    user->sync();
    EXPECT_THAT(target->keys(), ElementsAre("+37", "+55", "-55", "-37"));
    server->setLayout("us -variant dvorak");
    settle();
    target->record();
    injector->inject(std::vector{paste});
    user->sync();
    EXPECT_THAT(target->keys(), ElementsAre("+37", "+60", "-60", "-37")) << "the key that types v";
}

TEST_F(InjectorTest, aModifierLetGoMeanwhileDoesNotStick) {
    for (int round = 0; round < 200; ++round) {
        user->press(pc::shift);
        user->sync();
        std::thread letsGo([&] {
            std::this_thread::sleep_for(std::chrono::microseconds(round * 5));
            user->release(pc::shift);
        });
        injector->inject(std::vector{backspace, backspace, paste});
        letsGo.join();
        ASSERT_TRUE(eventually([&] { return user->modifiers() == 0; })) << "round " << round;
    }
}

TEST_F(InjectorTest, typingAmidInjectionsIsHeardOnce) {
    std::thread typist([&] {
        for (int round = 0; round < 300; ++round) {
            user->tap(pc::v);
            std::this_thread::sleep_for(std::chrono::microseconds(300));
        }
    });
    for (int round = 0; round < 100; ++round)
        injector->inject(std::vector{backspace, KeyChord{keycode::v, 0}});
    typist.join();
    user->sync();
    EXPECT_TRUE(eventually([&] { return heard.count() >= 300; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(heard.count(), 300U);
    EXPECT_EQ(std::ranges::count(target->keys(), "+55"), 400);
}

} // namespace

} // namespace glyma::x11::testing
