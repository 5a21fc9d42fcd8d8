#include "fakes.h"
#include "permissions/permissions.h"
#include "platform/simulated/virtual_clock.h"

#include <gtest/gtest.h>

namespace glyma {
namespace {

using namespace std::chrono_literals;
using test::FakeProcesses;

constexpr pid_t terminal = 200;
constexpr pid_t browser = 201;

class SecureInputTest : public testing::Test {
protected:
    SecureInputTest() {
        processes.table[terminal] = {.exists = true, .name = "xterm"};
        processes.table[browser] = {.exists = true, .name = "firefox-esr"};
    }

    simulated::VirtualClock clock;
    test::FakeGrabs grabs;
    FakeProcesses processes;
    test::FakePermission inputMonitoring{true};
    test::FakePermission accessibility{true};
    bool isInPassword = false;
    int released = 0;
    bool canRelease = true;
    SecureInputChecker checker{{.scheduler = clock,
                                .grabs = grabs,
                                .processes = processes,
                                .focusIsPasswordField = [this] { return isInPassword; },
                                .focusedProcess = [] { return browser; },
                                .releaseOwnGrabs =
                                    [this] {
                                        ++released;
                                        if (canRelease)
                                            grabs.set(std::nullopt);
                                    }}};
    Permissions permissions{inputMonitoring, accessibility, checker};
    int changes = 0;
    Subscription counting = permissions.changed.connect([this] { ++changes; });
};

TEST_F(SecureInputTest, AGrabIsShownOnceItHasLastedButKeysAreLeftAloneAtOnce) {
    grabs.set(KeyboardGrab{.process = terminal});
    EXPECT_TRUE(checker.mustNotListen());
    clock.advance(1900ms);
    EXPECT_EQ(permissions.secureInput(), SecureInput{});
    EXPECT_EQ(changes, 0);
    clock.advance(200ms);
    EXPECT_EQ(permissions.secureInput(),
              (SecureInput{true, Holder{Holder::Kind::running, terminal, "xterm"}}));
    EXPECT_EQ(changes, 1);

    grabs.set(std::nullopt);
    EXPECT_EQ(permissions.secureInput(), SecureInput{});
    EXPECT_FALSE(checker.mustNotListen());
    EXPECT_EQ(changes, 2);
}

TEST_F(SecureInputTest, ShortGrabsAndMenusAreNeverShown) {
    for (int round = 0; round < 5; ++round) {
        grabs.set(KeyboardGrab{.process = terminal});
        clock.advance(1500ms);
        grabs.set(std::nullopt);
        clock.advance(1s);
    }
    // A menu is recognised a moment after its grab.
    grabs.set(KeyboardGrab{.process = terminal});
    clock.advance(100ms);
    grabs.set(KeyboardGrab{.process = terminal, .isMenu = true});
    clock.advance(60s);
    EXPECT_TRUE(checker.mustNotListen());
    EXPECT_EQ(changes, 0);
    EXPECT_FALSE(permissions.secureInput().isOn);
}

TEST_F(SecureInputTest, TheHolderIsTakenForWhatItIs) {
    constexpr pid_t root = 300, locker = 301, gone = 302, nameless = 303;
    processes.table[root] = {.exists = true, .isForeign = true, .name = {}};
    processes.table[locker] = {.exists = true, .isLocker = true, .name = "i3lock"};
    processes.table[nameless] = {.exists = true, .name = {}};
    const std::map<pid_t, Holder> expected{
        {root, {Holder::Kind::system, root, "process 300"}},
        {locker, {Holder::Kind::system, locker, "i3lock"}},
        {gone, {Holder::Kind::stale, gone, "process 302"}},
        {nameless, {Holder::Kind::running, nameless, "process 303"}},
        {FakeProcesses::ownProcess, {Holder::Kind::attributedToSelf, FakeProcesses::ownProcess, "glyma"}}};
    for (const auto& [process, holder] : expected)
        EXPECT_EQ(holderOf(process, processes), holder) << process;
    EXPECT_EQ(holderOf(0, processes), std::nullopt);
}

TEST_F(SecureInputTest, OfAGrabThatNobodyAskedForTheFocusedWindowIsNamed) {
    grabs.set(KeyboardGrab{});
    EXPECT_FALSE(checker.mustNotListen()) << "a key that the window manager has reserved";
    clock.advance(3s);
    EXPECT_TRUE(checker.mustNotListen());
    EXPECT_EQ(permissions.secureInput().holder->process, browser);
}

TEST_F(SecureInputTest, AnOwnGrabDisturbsNobodyAndIsGivenBackWhenItStays) {
    grabs.set(KeyboardGrab{.process = FakeProcesses::ownProcess});
    clock.advance(1500ms);
    EXPECT_FALSE(checker.mustNotListen()) << "what is typed through an insertion is heard";
    EXPECT_EQ(released, 0);
    clock.advance(1s);
    EXPECT_EQ(released, 1);
    EXPECT_EQ(permissions.secureInput(), SecureInput{});

    canRelease = false;
    grabs.set(KeyboardGrab{.process = FakeProcesses::ownProcess});
    clock.advance(3s);
    EXPECT_EQ(permissions.secureInput().holder->kind, Holder::Kind::attributedToSelf);
}

TEST_F(SecureInputTest, APasswordFieldIsFoundAtTheNextCheck) {
    isInPassword = true;
    EXPECT_TRUE(checker.mustNotListen());
    permissions.refresh();
    EXPECT_EQ(permissions.secureInput(),
              (SecureInput{true, Holder{Holder::Kind::running, browser, "firefox-esr"}}));
    isInPassword = false;
    permissions.refresh();
    EXPECT_EQ(permissions.secureInput(), SecureInput{});
    EXPECT_EQ(changes, 2);
}

TEST_F(SecureInputTest, PermissionsFollowTheirSources) {
    accessibility.grant(false);
    EXPECT_TRUE(permissions.permissionsNeeded());
    permissions.obtainAccessibility();
    EXPECT_FALSE(permissions.permissionsNeeded());
    inputMonitoring.grant(false);
    EXPECT_TRUE(permissions.permissionsNeeded());
    EXPECT_EQ(changes, 3);
    inputMonitoring.grant(false);
    EXPECT_EQ(changes, 3) << "nothing new";
}

} // namespace
} // namespace glyma
