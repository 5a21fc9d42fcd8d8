#include "platform/linux/xdg/files.h"

#include "platform/linux/xdg/file_descriptor.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

namespace glyma::xdg {

namespace fs = std::filesystem;

namespace {

std::unexpected<std::error_code> lastError() {
    return std::unexpected(std::error_code(errno, std::generic_category()));
}

bool writeAll(int descriptor, std::string_view contents) {
    while (!contents.empty()) {
        const auto written = ::write(descriptor, contents.data(), contents.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        contents.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// In the place of another file; never follows a link and never opens what somebody else has made.
FileDescriptor createAnew(const fs::path& file, unsigned mode) {
    ::unlink(file.c_str());
    return FileDescriptor(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode));
}

/// Removes the temporary file unless it has been moved to its place.
class TemporaryFile {
public:
    explicit TemporaryFile(fs::path path)
        : path_(std::move(path)) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!moved_)
            ::unlink(path_.c_str());
    }
    const fs::path& path() const { return path_; }
    bool moveTo(const fs::path& place) {
        moved_ = std::rename(path_.c_str(), place.c_str()) == 0;
        return moved_;
    }

private:
    fs::path path_;
    bool moved_ = false;
};

} // namespace

std::expected<std::string, std::error_code> readFile(const fs::path& file, std::size_t limit) {
    const FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (!descriptor || ::fstat(descriptor.number(), &status) != 0)
        return lastError();
    if (!S_ISREG(status.st_mode))
        return std::unexpected(std::make_error_code(std::errc::invalid_argument));
    std::string contents;
    char buffer[16384];
    for (;;) {
        const auto count = ::read(descriptor.number(), buffer, sizeof buffer);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return lastError();
        if (count == 0)
            return contents;
        contents.append(buffer, static_cast<std::size_t>(count));
        if (contents.size() > limit)
            return std::unexpected(std::make_error_code(std::errc::file_too_large));
    }
}

std::expected<void, std::error_code> replaceFile(const fs::path& file, std::string_view contents,
                                                 unsigned mode) {
    // A fixed name, so that a writer that was killed leaves at most one file behind.
    TemporaryFile temporary(file.parent_path() / ("." + file.filename().string() + ".new"));
    FileDescriptor descriptor = createAnew(temporary.path(), mode);
    if (!descriptor || !writeAll(descriptor.number(), contents) || ::fsync(descriptor.number()) != 0 ||
        !descriptor.close() || !temporary.moveTo(file))
        return lastError();
    // The rename itself is on disk only with the folder. Some file systems cannot do this; they need not.
    const FileDescriptor folder(::open(file.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder)
        ::fsync(folder.number());
    return {};
}

std::expected<void, std::error_code> makeEmptyFile(const fs::path& file, unsigned mode) {
    if (!createAnew(file, mode))
        return lastError();
    return {};
}

std::expected<void, std::error_code> makePrivateFolder(const fs::path& folder) {
    std::error_code error;
    if (fs::is_directory(folder, error))
        return {};
    if (const auto above = folder.parent_path(); !above.empty() && above != folder)
        if (auto made = makePrivateFolder(above); !made)
            return made;
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
        return lastError();
    return {};
}

} // namespace glyma::xdg
