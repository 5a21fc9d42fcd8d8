#pragma once

#include "platform/linux/xdg/file_descriptor.h"

#include <expected>
#include <filesystem>
#include <string>

namespace glyma::xdg {

/// Held by the one process that may rebuild the catalogue of a data folder: the running program, or a command
/// that imports. Given back when destroyed and when the process ends, however it does.
class InstanceLock {
public:
    enum class Failure {
        held,        ///< another process has it
        unavailable, ///< the folder cannot be written, or has no locks
    };

    /// Makes the folder when it is absent. Does not wait.
    static std::expected<InstanceLock, Failure> acquire(const std::filesystem::path& dataFolder);

private:
    explicit InstanceLock(FileDescriptor file)
        : file_(std::move(file)) {}

    FileDescriptor file_;
};

} // namespace glyma::xdg
