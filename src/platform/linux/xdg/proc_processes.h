#pragma once

#include "platform/linux/xdg/desktop_entries.h"
#include "platform/processes.h"

namespace glyma::xdg {

/// Processes as /proc shows them, called as the desktop entry of their program calls them, where there is
/// one.
class ProcProcesses : public Processes {
public:
    /// \param applications  outlives it.
    explicit ProcProcesses(const DesktopEntries& applications)
        : applications_(applications) {}

    ProcessFacts facts(pid_t process) const override;
    pid_t own() const override;

private:
    std::string nameFor(const std::string& program) const;

    const DesktopEntries& applications_;
};

} // namespace glyma::xdg
