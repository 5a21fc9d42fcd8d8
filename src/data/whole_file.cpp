#include "data/whole_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace glyma {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view unfinishedSuffix = ".XXXXXX";

std::unexpected<std::string> lastError() {
    return std::unexpected(std::string(std::strerror(errno)));
}

class Descriptor {
public:
    explicit Descriptor(int value)
        : value_(value) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    explicit operator bool() const { return value_ >= 0; }
    int get() const { return value_; }
    /// false when the system reports that something written before has been lost.
    bool close() { return value_ < 0 || ::close(std::exchange(value_, -1)) == 0; }

private:
    int value_;
};

/// Removes what was begun unless it got its place.
class UnfinishedFile {
public:
    explicit UnfinishedFile(const fs::path& file)
        : path_(file.string() + std::string(unfinishedSuffix))
        , descriptor_(::mkostemp(path_.data(), O_CLOEXEC))
        , isThere_(descriptor_) {}
    ~UnfinishedFile() {
        if (isThere_)
            ::unlink(path_.c_str());
    }
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    explicit operator bool() const { return isThere_; }
    bool write(std::span<const char> bytes) {
        while (!bytes.empty()) {
            const auto count = ::write(descriptor_.get(), bytes.data(), bytes.size());
            if (count < 0 && errno != EINTR)
                return false;
            bytes = bytes.subspan(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        }
        return ::fsync(descriptor_.get()) == 0 && descriptor_.close();
    }
    bool moveTo(const fs::path& place) {
        isThere_ = std::rename(path_.c_str(), place.c_str()) != 0;
        return !isThere_;
    }

private:
    std::string path_;
    Descriptor descriptor_;
    bool isThere_;
};

} // namespace

std::expected<std::string, std::string> readWholeFile(const fs::path& file, std::size_t limit) {
    const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (!descriptor || ::fstat(descriptor.get(), &status) != 0)
        return lastError();
    if (!S_ISREG(status.st_mode))
        return std::unexpected("not a regular file");
    std::string bytes;
    auto wanted = static_cast<std::size_t>(status.st_size);
    for (std::size_t length = 0; wanted <= limit; wanted = length * 2) {
        bytes.resize(wanted + 1); // one byte more tells the end in one go
        while (length < bytes.size()) {
            const auto count = ::read(descriptor.get(), bytes.data() + length, bytes.size() - length);
            if (count < 0 && errno != EINTR)
                return lastError();
            if (count == 0) {
                bytes.resize(length);
                return bytes;
            }
            length += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
        }
    }
    return std::unexpected(fmt::format("larger than {} bytes", limit));
}

std::expected<void, std::string> replaceWholeFile(const fs::path& file, std::span<const char> bytes) {
    UnfinishedFile unfinished(file);
    if (!unfinished || !unfinished.write(bytes) || !unfinished.moveTo(file))
        return lastError();
    return {};
}

bool isUnfinished(std::string_view name, std::string_view file) {
    return name.size() == file.size() + unfinishedSuffix.size() && name.starts_with(file) &&
           name[file.size()] == '.';
}

void syncFolder(const fs::path& folder) {
    if (const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)); descriptor)
        ::fsync(descriptor.get());
}

} // namespace glyma
