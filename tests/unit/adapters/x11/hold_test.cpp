#include "platform/linux/x11/key_injector.h"
#include "x11_fixture.h"

#include <fmt/format.h>

#include <algorithm>
#include <thread>

namespace glyma::x11::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Lines = std::vector<std::string>;

constexpr KeyClaims picker{.pickerKeys = true, .escape = false, .shortcut = {}};
constexpr KeyChord backspace{keycode::backspace, 0};
constexpr KeyChord paste{keycode::v, modifier::control};

/// A program as small as can be: "1" opens its picker, Return chooses and holds typing.
class HoldTest : public X11Test {
protected:
    void SetUp() override {
        X11Test::SetUp();
        heard.decide = [this](const KeyEvent& event) { return decide(event); };
    }
    void TearDown() override {
        takeHold();
        X11Test::TearDown();
    }
    Verdict decide(const KeyEvent& event) {
        if (event.type != KeyEvent::Type::keyDown)
            return Verdict::pass;
        if (event.text == "1")
            open(true);
        if (!isOpen_ || event.keyCode != keycode::returnKey)
            return Verdict::pass;
        if (beforeHold)
            beforeHold();
        const std::scoped_lock lock(mutex_);
        hold_ = tap->holdTyping();
        ++choices;
        open(false);
        return Verdict::consume;
    }
    void open(bool value) {
        isOpen_ = value;
        tap->claim(value ? picker : KeyClaims{});
    }
    void choose() {
        user->tap(pc::one);
        settle();
        target->record();
        heard.clear();
        user->tap(pc::returnKey);
        ASSERT_TRUE(eventually([&] { return isHeld(); }));
        user->sync();
    }
    bool isHeld() {
        const std::scoped_lock lock(mutex_);
        return hold_ && hold_->isOn();
    }
    std::shared_ptr<TypingHold> takeHold() {
        const std::scoped_lock lock(mutex_);
        return std::move(hold_);
    }
    /// Lets typing go and waits until it is free.
    void release() {
        takeHold();
        ASSERT_TRUE(eventually([&] { return !tap->link()->isHolding(); }));
    }
    Lines heardTexts() {
        Lines texts;
        while (!heard.isEmpty())
            if (const auto event = heard.next(); event.type == KeyEvent::Type::keyDown)
                texts.push_back(event.text);
        return texts;
    }

    std::atomic<int> choices = 0;
    /// Called when a choice has been heard.
    std::function<void()> beforeHold;

private:
    std::mutex mutex_;
    std::shared_ptr<TypingHold> hold_;
    bool isOpen_ = false;
};

TEST_F(HoldTest, keysComeLaterAsTheyWouldHaveComeAtOnce) {
    server->setLayout("de,ru");
    const auto type = [&] {
        user->tap(pc::s);
        user->tapWith(pc::shift, pc::s);
        user->tapWith(pc::altGr, pc::q);
        user->tap(pc::equal); // an acute accent
        user->tapWith(pc::shift, pc::e);
        user->press(pc::a);
        user->press(pc::d);
        user->release(pc::a);
        user->release(pc::d);
        user->lockModifiers(XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2);
        user->tap(pc::f);
        user->tap(pc::keypad8);
        user->lockModifiers(0);
        user->lockLayout(1);
        user->tap(pc::f);
        user->lockLayout(0);
        user->tapWith(pc::control, pc::x);
        user->press(pc::shift);
        user->tapWith(pc::alt, pc::left);
        user->release(pc::shift);
        user->tap(pc::f);
    };
    type();
    settle();
    const auto expected = target->record();
    heard.clear();
    type();
    user->sync();
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    target->record();
    const auto expectedTexts = heardTexts();

    choose();
    EXPECT_THAT(heardTexts(), ElementsAre("\r"));
    type();
    user->sync();
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    EXPECT_THAT(target->record(), IsEmpty());
    EXPECT_THAT(heardTexts(), IsEmpty()) << "not heard before it is delivered";
    release();
    EXPECT_EQ(heardTexts(), expectedTexts);
    const auto isF11 = [](const std::string& line) { return line.find("95") == 1; };
    auto delivered = target->record();
    auto live = expected;
    std::erase_if(live, isF11);
    EXPECT_EQ(delivered, live);
    EXPECT_EQ(user->modifiers(), 0);
}

