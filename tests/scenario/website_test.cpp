#include "road.h"

namespace glyma::scenario {
namespace {

using testing::IsEmpty;

class Websites : public Road {
protected:
    simulated::Application& browse(const std::string& address, const std::string& browser = "firefox-esr") {
        manner.webAddress = address;
        auto& application = desktop.open(browser, manner);
        settle();
        return application;
    }
    bool opensHere() {
        window.carets.clear();
        desktop.type(":s");
        settle();
        const bool isOpen = monitor.isPanelVisible();
        EXPECT_EQ(isOpen, !window.carets.empty()) << "not even for a moment";
        EXPECT_FALSE(monitor.isPendingTrigger());
        desktop.press(keycode::escape);
        return isOpen;
    }
    void excludeSite(const std::string& domain, bool isExcluded = true) {
        preferences.setExcludedWebsites({{"other.example", true}, {domain, isExcluded}});
    }

    simulated::Manner manner;
};

TEST_F(Websites, ExcludedOnesAreLeftAlone) {
    struct Case {
        std::string address;
        bool opens;
    };
    excludeSite("example.org");
    for (const auto& [address, opens] : {
             Case{"https://example.org/", false},
             {"http://www.example.org:8080/path?query", false},
             {"https://mail.example.org/", false},
             {"https://badexample.org/", false},
             {"https://example.org.evil.test/", true},
             {"https://example.com/example.org", true},
             {"file:///home/user/example.org", true},
             {"no address at all", true},
         }) {
        SCOPED_TRACE(address);
        browse(address);
        EXPECT_EQ(opensHere(), opens);
    }
    browse("https://example.org/");
    excludeSite("example.org", false);
    EXPECT_TRUE(opensHere()) << "unticked, at once";
    excludeSite("");
    EXPECT_TRUE(opensHere()) << "an entry that says nothing";
}

TEST_F(Websites, OnlyInBrowsersAndThereOnlyInPages) {
    excludeSite("example.org");
    browse("https://example.org/", "org.example.MailReader");
    EXPECT_TRUE(opensHere()) << "no browser";
    browse("https://example.org/", "chromium");
    EXPECT_FALSE(opensHere());

    manner.fieldsOutsideThePage = {1};
    auto& browser = browse("https://allowed.test/");
    EXPECT_TRUE(opensHere());
    browser.focusField(browser.addField({0, 0, 600, 30}));
    EXPECT_FALSE(opensHere()) << "the address bar";
    EXPECT_EQ(browser.keysFromUser(), ":s:s<Escape>");

    browse("", "chromium");
    EXPECT_TRUE(opensHere()) << "a browser whose pages nobody can read";
    manner = simulated::silent();
    browse("", "chromium");
    EXPECT_TRUE(opensHere()) << "nor anything else of it";

    manner = simulated::slow(160ms);
    browse("https://allowed.test/");
    EXPECT_FALSE(opensHere()) << "a browser that does not answer may show any page";
}

// An excluded page gets exactly what was typed, whenever the program finds out.
TEST_F(Websites, KeysThatComeBeforeItIsKnownArriveAllTheSame) {
    excludeSite("example.org");
    desktop.keyInterval = 10ms;
    for (const auto answerTime : {0ms, 3ms, 12ms})
        for (auto stall = 0ms; stall <= 60ms; stall += 5ms) {
            SCOPED_TRACE(testing::Message() << answerTime.count() << " ms, " << stall.count());
            manner.answerTime = answerTime;
            auto& page = browse("https://example.org/");
            desktop.clock.stallMainQueue(stall);
            desktop.type(":sm");
            desktop.press(keycode::down);
            desktop.press(keycode::returnKey);
            settle();
            EXPECT_EQ(page.text(), ":sm\n");
            EXPECT_THAT(window.carets, IsEmpty());
            EXPECT_FALSE(monitor.isPanelVisible());
            EXPECT_FALSE(desktop.tap.claims().pickerKeys);
        }
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(Websites, AKeyThatSlippedToThePageIsNotGivenToItAgain) {
    excludeSite("example.org");
    auto& page = browse("https://example.org/");
    desktop.setTapLate(true);
    desktop.type(":sm\n");
    desktop.setTapLate(false);
    settle();
    EXPECT_EQ(page.text(), ":sm\n");
    EXPECT_EQ(page.keysInjected(), "");
}

TEST_F(Websites, AnsweringLateDoesNotTouchWhatCameAfter) {
    excludeSite("example.org");
    auto& page = browse("https://example.org/");
    desktop.clock.stallMainQueue(300ms);
    desktop.type(":s");
    desktop.press(keycode::escape);
    desktop.type("x:");
    desktop.press(keycode::backspace);
    desktop.type(":h");
    settle();
    EXPECT_EQ(page.text(), ":sx:h");
    EXPECT_EQ(page.keysInjected(), "<Escape>");

    auto& editor = desktop.open("editor");
    desktop.activate(page);
    settle();
    page.forgetKeys();
    desktop.clock.stallMainQueue(300ms);
    desktop.type(":s");
    desktop.press(keycode::returnKey);
    desktop.activate(editor);
    desktop.type(":h");
    settle();
    EXPECT_EQ(editor.text(), ":h") << "keys meant for the page are no other application's";
    EXPECT_EQ(page.keysInjected(), "");
}

TEST_F(Websites, OnAllowedPagesTheFastestFingersAreServed) {
    excludeSite("example.org");
    manner.answerTime = 5ms;
    auto& page = browse("https://allowed.test/");
    desktop.keyInterval = 3ms;
    desktop.clock.stallMainQueue(200ms);
    desktop.type("a:smil");
    desktop.press(keycode::returnKey);
    settle();
    EXPECT_EQ(page.text(), "a😄");
    EXPECT_EQ(page.keysFromUser(), "a:smil");
}

// A browser that has just been started, or is busy: the trigger is not lost.
TEST_F(Websites, ABrowserThatAnswersLateIsWaitedFor) {
    excludeSite("example.org");
    for (const auto* address : {"https://allowed.test/", "https://example.org/"}) {
        SCOPED_TRACE(address);
        const bool isAllowed = std::string_view(address).find("allowed") != std::string_view::npos;
        auto& page = browse(address);
        page.setHung(true);
        desktop.type(":sm");
        desktop.press(keycode::escape);
        desktop.type(":s");
        desktop.advance(400ms);
        EXPECT_THAT(window.carets, IsEmpty());
        page.setHung(false);
        desktop.advance(400ms);
        EXPECT_EQ(window.isShown, isAllowed);
        desktop.type("mil");
        desktop.press(keycode::returnKey);
        settle();
        EXPECT_EQ(page.text(), isAllowed ? ":sm😄" : ":sm:smil\n");

        page.setHung(true);
        desktop.type(" :smil");
        desktop.press(keycode::returnKey);
        desktop.type("x");
        desktop.advance(200ms);
        page.setHung(false);
        settle();
        EXPECT_EQ(page.text(), isAllowed ? ":sm😄 😄x" : ":sm:smil\n :smil\nx") << "all typed meanwhile";
        window.carets.clear();
    }
}

TEST_F(Websites, AFocusThatLeavesThePageUnnoticedIsNoticedLater) {
    manner.fieldsOutsideThePage = {1};
    auto& browser = browse("https://allowed.test/");
    const auto addressBar = browser.addField({0, 0, 600, 30});

    desktop.type(":");
    desktop.advance(20ms);
    browser.focusField(addressBar); // Control+L, before the colon: reported only now
    desktop.clock.stallMainQueue(100ms);
    desktop.type("s");
    desktop.press(keycode::returnKey);
    settle();
    EXPECT_THAT(window.carets, IsEmpty());
    EXPECT_EQ(browser.keysInjected(), "<Return>") << "taken without need";
    EXPECT_FALSE(monitor.isPanelVisible());

    browser.focusField(0);
    desktop.type(":s");
    desktop.advance(20ms);
    EXPECT_TRUE(window.isShown);
    monitor.focusMoved();
    desktop.advance(20ms);
    EXPECT_TRUE(window.isShown) << "still in the page";
    browser.focusField(addressBar);
    monitor.focusMoved();
    desktop.advance(20ms);
    browser.focusField(0);
    desktop.advance(200ms);
    EXPECT_TRUE(window.isShown) << "it had left for a moment only";
    browser.focusField(addressBar);
    monitor.focusMoved();
    desktop.advance(200ms);
    EXPECT_FALSE(window.isShown);
    EXPECT_FALSE(monitor.isPanelVisible());
}

TEST_F(Websites, TheUsersTableComesFirst) {
    desktop.settings.set("browsers",
                         {{"org.example.Surfer", true}, {"firefox-esr", false}, {"falkon", "yes"}});
    const UserPreferences told(desktop.settings, desktop.loginItem, desktop.installedApplications, log);
    EXPECT_TRUE(told.isBrowser("org.example.Surfer"));
    EXPECT_FALSE(told.isBrowser("firefox-esr"));
    EXPECT_TRUE(told.isBrowser("falkon")) << "what is neither true nor false says nothing";
    EXPECT_TRUE(told.isBrowser("org.gnome.Epiphany"));
    EXPECT_FALSE(told.isBrowser("mousepad"));
}

} // namespace
} // namespace glyma::scenario
