#pragma once

#include "platform/scheduler.h"

#include <cstdint>
#include <expected>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace glyma {

/// What the store says of one character.
struct StoredCharacter {
    std::string name;
    std::string keywordsRaw; ///< joined with ","
    std::string unicodeBlock;
    std::int64_t usageCount = 0;
    std::optional<Timestamp> lastUsed;
    bool isEnabled = true;
};

/// Looks single characters up in a store, over a read-only connection that is quick to open and checks
/// nothing. One thread at a time.
class CharacterReader {
public:
    template<typename Value>
    using Result = std::expected<Value, std::string>;

    /// Fails when the file is absent or no database.
    static Result<CharacterReader> open(const std::filesystem::path& storeFile);

    CharacterReader(CharacterReader&&) noexcept;
    CharacterReader& operator=(CharacterReader&&) noexcept;
    ~CharacterReader();

    Result<std::optional<StoredCharacter>> find(std::string_view character) const;
    /// The name of the block that the code point lies in.
    Result<std::optional<std::string>> blockOf(char32_t codePoint) const;

private:
    struct Implementation;
    explicit CharacterReader(std::unique_ptr<Implementation> implementation);
    std::unique_ptr<Implementation> implementation_;
};

} // namespace glyma
