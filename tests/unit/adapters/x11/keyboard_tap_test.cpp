#include "platform/linux/x11/echo_ledger.h"
#include "x11_fixture.h"

#include <fmt/format.h>

namespace glyma::x11::testing {

namespace {

constexpr std::uint8_t lockMask = XCB_MOD_MASK_LOCK;
constexpr std::uint8_t numLockMask = XCB_MOD_MASK_2;

class TextTest : public X11Test {
protected:
    std::string typed(xcb_keycode_t key) {
        user->tap(key);
        return heard.nextKey().text;
    }
    std::string typedWith(xcb_keycode_t modifier, xcb_keycode_t key) {
        user->tapWith(modifier, key);
        return heard.nextKey().text;
    }
};

TEST_F(TextTest, plainShiftedAndLocked) {
    EXPECT_EQ(typed(pc::s), "s");
    EXPECT_EQ(typedWith(pc::shift, pc::s), "S");
    user->lockModifiers(lockMask);
    user->tap(pc::s);
    const auto capital = heard.nextKey();
    EXPECT_EQ(capital.text, "S");
    EXPECT_EQ(capital.keyCode, 1);
    EXPECT_EQ(capital.flags, modifier::capsLock);
    EXPECT_EQ(typedWith(pc::shift, pc::s), "s");
    EXPECT_EQ(typed(pc::one), "1") << "Caps Lock is not Shift";
}

TEST_F(TextTest, keypadFollowsNumLock) {
    user->tap(pc::keypad8);
    const auto arrow = heard.nextKey();
    EXPECT_EQ(arrow.keyCode, keycode::up);
    EXPECT_EQ(arrow.text, "");
    user->lockModifiers(numLockMask);
    user->tap(pc::keypad8);
    const auto digit = heard.nextKey();
    EXPECT_EQ(digit.keyCode, 91);
    EXPECT_EQ(digit.text, "8");
    user->tap(pc::keypadEnter);
    EXPECT_EQ(heard.nextKey().keyCode, keycode::keypadEnter);
}

TEST_F(TextTest, actingKeysHaveCodesAndControlCharacters) {
    const std::vector<std::tuple<xcb_keycode_t, std::uint16_t, std::string>> keys = {
        {pc::returnKey, keycode::returnKey, "\r"},
        {pc::tab, 48, "\t"},
        {pc::backspace, keycode::backspace, "\b"},
        {pc::escape, keycode::escape, "\x1b"},
        {pc::home, keycode::home, ""},
        {pc::left, keycode::left, ""},
        {pc::down, keycode::down, ""},
    };
    for (const auto& [key, code, text] : keys) {
        user->tap(key);
        const auto event = heard.nextKey();
        EXPECT_EQ(event.keyCode, code);
        EXPECT_EQ(event.text, text);
    }
    server->setLayout("us -option caps:escape");
    user->tap(pc::capsLock);
    EXPECT_EQ(heard.nextKey().keyCode, keycode::escape) << "a Caps Lock made an Escape";
}

TEST_F(TextTest, germanDeadKeysAndThirdLevel) {
    server->setLayout("de");
    EXPECT_EQ(typed(pc::equal), "") << "an acute accent waits";
    EXPECT_EQ(typed(pc::e), "é");
    typed(pc::equal);
    EXPECT_EQ(typed(pc::x), "x") << "no such letter: the key's own text";
    EXPECT_EQ(typed(pc::e), "e");
    user->press(pc::equal);
    user->release(pc::equal);
    EXPECT_EQ(heard.nextKey().text, "");
    EXPECT_EQ(typedWith(pc::shift, pc::e), "É") << "Shift does not end the composition";
    user->tapWith(pc::altGr, pc::q);
    const auto at = heard.nextKey();
    EXPECT_EQ(at.text, "@");
    EXPECT_EQ(at.flags, 0U) << "AltGr is no Option";
}

TEST_F(TextTest, secondLayout) {
    server->setLayout("us,ru");
    EXPECT_EQ(typed(pc::s), "s");
    user->lockLayout(1);
    EXPECT_EQ(typed(pc::s), "ы");
    user->tapWith(pc::control, pc::s);
    const auto command = heard.nextKey();
    EXPECT_EQ(command.keyCode, 1);
    EXPECT_EQ(command.flags, modifier::control);
    user->lockLayout(0);
    EXPECT_EQ(typed(pc::s), "s");
}

TEST_F(TextTest, modifiersAreReportedWithTheirEffect) {
    const std::vector<std::pair<xcb_keycode_t, std::uint64_t>> modifiers = {{pc::shift, modifier::shift},
                                                                            {pc::control, modifier::control},
                                                                            {pc::alt, modifier::option},
                                                                            {pc::super, modifier::command}};
    for (const auto& [key, flag] : modifiers) {
        user->press(key);
        const auto down = heard.next();
        EXPECT_EQ(down.type, KeyEvent::Type::flagsChanged);
        EXPECT_EQ(down.flags, flag);
        user->tap(pc::s);
        EXPECT_EQ(heard.next().flags, flag);
        user->release(key);
        EXPECT_EQ(heard.next().flags, 0U);
    }
    EXPECT_TRUE(heard.isEmpty());
}

TEST_F(TextTest, everyRepeatThatTheApplicationGetsIsHeard) {
    target->countsRepeats = true;
    user->press(pc::backspace);
    EXPECT_FALSE(heard.nextKey().isAutorepeat);
    ASSERT_TRUE(eventually([&] { return heard.count() >= 8; }));
    user->release(pc::backspace);
    user->sync();
    target->record();
    ASSERT_TRUE(eventually([&] { return static_cast<int>(heard.count()) >= target->repeats; }));
    EXPECT_EQ(static_cast<int>(heard.count()), target->repeats);
    const auto repeat = heard.next();
    EXPECT_TRUE(repeat.isAutorepeat);
    EXPECT_EQ(repeat.keyCode, keycode::backspace);
    EXPECT_EQ(repeat.text, "\b");
}

TEST_F(TextTest, aBurstKeepsOrderAndShift) {
    user->isBuffering = true;
    std::string expected;
    for (int round = 0; round < 200; ++round) {
        user->tap(pc::s);
        user->tapWith(pc::shift, pc::d);
        user->tap(pc::f);
        expected += "sDf";
    }
    user->flush();
    std::string typedText;
    while (typedText.size() < expected.size()) {
        const auto event = heard.nextKey();
        ASSERT_FALSE(event.text.empty());
        typedText += event.text;
    }
    EXPECT_EQ(typedText, expected);
}

TEST_F(TextTest, keysAreHeardWithinAFractionOfAMillisecond) {
    std::vector<double> delays;
    for (int round = 0; round < 200; ++round) {
        const auto start = std::chrono::steady_clock::now();
        user->press(pc::s);
        heard.nextKey();
        const std::chrono::duration<double, std::milli> delay = std::chrono::steady_clock::now() - start;
        delays.push_back(delay.count());
        user->release(pc::s);
        user->sync();
    }
    std::ranges::sort(delays);
    fmt::print("key to callback: median {:.3f} ms, 95th percentile {:.3f} ms\n", delays[100], delays[190]);
    EXPECT_LT(delays[100], 5.0);
}

/// With Escape claimed, and a password field that has the focus when the test says so.
class SuppressionTest : public TextTest {
protected:
    void SetUp() override {
        TextTest::SetUp();
        tap->stop();
        tap->setSuppressed([this] {
            ++asked;
            return isPassword.load();
        });
        ASSERT_TRUE(tap->start(heard.callback()));
        tap->claim({.pickerKeys = false, .escape = true, .shortcut = {}});
        ASSERT_TRUE(eventually([this] { return asked > 0; }));
    }
    void TearDown() override {
        tap->stop();
        TextTest::TearDown();
    }

