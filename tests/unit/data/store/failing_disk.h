#pragma once

#include <sqlite3.h>

#include <limits>
#include <map>

namespace glyma {

/// While it lives, the files that SQLite opens are on a disk that can be told to be full.
class FailingDisk {
public:
    FailingDisk() {
        realDisk_ = sqlite3_vfs_find(nullptr);
        disk_ = *realDisk_;
        disk_.zName = "failing";
        disk_.pNext = nullptr;
        disk_.xOpen = &open;
        writesLeft_ = unlimited;
        sqlite3_vfs_register(&disk_, 1);
    }
    ~FailingDisk() {
        sqlite3_vfs_unregister(&disk_);
        sqlite3_vfs_register(realDisk_, 1);
    }
    FailingDisk(const FailingDisk&) = delete;
    FailingDisk& operator=(const FailingDisk&) = delete;

    /// From now on so many writes succeed and every later one finds the disk full.
    void fillAfter(long writes) {
        writesLeft_ = writes;
        hasFailed_ = false;
    }
    void empty() { writesLeft_ = unlimited; }
    bool hasFailed() const { return hasFailed_; }

private:
    static constexpr long unlimited = std::numeric_limits<long>::max();

    /// SQLite has several sets of operations, by how a file is locked.
    struct Methods : sqlite3_io_methods {
        const sqlite3_io_methods* real = nullptr;
    };

    static int open(sqlite3_vfs*, sqlite3_filename name, sqlite3_file* file, int flags, int* outFlags) {
        const auto status = realDisk_->xOpen(realDisk_, name, file, flags, outFlags);
        if (const auto* const real = file->pMethods) {
            auto& methods = methods_[real];
            methods = Methods{*real, real};
            methods.xWrite = &write;
            file->pMethods = &methods;
        }
        return status;
    }
    static int write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset) {
        if (writesLeft_ <= 0) {
            hasFailed_ = true;
            return SQLITE_FULL;
        }
        --writesLeft_;
        return static_cast<const Methods*>(file->pMethods)->real->xWrite(file, bytes, count, offset);
    }

    static inline sqlite3_vfs* realDisk_ = nullptr;
    static inline sqlite3_vfs disk_{};
    static inline std::map<const sqlite3_io_methods*, Methods> methods_;
    static inline long writesLeft_ = unlimited;
    static inline bool hasFailed_ = false;
};

} // namespace glyma
