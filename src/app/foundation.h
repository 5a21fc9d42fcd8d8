#pragma once

#include "data/resources.h"
#include "platform/linux/xdg/autostart_login_item.h"
#include "platform/linux/xdg/desktop_entries.h"
#include "platform/linux/xdg/folders.h"
#include "platform/linux/xdg/instance_lock.h"
#include "platform/linux/xdg/json_settings_store.h"
#include "platform/linux/xdg/system_clock.h"
#include "platform/log_sink.h"
#include "preferences/debug_config.h"
#include "preferences/log.h"
#include "preferences/user_preferences.h"

#include <expected>

namespace glyma {

/// What the program and its commands have in common, in the order in which one needs the other.
struct Foundation {
    /// \param logSink  outlives it.
    explicit Foundation(LogSink& logSink);

    /// For whoever may build or replace the catalogue. The settings are read again: another process may have
    /// done so, and noted it there, since this one was started.
    std::expected<xdg::InstanceLock, xdg::InstanceLock::Failure> lockCatalogue();

    xdg::Folders folders;
    xdg::SystemClock clock;
    xdg::JsonSettingsStore settings;
    DebugConfig debug;
    Log log;
    xdg::DesktopEntries applications;
    xdg::AutostartLoginItem loginItem;
    UserPreferences preferences;
    ResourceLocator resources;
};

} // namespace glyma
