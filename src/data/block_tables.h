#pragma once

#include <span>
#include <string_view>

/// Fixed tables about blocks and characters, and the rules built on them. Any thread.
namespace glyma {

/// The blocks whose characters are switched on after an import.
std::span<const std::string_view> defaultEnabledBlocks();
/// The blocks in which emoji live.
std::span<const std::string_view> emojiBlocks();
/// The blocks of which only the emoji are switched on after an import.
std::span<const std::string_view> emojiOnlyBlocks();
/// Keywords that no source file gives.
/// \param character  without U+FE0F.
std::span<const std::string_view> extraKeywords(std::string_view character);

bool isDefaultEnabledBlock(std::string_view blockName);
bool isEmojiBlock(std::string_view blockName);
/// Whether the character starts switched off although its block is switched on.
bool isHiddenByDefault(std::string_view character, std::string_view name, std::string_view blockName);

} // namespace glyma
