#include "app/foundation.h"

namespace glyma {

namespace {

/// Of texts, as POSIX chooses it.
std::string messagesLocale() {
    const auto environment = xdg::processEnvironment();
    for (const auto* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const auto value = environment(name); value && !value->empty())
            return *value;
    return {};
}

} // namespace

Foundation::Foundation(LogSink& logSink)
    : folders(xdg::findFolders(xdg::processEnvironment(), xdg::executablePath()))
    , settings(folders.config, logSink)
    , debug(settings)
    , log(logSink, debug)
    , applications(folders.systemData, xdg::processEnvironment()("PATH").value_or(""), messagesLocale())
    , loginItem(folders.autostart, xdg::executablePath())
    , preferences(settings, loginItem, applications, log)
    , resources(folders.resources) {}

std::expected<xdg::InstanceLock, xdg::InstanceLock::Failure> Foundation::lockCatalogue() {
    auto lock = xdg::InstanceLock::acquire(folders.data);
    if (lock)
        settings.readAgain();
    return lock;
}

} // namespace glyma