TEST_F(HoldTest, whatIsHeldAcrossTheEndsBelongsToTheApplicationAgain) {
    user->press(pc::shift);
    user->press(pc::s);
    user->sync();
    user->press(pc::one);
    user->release(pc::one);
    user->release(pc::shift);
    settle();
    open(true);
    user->tap(pc::returnKey);
    ASSERT_TRUE(eventually([&] { return isHeld(); }));
    target->record();
    user->release(pc::s); // pressed before
    user->press(pc::control);
    user->press(pc::d);
    std::this_thread::sleep_for(std::chrono::milliseconds(900)); // longer than keys take to repeat
    takeHold()->inject(std::vector{paste});
    EXPECT_THAT(target->record(), ElementsAre("+37", "+55/4", "-55/4", "-37/4"));
    release();
    EXPECT_THAT(target->record(), ElementsAre("-39", "+37", "+40/4")) << "still down, without repeats";
    user->release(pc::d);
    user->release(pc::control);
    EXPECT_THAT(targetKeys(), ElementsAre("-40", "-37"));
    EXPECT_EQ(user->modifiers(), 0);
}

// A Return among the waiting keys chooses again, and the rest goes on waiting.
TEST_F(HoldTest, deliveryStopsWhereTheNextHoldBegins) {
    choose();
    target->record();
    for (const auto key : {pc::s, pc::one, pc::d, pc::returnKey, pc::f, pc::returnKey, pc::a})
        user->tap(key);
    user->sync();
    takeHold();
    ASSERT_TRUE(eventually([&] { return choices == 2; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    EXPECT_TRUE(isHeld());
    EXPECT_THAT(target->keys(), ElementsAre("+39", "-39", "+10", "-10", "+40", "-40"));
    user->tap(pc::x);
    user->sync();
    release();
    EXPECT_THAT(target->keys(), ElementsAre("+41", "-41", "+36", "-36", "+38", "-38", "+53", "-53"))
        << "with the picker closed, Return is the application's";
    EXPECT_EQ(choices, 2);
}

class HoldStressTest : public HoldTest, public ::testing::WithParamInterface<User::Device> {};

INSTANTIATE_TEST_SUITE_P(, HoldStressTest, ::testing::Values(User::Device::own, User::Device::xtest),
                         [](const auto& device) {
                             return device.param == User::Device::own ? "onAKeyboardOfItsOwn"
                                                                      : "onTheKeyboardOfPrograms";
                         });

// Every third letter is a capital, its Shift pressed and let go as close to it as a program would.
TEST_P(HoldStressTest, nothingIsLostOrTurnedRoundHoweverTypingAndInsertionsMeet) {
    constexpr int typedKeys = 4000;
    const std::vector letters = {pc::s, pc::d, pc::f, pc::a, pc::e, pc::q};
    Lines expected;
    std::atomic<bool> isDone = false;
    std::thread typist([&] {
        User fast(server->display(), GetParam());
        const auto pause = [](int number) {
            std::this_thread::sleep_for(std::chrono::microseconds(number % 7 * 150));
        };
        for (int index = 0; index < typedKeys; ++index) {
            const bool isReturn = index % 40 == 20;
            const auto key = index % 40 == 13 ? pc::one
                             : isReturn       ? pc::returnKey
                                              : letters[static_cast<std::size_t>(index * 7 % 11) % 6];
            const bool isShifted = index % 3 == 0 && key != pc::one && !isReturn;
            if (isShifted)
                fast.press(pc::shift);
            pause(index / 3);
            fast.tap(key);
            pause(index / 5);
            if (isShifted)
                fast.release(pc::shift);
            if (!isReturn)
                expected.push_back(fmt::format("+{}{}", key, isShifted ? "/1" : ""));
            pause(index);
        }
        fast.sync();
        isDone = true;
    });
    int round = 0;
    int sent = 0; // less than all: a key may come before a hold stands and ends it then
    while (!isDone || isHeld()) {
        if (const auto hold = takeHold()) {
            sent += hold->inject(std::vector{backspace, backspace, backspace}) ? 3 : 0;
            std::this_thread::sleep_for(std::chrono::milliseconds(++round % 12));
            sent += hold->inject(std::vector{paste}) ? 1 : 0;
        }
        std::this_thread::yield();
    }
    typist.join();
    ASSERT_TRUE(eventually([&] { return !tap->link()->isHolding() && !isHeld(); }));
    settle();
    Lines got;
    int injected = 0;
    for (const auto& line : target->record())
        if (line == "+22" || line == "+55/4")
            ++injected;
        else if (line.starts_with("+") && !line.starts_with("+37") && !line.starts_with("+50") &&
                 line != "+95" && line != "+36")
            got.push_back(line);
    const auto [wrong, right] = std::ranges::mismatch(got, expected);
    EXPECT_EQ(got, expected) << "from key " << wrong - got.begin() << " on: "
                             << ::testing::PrintToString(Lines(wrong, std::min(wrong + 8, got.end())))
                             << " for "
                             << ::testing::PrintToString(Lines(right, std::min(right + 8, expected.end())));
    EXPECT_EQ(got.size(), expected.size());
    EXPECT_EQ(choices, typedKeys / 40);
    EXPECT_EQ(injected, sent);
    EXPECT_GT(sent, choices * 2);
    EXPECT_EQ(user->modifiers(), 0);
}

TEST_F(HoldTest, endsByItselfAndInjectsNoMore) {
    choose();
    target->record();
    user->tap(pc::s);
    user->sync();
    const auto began = std::chrono::steady_clock::now();
    ASSERT_TRUE(eventually([&] { return !isHeld(); }));
    EXPECT_GT(std::chrono::steady_clock::now() - began, std::chrono::milliseconds(1400));
    EXPECT_FALSE(takeHold()->inject(std::vector{backspace}));
    EXPECT_THAT(targetKeys(), ElementsAre("+39", "-39"));
    user->tap(pc::d);
    EXPECT_THAT(targetKeys(), ElementsAre("+40", "-40"));
}

// Return is up again before a busy tap has heard of it: what follows is the application's, and what was to be
// deleted no longer stands before the caret.
TEST_F(HoldTest, aKeyThatCameBeforeItStoodEndsIt) {
    user->tap(pc::one);
    settle();
    target->record();
    beforeHold = [&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        user->tap(pc::s);
        user->sync();
    };
    user->tap(pc::returnKey);
    ASSERT_TRUE(eventually([&] { return choices == 1 && !isHeld() && !tap->link()->isHolding(); }));
    EXPECT_FALSE(takeHold()->inject(std::vector{backspace}));
    user->tap(pc::d);
    auto keys = targetKeys();
    std::erase_if(keys, [](const std::string& line) { return !line.starts_with("+"); });
    EXPECT_THAT(keys, ElementsAre("+39", "+40"));
}

TEST_F(HoldTest, isRefusedWhileSomebodyElseHasTheKeyboard) {
    const auto& other = target->connection();
    const auto cookie = xcb_grab_keyboard(other.get(), 0, target->window(), XCB_CURRENT_TIME,
                                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    ASSERT_EQ(owned(xcb_grab_keyboard_reply(other.get(), cookie, nullptr))->status, XCB_GRAB_STATUS_SUCCESS);
    EXPECT_EQ(tap->holdTyping(), nullptr);
    user->tap(pc::s);
    EXPECT_THAT(targetKeys(), ElementsAre("+39", "-39"));
    EXPECT_THAT(heardTexts(), IsEmpty());
}

TEST_F(HoldTest, theTapsEndAndALostWindowLetTypingGo) {
    choose();
    target->record();
    user->tap(pc::s);
    user->sync();
    tap->stop();
    EXPECT_THAT(target->keys(), ElementsAre("+39", "-39"));
    user->tap(pc::d);
    user->sync();
    EXPECT_THAT(target->keys(), ElementsAre("+40", "-40"));
    takeHold();

    ASSERT_TRUE(tap->start(heard.callback()));
    choose();
    user->tap(pc::s);
    target->destroy(); // the grab goes with it
    Target next(server->display());
    user->tap(pc::d);
    user->sync();
    release();
    next.record();
    user->tap(pc::f);
    user->sync();
    EXPECT_THAT(next.keys(), ElementsAre("+41", "-41"));
}

// The application must not take the hold for a loss of the focus.
TEST_F(HoldTest, movesNoFocusAndPutsNothingBetweenChoiceAndHold) {
    for (int round = 0; round < 50; ++round) {
        user->tap(pc::one);
        settle();
        target->record();
        user->press(pc::returnKey);
        user->tap(pc::s); // before anybody has seen the Return
        user->release(pc::returnKey);
        ASSERT_TRUE(eventually([&] { return isHeld(); }));
        user->tap(pc::d);
        user->sync();
        ASSERT_THAT(target->record(), IsEmpty()) << "round " << round;
        release();
        ASSERT_THAT(target->record(), ElementsAre("+39", "-39", "+40", "-40"));
    }
}

} // namespace

} // namespace glyma::x11::testing
