#include "platform/linux/xdg/instance_lock.h"

#include "platform/linux/xdg/files.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

namespace glyma::xdg {

std::expected<InstanceLock, InstanceLock::Failure>
InstanceLock::acquire(const std::filesystem::path& dataFolder) {
    if (!makePrivateFolder(dataFolder))
        return std::unexpected(Failure::unavailable);
    FileDescriptor file(::open((dataFolder / "Glyma.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!file)
        return std::unexpected(Failure::unavailable);
    if (::flock(file.number(), LOCK_EX | LOCK_NB) != 0)
        return std::unexpected(errno == EWOULDBLOCK ? Failure::held : Failure::unavailable);
    return InstanceLock(std::move(file));
}

} // namespace glyma::xdg
