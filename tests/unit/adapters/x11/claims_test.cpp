#include "platform/linux/x11/grab_list.h"
#include "platform/linux/x11/key_codes.h"
#include "platform/linux/x11/requirements.h"
#include "x11_fixture.h"

#include <fmt/format.h>

#include <future>

namespace glyma::x11::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using Lines = std::vector<std::string>;

const KeyClaims nothing;
const KeyClaims picker{.pickerKeys = true, .escape = false, .shortcut = {}};
const KeyClaims escapeOnly{.pickerKeys = false, .escape = true, .shortcut = {}};
const KeyClaims shortcut{
    .pickerKeys = false, .escape = false, .shortcut = KeyChord{1, modifier::control | modifier::option}};
const KeyClaims everything{.pickerKeys = true, .escape = true, .shortcut = shortcut.shortcut};

class ClaimsTest : public X11Test {};

/// The key without a meaning that keeps Alt from being a bare one.
bool isDisguise(const std::string& line) {
    return line == "+248" || line == "-248";
}

bool contains(const GrabList& list, xkb_keycode_t key, ModifierMask mask) {
    const auto found = list.find(static_cast<xcb_keycode_t>(key));
    return found != list.end() && std::ranges::count(found->second, mask) == 1;
}

// neo has arrows on letters in one of its levels, caps:escape an Escape where none is expected.
TEST_F(ClaimsTest, grabsAreExactlyTheClaimedPresses) {
    for (const auto* layout : {"us", "de", "us,ru", "de neo", "us -option caps:escape"}) {
        server->setLayout(layout);
        const auto map = KeyboardMap::load(user->connection());
        ASSERT_TRUE(map);
        for (const auto& claims : {nothing, picker, escapeOnly, shortcut, everything})
            for (const xkb_layout_index_t group : {0U, 1U}) {
                const auto list = grabList(claims, *map, group);
                for (auto key = map->firstKey(); key <= map->lastKey(); ++key)
                    for (unsigned bits = 0; bits <= 0xFF; ++bits) {
                        const auto mask = static_cast<ModifierMask>(bits);
                        const bool isPossible = !(mask & ~map->usedModifiers());
                        const bool expected =
                            isPossible && isClaimed(claims, map->code(key, mask, group), map->flags(mask));
                        ASSERT_EQ(contains(list, key, mask), expected)
                            << layout << " key " << key << " " << bits;
                    }
            }
    }
}

// The same against the server: whatever is locked or latched, what the callback sees as claimed is what is
// missing.
TEST_F(ClaimsTest, theApplicationGetsWhatIsNotClaimed) {
    const std::vector<xcb_keycode_t> keys = {pc::up,     pc::down, pc::returnKey, pc::keypadEnter,
                                             pc::escape, pc::s,    pc::keypad8,   pc::home};
    for (const auto& claims : {picker, escapeOnly, everything}) {
        tap->claim(claims);
        for (unsigned mask = 0; mask <= 0xFF; ++mask) {
            if (mask & XCB_MOD_MASK_3)
                continue;
            user->lockModifiers(static_cast<std::uint8_t>(mask));
            for (const auto key : keys) {
                user->tap(key);
                const auto event = heard.nextKey();
                user->sync();
                const bool isMine = isClaimed(claims, event.keyCode, event.flags);
                auto got = target->keys();
                std::erase_if(got, isDisguise);
                const Lines expected =
                    isMine ? Lines{} : Lines{fmt::format("+{}", key), fmt::format("-{}", key)};
                ASSERT_EQ(got, expected) << "key " << int{key} << " modifiers " << mask;
            }
        }
        user->lockModifiers(0);
    }
    tap->claim(nothing);
    target->record();
    for (const auto key : keys)
        user->tap(key);
    EXPECT_EQ(targetKeys().size(), keys.size() * 2);
}

