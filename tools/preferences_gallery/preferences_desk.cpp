#include "preferences_desk.h"

#include "catalogue/import_pipeline.h"
#include "data/store.h"
#include "platform/linux/fonts/fontconfig_coverage.h"

namespace glyma::gallery {

namespace {

Permission granted(const Message& finding) {
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
    , infos_(storeFile(), resources_)
    , permissions(inputMonitoring, accessibility, secureInput_)
    , catalogue({clock, clock, clock, *settings, preferences, log, resources_, fonts},
                Store::open(storeFile()).value())
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
                                                      .applications = applications,
                                                      .pages = pages,
                                                      .scheduler = clock},
                                       .library = {.catalogue = catalogue,
                                                   .infos = infos_,
                                                   .preferences = preferences,
                                                   .flags = flags,
                                                   .fonts = fontChoice()},
                                       .version = QStringLiteral("1.2.3")})) {
    inputMonitoring.set(granted(Message::tr("keys are heard on %1").arg(":0")));
    accessibility.set(granted(Message::tr("the accessibility bus answers and is switched on")));
}

std::filesystem::path PreferencesDesk::storeFile() const {
    return std::filesystem::path(folder_.path().toStdString()) / "Glyma.store";
}

qt::FontChoice PreferencesDesk::fontChoice() {
    return {QString::fromStdString(families_.emojiFontFamily()),
            [this](std::string_view text) { return QString::fromStdString(families_.familyFor(text)); }};
}

bool PreferencesDesk::fillLibrary(const std::filesystem::path& referenceFiles) {
    const ResourceLocator files(referenceFiles);
    fonts::FontconfigCoverage coverage(log);
    auto store = Store::open(storeFile());
    if (!store || !ImportPipeline{files, coverage, log, {}}.run(*store))
        return false;
    catalogue.start();
    return true;
}

void PreferencesDesk::holdSecureInput(pid_t process, const ProcessFacts& facts) {
    processes.holder = facts;
    focusedProcess_ = process;
    isSecret_ = true;
    permissions.refresh();
}

} // namespace glyma::gallery
