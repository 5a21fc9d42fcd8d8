#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// What the keys since the trigger put into the target, as far as keys can tell: the query, and how many
/// characters stand between the trigger and the caret. A repeated key is one character more in the target and
/// none in the query.
class TypedText {
public:
    TypedText() = default;
    /// \param first  what the first key after the trigger types.
    explicit TypedText(std::string_view first);

    const std::string& query() const { return query_; }
    /// Counts keys, each of which types at least one character.
    std::ptrdiff_t keystrokeCount() const { return keystrokeCount_; }
    /// Whether a backspace leaves nothing.
    bool isLastCharacter() const;

    void type(std::string_view text, bool isAutorepeat);
    /// Backspace: a repeat, or the last grapheme cluster of the query.
    void deleteLast();
    bool operator==(const TypedText&) const = default;

private:
    struct Key {
        bool isAutorepeat = false;
        std::size_t end = 0; ///< of the query behind it, in bytes
        bool operator==(const Key&) const = default;
    };

    std::string query_;
    std::ptrdiff_t keystrokeCount_ = 0;
    std::vector<Key> keys_;
};

} // namespace glyma
