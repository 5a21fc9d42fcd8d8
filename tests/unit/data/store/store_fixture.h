#pragma once

#include "data/store.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace glyma {

/// A folder that goes with the test.
class TemporaryFolder {
public:
    TemporaryFolder() {
        auto pattern = (std::filesystem::temp_directory_path() / "glyma-store-XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, error);
        std::filesystem::remove_all(path_, error);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

inline std::string bytesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void write(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

inline UnicodeChar used(UnicodeChar character, std::int64_t count, Timestamp when) {
    character.usageCount = count;
    character.lastUsed = when;
    return character;
}

inline UnicodeChar disabled(UnicodeChar character) {
    character.isEnabled = false;
    return character;
}

using Visit = Store::Result<void> (Store::*)(const Store::Visitor&) const;

/// The names of the characters that the visit gives, in its order.
inline std::vector<std::string> visited(const Store& store, Visit visit) {
    std::vector<std::string> characters;
    const auto result =
        (store.*visit)([&](const CharacterRow& row) { characters.emplace_back(row.character); });
    EXPECT_TRUE(result) << result.error();
    return characters;
}

template<typename Value>
Value need(Store::Result<Value> result) {
    if (!result)
        throw std::runtime_error(result.error());
    return std::move(*result);
}
inline void need(Store::Result<void> result) {
    if (!result)
        throw std::runtime_error(result.error());
}

} // namespace glyma