TEST_F(ClaimsTest, rollingOverAClaimedKeyLosesNothing) {
    tap->claim(picker);
    for (const bool isAtOnce : {false, true}) {
        user->isBuffering = isAtOnce;
        const auto pause = [&] {
            if (!isAtOnce)
                settle();
        };
        user->press(pc::s);
        user->press(pc::down);
        pause();
        user->press(pc::d);
        pause();
        user->press(pc::up);
        user->release(pc::down);
        pause();
        user->press(pc::f);
        user->release(pc::up);
        user->release(pc::f);
        user->release(pc::d);
        user->release(pc::s);
        user->flush();
        user->isBuffering = false;
        auto keys = targetKeys();
        std::erase_if(keys, [](const std::string& line) { return !line.starts_with("+"); });
        if (isAtOnce)
            EXPECT_THAT(keys, UnorderedElementsAre("+39", "+40", "+41"))
                << "faster than fingers: order may suffer";
        else
            EXPECT_THAT(keys, ElementsAre("+39", "+40", "+41"));
    }
    EXPECT_EQ(user->modifiers(), 0);
}

TEST_F(ClaimsTest, aHeldClaimedKeyRepeatsForTheCallbackAlone) {
    tap->claim(picker);
    user->press(pc::down);
    EXPECT_FALSE(heard.nextKey().isAutorepeat);
    for (int repeat = 0; repeat < 3; ++repeat) {
        const auto event = heard.nextKey();
        EXPECT_TRUE(event.isAutorepeat);
        EXPECT_EQ(event.keyCode, keycode::down);
    }
    user->release(pc::down);
    EXPECT_THAT(targetKeys(), IsEmpty());
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_TRUE(heard.isEmpty()) << "let go";
}

// On a busy machine the tap hears of the query's first letter when the keys behind it have been typed as
// well.
TEST_F(ClaimsTest, aKeyThatCameBeforeItsGrabIsHeardAsOneThatReachedTheApplication) {
    for (const auto key : {pc::returnKey, pc::up, pc::down, pc::escape}) {
        heard.react = [&](const KeyEvent& event) {
            if (event.text != "1")
                return;
            user->tap(key);
            user->sync();
            tap->claim(picker);
        };
        user->tap(pc::one);
        EXPECT_FALSE(heard.nextKey().hasReachedApplication);
        EXPECT_TRUE(heard.nextKey().hasReachedApplication) << int{key};
        EXPECT_THAT(targetKeys(),
                    ElementsAre("+10", "-10", fmt::format("+{}", key), fmt::format("-{}", key)));
        for (int round = 0; round < 20; ++round) {
            user->tap(key);
            user->tap(pc::s);
            EXPECT_FALSE(heard.nextKey().hasReachedApplication) << "kept";
            EXPECT_FALSE(heard.nextKey().hasReachedApplication) << "claimed by nobody";
        }
        EXPECT_EQ(targetKeys().size(), 40U);
        tap->claim(nothing);
    }
}

// Return chooses: the claim ends in its own callback, while it is down.
TEST_F(ClaimsTest, aKeyIsConsumedToItsEndAlthoughTheClaimEnds) {
    for (const auto key : {pc::returnKey, pc::escape, pc::down}) {
        tap->claim(picker);
        heard.react = [&](const KeyEvent& event) {
            if (event.keyCode != 103)
                tap->claim(nothing);
        };
        user->press(key);
        std::this_thread::sleep_for(std::chrono::milliseconds(900)); // longer than keys take to repeat
        user->release(key);
        EXPECT_THAT(targetKeys(), IsEmpty()) << int{key};
        user->tap(key);
        EXPECT_EQ(targetKeys().size(), 2U) << "the next press is the application's";
    }
    heard.react = nullptr;
}

TEST_F(ClaimsTest, followsTheFocusAndLeavesNothingBehind) {
    tap->claim(picker);
    Target other(server->display());
    EXPECT_THAT(target->record(), ElementsAre("focus out"));
    settle();
    other.record();
    user->tap(pc::down);
    user->tap(pc::s);
    settle();
    EXPECT_THAT(other.keys(), ElementsAre("+39", "-39", "+95", "-95"));
    tap->claim(nothing);
    target->takeFocus();
    user->tap(pc::down);
    EXPECT_THAT(targetKeys(), ElementsAre("focus in", "+116", "-116"))
        << "no grab is left on the first window";
    tap->claim(picker);
    target->destroy();
    other.takeFocus();
    settle();
    other.record();
    user->tap(pc::down);
    user->tap(pc::s);
    settle();
    EXPECT_THAT(other.keys(), ElementsAre("+39", "-39", "+95", "-95")) << "after the focused window has gone";
}

