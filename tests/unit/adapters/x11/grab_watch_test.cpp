#include "main_queue.h"
#include "platform/linux/x11/grab_watch.h"
#include "platform/linux/x11/input_monitoring.h"
#include "x11_fixture.h"

#include <sys/resource.h>
#include <unistd.h>

namespace glyma::x11::testing {

namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A client with a window that is shown.
class Client {
public:
    explicit Client(const std::string& display, const char* windowType = nullptr)
        : connection(std::move(*Connection::open(display)))
        , window(xcb_generate_id(connection.get())) {
        constexpr std::uint32_t overridesRedirect = 1;
        xcb_create_window(connection.get(), 0, window, connection.root(), 0, 0, 10, 10, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                          &overridesRedirect);
        if (windowType) {
            const auto type = connection.atom(windowType);
            xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window,
                                connection.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &type);
        }
        xcb_map_window(connection.get(), window);
        sync();
    }
    std::uint8_t grab() {
        const auto cookie = xcb_grab_keyboard(connection.get(), 0, window, XCB_CURRENT_TIME,
                                              XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        return owned(xcb_grab_keyboard_reply(connection.get(), cookie, nullptr))->status;
    }
    bool grabThroughXInput() {
        constexpr xcb_input_device_id_t coreKeyboard = 3;
        constexpr std::uint32_t mask = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS;
        owned(xcb_input_xi_query_version_reply(connection.get(),
                                               xcb_input_xi_query_version(connection.get(), 2, 2), nullptr));
        const auto cookie = xcb_input_xi_grab_device(
            connection.get(), window, XCB_CURRENT_TIME, XCB_CURSOR_NONE, coreKeyboard,
            XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC, 0, 1, &mask);
        const auto reply = owned(xcb_input_xi_grab_device_reply(connection.get(), cookie, nullptr));
        return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    }
    void ungrab() {
        xcb_ungrab_keyboard(connection.get(), XCB_CURRENT_TIME);
        sync();
    }
    void unmap() {
        xcb_unmap_window(connection.get(), window);
        sync();
    }
    void sync() const { (void)connection.focus(); }

    Connection connection;
    xcb_window_t window;
};

/// The hidden windows by which the watch asks and that have no name.
std::vector<xcb_window_t> watchWindows(const Connection& connection) {
    const auto tree = owned(
        xcb_query_tree_reply(connection.get(), xcb_query_tree(connection.get(), connection.root()), nullptr));
    const auto* const children = xcb_query_tree_children(tree.get());
    std::vector<xcb_window_t> windows;
    for (int index = 0; index < xcb_query_tree_children_length(tree.get()); ++index) {
        const auto place = owned(xcb_get_geometry_reply(
            connection.get(), xcb_get_geometry(connection.get(), children[index]), nullptr));
        const auto name = owned(xcb_get_property_reply(
            connection.get(),
            xcb_get_property(connection.get(), 0, children[index], XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 0, 1),
            nullptr));
        if (place && place->x == -1 && place->width == 1 && name && name->type == XCB_ATOM_NONE)
            windows.push_back(children[index]);
    }
    return windows;
}

class GrabWatchTest : public ::testing::Test {
protected:
    /// Waits until the watch says so.
    bool becomes(const std::optional<KeyboardGrab>& expected) {
        return eventually([&] { return watch->current() == expected; });
    }

    Server server;
    MainQueue queue;
    std::unique_ptr<GrabWatch> watch = std::make_unique<GrabWatch>(queue, server.display());
    /// All clients are this process.
    const KeyboardGrab ours{.process = ::getpid(), .isMenu = false};
};

TEST_F(GrabWatchTest, KnowsWhoHasTheKeyboardAndUntilWhen) {
    int changes = 0;
    const auto counting = watch->observe([&] { ++changes; });
    Client client(server.display());
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(client.grab(), XCB_GRAB_STATUS_SUCCESS);
        EXPECT_TRUE(becomes(ours));
        client.ungrab();
        EXPECT_TRUE(becomes(std::nullopt));
    }
    ASSERT_TRUE(client.grabThroughXInput());
    EXPECT_TRUE(becomes(ours));
    queue.run();
    EXPECT_EQ(changes, 7);
}

TEST_F(GrabWatchTest, AGrabEndsWithItsWindowOrItsClientThoughNobodySaysSo) {
    auto client = std::make_unique<Client>(server.display());
    client->grab();
    ASSERT_TRUE(becomes(ours));
    client->unmap();
    EXPECT_TRUE(becomes(std::nullopt));

    client = std::make_unique<Client>(server.display());
    client->grab();
    ASSERT_TRUE(becomes(ours));
    client.reset();
    EXPECT_TRUE(becomes(std::nullopt));
}

TEST_F(GrabWatchTest, ARefusedGrabChangesNothing) {
    Client hidden(server.display());
    hidden.unmap();
    EXPECT_EQ(hidden.grab(), XCB_GRAB_STATUS_NOT_VIEWABLE);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(watch->current(), std::nullopt);

    Client holder(server.display());
    holder.grab();
    ASSERT_TRUE(becomes(ours));
    Client late(server.display(), "_NET_WM_WINDOW_TYPE_POPUP_MENU");
    EXPECT_EQ(late.grab(), XCB_GRAB_STATUS_ALREADY_GRABBED);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(watch->current(), ours) << "and not the one with the menu";
}

