#pragma once

#include "platform/processes.h"

namespace glyma::xdg {

/// Processes as /proc shows them.
class ProcProcesses : public Processes {
public:
    ProcessFacts facts(pid_t process) const override;
    pid_t own() const override;
};

} // namespace glyma::xdg
