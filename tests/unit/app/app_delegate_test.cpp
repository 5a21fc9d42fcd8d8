#include "../catalogue/catalogue_fixture.h"
#include "../permissions/fakes.h"
#include "app/app_delegate.h"
#include "app/permission_diagnosis.h"

namespace glyma {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::IsEmpty;

class AppDelegateTest : public test::CatalogueFixture {
protected:
    AppDelegateTest() {
        debug_.setDebugLogsEnabled(true);
        fillStore();
        startManager();
    }

    AppDelegateServices services() {
        return {.scheduler = clock_,
                .log = log_,
                .preferences = preferences_,
                .loginItem = loginItem_,
                .catalogue = *manager_,
                .permissions = permissions,
                .startMonitor = [this]() -> std::expected<void, std::string> {
                    ++starts;
                    if (refusesToStart)
                        return std::unexpected("too many clients");
                    return {};
                },
                .stopMonitor = [this] { ++stops; },
                .openAddress = [this](const std::string& address) { opened.push_back(address); },
                .showPreferences = [this](const std::string& tab) { tabs.push_back(tab); },
                .quit = [this] { ++quits; },
                .updateHost = "https://quillaby.example",
                .version = "1.2"};
    }

    test::FakeGrabs grabs;
    test::FakeProcesses processes;
    test::FakePermission inputMonitoring{true};
    test::FakePermission accessibility{true};
    SecureInputChecker checker{{.scheduler = clock_,
                                .grabs = grabs,
                                .processes = processes,
                                .focusIsPasswordField = [] { return false; },
                                .focusedProcess = [] { return 0; },
                                .releaseOwnGrabs = [] {}}};
    Permissions permissions{inputMonitoring, accessibility, checker};
    int starts = 0;
    int stops = 0;
    int quits = 0;
    bool refusesToStart = false;
    std::vector<std::string> opened;
    std::vector<std::string> tabs;
};

TEST_F(AppDelegateTest, TheMonitorRunsExactlyWhileKeysMayBeHeard) {
    inputMonitoring.grant(false);
    AppDelegate delegate(services());
    delegate.applicationDidFinishLaunching();
    clock_.advance(20s);
    EXPECT_EQ(starts, 0);
    EXPECT_TRUE(delegate.permissionsNeeded());

    inputMonitoring.grant(true);
    EXPECT_TRUE(delegate.isMonitorRunning());
    accessibility.grant(false);
    EXPECT_TRUE(delegate.isMonitorRunning()) << "typing is observed without accessibility";
    EXPECT_TRUE(delegate.permissionsNeeded());

    inputMonitoring.grant(false);
    EXPECT_EQ(stops, 1);
    EXPECT_FALSE(delegate.isMonitorRunning());
    EXPECT_THAT(sink_.lines(), Contains("input monitoring revoked — keyboard monitor stopped"));
    delegate.applicationWillTerminate();
    EXPECT_EQ(stops, 1);
}

TEST_F(AppDelegateTest, AMonitorThatCannotStartIsTriedAgainAtEachCheckAndNoMore) {
    refusesToStart = true;
    AppDelegate delegate(services());
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(starts, 1);
    accessibility.grant(false);
    accessibility.grant(true);
    EXPECT_EQ(starts, 1) << "not at every change";
    clock_.advance(10s);
    EXPECT_EQ(starts, 3);
    refusesToStart = false;
    clock_.advance(5s);
    EXPECT_TRUE(delegate.isMonitorRunning());
    clock_.advance(60s);
    EXPECT_EQ(starts, 4);
    delegate.applicationWillTerminate();
    EXPECT_EQ(stops, 1);
    const auto checks = grabs.checks;
    clock_.advance(60s);
    EXPECT_EQ(grabs.checks, checks) << "no check after the end";
}

TEST_F(AppDelegateTest, SecureInputIsToldWithinFiveSecondsAndGoesAgain) {
    AppDelegate delegate(services());
    delegate.applicationDidFinishLaunching();
    int changes = 0;
    const auto counting = delegate.changed.connect([&] { ++changes; });
    processes.table[7] = {.exists = true, .name = "xterm"};
    grabs.set(KeyboardGrab{.process = 7});
    clock_.advance(5s);
    EXPECT_TRUE(delegate.secureInputBlocked());
    EXPECT_EQ(delegate.secureInputHolder()->name, "xterm");
    EXPECT_GT(changes, 0);
    grabs.set(std::nullopt);
    EXPECT_FALSE(delegate.secureInputBlocked());
}

TEST_F(AppDelegateTest, TheImportIsTold) {
    AppDelegate delegate(services());
    delegate.applicationDidFinishLaunching();
    manager_->importStarted.emit();
    EXPECT_TRUE(delegate.isImporting());
    manager_->importComplete.emit("the disk is full");
    EXPECT_FALSE(delegate.isImporting());
}

TEST_F(AppDelegateTest, TheLoginItemIsRenewedOnlyWhereItIsOn) {
    AppDelegate delegate(services());
    delegate.applicationDidFinishLaunching();
    clock_.advance(1s);
    EXPECT_FALSE(loginItem_.enabled);
    ASSERT_TRUE(preferences_.setStartAtLogin(true));
    loginItem_.enabled = false; // as an entry that names a program which has moved
    delegate.applicationDidFinishLaunching();
    clock_.advance(1s);
    EXPECT_TRUE(loginItem_.enabled);
}

TEST_F(AppDelegateTest, OperationsOfThePreferences) {
    AppDelegate delegate(services());
    delegate.openUpdatePage();
    delegate.openPreferences("permissions");
    EXPECT_EQ(opened, std::vector<std::string>{"https://quillaby.example/projects/glyma/update/?v=1.2"});
    EXPECT_EQ(tabs, std::vector<std::string>{"permissions"});
    EXPECT_FALSE(delegate.mustDeleteContainer());
    delegate.deleteContainerAndQuit();
    EXPECT_TRUE(delegate.mustDeleteContainer());
    EXPECT_EQ(quits, 1);
}

TEST(PermissionDiagnosis, SurvivesItsWayThroughJson) {
    const Permission granted{.isGranted = true, .finding = "keys are heard on :0", .remedy = {}};
    const Permission limited{.isGranted = true, .finding = "X11 only", .remedy = "Log in to X11."};
    const Permission missing{.isGranted = false, .finding = "off \"now\"", .remedy = "Switch it on."};
    const SecureInput held{true, Holder{Holder::Kind::running, 7, "xterm"}};
    const auto all = diagnosePermissions(missing, missing, held);
    EXPECT_EQ(diagnosesFromJson(diagnosesAsJson(all)), all);
    EXPECT_EQ(all[0].state, Diagnosis::State::missing);
    EXPECT_EQ(all[1].state, Diagnosis::State::limited);
    EXPECT_THAT(all[2].why, testing::HasSubstr("xterm (process 7)"));
    EXPECT_EQ(diagnosePermissions(granted, limited, std::nullopt)[0].state, Diagnosis::State::ok);
    EXPECT_EQ(diagnosePermissions(granted, limited, std::nullopt)[1].state, Diagnosis::State::limited);
    for (const auto* damaged : {"", "{", "[1]", "7", "[\"x\"]"})
        EXPECT_THAT(diagnosesFromJson(damaged), IsEmpty()) << damaged;
}

} // namespace
} // namespace glyma
