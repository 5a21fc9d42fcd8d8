#include "preferences_desk.h"

#include "data/store.h"

namespace glyma::gallery {

namespace {

Store emptyStore(const QTemporaryDir& folder) {
    return Store::open(std::filesystem::path(folder.path().toStdString()) / "Glyma.store").value();
}

Permission granted(const char* finding) {
    return {.isGranted = true, .finding = finding, .remedy = {}};
}

} // namespace

PreferencesDesk::PreferencesDesk(std::shared_ptr<simulated::SimulatedSettings> stored)
    : settings(stored ? std::move(stored) : std::make_shared<simulated::SimulatedSettings>())
    , debug(*settings)
    , log(logged, debug)
    , preferences(*settings, loginItem, applications, log)
    , secureInput_({.scheduler = clock,
                    .grabs = grabs_,
                    .processes = processes,
                    .focusIsPasswordField = [this] { return isSecret_; },
                    .focusedProcess = [this] { return focusedProcess_; },
                    .releaseOwnGrabs = [] {}})
    , resources_(std::filesystem::path(folder_.path().toStdString()))
    , permissions(inputMonitoring, accessibility, secureInput_)
    , catalogue({clock, clock, clock, *settings, preferences, log, resources_, fonts}, emptyStore(folder_))
    , window({.settings = *settings, .debug = debug, .log = log},
             qt::makePreferencesPages({.preferences = preferences,
                                       .debug = debug,
                                       .catalogue = catalogue,
                                       .permissions = permissions,
                                       .program = program,
                                       .recorder = {.flags = flags,
                                                    .bell = bell,
                                                    .identify = [](auto, auto) { return qt::PressedKey{}; }},
                                       .exclusions = {.preferences = preferences,
                                                      .applications = installed ? *installed : applications,
                                                      .pages = pages,
                                                      .scheduler = clock},
                                       .library = {.catalogue = catalogue,
                                                   .infos = infos_,
                                                   .preferences = preferences,
                                                   .flags = flags,
                                                   .fonts = std::move(fonts)},
                                       .version = QStringLiteral("1.2.3")})) {
    inputMonitoring.set(granted("X.Org 21.1 with XInput 2.4 and XTEST"));
    accessibility.set(granted("the accessibility bus is on"));
}

void PreferencesDesk::holdSecureInput(pid_t process, const ProcessFacts& facts) {
    processes.holder = facts;
    focusedProcess_ = process;
    isSecret_ = true;
    permissions.refresh();
}

} // namespace glyma::gallery