    std::atomic<bool> isPassword = false;
    std::atomic<int> asked = 0;
};

TEST_F(SuppressionTest, suppressedKeysAreNotHandedOver) {
    EXPECT_EQ(typed(pc::a), "a");
    target->record();
    isPassword = true;
    for (const auto key : {pc::s, pc::escape}) {
        const int before = asked;
        user->tap(key);
        ASSERT_TRUE(eventually([&] { return asked > before && !tap->link()->consumes(pc::escape, 0); }));
    }
    user->sync();
    EXPECT_EQ(target->keys(), (std::vector<std::string>{"+39", "-39", "+9", "-9"}))
        << "also what is claimed otherwise";
    isPassword = false;
    EXPECT_EQ(typed(pc::f), "f") << "and nothing typed meanwhile";
}

TEST_F(SuppressionTest, aClaimedKeyThatEndsItIsHeardAsOneThatReachedTheApplication) {
    target->record();
    const auto typePassword = [&] {
        isPassword = true;
        const int before = asked;
        user->tap(pc::s);
        EXPECT_TRUE(eventually([&] { return asked > before; }));
        isPassword = false;
    };
    typePassword();
    user->tap(pc::escape);
    EXPECT_TRUE(heard.nextKey().hasReachedApplication);
    user->tap(pc::escape);
    EXPECT_FALSE(heard.nextKey().hasReachedApplication);
    user->sync();
    EXPECT_EQ(target->keys(), (std::vector<std::string>{"+39", "-39", "+9", "-9"}));

    typePassword();
    tap->checkSuppression();
    ASSERT_TRUE(eventually([&] { return tap->link()->consumes(pc::escape, 0); }));
    user->tap(pc::escape);
    EXPECT_FALSE(heard.nextKey().hasReachedApplication) << "claimed again before the key";
}

TEST(EchoLedger, onlyBetweenItsMarksABatchHidesKeys) {
    EchoLedger ledger;
    const KeyMove press{pc::v, true};
    const auto batch = ledger.announce({press, {pc::v, false}});
    EXPECT_FALSE(ledger.take(press)) << "the user's own, before the batch";
    ledger.open(batch);
    EXPECT_TRUE(ledger.take(press));
    EXPECT_FALSE(ledger.take(press)) << "the user's own, amid the batch";
    ledger.close(batch);
    EXPECT_FALSE(ledger.take({pc::v, false})) << "a key that never came hides nothing later";
}

} // namespace

} // namespace glyma::x11::testing
