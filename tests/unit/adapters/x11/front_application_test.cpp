#include "main_queue.h"
#include "platform/linux/x11/front_application_tracker.h"
#include "platform/linux/x11/probe.h"
#include "x11_fixture.h"

#include <unistd.h>

namespace glyma::x11::testing {

namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

class FrontApplicationTest : public ::testing::Test {
protected:
    void set(const Target& target, const std::string& property, const std::string& value) {
        const auto& connection = target.connection();
        xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, target.window(),
                            connection.atom(property), XCB_ATOM_STRING, 8,
                            static_cast<std::uint32_t>(value.size()), value.data());
        (void)connection.focus();
    }
    void setNumber(const Connection& connection, xcb_window_t window, const std::string& property,
                   std::uint32_t value) {
        xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, connection.atom(property),
                            XCB_ATOM_CARDINAL, 32, 1, &value);
        (void)connection.focus();
    }
    void activate(xcb_window_t window) { setNumber(desktop, desktop.root(), "_NET_ACTIVE_WINDOW", window); }
    std::unique_ptr<FrontApplicationTracker> makeTracker() {
        auto made = std::make_unique<FrontApplicationTracker>(
            queue,
            [](const WindowIdentity& identity) -> std::optional<std::string> {
                return identity.wmClassName == "Known" ? std::optional<std::string>("org.known.App")
                                                       : std::nullopt;
            },
            server.display());
        subscription = made->observe([this](const FrontApplication& front) { seen.push_back(front); });
        return made;
    }
    bool sees(const FrontApplication& front) {
        return eventually([&] {
            queue.run();
            return !seen.empty() && seen.back() == front;
        });
    }

    Server server;
    Connection desktop = std::move(Connection::open(server.display()).value());
    MainQueue queue;
    std::vector<FrontApplication> seen;
    Subscription subscription;
    const pid_t ourselves = ::getpid();
};

TEST_F(FrontApplicationTest, followsTheActiveWindowAndNamesIt) {
    Target known(server.display()), gtk(server.display()), kde(server.display()), plain(server.display());
    set(known, "WM_CLASS", std::string("known\0Known\0", 12));
    setNumber(known.connection(), known.window(), "_NET_WM_PID", 4711);
    set(gtk, "_GTK_APPLICATION_ID", "org.gnome.TextEditor");
    set(kde, "_KDE_NET_WM_DESKTOP_FILE", "org.kde.kate.desktop");
    set(plain, "WM_CLASS", std::string("xterm\0XTerm", 11)); // one that forgets the last null
    const auto tracker = makeTracker();
    const FrontApplication expectedKnown{"org.known.App", 4711, known.window()};
    activate(known.window());
    EXPECT_TRUE(sees(expectedKnown));
    EXPECT_EQ(tracker->current(), expectedKnown);
    activate(gtk.window());
    EXPECT_TRUE(sees({"org.gnome.TextEditor", ourselves, gtk.window()}))
        << "the process by the server's word";
    activate(kde.window());
    EXPECT_TRUE(sees({"org.kde.kate", ourselves, kde.window()}));
    activate(plain.window());
    EXPECT_TRUE(sees({"XTerm", ourselves, plain.window()}));
    activate(gtk.window());
    gtk.destroy();
    queue.run();
    EXPECT_EQ(tracker->current(), FrontApplication{}) << "the window has gone before the property";
}

TEST_F(FrontApplicationTest, tellsTheWindowsOfOneApplicationApart) {
    const auto tracker = makeTracker();
    Target first(server.display()), second(server.display());
    for (const auto* window : {&first, &second})
        set(*window, "WM_CLASS", std::string("known\0Known\0", 12));
    activate(first.window());
    EXPECT_TRUE(sees({"org.known.App", ourselves, first.window()}));
    activate(second.window());
    EXPECT_TRUE(sees({"org.known.App", ourselves, second.window()}));
}

TEST_F(FrontApplicationTest, theFocusServesWithoutAWindowManager) {
    const auto tracker = makeTracker();
    Target first(server.display());
    set(first, "WM_CLASS", std::string("first\0First\0", 12));
    Target second(server.display());
    set(second, "WM_CLASS", std::string("second\0Second\0", 14));
    first.takeFocus();
    EXPECT_TRUE(sees({"First", ourselves, first.window()}));
    second.takeFocus();
    EXPECT_TRUE(sees({"Second", ourselves, second.window()}));
    EXPECT_EQ(tracker->current().identifier, "Second");
}

TEST_F(FrontApplicationTest, aTrackerThatIsGoneTellsNobody) {
    auto tracker = makeTracker();
    Target window(server.display());
    set(window, "WM_CLASS", std::string("first\0First\0", 12));
    activate(window.window());
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    tracker.reset();
    queue.run();
    EXPECT_THAT(seen, IsEmpty());
}

TEST(Probe, tellsWhatWorksAndWhatDoesNot) {
    const Server server;
    const auto here = probe(server.display());
    EXPECT_TRUE(here.isReachable && here.hasXTest && here.hasXkb && here.hasRecord);
    EXPECT_GE(here.xinput, neededXInput);
    EXPECT_FALSE(here.hasCompositor);
    EXPECT_THAT(here.problems, IsEmpty());
    const auto connection = Connection::open(server.display());
    const auto window = xcb_generate_id(connection->get());
    xcb_create_window(connection->get(), 0, window, connection->root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, 0, 0, nullptr);
    xcb_set_selection_owner(connection->get(), window, connection->atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
    (void)connection->focus();
    EXPECT_TRUE(probe(server.display()).hasCompositor);

    const auto nowhere = probe(":4711");
    EXPECT_FALSE(nowhere.isReachable);
    EXPECT_THAT(nowhere.problems, ::testing::ElementsAre(HasSubstr("cannot be opened")));
    const Server without({"-extension", "XTEST"});
    EXPECT_THAT(probe(without.display()).problems, ::testing::ElementsAre(HasSubstr("XTEST")));
}

} // namespace

} // namespace glyma::x11::testing
