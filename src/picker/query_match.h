#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// A stretch of a text that is drawn in one manner.
struct TextRun {
    std::string_view text;
    bool isEmphasised = false;
    bool operator==(const TextRun&) const = default;
};

/// Shows why an entry is listed: which of its texts a query matches and where. It follows the search's
/// folding rule but works on one text at a time, for the few rows on the screen. Immutable; any thread.
class QueryMatch {
public:
    /// \param query    as typed, UTF-8; its words are separated by spaces.
    /// \param isFuzzy  a word matches when its characters occur in order; otherwise it must occur in one
    /// piece.
    QueryMatch(std::string_view query, bool isFuzzy);

    /// Every word matches. A query without words matches nothing.
    bool matches(std::string_view text) const;
    /// The whole text in order, cut where the emphasis changes, never within a grapheme cluster. Each word
    /// that matches emphasises its best place: in one piece at the start of a word of the text, else the
    /// first piece, else (fuzzy) the characters met by one walk through the text. The runs are views into the
    /// text.
    std::vector<TextRun> runs(std::string_view text) const;
    /// The first keyword that matches, for a name that does not.
    std::optional<std::string_view> matchedKeyword(std::string_view name,
                                                   std::span<const std::string> keywords) const;

private:
    std::vector<std::u32string> words_;
    bool isFuzzy_;
};

} // namespace glyma