TEST_F(ClaimsTest, theTargetKeepsTheFocusWhileKeysAreConsumed) {
    tap->claim(picker);
    for (const auto key : {pc::down, pc::up, pc::escape})
        user->tap(key);
    settle();
    EXPECT_THAT(target->record(), ElementsAre("+95", "-95"));
}

TEST_F(ClaimsTest, anotherProgramsGrabCostsOnlyItsOwnCombination) {
    const std::uint32_t events = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS;
    const std::uint32_t plain = 0;
    const auto cookie = xcb_input_xi_passive_grab_device(
        user->connection().get(), XCB_CURRENT_TIME, target->window(), XCB_CURSOR_NONE, pc::escape,
        XCB_INPUT_DEVICE_ALL_MASTER, 1, 1, XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_ASYNC,
        XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_OWNER_NO_OWNER, &events, &plain);
    owned(xcb_input_xi_passive_grab_device_reply(user->connection().get(), cookie, nullptr));
    tap->claim(picker);
    EXPECT_EQ(reports.size(), 1U);
    user->tapWith(pc::shift, pc::escape);
    user->tap(pc::down);
    EXPECT_THAT(targetKeys(), ElementsAre("+50", "-50"));
}

TEST_F(ClaimsTest, stoppingGivesEverythingBack) {
    for (int round = 0; round < 20; ++round) {
        tap->claim(picker);
        user->tap(pc::down);
        settle();
        tap->stop();
        ASSERT_THAT(target->keys(), ElementsAre("+95", "-95"));
        user->tap(pc::down);
        user->sync();
        ASSERT_THAT(target->keys(), ElementsAre("+116", "-116"));
        ASSERT_TRUE(tap->start(heard.callback()));
    }
}

TEST_F(ClaimsTest, areCheap) {
    std::vector<double> costs;
    for (int round = 0; round < 200; ++round) {
        const auto start = std::chrono::steady_clock::now();
        tap->claim(picker);
        const std::chrono::duration<double, std::milli> cost = std::chrono::steady_clock::now() - start;
        costs.push_back(cost.count());
        tap->claim(nothing);
    }
    std::ranges::sort(costs);
    RecordProperty("median_ms", fmt::format("{:.3f}", costs[100]));
    fmt::print("claim(): median {:.3f} ms, 95th percentile {:.3f} ms, worst {:.3f} ms\n", costs[100],
               costs[190], costs.back());
    EXPECT_LT(costs[100], 2.0);
}

TEST_F(ClaimsTest, theServerMayDie) {
    std::promise<void> lost;
    KeyboardTap other(
        {.display = server->display(), .report = {}, .connectionLost = [&] { lost.set_value(); }});
    ASSERT_TRUE(other.start([](const KeyEvent&) { return Verdict::pass; }));
    other.claim(picker);
    server->kill();
    ASSERT_EQ(lost.get_future().wait_for(std::chrono::seconds(2)), std::future_status::ready);
    other.claim(nothing);
    other.stop();
    EXPECT_FALSE(other.start([](const KeyEvent&) { return Verdict::pass; }));
}

TEST(Requirements, sayWhatIsMissingAndWhatToDo) {
    KeyboardTap nowhere({.display = ":4711", .report = {}, .connectionLost = {}});
    const auto started = nowhere.start({});
    ASSERT_FALSE(started);
    EXPECT_THAT(started.error(), ::testing::HasSubstr("\":4711\" cannot be opened"));

    const Server without({"-extension", "XTEST"});
    KeyboardTap mute({.display = without.display(), .report = {}, .connectionLost = {}});
    const auto refused = mute.start({});
    ASSERT_FALSE(refused);
    EXPECT_THAT(refused.error(), ::testing::HasSubstr("XTEST"));
}

} // namespace

} // namespace glyma::x11::testing