TEST_F(GrabWatchTest, AMenuIsOneThoughAnotherWindowOfItsApplicationGrabs) {
    for (const auto* type : {"_NET_WM_WINDOW_TYPE_POPUP_MENU", "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU",
                             "_NET_WM_WINDOW_TYPE_COMBO"}) {
        Client client(server.display(), type);
        client.grab();
        EXPECT_TRUE(becomes(KeyboardGrab{.process = ::getpid(), .isMenu = true})) << type;
    }
}

TEST_F(GrabWatchTest, AGrabFromBeforeTheStartIsKnownWithoutItsHolder) {
    watch.reset();
    Client client(server.display());
    client.grab();
    watch = std::make_unique<GrabWatch>(queue, server.display());
    EXPECT_EQ(watch->current(), KeyboardGrab{});
    for (int round = 0; round < 10; ++round) {
        watch->check();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_EQ(watch->current(), KeyboardGrab{}) << "the watch's own questions are no claim";
    }
    client.ungrab();
    EXPECT_TRUE(becomes(std::nullopt));
}

TEST_F(GrabWatchTest, AConnectionThatIsKilledIsOpenedAgainAndTheGrabNeverMissed) {
    int changes = 0;
    const auto counting = watch->observe([&] { ++changes; });
    Client client(server.display());
    client.grab();
    ASSERT_TRUE(becomes(ours));
    queue.run();
    changes = 0;
    const auto before = watchWindows(client.connection);
    ASSERT_EQ(before.size(), 1U);
    // Its number may be given to the next one.
    xcb_change_property(client.connection.get(), XCB_PROP_MODE_REPLACE, before.front(), XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING, 8, 3, "old");
    ASSERT_THAT(watchWindows(client.connection), IsEmpty());
    xcb_kill_client(client.connection.get(), before.front());
    EXPECT_TRUE(eventually([&] { return watchWindows(client.connection).size() == 1; }));
    queue.run();
    EXPECT_EQ(changes, 0) << "what was known is still so";
    client.ungrab();
    EXPECT_TRUE(becomes(std::nullopt));
    client.grab();
    EXPECT_TRUE(becomes(ours)) << "heard of through the new connections";
}

TEST_F(GrabWatchTest, SleepsWhileNothingHappens) {
    const auto switches = [] {
        rusage usage{};
        ::getrusage(RUSAGE_SELF, &usage);
        return usage.ru_nvcsw + usage.ru_nivcsw;
    };
    watch->check();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const auto before = switches();
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    EXPECT_LT(switches() - before, 20);
}

TEST_F(GrabWatchTest, LookingDoesNotDisturbTheWindowThatHasTheFocus) {
    Target target(server.display());
    target.takeFocus();
    target.record();
    for (int round = 0; round < 20; ++round)
        watch->check();
    EXPECT_THAT(target.record(), IsEmpty());
}

TEST(GrabWatch, WithoutRecordAGrabIsFoundByLooking) {
    Server server({"-extension", "RECORD"});
    MainQueue queue;
    GrabWatch watch(queue, server.display());
    Client client(server.display());
    client.grab();
    watch.check();
    EXPECT_EQ(watch.current(), KeyboardGrab{});
    client.ungrab();
    EXPECT_TRUE(eventually([&] { return !watch.current(); }));
}

TEST(GrabWatch, WithoutAServerNobodyGrabs) {
    MainQueue queue;
    GrabWatch watch(queue, ":7777");
    watch.check();
    EXPECT_EQ(watch.current(), std::nullopt);
}

TEST(InputMonitoring, SaysWhatIsMissingAndWhatToDo) {
    Server complete;
    InputMonitoring granted(complete.display());
    EXPECT_TRUE(granted.current().isGranted);
    EXPECT_TRUE(granted.current().remedy.isEmpty());

    Server server({"-extension", "XTEST"});
    const auto permission = InputMonitoring(server.display()).current();
    EXPECT_FALSE(permission.isGranted);
    EXPECT_THAT(permission.finding.english(), HasSubstr("XTEST"));
    EXPECT_THAT(permission.remedy.english(), HasSubstr("XTEST"));
    EXPECT_EQ(permission, inputMonitoring(probe(server.display()))) << "what the doctor says";
    EXPECT_FALSE(InputMonitoring(":7777").current().isGranted);
}

TEST(InputMonitoring, FollowsWhatKeepsTheTapFromRunning) {
    Server server;
    InputMonitoring permission(server.display());
    int changes = 0;
    const auto counting = permission.observe([&] { ++changes; });
    permission.setObstacle("too many clients");
    EXPECT_FALSE(permission.current().isGranted);
    EXPECT_EQ(permission.current().finding, "too many clients");
    permission.setObstacle("");
    EXPECT_TRUE(permission.current().isGranted);
    EXPECT_EQ(changes, 2);
    server.kill();
    EXPECT_TRUE(eventually([&] {
        permission.check();
        return !permission.current().isGranted;
    }));
    EXPECT_EQ(changes, 3);
}

} // namespace

} // namespace glyma::x11::testing
